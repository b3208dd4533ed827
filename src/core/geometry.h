#pragma once
// Compile-time board geometry shared by the per-square move generators and
// attack tests: how far a ray runs from a square, and where its steps land.

#include <bit>
#include <cstdint>
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

// The number of squares in a set of squares, one bit a square. Built for the
// baseline x86-64, std::popcount calls a library routine; the same sum by
// shifts in line is faster there.
constexpr int countOf(std::uint64_t squares) {
#if defined(__GNUC__) && defined(__x86_64__) && !defined(__POPCNT__)
  squares -= (squares >> 1) & 0x5555'5555'5555'5555u;
  squares = (squares & 0x3333'3333'3333'3333u) + ((squares >> 2) & 0x3333'3333'3333'3333u);
  squares = (squares + (squares >> 4)) & 0x0F0F'0F0F'0F0F'0F0Fu;
  return static_cast<int>((squares * 0x0101'0101'0101'0101u) >> 56);
#else
  return std::popcount(squares);
#endif
}
static_assert(countOf(0) == 0 && countOf(~std::uint64_t{0}) == 64 && countOf(0x8000'0000'0000'0101u) == 3);

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

// The number of squares in a set, as countOf gives it, for the helpmate
// counts, which add up small sets of squares all the time. Processors made
// since about 2008 do that in one instruction that the baseline build may not
// use; so each search step that runs those counts is marked
// VELKARO_COUNTING_STEP: it is built twice, for processors with the
// instruction and for the rest, and the loader picks the copy that fits the
// processor at hand. The step takes every count it calls in line, so that
// each copy is built whole for its processor. (The copy for the rest calls a
// library routine here.) Clang does not build two copies of a step that
// takes its calls in line, so it builds one.
inline int squaresIn(std::uint64_t squares) { return std::popcount(squares); }

}  // namespace velkaro::core::geometry

#if defined(__x86_64__) && !defined(__clang__)
#define VELKARO_COUNTING_STEP [[gnu::target_clones("popcnt", "default"), gnu::flatten]]
#else
#define VELKARO_COUNTING_STEP [[gnu::flatten]]
#endif
