// The Solver driver: Start and Continue, the minimum-moves loop, automatic
// continuation when runs should not pause at each solution, and the text of
// each result.

#include "solver/solver_job.h"

#include <cstdio>

#include "core/movegen.h"
#include "core/validate.h"

namespace velkaro::solver {

RunEnd SolverJob::start(const SolveSettings& settings) {
  settings_ = settings;
  lateBillionCarry_ = settings.stipulation.helpmate;
  finished_ = false;
  solutions_ = 0;
  stopRequested_ = false;
  startClock(false);
  moves_ = settings_.minimumMoves ? 1 : settings_.stipulation.moves;
  if (moves_ < 1 || moves_ > kMaxMoves || !prepareFreshSearch()) {
    finished_ = true;
    stopClock();
    return RunEnd::Refused;
  }
  if (settings_.minimumMoves) addMinimumMovesHeader();
  return runLoop();
}

RunEnd SolverJob::resume(std::optional<bool> testAllSecondMoves) {
  if (finished_) return RunEnd::Finished;
  if (pausedAtSolution_ && testAllSecondMoves) {
    settings_.testAllSecondMoves = *testAllSecondMoves && !settings_.stipulation.helpmate;
  }
  stopRequested_ = false;
  startClock(true);
  return runLoop();
}

// Validation (unless a first move was chosen, which was made from a checked
// position), then the first frames.
bool SolverJob::prepareFreshSearch() {
  if (!settings_.firstMove && core::validatePosition(settings_.setup, stack_, messages_) != 0) return false;
  buildFrames();
  return true;
}

// Frame 1, frame 2 when the first move is forced, and the body's start.
void SolverJob::buildFrames() {
  core::setUpRoot(stack_, settings_.setup);
  if (settings_.firstMove) applyFirstMove(stack_, *settings_.firstMove);
  beginDepth();
}

// A fresh search for moves_: the body starts at its first ply, and the number
// of first moves is counted for the progress bar.
void SolverJob::beginDepth() {
  const bool lastMoveMates = settings_.stipulation.selfmate || settings_.stipulation.helpmate;
  plies_ = lastMoveMates ? 2 * moves_ + 1 : 2 * moves_;
  lastMovePly_ = lastMoveMates ? 2 * moves_ : 2 * moves_ - 1;
  ply_ = startPly();
  step_ = Step::Enter;
  phase_ = Phase::Keys;
  threat_ = Threat{};
  variations_.clear();
  firstMovesTried_ = 0;
  firstMovesTotal_ = settings_.firstMove ? 1 : core::countMoves(stack_, 1);
  stack_[ply_].searchFlag = 0;
  stack_[1].searchCount = 0;
  helpmatePlies_ = 0;
  if (settings_.firstMove) computeThreat();
}

void SolverJob::addMinimumMovesHeader() {
  char header[32];
  std::snprintf(header, sizeof header, "In %d moves:", moves_);
  addRootLine(header);
}

RunEnd SolverJob::runLoop() {
  pausedAtSolution_ = false;
  for (;;) {
    insertPlaceholder(" searching ...");
    const Outcome outcome = searchBody();
    if (outcome == Outcome::Stopped) {
      stopClock();
      return RunEnd::Stopped;
    }
    const After after = afterOutcome(outcome);
    if (after == After::Finish || (after == After::Pause && settings_.stopOnFirstSolution)) {
      pausedAtSolution_ = after == After::Pause;
      stopClock();
      return after == After::Finish ? RunEnd::Finished : RunEnd::Solution;
    }
  }
}

SolverJob::Outcome SolverJob::searchBody() {
  return settings_.stipulation.helpmate ? helpSearch() : mateSearch();
}

// Reports what the body returned. In minimum-moves mode a depth without a
// solution moves on to the next depth, up to the stipulated number of moves.
SolverJob::After SolverJob::afterOutcome(Outcome outcome) {
  const bool found = outcome == Outcome::Found;
  const bool helpmate = settings_.stipulation.helpmate;
  if (settings_.minimumMoves && !found) {
    if (!failedDepth()) return After::Finish;
    ++moves_;
    buildFrames();
    addMinimumMovesHeader();
    return After::Go;
  }
  if (helpmate) {
    reportHelpResult(found);
  } else {
    reportMateResult(found);
  }
  finalUpdate();
  // A forced first move of a direct mate or selfmate is one answer; a
  // helpmate goes on to the next line that begins with it.
  const bool more = found && (helpmate || !settings_.firstMove);
  if (!more) finished_ = true;
  return more ? After::Pause : After::Finish;
}

// A depth of the minimum-moves search without a (further) solution. After a
// solution the run ends; otherwise "- no solution" and, unless this was the
// stipulated depth, the next depth follows. The buffer texts of the ending
// are the program's own, the helpmate's format string included.
bool SolverJob::failedDepth() {
  deletePending();
  const bool helpmate = settings_.stipulation.helpmate;
  const bool last = solutions_ > 0 || moves_ >= settings_.stipulation.moves;
  if (solutions_ > 0) {
    addRootItem(helpmate ? " No more solutions" : "No more solutions");
    appendToBuffer(helpmate ? "%s No more solutions" : "No more solutions");
  } else {
    addRootLine(helpmate ? " - no solution" : "- no solution");
  }
  reportSink_.scrollToEnd();
  finalUpdate();
  if (!last) return true;
  finished_ = true;
  moveBar(kProgressBarFull);
  reportSink_.beep();
  return false;
}

void SolverJob::reportMateResult(bool found) {
  deletePending();
  const bool selfmate = settings_.stipulation.selfmate;
  if (found) {
    ++solutions_;
    std::string key = "1. " + notation_.MoveText(stack_, 1);
    if (!selfmate && stack_[1].searchCount != 0) key += "#";
    if (settings_.firstMove) {
      key += "   O.K.";
    } else {
      addRootLine("Solution No " + std::to_string(solutions_));
    }
    if (moves_ >= 2 && !selfmate && threat_.valid) key += "  threat:  2. " + threat_.text + "#";
    const ItemId keyItem = addRootLine(key);
    for (const std::string& line : variations_) addChildLine(keyItem, line);
  } else {
    addRootLine(solutions_ > 0 ? "No more solutions" : "No solution");
    finished_ = true;
    moveBar(kProgressBarFull);
  }
  threat_.valid = false;
  finishResult(true);
}

}  // namespace velkaro::solver

namespace velkaro::solver {

// A helpmate line: "  Solution No %d", then the moves in pairs, the last one
// marked as mate.
void SolverJob::reportHelpResult(bool found) {
  deletePending();
  if (found) {
    ++solutions_;
    addRootLine("  Solution No " + std::to_string(solutions_));
    for (int pair = 1; 2 * pair <= helpmatePlies_; ++pair) {
      std::string line = std::to_string(pair) + ". " + notation_.MoveText(stack_, 2 * pair - 1);
      line += ",  " + notation_.MoveText(stack_, 2 * pair);
      if (2 * pair == helpmatePlies_) line += "#";
      addRootLine(line);
    }
  } else {
    addRootLine(solutions_ > 0 ? "No more solutions" : "  Solution no found");
    finished_ = true;
    moveBar(kProgressBarFull);
  }
  finishResult(true);
}

}  // namespace velkaro::solver
