#pragma once
// Whether a side has any legal move at all: the heart of every mate and
// stalemate test. The answer does not depend on the order of trial, so the
// test takes the quickest road to it; each candidate is still made and its
// king tested, as in the legal-move iterators.

#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "core/attacks.h"
#include "core/check_geometry.h"
#include "core/legal.h"

namespace velkaro::core {

// One bit per square holding a man of `Side` (of either side for 0): a byte
// is White's when it is positive, Black's when its sign bit is set. The
// flight counts ask for these many times a position, so where the processor
// compares sixteen bytes at once (every x86-64 one) it does; elsewhere eight
// squares at a time.
template <int Side>
inline std::uint64_t menOf(const std::int8_t* board) {
#if defined(__SSE2__)
  std::uint64_t men = 0;
  const __m128i zero = _mm_setzero_si128();
  for (int part = 0; part < 4; ++part) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(board + 16 * part));
    unsigned bits;
    if constexpr (Side == White) {
      bits = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpgt_epi8(bytes, zero)));
    } else if constexpr (Side == Black) {
      bits = static_cast<unsigned>(_mm_movemask_epi8(bytes));
    } else {
      bits = ~static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, zero))) & 0xffffu;
    }
    men |= static_cast<std::uint64_t>(bits) << (16 * part);
  }
  return men;
#else
  constexpr std::uint64_t kSignBits = 0x8080808080808080;
  std::uint64_t men = 0;
  for (int row = 0; row < 8; ++row) {
    std::uint64_t bytes;
    std::memcpy(&bytes, board + 8 * row, sizeof bytes);
    if constexpr (std::endian::native == std::endian::big) bytes = __builtin_bswap64(bytes);
    const std::uint64_t occupied = (((bytes & ~kSignBits) + ~kSignBits) | bytes) & kSignBits;
    const std::uint64_t own = Side == White ? occupied & ~bytes : Side == Black ? bytes & kSignBits : occupied;
    men |= (((own >> 7) * 0x0102040810204080) >> 56) << (8 * row);
  }
  return men;
#endif
}

// The squares men stand on.
inline std::uint64_t occupiedOf(const std::int8_t* board) { return menOf<0>(board); }

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
