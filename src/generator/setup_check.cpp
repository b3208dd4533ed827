// The set-up check and the group list of a Creator run.

#include "generator/setup_check.h"

#include <algorithm>
#include <cstdlib>

#include "core/attacks.h"
#include "core/geometry.h"
#include "core/validate.h"

namespace velkaro::generator {

namespace {

using core::piece::King;
using core::piece::Knight;
using core::piece::Pawn;

// The men a side will have: the board's knights count twice and its pawns
// not at all, then every added man and the king. The formula is the
// program's own and is kept as it stands.
int menTotal(const core::SideCensus& board, const AddedMen& added) {
  return board.queens + board.rooks + board.bishops + board.knights + board.knights + added.total() + 1;
}

// Pawns plus the men beyond one queen, two rooks, two bishops and two
// knights: each of those must have been a pawn once.
int pawnsAndPromotions(const core::SideCensus& board, const AddedMen& added) {
  auto beyond = [](int men, int usual) { return std::max(0, men - usual); };
  return board.pawns + added.pawns + beyond(board.queens + added.queens, 1) + beyond(board.rooks + added.rooks, 2) +
         beyond(board.bishops + added.bishops, 2) + beyond(board.knights + added.knights, 2);
}

// Whether the Black king set up on `king` is checked by a White man next to
// it, a pawn or a knight. A board with only those men and the king gives the
// attack test nothing else to find.
bool checkedAtClose(const core::BoardSetup& setup, int king) {
  core::Position close{};
  close.board[king] = static_cast<std::int8_t>(-King);
  for (int square = 0; square < 64; ++square) {
    const int code = setup.board[static_cast<std::size_t>(square)];
    const bool adjacent = std::abs((square & 7) - (king & 7)) <= 1 && std::abs((square >> 3) - (king >> 3)) <= 1;
    if (code > 0 && (adjacent || code == Pawn || code == Knight)) close.board[square] = static_cast<std::int8_t>(code);
  }
  return core::isAttackedByWhite(king, close) >= 0;
}

}  // namespace

const char* setupRefusal(const CreateSettings& settings) {
  const auto [white, black] = core::takeCensus(settings.setup.board);
  if (white.pawnOnEdgeRank) return "White pawn !";
  if (black.pawnOnEdgeRank) return "Black pawn !";
  // Two White kings get the Black wording as well: users know the message.
  if (white.kings > 1 || black.kings > 1) return "Too many black kings";
  if (menTotal(white, settings.white) >= 17) return "Too many white pieces";
  if (menTotal(black, settings.black) >= 17) return "Too many black pieces";
  if (pawnsAndPromotions(white, settings.white) >= 9) return "Too many white pieces";
  if (pawnsAndPromotions(black, settings.black) >= 9) return "Too many black pieces";
  if (black.kings == 1) {
    const int king = core::firstSquareOf(settings.setup.board.data(), -King);
    if (checkedAtClose(settings.setup, king)) return "CHECKMATE !";
  }
  return nullptr;
}

std::vector<Group> groupList(const CreateSettings& settings, bool withMaps) {
  const auto [white, black] = core::takeCensus(settings.setup.board);
  std::vector<Group> groups;
  auto add = [&](int side, Kind kind, int count) {
    if (count <= 0) return;
    const int code = side * kKindCodes[static_cast<std::size_t>(kind)];
    std::uint64_t allowed =
        withMaps ? settings.available[static_cast<std::size_t>(mapIndexOf(code))].squares : SquareMap::kAll;
    if (kind == Kind::Pawn) allowed &= kPawnSquares;
    groups.push_back({code, count, allowed});
  };
  add(core::White, Kind::Pawn, settings.white.pawns);
  add(core::Black, Kind::Pawn, settings.black.pawns);
  add(core::White, Kind::King, white.kings == 0 ? 1 : 0);
  for (Kind kind : {Kind::Queen, Kind::Rook, Kind::Bishop, Kind::Knight}) {
    add(core::White, kind, settings.white.of(kind));
    add(core::Black, kind, settings.black.of(kind));
  }
  add(core::Black, Kind::King, black.kings == 0 ? 1 : 0);
  return groups;
}

bool mapsTooSmall(const CreateSettings& settings) {
  for (const Group& group : groupList(settings, false)) {
    const SquareMap& map = settings.available[static_cast<std::size_t>(mapIndexOf(group.code))];
    if (map.restricts() && map.count() < group.count) return true;
  }
  return false;
}

}  // namespace velkaro::generator
