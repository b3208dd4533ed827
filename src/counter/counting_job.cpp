// The continuation counter: an iterative walk over the ply stack to each
// depth in turn, counting the legal moves at the last ply without going
// deeper, and one count line per depth. The tree is shared out among walkers,
// each with a ply stack of its own, by the moves of the first ply, or, from
// the third depth on, by each first-ply move with each reply: a walker takes
// the next share nobody has taken yet and counts everything below it. Shares
// that small keep a walker from counting the last big one alone while the
// others wait. The counts add up to the same totals whoever counted what, so
// the result never depends on how the walkers met the moves; Stop leaves
// every walker where it stood.

#include "counter/counting_job.h"

#include <algorithm>
#include <thread>

#include "core/legal.h"
#include "core/validate.h"

namespace velkaro::counter {

// One walker's place in the tree and what it has counted of this depth. Only
// its own thread writes the counts; the job thread reads them for progress.
struct CountingJob::Walker {
  core::PlyStack stack;
  int ply = 1;
  bool descending = true;  // the walk enters `ply` afresh; otherwise it goes on there
  int index = -1;          // the place of the first-ply move made now in the first ply's moves
  int reply = -1;          // the same for the reply made now, when replies are shared
  bool done = false;       // no share is left for this walker
  std::atomic<std::uint64_t> leaves{0};
  std::atomic<std::uint64_t> tested{0};

