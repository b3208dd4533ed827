#pragma once
// Whether the men could still build a mate in the last few moves of a
// helpmate: a picture around some square the mated king can reach, with a
// man of the mating side bearing on it and every square next to it either
// covered by the mating side or filled by a man of the king's own side.
//
// Everything is judged on an empty board: a man reaches in n moves whatever
// its moves would reach with nothing in the way (a pawn steps ahead or aside
// and may promote on the last rank), and a line piece bears through every
// man. Each square filled needs a move that lands there, and the king's
// steps come out of the same moves. So when no picture fits, no line of the
// real game mates; a picture that fits proves nothing.
//
// The mating side has at most two moves left here (one man moves once or
// twice, or two men move once each), and the other side at most two.

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include "core/board_bits.h"
#include "core/check_geometry.h"
#include "core/cover_cache.h"
#include "core/position.h"

namespace velkaro::core {

namespace picture_detail {

// The most moves either side may have left.
inline constexpr int kMostMoves = 2;
inline constexpr std::uint64_t kLastRanks = 0xff000000000000ffULL;

inline std::uint64_t around(int square) {
  return check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(piece::King))]
                                           [static_cast<std::size_t>(square)];
}

inline std::uint64_t attacksFrom(int slot, int square) {
  return check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(slot)][static_cast<std::size_t>(square)];
}

// The squares within one and two king steps of each square.
constexpr std::array<std::array<std::uint64_t, 64>, kMostMoves + 1> makeBalls() {
  std::array<std::array<std::uint64_t, 64>, kMostMoves + 1> balls{};
  for (int radius = 0; radius <= kMostMoves; ++radius) {
    for (int square = 0; square < 64; ++square) {
      for (int to = 0; to < 64; ++to) {
        const int files = std::max((square & 7) - (to & 7), (to & 7) - (square & 7));
        const int rows = std::max((square >> 3) - (to >> 3), (to >> 3) - (square >> 3));
        if (std::max(files, rows) <= radius) {
          balls[static_cast<std::size_t>(radius)][static_cast<std::size_t>(square)] |= std::uint64_t{1} << to;
        }
      }
    }
  }
  return balls;
}

inline constexpr auto kBalls = makeBalls();

inline std::uint64_t stepsFrom(std::uint64_t squares, int slot) {
  std::uint64_t next = 0;
  for (; squares != 0; squares &= squares - 1) {
    next |= check_geometry::kReach[static_cast<std::size_t>(slot)][static_cast<std::size_t>(std::countr_zero(squares))];
  }
  return next;
}

// Where a man may stand after at most n moves: `asIs[n]` as the man it is,
// `promoted[n]` as a piece a pawn promoted to.
struct Reach {
  std::array<std::uint64_t, kMostMoves + 1> asIs;
  std::array<std::uint64_t, kMostMoves + 1> promoted;
};

inline Reach reachOf(int code, int from, int moves) {
  Reach reach{};
  const int slot = pieceSlot(code);
  const bool pawn = code == piece::Pawn || code == -piece::Pawn;
  const int queen = pieceSlot(code > 0 ? piece::Queen : -piece::Queen);
  const int knight = pieceSlot(code > 0 ? piece::Knight : -piece::Knight);
  reach.asIs[0] = std::uint64_t{1} << from;
  for (std::size_t n = 1; n <= static_cast<std::size_t>(moves); ++n) {
    const std::uint64_t before = reach.asIs[n - 1];
    if (!pawn) {
      reach.asIs[n] = before | stepsFrom(before, slot);
      continue;
    }
    const std::uint64_t steps = stepsFrom(before, slot);
    reach.asIs[n] = before | (steps & ~kLastRanks);
    reach.promoted[n] = reach.promoted[n - 1] | (steps & kLastRanks) | stepsFrom(reach.promoted[n - 1], queen) |
                        stepsFrom(reach.promoted[n - 1], knight);
  }
  return reach;
}

