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

inline constexpr int kDirectionFileStep[8] = {-1, -1, 0, 1, 1, 1, 0, -1};
inline constexpr int kDirectionRowStep[8] = {0, -1, -1, -1, 0, 1, 1, 1};

// The squares a line piece of `side` would attack once at most `men` men
// between it and them had left.
inline std::uint64_t linesWithLeaving(const Position& position, int side, int men) {
  std::uint64_t squares = 0;
  for (std::uint64_t pieces = side == White ? menOf<White>(position.board) : menOf<Black>(position.board); pieces != 0;
       pieces &= pieces - 1) {
    const int from = std::countr_zero(pieces);
    const int code = position.board[static_cast<std::size_t>(from)];
    for (int direction = 0; direction < 8; ++direction) {
      if (!bearsAlong(code, side, direction)) continue;
      int file = from & 7;
      int row = from >> 3;
      int passed = 0;
      for (;;) {
        file += kDirectionFileStep[direction];
        row += kDirectionRowStep[direction];
        if (!geometry::onBoard(file, row)) break;
        const int at = 8 * row + file;
        squares |= std::uint64_t{1} << at;
        if (position.board[static_cast<std::size_t>(at)] != 0 && ++passed > men) break;
      }
    }
  }
  return squares;
}

// Whether the man on `square` could uncover a check by a line piece of `side`
// on the king on `king` by leaving: it stands on a line from the king, with
// such a piece further out and at most `others` other men on the line
// between them.
inline bool uncoversCheck(const Position& position, int side, int king, int square, int others) {
  const int direction = check_geometry::kLines[static_cast<std::size_t>(king)][static_cast<std::size_t>(square)];
  if (direction < 0) return false;
  int file = king & 7;
  int row = king >> 3;
  bool passed = false;
  for (;;) {
    file += kDirectionFileStep[direction];
    row += kDirectionRowStep[direction];
    if (!geometry::onBoard(file, row)) return false;
    const int at = 8 * row + file;
    const int code = position.board[static_cast<std::size_t>(at)];
    if (at == square) {
      passed = true;
    } else if (code != 0) {
      if (passed && bearsAlong(code, side, direction)) return true;
      if (--others < 0) return false;
    }
  }
}

// The squares the king of `Side` cannot step to on `lifted`: those of its
// own men and those the opponent attacks.
template <int Side>
std::uint64_t closedSquares(const Position& lifted) {
  std::uint64_t closed = menOf<Side>(lifted.board) | linesWithLeaving(lifted, -Side, 0);
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

// The squares the man `code` attacks from `square` on an empty board; a pawn
// on the last rank as a queen or a knight.
inline std::uint64_t coverFrom(int code, int square) {
  const auto at = static_cast<std::size_t>(square);
  std::uint64_t attacked = check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(code))][at];
  if ((code == piece::Pawn || code == -piece::Pawn) && (square < 8 || square >= 56)) {
    const int side = code > 0 ? White : Black;
    attacked |= check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(side * piece::Queen))][at] |
                check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(side * piece::Knight))][at];
  }
  return attacked;
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

// The most of `flights` that one man of the opponent of `Side` attacks after
// a move that checks the king on `king`, at least `enough` ending the count.
// The move checks from where it lands, or uncovers a check by leaving a line
// from the king: a line piece of its side further out with at most
// `othersOnLine` other men between, or any line at all when `linesMayForm`.
template <int Side>
int mostCheckingCover(const Position& lifted, int king, std::uint64_t flights, int othersOnLine, bool linesMayForm,
                      int enough) {
  constexpr int Opponent = -Side;
  const std::int8_t* board = lifted.board;
  int most = 0;
  for (std::uint64_t men = menOf<Opponent>(board); men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    const int code = board[square];
    const auto slot = static_cast<std::size_t>(pieceSlot(code));
    if (kNearKingCover[nearKingIndex(static_cast<int>(slot), square, king)].oneMove <= most) continue;
    const bool discovers =
        (linesMayForm &&
         check_geometry::kLines[static_cast<std::size_t>(king)][static_cast<std::size_t>(square)] >= 0) ||
        uncoversCheck(lifted, Opponent, king, square, othersOnLine);
    if (!discovers && code == Opponent * piece::King) continue;
    const bool pawn = code == Opponent * piece::Pawn;
    std::uint64_t reach = check_geometry::kReach[slot][static_cast<std::size_t>(square)];
    // Any man but a pawn, which may promote, bears on the king from exactly
    // the squares it would attack standing on the king's.
    if (!discovers && !pawn) reach &= check_geometry::kEmptyBoardAttacks[slot][static_cast<std::size_t>(king)];
    for (; reach != 0; reach &= reach - 1) {
      const std::uint64_t attacked = coverFrom(code, std::countr_zero(reach));
      if (!discovers && ((attacked >> king) & 1) == 0) continue;
      most = std::max(most, geometry::squaresIn(attacked & flights));
      if (most >= enough) return most;
    }
  }
  return most;
}

