// The flight counts before the last move of the side to be mated may rule out
// every move but the king's, and the king's steps too. Wherever they do, no
// such move followed by any reply may mate: all of them are tried, in many
// random positions and in a table of mates that once were ruled out.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "core/flight_bound.h"
#include "core/legal.h"
#include "core/mate_test.h"
#include "core/validate.h"
#include "formats/standard_fen.h"
#include "random_setup.h"
#include "table_file.h"

namespace velkaro {
namespace {

class NoMessages : public core::MessageSink {
 public:
  void showMessage(std::string_view, std::string_view) override {}
};

// Whether a move of the side at ply 1 (a king move or another man's, as
// asked), then some reply, mates it.
bool someMoveLetsItBeMated(core::PlyStack& stack, bool kingMoves) {
  const int king = stack.sideAt(1) * core::piece::King;
  int lastEscape = -1;
  for (int first = 0; core::nextLegalMove(stack, 1, first) < 0; first = 1) {
    if ((stack[1].movedPiece == king) != kingMoves) continue;
    for (int reply = 0; core::nextLegalMove(stack, 2, reply) < 0; reply = 1) {
      if (core::inCheck(stack.sideAt(3), stack[3].position) && !core::hasLegalMove(stack, 3, lastEscape)) return true;
    }
  }
  return false;
}

template <int Side>
bool mayBeMated(const core::Position& position, bool kingMoves) {
  return kingMoves ? core::kingStepsMayBeMated<Side>(position) : core::flightsMayAllBeCovered<Side>(position, false);
}

TEST(FlightBound, NeverRulesOutAMoveThatLetsTheKingBeMated) {
  std::mt19937 random(20261124);
  NoMessages messages;
  int ruledOut[2] = {};
  int mated[2] = {};
  for (int i = 0; i < 20000; ++i) {
    const core::BoardSetup setup = testing::randomSetup(random, 8 + static_cast<int>(random() % 12));
    core::PlyStack stack;
    if (core::validatePosition(setup, stack, messages) != 0) continue;
    core::setUpRoot(stack, setup);
    for (const bool kingMoves : {false, true}) {
      const bool may = stack.sideAt(1) == core::White ? mayBeMated<core::White>(stack[1].position, kingMoves)
                                                      : mayBeMated<core::Black>(stack[1].position, kingMoves);
      const bool mates = someMoveLetsItBeMated(stack, kingMoves);
      ruledOut[kingMoves] += !may;
      mated[kingMoves] += mates;
      EXPECT_TRUE(may || !mates) << "position " << i << (kingMoves ? ", king moves" : ", other moves");
    }
  }
  // Both answers come up often enough for the comparison to mean something.
  for (const bool kingMoves : {false, true}) {
    EXPECT_GT(ruledOut[kingMoves], 500);
    EXPECT_GT(mated[kingMoves], 100);
  }
}

TEST(FlightBound, AllowsTheMovesOfKnownMates) {
  const auto rows = testing::readTable(VELKARO_TEST_DATA_DIR "/flight_bound.txt");
  ASSERT_FALSE(rows.empty());
  NoMessages messages;
  for (const auto& row : rows) {
    ASSERT_EQ(row.size(), 3u);
    std::string error;
    const auto setup = formats::readStandardFen(row[0], error);
    ASSERT_TRUE(setup) << row[0] << ": " << error;
    core::PlyStack stack;
    ASSERT_EQ(core::validatePosition(*setup, stack, messages), 0) << row[0];
    core::setUpRoot(stack, *setup);
    const bool kingMoves = row[1] == "king";
    EXPECT_TRUE(someMoveLetsItBeMated(stack, kingMoves)) << row[0];
    EXPECT_TRUE(stack.sideAt(1) == core::White ? mayBeMated<core::White>(stack[1].position, kingMoves)
                                               : mayBeMated<core::Black>(stack[1].position, kingMoves))
        << row[0] << ": " << row[2];
  }
}

}  // namespace
}  // namespace velkaro
