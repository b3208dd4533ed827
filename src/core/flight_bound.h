#pragma once
// A mate needs every flight of the mated king covered. The last moves of a
// helpmate must cover them all between them: counting what those moves can
// cover at most shows when a move, or a whole position, cannot lead to mate,
// without making any move.
//
// The counts look at a king standing on a board with its own king lifted
// off, so that a line through the square it left counts. A flight is a
// square next to the king that holds no man of its own side and that the
// opponent does not attack. The mating reply must check: its man bears on
// the king from where it lands, or it leaves a line from the king to a line
// piece of its side. It covers at most what that man attacks from there, and
// the flights behind the square it leaves. Blockers on the far side are
// ignored, so a count may allow a mate that cannot be, never the reverse.

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <vector>

#include "core/attacks.h"
#include "core/check_geometry.h"
#include "core/mate_test.h"

namespace velkaro::core {

namespace detail {

// Whether the man `code` bears along direction `direction` (as in the attack
// tests: even orthogonal, odd diagonal) for `side`.
constexpr bool bearsAlong(int code, int side, int direction) {
  if (code == side * piece::Queen) return true;
  return code == side * (direction % 2 == 0 ? piece::Rook : piece::Bishop);
}

// The directions the man `code` bears along for `side`, one bit each.
constexpr unsigned directionsOf(int code, int side) {
  if (code == side * piece::Queen) return 0xffu;
  if (code == side * piece::Rook) return 0x55u;
  return code == side * piece::Bishop ? 0xaau : 0u;
}

inline constexpr int kDirectionFileStep[8] = {-1, -1, 0, 1, 1, 1, 0, -1};
inline constexpr int kDirectionRowStep[8] = {0, -1, -1, -1, 0, 1, 1, 1};

// The squares beyond each square along each direction, nearest first when
// read from the low end for directions 4 to 7 and from the high end for 0
// to 3 (those go to lower square numbers).
constexpr std::array<std::array<std::uint64_t, 64>, 8> makeRays() {
  std::array<std::array<std::uint64_t, 64>, 8> rays{};
  for (int direction = 0; direction < 8; ++direction) {
    for (int square = 0; square < 64; ++square) {
      for (int file = (square & 7) + kDirectionFileStep[direction], row = (square >> 3) + kDirectionRowStep[direction];
           geometry::onBoard(file, row); file += kDirectionFileStep[direction], row += kDirectionRowStep[direction]) {
        rays[static_cast<std::size_t>(direction)][static_cast<std::size_t>(square)] |= std::uint64_t{1}
                                                                                       << (8 * row + file);
      }
    }
  }
  return rays;
}

inline constexpr auto kRays = makeRays();

// The nearest of `squares`, all on one ray along `direction`.
inline int nearestOn(std::uint64_t squares, int direction) {
  return direction < 4 ? 63 - std::countl_zero(squares) : std::countr_zero(squares);
}

// The squares of the ray along `direction` from a square up to and with
// `blocker`, which lies on it.
inline std::uint64_t rayUpTo(std::uint64_t ray, int direction, int blocker) {
  return ray & ~kRays[static_cast<std::size_t>(direction)][static_cast<std::size_t>(blocker)];
}

// How many moves of each side may leave the lines: `own` of the line
// pieces' side, `other` of the other side.
struct Leaving {
  int own;
  int other;
};

// For each of `budgets`, the squares a line piece of `side` would attack once
// the men between it and them had left. A move empties only the square it
// leaves: a man of `side` leaves by a move of its own, a man of the other
// side by its own move or by being taken and the taker moving on, two moves
// of `side`. Each line is walked once for all the budgets.
template <std::size_t N>
std::array<std::uint64_t, N> linesWithLeaving(const Position& position, int side,
                                              const std::array<Leaving, N>& budgets) {
  std::array<std::uint64_t, N> squares{};
  const std::uint64_t occupied = occupiedOf(position.board);
  for (std::uint64_t pieces = side == White ? menOf<White>(position.board) : menOf<Black>(position.board); pieces != 0;
       pieces &= pieces - 1) {
    const int from = std::countr_zero(pieces);
    const int code = position.board[static_cast<std::size_t>(from)];
    for (unsigned directions = directionsOf(code, side); directions != 0; directions &= directions - 1) {
      const int direction = std::countr_zero(directions);
      const std::uint64_t ray = kRays[static_cast<std::size_t>(direction)][static_cast<std::size_t>(from)];
      unsigned open = (1u << N) - 1;  // the budgets the line still reaches through
      int own = 0;
      int other = 0;
      for (std::uint64_t blockers = ray & occupied; blockers != 0 && open != 0;) {
        const int at = nearestOn(blockers, direction);
        blockers &= ~(std::uint64_t{1} << at);
        if (position.board[static_cast<std::size_t>(at)] * side > 0) {
          ++own;
        } else {
          ++other;
        }
        for (std::size_t budget = 0; budget < N; ++budget) {
          const Leaving leaving = budgets[budget];
          if (((open >> budget) & 1) != 0 &&
              (own > leaving.own || other > leaving.other + (leaving.own - own) / 2)) {
            squares[budget] |= rayUpTo(ray, direction, at);
            open &= ~(1u << budget);
          }
        }
      }
      for (std::size_t budget = 0; budget < N; ++budget) {
        if ((open >> budget) & 1) squares[budget] |= ray;
      }
    }
  }
  return squares;
}

inline std::uint64_t linesWithLeaving(const Position& position, int side, Leaving leaving) {
  return linesWithLeaving<1>(position, side, {leaving})[0];
}

// Whether the man on `square` could uncover a check by a line piece of `side`
// on the king on `king` by leaving: it stands on a line from the king, with
// such a piece further out and at most `others` other men on the line
// between them.
inline bool uncoversCheck(const Position& position, int side, int king, int square, int others) {
  const int direction = check_geometry::kLines[static_cast<std::size_t>(king)][static_cast<std::size_t>(square)];
  if (direction < 0) return false;
  const std::uint64_t leaving = std::uint64_t{1} << square;
  // The men on the line from the king outwards, nearest first.
  std::uint64_t men = (kRays[static_cast<std::size_t>(direction)][static_cast<std::size_t>(king)] &
                       occupiedOf(position.board)) |
                      leaving;
  bool passed = false;
  while (men != 0) {
    const int at = nearestOn(men, direction);
    men &= ~(std::uint64_t{1} << at);
    if (at == square) {
      passed = true;
    } else {
      if (passed && bearsAlong(position.board[static_cast<std::size_t>(at)], side, direction)) return true;
      if (--others < 0) return false;
    }
  }
  return false;
}

// The squares the king of `Side` cannot step to on `lifted`: those of its
// own men and those the opponent attacks, `lines` the squares its line
// pieces attack.
template <int Side>
std::uint64_t closedSquares(const Position& lifted, std::uint64_t lines) {
  std::uint64_t closed = menOf<Side>(lifted.board) | lines;
  for (std::uint64_t men = menOf<-Side>(lifted.board); men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    const int code = lifted.board[square];
    if (code == -Side * piece::Queen || code == -Side * piece::Rook || code == -Side * piece::Bishop) continue;
    closed |=
        check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(code))][static_cast<std::size_t>(square)];
  }
  return closed;
}

