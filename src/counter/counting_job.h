#pragma once
// A Variants run: how many legal continuations the position has after 1, 2,
// ... n single moves, depth after depth, each with its branching ratio. It is
// a job like a solving run: the same ply stack, tested-move counter, progress
// tick, Stop and Continue.

#include <optional>

#include "core/first_moves.h"
#include "core/position.h"
#include "jobs/job.h"
#include "solver/records.h"

namespace velkaro::counter {

struct CountSettings {
  core::BoardSetup setup;
  int depth = 1;  // the largest number of single moves to count
  std::optional<core::FirstMove> firstMove;  // "Select move"; none means all moves
};

// Deepest count the ply stack holds (the last ply's moves are made one frame up).
inline constexpr int kMaxCountDepth = core::kPlyFrameCount - 2;

class CountingJob : public jobs::Job {
 public:
  // Each depth's count goes to `records` as a count line.
  CountingJob(jobs::ProgressSink& progress, solver::RecordSink& records, core::MessageSink& messages)
      : Job(progress, messages), records_(records) {}

  jobs::RunEnd start(const CountSettings& settings);
  // Continue after Stop: the walk goes on where it stopped.
  jobs::RunEnd resume();
  bool finished() const { return finished_; }

 private:
  jobs::RunEnd run();
  void startDepth();
  bool walk();
  void countLeaves(int ply);
  void countMove(jobs::BigCount& leaves);
  void reportDepth();

  int startPly() const { return settings_.firstMove ? 2 : 1; }

  CountSettings settings_;
  int depth_ = 1;
  int ply_ = 1;
  bool descending_ = true;  // the walk enters ply_ afresh; otherwise it goes on there
  bool finished_ = true;
  int firstMovesTried_ = 0;
  int firstMovesTotal_ = 0;
  jobs::BigCount leaves_;
  jobs::BigCount previous_;
  solver::RecordSink& records_;
  core::PlyStack stack_;
};

}  // namespace velkaro::counter
