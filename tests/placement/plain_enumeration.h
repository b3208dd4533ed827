#pragma once
// The plain enumeration, written step by step from the description of the
// Positions mode: the odometer over the groups on a 64-square board, every
// placement made and judged (the square-attack test of the chess core for
// non-attacking pieces, a cover map built square by square for the other
// goals). The reference the placement search is checked against.

#include <cstdint>
#include <vector>

#include "placement/board_text.h"
#include "placement/layout.h"

namespace velkaro::placement::testing {

struct PlainResult {
  std::vector<Board> finds;  // the kept placements, in order (the cover goals' since the best was set)
  int best = 0;
  std::uint64_t examined = 0;
};

PlainResult plainEnumeration(const PieceCounts& counts, Goal goal);

// The judgements on one placement.
bool noManAttacked(const Board& board);
// Free squares no man covers; `wholeDiagonals` when bishops or queens are alone.
int coverScore(const Board& board, bool wholeDiagonals);

}  // namespace velkaro::placement::testing