// The flights of a king standing on `king`, given the closed squares.
inline std::uint64_t flightsOf(int king, std::uint64_t closed) {
  return check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(piece::King))]
                                           [static_cast<std::size_t>(king)] &
         ~closed;
}

// By piece slot and square, the squares a man attacks from there on an empty
// board; a pawn on the last rank as a queen or a knight as well.
constexpr std::array<std::array<std::uint64_t, 64>, 18> makeCover() {
  auto cover = check_geometry::kEmptyBoardAttacks;
  for (int side : {White, Black}) {
    auto& pawn = cover[static_cast<std::size_t>(pieceSlot(side * piece::Pawn))];
    const auto& queen = check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(side * piece::Queen))];
    const auto& knight = check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(side * piece::Knight))];
    for (std::size_t square = 0; square < 64; ++square) {
      if (square < 8 || square >= 56) pawn[square] |= queen[square] | knight[square];
    }
  }
  return cover;
}

inline constexpr auto kCover = makeCover();

inline std::uint64_t coverFrom(int code, int square) {
  return kCover[static_cast<std::size_t>(pieceSlot(code))][static_cast<std::size_t>(square)];
}

// For a man on a square and a king square: the most squares next to the king
// the man attacks on an empty board after one move (by the squares kReach
// gives; a pawn reaching the last rank as a queen or a knight), and after two.
struct NearKingCover {
  std::uint8_t oneMove;
  std::uint8_t twoMoves;
};

inline std::size_t nearKingIndex(int slot, int square, int king) {
  return (static_cast<std::size_t>(slot) * 64 + static_cast<std::size_t>(square)) * 64 + static_cast<std::size_t>(king);
}

// Worked out when the program starts, by piece slot, square and king square.
inline std::vector<NearKingCover> makeNearKingCover() {
  std::vector<NearKingCover> table(18 * 64 * 64, NearKingCover{0, 0});
  const auto& around = check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(piece::King))];
  for (int kind : {piece::King, piece::Queen, piece::Rook, piece::Bishop, piece::Knight, piece::Pawn}) {
    for (int side : {White, Black}) {
      const int code = side * kind;
      const auto& reach = check_geometry::kReach[static_cast<std::size_t>(pieceSlot(code))];
      // What the man covers next to each king, standing on each square.
      std::array<std::array<std::uint8_t, 64>, 64> near{};
      for (std::size_t square = 0; square < 64; ++square) {
        const std::uint64_t cover = coverFrom(code, static_cast<int>(square));
        for (std::size_t king = 0; king < 64; ++king) {
          near[square][king] = static_cast<std::uint8_t>(geometry::countOf(cover & around[king]));
        }
      }
      const auto takeMost = [&near](std::array<std::uint8_t, 64>& most, std::uint64_t squares) {
        for (; squares != 0; squares &= squares - 1) {
          const auto& covered = near[static_cast<std::size_t>(std::countr_zero(squares))];
          for (std::size_t king = 0; king < 64; ++king) most[king] = std::max(most[king], covered[king]);
        }
      };
      for (int from = 0; from < 64; ++from) {
        const std::uint64_t once = reach[static_cast<std::size_t>(from)];
        std::uint64_t twice = 0;
        for (std::uint64_t rest = once; rest != 0; rest &= rest - 1) {
          twice |= reach[static_cast<std::size_t>(std::countr_zero(rest))];
        }
        std::array<std::uint8_t, 64> oneMove{};
        std::array<std::uint8_t, 64> twoMoves{};
        takeMost(oneMove, once);
        takeMost(twoMoves, twice);
        for (int king = 0; king < 64; ++king) {
          table[nearKingIndex(pieceSlot(code), from, king)] =
              NearKingCover{oneMove[static_cast<std::size_t>(king)], twoMoves[static_cast<std::size_t>(king)]};
        }
      }
    }
  }
  return table;
}

