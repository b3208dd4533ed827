#pragma once
// A mate needs every flight of the mated king covered. Before the last move of
// the side to be mated, one of its moves and one reply must cover them all;
// counting what two such moves can cover at most shows when no move but the
// king's can lead to mate.

#include <bit>
#include <cstdint>

#include "core/attacks.h"
#include "core/check_geometry.h"
#include "core/mate_test.h"

namespace velkaro::core {

namespace detail {

// Whether the man `code` stands on direction `direction` (as in the attack
// tests: even orthogonal, odd diagonal) and bears along it.
constexpr bool bearsAlong(int code, int side, int direction) {
  if (code == side * piece::Queen) return true;
  return code == side * (direction % 2 == 0 ? piece::Rook : piece::Bishop);
}

inline constexpr int kDirectionFileStep[8] = {-1, -1, 0, 1, 1, 1, 0, -1};
inline constexpr int kDirectionRowStep[8] = {0, -1, -1, -1, 0, 1, 1, 1};

// Whether the man on `square` could uncover a check of `side`'s line piece
// on the king on `king` by leaving: it stands on a line from the king, with
// such a piece further out and at most one other man on the line between
// them (the other side's move may take one away).
inline bool uncoversCheck(const Position& position, int side, int king, int square) {
  const int direction = check_geometry::kLines[static_cast<std::size_t>(king)][static_cast<std::size_t>(square)];
  if (direction < 0) return false;
  int file = king & 7;
  int row = king >> 3;
  int others = 0;
  bool passed = false;
  for (;;) {
    file += kDirectionFileStep[direction];
    row += kDirectionRowStep[direction];
    if (!geometry::onBoard(file, row)) return false;
    const int at = 8 * row + file;
    const int code = position.board[static_cast<std::size_t>(at)];
    if (at == square) {
      passed = true;
    } else if (code != 0) {
      if (passed && bearsAlong(code, side, direction)) return true;
      if (++others > 1) return false;
    }
  }
}

}  // namespace detail

// Whether the king of `Side` could stand mated after a move of its own side
// that does not move the king, followed by one move of the opponent. Its
// flights are the squares next to it that hold no man of its own and that
// the opponent does not attack (the king lifted off, so that a line through
// its square counts). The own move can fill one of them and uncover lines
// through the square it leaves; the reply, a check, covers what its man
// attacks from where it lands and uncovers lines through the square it
// leaves. An
// en-passant capture (`enPassantPossible`) or castling moves a third man, so
// then the answer is always yes. The count ignores blockers on the far side,
// so a yes may be wrong, a no never is.
template <int Side>
bool flightsMayAllBeCovered(const Position& position, bool enPassantPossible) {
  constexpr int Opponent = -Side;
  const int rights = Opponent == White ? position.whiteLongCastle | position.whiteShortCastle
                                       : position.blackLongCastle | position.blackShortCastle;
  if (enPassantPossible || rights != 0) return true;
  const int king = Side == White ? position.whiteKingSquare : position.blackKingSquare;
  Position lifted = position;
  lifted.board[king] = 0;
  std::uint64_t flights = 0;
  for (std::uint64_t around = check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(piece::King))][static_cast<std::size_t>(king)]; around != 0;
       around &= around - 1) {
    const int square = std::countr_zero(around);
    if (lifted.board[square] * Side > 0) continue;
    if (isAttackedByOpponentOf<Side>(square, lifted) >= 0) continue;
    flights |= std::uint64_t{1} << square;
  }
  int uncovered = std::popcount(flights) - 1;  // the own move may fill one
  if (uncovered <= 0) return true;
  // Flights behind at most two men (the two moves leave two squares) on a
  // line of an opponent's line piece.
  for (std::uint64_t rest = flights; rest != 0; rest &= rest - 1) {
    const int flight = std::countr_zero(rest);
    bool opens = false;
    for (int direction = 0; direction < 8 && !opens; ++direction) {
      int file = flight & 7;
      int row = flight >> 3;
      int men = 0;
      for (;;) {
        file += detail::kDirectionFileStep[direction];
        row += detail::kDirectionRowStep[direction];
        if (!geometry::onBoard(file, row)) break;
        const int code = lifted.board[static_cast<std::size_t>(8 * row + file)];
        if (code == 0) continue;
        if (detail::bearsAlong(code, Opponent, direction)) {
          opens = true;
          break;
        }
        if (++men > 2) break;
      }
    }
    if (opens && --uncovered <= 0) return true;
  }
  // The reply must check: its man bears on the king from where it lands, or
  // it leaves a line from the king to a line piece of its side. What that man
  // attacks from there is all it can add.
  const std::int8_t* board = lifted.board;
  for (std::uint64_t men = menOf<Opponent>(board); men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    const int code = board[square];
    const auto slot = static_cast<std::size_t>(pieceSlot(code));
    const bool discovers = detail::uncoversCheck(lifted, Opponent, king, square);
    if (!discovers && code == Opponent * piece::King) continue;
    const bool pawn = code == Opponent * piece::Pawn;
    for (std::uint64_t reach = check_geometry::kReach[slot][static_cast<std::size_t>(square)]; reach != 0;
         reach &= reach - 1) {
      const auto target = static_cast<std::size_t>(std::countr_zero(reach));
      std::uint64_t attacked = check_geometry::kEmptyBoardAttacks[slot][target];
      if (pawn && (target < 8 || target >= 56)) {
        attacked |= check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(Opponent * piece::Queen))][target] |
                    check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(Opponent * piece::Knight))][target];
      }
      if (!discovers && ((attacked >> king) & 1) == 0) continue;
      if (std::popcount(attacked & flights) >= uncovered) return true;
    }
  }
  return false;
}

}  // namespace velkaro::core
