#pragma once
// The position model every search works on: piece codes, square numbering, the
// flat 72-byte Position and the 800-byte ply frame, and the ply stack a job owns.
// Making a move copies a ply's Position into the next frame and changes a few
// squares there; taking it back is simply going back to the previous frame.

#include <array>
#include <cstdint>

namespace velkaro::core {

// Squares run a8 = 0, b8 = 1, ... h8 = 7, a7 = 8, ... h1 = 63; "up" (towards
// rank 8) is -8.
constexpr int fileOf(int square) { return square & 7; }
constexpr int rankOf(int square) { return 8 - (square >> 3); }
constexpr int squareAt(int file, int rank) { return (8 - rank) * 8 + file; }

// Piece codes: White positive, Black the negation, empty 0. The values are
// chosen for the attack tests, and they double as move kinds in the move list,
// which is why none of them is below 6.
namespace piece {
constexpr int King = 82;
constexpr int Queen = 76;
constexpr int Rook = 100;
constexpr int Bishop = 124;
constexpr int Knight = 88;
constexpr int Pawn = 112;
}  // namespace piece

// How many men of each kind: a side's men on a board, or the men a placement
// puzzle asks for.
struct KindCounts {
  int kings = 0;
  int queens = 0;
  int rooks = 0;
  int bishops = 0;
  int knights = 0;
  int pawns = 0;
};

// Side to move: 1 White, -1 Black; a piece of the side is code * side > 0.
enum Side : int { White = 1, Black = -1 };

// What a move-list entry does. Any other value is the code of the piece that
// stands on the target afterwards (the mover, or the promotion piece).
namespace kind {
constexpr int End = 0;
constexpr int WhiteLongCastle = 1;   // e1-c1, rook a1-d1
constexpr int WhiteShortCastle = 2;  // e1-g1, rook h1-f1
constexpr int BlackLongCastle = 3;   // e8-c8, rook a8-d8
constexpr int BlackShortCastle = 4;  // e8-g8, rook h8-f8
constexpr int EnPassant = 5;
}  // namespace kind

constexpr bool isCastling(int moveKind) { return moveKind >= 1 && moveKind <= 4; }

struct Position {
  std::int8_t board[64];
  std::uint8_t whiteKingSquare;
  std::uint8_t blackKingSquare;
  std::uint8_t unused[2];  // copied along with the rest, never read
  std::uint8_t whiteLongCastle;
  std::uint8_t whiteShortCastle;
  std::uint8_t blackLongCastle;
  std::uint8_t blackShortCastle;
};
static_assert(sizeof(Position) == 72);

struct MoveEntry {
  std::int32_t target;
  std::int32_t kind;
};
static_assert(sizeof(MoveEntry) == 8);

// Room for far more moves than one piece can have (a queen has 27).
constexpr int kMoveListCapacity = 86;
// Entries cleared before a generator fills a list for counting.
constexpr int kClearedEntries = 30;

struct PlyFrame {
  Position position;
  std::int32_t movedPiece;   // code of the man the current move takes up
  std::int32_t fromSquare;
  std::int32_t toSquare;
  std::int32_t placedPiece;  // what stands on toSquare afterwards
  std::int32_t moveKind;
  std::int32_t searchFlag;   // owned by the searches
  std::int32_t entryIndex;   // entries of the current man already taken
  std::int32_t searchCount;  // owned by the searches
  std::uint64_t menLeft;     // the legal-move iterator's men not yet taken up
  MoveEntry moveList[kMoveListCapacity];
};
static_assert(sizeof(PlyFrame) == 800);

// 64 frames: enough for the deepest job (ply 1 is the root, frame 0 holds no
// position) with one frame to spare for the move made at the last ply.
constexpr int kPlyFrameCount = 64;

// The board as the user set it up, with everything a search needs that is not
// part of the Position: who moves, the castling settings and the en-passant
// "last move" square (the enemy pawn that has just made a double step).
struct BoardSetup {
  std::array<int, 64> board{};
  int sideToMove = White;
  bool whiteLongCastle = false;
  bool whiteShortCastle = false;
  bool blackLongCastle = false;
  bool blackShortCastle = false;
  int lastMoveSquare = 0;  // 0 or less: none
};

// Where each man may move, by the square it stands on; one bit a square.
using MoverTargets = std::array<std::uint64_t, 64>;

// The ply stack of one job, with the two values beside it that the move
// generator reads: the side to move at the root and the root's en-passant
// square. Odd plies move for the root side, even plies for the other side.
struct PlyStack {
  std::array<PlyFrame, kPlyFrameCount> frames{};
  int rootSide = White;
  int lastMoveSquare = 0;
  // Per ply, the lines from the mover's king on which an enemy man could attack
  // it, found when the ply's iterator starts; they make the legality test of
  // all but king moves look only where an attack can come from.
  std::array<unsigned, kPlyFrameCount> kingAttackLines{};
  // Per ply, for the checking-move iterator: the lines from the enemy king
  // that hold the mover's line pieces, along which a move may uncover check.
  std::array<unsigned, kPlyFrameCount> discoveryLines{};
  // For the iterator that makes only some moves: where each man may go, by
  // its square. Only plies among the last four of a line use it, so four
  // sets serve them all (moverTargetsAt).
  std::array<MoverTargets, 4> moverTargets{};
  MoverTargets& moverTargetsAt(int ply) { return moverTargets[static_cast<std::size_t>(ply & 3)]; }

  PlyFrame& operator[](int ply) { return frames[static_cast<std::size_t>(ply)]; }
  const PlyFrame& operator[](int ply) const { return frames[static_cast<std::size_t>(ply)]; }
  int sideAt(int ply) const { return (ply & 1) ? rootSide : -rootSide; }
};

// A move as results and progress keep it: enough to write its text and to
// tell two moves apart, without the frame it was made in.
struct MoveRecord {
  std::int8_t movedPiece = 0;
  std::int8_t fromSquare = 0;
  std::int8_t toSquare = 0;
  std::int8_t placedPiece = 0;  // what stands on toSquare afterwards
  std::int8_t moveKind = 0;
  bool operator==(const MoveRecord&) const = default;
};

// The move made from a frame.
inline MoveRecord moveOf(const PlyFrame& frame) {
  return {static_cast<std::int8_t>(frame.movedPiece), static_cast<std::int8_t>(frame.fromSquare),
          static_cast<std::int8_t>(frame.toSquare), static_cast<std::int8_t>(frame.placedPiece),
          static_cast<std::int8_t>(frame.moveKind)};
}

// The first square from a8 on that holds `code`, or 0 when none does (the
// set-up check refuses a board without kings before any search).
template <typename Square>
std::uint8_t firstSquareOf(const Square* board, int code) {
  for (int square = 0; square < 64; ++square) {
    if (board[square] == code) return static_cast<std::uint8_t>(square);
  }
  return 0;
}

// Copies a frame's Position into the frame that follows it; the next frame's
// move fields and list are left alone.
inline void copyPositionToNextPly(PlyFrame& frame) { (&frame)[1].position = frame.position; }

// Frame 1 from the editor board: squares, both kings (the first found from a8
// on), the castling settings (also into frame 2, which a forced first move is
// built on), the root side and the root's en-passant square.
void setUpRoot(PlyStack& stack, const BoardSetup& setup);

}  // namespace velkaro::core
