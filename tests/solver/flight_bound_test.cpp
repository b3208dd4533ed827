// The flight counts of a helpmate's last moves may rule out every move of the
// side to be mated but the king's, the king's steps too, or all its moves but
// those that help the reply mate; a ply earlier, some or all moves of the
// mating side. Wherever they do, no such
// line may end in mate: all of them are tried, in many random positions and
// in a table of mates that once were ruled out.

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "core/flight_bound.h"
#include "core/legal.h"
#include "core/mate_picture.h"
#include "core/mate_test.h"
#include "random_setup.h"
#include "table_file.h"

namespace velkaro {
namespace {

bool matedAt(core::PlyStack& stack, int ply) {
  int lastEscape = -1;
  return core::inCheck(stack.sideAt(ply), stack[ply].position) && !core::hasLegalMove(stack, ply, lastEscape);
}

// Whether a move at ply 1 that does (or does not) move the king, not one of
// the `excluded` moves, then some reply, mates the side moving at ply 1.
bool mateAfterTwo(core::PlyStack& stack, bool kingMoves, const core::MoverTargets& excluded) {
  const int king = stack.sideAt(1) * core::piece::King;
  for (int first = 0; core::nextLegalMove(stack, 1, first) < 0; first = 1) {
    if ((stack[1].movedPiece == king) != kingMoves) continue;
    if ((excluded[static_cast<std::size_t>(stack[1].fromSquare)] >> stack[1].toSquare) & 1) continue;
    for (int reply = 0; core::nextLegalMove(stack, 2, reply) < 0; reply = 1) {
      if (matedAt(stack, 3)) return true;
    }
  }
  return false;
}

// Whether a move at ply 1, not one of the `excluded` moves, mates the other
// side, or starts a line of three moves that does.
bool mateWithinThree(core::PlyStack& stack, const core::MoverTargets& excluded) {
  for (int first = 0; core::nextLegalMove(stack, 1, first) < 0; first = 1) {
    if ((excluded[static_cast<std::size_t>(stack[1].fromSquare)] >> stack[1].toSquare) & 1) continue;
    if (matedAt(stack, 2)) return true;
    for (int second = 0; core::nextLegalMove(stack, 2, second) < 0; second = 1) {
      for (int third = 0; core::nextLegalMove(stack, 3, third) < 0; third = 1) {
        if (matedAt(stack, 4)) return true;
      }
    }
  }
  return false;
}

// One cache for every position of the tests, as for every position of a
// search: set-ups met again are answered from it.
core::CoverCache cover;

template <int Side>
core::MoverTargets allowedMoves(const core::Position& position, const std::string& moves) {
  core::MoverTargets allowed{};
  if (moves == "three" || moves == "pictures") {
    // "pictures": counted only for the king's squares where a mate picture fits
    const bool pictures = moves == "pictures" && core::picturesPay(position);
    const core::MatePictures<-Side> fitting(position, 1, 2, cover);
    core::firstMovesMayMate<-Side>(
        position, false, [&](int square) { return !pictures || fitting.fitsWithKingOn(square); }, allowed);
  } else if (moves == "helping") {
    if (!core::helpingLastMoves(core::LastMoveView<Side>(position), false, allowed)) allowed.fill(~std::uint64_t{0});
  } else if (moves == "king" ? core::kingStepsMayBeMated(core::LastMoveView<Side>(position))
                             : core::flightsMayAllBeCovered(core::LastMoveView<Side>(position), false)) {
    allowed.fill(~std::uint64_t{0});
  }
  return allowed;
}

// The moves at ply 1, by the mover's square, that a count lets through: those
// of the side to be mated ("king", "other", "helping": the king's are always
// let through), or of the side mating it ("three"; "pictures" where those
// leave squares of the king out).
core::MoverTargets allowedMoves(const core::PlyStack& stack, const std::string& moves) {
  return stack.sideAt(1) == core::White ? allowedMoves<core::White>(stack[1].position, moves)
                                        : allowedMoves<core::Black>(stack[1].position, moves);
}

// Whether a line whose first move is not one of the `excluded` mates.
bool mateByOthers(core::PlyStack& stack, const std::string& moves, const core::MoverTargets& excluded = {}) {
  return moves == "three" || moves == "pictures" ? mateWithinThree(stack, excluded)
                                                 : mateAfterTwo(stack, moves == "king", excluded);
}

// Whether the count rules out some legal move at ply 1.
bool rulesOutSome(core::PlyStack& stack, const core::MoverTargets& allowed) {
  for (int first = 0; core::nextLegalMove(stack, 1, first) < 0; first = 1) {
    if (((allowed[static_cast<std::size_t>(stack[1].fromSquare)] >> stack[1].toSquare) & 1) == 0) return true;
  }
  return false;
}

struct RandomCase {
  const char* moves;
  int positions;
  int minMen;
  int moreMen;
};

constexpr RandomCase kRandomCases[] = {
    {"other", 20000, 8, 12},
    {"king", 20000, 8, 12},
    {"helping", 20000, 8, 12},
    {"three", 3000, 5, 8},
    {"pictures", 3000, 5, 8},
};

TEST(FlightBound, NeverRulesOutALineThatMates) {
  for (const RandomCase& test : kRandomCases) {
    std::mt19937 random(20261124);
    int ruledOut = 0;
    int mated = 0;
    for (int i = 0; i < test.positions / testing::kRandomShare; ++i) {
      core::PlyStack stack;
      if (!testing::randomRoot(random, test.minMen, test.moreMen, stack)) continue;
      const core::MoverTargets allowed = allowedMoves(stack, test.moves);
      ruledOut += rulesOutSome(stack, allowed);
      mated += mateByOthers(stack, test.moves);
      EXPECT_FALSE(mateByOthers(stack, test.moves, allowed)) << test.moves << ", position " << i;
    }
    // Both answers come up often enough for the comparison to mean something.
    EXPECT_GT(ruledOut, test.positions / testing::kRandomShare / 40) << test.moves;
    EXPECT_GT(mated, test.positions / testing::kRandomShare / 200) << test.moves;
  }
}

TEST(FlightBound, AllowsTheLinesOfKnownMates) {
  const auto rows = testing::readTable(VELKARO_TEST_DATA_DIR "/flight_bound.txt");
  ASSERT_FALSE(rows.empty());
  for (const auto& row : rows) {
    ASSERT_EQ(row.size(), 3u);
    core::PlyStack stack;
    ASSERT_EQ(testing::fenRoot(row[0], stack), "") << row[0];
    EXPECT_TRUE(mateByOthers(stack, row[1])) << row[0];
    EXPECT_FALSE(mateByOthers(stack, row[1], allowedMoves(stack, row[1]))) << row[0] << ": " << row[2];
  }
}

}  // namespace
}  // namespace velkaro
