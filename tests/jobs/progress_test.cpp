// The progress panel's texts made from a job's numbers, and the billions
// carry of the tested-move counter.

#include <gtest/gtest.h>

#include "jobs/progress_text.h"

namespace velkaro::jobs {
namespace {

TEST(Progress, Texts) {
  EXPECT_EQ(clockText(0), "00:00:00");
  EXPECT_EQ(clockText(3'723'999), "01:02:03");
  EXPECT_EQ(testedMovesText({0, 999}), "  999");
  EXPECT_EQ(testedMovesText({0, 1'234'567}), "  1 234 567");
  EXPECT_EQ(testedMovesText({3, 1'234}), " 3 000 001 234");  // the remainder keeps nine digits
  EXPECT_EQ(testedMovesText({1234, 0}), " 1 234 000 000 000");
  // Whole moves per millisecond first, then times 1000.
  EXPECT_EQ(speedText({0, 5'000}, 2), "2 500 000");
  EXPECT_EQ(speedText({0, 999}, 1'000), "0");
  EXPECT_EQ(speedText({2, 0}, 1'000), "2 000 000 000");
  EXPECT_EQ(speedText({0, 5'000}, 0), "0");
  // Whole seconds for placements.
  EXPECT_EQ(speedPerSecondText({0, 5'000}, 2'999), "2 500");
  EXPECT_EQ(speedPerSecondText({0, 5'000}, 999), "0");
}

TEST(Progress, BillionsCarry) {
  BigCount count{0, BigCount::kBillion - 1};
  count.add();
  EXPECT_EQ(count, (BigCount{1, 0}));
  // The helpmate search and the counter carry one move later.
  BigCount late{0, BigCount::kBillion - 1};
  late.addCarryingLate();
  EXPECT_EQ(late, (BigCount{0, BigCount::kBillion}));
  late.addCarryingLate();
  EXPECT_EQ(late, (BigCount{1, 1}));
  EXPECT_EQ(late.total(), 1'000'000'001u);
}

}  // namespace
}  // namespace velkaro::jobs