inline const std::vector<NearKingCover> kNearKingCover = makeNearKingCover();

// Whether the men on `men` could cover `uncovered` squares next to a king on
// `king` with two moves between them: one move each of two men, or two moves
// of one. Each man is read from `lifted`; a square left empty there (the man
// a king's step takes) reads as slot 0, as the landings below read it.
inline bool twoMovesMayCover(const Position& lifted, int king, int uncovered, std::uint64_t men) {
  int first = 0;
  int second = 0;
  for (; men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    const NearKingCover most = kNearKingCover[nearKingIndex(pieceSlot(lifted.board[square]), square, king)];
    if (most.twoMoves >= uncovered) return true;
    if (most.oneMove > first) {
      second = first;
      first = most.oneMove;
    } else if (most.oneMove > second) {
      second = most.oneMove;
    }
  }
  return first + second >= uncovered;
}

// The squares the man `code` cannot stand on at the end of a line that
// mates a king on `king`: the king's own, and for a king the squares next
// to it.
inline std::uint64_t barredAtMate(int code, int king) {
  const std::uint64_t own = std::uint64_t{1} << king;
  if (code != piece::King && code != -piece::King) return own;
  return own | check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(piece::King))]
                                                 [static_cast<std::size_t>(king)];
}

// Whether a line piece of `side` among `linePieces`, other than the man on
// `square`, could come with one move to stand behind that man on a line from
// the king on `king`, by the squares it reaches on an empty board.
inline bool lineMayFormBehind(const Position& lifted, int side, int king, int square, std::uint64_t linePieces) {
  const int direction = check_geometry::kLines[static_cast<std::size_t>(king)][static_cast<std::size_t>(square)];
  if (direction < 0) return false;
  const std::uint64_t behind = kRays[static_cast<std::size_t>(direction)][static_cast<std::size_t>(square)];
  for (std::uint64_t pieces = linePieces & ~(std::uint64_t{1} << square); pieces != 0; pieces &= pieces - 1) {
    const int from = std::countr_zero(pieces);
    const int code = lifted.board[from];
    if (bearsAlong(code, side, direction) &&
        ((check_geometry::kReach[static_cast<std::size_t>(pieceSlot(code))][static_cast<std::size_t>(from)] |
          (std::uint64_t{1} << from)) &
         behind) != 0) {
      return true;
    }
  }
  return false;
}

// The squares from which a man of `side` uncovers a check on the king on
// `king` by moving off, along `direction`, once the man on `vacated` has
// left: those on the line from the king to a line piece of `side` bearing
// along it, with at most `men` men between.
inline std::uint64_t discoveryLane(const Position& lifted, std::uint64_t occupied, int side, int king, int direction,
                                   int vacated, int men) {
  const std::uint64_t ray = kRays[static_cast<std::size_t>(direction)][static_cast<std::size_t>(king)];
  std::uint64_t blockers = ray & occupied;
  if (vacated >= 0) blockers &= ~(std::uint64_t{1} << vacated);
  for (int passed = 0; blockers != 0; ++passed) {
    const int at = nearestOn(blockers, direction);
    if (bearsAlong(lifted.board[static_cast<std::size_t>(at)], side, direction)) {
      return rayUpTo(ray, direction, at) & ~(std::uint64_t{1} << at);
    }
    if (passed == men) return 0;
    blockers &= ~(std::uint64_t{1} << at);
  }
  return 0;
}

// The same along the lines from the king through `interest`, each line
// worked out once for the men that leave none of them; the line a man leaves
// is worked out for it.
class DiscoveryLanes {
 public:
  DiscoveryLanes(const Position& lifted, int side, int king, int men, bool linesMayUncover)
      : lifted_(lifted),
        occupied_(linesMayUncover ? occupiedOf(lifted.board) : 0),
        side_(side),
        king_(king),
        men_(men),
        linesMayUncover_(linesMayUncover) {}

