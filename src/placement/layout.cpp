// The group list of a placement run and the number of placements it visits.

#include "placement/layout.h"

#include <algorithm>

namespace velkaro::placement {

namespace {

constexpr std::array<std::array<Count, 65>, 65> makeBinomials() {
  std::array<std::array<Count, 65>, 65> table{};
  for (int n = 0; n <= 64; ++n) {
    table[n][0] = 1;
    for (int k = 1; k <= n; ++k) table[n][k] = table[n - 1][k - 1] + table[n - 1][k];
  }
  return table;
}
constexpr auto kBinomials = makeBinomials();
static_assert(kBinomials[64][8] == 4'426'165'368u);
static_assert(kBinomials[64][32] == 1'832'624'140'942'590'534u);
static_assert(kBinomials[64][32] < kCountLimit);

// Ranks 2 to 7.
constexpr Squares kPawnRange = squaresFrom(8) & ~squaresFrom(56);

}  // namespace

Count binomial(int n, int k) {
  if (k < 0 || n < 0 || k > n) return 0;
  return kBinomials[static_cast<std::size_t>(n)][static_cast<std::size_t>(k)];
}

std::string_view Layout::build(const PieceCounts& counts) {
  const int byKind[kKindCount] = {counts.pawns, counts.kings,   counts.queens,
                                  counts.rooks, counts.bishops, counts.knights};
  groupCount_ = 0;
  pieceCount_ = 0;
  int men = 0;
  for (int kind = 0; kind < kKindCount; ++kind) {
    const int count = std::max(byKind[kind], 0);
    men += count;
    if (count > 0) groups_[static_cast<std::size_t>(groupCount_++)] = {static_cast<Kind>(kind), count};
  }
  if (men == 0) return kNoPieces;
  if (men > 64 || counts.pawns > countOf(kPawnRange)) return kTooManyPieces;

  // Each later group chooses among the squares the groups before it left
  // free; the first one (the pawns, if any) among its range.
  std::array<Count, kKindCount + 1> tails{};
  tails[static_cast<std::size_t>(groupCount_)] = 1;
  int menAfter = 0;
  for (int index = groupCount_ - 1; index >= 1; --index) {
    const Group& group = groups_[static_cast<std::size_t>(index)];
    tails[static_cast<std::size_t>(index)] = multiplyCounts(tails[static_cast<std::size_t>(index) + 1],
                                                            binomial(64 - (men - menAfter - group.count), group.count));
    menAfter += group.count;
  }
  for (int index = 0; index < groupCount_; ++index) {
    const Group& group = groups_[static_cast<std::size_t>(index)];
    const Squares range = group.kind == Pawn ? kPawnRange : ~Squares{0};
    for (int man = 0; man < group.count; ++man) {
      pieces_[static_cast<std::size_t>(pieceCount_++)] = {
          group.kind, index, group.count - man, man == 0, range, tails[static_cast<std::size_t>(index) + 1]};
    }
  }
  total_ = multiplyCounts(binomial(countOf(pieces_[0].range), groups_[0].count), tails[1]);
  return {};
}

}  // namespace velkaro::placement
