#pragma once
// A Solver run: direct mates, selfmates and helpmates in n. The driver checks
// the set-up, builds the first frames, runs the search body for the
// stipulation and reports each result; Stop and Continue re-enter the body
// exactly where it left off.

#include <array>
#include <optional>
#include <vector>

#include "core/cover_cache.h"
#include "core/first_moves.h"
#include "core/geometry.h"
#include "core/position.h"
#include "core/stipulation.h"
#include "jobs/job.h"
#include "solver/proof_table.h"
#include "solver/records.h"

namespace velkaro::core {
struct LastPictureMoves;
}  // namespace velkaro::core

namespace velkaro::solver {

using jobs::RunEnd;

struct SolveSettings {
  core::BoardSetup setup;
  core::Stipulation stipulation;
  bool minimumMoves = false;         // "Search minimum moves"
  bool stopOnFirstSolution = true;   // "Stop on first solution"
  bool testAllSecondMoves = false;   // "Testing all second moves" (not for helpmates)
  std::optional<core::FirstMove> firstMove;  // "Select move"; none means all moves
  // Size of the table of proved results, in megabytes (0: no table). It
  // changes how much is searched, never what is found.
  int tableMegabytes = 64;
  // Whether the first moves are counted at each start, for the progress bar;
  // a silent search shows no bar and saves the count.
  bool countsFirstMoves = true;
};

class SolverJob : public jobs::Job {
 public:
  // Results go to `records` as they are found.
  SolverJob(jobs::ProgressSink& progress, RecordSink& records, core::MessageSink& messages)
      : Job(progress, messages), records_(records) {}

  // Start: a fresh run with these settings. The side to move in the set-up
  // moves first; in a helpmate that is the side to be mated.
  RunEnd start(const SolveSettings& settings);
  // Continue: after Stop, or after a solution. After a solution "Testing all
  // second moves" is read again when given; after Stop the run goes on with
  // what it had.
  RunEnd resume(std::optional<bool> testAllSecondMoves = std::nullopt);
  bool finished() const { return finished_; }
  int solutionsFound() const { return solutions_; }

 private:
  // Where the search body stands between steps; saved on every return.
  enum class Step { Enter, NextMove, Returned, NextMate, Done };
  enum class Phase { Keys, SecondMoves };
  enum class Outcome { Searching, Stopped, Found, Exhausted };
  // What the driver does after a result: go on at once, pause at a solution
  // (unless solutions should not pause the run), or end the run.
  enum class After { Go, Pause, Finish };

  RunEnd runLoop();
  bool prepareFreshSearch();
  void buildFrames();
  void beginDepth();
  Outcome searchBody();
  After afterOutcome(Outcome outcome);
  bool failedDepth();

  // Direct mates and selfmates (one body; the colours follow the ply).
  Outcome mateSearch();
  void enterPly();
  void nextMoveAtPly();
  void nextMateAtPly();
  void exhaustedPly();
  Outcome returnedFromPly();
  Outcome keyProved();
  void newFirstMove();
  void computeThreat();
  bool findMate(int ply, int continuing);
  bool sideMated(int ply);
  bool allRepliesMate(int ply);
  void addVariation();
  void addSecondMove();
  void addMatingDefence();
  int killerPly(int ply) const;
  void rememberKiller(int ply);
  bool killerDecides();
  bool everyDefenceMated(int ply);

  // Helpmates.
  Outcome helpSearch();
  bool helpNextMove();
  bool helpNextMate();
  void prefetchChildren();
  // Which moves of a ply may lead on to mate: all, the king's (and the
  // pawns' double steps), those the ply's mover targets allow, or none.
  enum class LastMoves { Any, KingOnly, Some, None };
  VELKARO_COUNTING_STEP LastMoves lastMovesThatMayMate(int ply);
  template <int Side>
  LastMoves movesThePicturesLetThrough(const core::Position& position, const core::LastPictureMoves& pictures,
                                       core::MoverTargets& landings);
  VELKARO_COUNTING_STEP LastMoves secondToLastMovesThatMayMate(int ply);
  VELKARO_COUNTING_STEP bool mateMayBeBuiltFrom(int ply);
  VELKARO_COUNTING_STEP LastMoves lastThreeMovesMayMate(int ply);
  int nextMoveAtHelpPly(int continuing);
  int makeHelpMove(int index);

  // The table of proved results: which plies may use it, and its use there.
  // Successes are kept and taken from this ply on.
  static constexpr int kFirstSuccessPly = 5;
  bool tableAt(int ply) const;
  ProofTable::Proof provedAt(int ply);
  void storeFailure(int ply);
  void storeSuccess(int ply);
  void markSolved();

  void reportMateResult(bool found);
  void reportHelpResult(bool found);
  void addMinimumMovesHeader();

  bool attackerPly(int ply) const { return (ply & 1) == 1; }
  int startPly() const { return settings_.firstMove ? 2 : 1; }
  void fillLine(jobs::Progress& progress) const override;

  SolveSettings settings_;
  int moves_ = 0;        // n of the depth being searched
  int plies_ = 0;        // 2n, or 2n + 1 for selfmates and helpmates
  int lastMovePly_ = 0;  // the ply of the last move of the stipulation
  int ply_ = 1;
  Step step_ = Step::Enter;
  Phase phase_ = Phase::Keys;
  bool result_ = false;
  bool finished_ = true;
  bool pausedAtSolution_ = false;
  int solutions_ = 0;
  int firstMovesTried_ = 0;
  int firstMovesTotal_ = 0;
  int secondMoves_ = 0;      // working second moves listed for the current defence
  int helpmatePlies_ = 0;    // length of the helpmate line just found
  std::optional<core::MoveRecord> threat_;
  std::vector<Variation> variations_;
  ProofTable table_;
  // The key of each ply's position, made when the ply is entered and used
  // again when what the ply proves is stored.
  std::array<TableKey, core::kPlyFrameCount> keys_{};
  // Per helpmate ply: its moves and the keys of the positions they lead to,
  // in move order, made when the ply is entered; the ply remakes its moves
  // from here and each position takes its key from here. No position of a
  // game has more than 218 legal moves; a count of 0 means the ply kept no
  // moves.
  static constexpr int kMostChildren = 256;
  std::vector<TableKey> childKeys_ = std::vector<TableKey>(core::kPlyFrameCount * kMostChildren);
  std::vector<core::MoveRecord> childMoves_ = std::vector<core::MoveRecord>(core::kPlyFrameCount * kMostChildren);
  std::array<int, core::kPlyFrameCount> childKeyCount_{};
  // How many moves ahead of the one being searched a ply's table entries are
  // being fetched from memory.
  static constexpr int kFetchAhead = 8;
  // Per ply: the killer move of the plies that use one, and the move that
  // mated last at a direct mate's last ply.
  std::array<core::MoveRecord, core::kPlyFrameCount> killers_{};
  int lastEscape_ = -1;  // where a checked king last escaped to, tried first by the mate test
  // Per ply of a helpmate: whether a solution was found below the ply's
  // current position (its failure may then not be stored).
  std::array<bool, core::kPlyFrameCount> solved_{};
  // What the mating side can cover around the mated king, for the mate
  // pictures of a helpmate's last plies.
  core::CoverCache cover_;
  RecordSink& records_;
  core::PlyStack stack_;
};

}  // namespace velkaro::solver