// The squares of `squares`, all next to `square`, as eight bits: the three
// on the rank above it, the two beside it, the three on the rank below.
inline unsigned neighbourBits(int square, std::uint64_t squares) {
  // The square nine before this one comes to bit 0; none of the squares
  // next to it lies lower, so nothing wraps round.
  const std::uint64_t shifted = std::rotr(squares, square - 9);
  return static_cast<unsigned>((shifted & 7) | ((shifted >> 5) & 8) | ((shifted >> 6) & 16) | ((shifted >> 11) & 0xe0));
}

inline bool holds(const NeighbourSets& sets, unsigned set) { return ((sets[set >> 6] >> (set & 63)) & 1) != 0; }

}  // namespace picture_detail

// Before the last move of the side to be mated: whether any move may leave
// a mate picture that fits, else the squares its king and its other men may
// go to for one.
struct LastPictureMoves {
  bool any = false;
  std::uint64_t king = 0;
  std::uint64_t others = 0;
};

// The mate pictures around the king of `Side` that its side, with at most
// `ownMoves` (up to two) more moves, and the opponent, with `matingMoves`
// (one or two, the last of them the mate), might build.
template <int Side>
class MatePictures {
 public:
  // The sets of what the mating side can cover come from `cover`, which
  // must not serve other pictures while these are asked.
  MatePictures(const Position& position, int ownMoves, int matingMoves, CoverCache& cover)
      : position_(position),
        ownMoves_(ownMoves),
        king_(Side == White ? position.whiteKingSquare : position.blackKingSquare),
        own_(menOf<Side>(position.board) & ~(std::uint64_t{1} << king_)),
        cover_(&cover),
        entry_(&cover.entryFor(position, -Side, matingMoves)) {
    using namespace picture_detail;
    if (ownMoves == 1) {  // a man, pawn or not, ends where it stands or where its moves reach
      for (std::uint64_t men = own_; men != 0; men &= men - 1) {
        const auto square = static_cast<std::size_t>(std::countr_zero(men));
        const auto slot = static_cast<std::size_t>(pieceSlot(position.board[square]));
        within_[1] |= (men & -men) | check_geometry::kReach[slot][square];
      }
      return;
    }
    for (std::uint64_t men = own_; men != 0 && ownMoves > 0; men &= men - 1) {
      const int square = std::countr_zero(men);
      const Reach reach = reachOf(position.board[square], square, ownMoves);
      for (std::size_t n = 1; n <= static_cast<std::size_t>(ownMoves); ++n) {
        within_[n] |= reach.asIs[n] | reach.promoted[n];
      }
    }
  }

  // Whether a picture fits around some square the king may walk to.
  bool anyFits() const {
    using picture_detail::kBalls;
    for (int steps = 0; steps <= ownMoves_; ++steps) {
      std::uint64_t ring = kBalls[static_cast<std::size_t>(steps)][static_cast<std::size_t>(king_)];
      if (steps > 0) ring &= ~kBalls[static_cast<std::size_t>(steps - 1)][static_cast<std::size_t>(king_)];
      for (; ring != 0; ring &= ring - 1) {
        if (fitsAround(std::countr_zero(ring), 0, ownMoves_ - steps)) return true;
      }
    }
    return false;
  }

  // With one move of the king's side left: whether a picture fits with the
  // king on `square`, where it stands (the move may fill) or a step away.
  bool fitsWithKingOn(int square) const { return fitsAround(square, 0, square == king_ ? 1 : 0); }

  // Whether a picture fits around `target` with the squares of `filled`
  // filled already and `fillMoves` moves left to fill more: whether the
  // mating side can cover, with a check, the flights left open by filling
  // one or two of them (as the moves allow) or none.
  bool fitsAround(int target, std::uint64_t filled, int fillMoves) const {
    using namespace picture_detail;
    const NeighbourSets& coverable = cover_->coverable(*entry_, position_, target);
    const std::uint64_t flights = around(target) & ~own_ & ~filled;
    const unsigned open = neighbourBits(target, flights);
    if (holds(coverable, open)) return true;
    if (fillMoves == 0) return false;
    // Any one flight its men reach in the moves left may be filled; two
    // take both moves, so only two that each take one.
    for (unsigned first = neighbourBits(target, flights & within_[static_cast<std::size_t>(fillMoves)]); first != 0;
         first &= first - 1) {
      if (holds(coverable, open & ~(first & -first))) return true;
    }
    if (fillMoves < 2) return false;
    const unsigned pairable = neighbourBits(target, flights & within_[1]);
    for (unsigned first = pairable; first != 0; first &= first - 1) {
      const unsigned one = first & -first;
      for (unsigned second = first & (first - 1); second != 0; second &= second - 1) {
        if (holds(coverable, open & ~(one | (second & -second)))) return true;
      }
    }
    return false;
  }

