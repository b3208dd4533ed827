#pragma once
// A Variants run: how many legal continuations the position has after 1, 2,
// ... n single moves, depth after depth, each with its branching ratio. It is
// a job like a solving run: the same ply stack, tested-move counter, progress
// tick, Stop and Continue. A count is a sum over the first moves, so the
// first moves of a depth, or their replies, are shared out among walkers,
// one per core.

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "core/first_moves.h"
#include "core/position.h"
#include "jobs/job.h"
#include "solver/records.h"

namespace velkaro::counter {

struct CountSettings {
  core::BoardSetup setup;
  int depth = 1;  // the largest number of single moves to count
  std::optional<core::FirstMove> firstMove;  // "Select move"; none means all moves
  int threads = 0;  // walkers counting side by side (0: one per core)
};

// Deepest count the ply stack holds (the last ply's moves are made one frame up).
inline constexpr int kMaxCountDepth = core::kPlyFrameCount - 2;

class CountingJob : public jobs::Job {
 public:
  // Each depth's count goes to `records` as a count line.
  CountingJob(jobs::ProgressSink& progress, solver::RecordSink& records, core::MessageSink& messages);
  ~CountingJob() override;

  jobs::RunEnd start(const CountSettings& settings);
  // Continue after Stop: the walk goes on where it stopped.
  jobs::RunEnd resume();
  bool finished() const { return finished_; }

 private:
  struct Walker;

  jobs::RunEnd run();
  void startDepth();
  bool walk();
  bool walkShared();
  bool walkWith(Walker& walker);
  void reportDepth();
  void updateTested();
  void showProgress();

  int startPly() const { return settings_.firstMove ? 2 : 1; }
  // The ply whose moves end a share: the first ply's, or its replies'.
  int sharePly() const { return sharesReplies_ ? startPly() + 1 : startPly(); }

  CountSettings settings_;
  int depth_ = 1;
  bool finished_ = true;
  bool sharesReplies_ = false;  // a share is a first-ply move with one reply
  std::vector<int> repliesStart_;  // the first share under each first-ply move
  int sharesTotal_ = 0;
  jobs::BigCount previous_;
  std::uint64_t testedBefore_ = 0;  // tested moves of the run outside the walkers' counts
  std::atomic<int> nextShare_{0};
  std::atomic<int> sharesTried_{0};
  std::vector<std::unique_ptr<Walker>> walkers_;
  solver::RecordSink& records_;
  core::PlyStack stack_;
};

}  // namespace velkaro::counter
