// The odometer over the groups' combinations of squares, and the random
// placements.

#include "generator/placements.h"

#include <algorithm>
#include <bit>

namespace velkaro::generator {

namespace {

constexpr std::uint64_t bit(int square) { return std::uint64_t{1} << square; }

// The lowest `count` squares of `squares`, or 0 when it holds fewer.
std::uint64_t lowest(std::uint64_t squares, int count) {
  std::uint64_t taken = 0;
  for (; count > 0; --count) {
    if (squares == 0) return 0;
    taken |= squares & -squares;
    squares &= squares - 1;
  }
  return taken;
}

}  // namespace

Board fixedBoard(const core::BoardSetup& setup) {
  Board board{};
  for (int square = 0; square < 64; ++square) {
    board[static_cast<std::size_t>(square)] = static_cast<std::int8_t>(setup.board[static_cast<std::size_t>(square)]);
  }
  return board;
}

Odometer::Odometer(const Board& fixed, std::vector<Group> groups)
    : fixed_(fixed), groups_(std::move(groups)), squares_(groups_.size(), 0) {
  for (int square = 0; square < 64; ++square) {
    if (fixed_[static_cast<std::size_t>(square)] != 0) fixedSquares_ |= bit(square);
  }
}

std::uint64_t Odometer::usable(std::size_t group) const {
  std::uint64_t taken = fixedSquares_;
  for (std::size_t other = 0; other < squares_.size(); ++other) {
    if (other != group) taken |= squares_[other];
  }
  return groups_[group].allowed & ~taken;
}

bool Odometer::placeFirst(std::size_t group) {
  squares_[group] = lowest(usable(group), groups_[group].count);
  return squares_[group] != 0;
}

// The group's next combination. Going down from the top, its men met before
// any free square are lifted; the first man met after a free square is lifted
// too, and all the lifted men go back on the free squares just above it. When
// every man is lifted before a free square turns up, the group has been
// through all its combinations and its men stay lifted.
bool Odometer::advance(std::size_t group) {
  const std::uint64_t free = usable(group);
  std::uint64_t& mine = squares_[group];
  int lifted = 0;
  bool freeMet = false;
  for (int square = 63; square >= 0; --square) {
    if (mine & bit(square)) {
      mine &= ~bit(square);
      ++lifted;
      if (freeMet) {
        const std::uint64_t above = free & ~(bit(square + 1) - 1);  // a free square lies above
        mine |= lowest(above, lifted);
        return true;
      }
      if (lifted == groups_[group].count) return false;
    } else if (free & bit(square)) {
      freeMet = true;
    }
  }
  return false;
}

// Groups before `group` stand; it and the later ones are lifted. Places them
// in list order on their first squares; when one cannot stand, an earlier
// group moves on.
bool Odometer::settleFrom(std::size_t group) {
  for (;;) {
    while (group < groups_.size() && placeFirst(group)) ++group;
    if (group == groups_.size()) return true;
    do {
      if (group == 0) return false;
      --group;
    } while (!advance(group));
    ++group;
  }
}

bool Odometer::first() {
  std::fill(squares_.begin(), squares_.end(), 0);
  return settleFrom(0);
}

bool Odometer::next() {
  std::size_t group = groups_.size();
  do {
    if (group == 0) return false;
    --group;
  } while (!advance(group));
  return settleFrom(group + 1);
}

Board Odometer::board() const {
  Board board = fixed_;
  for (std::size_t group = 0; group < groups_.size(); ++group) {
    for (std::uint64_t men = squares_[group]; men != 0; men &= men - 1) {
      board[static_cast<std::size_t>(std::countr_zero(men))] = static_cast<std::int8_t>(groups_[group].code);
    }
  }
  return board;
}

RandomPlacer::RandomPlacer(const Board& fixed, std::vector<Group> groups, std::uint64_t seed)
    : fixed_(fixed), groups_(std::move(groups)), engine_(seed) {}

bool RandomPlacer::draw(Board& board) {
  board = fixed_;
  bool allowed = true;
  for (auto group = groups_.rbegin(); group != groups_.rend(); ++group) {
    const bool pawn = kindOf(group->code) == Kind::Pawn;
    for (int man = 0; man < group->count; ++man) {
      int square;
      do {
        square = pawn ? static_cast<int>(engine_() % 48) + 8 : static_cast<int>(engine_() % 64);
      } while (board[static_cast<std::size_t>(square)] != 0);
      board[static_cast<std::size_t>(square)] = static_cast<std::int8_t>(group->code);
      if ((group->allowed >> square & 1) == 0) allowed = false;
    }
  }
  return allowed;
}

}  // namespace velkaro::generator
