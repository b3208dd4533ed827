// The placement enumeration: a depth-first walk over the men in placing
// order, whose leaves in walking order are the placements in odometer order.
// A man's squares are tried from the cursor up; the placements below squares
// that are skipped are counted at once (the later men of the group take any
// of the squares left above, the later groups any free squares).

#include "placement/search.h"

#include <algorithm>

#include "placement/capacity.h"

namespace velkaro::placement {

void Search::reset(const Layout& layout, Goal goal) {
  layout_ = layout;
  goal_ = goal;
  // Whole diagonals are a rule of the cover map only; attacks on men always
  // stop at the first man.
  wholeDiagonals_ = goal != Goal::NonAttackingPieces && layout.wholeDiagonals();
  depth_ = 0;
  found_ = 0;
  best_ = goal == Goal::AttackingSquares ? 64 : 0;
  newBest_ = false;
  levels_[0] = Level{};
  if (coverGoal()) {
    buildCoverTables();
    levels_[0].viable = coverCanKeep(0);
    if (layout_.pieceCount() == 1) prepareLastMan(0);
  } else {
    levels_[0].viable = restFits(0);
  }
}

Step Search::run(SearchHost& host) {
  const int last = layout_.pieceCount() - 1;
  for (;;) {
    if (host.stopAsked()) return Step::Stopped;
    const int man = depth_;
    const Squares open = region(man);
    if (man == last && coverGoal()) {
      if (scoreLastMan(host, open)) return Step::Found;
    } else if (const int square = nextSquare(man, open); square >= 0) {
      if (take(host, man, open, square)) return Step::Found;
      continue;
    } else {
      host.examine(leaves(man, open));
    }
    // The man has no square left: back to the man before.
    if (man == 0) return Step::Exhausted;
    --depth_;
  }
}

// The man takes the square, past the placements below the squares skipped.
// True when the placement is complete and kept.
bool Search::take(SearchHost& host, int man, Squares region, int square) {
  host.examine(leavesBefore(man, region, square));
  levels_[static_cast<std::size_t>(man)].cursor = square + 1;
  squares_[static_cast<std::size_t>(man)] = square;
  if (man == 0) {
    const Piece& first = layout_.piece(0);
    host.firstManMoved(countOf(first.range & ~squaresFrom(square)), countOf(first.range) - layout_.group(0).count + 1);
  }
  if (man + 1 == layout_.pieceCount()) {  // no man attacked: the last man is offered safe squares only
    host.examine(1);
    ++found_;
    return true;
  }
  place(man, square);
  ++depth_;
  return false;
}

Board Search::placement() const {
  Board board{};
  for (int man = 0; man < layout_.pieceCount(); ++man) {
    board[static_cast<std::size_t>(squares_[static_cast<std::size_t>(man)])] =
        static_cast<std::int8_t>(kKindCode[layout_.piece(man).kind]);
  }
  return board;
}

// The squares the man may still take: in its kind's range, not held by an
// earlier group, from the cursor up.
Squares Search::region(int man) const {
  const Level& level = levels_[static_cast<std::size_t>(man)];
  return layout_.piece(man).range & ~level.occupied & squaresFrom(level.cursor);
}

// The placements that follow from the men placed so far when this man takes
// one of `region`.
Count Search::leaves(int man, Squares region) const {
  const Piece& piece = layout_.piece(man);
  return multiplyCounts(binomial(countOf(region), piece.remaining), piece.tail);
}

// ... when it takes one of the squares of `region` below `square`.
Count Search::leavesBefore(int man, Squares region, int square) const {
  const Piece& piece = layout_.piece(man);
  const Count combinations =
      binomial(countOf(region), piece.remaining) - binomial(countOf(region & squaresFrom(square)), piece.remaining);
  return multiplyCounts(combinations, piece.tail);
}

// The man's next square worth trying, or -1.
int Search::nextSquare(int man, Squares region) const {
  const Level& level = levels_[static_cast<std::size_t>(man)];
  if (!level.viable || region == 0) return -1;
  if (coverGoal()) return lowestOf(region);
  const Piece& piece = layout_.piece(man);
  const Squares safe = region & ~level.attacked & ~level.reach[static_cast<std::size_t>(piece.kind)];
  return canHold(piece.kind, safe, piece.remaining) ? lowestOf(safe) : -1;
}

// Puts the man on the square: what the next level knows.
void Search::place(int man, int square) {
  const Level& from = levels_[static_cast<std::size_t>(man)];
  Level& to = levels_[static_cast<std::size_t>(man) + 1];
  const Kind kind = layout_.piece(man).kind;
  to.occupied = from.occupied | bitOf(square);
  to.cursor = layout_.piece(man + 1).first ? 0 : square + 1;
  if (coverGoal()) {
    to.coverMin = from.coverMin | minCover_[kind][static_cast<std::size_t>(square)];
    to.coverMax = from.coverMax | maxCover_[kind][static_cast<std::size_t>(square)];
    to.viable = coverCanKeep(man + 1);
    if (to.viable && man + 2 == layout_.pieceCount()) prepareLastMan(man + 1);
    return;
  }
  // The square was attacked by no man and attacks none: it cuts no man's
  // attacks short. The squares from which a man would attack a placed one
  // lose those beyond the new man, but from there he would attack the new
  // man, so the sets only grow. (In this goal a man reaches what he attacks.)
  const Squares lines = lineReach(square, to.occupied);
  const Squares diagonals = diagonalReach(square, to.occupied);
  to.reach = from.reach;
  to.reach[Pawn] |= kPawnTakers[static_cast<std::size_t>(square)];
  to.reach[King] |= kKingReach[static_cast<std::size_t>(square)];
  to.reach[Knight] |= kKnightReach[static_cast<std::size_t>(square)];
  to.reach[Rook] |= lines;
  to.reach[Bishop] |= diagonals;
  to.reach[Queen] |= lines | diagonals;
  to.attacked = from.attacked | coverReach(kind, square, to.occupied);
  to.viable = restFits(man + 1);
}

// Non-attacking pieces: the rest of this man's group and every later group
// can still find room on squares where they are not attacked and attack
// nothing.
bool Search::restFits(int man) const {
  const Level& level = levels_[static_cast<std::size_t>(man)];
  const Piece& piece = layout_.piece(man);
  const Squares safe = ~level.occupied & ~level.attacked;
  Squares room = region(man) & safe & ~level.reach[static_cast<std::size_t>(piece.kind)];
  int men = piece.remaining;
  for (int index = piece.group + 1; index < layout_.groupCount(); ++index) {
    const Group& group = layout_.group(index);
    const Squares good = safe & ~level.reach[static_cast<std::size_t>(group.kind)];
    if (!canHold(group.kind, good, group.count)) return false;
    room |= good;
    men += group.count;
  }
  return countOf(room) >= men;
}

}  // namespace velkaro::placement
