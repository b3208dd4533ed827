// The progress panel's texts: clock, tested moves with their billions, the
// coarse speed, and what a tick shows of the line under test.

#include <gtest/gtest.h>

#include <string>

#include "solver/job.h"
#include "solver_fixture.h"

namespace velkaro::solver {
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
}

TEST(Progress, BillionsCarry) {
  BigCount count{0, BigCount::kBillion - 1};
  count.add();
  EXPECT_EQ(count.billions, 1);
  EXPECT_EQ(count.remainder, 0);
  // The helpmate search and the counter carry one move later.
  BigCount late{0, BigCount::kBillion - 1};
  late.addCarryingLate();
  EXPECT_EQ(late.billions, 0);
  EXPECT_EQ(late.remainder, BigCount::kBillion);
  late.addCarryingLate();
  EXPECT_EQ(late.billions, 1);
  EXPECT_EQ(late.remainder, 1);
  EXPECT_EQ(late.total(), 1'000'000'001u);
}

// Each tick shows the clock, the counts and the line under test; the bar
// follows the first moves tried.
class TickLog : public Recorder {
 public:
  bool tick(const Progress& progress) override {
    lines.push_back(progress.line.firstBox[0] + " | " + progress.line.firstBox[1]);
    tested.push_back(progress.testedMoves);
    bars.push_back(progress.bar);
    return false;
  }
  std::vector<std::string> lines;
  std::vector<std::string> tested;
  std::vector<int> bars;
};

TEST(Progress, TicksShowTheLineUnderTest) {
  TickLog log;
  std::vector<std::string> messages;
  log.messages = &messages;
  auto job = std::make_unique<SolverJob>(log, log, log);
  Solve problem("8/7p/8/4p2K/5kPP/1Q4N1/8/8 w - -", "#3");
  job->setRefreshInterval(1000);
  ASSERT_EQ(job->start(problem.settings), RunEnd::Finished);
  ASSERT_EQ(log.lines.size(), job->testedMoves().total() / 1000);
  EXPECT_EQ(log.tested.front(), "  1 000");
  int deep = 0;
  for (const std::string& line : log.lines) {
    EXPECT_EQ(line.rfind("1. ", 0), 0u) << line;        // "1. <first move>, <reply>"
    deep += line.find(" | 2. ") != std::string::npos;  // moves 3 and 4, once the search is that deep
  }
  EXPECT_GT(deep, 0);
  EXPECT_TRUE(std::is_sorted(log.bars.begin(), log.bars.end()));
  EXPECT_LE(log.bars.back(), kProgressBarFull);
}

}  // namespace
}  // namespace velkaro::solver
