// The search body of direct mates and selfmates: an iterative full-width
// depth-first search over the ply stack, one step at a time, so that it can
// return at any step and be re-entered there. Odd plies belong to the side
// that moves first; it succeeds when one move works, its opponent when every
// move is answered.
//
// Direct mate in n: the mate finder decides ply 2n - 1. Selfmate in n: ply 2n
// succeeds when every legal move of the opponent mates the first side.

#include "core/attacks.h"
#include "core/legal.h"
#include "core/mate_test.h"
#include "solver/solver_job.h"

namespace velkaro::solver {

using core::PlyFrame;

SolverJob::Outcome SolverJob::mateSearch() {
  for (;;) {
    if (stopRequested()) return Outcome::Stopped;
    switch (step_) {
      case Step::Enter:
        enterPly();
        break;
      case Step::NextMove:
        nextMoveAtPly();
        break;
      case Step::NextMate:
        nextMateAtPly();
        break;
      case Step::Returned:
        if (const Outcome outcome = returnedFromPly(); outcome != Outcome::Searching) return outcome;
        break;
      case Step::Done:
        return Outcome::Exhausted;
    }
  }
}

void SolverJob::enterPly() {
  PlyFrame& frame = stack_[ply_];
  frame.searchFlag = 0;  // moves made at this ply so far
  const bool selfmate = settings_.stipulation.selfmate;
  if (const ProofTable::Proof proof = provedAt(ply_); proof != ProofTable::Proof::None) {
    result_ = proof == ProofTable::Proof::Success;
    step_ = Step::Returned;
  } else if (killerDecides()) {
    step_ = Step::Returned;
  } else if (!selfmate && ply_ == lastMovePly_) {
    step_ = Step::NextMate;
  } else if (!selfmate && ply_ == plies_) {
    // Only a forced first move of a mate in 1 leads here: did it mate?
    result_ = sideMated(ply_);
    if (result_) stack_[ply_ - 1].searchCount = 1;
    step_ = Step::Returned;
  } else if (selfmate && ply_ == lastMovePly_) {
    result_ = allRepliesMate(ply_);
    step_ = Step::Returned;
  } else {
    step_ = Step::NextMove;
  }
}

void SolverJob::nextMoveAtPly() {
  PlyFrame& frame = stack_[ply_];
  if (core::nextLegalMove(stack_, ply_, frame.searchFlag) >= 0) {
    exhaustedPly();
    return;
  }
  countTestedMove();
  ++frame.searchFlag;
  frame.searchCount = 0;  // set when this move turns out to mate
  if (ply_ == 1) newFirstMove();
  if (phase_ == Phase::SecondMoves && ply_ == 2) secondMoves_ = 0;
  ++ply_;
  step_ = Step::Enter;
}

// The last ply of a direct mate: one mating move is enough, except while all
// second moves are listed, when every mate at ply 3 is a line of its own.
void SolverJob::nextMateAtPly() {
  PlyFrame& frame = stack_[ply_];
  const bool listing = phase_ == Phase::SecondMoves && ply_ == 3;
  if (findMate(ply_, frame.searchFlag)) {
    ++frame.searchFlag;
    frame.searchCount = 1;
    if (listing) {
      addSecondMove();
      return;
    }
    result_ = true;
  } else {
    result_ = listing;
  }
  step_ = Step::Returned;
}

// A ply has no further move. The side moving first fails (while listing
// second moves, ply 3 has done its work). Its opponent succeeds when it made
// moves, all answered; without any move it is mated or stalemated: a mate
// before the last move completes a direct mate, a stalemate does not, and in
// a selfmate either means the first side was not mated. Ply 1 without a
// further move never makes a key, not even when the first side stands mated
// before it has moved.
void SolverJob::exhaustedPly() {
  const PlyFrame& frame = stack_[ply_];
  const bool moved = frame.searchFlag > 0;
  const bool selfmate = settings_.stipulation.selfmate;
  const bool mated = !moved && core::inCheck(stack_.sideAt(ply_), frame.position);
  if (ply_ == 1) {
    result_ = false;
  } else if (attackerPly(ply_)) {
    // A selfmate's first side mated on the way has reached its goal early.
    result_ = (phase_ == Phase::SecondMoves && ply_ == 3) || (selfmate && mated);
    if (selfmate && mated && phase_ == Phase::SecondMoves && ply_ == 3) addMatingDefence();
  } else {
    result_ = moved || (!selfmate && mated);
  }
  if (mated && ply_ > 1) stack_[ply_ - 1].searchCount = 1;
  if (result_) {
    storeSuccess(ply_);
  } else {
    storeFailure(ply_);
  }
  step_ = Step::Returned;
}

SolverJob::Outcome SolverJob::returnedFromPly() {
  if (ply_ == startPly()) {
    if (ply_ == 1 && !result_) {
      step_ = Step::Done;
      return Outcome::Exhausted;
    }
    return keyProved();
  }
  const int parent = ply_ - 1;
  ply_ = parent;
  if (attackerPly(parent)) {
    if (result_) rememberKiller(parent);
    if (!result_) {
      step_ = Step::NextMove;
    } else if (parent == 1) {
      return keyProved();
    } else if (phase_ == Phase::SecondMoves && parent == 3) {
      addSecondMove();
      step_ = Step::NextMove;
    } else {
      storeSuccess(parent);
      step_ = Step::Returned;  // this ply succeeds too
    }
  } else if (result_) {
    if (parent == 2 && phase_ == Phase::Keys) addVariation();
    step_ = Step::NextMove;
  } else {
    storeFailure(parent);
    rememberKiller(parent);
    step_ = Step::Returned;  // a refutation: this ply fails
  }
  return Outcome::Searching;
}

// The first move (or the forced one) works. With "Testing all second moves"
// its defences are gone through once more, listing every working reply;
// then the key is reported, and Continue tries the next first move.
SolverJob::Outcome SolverJob::keyProved() {
  const bool forced = settings_.firstMove.has_value();
  if (forced && !result_) {
    step_ = Step::Done;
    return Outcome::Exhausted;
  }
  if (phase_ == Phase::Keys && settings_.testAllSecondMoves && moves_ >= 2) {
    phase_ = Phase::SecondMoves;
    ply_ = 2;
    step_ = Step::Enter;
    return Outcome::Searching;
  }
  phase_ = Phase::Keys;
  ply_ = startPly();
  step_ = forced ? Step::Done : (lastMovePly_ == 1 && !settings_.stipulation.selfmate ? Step::NextMate
                                                                                        : Step::NextMove);
  return Outcome::Found;
}

void SolverJob::newFirstMove() {
  moveBarFor(++firstMovesTried_, firstMovesTotal_);
  variations_.clear();
  computeThreat();
}

// The threat of a direct mate: a mate the first side would give at once if
// its opponent could pass after the key. Frame 2 stands for the pass.
void SolverJob::computeThreat() {
  threat_.reset();
  if (settings_.stipulation.selfmate || settings_.stipulation.helpmate || settings_.testAllSecondMoves ||
      moves_ < 2) {
    return;
  }
  PlyFrame& pass = stack_[2];
  if (core::inCheck(stack_.sideAt(2), pass.position)) return;
  pass.movedPiece = 0;  // no double step to take en passant
  core::copyPositionToNextPly(pass);
  if (findMate(3, 0)) threat_ = core::moveOf(stack_[3]);
}

// The first move of the side at `ply`, after `continuing` the search from the
// move it made last, that mates: only checks can, so the checking-move
// iterator offers the candidates. The mate is left made in frame ply + 1.
// Below the plies whose moves make the key's lines, any mate will do: the
// one that mated last at this ply is tried first.
bool SolverJob::findMate(int ply, int continuing) {
  const bool anyMate = ply >= 5 && !settings_.stipulation.helpmate;
  core::MoveRecord& lastMate = killers_[static_cast<std::size_t>(ply)];
  if (anyMate && continuing == 0 && lastMate.movedPiece != 0 && core::makeMoveIfLegal(stack_, ply, lastMate)) {
    countTestedMove();
    if (sideMated(ply + 1)) return true;
  }
  while (core::nextCheckingMove(stack_, ply, continuing) < 0) {
    continuing = 1;
    countTestedMove();
    if (!core::hasLegalMove(stack_, ply + 1, lastEscape_)) {
      if (anyMate) lastMate = core::moveOf(stack_[ply]);
      return true;
    }
    countTestedMove();
  }
  return false;
}

// In check with no legal move.
bool SolverJob::sideMated(int ply) {
  if (!core::inCheck(stack_.sideAt(ply), stack_[ply].position)) return false;
  if (!core::hasLegalMove(stack_, ply, lastEscape_)) return true;
  countTestedMove();
  return false;
}

// The last move of a selfmate: the opponent must have a move, and every one
// of them must mate. In a selfmate in 1 each is a variation of the key.
bool SolverJob::allRepliesMate(int ply) {
  bool replied = false;
  for (int continuing = 0; core::nextLegalMove(stack_, ply, continuing) < 0; continuing = 1) {
    countTestedMove();
    replied = true;
    if (!sideMated(ply + 1)) return false;
    if (ply == 2) addMatingDefence();
  }
  return replied;
}

// A defence at ply 2 and the reply at ply 3 that answers it. A reply that is
// the threat again is left out: the threat line already says it.
void SolverJob::addVariation() {
  if (settings_.testAllSecondMoves) return;
  if (stack_[2].searchCount != 0) {
    addMatingDefence();
    return;
  }
  const core::MoveRecord reply = core::moveOf(stack_[3]);
  if (threat_ && reply.fromSquare == threat_->fromSquare && reply.toSquare == threat_->toSquare &&
      reply.moveKind == threat_->moveKind) {
    return;
  }
  const bool mates = stack_[3].searchCount != 0 && !settings_.stipulation.selfmate;
  variations_.push_back({core::moveOf(stack_[2]), false, reply, mates});
}

// A selfmate's defence at ply 2 that mates the first side at once.
void SolverJob::addMatingDefence() {
  Variation line;
  line.defence = core::moveOf(stack_[2]);
  line.defenceMates = true;
  variations_.push_back(line);
}

// One more working reply at ply 3 to the defence at ply 2; further replies to
// the same defence line up under the first.
void SolverJob::addSecondMove() {
  const bool mates = stack_[3].searchCount != 0 && !settings_.stipulation.selfmate;
  variations_.push_back({core::moveOf(stack_[2]), false, core::moveOf(stack_[3]), mates, secondMoves_++ > 0});
}

}  // namespace velkaro::solver

