#pragma once
// The placements of the men to add. "All, in turn": an odometer over the
// groups, the last group turning fastest, each group running through its
// combinations of free squares from the lowest squares upwards, so that every
// placement comes once. "At random": every group's men drawn anew on empty
// squares, from a seeded generator, so that a run can be repeated.

#include <array>
#include <cstdint>
#include <random>
#include <vector>

#include "generator/setup_check.h"

namespace velkaro::generator {

using Board = std::array<std::int8_t, 64>;

// The fixed men of a set-up as a board.
Board fixedBoard(const core::BoardSetup& setup);

class Odometer {
 public:
  Odometer(const Board& fixed, std::vector<Group> groups);

  // The first placement: each group in list order on the first squares it
  // may take. False when the groups cannot all stand.
  bool first();
  // The placement after the current one; false when there is none.
  bool next();

  Board board() const;
  // Whether both stand on the same placement (the groups alike).
  bool samePlacement(const Odometer& other) const { return squares_ == other.squares_; }

 private:
  bool advance(std::size_t group);
  bool placeFirst(std::size_t group);
  bool settleFrom(std::size_t group);
  // The squares `group` may stand on now: its allowed squares that neither a
  // fixed man nor another group holds.
  std::uint64_t usable(std::size_t group) const;

  Board fixed_;
  std::uint64_t fixedSquares_ = 0;
  std::vector<Group> groups_;
  std::vector<std::uint64_t> squares_;  // per group, the squares its men stand on
};

class RandomPlacer {
 public:
  RandomPlacer(const Board& fixed, std::vector<Group> groups, std::uint64_t seed);

  // Draws a placement into `board`: each group from the last to the first,
  // each man's square drawn until it is empty (a pawn's on ranks 2 to 7).
  // Returns whether every drawn man stands where its kind is allowed.
  bool draw(Board& board);

 private:
  Board fixed_;
  std::vector<Group> groups_;
  std::mt19937_64 engine_;
};

}  // namespace velkaro::generator
