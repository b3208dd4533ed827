// Start, Resume and Stop of a Positions run, its records, and the counting of
// examined placements that may come many at once.

#include "placement/placement_job.h"

namespace velkaro::placement {

jobs::RunEnd PlacementJob::start(const PlaceSettings& settings) {
  settings_ = settings;
  finished_ = true;
  paused_ = false;
  clearStopRequest();
  records_.record(FreshStart{});
  if (const std::string_view refusal = layout_.build(settings.counts); !refusal.empty()) {
    messages_.showMessage("", refusal);
    return jobs::RunEnd::Refused;
  }
  search_.reset(layout_, settings.goal);
  examined_ = 0;
  finished_ = false;
  foundInRun_ = false;
  startClock(false);
  return run();
}

jobs::RunEnd PlacementJob::resume(std::optional<bool> stopOnFirstSolution) {
  if (finished_) return jobs::RunEnd::Finished;
  if (stopOnFirstSolution) settings_.stopOnFirstSolution = *stopOnFirstSolution;
  // A Resume after a pause is a run of its own; one after a Stop goes on
  // with the run that was stopped, which has not reported yet.
  if (paused_) foundInRun_ = false;
  paused_ = false;
  clearStopRequest();
  startClock(true);
  return run();
}

jobs::RunEnd PlacementJob::run() {
  records_.record(Searching{});
  for (;;) {
    switch (search_.run(*this)) {
      case Step::Stopped:
        return end(jobs::RunEnd::Stopped);
      case Step::Exhausted:
        finished_ = true;
        moveBar(jobs::kProgressBarFull);
        return end(jobs::RunEnd::Finished);
      case Step::Found:
        reportFind();
        if (settings_.goal == Goal::NonAttackingPieces && settings_.stopOnFirstSolution) {
          paused_ = true;
          return end(jobs::RunEnd::Solution);
        }
        break;
    }
  }
}

jobs::RunEnd PlacementJob::end(jobs::RunEnd how) {
  stopClock();
  finalUpdate();
  records_.record(RunOver{how, settings_.goal, search_.foundCount(), search_.bestScore(), foundInRun_});
  return how;
}

void PlacementJob::reportFind() {
  foundInRun_ = true;
  if (search_.newBest()) records_.record(NewBest{search_.bestScore()});
  records_.record(Found{search_.foundCount(), search_.placement()});
}

// Placements counted together tick the progress once, however many refresh
// intervals they span; the countdown keeps its place within the interval.
void PlacementJob::examine(Count placements) {
  if (placements == 0) return;
  const Count before = examined_;
  examined_ = addCounts(examined_, placements);
  const Count added = examined_ - before;
  if (added < static_cast<Count>(jobs::BigCount::kBillion - tested_.remainder)) {
    tested_.remainder += static_cast<std::int32_t>(added);
  } else {
    tested_.billions = static_cast<std::int32_t>(examined_ / jobs::BigCount::kBillion);
    tested_.remainder = static_cast<std::int32_t>(examined_ % jobs::BigCount::kBillion);
  }
  const auto countdown = static_cast<Count>(countdown_);
  if (placements < countdown) {
    countdown_ -= static_cast<int>(placements);
    return;
  }
  const Count beyond = placements - countdown;
  tick();
  countdown_ = refreshInterval_ - static_cast<int>(beyond % static_cast<Count>(refreshInterval_));
}

}  // namespace velkaro::placement
