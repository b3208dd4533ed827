// Bounds on the men of one kind that a set of squares can hold without an
// attack: lines and blocks met for the long-range men and the king, a
// largest matching for the knight and the pawn.

#include "placement/capacity.h"

#include <algorithm>

namespace velkaro::placement {

namespace {

constexpr int fileOf(int square) { return square & 7; }
constexpr int rowOf(int square) { return square >> 3; }

// Squares grouped by a key from 0 to N - 1.
template <std::size_t N, typename Key>
constexpr std::array<Squares, N> groupedBy(Key key) {
  std::array<Squares, N> groups{};
  for (int square = 0; square < 64; ++square) groups[static_cast<std::size_t>(key(square))] |= bitOf(square);
  return groups;
}

constexpr auto kRanks = groupedBy<8>([](int square) { return rowOf(square); });
constexpr auto kFiles = groupedBy<8>([](int square) { return fileOf(square); });
// a8-h1 diagonals, then a1-h8 ones.
constexpr auto kFallingDiagonals = groupedBy<15>([](int square) { return fileOf(square) - rowOf(square) + 7; });
constexpr auto kRisingDiagonals = groupedBy<15>([](int square) { return fileOf(square) + rowOf(square); });
constexpr Squares kLightSquares = groupedBy<2>([](int square) { return (fileOf(square) + rowOf(square)) & 1; })[0];
constexpr Squares kEvenRows = groupedBy<2>([](int square) { return rowOf(square) & 1; })[0];
// The top-left squares of the sixteen 2x2 blocks.
constexpr Squares kBlockCorners = kEvenRows & groupedBy<2>([](int square) { return fileOf(square) & 1; })[0];

static_assert(kRisingDiagonals[0] == bitOf(0) && countOf(kFallingDiagonals[7]) == 8);
static_assert((kLightSquares & bitOf(0)) != 0 && (kLightSquares & bitOf(56)) == 0);  // a8 light, a1 dark
static_assert(countOf(kBlockCorners) == 16);

template <std::size_t N>
int linesMet(Squares squares, const std::array<Squares, N>& lines) {
  int met = 0;
  for (Squares line : lines) met += (squares & line) != 0;
  return met;
}

int bishopLines(Squares squares) {
  int lines = 0;
  for (Squares colour : {kLightSquares, ~kLightSquares}) {
    lines += std::min(linesMet(squares & colour, kFallingDiagonals), linesMet(squares & colour, kRisingDiagonals));
  }
  return lines;
}

int queenLines(Squares squares) {
  return std::min({linesMet(squares, kRanks), linesMet(squares, kFiles), linesMet(squares, kFallingDiagonals),
                   linesMet(squares, kRisingDiagonals)});
}

// The blocks that hold at least one of the squares.
int kingBlocks(Squares squares) {
  const Squares met = squares | squares >> 1 | squares >> 8 | squares >> 9;
  return countOf(met & kBlockCorners);
}

// Augmenting paths over attacking pairs between the two classes of squares.
class Matching {
 public:
  Matching(Squares right, const std::array<Squares, 64>& joins) : right_(right), joins_(joins) { mate_.fill(-1); }

  bool augment(int square, Squares& seen) {
    Squares next = joins_[static_cast<std::size_t>(square)] & right_ & ~seen;
    while (next != 0) {
      const int other = lowestOf(next);
      seen |= bitOf(other);
      std::int8_t& mate = mate_[static_cast<std::size_t>(other)];
      if (mate < 0 || augment(mate, seen)) {
        mate = static_cast<std::int8_t>(square);
        return true;
      }
      next &= ~seen;
    }
    return false;
  }

 private:
  Squares right_;
  const std::array<Squares, 64>& joins_;
  std::array<std::int8_t, 64> mate_;
};

// The squares of one class never attack each other; a largest set without
// an attack is the squares less a largest matching.
bool leapersFit(Squares squares, Squares oneClass, const std::array<Squares, 64>& joins, int men) {
  const Squares left = squares & oneClass;
  const Squares right = squares & ~oneClass;
  if (std::max(countOf(left), countOf(right)) >= men) return true;
  const int matchable = countOf(squares) - men;  // the matching may not grow beyond this
  if (matchable < 0) return false;
  Matching matching(right, joins);
  int matched = 0;
  for (Squares rest = left; rest != 0; rest &= rest - 1) {
    Squares seen = 0;
    if (matching.augment(lowestOf(rest), seen) && ++matched > matchable) return false;
  }
  return true;
}

constexpr auto kPawnJoins = [] {
  std::array<Squares, 64> joins{};
  for (int square = 0; square < 64; ++square) joins[square] = kPawnReach[square] | kPawnTakers[square];
  return joins;
}();

}  // namespace

bool canHold(Kind kind, Squares squares, int men) {
  if (men <= 0) return true;
  if (countOf(squares) < men) return false;
  switch (kind) {
    case Rook:
      return std::min(linesMet(squares, kRanks), linesMet(squares, kFiles)) >= men;
    case Bishop:
      return bishopLines(squares) >= men;
    case Queen:
      return queenLines(squares) >= men;
    case King:
      return kingBlocks(squares) >= men;
    case Knight:
      return leapersFit(squares, kLightSquares, kKnightReach, men);
    case Pawn:
      return leapersFit(squares, kEvenRows, kPawnJoins, men);
  }
  return true;
}

}  // namespace velkaro::placement