// Whether `uncovered` of the `flights` of the king of `Side` on `king` could
// be covered by the opponent's checking reply, when `leaving` men in all
// (the reply's and the own move's) may leave the lines from the flights and
// from the king, and `opening` holds the squares such lines reach. Castling
// is not counted; the caller allows for it.
template <int Side>
bool replyMayCover(const Position& lifted, int king, std::uint64_t flights, int uncovered, int leaving,
                   std::uint64_t opening) {
  uncovered -= geometry::squaresIn(flights & opening);
  return uncovered <= 0 || mostCheckingCover<Side>(lifted, king, flights, leaving - 1, false, uncovered) >= uncovered;
}

// Where each of `candidates`, men of the opponent of `Side`, may land with
// the first of two moves that cover `uncovered` of the `flights`, the second
// a check; added to `landings`, by the man's square. Either two men move, the
// first covering from where it lands and the second checking (or uncovering
// a check, perhaps by a line piece the first move brought behind it); or the
// first man moves again and checks from where it ends.
template <int Side>
void addFirstLandings(const Position& lifted, int king, std::uint64_t flights, int uncovered, std::uint64_t candidates,
                      int leaving, std::uint64_t opening, bool linesMayForm, MoverTargets& landings) {
  constexpr int Opponent = -Side;
  uncovered -= geometry::squaresIn(flights & opening);
  // No two moves of these men cover enough even on an empty board.
  if (uncovered > 0 && !twoMovesMayCover(lifted, king, uncovered, candidates | menOf<Opponent>(lifted.board))) return;
  const int checking =
      uncovered <= 0 ? 0 : mostCheckingCover<Side>(lifted, king, flights, leaving - 1, linesMayForm, uncovered);
  for (std::uint64_t men = candidates; men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    const int code = lifted.board[square];
    const auto slot = static_cast<std::size_t>(pieceSlot(code));
    const std::uint64_t reach = check_geometry::kReach[slot][static_cast<std::size_t>(square)];
    std::uint64_t& found = landings[static_cast<std::size_t>(square)];
    const NearKingCover near = kNearKingCover[nearKingIndex(static_cast<int>(slot), square, king)];
    if (checking >= uncovered) {
      found |= reach;
      continue;
    }
    if (near.oneMove + checking < uncovered && near.twoMoves < uncovered) continue;
    // Covering from where it lands, the check coming from another man.
    std::uint64_t twice = 0;
    for (std::uint64_t rest = reach & ~found; rest != 0; rest &= rest - 1) {
      const int target = std::countr_zero(rest);
      if (geometry::squaresIn(coverFrom(code, target) & flights) + checking >= uncovered) {
        found |= std::uint64_t{1} << target;
      } else {
        twice |= check_geometry::kReach[slot][static_cast<std::size_t>(target)];
      }
    }
    // Moving on from there to check: the squares that would do, then the
    // landings that reach one.
    if (near.twoMoves < uncovered) continue;
    const bool discovers =
        linesMayForm && ((reach | (std::uint64_t{1} << square)) &
                         check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(piece::Queen))]
                                                           [static_cast<std::size_t>(king)]) != 0;
    if (!discovers) {
      if (code == Opponent * piece::King) continue;
      if (code != Opponent * piece::Pawn)
        twice &= check_geometry::kEmptyBoardAttacks[slot][static_cast<std::size_t>(king)];
    }
    std::uint64_t checks = 0;
    for (; twice != 0; twice &= twice - 1) {
      const int target = std::countr_zero(twice);
      const std::uint64_t cover = coverFrom(code, target);
      if ((discovers || ((cover >> king) & 1) != 0) && geometry::squaresIn(cover & flights) >= uncovered) {
        checks |= std::uint64_t{1} << target;
      }
    }
    if (checks == 0) continue;
    for (std::uint64_t rest = reach & ~found; rest != 0; rest &= rest - 1) {
      const int target = std::countr_zero(rest);
      if ((check_geometry::kReach[slot][static_cast<std::size_t>(target)] & checks) != 0) {
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

// Whether the king of `Side` could stand mated after a move of its own side
// that does not move the king, followed by one move of the opponent. The own
// move can fill one flight and, with the reply, two men may leave the lines.
// An en-passant capture (`enPassantPossible`) or castling moves a third man,
// so then the answer is always yes.
template <int Side>
bool flightsMayAllBeCovered(const Position& position, bool enPassantPossible) {
  if (enPassantPossible || detail::opponentMayCastle<Side>(position)) return true;
  const int king = Side == White ? position.whiteKingSquare : position.blackKingSquare;
  Position lifted = position;
  lifted.board[king] = 0;
  const std::uint64_t flights = detail::flightsOf(king, detail::closedSquares<Side>(lifted));
  constexpr int kLeaving = 2;
  if (geometry::squaresIn(flights) <= 1) return true;
  const int uncovered = geometry::squaresIn(flights) - detail::fillable<Side>(lifted, flights);
  return detail::replyMayCover<Side>(lifted, king, flights, uncovered, kLeaving,
                                     detail::linesWithLeaving(lifted, -Side, kLeaving));
}

// Whether the king of `Side` could stand mated after a step of its own to a
// flight, followed by one move of the opponent. No own man fills a flight
// then, and only the reply's man leaves a line. The flights around a square
// the step takes a man on are judged with the man still there: no line of
// the opponent runs through a square the king may step to, so the man only
// adds attacks. Castling is a step too far to judge here, so the answer is
// yes when either side may castle.
template <int Side>
bool kingStepsMayBeMated(const Position& position) {
  if (detail::opponentMayCastle<Side>(position) || detail::opponentMayCastle<-Side>(position)) return true;
  const int king = Side == White ? position.whiteKingSquare : position.blackKingSquare;
  Position lifted = position;
  lifted.board[king] = 0;
  const std::uint64_t closed = detail::closedSquares<Side>(lifted);
  const std::uint64_t steps = detail::flightsOf(king, closed);
  if (steps == 0) return true;  // no step: the search looks at whether it stands mated already
  constexpr int kLeaving = 1;
  const std::uint64_t opening = detail::linesWithLeaving(lifted, -Side, kLeaving);
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
                                    detail::linesWithLeaving(afterCapture, -Side, kLeaving))) {
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
// it. Three men, or two after a step, may leave lines. An en-passant capture
// now, castling, or a pawn of the opponent that may promote within two moves
// let every move through.
//
// A step may go to a square that is not a flight now, when the opponent's
// first move makes it one. A man that attacks the square by a step or a leap
// must then be the one that moves, so two such men rule the step out. A man
// of its own side on the square must be taken by that first move, and the
// king takes the taker in turn: only the checking move covers then.
template <int Side>
bool firstMovesMayMate(const Position& position, bool enPassantPossible, MoverTargets& landings) {
  constexpr int Opponent = -Side;
  const std::int8_t* board = position.board;
  const std::uint64_t opponentMen = menOf<Opponent>(board);
  // Only the entries of the men are read.
  for (std::uint64_t men = opponentMen; men != 0; men &= men - 1) {
    landings[static_cast<std::size_t>(std::countr_zero(men))] = 0;
  }
  bool allMoves =
      enPassantPossible || detail::opponentMayCastle<Side>(position) || detail::opponentMayCastle<-Side>(position);
  bool linesMayForm = false;
  for (std::uint64_t men = opponentMen; men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    const int code = board[square];
    const int row = square >> 3;
    if (code == Opponent * piece::Pawn && (Opponent == White ? row <= 2 : row >= 5)) allMoves = true;
    if (code == Opponent * piece::Queen || code == Opponent * piece::Rook || code == Opponent * piece::Bishop) {
      linesMayForm = true;
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
  const std::uint64_t closed = detail::closedSquares<Side>(lifted);
  {
    constexpr int kLeaving = 3;
    const std::uint64_t flights = detail::flightsOf(king, closed);
    const int uncovered = geometry::squaresIn(flights) - detail::fillable<Side>(lifted, flights);
    detail::addFirstLandings<Side>(lifted, king, flights, uncovered, opponentMen, kLeaving,
                                   detail::linesWithLeaving(lifted, Opponent, kLeaving), linesMayForm, landings);
  }
  constexpr int kLeaving = 2;
  const std::uint64_t opening = detail::linesWithLeaving(lifted, Opponent, kLeaving);
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
    const std::uint64_t flights = detail::flightsOf(step, closed);
    const int code = lifted.board[step];
    if (code == 0) {
      detail::addFirstLandings<Side>(lifted, step, flights, geometry::squaresIn(flights), candidates, kLeaving, opening,
                                     linesMayForm, landings);
      continue;
    }
    Position emptied = lifted;
    emptied.board[step] = 0;
    const std::uint64_t emptiedOpening = detail::linesWithLeaving(emptied, Opponent, kLeaving);
    if (code * Side < 0) {
      detail::addFirstLandings<Side>(emptied, step, flights, geometry::squaresIn(flights), candidates, kLeaving,
                                     emptiedOpening, linesMayForm, landings);
    } else if (detail::replyMayCover<Side>(emptied, step, flights, geometry::squaresIn(flights), kLeaving,
                                           emptiedOpening)) {
      // The first move takes the man on the square.
      for (std::uint64_t men = candidates & detail::menAttacking<Opponent>(lifted, step); men != 0; men &= men - 1) {
        landings[static_cast<std::size_t>(std::countr_zero(men))] |= std::uint64_t{1} << step;
      }
    }
  }
  for (std::uint64_t men = opponentMen; men != 0; men &= men - 1) {
    if (landings[static_cast<std::size_t>(std::countr_zero(men))] != 0) return true;
  }
  return false;
}

}  // namespace velkaro::core
