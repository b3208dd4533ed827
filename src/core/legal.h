#pragma once
// The legal-move iterators: each call makes one more legal move of the side
// moving at a ply into the next ply's frame, in generation order. Legality is
// make-and-test: the move is made and the mover's king square is tested for
// attack in the made position. Only the squares a move touches are written
// and put back, and a man is lifted from its square once, not once per move.

#include <array>
#include <cstddef>
#include <cstring>

#include "core/attacks.h"
#include "core/board_bits.h"
#include "core/check_geometry.h"
#include "core/movegen.h"
#include "core/position.h"

namespace velkaro::core {

// What a made move must pass before the iterator hands it out.
enum class MoveTest {
  Legal,     // own king not attacked; king square and castling rights kept up to date
  Plain,     // own king not attacked; the next frame's king square and rights untouched
  Checking,  // the enemy king attacked, then the own king not attacked
  // As Legal, for the king's moves and the pawns' double steps only: the
  // moves that can still matter when no other man's move could.
  KingOrDoubleStep,
  // As Legal, for the moves PlyStack::moverTargetsAt allows only.
  Movers,
};

// Whether the iterator keeps the next frame's king square and castling
// rights up to date.
constexpr bool tracksKing(MoveTest test) { return test != MoveTest::Plain && test != MoveTest::Checking; }

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

// Makes `entry` of the man lifted from frame.fromSquare in `next`, records it
// in the frame's move fields, and tests it: with `RequireCheck` the enemy king
// on `enemyKing` must stand in check, and the own king (where the frame's
// position has it, or on the target when the king itself moved) must not.
// `lines` are the lines from the own king that held an enemy attacker before
// the move. With `TrackKing` a
// king move also moves the next frame's king square. A move that fails is put
// back at once; one that passes stays made.
template <int Side, bool RequireCheck = false, bool TrackKing = false>
[[gnu::always_inline]] inline bool tryMove(PlyFrame& frame, Position& next, const MoveEntry& entry, const unsigned& lines,
                                           int enemyKing = 0) {
  const int to = entry.target;
  const bool plainMove = entry.kind > kind::EnPassant || entry.kind < 0;
  const int placed = plainMove ? entry.kind : makeSpecial<Side>(entry.kind, to, next);
  frame.toSquare = to;
  frame.moveKind = entry.kind;
  frame.placedPiece = placed;
  next.board[to] = static_cast<std::int8_t>(placed);
  if constexpr (RequireCheck) {
    if (isAttackedByOpponentOf<-Side>(enemyKing, next) < 0) {
      putBack<Side>(frame, next);
      return false;
    }
  }
  bool kingAttacked;
  if (placed == Side * piece::King) {
    if constexpr (TrackKing) kingSquareOf<Side>(next) = static_cast<std::uint8_t>(to);
    kingAttacked = isAttackedByOpponentOf<Side>(to, next) >= 0;
  } else {
    kingAttacked =
        lines != 0 && isAttackedAlongByOpponentOf<Side>(kingSquareOf<Side>(frame.position), next, lines) >= 0;
  }
  if (kingAttacked) {
    putBack<Side>(frame, next);
    return false;
  }
  return true;
}

// Whether the man `code` on `square` could give check with one of its moves;
// a king that may still castle and the pawns of a ply with an en-passant
// capture are always taken.
template <int Side>
[[gnu::always_inline]] inline bool mayCheck(const PlyStack& stack, int ply, const Position& position, int code,
                                            int square) {
  if (code == Side * piece::King) {
    const int rights = Side == White ? position.whiteLongCastle | position.whiteShortCastle
                                     : position.blackLongCastle | position.blackShortCastle;
    if (rights != 0) return true;
  } else if (code == Side * piece::Pawn && enPassantPawn(stack, ply) >= 0) {
    return true;
  }
  return mayCheckWithAMove(code, square, enemyKingSquareOf<Side>(position),
                           stack.discoveryLines[static_cast<std::size_t>(ply)]);
}

// Finds the next man of the side (the first one when `first`), lifts it from
// the next frame's board and generates its moves; false when no man is left.
// The checking-move iterator passes over men that cannot give check at all.
template <int Side, MoveTest Test>
[[gnu::always_inline]] inline bool takeUpMan(PlyStack& stack, int ply, PlyFrame& frame, Position& next, bool first) {
  const std::int8_t* board = frame.position.board;
  if (first) frame.menLeft = menOf<Side>(board);
  while (frame.menLeft != 0) {
    const int square = std::countr_zero(frame.menLeft);
    frame.menLeft &= frame.menLeft - 1;
    const int code = board[square];
    if constexpr (Test == MoveTest::Checking) {
      if (!mayCheck<Side>(stack, ply, frame.position, code, square)) continue;
    }
    if constexpr (Test == MoveTest::Movers) {
      if (stack.moverTargetsAt(ply)[static_cast<std::size_t>(square)] == 0) continue;
    }
    if constexpr (Test == MoveTest::KingOrDoubleStep) {
      constexpr int kPawnRow = Side == White ? 6 : 1;
      if (code != Side * piece::King && !(code == Side * piece::Pawn && (square >> 3) == kPawnRow)) continue;
    }
    frame.fromSquare = square;
    frame.movedPiece = code;
    next.board[square] = 0;
    generatePieceMoves(frame, square, code, code == Side * piece::Pawn ? enPassantPawn(stack, ply) : -1);
    frame.entryIndex = 0;
    return true;
  }
  return false;
}

// Castling rights after a legal move: only the mover's own change. The two
// flags of a side are handled as one 16-bit word (long in the low byte, short
// in the high byte), masked by what a move from each square leaves standing.
constexpr std::array<std::uint16_t, 64> castlingKeptFrom(int side) {
  std::array<std::uint16_t, 64> kept{};
  const int kingHome = side == White ? 60 : 4;
  for (int from = 0; from < 64; ++from) {
    const bool keepLong = from != kingHome && from != kingHome - 4;
    const bool keepShort = from != kingHome && from != kingHome + 3;
    kept[static_cast<std::size_t>(from)] =
        static_cast<std::uint16_t>((keepLong ? 0x00ff : 0) | (keepShort ? 0xff00 : 0));
  }
  return kept;
}

template <int Side>
inline constexpr std::array<std::uint16_t, 64> kCastlingKept = castlingKeptFrom(Side);

template <int Side>
[[gnu::always_inline]] inline void updateCastlingRights(const PlyFrame& frame, Position& next) {
  constexpr std::size_t offset =
      Side == White ? offsetof(Position, whiteLongCastle) : offsetof(Position, blackLongCastle);
  std::uint16_t rights;
  std::memcpy(&rights, reinterpret_cast<const unsigned char*>(&frame.position) + offset, sizeof rights);
  if (rights == 0) return;
  rights &= kCastlingKept<Side>[static_cast<std::size_t>(frame.fromSquare)];
  std::memcpy(reinterpret_cast<unsigned char*>(&next) + offset, &rights, sizeof rights);
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
  unsigned& kingLines = stack.kingAttackLines[static_cast<std::size_t>(ply)];
  if (!continuing) {
    copyPositionToNextPly(frame);
    kingLines = attackLinesAgainst<Side>(detail::kingSquareOf<Side>(frame.position), frame.position);
    if constexpr (Test == MoveTest::Checking) {
      stack.discoveryLines[static_cast<std::size_t>(ply)] =
          attackLinesAgainst<-Side>(detail::enemyKingSquareOf<Side>(frame.position), frame.position);
    }
    if (!detail::takeUpMan<Side, Test>(stack, ply, frame, next, true)) return 1;
  } else {
    detail::putBack<Side>(frame, next);
  }
  for (;;) {
    const MoveEntry entry = frame.moveList[frame.entryIndex];
    if (entry.kind == kind::End) {
      next.board[frame.fromSquare] = static_cast<std::int8_t>(frame.movedPiece);
      if constexpr (tracksKing(Test)) {
        if (frame.movedPiece == Side * piece::King) {
          detail::kingSquareOf<Side>(next) = detail::kingSquareOf<Side>(frame.position);
        }
      }
      if (!detail::takeUpMan<Side, Test>(stack, ply, frame, next, false)) return 1;
      continue;
    }
    ++frame.entryIndex;
    int enemyKing = 0;
    if constexpr (Test == MoveTest::Checking) {
      enemyKing = detail::enemyKingSquareOf<Side>(frame.position);
      // Most moves cannot check at all: they are passed over without being made.
      const bool plainMove = entry.kind > kind::EnPassant || entry.kind < 0;
      if (plainMove && !mayGiveCheck(entry.kind, frame.fromSquare, entry.target, enemyKing,
                                     stack.discoveryLines[static_cast<std::size_t>(ply)])) {
        continue;
      }
    }
    if constexpr (Test == MoveTest::Movers) {
      if (((stack.moverTargetsAt(ply)[static_cast<std::size_t>(frame.fromSquare)] >> entry.target) & 1) == 0) continue;
    }
    if constexpr (Test == MoveTest::KingOrDoubleStep) {
      const int step = entry.target - frame.fromSquare;
      if (frame.movedPiece == Side * piece::Pawn && step != 16 && step != -16) continue;
    }
    constexpr bool kTracksKing = tracksKing(Test);
    if (!detail::tryMove<Side, Test == MoveTest::Checking, kTracksKing>(frame, next, entry, kingLines, enemyKing)) {
      continue;
    }
    if constexpr (kTracksKing) detail::updateCastlingRights<Side>(frame, next);
    return -1;
  }
}

// Makes `move` at `ply` into frame ply + 1 when it is a legal move there, as
// the legal-move iterator would have made it; false otherwise. Only the mover
// is looked at, so a move remembered from elsewhere in the tree is tried
// without going through the list before it. The ply's iterator must be
// started afresh afterwards.
template <int Side>
bool makeMoveIfLegal(PlyStack& stack, int ply, const MoveRecord& move) {
  PlyFrame& frame = stack[ply];
  Position& next = (&frame)[1].position;
  const int from = move.fromSquare;
  const int code = frame.position.board[from];
  if (code != move.movedPiece || code * Side <= 0) return false;
  copyPositionToNextPly(frame);
  frame.fromSquare = from;
  frame.movedPiece = code;
  next.board[from] = 0;
  generatePieceMoves(frame, from, code, code == Side * piece::Pawn ? enPassantPawn(stack, ply) : -1);
  for (const MoveEntry* entry = frame.moveList; entry->kind != kind::End; ++entry) {
    if (entry->target != move.toSquare || entry->kind != move.moveKind) continue;
    const unsigned lines = attackLinesAgainst<Side>(detail::kingSquareOf<Side>(frame.position), frame.position);
    if (!detail::tryMove<Side, false, true>(frame, next, *entry, lines)) return false;
    detail::updateCastlingRights<Side>(frame, next);
    return true;
  }
  return false;
}

// Makes at `ply` into frame ply + 1 a move one of the iterators above made
// there before, from its record, as they made it: nothing is generated or
// tested, so the ply's position must be the one the move was made in.
template <int Side>
void remakeMove(PlyStack& stack, int ply, const MoveRecord& move) {
  PlyFrame& frame = stack[ply];
  Position& next = (&frame)[1].position;
  copyPositionToNextPly(frame);
  frame.movedPiece = move.movedPiece;
  frame.fromSquare = move.fromSquare;
  frame.toSquare = move.toSquare;
  frame.placedPiece = move.placedPiece;
  frame.moveKind = move.moveKind;
  next.board[move.fromSquare] = 0;
  if (move.moveKind >= kind::WhiteLongCastle && move.moveKind <= kind::EnPassant) {
    detail::makeSpecial<Side>(move.moveKind, move.toSquare, next);
  }
  next.board[move.toSquare] = move.placedPiece;
  if (move.movedPiece == Side * piece::King) {
    detail::kingSquareOf<Side>(next) = static_cast<std::uint8_t>(move.toSquare);
  }
  detail::updateCastlingRights<Side>(frame, next);
}

inline void remakeMove(PlyStack& stack, int ply, const MoveRecord& move) {
  if (stack.sideAt(ply) == White) {
    remakeMove<White>(stack, ply, move);
  } else {
    remakeMove<Black>(stack, ply, move);
  }
}

inline bool makeMoveIfLegal(PlyStack& stack, int ply, const MoveRecord& move) {
  return stack.sideAt(ply) == White ? makeMoveIfLegal<White>(stack, ply, move)
                                    : makeMoveIfLegal<Black>(stack, ply, move);
}

// How many legal moves `Side` has at `ply`: what the legal-move iterator
// would hand out, without making most of them. When the king is not in
// check, a man that stands on no line from its king along which an enemy man
// could attack leaves the king safe with every move it makes, so its list is
// counted as it is; king moves, en-passant captures and the moves of every
// man while in check are made and tested. Frame ply + 1 serves as scratch.
template <int Side>
int legalMoveCount(PlyStack& stack, int ply) {
  PlyFrame& frame = stack[ply];
  Position& next = (&frame)[1].position;
  copyPositionToNextPly(frame);
  const std::int8_t* board = frame.position.board;
  const int king = detail::kingSquareOf<Side>(frame.position);
  const unsigned lines = attackLinesAgainst<Side>(king, frame.position);
  const bool inCheck = lines != 0 && isAttackedByOpponentOf<Side>(king, frame.position) >= 0;
  const int enPassant = enPassantPawn(stack, ply);
  int count = 0;
  for (int square = 0; square < 64; ++square) {
    const int code = board[square];
    if (code * Side <= 0) continue;
    const bool pawn = code == Side * piece::Pawn;
    const int moves = generatePieceMoves(frame, square, code, pawn ? enPassant : -1);
    const int line = check_geometry::kLines[static_cast<std::size_t>(king)][static_cast<std::size_t>(square)];
    const bool pinnable = line >= 0 && ((lines >> line) & 1) != 0;
    if (!inCheck && !pinnable && code != Side * piece::King && !(pawn && enPassant >= 0)) {
      count += moves;
      continue;
    }
    frame.fromSquare = square;
    next.board[square] = 0;
    for (const MoveEntry* entry = frame.moveList; entry->kind != kind::End; ++entry) {
      if (detail::tryMove<Side>(frame, next, *entry, lines)) {
        ++count;
        detail::putBack<Side>(frame, next);
      }
    }
    next.board[square] = static_cast<std::int8_t>(code);
  }
  return count;
}

inline int legalMoveCount(PlyStack& stack, int ply) {
  return stack.sideAt(ply) == White ? legalMoveCount<White>(stack, ply) : legalMoveCount<Black>(stack, ply);
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

inline int nextKingMoveOrDoubleStep(PlyStack& stack, int ply, int continuing) {
  return stack.sideAt(ply) == White ? nextMove<White, MoveTest::KingOrDoubleStep>(stack, ply, continuing)
                                    : nextMove<Black, MoveTest::KingOrDoubleStep>(stack, ply, continuing);
}

inline int nextMoveOfMovers(PlyStack& stack, int ply, int continuing) {
  return stack.sideAt(ply) == White ? nextMove<White, MoveTest::Movers>(stack, ply, continuing)
                                    : nextMove<Black, MoveTest::Movers>(stack, ply, continuing);
}

inline int nextCheckingMove(PlyStack& stack, int ply, int continuing) {
  return stack.sideAt(ply) == White ? nextMove<White, MoveTest::Checking>(stack, ply, continuing)
                                    : nextMove<Black, MoveTest::Checking>(stack, ply, continuing);
}

}  // namespace velkaro::core
