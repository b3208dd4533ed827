// The set-up check: a census of the editor board, the refusals in their fixed
// order (the first one that applies is the one the user sees), then whether the
// side that is not to move stands in check.

#include "core/validate.h"

#include <utility>

#include "core/attacks.h"

namespace velkaro::core {

namespace {

void countMan(SideCensus& side, int magnitude, int square) {
  ++side.men;
  switch (magnitude) {
    case piece::King:
      ++side.kings;
      side.lastKingSquare = square;
      break;
    case piece::Queen: ++side.queens; break;
    case piece::Rook: ++side.rooks; break;
    case piece::Bishop: ++side.bishops; break;
    case piece::Knight: ++side.knights; break;
    case piece::Pawn:
      ++side.pawns;
      // A pawn can neither stand on its own back rank nor stay on the last.
      side.pawnOnEdgeRank = side.pawnOnEdgeRank || square < 8 || square > 55;
      break;
    default: break;
  }
}

// The message of the first count or pawn check that refuses the board, or
// nullptr when all pass. Promoted men are allowed only as far as the pawns
// missing from the side leave room for them.
const char* firstRefusal(const BoardCensus& census) {
  const SideCensus& w = census.white;
  const SideCensus& b = census.black;
  const std::pair<bool, const char*> checks[] = {
      {w.kings == 0, "No found white king"},
      // Two White kings get the Black wording: users know this message, so it stays.
      {w.kings > 1, "Too many black kings"},
      {b.kings == 0, "No found black king"},
      {b.kings > 1, "Too many black kings"},
      {w.men > 16, "Too many white pieces"},
      {b.men > 16, "Too many black pieces"},
      {w.pawns > 8, "Too many white pawns"},
      {b.pawns > 8, "Too many black pawns"},
      {w.queens + w.pawns > 9, "Too many white queens"},
      {b.queens + b.pawns > 9, "Too many black queens"},
      {w.rooks + w.pawns > 10, "Too many white rooks"},
      {b.rooks + b.pawns > 10, "Too many black rooks"},
      {w.bishops + w.pawns > 10, "Too many white bishops"},
      {b.bishops + b.pawns > 10, "Too many black bishops"},
      {w.knights + w.pawns > 10, "Too many white knights"},
      {b.knights + b.pawns > 10, "Too many black knights"},
      {w.pawnOnEdgeRank, "White pawn !"},
      {b.pawnOnEdgeRank, "Black pawn !"},
  };
  for (const auto& [refused, message] : checks) {
    if (refused) return message;
  }
  return nullptr;
}

// Fills frame 1 from the editor board and tells whether the side that has
// just moved (the one not to move) has left its king attacked.
bool sideNotToMoveInCheck(const BoardSetup& setup, const BoardCensus& census, PlyStack& stack) {
  Position& root = stack[1].position;
  for (int square = 0; square < 64; ++square) {
    root.board[square] = static_cast<std::int8_t>(setup.board[static_cast<std::size_t>(square)]);
  }
  root.whiteKingSquare = static_cast<std::uint8_t>(census.white.lastKingSquare);
  root.blackKingSquare = static_cast<std::uint8_t>(census.black.lastKingSquare);
  if (setup.sideToMove < 0) return isAttackedByBlack(root.whiteKingSquare, root) >= 0;
  return isAttackedByWhite(root.blackKingSquare, root) >= 0;
}

}  // namespace

BoardCensus takeCensus(const std::array<int, 64>& board) {
  BoardCensus census;
  for (int square = 0; square < 64; ++square) {
    const int code = board[static_cast<std::size_t>(square)];
    if (code > 0) countMan(census.white, code, square);
    if (code < 0) countMan(census.black, -code, square);
  }
  return census;
}

int validatePosition(const BoardSetup& setup, PlyStack& stack, MessageSink& sink) {
  const BoardCensus census = takeCensus(setup.board);
  const char* refusal = firstRefusal(census);
  // The wording for a side that has just moved and still stands in check.
  if (refusal == nullptr && sideNotToMoveInCheck(setup, census, stack)) refusal = "CHECKMATE !";
  if (refusal == nullptr) return 0;
  sink.showMessage(kMessageCaption, refusal);
  return 1;
}

}  // namespace velkaro::core
