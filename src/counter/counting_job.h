#pragma once
// A Variants run: how many legal continuations the position has after 1, 2,
// ... n single moves, depth after depth, each with its branching ratio. It is
// a job like a solving run: the same ply stack, tested-move counter, progress
// tick, Stop and Continue.

#include <optional>
#include <string>

#include "core/position.h"
#include "solver/first_move.h"
#include "solver/job.h"
#include "solver/solver_job.h"

namespace velkaro::counter {

struct CountSettings {
  core::BoardSetup setup;
  int depth = 1;  // the largest number of single moves to count
  std::optional<solver::FirstMove> firstMove;  // "Select move"; none means all moves
};

// Deepest count the ply stack holds (the last ply's moves are made one frame up).
inline constexpr int kMaxCountDepth = core::kPlyFrameCount - 2;

// The count line of one depth: the count grouped by threes (in the billions
// form from one billion on), the padding that keeps the "x" column, the ratio
// to the previous depth's count and the side to move at this depth.
std::string countLine(const solver::BigCount& count, const solver::BigCount& previous, int depth, int rootSide);

class CountingJob : public solver::Job {
 public:
  using Job::Job;

  solver::RunEnd start(const CountSettings& settings);
  // Continue after Stop: the walk goes on where it stopped.
  solver::RunEnd resume();
  bool finished() const { return finished_; }

 private:
  solver::RunEnd run();
  void startDepth();
  bool walk();
  void countLeaves(int ply);
  void countMove(solver::BigCount& leaves);
  void reportDepth();

  int startPly() const { return settings_.firstMove ? 2 : 1; }

  CountSettings settings_;
  int depth_ = 1;
  int ply_ = 1;
  bool descending_ = true;  // the walk enters ply_ afresh; otherwise it goes on there
  bool finished_ = true;
  int firstMovesTried_ = 0;
  int firstMovesTotal_ = 0;
  solver::BigCount leaves_;
  solver::BigCount previous_;
};

}  // namespace velkaro::counter