namespace velkaro::solver {

// Killer moves of a direct mate. Deep in the tree the order in which moves
// are tried changes how much is searched, never the result, and a move that
// decided a position often decides its neighbours too: the defence that
// refuted at the ply before the mate, and the attacker's move that worked
// two plies before it. A killer is tried first, all in one step (its tree is
// two plies deep at most, and what the step proves goes into the table, so
// the search does not prove it again); when it does not decide, the ply is
// searched in generation order as always. Plies that make the key's lines
// never use one.
int SolverJob::killerPly(int ply) const {
  if (settings_.stipulation.selfmate || settings_.stipulation.helpmate) return 0;
  if (ply == lastMovePly_ - 1 && ply >= 4) return -1;  // the defender's last move
  if (ply == lastMovePly_ - 2 && ply >= 5) return 1;   // the attacker's move before it
  return 0;
}

void SolverJob::rememberKiller(int ply) {
  if (killerPly(ply) != 0) killers_[static_cast<std::size_t>(ply)] = core::moveOf(stack_[ply]);
}

bool SolverJob::killerDecides() {
  const int kind = killerPly(ply_);
  const core::MoveRecord killer = killers_[static_cast<std::size_t>(ply_)];
  if (kind == 0 || killer.movedPiece == 0 || !core::makeMoveIfLegal(stack_, ply_, killer)) {
    return false;
  }
  countTestedMove();
  if (kind < 0) {
    if (findMate(ply_ + 1, 0)) return false;
    result_ = false;
    storeFailure(ply_);
    return true;
  }
  if (!everyDefenceMated(ply_ + 1)) return false;
  result_ = true;
  storeSuccess(ply_);
  return true;
}

// The defender at `ply` is mated now or after every defence; the answer goes
// into the table.
bool SolverJob::everyDefenceMated(int ply) {
  if (const ProofTable::Proof proof = provedAt(ply); proof != ProofTable::Proof::None) {
    return proof == ProofTable::Proof::Success;
  }
  bool moved = false;
  for (int continuing = 0; core::nextLegalMove(stack_, ply, continuing) < 0; continuing = 1) {
    countTestedMove();
    moved = true;
    if (!findMate(ply + 1, 0)) {
      storeFailure(ply);
      return false;
    }
  }
  const bool mated = moved || core::inCheck(stack_.sideAt(ply), stack_[ply].position);
  if (mated) {
    storeSuccess(ply);
  } else {
    storeFailure(ply);
  }
  return mated;
}

}  // namespace velkaro::solver
