// The cover goals: the cover map of a placement (the occupied squares and
// every square a man attacks), the score (free squares left uncovered), and
// the bounds that let a partial placement be passed over when no completion
// can reach the best score.

#include <algorithm>

#include "placement/search.h"

namespace velkaro::placement {

namespace {

using CoverTable = std::array<std::array<Squares, 64>, kKindCount>;

// The most squares of `open` one man of the kind can cover from any of `squares`.
int mostGain(const CoverTable& table, Kind kind, Squares squares, Squares open) {
  const int all = countOf(open);
  int most = 0;
  for (; squares != 0 && most < all; squares &= squares - 1) {
    most = std::max(most, countOf(table[kind][static_cast<std::size_t>(lowestOf(squares))] & open));
  }
  return most;
}

// Whether from one of `squares` it covers no more than `most` of `open`.
bool someGainWithin(const CoverTable& table, Kind kind, Squares squares, Squares open, int most) {
  if (squares == 0) return true;  // no room: nothing follows to be judged
  for (; squares != 0; squares &= squares - 1) {
    if (countOf(table[kind][static_cast<std::size_t>(lowestOf(squares))] & open) <= most) return true;
  }
  return false;
}

}  // namespace

// The squares a man covers besides his own: long-range men up to the first
// occupied square, or along whole diagonals when bishops or queens are alone.
Squares Search::coverReach(Kind kind, int square, Squares occupied) const {
  const auto index = static_cast<std::size_t>(square);
  const Squares diagonalBlockers = wholeDiagonals_ ? 0 : occupied;
  switch (kind) {
    case Pawn:
      return kPawnReach[index];
    case King:
      return kKingReach[index];
    case Knight:
      return kKnightReach[index];
    case Rook:
      return lineReach(square, occupied);
    case Bishop:
      return diagonalReach(square, diagonalBlockers);
    case Queen:
      return lineReach(square, occupied) | diagonalReach(square, diagonalBlockers);
  }
  return 0;
}

// A line stops at the nearest man, so a man covers at least his own square,
// the squares he leaps to and the first square of each line; at most what he
// covers on an empty board.
void Search::buildCoverTables() {
  for (int kind = 0; kind < kKindCount; ++kind) {
    for (int square = 0; square < 64; ++square) {
      const auto index = static_cast<std::size_t>(square);
      const Squares most = bitOf(square) | coverReach(static_cast<Kind>(kind), square, 0);
      const Squares least = bitOf(square) | coverReach(static_cast<Kind>(kind), square, ~Squares{0});
      maxCover_[static_cast<std::size_t>(kind)][index] = most;
      minCover_[static_cast<std::size_t>(kind)][index] = least;
    }
  }
}

// Whether some completion of the placed men may score the best score or
// better. Goal 801: the squares no man can cover, less what each man still
// to come can cover at most, must not exceed the best score. Goal 802: the
// squares no man covers for sure must reach it, and every man to come must
// have a square where he does not cover more than the difference.
bool Search::coverCanKeep(int man) const {
  const Level& level = levels_[static_cast<std::size_t>(man)];
  const Piece& piece = layout_.piece(man);
  const Squares current = region(man);
  const Squares free = ~level.occupied;
  if (goal_ == Goal::AttackingSquares) {
    const Squares open = ~level.coverMax;
    int fewest = countOf(open);
    if (fewest <= best_) return true;
    fewest -= piece.remaining * mostGain(maxCover_, piece.kind, current, open);
    for (int index = piece.group + 1; index < layout_.groupCount() && fewest > best_; ++index) {
      const Group& group = layout_.group(index);
      fewest -= group.count * mostGain(maxCover_, group.kind, free, open);
    }
    return fewest <= best_;
  }
  const Squares open = ~level.coverMin;
  const int slack = countOf(open) - best_;
  if (slack < 0 || !someGainWithin(minCover_, piece.kind, current, open, slack)) return false;
  for (int index = piece.group + 1; index < layout_.groupCount(); ++index) {
    const Group& group = layout_.group(index);
    if (!someGainWithin(minCover_, group.kind, free, open, slack)) return false;
  }
  return true;
}

// Before the last man: the cover of the men placed, and the squares on their
// lines where the last man would cut a line short.
void Search::prepareLastMan(int man) {
  Level& level = levels_[static_cast<std::size_t>(man)];
  level.cover = level.occupied;
  level.cuttable = 0;
  for (int placed = 0; placed < man; ++placed) {
    const Kind kind = layout_.piece(placed).kind;
    const int square = squares_[static_cast<std::size_t>(placed)];
    level.cover |= coverReach(kind, square, level.occupied);
    if (kind == Rook || kind == Queen) level.cuttable |= lineReach(square, level.occupied);
    if ((kind == Bishop || kind == Queen) && !wholeDiagonals_) {
      level.cuttable |= diagonalReach(square, level.occupied);
    }
  }
}

// The cover map with the last man on `square`.
Squares Search::coverWith(int square) const {
  const int last = layout_.pieceCount() - 1;
  const Level& level = levels_[static_cast<std::size_t>(last)];
  const Squares occupied = level.occupied | bitOf(square);
  const Squares own = bitOf(square) | coverReach(layout_.piece(last).kind, square, occupied);
  if ((level.cuttable & bitOf(square)) == 0) return level.cover | own;
  Squares cover = occupied | own;
  for (int placed = 0; placed < last; ++placed) {
    cover |= coverReach(layout_.piece(placed).kind, squares_[static_cast<std::size_t>(placed)], occupied);
  }
  return cover;
}

// Scores the last man's squares from the cursor up, in order. True at a
// placement kept (the cursor moves past it); false when none is left.
bool Search::scoreLastMan(SearchHost& host, Squares region) {
  const int last = layout_.pieceCount() - 1;
  Level& level = levels_[static_cast<std::size_t>(last)];
  if (!level.viable) {
    host.examine(static_cast<Count>(countOf(region)));
    return false;
  }
  const auto kind = static_cast<std::size_t>(layout_.piece(last).kind);
  Count examined = 0;
  for (Squares rest = region; rest != 0; rest &= rest - 1) {
    const int square = lowestOf(rest);
    ++examined;
    // What the last man covers for sure, or at most, may already decide.
    const bool hopeless =
        goal_ == Goal::AttackingSquares
            ? 64 - countOf(level.coverMax | maxCover_[kind][static_cast<std::size_t>(square)]) > best_
            : 64 - countOf(level.coverMin | minCover_[kind][static_cast<std::size_t>(square)]) < best_;
    if (!hopeless && keep(64 - countOf(coverWith(square)))) {
      host.examine(examined);
      level.cursor = square + 1;
      squares_[static_cast<std::size_t>(last)] = square;
      return true;
    }
  }
  host.examine(examined);
  return false;
}

// An equal score adds a find; a better one becomes the best and the only find.
bool Search::keep(int score) {
  if (score == best_) {
    ++found_;
    newBest_ = false;
    return true;
  }
  if (goal_ == Goal::AttackingSquares ? score > best_ : score < best_) return false;
  best_ = score;
  found_ = 1;
  newBest_ = true;
  return true;
}

}  // namespace velkaro::placement
