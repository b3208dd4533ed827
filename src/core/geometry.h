#pragma once
// Compile-time board geometry shared by the per-square move generators and
// attack tests: how far a ray runs from a square, and where its steps land.

#include <utility>

#include "core/position.h"

namespace velkaro::core::geometry {

// Directions as (file step, row step); rows count down from rank 8, so north
// (towards rank 8) is row step -1.
constexpr bool onBoard(int file, int row) { return file >= 0 && file < 8 && row >= 0 && row < 8; }

constexpr int rayLength(int square, int fileStep, int rowStep) {
  int length = 0;
  int file = square & 7;
  int row = square >> 3;
  for (;;) {
    file += fileStep;
    row += rowStep;
    if (!onBoard(file, row)) return length;
    ++length;
  }
}

constexpr int rayStep(int square, int fileStep, int rowStep, int distance) {
  return square + distance * (fileStep + 8 * rowStep);
}

// The target of a leap, or -1 when it leaves the board.
constexpr int leap(int square, int fileStep, int rowStep) {
  return onBoard((square & 7) + fileStep, (square >> 3) + rowStep) ? rayStep(square, fileStep, rowStep, 1) : -1;
}

static_assert(rayLength(0, 1, 1) == 7);    // a8 to h1
static_assert(rayLength(27, -1, 0) == 3);  // d5 westwards: c5, b5, a5
static_assert(leap(0, -1, 0) == -1);
static_assert(leap(63, -2, -1) == 53);     // h1 to f2

// A knight's leaps in ascending order of target index: -17, -15, -10, -6, +6,
// +10, +15, +17.
inline constexpr std::pair<int, int> kKnightLeaps[8] = {{-1, -2}, {1, -2}, {-2, -1}, {2, -1},
                                                        {-2, 1},  {2, 1},  {-1, 2}, {1, 2}};

constexpr int knightTargetCount(int square) {
  int count = 0;
  for (auto [fileStep, rowStep] : kKnightLeaps) count += leap(square, fileStep, rowStep) >= 0;
  return count;
}
static_assert(knightTargetCount(56) == 2);  // a knight on a1 reaches b3 and c2
static_assert(knightTargetCount(27) == 8);

}  // namespace velkaro::core::geometry
