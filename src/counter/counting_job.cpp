// The continuation counter: an iterative walk over the ply stack to each
// depth in turn, counting the legal moves at the last ply without going
// deeper, and one count line per depth.

#include "counter/counting_job.h"

#include "core/legal.h"
#include "core/movegen.h"
#include "core/validate.h"

namespace velkaro::counter {

jobs::RunEnd CountingJob::start(const CountSettings& settings) {
  settings_ = settings;
  lateBillionCarry_ = true;
  finished_ = true;
  startClock(false);
  if (settings_.depth < 1 || settings_.depth > kMaxCountDepth ||
      (!settings_.firstMove && core::validatePosition(settings_.setup, stack_, messages_) != 0)) {
    stopClock();
    return jobs::RunEnd::Refused;
  }
  finished_ = false;
  core::setUpRoot(stack_, settings_.setup);
  if (settings_.firstMove) core::applyFirstMove(stack_, *settings_.firstMove);
  depth_ = 1;
  leaves_ = jobs::BigCount{};
  previous_ = jobs::BigCount{0, 1};  // the ratio of depth 1 is its count
  startDepth();
  return run();
}

jobs::RunEnd CountingJob::resume() {
  if (finished_) return jobs::RunEnd::Finished;
  startClock(true);
  records_.record(solver::Searching{true});
  return run();
}

void CountingJob::startDepth() {
  ply_ = startPly();
  descending_ = true;
  firstMovesTried_ = 0;
  firstMovesTotal_ = settings_.firstMove ? 1 : core::countMoves(stack_, 1);
  records_.record(solver::Searching{true});
}

jobs::RunEnd CountingJob::run() {
  for (;;) {
    if (!walk()) {
      clearStopRequest();  // honoured
      stopClock();
      return jobs::RunEnd::Stopped;
    }
    reportDepth();
    if (++depth_ > settings_.depth) {
      finished_ = true;
      stopClock();
      return jobs::RunEnd::Finished;
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
      if (ply_ == 1) moveBarFor(++firstMovesTried_, firstMovesTotal_);
      ++ply_;
      descending_ = true;
      continue;
    }
    if (--ply_ < startPly()) return true;
    descending_ = false;
    if (stopRequested()) return false;
  }
}

// Every legal move at the last ply is counted; none is gone into.
void CountingJob::countLeaves(int ply) {
  for (int continuing = 0; core::nextLegalMove(stack_, ply, continuing) < 0; continuing = 1) countMove(leaves_);
}

void CountingJob::countMove(jobs::BigCount& leaves) {
  leaves.add();
  countTestedMove();
}

void CountingJob::reportDepth() {
  moveBar(jobs::kProgressBarFull);
  records_.record(solver::CountLine{depth_, leaves_, previous_, stack_.rootSide, depth_ == settings_.depth});
  previous_ = leaves_;
  leaves_ = jobs::BigCount{};
  finalUpdate();
}

}  // namespace velkaro::counter
