#pragma once
// The enumeration of a placement run. It visits the placements of the group
// list in the order of an odometer over the groups (the last group turning
// fastest, each group running through its combinations of squares from the
// lowest squares up) and keeps those the goal asks for. A partial placement
// that can lead to no kept placement (a man already stands attacked; no
// completion can reach the best score) is not followed: the placements it
// leads to are counted as examined, in their place in the order, without
// being made. The finds, their order and the examined count are those of
// the plain enumeration.

#include <array>
#include <cstdint>

#include "placement/bitboards.h"
#include "placement/board_text.h"
#include "placement/layout.h"

namespace velkaro::placement {

// What the search needs from the run it belongs to.
class SearchHost {
 public:
  virtual ~SearchHost() = default;
  // `placements` more placements were examined, in enumeration order.
  virtual void examine(Count placements) = 0;
  virtual bool stopAsked() const = 0;
  // The first man of the first group stands on the `step`-th of its
  // `steps` possible squares (counted from 0).
  virtual void firstManMoved(int step, int steps) = 0;
};

enum class Step {
  Found,      // a placement was kept; the next call goes on after it
  Stopped,    // the host asked to stop; the next call goes on where it was
  Exhausted,  // every placement was examined
};

class Search {
 public:
  // A fresh enumeration from the first placement.
  void reset(const Layout& layout, Goal goal);
  Step run(SearchHost& host);

  // Placements kept so far: for the cover goals, those with the best score
  // since it was last beaten.
  std::int64_t foundCount() const { return found_; }
  // Free squares that no man covers in the kept placements (cover goals).
  int bestScore() const { return best_; }
  // The last find beat the best score: the earlier finds are forgotten.
  bool newBest() const { return newBest_; }
  // The placement last found.
  Board placement() const;

 private:
  // What is known after the men before one man were placed, and where that
  // man's next square is looked for.
  struct Level {
    Squares occupied = 0;
    // Non-attacking pieces: the squares the placed men attack, and for each
    // kind the squares from which a man of it would attack a placed man.
    Squares attacked = 0;
    std::array<Squares, kKindCount> reach{};
    // Cover goals: the squares every completion covers, and those some
    // completion may cover.
    Squares coverMin = 0;
    Squares coverMax = 0;
    // Cover goals, before the last man: the cover of the placed men, and the
    // squares where the last man would shorten a placed man's line.
    Squares cover = 0;
    Squares cuttable = 0;
    int cursor = 0;      // the man's next square is this one or above
    bool viable = true;  // some completion may still be kept
  };

  bool coverGoal() const { return goal_ != Goal::NonAttackingPieces; }
  Squares region(int man) const;
  Count leaves(int man, Squares region) const;
  Count leavesBefore(int man, Squares region, int square) const;
  int nextSquare(int man, Squares region) const;
  bool take(SearchHost& host, int man, Squares region, int square);
  void place(int man, int square);
  bool restFits(int man) const;
  bool coverCanKeep(int man) const;
  void prepareLastMan(int man);
  bool scoreLastMan(SearchHost& host, Squares region);
  Squares coverWith(int square) const;
  Squares coverReach(Kind kind, int square, Squares occupied) const;
  bool keep(int score);
  void buildCoverTables();

  Layout layout_;
  Goal goal_ = Goal::NonAttackingPieces;
  bool wholeDiagonals_ = false;
  std::array<Level, 65> levels_{};
  std::array<int, 64> squares_{};
  int depth_ = 0;
  std::int64_t found_ = 0;
  int best_ = 0;
  bool newBest_ = false;
  // Per kind and square: what a man covers in every placement, and what it
  // covers at most.
  std::array<std::array<Squares, 64>, kKindCount> minCover_{};
  std::array<std::array<Squares, 64>, kKindCount> maxCover_{};
};

}  // namespace velkaro::placement
