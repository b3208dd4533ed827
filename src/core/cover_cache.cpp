// What the mating side can cover around a square: worked out once per set-up
// of its men and square, kept in a table of set-ups.

#include "core/cover_cache.h"

#include <cstdlib>
#include <new>

#include "core/mate_picture.h"

namespace velkaro::core {

namespace {

using namespace picture_detail;

// Set-ups kept at once, in groups of four that share the place their
// set-ups hash to; a search meets some hundreds to a few thousand. The
// memory is asked for zeroed, so only the entries used cost pages.
constexpr std::size_t kEntries = 4096;
constexpr std::size_t kWays = 4;

std::uint64_t menOf(const Position& position, int side) {
  return side == White ? core::menOf<White>(position.board) : core::menOf<Black>(position.board);
}

// By piece slot and square, the squares from which a man of that slot attacks
// the square on an empty board.
constexpr std::array<std::array<std::uint64_t, 64>, 18> makeAttackers() {
  std::array<std::array<std::uint64_t, 64>, 18> attackers{};
  for (std::size_t slot = 0; slot < 18; ++slot) {
    for (std::size_t from = 0; from < 64; ++from) {
      for (std::uint64_t attacked = check_geometry::kEmptyBoardAttacks[slot][from]; attacked != 0;
           attacked &= attacked - 1) {
        attackers[slot][static_cast<std::size_t>(std::countr_zero(attacked))] |= std::uint64_t{1} << from;
      }
    }
  }
  return attackers;
}

constexpr auto kAttackers = makeAttackers();

// Every subset of a set in `sets` joins it.
void addSubsets(NeighbourSets& sets) {
  constexpr std::array<std::uint64_t, 6> kWith = {0xaaaaaaaaaaaaaaaa, 0xcccccccccccccccc, 0xf0f0f0f0f0f0f0f0,
                                                  0xff00ff00ff00ff00, 0xffff0000ffff0000, 0xffffffff00000000};
  for (std::uint64_t& word : sets) {
    for (std::size_t bit = 0; bit < kWith.size(); ++bit) word |= (word & kWith[bit]) >> (1u << bit);
  }
  sets[0] |= sets[1];  // bit 6 of a set's number: the word
  sets[2] |= sets[3];
  sets[0] |= sets[2];  // bit 7
  sets[1] |= sets[3];
}

// Where one man of the mating side may end its moves, as up to three kinds
// of man (a pawn as itself, or promoted to a queen or a knight), each with
// the squares it may end on after one move and after all of them.
struct Ending {
  int slot;
  std::uint64_t afterOne;
  std::uint64_t afterAll;
};

struct Man {
  std::uint64_t stays;  // what it covers standing, nothing when it may not stay
  std::array<Ending, 3> endings;
  int endingCount;
};

// The sets for a king on `target`, with the men of `matingSide` making their
// last `matingMoves` moves, the last of them the mate. A man ends nowhere on
// the king's square, nor a king next to it, and covers nothing standing
// there. No man moves, one man makes all the moves, or (with two) two men
// make one each. A man that ends bearing on neither the king's square nor a
// square next to it does no more than it would standing (or than being gone,
// when it may not stay), so only endings that bear on one are tried.
NeighbourSets coverableAround(const Position& position, int matingSide, int matingMoves, int target) {
  const std::uint64_t targetBit = std::uint64_t{1} << target;
  const std::uint64_t near = around(target);
  const std::uint64_t bearing = near | targetBit;
  std::array<std::uint64_t, 18> bearsFrom{};  // by slot: where a man bears on the king's square or next to it
  std::uint32_t bearsKnown = 0;
  const auto bearingFrom = [&](int slot) {
    if (((bearsKnown >> slot) & 1) == 0) {
      bearsKnown |= 1u << slot;
      for (std::uint64_t squares = bearing; squares != 0; squares &= squares - 1) {
        bearsFrom[static_cast<std::size_t>(slot)] |=
            kAttackers[static_cast<std::size_t>(slot)][static_cast<std::size_t>(std::countr_zero(squares))];
      }
    }
    return bearsFrom[static_cast<std::size_t>(slot)];
  };

  std::array<Man, 16> men;
  int count = 0;
  std::uint64_t allStay = 0;
  const int queen = pieceSlot(matingSide * piece::Queen);
  const int knight = pieceSlot(matingSide * piece::Knight);
  for (std::uint64_t mating = menOf(position, matingSide); mating != 0; mating &= mating - 1) {
    const int square = std::countr_zero(mating);
    const int code = position.board[square];
    const int slot = pieceSlot(code);
    const std::uint64_t barred = code == matingSide * piece::King ? bearing : targetBit;
    const Reach reach = reachOf(code, square, matingMoves);
    const auto last = static_cast<std::size_t>(matingMoves);
    Man& man = men[static_cast<std::size_t>(count++)];
    man.stays = ((barred >> square) & 1) != 0 ? 0 : attacksFrom(slot, square);
    man.endings[0] = {slot, reach.asIs[1] & ~barred & bearingFrom(slot),
                      reach.asIs[last] & ~barred & bearingFrom(slot)};
    man.endingCount = 1;
    if ((reach.promoted[last] & ~barred) != 0) {
      for (const int promoted : {queen, knight}) {
        man.endings[static_cast<std::size_t>(man.endingCount++)] = {
            promoted, reach.promoted[1] & ~barred & bearingFrom(promoted),
            reach.promoted[last] & ~barred & bearingFrom(promoted)};
      }
    }
    allStay |= man.stays;
  }

  NeighbourSets sets{};
  const auto add = [&](std::uint64_t covered) {
    if ((covered & targetBit) == 0) return;
    const unsigned set = neighbourBits(target, covered & near);
    sets[set >> 6] |= std::uint64_t{1} << (set & 63);
  };
  add(allStay);
  for (int index = 0; index < count; ++index) {
    const Man& man = men[static_cast<std::size_t>(index)];
    std::uint64_t others = 0;
    for (int other = 0; other < count; ++other) {
      if (other != index) others |= men[static_cast<std::size_t>(other)].stays;
    }
    for (int ending = 0; ending < man.endingCount; ++ending) {
      const Ending& end = man.endings[static_cast<std::size_t>(ending)];
      for (std::uint64_t squares = end.afterAll; squares != 0; squares &= squares - 1) {
        add(others | attacksFrom(end.slot, std::countr_zero(squares)));
      }
    }
  }
  if (matingMoves == 2) {
    for (int first = 0; first < count; ++first) {
      for (int second = first + 1; second < count; ++second) {
        std::uint64_t rest = 0;
        for (int other = 0; other < count; ++other) {
          if (other != first && other != second) rest |= men[static_cast<std::size_t>(other)].stays;
        }
        const Man& one = men[static_cast<std::size_t>(first)];
        const Man& two = men[static_cast<std::size_t>(second)];
        for (int oneEnding = 0; oneEnding < one.endingCount; ++oneEnding) {
          const Ending& oneEnd = one.endings[static_cast<std::size_t>(oneEnding)];
          for (std::uint64_t oneSquares = oneEnd.afterOne; oneSquares != 0; oneSquares &= oneSquares - 1) {
            const std::uint64_t covered = rest | attacksFrom(oneEnd.slot, std::countr_zero(oneSquares));
            for (int twoEnding = 0; twoEnding < two.endingCount; ++twoEnding) {
              const Ending& twoEnd = two.endings[static_cast<std::size_t>(twoEnding)];
              for (std::uint64_t twoSquares = twoEnd.afterOne; twoSquares != 0; twoSquares &= twoSquares - 1) {
                add(covered | attacksFrom(twoEnd.slot, std::countr_zero(twoSquares)));
              }
            }
          }
        }
      }
    }
  }
  addSubsets(sets);
  return sets;
}

// The kinds of `men` in `board`, four bits a man: a side's six kinds of man
// have slots nine apart from the other side's.
std::uint64_t kindsOf(const Position& position, std::uint64_t men) {
  std::uint64_t kinds = 0;
  for (; men != 0; men &= men - 1) {
    kinds = (kinds << 4) | static_cast<std::uint64_t>(pieceSlot(position.board[std::countr_zero(men)]) % 9);
  }
  return kinds;
}

std::size_t slotOf(std::uint64_t men, std::uint64_t kinds, int matingSide, int matingMoves) {
  std::uint64_t value = (men ^ static_cast<std::uint64_t>(matingMoves * 2 + (matingSide > 0))) * 0x9e3779b97f4a7c15;
  value = (value ^ (value >> 32) ^ kinds) * 0xbf58476d1ce4e5b9;
  return kWays * static_cast<std::size_t>(value >> (64 - std::countr_zero(kEntries / kWays)));
}

}  // namespace

void CoverCache::Free::operator()(void* memory) const { std::free(memory); }

CoverCache::CoverCache() : entries_(static_cast<Entry*>(std::calloc(kEntries, sizeof(Entry)))) {
  if (!entries_) throw std::bad_alloc();
}

CoverCache::~CoverCache() = default;

CoverCache::Entry& CoverCache::entryFor(const Position& position, int matingSide, int matingMoves) {
  const std::uint64_t men = menOf(position, matingSide);
  const std::uint64_t kinds = kindsOf(position, men);
  Entry* group = entries_.get() + slotOf(men, kinds, matingSide, matingMoves);
  ++uses_;
  Entry* oldest = group;
  for (Entry* entry = group; entry != group + kWays; ++entry) {
    if (entry->men == men && entry->kinds == kinds && entry->matingSide == matingSide &&
        entry->matingMoves == matingMoves) {
      entry->lastUse = uses_;
      return *entry;
    }
    if (entry->lastUse < oldest->lastUse) oldest = entry;
  }
  // The set-up of the group used longest ago makes room.
  oldest->men = men;
  oldest->kinds = kinds;
  oldest->matingSide = matingSide;
  oldest->matingMoves = matingMoves;
  oldest->known = 0;
  oldest->lastUse = uses_;
  return *oldest;
}

void CoverCache::workOut(Entry& entry, const Position& position, int target) {
  entry.sets[static_cast<std::size_t>(target)] = coverableAround(position, entry.matingSide, entry.matingMoves, target);
  entry.known |= std::uint64_t{1} << target;
}

}  // namespace velkaro::core