  std::uint64_t after(int vacated, std::uint64_t interest) {
    if (!linesMayUncover_) return 0;
    const auto& lines = check_geometry::kLines[static_cast<std::size_t>(king_)];
    unsigned directions = 0;
    for (interest &= check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(piece::Queen))]
                                                       [static_cast<std::size_t>(king_)];
         interest != 0; interest &= interest - 1) {
      directions |= 1u << lines[static_cast<std::size_t>(std::countr_zero(interest))];
    }
    const int left = lines[static_cast<std::size_t>(vacated)];
    std::uint64_t lanes = 0;
    for (; directions != 0; directions &= directions - 1) {
      const int direction = std::countr_zero(directions);
      if (direction == left) {
        lanes |= discoveryLane(lifted_, occupied_, side_, king_, direction, vacated, men_);
        continue;
      }
      if (((known_ >> direction) & 1) == 0) {
        lanes_[static_cast<std::size_t>(direction)] = discoveryLane(lifted_, occupied_, side_, king_, direction, -1, men_);
        known_ |= 1u << direction;
      }
      lanes |= lanes_[static_cast<std::size_t>(direction)];
    }
    return lanes;
  }

 private:
  const Position& lifted_;
  std::uint64_t occupied_;
  int side_;
  int king_;
  int men_;
  bool linesMayUncover_;
  unsigned known_ = 0;
  std::array<std::uint64_t, 8> lanes_{};
};

// The most of some flights that one man covers with a checking move, and the
// most that any other man covers: the check after a first move that is not
// the checker's own.
struct CheckingCover {
  int most = -1;  // -1: no check at all
  int mostSquare = -1;
  int next = -1;
  int without(int square) const { return square == mostSquare ? next : most; }
};

// The most of `flights` that men of the opponent of `Side` attack after a
// move that checks the king on `king`, counted until two men reach
// `enough`. The move checks from where it lands, or uncovers a check by
// leaving a line from the king: a line piece of its side further out with at
// most `othersOnLine` other men between, or one of `linePieces` that a move
// before could bring behind it.
template <int Side>
CheckingCover mostCheckingCover(const Position& lifted, int king, std::uint64_t flights, int othersOnLine,
                                std::uint64_t linePieces, bool linesMayForm, int enough,
                                std::uint64_t checkers = ~std::uint64_t{0}) {
  constexpr int Opponent = -Side;
  const std::int8_t* board = lifted.board;
  CheckingCover cover;
  for (std::uint64_t men = menOf<Opponent>(board) & checkers; men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    const int code = board[square];
    const auto slot = static_cast<std::size_t>(pieceSlot(code));
    if (kNearKingCover[nearKingIndex(static_cast<int>(slot), square, king)].oneMove <= cover.next) continue;
    const std::uint64_t otherLinePieces = linePieces & ~(std::uint64_t{1} << square);
    const bool discovers =
        otherLinePieces != 0 && (uncoversCheck(lifted, Opponent, king, square, othersOnLine) ||
                                 (linesMayForm && lineMayFormBehind(lifted, Opponent, king, square, linePieces)));
    if (!discovers && code == Opponent * piece::King) continue;
    const bool pawn = code == Opponent * piece::Pawn;
    std::uint64_t reach = check_geometry::kReach[slot][static_cast<std::size_t>(square)] & ~barredAtMate(code, king);
    // Any man but a pawn, which may promote, bears on the king from exactly
    // the squares it would attack standing on the king's.
    if (!discovers && !pawn) reach &= check_geometry::kEmptyBoardAttacks[slot][static_cast<std::size_t>(king)];
    int mine = -1;
    for (; reach != 0 && mine < enough; reach &= reach - 1) {
      const std::uint64_t attacked = coverFrom(code, std::countr_zero(reach));
      if (!discovers && ((attacked >> king) & 1) == 0) continue;
      mine = std::max(mine, geometry::squaresIn(attacked & flights));
    }
    if (mine > cover.most) {
      cover.next = cover.most;
      cover.most = mine;
      cover.mostSquare = square;
    } else if (mine > cover.next) {
      cover.next = mine;
    }
    if (cover.next >= enough) break;
  }
  return cover;
}

// Whether `uncovered` of the `flights` of the king of `Side` on `king` could
// be covered by the opponent's checking reply, when `leaving` men in all
// (the reply's and the own move's) may leave the lines from the flights and
// from the king, and `opening` holds the squares such lines reach. A flight
// on such a line counts once. Castling is not counted; the caller allows for
// it.
template <int Side>
bool replyMayCover(const Position& lifted, int king, std::uint64_t flights, int uncovered, int leaving,
                   std::uint64_t opening) {
  uncovered -= geometry::squaresIn(flights & opening);
  return uncovered <= 0 ||
         mostCheckingCover<Side>(lifted, king, flights & ~opening, leaving - 1, ~std::uint64_t{0}, false, uncovered)
                 .most >= uncovered;
}

