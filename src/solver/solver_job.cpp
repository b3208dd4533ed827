// The Solver driver: Start and Continue, the minimum-moves loop, automatic
// continuation when runs should not pause at each solution, and the text of
// each result.

#include "solver/solver_job.h"

#include "core/movegen.h"
#include "core/validate.h"

namespace velkaro::solver {

RunEnd SolverJob::start(const SolveSettings& settings) {
  settings_ = settings;
  lateBillionCarry_ = settings.stipulation.helpmate;
  finished_ = false;
  solutions_ = 0;
  startClock(false);
  // Direct mates in two and selfmates in one never reach a ply that uses the
  // table: they go without one.
  const core::Stipulation& stipulation = settings.stipulation;
  if (stipulation.helpmate || stipulation.moves >= (stipulation.selfmate ? 2 : 3)) {
    table_.reset(settings.tableMegabytes);
  }
  killers_ = {};
  moves_ = settings_.minimumMoves ? 1 : settings_.stipulation.moves;
  if (moves_ < 1 || moves_ > core::kMaxMoves || !prepareFreshSearch()) {
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
  if (settings_.firstMove) core::applyFirstMove(stack_, *settings_.firstMove);
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
  threat_.reset();
  variations_.clear();
  firstMovesTried_ = 0;
  firstMovesTotal_ = settings_.firstMove ? 1 : settings_.countsFirstMoves ? core::countMoves(stack_, 1) : 0;
  stack_[ply_].searchFlag = 0;
  stack_[1].searchCount = 0;
  childKeyCount_ = {};
  helpmatePlies_ = 0;
  if (settings_.firstMove) computeThreat();
}

// A helpmate's table serves every ply from the second to the mate. A
// selfmate's serves the plies from the third (the first two make the key's
// lines) to the one before the last move; a direct mate's stops before the
// defender's last move, whose positions are many and answered by the mate
// finder about as fast as by a lookup. Neither uses the third ply while all
// second moves are listed, where every working reply is a line of its own.
bool SolverJob::tableAt(int ply) const {
  if (settings_.stipulation.helpmate) return ply >= 2 && ply <= lastMovePly_;
  if (ply >= lastMovePly_ - (settings_.stipulation.selfmate ? 0 : 1)) return false;
  return ply >= 4 || (ply == 3 && phase_ == Phase::Keys);
}

// Every ply looks itself up when it is entered, before it can prove
// anything, and its position stays as it is until it is left: the key made
// here serves its stores. A success proved deeper would answer the plies
// that make a key's lines too, but they must make their moves (a variation
// shows the reply and its mate mark): a success is taken where it is kept.
ProofTable::Proof SolverJob::provedAt(int ply) {
  if (!tableAt(ply)) return ProofTable::Proof::None;
  TableKey& key = keys_[static_cast<std::size_t>(ply)];
  // A helpmate ply's key was made when its parent was entered
  // (prefetchChildren), with the parent's other moves.
  const int known = childKeyCount_[static_cast<std::size_t>(ply - 1)];
  if (known > 0) {
    const int index = stack_[ply - 1].searchFlag - 1;
    const TableKey* keys = &childKeys_[static_cast<std::size_t>((ply - 1) * kMostChildren)];
    key = keys[index];
    if (index + kFetchAhead < known) table_.prefetch(keys[index + kFetchAhead]);
  } else {
    key = tableKeyAt(stack_, ply, lastMovePly_ + 1 - ply);
  }
  const ProofTable::Proof proof = table_.proved(key);
  return proof == ProofTable::Proof::Success && ply < kFirstSuccessPly ? ProofTable::Proof::None : proof;
}

void SolverJob::storeFailure(int ply) {
  if (tableAt(ply)) table_.store(keys_[static_cast<std::size_t>(ply)], ProofTable::Proof::Failure);
}

// A helpmate's solutions must all be listed, so only a direct mate's or
// selfmate's success is kept; and only from the fifth ply on, below the plies
// whose moves the lines under a key show with their mate marks.
void SolverJob::storeSuccess(int ply) {
  if (ply >= kFirstSuccessPly && !settings_.stipulation.helpmate && tableAt(ply)) {
    table_.store(keys_[static_cast<std::size_t>(ply)], ProofTable::Proof::Success);
  }
}

void SolverJob::addMinimumMovesHeader() { records_.record(MovesHeader{moves_}); }

// Moves 1 to 8 of the line under test.
void SolverJob::fillLine(jobs::Progress& progress) const {
  progress.lineDepth = lastMovePly_;
  progress.linePly = ply_;
  for (int ply = 1; ply <= core::kShownLineMoves; ++ply) progress.line[ply - 1] = core::moveOf(stack_[ply]);
}

RunEnd SolverJob::runLoop() {
  pausedAtSolution_ = false;
  for (;;) {
    records_.record(Searching{});
    const Outcome outcome = searchBody();
    if (outcome == Outcome::Stopped) {
      clearStopRequest();  // honoured
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
  const bool last = solutions_ > 0 || moves_ >= settings_.stipulation.moves;
  if (last) {
    finished_ = true;
    moveBar(jobs::kProgressBarFull);
  }
  records_.record(FailedDepth{settings_.stipulation.helpmate, solutions_ > 0, last});
  finalUpdate();
  return !last;
}

// A key with its threat (direct mates of two moves or more) and variations,
// or the end of the run.
void SolverJob::reportMateResult(bool found) {
  const bool selfmate = settings_.stipulation.selfmate;
  if (found) {
    ++solutions_;
    Key key;
    key.forced = settings_.firstMove.has_value();
    key.number = key.forced ? 0 : solutions_;
    key.move = core::moveOf(stack_[1]);
    key.mates = !selfmate && stack_[1].searchCount != 0;
    if (moves_ >= 2 && !selfmate) key.threat = threat_;
    key.variations = variations_;
    records_.record(key);
  } else {
    finished_ = true;
    moveBar(jobs::kProgressBarFull);
    records_.record(NoSolution{false, solutions_ > 0});
  }
  threat_.reset();
}

}  // namespace velkaro::solver

namespace velkaro::solver {

// A helpmate line: "  Solution No %d", then the moves in pairs, the last one
// marked as mate.
void SolverJob::reportHelpResult(bool found) {
  if (found) {
    ++solutions_;
    HelpLine line{solutions_, {}};
    for (int ply = 1; ply <= helpmatePlies_ - helpmatePlies_ % 2; ++ply) line.moves.push_back(core::moveOf(stack_[ply]));
    records_.record(line);
  } else {
    finished_ = true;
    moveBar(jobs::kProgressBarFull);
    records_.record(NoSolution{true, solutions_ > 0});
  }
}

}  // namespace velkaro::solver
