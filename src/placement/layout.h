#pragma once
// What a placement run puts on the board: the three goals, the six kinds of
// men in the order their groups are placed (pawns first, knights last), the
// group list read from the piece counts, and the arithmetic that counts
// placements without making them.

#include <array>
#include <cstdint>
#include <string_view>

#include "core/position.h"
#include "placement/bitboards.h"

namespace velkaro::placement {

// The radio buttons under "Search for positions:".
enum class Goal {
  AttackingSquares = 801,     // "Maximum of attacking squares": the fewest free, unattacked squares
  NonAttackingSquares = 802,  // "Maximum of non-attacking squares": the most of them
  NonAttackingPieces = 803,   // "Non-attacking pieces": no man stands attacked
};

// The kinds in the order of the group list.
enum Kind : int { Pawn, King, Queen, Rook, Bishop, Knight };
inline constexpr int kKindCount = 6;
inline constexpr int kKindCode[kKindCount] = {core::piece::Pawn, core::piece::King,   core::piece::Queen,
                                              core::piece::Rook, core::piece::Bishop, core::piece::Knight};

// The "Number of pieces:" fields. A negative count counts as none.
using PieceCounts = core::KindCounts;

inline constexpr std::string_view kNoPieces = "No chess pieces";
inline constexpr std::string_view kTooManyPieces = "Too many chess pieces";

// Placement counts. They are exact up to the largest number the examined
// counter can show (2 147 483 647 billions and 999 999 999) and stay there
// beyond it: such runs would take the plain enumeration decades.
using Count = std::uint64_t;
inline constexpr Count kCountLimit = Count{2'147'483'647} * 1'000'000'000u + 999'999'999u;
constexpr Count addCounts(Count a, Count b) { return a > kCountLimit - b ? kCountLimit : a + b; }
constexpr Count multiplyCounts(Count a, Count b) {
  if (((a | b) >> 30) == 0) return a * b;  // below 2^60, far from the limit
  if (a == 0 || b == 0) return 0;
  return a > kCountLimit / b ? kCountLimit : a * b;
}

// n over k for n up to 64; the largest, 64 over 32, is below kCountLimit.
Count binomial(int n, int k);

// One man of the flattened group list, in placing order. Men of one group
// take their squares in rising order, so a group runs through its
// combinations of squares, never through arrangements.
struct Piece {
  Kind kind = Pawn;
  int group = 0;
  int remaining = 0;   // men of the group from this one to the group's end
  bool first = false;  // the group's first man
  Squares range = 0;   // where the kind may stand: pawns never on ranks 1 and 8
  Count tail = 1;      // placements of all later groups, for each placement of this group
};

struct Group {
  Kind kind = Pawn;
  int count = 0;
};

class Layout {
 public:
  // The group list of a fresh start; the message when there is nothing to
  // place or more than the board holds (pawns only on ranks 2 to 7).
  std::string_view build(const PieceCounts& counts);

  int groupCount() const { return groupCount_; }
  const Group& group(int index) const { return groups_[static_cast<std::size_t>(index)]; }
  int pieceCount() const { return pieceCount_; }
  const Piece& piece(int index) const { return pieces_[static_cast<std::size_t>(index)]; }
  // Every placement the enumeration visits.
  Count total() const { return total_; }
  // Bishops alone or queens alone: their diagonals cover the whole board line
  // whatever stands on it (when the cover map is built).
  bool wholeDiagonals() const { return groupCount_ == 1 && (groups_[0].kind == Bishop || groups_[0].kind == Queen); }

 private:
  std::array<Group, kKindCount> groups_{};
  int groupCount_ = 0;
  std::array<Piece, 64> pieces_{};
  int pieceCount_ = 0;
  Count total_ = 0;
};

}  // namespace velkaro::placement
