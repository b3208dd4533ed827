// The iterative perft walk: no recursion, one frame per ply.

#include "core/perft.h"

#include "core/legal.h"

namespace velkaro::core {

namespace {

template <int Side>
std::uint64_t countLegalMoves(PlyStack& stack, int ply) {
  std::uint64_t moves = 0;
  if (nextMove<Side, MoveTest::Legal>(stack, ply, 0) < 0) {
    do ++moves;
    while (nextMove<Side, MoveTest::Legal>(stack, ply, 1) < 0);
  }
  return moves;
}

std::uint64_t countAt(PlyStack& stack, int ply) {
  return stack.sideAt(ply) == White ? countLegalMoves<White>(stack, ply) : countLegalMoves<Black>(stack, ply);
}

}  // namespace

std::uint64_t perft(PlyStack& stack, int depth, const FirstMoveCount& onFirstMove) {
  if (depth <= 0 || depth > kMaxPerftDepth) return depth == 0 ? 1 : 0;
  if (depth == 1 && !onFirstMove) return countAt(stack, 1);

  std::uint64_t total = 0;
  std::uint64_t beforeFirstMove = 0;
  int ply = 1;
  int continuing = 0;
  for (;;) {
    if (ply == depth && depth > 1) {
      total += countAt(stack, ply);
      --ply;
      continuing = 1;
      continue;
    }
    if (ply == 1 && continuing && onFirstMove) onFirstMove(stack[1], total - beforeFirstMove);
    if (nextLegalMove(stack, ply, continuing) < 0) {
      if (ply == 1) beforeFirstMove = total;
      if (depth == 1) {
        ++total;
        continuing = 1;
        continue;
      }
      ++ply;
      continuing = 0;
    } else {
      if (--ply == 0) break;
      continuing = 1;
    }
  }
  return total;
}

}  // namespace velkaro::core