// Where each of `candidates`, men of the opponent of `Side`, may land with
// the first of two moves that cover `uncovered` of the `flights`, the second
// a check; added to `landings`, by the man's square. Either two men move, the
// first covering from where it lands and the second checking (or uncovering
// a check, perhaps by a line piece among `linePieces` that the first move
// brought behind it); or the first man moves again and checks from where it
// ends, or uncovers a check by a line piece already there.
template <int Side>
void addFirstLandings(const Position& lifted, int king, std::uint64_t flights, int uncovered, std::uint64_t candidates,
                      int leaving, std::uint64_t opening, std::uint64_t linePieces, MoverTargets& landings) {
  constexpr int Opponent = -Side;
  uncovered -= geometry::squaresIn(flights & opening);
  flights &= ~opening;
  // No two moves of these men cover enough even on an empty board.
  if (uncovered > 0 && !twoMovesMayCover(lifted, king, uncovered, candidates | menOf<Opponent>(lifted.board))) return;
  // The check after a first move of another man. Lines may form behind the
  // checker only when the first man is a line piece; those are worked out
  // when such a man needs more than the lines as they stand give, and only
  // for men on a line from the king.
  const int enough = std::max(uncovered, 0);
  const CheckingCover fixedLines = mostCheckingCover<Side>(lifted, king, flights, leaving - 1, linePieces, false, enough);
  CheckingCover formedLines;
  bool formedKnown = false;
  // Between the king and that piece: the man it took there and a man of the
  // other side leaving.
  DiscoveryLanes discoveryLanes(lifted, Opponent, king, 2, linePieces != 0);
  for (std::uint64_t men = candidates; men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    const int code = lifted.board[square];
    const auto slot = static_cast<std::size_t>(pieceSlot(code));
    const std::uint64_t reach = check_geometry::kReach[slot][static_cast<std::size_t>(square)];
    std::uint64_t& found = landings[static_cast<std::size_t>(square)];
    const NearKingCover near = kNearKingCover[nearKingIndex(static_cast<int>(slot), square, king)];
    int checking = fixedLines.without(square);
    if (((linePieces >> square) & 1) != 0 && checking < uncovered) {
      if (!formedKnown) {
        formedLines = mostCheckingCover<Side>(
            lifted, king, flights, leaving - 1, linePieces, true, enough,
            check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(piece::Queen))]
                                              [static_cast<std::size_t>(king)]);
        formedKnown = true;
      }
      checking = std::max(checking, formedLines.without(square));
    }
    if (checking >= uncovered) {
      found |= reach;
      continue;
    }
    if (near.oneMove + std::max(checking, 0) < uncovered && near.twoMoves < uncovered) continue;
    const bool pawn = code == Opponent * piece::Pawn;
    const bool isKing = code == Opponent * piece::King;
    // Where a man but a pawn covers one of the flights at least: it attacks
    // one from a square when it would attack that square from the flight.
    std::uint64_t nearFlights = ~std::uint64_t{0};
    if (!pawn && uncovered > 0) {
      nearFlights = 0;
      for (std::uint64_t rest = flights; rest != 0; rest &= rest - 1) {
        nearFlights |= check_geometry::kEmptyBoardAttacks[slot][static_cast<std::size_t>(std::countr_zero(rest))];
      }
    }
    // Covering from where it lands, the check coming from another man; or
    // mating at once, checking from there or uncovering a check.
    const std::uint64_t barred = barredAtMate(code, king);
    int uncoversNow = -1;  // not yet known
    for (std::uint64_t rest = reach & ~found & ~barred & nearFlights; rest != 0; rest &= rest - 1) {
      const int target = std::countr_zero(rest);
      const std::uint64_t cover = coverFrom(code, target);
      const int covered = geometry::squaresIn(cover & flights);
      bool lands = covered + checking >= uncovered;
      if (!lands && covered >= uncovered) {
        if (!isKing && ((cover >> king) & 1) != 0) {
          lands = true;
        } else {
          if (uncoversNow < 0) {
            uncoversNow = static_cast<int>((discoveryLanes.after(square, std::uint64_t{1} << square) >> square) & 1);
          }
          lands = uncoversNow != 0;
        }
      }
      if (lands) found |= std::uint64_t{1} << target;
    }
    // Moving on from there to check: the squares where the second move would
    // do, then the landings that reach one. No other man of its side moves,
    // so a check it uncovers comes from a line piece already on the line.
    if (near.twoMoves < uncovered) continue;
    const std::uint64_t lanes = discoveryLanes.after(square, reach);
    std::uint64_t seconds = nearFlights;
    if (pawn) {
      seconds = 0;
      for (std::uint64_t rest = reach & ~found; rest != 0; rest &= rest - 1) {
        seconds |= check_geometry::kReach[slot][static_cast<std::size_t>(std::countr_zero(rest))];
      }
    } else if (uncovered <= 0) {
      // Any second move covers enough: one off a line uncovers the check.
      found |= reach & lanes;
      seconds = 0;
    }
    if (uncovered <= 0 || (lanes & reach) == 0) {
      if (isKing) continue;
      if (!pawn) seconds = check_geometry::kEmptyBoardAttacks[slot][static_cast<std::size_t>(king)] & nearFlights;
    }
    std::uint64_t checks = 0;
    std::uint64_t coverEnough = 0;
    for (seconds &= ~barred; seconds != 0; seconds &= seconds - 1) {
      const int target = std::countr_zero(seconds);
      const std::uint64_t cover = coverFrom(code, target);
      if (geometry::squaresIn(cover & flights) < uncovered) continue;
      coverEnough |= std::uint64_t{1} << target;
      if (!isKing && ((cover >> king) & 1) != 0) checks |= std::uint64_t{1} << target;
    }
    if (coverEnough == 0) continue;
    if (!pawn) {
      // A man but a pawn reaches a square from where it would reach its own.
      std::uint64_t viaCheck = 0;
      std::uint64_t viaLane = 0;
      for (; coverEnough != 0; coverEnough &= coverEnough - 1) {
        const int target = std::countr_zero(coverEnough);
        const std::uint64_t from = check_geometry::kReach[slot][static_cast<std::size_t>(target)];
        viaLane |= from;
        if ((checks >> target) & 1) viaCheck |= from;
      }
      found |= reach & (viaCheck | (lanes & viaLane));
      continue;
    }
    for (std::uint64_t rest = reach & ~found; rest != 0; rest &= rest - 1) {
      const int target = std::countr_zero(rest);
      const std::uint64_t onward = check_geometry::kReach[slot][static_cast<std::size_t>(target)];
      if ((onward & checks) != 0 || (((lanes >> target) & 1) != 0 && (onward & coverEnough) != 0)) {
        found |= std::uint64_t{1} << target;
      }
    }
  }
}

