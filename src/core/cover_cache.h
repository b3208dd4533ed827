#pragma once
// The sets of squares around a king's square that the mating side can cover
// while it checks the king there, kept by the set-up of its men (the mate
// pictures ask for them).

#include <array>
#include <cstdint>
#include <memory>

#include "core/position.h"

namespace velkaro::core {

// Sets of the squares next to a square, one bit for each of the 256 sets:
// the squares' bits in the set's number follow picture_detail::neighbourBits.
using NeighbourSets = std::array<std::uint64_t, 4>;

// What the men of the mating side can cover next to a square while one of
// them checks a king there, in their last moves: every set of those squares
// that some way of ending covers (with all its subsets), by square. It
// depends on those men alone, and the same men stand the same way in a great
// many positions of a search, so the sets are kept by the men's set-up and
// worked out for a square the first time it is asked for.
class CoverCache {
 public:
  struct Entry;

  CoverCache();
  ~CoverCache();
  CoverCache(const CoverCache&) = delete;
  CoverCache& operator=(const CoverCache&) = delete;

  // The entry for the men of `matingSide` in `position` with `matingMoves`
  // (one or two) moves left, the last of them the mate; it holds whatever
  // another set-up of men kept there before. Valid until the next call.
  Entry& entryFor(const Position& position, int matingSide, int matingMoves);
  // The sets for `target` of the entry made for `position`.
  const NeighbourSets& coverable(Entry& entry, const Position& position, int target);

 private:
  static void workOut(Entry& entry, const Position& position, int target);

  struct Free {
    void operator()(void* memory) const;
  };
  std::unique_ptr<Entry, Free> entries_;
  std::uint64_t uses_ = 0;  // entries asked for so far
};

struct CoverCache::Entry {
  std::uint64_t men;    // the squares of the mating side's men
  std::uint64_t kinds;  // their kinds, four bits a man in the order of their squares
  int matingSide;
  int matingMoves;        // 0: the entry holds nothing yet
  std::uint64_t known;    // the squares whose sets are worked out
  std::uint64_t lastUse;  // when it was last asked for, counted in entries asked for
  std::array<NeighbourSets, 64> sets;
};

inline const NeighbourSets& CoverCache::coverable(Entry& entry, const Position& position, int target) {
  if (((entry.known >> target) & 1) == 0) workOut(entry, position, target);
  return entry.sets[static_cast<std::size_t>(target)];
}

}  // namespace velkaro::core
