// The per-square move generators. Targets, ray order and board edges are
// compile-time constants of each instantiation, so generating a man's moves is
// straight-line code.

#include "core/movegen.h"

#include <cstring>
#include <utility>

#include "core/attacks.h"
#include "core/geometry.h"

namespace velkaro::core {

namespace {

using namespace geometry;

// One square of a sliding ray: writes the move unless the mover's own man
// stands there; says whether the ray goes on past it.
// The mover's code `Code` tells its side: a man of the same sign is its own.
template <int Code, int Square, int FileStep, int RowStep, int Distance>
[[gnu::always_inline]] inline bool slideTo(const std::int8_t* board, MoveEntry*& out) {
  constexpr int target = rayStep(Square, FileStep, RowStep, Distance);
  const int code = board[target];
  if (code * Code > 0) return false;
  *out++ = MoveEntry{target, Code};
  return code == 0;
}

template <int Code, int Square, int FileStep, int RowStep, int... Distance>
[[gnu::always_inline]] inline void slideAlong([[maybe_unused]] const std::int8_t* board,
                                              [[maybe_unused]] MoveEntry*& out,
                                              std::integer_sequence<int, Distance...>) {
  (void)(slideTo<Code, Square, FileStep, RowStep, Distance + 1>(board, out) && ...);
}

template <int Code, int Square, int FileStep, int RowStep>
[[gnu::always_inline]] inline void slide(const std::int8_t* board, MoveEntry*& out) {
  slideAlong<Code, Square, FileStep, RowStep>(board, out,
                                              std::make_integer_sequence<int, rayLength(Square, FileStep, RowStep)>{});
}

// A king's or knight's step: written when the target is empty or enemy.
template <int Code, int Square, int FileStep, int RowStep>
[[gnu::always_inline]] inline void step(const std::int8_t* board, MoveEntry*& out) {
  constexpr int target = leap(Square, FileStep, RowStep);
  if constexpr (target >= 0) {
    if (board[target] * Code <= 0) *out++ = MoveEntry{target, Code};
  }
}

// Ends the list and says how long it is.
[[gnu::always_inline]] inline int finish(PlyFrame& frame, MoveEntry* out) {
  out->kind = kind::End;
  return static_cast<int>(out - frame.moveList);
}

// Queen: N, S, W, E, NE, SE, NW, SW; rook the first four, bishop the last four.
template <int Side, int Square, bool Lines, bool Diagonals>
int slider(PlyFrame& frame, int) {
  constexpr int code = Side * (Lines ? (Diagonals ? piece::Queen : piece::Rook) : piece::Bishop);
  const std::int8_t* board = frame.position.board;
  MoveEntry* out = frame.moveList;
  if constexpr (Lines) {
    slide<code, Square, 0, -1>(board, out);
    slide<code, Square, 0, 1>(board, out);
    slide<code, Square, -1, 0>(board, out);
    slide<code, Square, 1, 0>(board, out);
  }
  if constexpr (Diagonals) {
    slide<code, Square, 1, -1>(board, out);
    slide<code, Square, 1, 1>(board, out);
    slide<code, Square, -1, -1>(board, out);
    slide<code, Square, -1, 1>(board, out);
  }
  return finish(frame, out);
}

template <int Side, int Square, int... Leap>
[[gnu::always_inline]] inline void knightSteps(const std::int8_t* board, MoveEntry*& out,
                                               std::integer_sequence<int, Leap...>) {
  (step<Side * piece::Knight, Square, kKnightLeaps[Leap].first, kKnightLeaps[Leap].second>(board, out), ...);
}

template <int Side, int Square>
int knight(PlyFrame& frame, int) {
  MoveEntry* out = frame.moveList;
  knightSteps<Side, Square>(frame.position.board, out, std::make_integer_sequence<int, 8>{});
  return finish(frame, out);
}

// Castling from the king's home square: the flag, the rook in its corner, the
// squares between empty, and neither the king's square nor the one it passes
// over attacked. Landing in check is left to the legality test after the move.
template <int Side>
[[gnu::always_inline]] inline void castlings(const Position& position, MoveEntry*& out) {
  constexpr int home = Side == White ? 60 : 4;
  constexpr int rook = Side * piece::Rook;
  const std::int8_t* board = position.board;
  auto attacked = [&](int square) { return isAttackedByOpponentOf<Side>(square, position) >= 0; };
  const bool mayLong = (Side == White ? position.whiteLongCastle : position.blackLongCastle) &&
                       board[home - 4] == rook && board[home - 3] == 0 && board[home - 2] == 0 && board[home - 1] == 0;
  const bool mayShort = (Side == White ? position.whiteShortCastle : position.blackShortCastle) &&
                        board[home + 1] == 0 && board[home + 2] == 0 && board[home + 3] == rook;
  // The king's own square is tested once for both wings.
  if (!(mayLong || mayShort) || attacked(home)) return;
  if (mayLong && !attacked(home - 1)) {
    *out++ = MoveEntry{home - 2, Side == White ? kind::WhiteLongCastle : kind::BlackLongCastle};
  }
  if (mayShort && !attacked(home + 1)) {
    *out++ = MoveEntry{home + 2, Side == White ? kind::WhiteShortCastle : kind::BlackShortCastle};
  }
}

// King: clockwise from the west (W, NW, N, NE, E, SE, S, SW), then castling
// long and short.
template <int Side, int Square>
int king(PlyFrame& frame, int) {
  const std::int8_t* board = frame.position.board;
  MoveEntry* out = frame.moveList;
  constexpr int code = Side * piece::King;
  step<code, Square, -1, 0>(board, out);
  step<code, Square, -1, -1>(board, out);
  step<code, Square, 0, -1>(board, out);
  step<code, Square, 1, -1>(board, out);
  step<code, Square, 1, 0>(board, out);
  step<code, Square, 1, 1>(board, out);
  step<code, Square, 0, 1>(board, out);
  step<code, Square, -1, 1>(board, out);
  if constexpr (Square == (Side == White ? 60 : 4)) castlings<Side>(frame.position, out);
  return finish(frame, out);
}

// A pawn arriving on `Target`: four entries (queen, knight, rook, bishop) on
// the last rank, otherwise one.
template <int Side, int Target>
[[gnu::always_inline]] inline void pawnTo(MoveEntry*& out) {
  constexpr bool promotes = Side == White ? Target < 8 : Target >= 56;
  if constexpr (promotes) {
    *out++ = MoveEntry{Target, Side * piece::Queen};
    *out++ = MoveEntry{Target, Side * piece::Knight};
    *out++ = MoveEntry{Target, Side * piece::Rook};
    *out++ = MoveEntry{Target, Side * piece::Bishop};
  } else {
    *out++ = MoveEntry{Target, Side * piece::Pawn};
  }
}

// Pawn: one step, two steps from the home rank, capture towards the a-file,
// capture towards the h-file, en passant. The Black generator keeps this
// order; it is not mirrored.
template <int Side, int Square>
int pawn(PlyFrame& frame, int enPassantPawn) {
  const std::int8_t* board = frame.position.board;
  MoveEntry* out = frame.moveList;
  constexpr int forward = -8 * Side;
  constexpr int ahead = Square + forward;
  if constexpr (ahead >= 0 && ahead < 64) {
    constexpr int file = Square & 7;
    constexpr bool homeRank = Side == White ? Square >= 48 : Square < 16;
    if (board[ahead] == 0) {
      pawnTo<Side, ahead>(out);
      if constexpr (homeRank) {
        if (board[ahead + forward] == 0) *out++ = MoveEntry{ahead + forward, Side * piece::Pawn};
      }
    }
    if constexpr (file > 0) {
      if (board[ahead - 1] * Side < 0) pawnTo<Side, ahead - 1>(out);
    }
    if constexpr (file < 7) {
      if (board[ahead + 1] * Side < 0) pawnTo<Side, ahead + 1>(out);
    }
    if (enPassantPawn >= 0) {
      if constexpr (file > 0) {
        if (enPassantPawn == Square - 1) *out++ = MoveEntry{ahead - 1, kind::EnPassant};
      }
      if constexpr (file < 7) {
        if (enPassantPawn == Square + 1) *out++ = MoveEntry{ahead + 1, kind::EnPassant};
      }
    }
  }
  return finish(frame, out);
}

template <int Side, template <int, int> class Kind, std::size_t... Square>
constexpr std::array<PieceGenerator, 64> table(std::index_sequence<Square...>) {
  return {&Kind<Side, static_cast<int>(Square)>::generate...};
}

template <int Side, int Square>
struct QueenGen {
  static int generate(PlyFrame& frame, int ep) { return slider<Side, Square, true, true>(frame, ep); }
};
template <int Side, int Square>
struct RookGen {
  static int generate(PlyFrame& frame, int ep) { return slider<Side, Square, true, false>(frame, ep); }
};
template <int Side, int Square>
struct BishopGen {
  static int generate(PlyFrame& frame, int ep) { return slider<Side, Square, false, true>(frame, ep); }
};
template <int Side, int Square>
struct KnightGen {
  static int generate(PlyFrame& frame, int ep) { return knight<Side, Square>(frame, ep); }
};
template <int Side, int Square>
struct KingGen {
  static int generate(PlyFrame& frame, int ep) { return king<Side, Square>(frame, ep); }
};
template <int Side, int Square>
struct PawnGen {
  static int generate(PlyFrame& frame, int ep) { return pawn<Side, Square>(frame, ep); }
};

template <int Side, template <int, int> class Kind>
constexpr std::array<PieceGenerator, 64> generatorsOf() {
  return table<Side, Kind>(std::make_index_sequence<64>{});
}

// Slots that no piece code maps to; never called.
constexpr std::array<PieceGenerator, 64> kNoGenerators{};

}  // namespace

// Slots follow pieceSlot: queen, king, knight, -, rook, -, pawn, -, bishop.
// clang-format off
constinit const std::array<std::array<PieceGenerator, 64>, 18> kPieceGenerators = {
    generatorsOf<White, QueenGen>(), generatorsOf<White, KingGen>(), generatorsOf<White, KnightGen>(),
    kNoGenerators,                   generatorsOf<White, RookGen>(), kNoGenerators,
    generatorsOf<White, PawnGen>(),  kNoGenerators,                  generatorsOf<White, BishopGen>(),
    generatorsOf<Black, QueenGen>(), generatorsOf<Black, KingGen>(), generatorsOf<Black, KnightGen>(),
    kNoGenerators,                   generatorsOf<Black, RookGen>(), kNoGenerators,
    generatorsOf<Black, PawnGen>(),  kNoGenerators,                  generatorsOf<Black, BishopGen>(),
};
// clang-format on

static_assert(pieceSlot(piece::Queen) == 0 && pieceSlot(piece::King) == 1 && pieceSlot(piece::Knight) == 2);
static_assert(pieceSlot(piece::Rook) == 4 && pieceSlot(piece::Pawn) == 6 && pieceSlot(piece::Bishop) == 8);
static_assert(pieceSlot(-piece::Queen) == 9 && pieceSlot(-piece::Bishop) == 17);

std::uint8_t countMoves(PlyStack& stack, int ply) {
  PlyFrame& frame = stack[ply];
  const int side = stack.sideAt(ply);
  const int enPassant = enPassantPawn(stack, ply);
  std::uint8_t total = 0;
  for (int square = 0; square < 64; ++square) {
    const int code = frame.position.board[square];
    if (code * side <= 0) continue;
    std::memset(frame.moveList, 0, sizeof(MoveEntry) * kClearedEntries);
    frame.fromSquare = square;
    generatePieceMoves(frame, square, code, enPassant);
    int entries = 0;
    while (entries < kClearedEntries && frame.moveList[entries].kind != kind::End) ++entries;
    total = static_cast<std::uint8_t>(total + entries);
  }
  // Leave the list and the frames above clean for the search that follows.
  constexpr std::size_t kKeptBytes = 280;
  constexpr std::size_t kClearedBytes = 50000;
  auto* start = reinterpret_cast<unsigned char*>(&frame) + kKeptBytes;
  auto* stackEnd = reinterpret_cast<unsigned char*>(stack.frames.data() + stack.frames.size());
  const auto available = static_cast<std::size_t>(stackEnd - start);
  std::memset(start, 0, available < kClearedBytes ? available : kClearedBytes);
  return total;
}

}  // namespace velkaro::core
