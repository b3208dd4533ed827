// The search body of helpmates: both sides work together, so every ply is a
// plain loop over its moves and every line that ends in mate is a solution of
// its own. The side that moves first is the one to be mated; the mate finder
// decides ply 2n. A side to be mated that stands mated earlier, at one of its
// own plies, ends a shorter solution.

#include "core/attacks.h"
#include "core/flight_bound.h"
#include "core/legal.h"
#include "core/mate_picture.h"
#include "core/mate_test.h"
#include "solver/solver_job.h"

namespace velkaro::solver {

SolverJob::Outcome SolverJob::helpSearch() {
  for (;;) {
    if (stopRequested()) return Outcome::Stopped;
    bool found = false;
    switch (step_) {
      case Step::Enter: {
        stack_[ply_].searchFlag = 0;
        solved_[static_cast<std::size_t>(ply_)] = false;
        if (provedAt(ply_) == ProofTable::Proof::Failure) {
          --ply_;
          step_ = ply_ < startPly() ? Step::Done : Step::NextMove;
          break;
        }
        // Which moves may lead on to mate from this ply; when none can, the
        // ply fails at once.
        const LastMoves lastMoves = ply_ == lastMovePly_ - 1   ? lastMovesThatMayMate(ply_)
                                    : ply_ == lastMovePly_ - 2 ? lastThreeMovesMayMate(ply_)
                                    : ply_ == lastMovePly_ - 3 ? secondToLastMovesThatMayMate(ply_)
                                    : !mateMayBeBuiltFrom(ply_) ? LastMoves::None
                                                               : LastMoves::Any;
        if (lastMoves == LastMoves::None) {
          storeFailure(ply_);
          --ply_;
          step_ = ply_ < startPly() ? Step::Done : Step::NextMove;
          break;
        }
        stack_[ply_].searchCount = static_cast<int>(lastMoves);
        if (ply_ < lastMovePly_) prefetchChildren();
        step_ = ply_ == lastMovePly_ ? Step::NextMate : Step::NextMove;
        break;
      }
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
  if (makeHelpMove(frame.searchFlag) < 0) {
    countTestedMove();
    ++frame.searchFlag;
    if (ply_ == 1) newFirstMove();
    ++ply_;
    step_ = Step::Enter;
    return false;
  }
  // Mated at one of its own plies: the line so far is a shorter helpmate.
  // A ply that tried only king moves and double steps has not seen the rest.
  const bool mated =
      frame.searchFlag == 0 && attackerPly(ply_) && ply_ > 2 && core::inCheck(stack_.sideAt(ply_), frame.position) &&
      (frame.searchCount == static_cast<int>(LastMoves::Any) || !core::hasLegalMove(stack_, ply_, lastEscape_));
  if (!mated && !solved_[static_cast<std::size_t>(ply_)]) storeFailure(ply_);
  --ply_;
  step_ = ply_ < startPly() ? Step::Done : Step::NextMove;
  if (mated) {
    helpmatePlies_ = ply_;
    markSolved();
  }
  return mated;
}

// The next mate of the last ply; each is a solution.
bool SolverJob::helpNextMate() {
  core::PlyFrame& frame = stack_[ply_];
  if (findMate(ply_, frame.searchFlag)) {
    ++frame.searchFlag;
    helpmatePlies_ = ply_;
    markSolved();
    return true;
  }
  if (!solved_[static_cast<std::size_t>(ply_)]) storeFailure(ply_);
  --ply_;
  step_ = ply_ < startPly() ? Step::Done : Step::NextMove;
  return false;
}

}  // namespace velkaro::solver

namespace velkaro::solver {

// A solution ends at the current ply: every ply of its line has one below it.
void SolverJob::markSolved() {
  for (int ply = 1; ply <= ply_; ++ply) solved_[static_cast<std::size_t>(ply)] = true;
}

}  // namespace velkaro::solver

namespace velkaro::solver {

// A helpmate looks up nearly every position it reaches, and waiting for each
// table entry in turn costs more than making the ply's moves twice. So when
// a ply is entered it makes its moves once to keep each move and the key of
// the position it leads to, and starts fetching the first entries; each of
// those positions takes its key from the list and starts fetching the entry
// a few moves further on (provedAt), so that fetching overlaps the search
// instead of all waiting at once. The search then remakes the kept moves
// instead of generating and testing them again (makeHelpMove).
void SolverJob::prefetchChildren() {
  int& count = childKeyCount_[static_cast<std::size_t>(ply_)];
  count = 0;
  if (!tableAt(ply_ + 1)) return;
  const auto first = static_cast<std::size_t>(ply_ * kMostChildren);
  TableKey* keys = &childKeys_[first];
  core::MoveRecord* moves = &childMoves_[first];
  for (int continuing = 0; nextMoveAtHelpPly(continuing) < 0; continuing = 1) {
    if (count == kMostChildren) {  // a set-up beyond any game's: its plies make their own keys
      count = 0;
      return;
    }
    moves[count] = core::moveOf(stack_[ply_]);
    keys[count] = tableKeyAt(stack_, ply_ + 1, lastMovePly_ - ply_);
    if (count < kFetchAhead) table_.prefetch(keys[count]);
    ++count;
  }
}

// Before the last move of the side to be mated, which of its moves may lead
// to mate. First the mate pictures: when none fits whatever the move, none
// can; when none fits around the king as it stands, only the king's steps
// and the fills they name can (the counts below seldom keep fewer, and cost
// more than they save there). Else the counts: when no man of the mating
// side could check its king where it stands, whatever else moves, only a
// move of the king itself or a pawn's double step (which may allow an
// en-passant capture) can. When its flights are too many for a move of its
// own and the reply to cover, no move but the king's can, and the king's
// steps only to where a reply may cover its new flights. When the reply
// could not mate without help, only the moves that may help it can.
SolverJob::LastMoves SolverJob::lastMovesThatMayMate(int ply) {
  const core::Position& position = stack_[ply].position;
  const bool enPassant = core::enPassantPawn(stack_, ply) >= 0;
  core::MoverTargets& landings = stack_.moverTargetsAt(ply);
  const auto judge = [&]<int Side>() {
    if (core::picturesPay(position)) {
      const core::LastPictureMoves fitting = core::MatePictures<Side>(position, 1, 1, cover_).lastMoves();
      if (!fitting.any) return movesThePicturesLetThrough<Side>(position, fitting, landings);
    }
    const core::LastMoveView<Side> view(position);
    LastMoves moves = LastMoves::None;
    if (core::flightsMayAllBeCovered(view, enPassant)) {
      if (!core::canCheckWithAMove<-Side>(position, view.king)) {
        moves = LastMoves::KingOnly;
      } else {
        moves = core::helpingLastMoves(view, enPassant, landings) ? LastMoves::Some : LastMoves::Any;
      }
    } else if (core::kingStepsMayBeMated(view)) {
      moves = LastMoves::KingOnly;
    }
    return moves;
  };
  return stack_.sideAt(ply) == core::White ? judge.template operator()<core::White>()
                                           : judge.template operator()<core::Black>();
}

// The king's steps and the other men's fills that `pictures` let through,
// written into `landings` man by man.
template <int Side>
SolverJob::LastMoves SolverJob::movesThePicturesLetThrough(const core::Position& position,
                                                           const core::LastPictureMoves& pictures,
                                                           core::MoverTargets& landings) {
  const int king = Side == core::White ? position.whiteKingSquare : position.blackKingSquare;
  bool someMove = false;
  for (std::uint64_t men = core::menOf<Side>(position.board); men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    const std::uint64_t targets = square == king ? pictures.king : pictures.others;
    landings[static_cast<std::size_t>(square)] = targets;
    someMove = someMove || targets != 0;
  }
  return someMove ? LastMoves::Some : LastMoves::None;
}

// Four plies before the end, on the move of the side to be mated: which of
// its moves leave a mate picture that may still be built.
SolverJob::LastMoves SolverJob::secondToLastMovesThatMayMate(int ply) {
  const core::Position& position = stack_[ply].position;
  core::MoverTargets& landings = stack_.moverTargetsAt(ply);
  const auto judge = [&]<int Side>() {
    if (!core::picturesPay(position)) return LastMoves::Any;
    const std::uint64_t men = core::menOf<Side>(position.board);
    for (std::uint64_t rest = men; rest != 0; rest &= rest - 1) {
      landings[static_cast<std::size_t>(std::countr_zero(rest))] = 0;
    }
    using Moves = typename core::MatePictures<Side>::Moves;
    switch (core::MatePictures<Side>(position, 2, 2, cover_).secondToLastMoves(position, landings)) {
      case Moves::None:
        return LastMoves::None;
      case Moves::All:
        return LastMoves::Any;
      default:
        break;
    }
    for (std::uint64_t rest = men; rest != 0; rest &= rest - 1) {
      if (landings[static_cast<std::size_t>(std::countr_zero(rest))] != 0) return LastMoves::Some;
    }
    return LastMoves::None;
  };
  return stack_.sideAt(ply) == core::White ? judge.template operator()<core::White>()
                                           : judge.template operator()<core::Black>();
}

// The mating side's plies in the last four, and the mate's: whether the side
// to be mated could still stand mated in the moves left, by the mate
// pictures the men could build.
bool SolverJob::mateMayBeBuiltFrom(int ply) {
  const int plies = lastMovePly_ - ply + 1;  // this one and the mate's with those between
  if (plies > 4) return true;
  const bool matedToMove = stack_.sideAt(ply) == stack_.sideAt(1);
  const int ownMoves = matedToMove ? plies / 2 : (plies - 1) / 2;
  const int matingMoves = plies - ownMoves;
  const core::Position& position = stack_[ply].position;
  return stack_.sideAt(1) == core::White ? core::mateMayBeBuilt<core::White>(position, ownMoves, matingMoves, cover_)
                                         : core::mateMayBeBuilt<core::Black>(position, ownMoves, matingMoves, cover_);
}

// Two plies earlier, on the mating side's move: which of its moves may start
// a line of its move, one of the other side and its check that leaves that
// side mated. The position fails when no mate picture fits, and only the
// squares of the king around which one fits are counted for.
SolverJob::LastMoves SolverJob::lastThreeMovesMayMate(int ply) {
  const core::Position& position = stack_[ply].position;
  const bool enPassant = core::enPassantPawn(stack_, ply) >= 0;
  core::MoverTargets& landings = stack_.moverTargetsAt(ply);
  const auto judge = [&]<int Mated>() {
    constexpr int kMatingMoves = 2;
    if (!core::picturesPay(position)) {
      return core::firstMovesMayMate<Mated>(position, enPassant, [](int) { return true; }, landings);
    }
    const core::MatePictures<Mated> pictures(position, 1, kMatingMoves, cover_);
    std::uint64_t known = 0;
    std::uint64_t fits = 0;
    const auto mayBeMatedOn = [&](int square) {
      const std::uint64_t bit = std::uint64_t{1} << square;
      if ((known & bit) == 0) {
        known |= bit;
        if (pictures.fitsWithKingOn(square)) fits |= bit;
      }
      return (fits & bit) != 0;
    };
    const int king = Mated == core::White ? position.whiteKingSquare : position.blackKingSquare;
    bool anyFits = mayBeMatedOn(king);
    for (std::uint64_t steps = core::picture_detail::around(king); steps != 0 && !anyFits; steps &= steps - 1) {
      anyFits = mayBeMatedOn(std::countr_zero(steps));
    }
    return anyFits && core::firstMovesMayMate<Mated>(position, enPassant, mayBeMatedOn, landings);
  };
  const bool may = stack_.sideAt(ply) == core::White ? judge.template operator()<core::Black>()
                                                     : judge.template operator()<core::White>();
  return may ? LastMoves::Some : LastMoves::None;
}

// The ply's move number `index` (from 0) into the next frame, as
// nextMoveAtHelpPly returns it: remade from the ply's list when it kept one,
// else made by the iterator, which goes on from move index - 1.
int SolverJob::makeHelpMove(int index) {
  const int known = childKeyCount_[static_cast<std::size_t>(ply_)];
  if (known == 0) return nextMoveAtHelpPly(index);
  if (index >= known) return 1;
  core::remakeMove(stack_, ply_, childMoves_[static_cast<std::size_t>(ply_ * kMostChildren + index)]);
  return -1;
}

// The ply's next move: when only some moves may lead to mate, only those.
int SolverJob::nextMoveAtHelpPly(int continuing) {
  switch (static_cast<LastMoves>(stack_[ply_].searchCount)) {
    case LastMoves::KingOnly:
      return core::nextKingMoveOrDoubleStep(stack_, ply_, continuing);
    case LastMoves::Some:
      return core::nextMoveOfMovers(stack_, ply_, continuing);
    default:
      return core::nextLegalMove(stack_, ply_, continuing);
  }
}

}  // namespace velkaro::solver
