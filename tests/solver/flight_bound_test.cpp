// The flight count before the last move of the side to be mated may rule out
// every move but the king's. Wherever it does, in many random positions, no
// other move followed by any reply may mate: all of them are tried.

#include <gtest/gtest.h>

#include <random>
#include <string_view>

#include "core/flight_bound.h"
#include "core/legal.h"
#include "core/mate_test.h"
#include "core/validate.h"
#include "random_setup.h"

namespace velkaro {
namespace {

class NoMessages : public core::MessageSink {
 public:
  void showMessage(std::string_view, std::string_view) override {}
};

// Whether a move of the side at ply 1 other than the king's, then some reply,
// mates it.
bool someOtherMoveLetsItBeMated(core::PlyStack& stack) {
  const int king = stack.sideAt(1) * core::piece::King;
  int lastEscape = -1;
  for (int first = 0; core::nextLegalMove(stack, 1, first) < 0; first = 1) {
    if (stack[1].movedPiece == king) continue;
    for (int reply = 0; core::nextLegalMove(stack, 2, reply) < 0; reply = 1) {
      if (core::inCheck(stack.sideAt(3), stack[3].position) && !core::hasLegalMove(stack, 3, lastEscape)) return true;
    }
  }
  return false;
}

TEST(FlightBound, NeverRulesOutAMoveThatLetsTheKingBeMated) {
  std::mt19937 random(20261124);
  NoMessages messages;
  int ruledOut = 0;
  int mated = 0;
  for (int i = 0; i < 20000; ++i) {
    const core::BoardSetup setup = testing::randomSetup(random, 8 + static_cast<int>(random() % 12));
    core::PlyStack stack;
    if (core::validatePosition(setup, stack, messages) != 0) continue;
    core::setUpRoot(stack, setup);
    const core::Position& position = stack[1].position;
    const bool may = stack.sideAt(1) == core::White ? core::flightsMayAllBeCovered<core::White>(position, false)
                                                    : core::flightsMayAllBeCovered<core::Black>(position, false);
    const bool mates = someOtherMoveLetsItBeMated(stack);
    ruledOut += !may;
    mated += mates;
    EXPECT_TRUE(may || !mates) << "position " << i;
  }
  // Both answers come up often enough for the comparison to mean something.
  EXPECT_GT(ruledOut, 500);
  EXPECT_GT(mated, 300);
}

}  // namespace
}  // namespace velkaro