// The men of `Side` that would attack `square` on an empty board: those that
// may take a man there.
template <int Side>
std::uint64_t menAttacking(const Position& position, int square) {
  std::uint64_t attackers = 0;
  for (std::uint64_t men = menOf<Side>(position.board); men != 0; men &= men - 1) {
    const int from = std::countr_zero(men);
    if ((check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(position.board[from]))]
                                           [static_cast<std::size_t>(from)] >>
         square) &
        1) {
      attackers |= std::uint64_t{1} << from;
    }
  }
  return attackers;
}

// The men of the opponent of `Side` that attack `square` by a step or a leap,
// not along a line: a move in between can only end such an attack by moving
// the man itself.
template <int Side>
std::uint64_t leapersAttacking(const Position& lifted, int square) {
  std::uint64_t leapers = menAttacking<-Side>(lifted, square);
  for (std::uint64_t men = leapers; men != 0; men &= men - 1) {
    const int code = lifted.board[std::countr_zero(men)];
    if (code == -Side * piece::Queen || code == -Side * piece::Rook || code == -Side * piece::Bishop) {
      leapers &= ~(men & -men);
    }
  }
  return leapers;
}

// How many of `flights` a move of a man of `Side` other than its king may
// fill: one when some man reaches one of them, by the squares it could move
// to on an empty board.
template <int Side>
int fillable(const Position& lifted, std::uint64_t flights) {
  for (std::uint64_t men = menOf<Side>(lifted.board); men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    if ((check_geometry::kReach[static_cast<std::size_t>(pieceSlot(lifted.board[square]))]
                               [static_cast<std::size_t>(square)] &
         flights) != 0) {
      return 1;
    }
  }
  return 0;
}

template <int Side>
bool opponentMayCastle(const Position& position) {
  return (Side == White ? position.blackLongCastle | position.blackShortCastle
                        : position.whiteLongCastle | position.whiteShortCastle) != 0;
}

}  // namespace detail

// The king of `Side`, to make the last move before the opponent's mating
// reply, as the counts below see it: lifted off its square, the squares it
// cannot step to, and the squares the opponent's line pieces would attack
// once one move of each side had left their lines (`openingByBoth`) or one of
// the opponent only (`openingByReply`). Worked out once for all three counts.
template <int Side>
struct LastMoveView {
  explicit LastMoveView(const Position& position)
      : lifted(position), king(Side == White ? position.whiteKingSquare : position.blackKingSquare) {
    lifted.board[king] = 0;
    const auto lines = detail::linesWithLeaving<3>(lifted, -Side, {{{0, 0}, {1, 1}, {1, 0}}});
    closed = detail::closedSquares<Side>(lifted, lines[0]);
    openingByBoth = lines[1];
    openingByReply = lines[2];
  }

  Position lifted;
  int king;
  std::uint64_t closed = 0;
  std::uint64_t openingByBoth = 0;
  std::uint64_t openingByReply = 0;
};

// Whether the king of `Side` could stand mated after a move of its own side
// that does not move the king, followed by one move of the opponent. The own
// move can fill one flight, and it and the reply may each leave a line.
// An en-passant capture (`enPassantPossible`) or castling moves a third man,
// so then the answer is always yes.
template <int Side>
bool flightsMayAllBeCovered(const LastMoveView<Side>& view, bool enPassantPossible) {
  if (enPassantPossible || detail::opponentMayCastle<Side>(view.lifted)) return true;
  const std::uint64_t flights = detail::flightsOf(view.king, view.closed);
  constexpr int kLeaving = 2;
  if (geometry::squaresIn(flights) <= 1) return true;
  const int uncovered = geometry::squaresIn(flights) - detail::fillable<Side>(view.lifted, flights);
  return detail::replyMayCover<Side>(view.lifted, view.king, flights, uncovered, kLeaving, view.openingByBoth);
}