  // Before the last move of the king's side (one own move left): where its
  // men may go with a move after which a picture still fits. Every move may,
  // when one fits around the king as it stands with nothing filled; else the
  // king only to squares its own men leave free where one fits as they are,
  // any other man only onto a square next to the king whose filling lets one
  // fit.
  LastPictureMoves lastMoves() const {
    LastPictureMoves moves;
    if (fitsAround(king_, 0, 0)) {
      moves.any = true;
      return moves;
    }
    for (std::uint64_t steps = picture_detail::around(king_) & ~own_; steps != 0; steps &= steps - 1) {
      const int step = std::countr_zero(steps);
      if (fitsAround(step, 0, 0)) moves.king |= std::uint64_t{1} << step;
    }
    // Filling a flight takes the move, so none can help unless a picture
    // fits with a move left for filling.
    const std::uint64_t flights = picture_detail::around(king_) & ~own_ & within_[1];
    if (flights == 0 || !fitsAround(king_, 0, 1)) return moves;
    for (std::uint64_t squares = flights; squares != 0; squares &= squares - 1) {
      const std::uint64_t square = squares & -squares;
      if (fitsAround(king_, square, 0)) moves.others |= square;
    }
    return moves;
  }

  // Which moves a ply may make: none, only those written into its landings,
  // or all.
  enum class Moves { None, Some, All };

