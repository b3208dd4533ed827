// The continuation counter: an iterative walk over the ply stack to each
// depth in turn, counting the legal moves at the last ply without going
// deeper, and one count line per depth.

#include "counter/counting_job.h"

#include <cstdio>

#include "core/legal.h"
#include "core/movegen.h"
#include "core/notation.h"
#include "core/validate.h"

namespace velkaro::counter {

namespace {

using solver::BigCount;

// Blanks before the "x" column, fewer as the count gains digits.
const char* padding(std::int32_t count) {
  static constexpr struct {
    std::int32_t above;
    int blanks;
  } kSteps[] = {{99'999'999, 17}, {9'999'999, 19}, {999'999, 21}, {99'999, 24},
                {9'999, 26},      {999, 28},       {99, 31},      {9, 33}};
  static const std::string kBlanks(35, ' ');
  for (const auto& step : kSteps) {
    if (count > step.above) return kBlanks.c_str() + (35 - step.blanks);
  }
  return kBlanks.c_str();
}

std::int64_t inMillions(const BigCount& count) {
  return static_cast<std::int64_t>(count.billions) * 1000 + count.remainder / 1'000'000;
}

}  // namespace

std::string countLine(const BigCount& count, const BigCount& previous, int depth, int rootSide) {
  std::string billions;
  std::string number;
  std::string column;
  double ratio = 0;  // a zero previous count (no moves at the depth before) gives 0.00
  if (count.billions == 0) {
    number = core::GroupDigits(std::to_string(count.remainder));
    column = padding(count.remainder);
    if (previous.total() > 0) ratio = static_cast<double>(count.remainder) / static_cast<double>(previous.total());
  } else {
    billions = core::GroupDigits(std::to_string(count.billions));
    number =
        core::GroupDigits(std::to_string(static_cast<std::int64_t>(count.remainder) + BigCount::kBillion)).substr(2);
    column = std::string(count.billions > 9 ? 12 : 14, ' ');
    if (inMillions(previous) > 0)
      ratio = static_cast<double>(inMillions(count)) / static_cast<double>(inMillions(previous));
  }
  char ratioText[32];
  std::snprintf(ratioText, sizeof ratioText, "%.2f", ratio);
  const int sideAtDepth = depth % 2 == 1 ? -rootSide : rootSide;
  return billions + " " + number + column + "x" + ratioText +
         (sideAtDepth == core::White ? "   / White /" : "   / Black /");
}

solver::RunEnd CountingJob::start(const CountSettings& settings) {
  settings_ = settings;
  lateBillionCarry_ = true;
  stopRequested_ = false;
  finished_ = true;
  startClock(false);
  if (settings_.depth < 1 || settings_.depth > kMaxCountDepth ||
      (!settings_.firstMove && core::validatePosition(settings_.setup, stack_, messages_) != 0)) {
    stopClock();
    return solver::RunEnd::Refused;
  }
  finished_ = false;
  core::setUpRoot(stack_, settings_.setup);
  if (settings_.firstMove) solver::applyFirstMove(stack_, *settings_.firstMove);
  depth_ = 1;
  leaves_ = BigCount{};
  previous_ = BigCount{0, 1};  // the ratio of depth 1 is its count
  startDepth();
  return run();
}

solver::RunEnd CountingJob::resume() {
  if (finished_) return solver::RunEnd::Finished;
  stopRequested_ = false;
  startClock(true);
  insertPlaceholder(" counting ...");
  return run();
}

void CountingJob::startDepth() {
  ply_ = startPly();
  descending_ = true;
  firstMovesTried_ = 0;
  firstMovesTotal_ = settings_.firstMove ? 1 : core::countMoves(stack_, 1);
  insertPlaceholder(" counting ...");
}

solver::RunEnd CountingJob::run() {
  for (;;) {
    if (!walk()) {
      stopClock();
      return solver::RunEnd::Stopped;
    }
    reportDepth();
    if (++depth_ > settings_.depth) {
      finished_ = true;
      reportSink_.beep();
      stopClock();
      return solver::RunEnd::Finished;
    }
    startDepth();
  }
}

// Walks the tree to the current depth; false when a stop was asked for (the
// walk's place is kept for Continue).
bool CountingJob::walk() {
  if (depth_ < startPly()) {  // depth 1 of a forced first move: that move alone
    countMove(leaves_);
    return true;
  }
  for (;;) {
    if (ply_ == depth_) {
      countLeaves(ply_);
    } else if (core::nextLegalMove(stack_, ply_, descending_ ? 0 : 1) < 0) {
      countTestedMove();
      if (ply_ == 1) {
        ++firstMovesTried_;
        const int bar = firstMovesTotal_ > 0 ? firstMovesTried_ * solver::kProgressBarFull / firstMovesTotal_ : 0;
        moveBar(bar < solver::kProgressBarFull ? bar : solver::kProgressBarFull);
      }
      ++ply_;
      descending_ = true;
      continue;
    }
    if (--ply_ < startPly()) return true;
    descending_ = false;
    if (stopRequested_) return false;
  }
}

// Every legal move at the last ply is counted; none is gone into.
void CountingJob::countLeaves(int ply) {
  for (int continuing = 0; core::nextLegalMove(stack_, ply, continuing) < 0; continuing = 1) countMove(leaves_);
}

void CountingJob::countMove(BigCount& leaves) {
  leaves.add();
  countTestedMove();
}

void CountingJob::reportDepth() {
  deletePending();
  char heading[40];
  std::snprintf(heading, sizeof heading, "In %d single moves:", depth_);
  addRootLine(heading);
  addRootLine(countLine(leaves_, previous_, depth_, stack_.rootSide));
  previous_ = leaves_;
  leaves_ = BigCount{};
  moveBar(solver::kProgressBarFull);
  finishResult(false);
  finalUpdate();
}

}  // namespace velkaro::counter
