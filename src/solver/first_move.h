#pragma once
// A first move chosen in "Select move": the forced first move of the next
// solver or counter run.

#include "core/position.h"

namespace velkaro::solver {

struct FirstMove {
  int movedPiece = 0;
  int fromSquare = 0;
  int toSquare = 0;
  int moveKind = 0;  // castling 1..4, en passant 5, otherwise the piece placed on the target
  int ordinal = 0;   // the move's place among its man's moves
};

// Frame 2 from frame 1 with `move` played: the man lifted and placed, the rook
// of a castling moved, the pawn taken en passant removed, both kings found
// again. Frame 1 records the move. Frame 2's castling rights stay exactly those
// of the start position, whatever the move does: replies see the rights the
// user set up.
void applyFirstMove(core::PlyStack& stack, const FirstMove& move);

}  // namespace velkaro::solver
