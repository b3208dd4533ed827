#pragma once
// Whether a side has any legal move at all: the heart of every mate and
// stalemate test. The answer does not depend on the order of trial, so the
// test takes the quickest road to it; each candidate is still made and its
// king tested, as in the legal-move iterators.

#include <bit>
#include <cstdint>

#include "core/attacks.h"
#include "core/board_bits.h"
#include "core/check_geometry.h"
#include "core/legal.h"

namespace velkaro::core {

namespace detail {

// Whether the king of `Side` on `king` has a legal move; the entry whose
// target is `lastEscape` is made first, and a legal move's target is
// remembered there.
template <int Side>
bool kingEscapes(PlyFrame& frame, Position& next, int king, int& lastEscape) {
  const int code = frame.position.board[king];
  next.board[king] = 0;
  generatePieceMoves(frame, king, code, -1);
  const MoveEntry* hinted = nullptr;
  for (const MoveEntry* entry = frame.moveList; entry->kind != kind::End; ++entry) {
    if (entry->target == lastEscape) {
      hinted = entry;
      break;
    }
  }
  constexpr unsigned kNoLines = 0;  // a king move tests its target square in full
  if (hinted != nullptr && tryMove<Side>(frame, next, *hinted, kNoLines)) return true;
  for (const MoveEntry* entry = frame.moveList; entry->kind != kind::End; ++entry) {
    if (entry == hinted || !tryMove<Side>(frame, next, *entry, kNoLines)) continue;
    lastEscape = entry->target;
    return true;
  }
  next.board[king] = static_cast<std::int8_t>(code);
  return false;
}

}  // namespace detail

// Whether `Side`, moving at `ply`, has any legal move. The king goes first: a
// side in check most often escapes with it. Other men are looked at only when
// they can reach a square that answers the check, and only such moves are
// made. The king's square of escape is remembered in `lastEscape` and tried
// first next time: the mate tests of one search meet the same king, checked
// in turn by many moves, and it mostly escapes to where it escaped before.
// Frame ply's move list and frame ply + 1's board serve as scratch.
template <int Side>
bool hasLegalMove(PlyStack& stack, int ply, int& lastEscape) {
  PlyFrame& frame = stack[ply];
  Position& next = (&frame)[1].position;
  copyPositionToNextPly(frame);
  const std::int8_t* board = frame.position.board;
  const int king = detail::kingSquareOf<Side>(frame.position);
  const int enPassant = enPassantPawn(stack, ply);
  std::uint64_t answers = ~std::uint64_t{0};
  unsigned lines = 0;
  bool linesKnown = false;
  auto anyLegalMoveOf = [&](int square) {
    const int code = board[square];
    next.board[square] = 0;
    generatePieceMoves(frame, square, code, code == Side * piece::Pawn ? enPassant : -1);
    for (const MoveEntry* entry = frame.moveList; entry->kind != kind::End; ++entry) {
      if (((answers >> entry->target) & 1) == 0 && entry->kind != kind::EnPassant) continue;
      if (!linesKnown) {
        lines = attackLinesAgainst<Side>(king, frame.position);
        linesKnown = true;
      }
      if (detail::tryMove<Side>(frame, next, *entry, lines)) return true;
    }
    next.board[square] = static_cast<std::int8_t>(code);
    return false;
  };
  if (detail::kingEscapes<Side>(frame, next, king, lastEscape)) return true;
  // Another man can only answer a check on the checking man's square or
  // between it and the king; two checks only the king can answer.
  const Attackers checks = (Side == White ? kBlackAttackersOf : kWhiteAttackersOf)[static_cast<std::size_t>(king)](
      frame.position);
  if (checks.count > 1) return false;
  if (checks.count == 1) answers = checks.squares;
  for (std::uint64_t men = menOf<Side>(board) & ~(std::uint64_t{1} << king); men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    const int code = board[square];
    const bool takesEnPassant = code == Side * piece::Pawn && enPassant >= 0;
    const std::uint64_t reach =
        check_geometry::kReach[static_cast<std::size_t>(pieceSlot(code))][static_cast<std::size_t>(square)];
    if ((reach & answers) == 0 && !takesEnPassant) continue;
    if (anyLegalMoveOf(square)) return true;
  }
  return false;
}

// Whether some man of `Side` could give check with one move to the enemy king
// on `enemyKing`, judged by geometry alone: by the squares it can reach, or by
// leaving a line from the king that holds one of its line pieces (blockers
// ignored). A king that may still castle counts as able; an en-passant
// capture is the caller's to allow for. A move of the other side that is not
// a king move cannot make a "no" a "yes": it adds no man of `Side` and no line.
template <int Side>
bool canCheckWithAMove(const Position& position, int enemyKing) {
  const std::int8_t* board = position.board;
  const int rights = Side == White ? position.whiteLongCastle | position.whiteShortCastle
                                   : position.blackLongCastle | position.blackShortCastle;
  const unsigned lines = attackLinesAgainst<-Side>(enemyKing, position);
  for (std::uint64_t men = menOf<Side>(board); men != 0; men &= men - 1) {
    const int square = std::countr_zero(men);
    const int code = board[square];
    if (code == Side * piece::King && rights != 0) return true;
    if (mayCheckWithAMove(code, square, enemyKing, lines)) return true;
  }
  return false;
}

inline bool hasLegalMove(PlyStack& stack, int ply, int& lastEscape) {
  return stack.sideAt(ply) == White ? hasLegalMove<White>(stack, ply, lastEscape)
                                    : hasLegalMove<Black>(stack, ply, lastEscape);
}

}  // namespace velkaro::core
