// The mate pictures of a helpmate's last plies may rule out a whole position,
// or before the last move of the side to be mated all its moves but some.
// Wherever they do, no line of that length may end in mate: all of them are
// tried, in many random positions.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "core/legal.h"
#include "core/mate_picture.h"
#include "core/mate_test.h"
#include "random_setup.h"
#include "table_file.h"

namespace velkaro {
namespace {

// Whether `mated` stands mated at `ply`, or at one of its own plies of a line
// of at most `plies` more moves.
bool mateWithin(core::PlyStack& stack, int ply, int plies, int mated) {
  int lastEscape = -1;
  if (stack.sideAt(ply) == mated && core::inCheck(mated, stack[ply].position) &&
      !core::hasLegalMove(stack, ply, lastEscape)) {
    return true;
  }
  if (plies == 0) return false;
  for (int next = 0; core::nextLegalMove(stack, ply, next) < 0; next = 1) {
    if (mateWithin(stack, ply + 1, plies - 1, mated)) return true;
  }
  return false;
}

// One cache for every position of the tests, as for every position of a
// search: set-ups met again are answered from it.
core::CoverCache cover;

template <int Side>
bool mayBeBuilt(const core::Position& position, int ownMoves, int matingMoves) {
  return core::mateMayBeBuilt<Side>(position, ownMoves, matingMoves, cover);
}

struct WholeCase {
  const char* name;
  bool matedToMove;  // else the mating side moves at ply 1
  int ownMoves;
  int matingMoves;
  int positions;
  int minMen;
  int moreMen;
};

constexpr WholeCase kWholeCases[] = {
    {"mate in one", false, 0, 1, 20000, 5, 10},
    {"a move each", true, 1, 1, 20000, 5, 10},
    {"mating side first", false, 1, 2, 2000, 4, 6},
    {"two moves each", true, 2, 2, 200, 4, 4},
};

TEST(MatePicture, NeverRulesOutAPositionWithAMate) {
  for (const WholeCase& test : kWholeCases) {
    std::mt19937 random(20261125);
    int ruledOut = 0;
    int mated = 0;
    for (int i = 0; i < test.positions / testing::kRandomShare; ++i) {
      core::PlyStack stack;
      if (!testing::randomRoot(random, test.minMen, test.moreMen, stack)) continue;
      const int matedSide = test.matedToMove ? stack.sideAt(1) : -stack.sideAt(1);
      const core::Position& position = stack[1].position;
      const bool may = matedSide == core::White ? mayBeBuilt<core::White>(position, test.ownMoves, test.matingMoves)
                                                : mayBeBuilt<core::Black>(position, test.ownMoves, test.matingMoves);
      const bool mate = mateWithin(stack, 1, test.ownMoves + test.matingMoves, matedSide);
      ruledOut += !may;
      mated += mate;
      EXPECT_TRUE(may || !mate) << test.name << ", position " << i;
    }
    // Both answers come up often enough for the comparison to mean something.
    EXPECT_GT(ruledOut, test.positions / testing::kRandomShare / 20) << test.name;
    EXPECT_GT(mated, test.positions / testing::kRandomShare / 400) << test.name;
  }
}

// Two own moves before the mate: the moves the pictures let through, all
// where one fits with a move to spare; `restricted` counts the others.
template <int Side>
core::MoverTargets allowedSecondToLastMoves(const core::Position& position, int& restricted) {
  core::MoverTargets allowed{};
  using Moves = typename core::MatePictures<Side>::Moves;
  const Moves moves = core::MatePictures<Side>(position, 2, 2, cover).secondToLastMoves(position, allowed);
  if (moves == Moves::All) allowed.fill(~std::uint64_t{0});
  restricted += moves != Moves::All;
  return allowed;
}

TEST(MatePicture, AllowsTheLinesOfKnownMates) {
  const auto rows = testing::readTable(VELKARO_TEST_DATA_DIR "/mate_picture.txt");
  ASSERT_FALSE(rows.empty());
  for (const auto& row : rows) {
    ASSERT_EQ(row.size(), 5u);
    core::PlyStack stack;
    ASSERT_EQ(testing::fenRoot(row[0], stack), "") << row[0];
    const int ownMoves = std::stoi(row[1]);
    const int matingMoves = std::stoi(row[2]);
    const int side = stack.sideAt(1);
    EXPECT_TRUE(mateWithin(stack, 1, ownMoves + matingMoves, side)) << row[0];
    const bool may = side == core::White ? mayBeBuilt<core::White>(stack[1].position, ownMoves, matingMoves)
                                         : mayBeBuilt<core::Black>(stack[1].position, ownMoves, matingMoves);
    EXPECT_TRUE(may) << row[0] << ": " << row[4];
    if (row[3] == "-") continue;
    const auto squareOf = [](std::string_view name) { return core::squareAt(name[0] - 'a', name[1] - '0'); };
    int restricted = 0;
    const core::MoverTargets allowed = side == core::White
                                           ? allowedSecondToLastMoves<core::White>(stack[1].position, restricted)
                                           : allowedSecondToLastMoves<core::Black>(stack[1].position, restricted);
    const std::string_view move = row[3];
    EXPECT_EQ((allowed[static_cast<std::size_t>(squareOf(move.substr(0, 2)))] >> squareOf(move.substr(2, 2))) & 1, 1u)
        << row[0] << ": " << row[4];
  }
}

// Before the last move of the side to be mated: the moves the pictures let
// through; `restricted` counts the positions where they keep to some.
template <int Side>
core::MoverTargets allowedLastMoves(const core::Position& position, int& restricted) {
  core::MoverTargets allowed{};
  const auto moves = core::MatePictures<Side>(position, 1, 1, cover).lastMoves();
  restricted += !moves.any;
  const int king = Side == core::White ? position.whiteKingSquare : position.blackKingSquare;
  for (int square = 0; square < 64; ++square) {
    allowed[static_cast<std::size_t>(square)] =
        moves.any ? ~std::uint64_t{0} : square == king ? moves.king : moves.others;
  }
  return allowed;
}

// The moves at ply 1 of the side to be mated, by the mover's square, that
// the pictures let through with `ownMoves` moves of each side left.
core::MoverTargets allowedMoves(const core::PlyStack& stack, int ownMoves, int& restricted) {
  const core::Position& position = stack[1].position;
  if (ownMoves == 1) {
    return stack.sideAt(1) == core::White ? allowedLastMoves<core::White>(position, restricted)
                                          : allowedLastMoves<core::Black>(position, restricted);
  }
  return stack.sideAt(1) == core::White ? allowedSecondToLastMoves<core::White>(position, restricted)
                                        : allowedSecondToLastMoves<core::Black>(position, restricted);
}

struct MovesCase {
  int ownMoves;  // and as many of the mating side
  int positions;
  int minMen;
  int moreMen;
};

constexpr MovesCase kMovesCases[] = {
    {1, 20000, 5, 10},
    {2, 400, 4, 3},
};

// A move the pictures rule out never starts a line that mates.
TEST(MatePicture, NeverRulesOutAMoveThatLeadsToMate) {
  for (const MovesCase& test : kMovesCases) {
    std::mt19937 random(20261125);
    int restricted = 0;
    int ruledOut = 0;
    int mated = 0;
    const int positions = test.positions / testing::kRandomShare;
    for (int i = 0; i < positions; ++i) {
      core::PlyStack stack;
      if (!testing::randomRoot(random, test.minMen, test.moreMen, stack)) continue;
      const int side = stack.sideAt(1);
      const core::MoverTargets allowed = allowedMoves(stack, test.ownMoves, restricted);
      for (int first = 0; core::nextLegalMove(stack, 1, first) < 0; first = 1) {
        const bool kept = ((allowed[static_cast<std::size_t>(stack[1].fromSquare)] >> stack[1].toSquare) & 1) != 0;
        const bool mate = mateWithin(stack, 2, 2 * test.ownMoves - 1, side);
        ruledOut += !kept;
        mated += mate;
        EXPECT_TRUE(kept || !mate) << test.ownMoves << " moves, position " << i << ", move from "
                                   << stack[1].fromSquare << " to " << stack[1].toSquare;
      }
    }
    EXPECT_GT(restricted, positions / 4) << test.ownMoves;
    EXPECT_GT(ruledOut, positions) << test.ownMoves;
    EXPECT_GT(mated, 0) << test.ownMoves;
  }
}

}  // namespace
}  // namespace velkaro
