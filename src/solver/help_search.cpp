// The search body of helpmates: both sides work together, so every ply is a
// plain loop over its moves and every line that ends in mate is a solution of
// its own. The side that moves first is the one to be mated; the mate finder
// decides ply 2n. A side to be mated that stands mated earlier, at one of its
// own plies, ends a shorter solution.

#include "core/attacks.h"
#include "core/legal.h"
#include "solver/solver_job.h"

namespace velkaro::solver {

SolverJob::Outcome SolverJob::helpSearch() {
  for (;;) {
    if (stopRequested()) return Outcome::Stopped;
    bool found = false;
    switch (step_) {
      case Step::Enter:
        stack_[ply_].searchFlag = 0;
        step_ = ply_ == lastMovePly_ ? Step::NextMate : Step::NextMove;
        break;
      case Step::NextMate:
        found = helpNextMate();
        break;
      case Step::NextMove:
        found = helpNextMove();
        break;
      default:
        return Outcome::Exhausted;
    }
    if (found) return Outcome::Found;
  }
}

// One more move at the current ply, or back one ply. Continue after a
// solution goes on from the line just found.
bool SolverJob::helpNextMove() {
  core::PlyFrame& frame = stack_[ply_];
  if (core::nextLegalMove(stack_, ply_, frame.searchFlag) < 0) {
    countTestedMove();
    ++frame.searchFlag;
    if (ply_ == 1) newFirstMove();
    ++ply_;
    step_ = Step::Enter;
    return false;
  }
  // Mated at one of its own plies: the line so far is a shorter helpmate.
  const bool mated = frame.searchFlag == 0 && attackerPly(ply_) && ply_ > 2 &&
                     core::inCheck(stack_.sideAt(ply_), frame.position);
  --ply_;
  step_ = ply_ < startPly() ? Step::Done : Step::NextMove;
  if (mated) helpmatePlies_ = ply_;
  return mated;
}

// The next mate of the last ply; each is a solution.
bool SolverJob::helpNextMate() {
  core::PlyFrame& frame = stack_[ply_];
  if (findMate(ply_, frame.searchFlag)) {
    ++frame.searchFlag;
    helpmatePlies_ = ply_;
    return true;
  }
  --ply_;
  step_ = ply_ < startPly() ? Step::Done : Step::NextMove;
  return false;
}

}  // namespace velkaro::solver