  void add(std::atomic<std::uint64_t>& counter, std::uint64_t moves) {
    counter.store(counter.load(std::memory_order_relaxed) + moves, std::memory_order_relaxed);
  }
};

namespace {

// The tested moves in the counter's form, which carries into the billions
// only once the remainder exceeds one billion.
jobs::BigCount lateCarried(std::uint64_t total) {
  if (total == 0) return {};
  const std::uint64_t billions = (total - 1) / jobs::BigCount::kBillion;
  return {static_cast<std::int32_t>(billions),
          static_cast<std::int32_t>(total - billions * jobs::BigCount::kBillion)};
}

jobs::BigCount carried(std::uint64_t total) {
  return {static_cast<std::int32_t>(total / jobs::BigCount::kBillion),
          static_cast<std::int32_t>(total % jobs::BigCount::kBillion)};
}

}  // namespace

CountingJob::CountingJob(jobs::ProgressSink& progress, solver::RecordSink& records, core::MessageSink& messages)
    : Job(progress, messages), records_(records) {}

CountingJob::~CountingJob() = default;

jobs::RunEnd CountingJob::start(const CountSettings& settings) {
  settings_ = settings;
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
  const int cores = static_cast<int>(std::thread::hardware_concurrency());
  const int walkers = std::clamp(settings_.threads > 0 ? settings_.threads : cores, 1, 64);
  walkers_.clear();
  for (int i = 0; i < walkers; ++i) walkers_.push_back(std::make_unique<Walker>());
  depth_ = 1;
  testedBefore_ = 0;
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
  const int start = startPly();
  sharesReplies_ = depth_ >= start + 2;
  if (sharesReplies_) {
    // Where each first-ply move's shares begin. Making the moves to count
    // their replies tests them, once for all walkers.
    repliesStart_.clear();
    sharesTotal_ = 0;
    core::PlyStack& stack = walkers_.front()->stack;
    stack = stack_;
    for (int continuing = 0; core::nextLegalMove(stack, start, continuing) < 0; continuing = 1) {
      repliesStart_.push_back(sharesTotal_);
      sharesTotal_ += core::legalMoveCount(stack, start + 1);
      ++testedBefore_;
    }
  } else {
    sharesTotal_ = core::legalMoveCount(stack_, start);
  }
  nextShare_ = 0;
  sharesTried_ = 0;
  for (const auto& walker : walkers_) {
    walker->stack = stack_;
    walker->ply = sharePly();
    walker->descending = true;
    walker->index = -1;
    walker->reply = -1;
    walker->done = false;
    walker->leaves = 0;
    walker->tested = 0;
  }
  records_.record(solver::Searching{true});
}

jobs::RunEnd CountingJob::run() {
  for (;;) {
    if (!walk()) {
      clearStopRequest();  // honoured
      updateTested();
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

// Counts the current depth; false when a stop was asked for (every walker's
// place is kept for Continue). Up to the first ply's own moves there is
// nothing to share: the first walker counts them.
bool CountingJob::walk() {
  Walker& first = *walkers_.front();
  if (depth_ <= startPly()) {
    if (!first.done) {
      // Depth 1 of a forced first move is that move alone.
      const std::uint64_t moves = depth_ < startPly() ? 1 : core::legalMoveCount(first.stack, depth_);
      first.add(first.leaves, moves);
      first.add(first.tested, moves);
    }
    for (const auto& walker : walkers_) walker->done = true;
    return true;
  }
  return walkShared();
}

bool CountingJob::walkShared() {
  std::vector<std::thread> helpers;
  std::vector<char> completed(walkers_.size(), 0);
  for (std::size_t i = 1; i < walkers_.size(); ++i) {
    helpers.emplace_back([this, i, &completed] { completed[i] = walkWith(*walkers_[i]); });
  }
  completed[0] = walkWith(*walkers_.front());
  for (std::thread& helper : helpers) helper.join();
  return std::all_of(completed.begin(), completed.end(), [](char done) { return done != 0; });
}

namespace {

// Steps the moves of `ply` on to the one at `wanted`; `index` is the place of
// the move made there now (-1: none yet). A walker's shares only go forward.
void stepTo(core::PlyStack& stack, int ply, int& index, int wanted) {
  for (; index < wanted; ++index) core::nextLegalMove(stack, ply, index >= 0 ? 1 : 0);
}

}  // namespace

// One walker's part: it takes the next share nobody has taken, steps its own
// plies on to it, and walks the tree below it.
bool CountingJob::walkWith(Walker& walker) {
  const bool reporting = &walker == walkers_.front().get();
  const int start = startPly();
  const int share = sharePly();
  core::PlyStack& stack = walker.stack;
  std::uint64_t nextTick = walker.tested + static_cast<std::uint64_t>(refreshInterval_);
  while (!walker.done) {
    if (walker.ply == share) {
      const int taken = nextShare_.fetch_add(1, std::memory_order_relaxed);
      if (taken >= sharesTotal_) {
        walker.done = true;
        break;
      }
      if (sharesReplies_) {
        // The last first-ply move whose shares begin at or before this one
        // (a move without replies has none).
        const auto first = std::upper_bound(repliesStart_.begin(), repliesStart_.end(), taken) - 1;
        const int index = static_cast<int>(first - repliesStart_.begin());
        if (index != walker.index) {
          stepTo(stack, start, walker.index, index);
          walker.reply = -1;
        }
        stepTo(stack, share, walker.reply, taken - *first);
      } else {
        stepTo(stack, start, walker.index, taken);
      }
      walker.add(walker.tested, 1);
      const int tried = sharesTried_.fetch_add(1, std::memory_order_relaxed) + 1;
      if (reporting) moveBarFor(tried, sharesTotal_);
      walker.ply = share + 1;
      walker.descending = true;
    }
    if (walker.ply == depth_) {
      const int moves = core::legalMoveCount(stack, walker.ply);
      walker.add(walker.leaves, static_cast<std::uint64_t>(moves));
      walker.add(walker.tested, static_cast<std::uint64_t>(moves));
    } else if (core::nextLegalMove(stack, walker.ply, walker.descending ? 0 : 1) < 0) {
      walker.add(walker.tested, 1);
      ++walker.ply;
      walker.descending = true;
      continue;
    }
    --walker.ply;
    walker.descending = false;
    if (reporting && walker.tested >= nextTick) {
      showProgress();
      nextTick = walker.tested + static_cast<std::uint64_t>(refreshInterval_);
    }
    if (stopRequested()) return false;
  }
  return true;
}

// The tested moves so far, counted by every walker.
void CountingJob::updateTested() {
  std::uint64_t tested = testedBefore_;
  for (const auto& walker : walkers_) tested += walker->tested.load(std::memory_order_relaxed);
  tested_ = lateCarried(tested);
}

void CountingJob::showProgress() {
  updateTested();
  tick();
}

void CountingJob::reportDepth() {
  std::uint64_t leaves = 0;
  for (const auto& walker : walkers_) {
    leaves += walker->leaves;
    testedBefore_ += walker->tested;
  }
  tested_ = lateCarried(testedBefore_);
  const jobs::BigCount count = carried(leaves);
  moveBar(jobs::kProgressBarFull);
  records_.record(solver::CountLine{depth_, count, previous_, stack_.rootSide, depth_ == settings_.depth});
  previous_ = count;
  finalUpdate();
}

}  // namespace velkaro::counter
