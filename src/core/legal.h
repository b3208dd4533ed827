#pragma once
// The legal-move iterators: each call makes one more legal move of the side
// moving at a ply into the next ply's frame, in generation order. Legality is
// make-and-test: the move is made and the mover's king square is tested for
// attack in the made position. Only the squares a move touches are written
// and put back, and a man is lifted from its square once, not once per move.

#include "core/attacks.h"
#include "core/movegen.h"
#include "core/position.h"

namespace velkaro::core {

// What a made move must pass before the iterator hands it out.
enum class MoveTest {
  Legal,     // own king not attacked; king square and castling rights kept up to date
  Plain,     // own king not attacked; the next frame's king square and rights untouched
  Checking,  // the enemy king attacked, then the own king not attacked
};

namespace detail {

template <int Side>
[[gnu::always_inline]] inline std::uint8_t& kingSquareOf(Position& position) {
  if constexpr (Side == White) {
    return position.whiteKingSquare;
  } else {
    return position.blackKingSquare;
  }
}

template <int Side>
[[gnu::always_inline]] inline int enemyKingSquareOf(const Position& position) {
  return Side == White ? position.blackKingSquare : position.whiteKingSquare;
}

// Undoes in `next` what the frame's current move wrote, from the frame's own
// board.
template <int Side>
[[gnu::always_inline]] inline void putBack(const PlyFrame& frame, Position& next) {
  const std::int8_t* board = frame.position.board;
  const int to = frame.toSquare;
  next.board[to] = board[to];
  switch (frame.moveKind) {
    case kind::EnPassant:
      next.board[to + 8 * Side] = board[to + 8 * Side];
      break;
    case kind::WhiteLongCastle:
    case kind::BlackLongCastle:
      next.board[to - 2] = board[to - 2];
      next.board[to + 1] = board[to + 1];
      break;
    case kind::WhiteShortCastle:
    case kind::BlackShortCastle:
      next.board[to - 1] = board[to - 1];
      next.board[to + 1] = board[to + 1];
      break;
    default:
      break;
  }
}

// The squares besides the target that a special move changes; returns the
// piece that stands on the target afterwards.
template <int Side>
[[gnu::always_inline]] inline int makeSpecial(int moveKind, int to, Position& next) {
  switch (moveKind) {
    case kind::EnPassant:
      next.board[to + 8 * Side] = 0;
      return Side * piece::Pawn;
    case kind::WhiteLongCastle:
    case kind::BlackLongCastle:
      next.board[to - 2] = 0;
      next.board[to + 1] = static_cast<std::int8_t>(Side * piece::Rook);
      return Side * piece::King;
    default:  // short castling
      next.board[to - 1] = static_cast<std::int8_t>(Side * piece::Rook);
      next.board[to + 1] = 0;
      return Side * piece::King;
  }
}

// Finds the next man of the side from `start` on, lifts it from the next
// frame's board and generates its moves; false when no man is left.
template <int Side>
[[gnu::always_inline]] inline bool takeUpMan(PlyStack& stack, int ply, PlyFrame& frame, Position& next, int start) {
  const std::int8_t* board = frame.position.board;
  int square = start;
  while (square < 64 && board[square] * Side <= 0) ++square;
  if (square == 64) return false;
  const int code = board[square];
  frame.fromSquare = square;
  frame.movedPiece = code;
  next.board[square] = 0;
  generatePieceMoves(frame, square, code, code == Side * piece::Pawn ? enPassantPawn(stack, ply) : -1);
  frame.entryIndex = 0;
  return true;
}

// Castling rights after a legal move: only the mover's own change.
template <int Side>
[[gnu::always_inline]] inline void updateCastlingRights(const PlyFrame& frame, Position& next) {
  constexpr int kingHome = Side == White ? 60 : 4;
  const Position& position = frame.position;
  const std::uint8_t mayLong = Side == White ? position.whiteLongCastle : position.blackLongCastle;
  const std::uint8_t mayShort = Side == White ? position.whiteShortCastle : position.blackShortCastle;
  if ((mayLong | mayShort) == 0) return;
  const int from = frame.fromSquare;
  const std::uint8_t keepLong = from != kingHome && from != kingHome - 4;
  const std::uint8_t keepShort = from != kingHome && from != kingHome + 3;
  (Side == White ? next.whiteLongCastle : next.blackLongCastle) = mayLong & keepLong;
  (Side == White ? next.whiteShortCastle : next.blackShortCastle) = mayShort & keepShort;
}

}  // namespace detail

// Makes the next move of `Side` at `ply` that passes `Test` into frame ply + 1.
// With `continuing` 0 it starts afresh; otherwise it goes on after the move it
// made last. Returns a negative value when a move was made (the frame's move
// fields say which) and 1 when the side has no further move; after 1 the
// iterator must be started afresh.
template <int Side, MoveTest Test>
[[gnu::always_inline]] inline int nextMove(PlyStack& stack, int ply, int continuing) {
  PlyFrame& frame = stack[ply];
  Position& next = (&frame)[1].position;
  if (!continuing) {
    copyPositionToNextPly(frame);
    if (!detail::takeUpMan<Side>(stack, ply, frame, next, 0)) return 1;
  } else {
    detail::putBack<Side>(frame, next);
  }
  for (;;) {
    const MoveEntry entry = frame.moveList[frame.entryIndex];
    if (entry.kind == kind::End) {
      next.board[frame.fromSquare] = static_cast<std::int8_t>(frame.movedPiece);
      if constexpr (Test == MoveTest::Legal) {
        if (frame.movedPiece == Side * piece::King) {
          detail::kingSquareOf<Side>(next) = detail::kingSquareOf<Side>(frame.position);
        }
      }
      if (!detail::takeUpMan<Side>(stack, ply, frame, next, frame.fromSquare + 1)) return 1;
      continue;
    }
    ++frame.entryIndex;
    const int to = entry.target;
    const int placed = entry.kind > kind::EnPassant || entry.kind < 0 ? entry.kind
                                                                        : detail::makeSpecial<Side>(entry.kind, to, next);
    frame.toSquare = to;
    frame.moveKind = entry.kind;
    frame.placedPiece = placed;
    next.board[to] = static_cast<std::int8_t>(placed);

    int kingSquare;
    if constexpr (Test == MoveTest::Legal) {
      if (placed == Side * piece::King) detail::kingSquareOf<Side>(next) = static_cast<std::uint8_t>(to);
      kingSquare = detail::kingSquareOf<Side>(next);
    } else {
      kingSquare = placed == Side * piece::King ? to : detail::kingSquareOf<Side>(next);
    }
    if constexpr (Test == MoveTest::Checking) {
      if (isAttackedByOpponentOf<-Side>(detail::enemyKingSquareOf<Side>(frame.position), next) < 0) {
        detail::putBack<Side>(frame, next);
        continue;
      }
    }
    if (isAttackedByOpponentOf<Side>(kingSquare, next) >= 0) {
      detail::putBack<Side>(frame, next);
      continue;
    }
    if constexpr (Test == MoveTest::Legal) detail::updateCastlingRights<Side>(frame, next);
    return -1;
  }
}

// The members of the family for the side that moves at `ply`.
inline int nextLegalMove(PlyStack& stack, int ply, int continuing) {
  return stack.sideAt(ply) == White ? nextMove<White, MoveTest::Legal>(stack, ply, continuing)
                                    : nextMove<Black, MoveTest::Legal>(stack, ply, continuing);
}

inline int nextLegalMovePlain(PlyStack& stack, int ply, int continuing) {
  return stack.sideAt(ply) == White ? nextMove<White, MoveTest::Plain>(stack, ply, continuing)
                                    : nextMove<Black, MoveTest::Plain>(stack, ply, continuing);
}

inline int nextCheckingMove(PlyStack& stack, int ply, int continuing) {
  return stack.sideAt(ply) == White ? nextMove<White, MoveTest::Checking>(stack, ply, continuing)
                                    : nextMove<Black, MoveTest::Checking>(stack, ply, continuing);
}

}  // namespace velkaro::core