// Where the men of `Side`, to move, may go with a last move that helps the
// opponent's reply mate their king, when the reply could not mate without
// help: the king anywhere, a pawn's double step (which may allow an
// en-passant capture), any man onto a flight, and the men that stand first
// between a line piece of the opponent and the squares beyond (with at most
// one man of the opponent's before them) anywhere. Any other move leaves at
// least the flights there were and opens no line; the man it takes, if any,
// only stops attacking. Fills the men's entries of `landings`, by their
// squares, and says whether the moves are so restricted: not when the reply
// alone may mate, nor when castling or an en-passant capture is in the air.
template <int Side>
bool helpingLastMoves(const LastMoveView<Side>& view, bool enPassantPossible, MoverTargets& landings) {
  constexpr int Opponent = -Side;
  const Position& lifted = view.lifted;
  if (enPassantPossible || detail::opponentMayCastle<Side>(lifted) || detail::opponentMayCastle<Opponent>(lifted)) {
    return false;
  }
  const std::uint64_t flights = detail::flightsOf(view.king, view.closed);
  constexpr int kLeaving = 1;
  if (detail::replyMayCover<Side>(lifted, view.king, flights, geometry::squaresIn(flights), kLeaving,
                                  view.openingByReply)) {
    return false;
  }
  const std::int8_t* board = lifted.board;
  const std::uint64_t occupied = occupiedOf(board);
  std::uint64_t openers = 0;
  for (std::uint64_t pieces = menOf<Opponent>(board); pieces != 0; pieces &= pieces - 1) {
    const int from = std::countr_zero(pieces);
    const int code = board[from];
    for (unsigned directions = detail::directionsOf(code, Opponent); directions != 0; directions &= directions - 1) {
      const int direction = std::countr_zero(directions);
      const std::uint64_t ray = detail::kRays[static_cast<std::size_t>(direction)][static_cast<std::size_t>(from)];
      for (std::uint64_t blockers = ray & occupied, passed = 0; blockers != 0 && passed < 2; ++passed) {
        const int at = detail::nearestOn(blockers, direction);
        if (board[at] * Side > 0) {
          openers |= std::uint64_t{1} << at;
          break;
        }
        blockers &= ~(std::uint64_t{1} << at);
      }
    }
  }
  constexpr int kPawnRow = Side == White ? 6 : 1;
  landings[static_cast<std::size_t>(view.king)] = ~std::uint64_t{0};
  for (std::uint64_t men = menOf<Side>(board); men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    const int code = board[square];
    std::uint64_t& targets = landings[static_cast<std::size_t>(square)];
    if (((openers >> square) & 1) != 0) {
      targets = ~std::uint64_t{0};
      continue;
    }
    // Only the flights it reaches: a man that reaches none is not taken up.
    targets = flights & check_geometry::kReach[static_cast<std::size_t>(pieceSlot(code))][static_cast<std::size_t>(square)];
    if (code == Side * piece::Pawn && (square >> 3) == kPawnRow) targets |= std::uint64_t{1} << (square - 16 * Side);
  }
  return true;
}

// Whether the king of `Side` could stand mated after a step of its own to a
// flight, followed by one move of the opponent. No own man fills a flight
// then, and only the reply's man leaves a line. The flights around a square
// the step takes a man on are judged with the man still there: no line of
// the opponent runs through a square the king may step to, so the man only
// adds attacks. Castling is a step too far to judge here, so the answer is
// yes when either side may castle.
template <int Side>
bool kingStepsMayBeMated(const LastMoveView<Side>& view) {
  const Position& lifted = view.lifted;
  if (detail::opponentMayCastle<Side>(lifted) || detail::opponentMayCastle<-Side>(lifted)) return true;
  const std::uint64_t closed = view.closed;
  const std::uint64_t steps = detail::flightsOf(view.king, closed);
  if (steps == 0) return true;  // no step: the search looks at whether it stands mated already
  constexpr int kLeaving = 1;
  const std::uint64_t opening = view.openingByReply;
  for (std::uint64_t rest = steps; rest != 0; rest &= rest - 1) {
    const int step = std::countr_zero(rest);
    const std::uint64_t flights = detail::flightsOf(step, closed);
    if (lifted.board[step] == 0) {
      if (detail::replyMayCover<Side>(lifted, step, flights, geometry::squaresIn(flights), kLeaving, opening))
        return true;
      continue;
    }
    // A line through the square taken may open when a man leaves it.
    Position afterCapture = lifted;
    afterCapture.board[step] = 0;
    if (detail::replyMayCover<Side>(afterCapture, step, flights, geometry::squaresIn(flights), kLeaving,
                                    detail::linesWithLeaving(afterCapture, -Side, {1, 0}))) {
      return true;
    }
  }
  return false;
}

