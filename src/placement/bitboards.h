#pragma once
// Sets of squares as 64-bit words (bit s is square s, a8 = 0 ... h1 = 63) and
// the squares each kind of man reaches from each square, built at compile
// time. Sliding men reach along their lines up to and including the first
// occupied square.

#include <array>
#include <bit>
#include <cstdint>
#include <utility>

#include "core/geometry.h"

namespace velkaro::placement {

using Squares = std::uint64_t;

constexpr Squares bitOf(int square) { return Squares{1} << square; }

// The squares from `square` to h1; none from 64 on.
constexpr Squares squaresFrom(int square) { return square >= 64 ? 0 : ~Squares{0} << square; }

using core::geometry::countOf;
constexpr int lowestOf(Squares squares) { return std::countr_zero(squares); }

namespace tables {

// The eight directions as (file step, row step), rows counting down from
// rank 8: west, north-west, north, north-east, then east, south-east, south,
// south-west, whose steps raise the square index.
inline constexpr std::pair<int, int> kDirections[8] = {{-1, 0}, {-1, -1}, {0, -1}, {1, -1},
                                                       {1, 0},  {1, 1},   {0, 1},  {-1, 1}};
inline constexpr int kLineDirections[4] = {0, 2, 4, 6};
inline constexpr int kDiagonalDirections[4] = {1, 3, 5, 7};
constexpr bool raisesIndex(int direction) { return direction >= 4; }

constexpr std::array<std::array<Squares, 64>, 8> makeRays() {
  std::array<std::array<Squares, 64>, 8> rays{};
  for (int direction = 0; direction < 8; ++direction) {
    const auto [fileStep, rowStep] = kDirections[direction];
    for (int square = 0; square < 64; ++square) {
      const int length = core::geometry::rayLength(square, fileStep, rowStep);
      for (int distance = 1; distance <= length; ++distance) {
        rays[direction][square] |= bitOf(core::geometry::rayStep(square, fileStep, rowStep, distance));
      }
    }
  }
  return rays;
}

template <std::size_t N>
constexpr std::array<Squares, 64> makeLeaps(const std::pair<int, int> (&steps)[N]) {
  std::array<Squares, 64> leaps{};
  for (int square = 0; square < 64; ++square) {
    for (auto [fileStep, rowStep] : steps) {
      const int target = core::geometry::leap(square, fileStep, rowStep);
      if (target >= 0) leaps[square] |= bitOf(target);
    }
  }
  return leaps;
}

inline constexpr std::pair<int, int> kKingSteps[8] = {{-1, -1}, {0, -1}, {1, -1}, {-1, 0},
                                                      {1, 0},   {-1, 1}, {0, 1},  {1, 1}};
// A white pawn takes diagonally towards rank 8; it is taken from one rank lower.
inline constexpr std::pair<int, int> kPawnSteps[2] = {{-1, -1}, {1, -1}};
inline constexpr std::pair<int, int> kPawnTakerSteps[2] = {{-1, 1}, {1, 1}};

}  // namespace tables

inline constexpr auto kRays = tables::makeRays();
inline constexpr auto kKingReach = tables::makeLeaps(tables::kKingSteps);
inline constexpr auto kKnightReach = tables::makeLeaps(core::geometry::kKnightLeaps);
inline constexpr auto kPawnReach = tables::makeLeaps(tables::kPawnSteps);
// The squares from which a white pawn takes on the square.
inline constexpr auto kPawnTakers = tables::makeLeaps(tables::kPawnTakerSteps);

static_assert(countOf(kKnightReach[56]) == 2);              // a1: b3 and c2
static_assert(countOf(kKingReach[0]) == 3);                 // a8: b8, a7, b7
static_assert(kPawnReach[48] == bitOf(41));                 // a2 takes on b3 only
static_assert(kPawnTakers[41] == (bitOf(48) | bitOf(50)));  // b3 is taken from a2 and c2
static_assert(countOf(kRays[6][3]) == 7);                   // d8 southwards to d1
static_assert(kRays[1][9] == bitOf(0));                     // b7 north-west: a8

// The squares a man reaches along one direction: up to the first occupied
// square, that one included.
inline Squares rayReach(int direction, int square, Squares occupied) {
  const Squares ray = kRays[direction][square];
  const Squares blockers = ray & occupied;
  if (blockers == 0) return ray;
  const int first = tables::raisesIndex(direction) ? std::countr_zero(blockers) : 63 - std::countl_zero(blockers);
  return ray ^ kRays[direction][first];
}

inline Squares lineReach(int square, Squares occupied) {
  Squares reach = 0;
  for (int direction : tables::kLineDirections) reach |= rayReach(direction, square, occupied);
  return reach;
}

inline Squares diagonalReach(int square, Squares occupied) {
  Squares reach = 0;
  for (int direction : tables::kDiagonalDirections) reach |= rayReach(direction, square, occupied);
  return reach;
}

}  // namespace velkaro::placement
