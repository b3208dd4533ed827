#pragma once
// The set-up check every job runs on the user's position before it searches:
// both kings present and single, the men of each side within what a game can
// produce, no pawn on an edge rank, and the side that has just moved not in check.

#include "core/messages.h"
#include "core/position.h"

namespace velkaro::core {

// The men of one side on an editor board, kind by kind. A man counts towards
// its colour whatever its code; only the six known codes count towards a kind.
struct SideCensus : KindCounts {
  int men = 0;
  int lastKingSquare = 0;       // in a scan from a8
  bool pawnOnEdgeRank = false;  // a pawn on the first or the last rank
};

struct BoardCensus {
  SideCensus white;
  SideCensus black;
};

BoardCensus takeCensus(const std::array<int, 64>& board);

// Checks the editor board and returns the error flag: 0 when the position is
// accepted, 1 when it is refused. A refusal shows exactly one message through
// `sink` (caption kMessageCaption); an accepted position shows none.
//
// Once the counts and pawns have passed, frame 1 of `stack` receives the
// editor board and the king squares found (the last of each colour in a scan
// from a8) before the check test, so they are written even when that test
// refuses the position. Nothing else in the stack is touched: the castling
// settings, root side and en-passant square are the job's own set-up.
int validatePosition(const BoardSetup& setup, PlyStack& stack, MessageSink& sink);

}  // namespace velkaro::core