  // The same for the king's side's move with two of its moves left: none
  // when no picture fits; all when one fits with only one of them (the other
  // may be spent anyhow); else the king only to squares from which one fits
  // with its other move, any other man onto a square it fills for a picture,
  // or to where its second move fills one around the king as it stands. Adds
  // the men's landings to `landings` by their squares.
  Moves secondToLastMoves(const Position& position, MoverTargets& landings) const {
    using namespace picture_detail;
    // The squares where a picture fits with the two moves, and a cache of
    // those where it fits with the king already there and `n` moves left.
    // A square two steps away takes both moves, so the king reaches it only
    // through a square between that its own men leave free. (The square
    // itself may hold one of them: a man of the mating side may take it
    // there, and the king take that man.)
    std::uint64_t fitting = 0;
    const std::uint64_t freeSteps = around(king_) & ~own_;
    for (std::uint64_t targets = kBalls[2][static_cast<std::size_t>(king_)]; targets != 0; targets &= targets - 1) {
      const int target = std::countr_zero(targets);
      const int steps = (kBalls[1][static_cast<std::size_t>(king_)] >> target) & 1 ? (target == king_ ? 0 : 1) : 2;
      if (steps == 2 && (around(target) & freeSteps) == 0) continue;
      if (fitsAround(target, 0, 2 - steps)) fitting |= std::uint64_t{1} << target;
    }
    if (fitting == 0) return Moves::None;
    std::array<std::uint64_t, 2> known{};
    std::array<std::uint64_t, 2> fits{};
    const auto fitsWith = [&](int target, int left) {
      const std::uint64_t bit = std::uint64_t{1} << target;
      auto& seen = known[static_cast<std::size_t>(left)];
      if ((seen & bit) == 0) {
        seen |= bit;
        if ((fitting & bit) != 0 && fitsAround(target, 0, left)) fits[static_cast<std::size_t>(left)] |= bit;
      }
      return (fits[static_cast<std::size_t>(left)] & bit) != 0;
    };
    const std::uint64_t kingBit = std::uint64_t{1} << king_;
    if (fitsWith(king_, 1)) return Moves::All;
    for (std::uint64_t near = around(king_) & fitting; near != 0; near &= near - 1) {
      if (fitsWith(std::countr_zero(near), 0)) return Moves::All;
    }
    for (std::uint64_t steps = around(king_) & ~own_; steps != 0; steps &= steps - 1) {
      const int step = std::countr_zero(steps);
      bool fitsThere = fitsWith(step, 1);
      for (std::uint64_t near = around(step) & fitting; near != 0 && !fitsThere; near &= near - 1) {
        fitsThere = fitsWith(std::countr_zero(near), 0);
      }
      if (fitsThere) landings[static_cast<std::size_t>(king_)] |= std::uint64_t{1} << step;
    }
    // Squares whose filling with one move lets a picture fit, the king
    // stepping after or not; and the flights around the king a second move
    // may fill.
    std::uint64_t fills = 0;
    std::uint64_t laterFills = 0;
    for (std::uint64_t targets = (around(king_) | kingBit) & fitting; targets != 0; targets &= targets - 1) {
      const int target = std::countr_zero(targets);
      const int left = target == king_ ? 1 : 0;
      for (std::uint64_t open = around(target) & ~own_ & within_[1] & ~fills; open != 0; open &= open - 1) {
        const std::uint64_t square = open & -open;
        if (fitsAround(target, square, left)) fills |= square;
      }
    }
    if ((fitting & kingBit) != 0) {
      for (std::uint64_t open = around(king_) & ~own_ & within_[2]; open != 0; open &= open - 1) {
        const std::uint64_t square = open & -open;
        if (fitsAround(king_, square, 0)) laterFills |= square;
      }
    }
    for (std::uint64_t men = own_; men != 0; men &= men - 1) {
      const int square = std::countr_zero(men);
      const int code = position.board[square];
      const int slot = pieceSlot(code);
      std::uint64_t onward = 0;
      if (code == piece::Pawn || code == -piece::Pawn) {
        for (std::uint64_t firsts =
                 check_geometry::kReach[static_cast<std::size_t>(slot)][static_cast<std::size_t>(square)];
             firsts != 0; firsts &= firsts - 1) {
          const int first = std::countr_zero(firsts);
          const std::uint64_t seconds =
              ((kLastRanks >> first) & 1) != 0
                  ? stepsFrom(std::uint64_t{1} << first, pieceSlot(Side * piece::Queen)) |
                        stepsFrom(std::uint64_t{1} << first, pieceSlot(Side * piece::Knight))
                  : check_geometry::kReach[static_cast<std::size_t>(slot)][static_cast<std::size_t>(first)];
          if ((seconds & laterFills) != 0) onward |= std::uint64_t{1} << first;
        }
      } else {
        onward = stepsFrom(laterFills, slot);
      }
      landings[static_cast<std::size_t>(square)] |= fills | onward;
    }
    return Moves::Some;
  }

 private:
  const Position& position_;
  int ownMoves_;
  int king_;
  std::uint64_t own_;
  CoverCache* cover_;
  CoverCache::Entry* entry_;
  std::array<std::uint64_t, picture_detail::kMostMoves + 1> within_{};  // where the king's men get in n moves
};

// Whether the pictures can rule anything out: castling moves two men at
// once, so with a castling right left they cannot. (What the mating side
// can cover is kept by the set-up of its men, so even with many of them and
// two moves, which end in many ways, the pictures cost little.)
inline bool picturesPay(const Position& position) {
  return !(position.whiteLongCastle || position.whiteShortCastle || position.blackLongCastle ||
           position.blackShortCastle);
}

// Whether the king of `Side` could stand mated after at most `ownMoves` more
// moves of its side and `matingMoves` of the opponent's: yes also where the
// pictures do not pay.
template <int Side>
bool mateMayBeBuilt(const Position& position, int ownMoves, int matingMoves, CoverCache& cover) {
  return !picturesPay(position) || MatePictures<Side>(position, ownMoves, matingMoves, cover).anyFits();
}

}  // namespace velkaro::core
