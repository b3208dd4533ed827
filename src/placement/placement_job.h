#pragma once
// A Positions run: every placement of the given white men on the empty
// board, keeping those the goal asks for. It is a job like a solving run: the
// same clock, examined-placement counter, progress tick, Stop and Resume; its
// finds go out as records (placement/records.h).

#include <cstdint>
#include <optional>

#include "jobs/job.h"
#include "placement/layout.h"
#include "placement/records.h"
#include "placement/search.h"

namespace velkaro::placement {

struct PlaceSettings {
  PieceCounts counts;
  Goal goal = Goal::NonAttackingPieces;
  // Goal 803 pauses after each find ("Stop on first solution").
  bool stopOnFirstSolution = true;
};

class PlacementJob : public jobs::Job, private SearchHost {
 public:
  PlacementJob(jobs::ProgressSink& progress, RecordSink& records, core::MessageSink& messages)
      : Job(progress, messages), records_(records) {}

  // Start: a fresh run. Nothing to place, or more than the board holds, is
  // refused with a message (empty caption).
  jobs::RunEnd start(const PlaceSettings& settings);
  // Resume after a Stop or a pause on a find: the enumeration goes on after
  // the last placement examined, with the found count and best score kept.
  // "Stop on first solution" may have changed in between.
  jobs::RunEnd resume(std::optional<bool> stopOnFirstSolution = std::nullopt);

  bool finished() const { return finished_; }
  std::int64_t foundCount() const { return search_.foundCount(); }
  int bestScore() const { return search_.bestScore(); }
  // Placements examined since the fresh start, beyond what testedMoves() can
  // hold only when that is full.
  Count examined() const { return examined_; }

 private:
  jobs::RunEnd run();
  jobs::RunEnd end(jobs::RunEnd how);
  void reportFind();

  void examine(Count placements) override;
  bool stopAsked() const override { return stopRequested(); }
  void firstManMoved(int step, int steps) override { moveBarFor(step, steps); }

  PlaceSettings settings_;
  Layout layout_;
  Search search_;
  RecordSink& records_;
  Count examined_ = 0;
  bool finished_ = true;
  bool paused_ = false;
  bool foundInRun_ = false;
};

}  // namespace velkaro::placement