// Where the men of the opponent of `Side`, to move, may go with the first move
// of a line that leaves the king of `Side` mated: after the opponent's move,
// one of its own and one more of the opponent, the last a check (or at once,
// which needs no more). Fills the men's entries of `landings`, by their
// squares, and says whether any move may. Its own move either leaves the king
// where it is, filling at most one flight, or steps it to a square next to
// it. The opponent's two moves and its own, or only the opponent's after a
// step, may leave lines. The check comes from a man other than the first
// mover, or from the first mover itself moving on (or mating at once); lines
// may form behind the checker only when the first mover is a line piece. An
// en-passant capture now, castling, or a pawn of the opponent that may
// promote within two moves let every move through.
//
// A step may go to a square that is not a flight now, when the opponent's
// first move makes it one. A man that attacks the square by a step or a leap
// must then be the one that moves, so two such men rule the step out. A man
// of its own side on the square must be taken by that first move, and the
// king takes the taker in turn: only the checking move covers then.
//
// Only the king's squares (where it is and those next to it) for which
// `mayBeMatedOn` says yes are counted for: the caller may know that the king
// cannot stand mated on some, and is asked only when a count is due.
template <int Side, typename MayBeMatedOn>
bool firstMovesMayMate(const Position& position, bool enPassantPossible, MayBeMatedOn&& mayBeMatedOn,
                       MoverTargets& landings) {
  constexpr int Opponent = -Side;
  const std::int8_t* board = position.board;
  const std::uint64_t opponentMen = menOf<Opponent>(board);
  // Only the entries of the men are read.
  for (std::uint64_t men = opponentMen; men != 0; men &= men - 1) {
    landings[static_cast<std::size_t>(std::countr_zero(men))] = 0;
  }
  bool allMoves =
      enPassantPossible || detail::opponentMayCastle<Side>(position) || detail::opponentMayCastle<-Side>(position);
  std::uint64_t linePieces = 0;
  for (std::uint64_t men = opponentMen; men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    const int code = board[square];
    const int row = square >> 3;
    if (code == Opponent * piece::Pawn && (Opponent == White ? row <= 2 : row >= 5)) allMoves = true;
    if (code == Opponent * piece::Queen || code == Opponent * piece::Rook || code == Opponent * piece::Bishop) {
      linePieces |= std::uint64_t{1} << square;
    }
  }
  if (allMoves) {
    for (std::uint64_t men = opponentMen; men != 0; men &= men - 1) {
      landings[static_cast<std::size_t>(std::countr_zero(men))] = ~std::uint64_t{0};
    }
    return true;
  }
  const int king = Side == White ? position.whiteKingSquare : position.blackKingSquare;
  Position lifted = position;
  lifted.board[king] = 0;
  // Lines as they stand, and as they may open when the king stays (two moves
  // of the opponent and one of its own side) or steps (the opponent's two).
  const auto lines = detail::linesWithLeaving<3>(lifted, Opponent, {{{0, 0}, {2, 1}, {2, 0}}});
  const std::uint64_t closed = detail::closedSquares<Side>(lifted, lines[0]);
  if (mayBeMatedOn(king)) {
    constexpr int kLeaving = 3;
    const std::uint64_t flights = detail::flightsOf(king, closed);
    const int uncovered = geometry::squaresIn(flights) - detail::fillable<Side>(lifted, flights);
    detail::addFirstLandings<Side>(lifted, king, flights, uncovered, opponentMen, kLeaving, lines[1], linePieces,
                                   landings);
  }
  constexpr int kLeaving = 2;
  const std::uint64_t opening = lines[2];
  for (std::uint64_t steps = check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(piece::King))]
                                                               [static_cast<std::size_t>(king)];
       steps != 0; steps &= steps - 1) {
    const int step = std::countr_zero(steps);
    std::uint64_t candidates = opponentMen;
    if ((closed >> step) & 1) {
      const std::uint64_t leapers = detail::leapersAttacking<Side>(lifted, step);
      if (geometry::squaresIn(leapers) > 1) continue;
      if (leapers != 0) candidates = leapers;
    }
    if (!mayBeMatedOn(step)) continue;
    const std::uint64_t flights = detail::flightsOf(step, closed);
    const int code = lifted.board[step];
    if (code == 0) {
      detail::addFirstLandings<Side>(lifted, step, flights, geometry::squaresIn(flights), candidates, kLeaving, opening,
                                     linePieces, landings);
      continue;
    }
    // The first move takes an own man on the square, for the king to take
    // the taker: only takers not yet let through there are worth the count.
    std::uint64_t takers = 0;
    if (code * Side > 0) {
      for (std::uint64_t men = candidates & detail::menAttacking<Opponent>(lifted, step); men != 0; men &= men - 1) {
        const int square = std::countr_zero(men);
        if (((landings[static_cast<std::size_t>(square)] >> step) & 1) == 0) takers |= std::uint64_t{1} << square;
      }
      if (takers == 0) continue;
    }
    Position emptied = lifted;
    emptied.board[step] = 0;
    const std::uint64_t emptiedOpening = detail::linesWithLeaving(emptied, Opponent, {2, 0});
    if (code * Side < 0) {
      detail::addFirstLandings<Side>(emptied, step, flights, geometry::squaresIn(flights), candidates, kLeaving,
                                     emptiedOpening, linePieces, landings);
    } else if (detail::replyMayCover<Side>(emptied, step, flights, geometry::squaresIn(flights), kLeaving,
                                           emptiedOpening)) {
      for (; takers != 0; takers &= takers - 1) {
        landings[static_cast<std::size_t>(std::countr_zero(takers))] |= std::uint64_t{1} << step;
      }
    }
  }
  for (std::uint64_t men = opponentMen; men != 0; men &= men - 1) {
    if (landings[static_cast<std::size_t>(std::countr_zero(men))] != 0) return true;
  }
  return false;
}

}  // namespace velkaro::core
