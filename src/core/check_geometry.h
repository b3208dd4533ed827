#pragma once
// Where a check can come from, by board geometry alone: which squares a man
// of each kind would attack from a square on an empty board, and which of the
// eight lines from one square another square lies on. The checking-move
// iterator uses them to skip the attack test after moves that cannot check.

#include <array>
#include <cstdint>

#include "core/geometry.h"
#include "core/movegen.h"

namespace velkaro::core {

namespace check_geometry {

// The line (0 west, 1 north-west, 2 north, 3 north-east, 4 east, 5 south-east,
// 6 south, 7 south-west, as in the attack tests) from `from` through `to`, or
// -1 when they share none.
constexpr int lineBetween(int from, int to) {
  const int fileStep = (to & 7) - (from & 7);
  const int rowStep = (to >> 3) - (from >> 3);
  if (from == to) return -1;
  if (rowStep == 0) return fileStep < 0 ? 0 : 4;
  if (fileStep == 0) return rowStep < 0 ? 2 : 6;
  if (fileStep != rowStep && fileStep != -rowStep) return -1;
  if (rowStep < 0) return fileStep < 0 ? 1 : 3;
  return fileStep > 0 ? 5 : 7;
}

constexpr std::array<std::array<std::int8_t, 64>, 64> makeLines() {
  std::array<std::array<std::int8_t, 64>, 64> lines{};
  for (int from = 0; from < 64; ++from) {
    for (int to = 0; to < 64; ++to) lines[from][to] = static_cast<std::int8_t>(lineBetween(from, to));
  }
  return lines;
}

// For each piece slot (see pieceSlot) and square, the squares a man of that
// slot standing there attacks on an empty board, one bit per square.
constexpr std::array<std::array<std::uint64_t, 64>, 18> makeAttacks() {
  std::array<std::array<std::uint64_t, 64>, 18> attacks{};
  auto bit = [](int square) { return square >= 0 ? std::uint64_t{1} << square : std::uint64_t{0}; };
  for (int square = 0; square < 64; ++square) {
    std::uint64_t lines = 0;
    std::uint64_t diagonals = 0;
    std::uint64_t steps = 0;
    for (int to = 0; to < 64; ++to) {
      const int line = lineBetween(square, to);
      if (line < 0) continue;
      (line % 2 == 0 ? lines : diagonals) |= bit(to);
      const int fileStep = (to & 7) - (square & 7);
      const int rowStep = (to >> 3) - (square >> 3);
      if (fileStep >= -1 && fileStep <= 1 && rowStep >= -1 && rowStep <= 1) steps |= bit(to);
    }
    std::uint64_t leaps = 0;
    for (auto [fileStep, rowStep] : geometry::kKnightLeaps) leaps |= bit(geometry::leap(square, fileStep, rowStep));
    for (int colour = 0; colour < 18; colour += 9) {
      attacks[colour + pieceSlot(piece::Queen)][square] = lines | diagonals;
      attacks[colour + pieceSlot(piece::Rook)][square] = lines;
      attacks[colour + pieceSlot(piece::Bishop)][square] = diagonals;
      attacks[colour + pieceSlot(piece::King)][square] = steps;
      attacks[colour + pieceSlot(piece::Knight)][square] = leaps;
      const int rowStep = colour == 0 ? -1 : 1;  // a pawn captures towards the far side
      attacks[colour + pieceSlot(piece::Pawn)][square] =
          bit(geometry::leap(square, -1, rowStep)) | bit(geometry::leap(square, 1, rowStep));
    }
  }
  return attacks;
}

inline constexpr auto kLines = makeLines();
inline constexpr auto kEmptyBoardAttacks = makeAttacks();

// For each piece slot and square, the squares a man of that slot can move to
// from there on an empty board: those it attacks, and a pawn's steps ahead.
constexpr std::array<std::array<std::uint64_t, 64>, 18> makeReach() {
  std::array<std::array<std::uint64_t, 64>, 18> reach = kEmptyBoardAttacks;
  for (int slot : {pieceSlot(piece::Pawn), pieceSlot(-piece::Pawn)}) {
    const int forward = slot < 9 ? -8 : 8;
    for (int square = 0; square < 64; ++square) {
      for (int step = 1; step <= 2; ++step) {
        const int target = square + step * forward;
        if (target >= 0 && target < 64) reach[slot][square] |= std::uint64_t{1} << target;
      }
    }
  }
  return reach;
}

inline constexpr auto kReach = makeReach();

// For each piece slot and square, the king squares a man of that slot could
// check with one move from there on an empty board: from each square it can
// reach (with every promotion piece on the last rank) it bears on others.
constexpr std::array<std::array<std::uint64_t, 64>, 18> makeOneMoveChecks() {
  std::array<std::array<std::uint64_t, 64>, 18> checks{};
  for (int slot = 0; slot < 18; ++slot) {
    const bool pawn = slot % 9 == pieceSlot(piece::Pawn);
    const int colour = slot < 9 ? 0 : 9;
    for (int square = 0; square < 64; ++square) {
      const std::uint64_t targets = kReach[slot][square];
      std::uint64_t kings = 0;
      for (int target = 0; target < 64; ++target) {
        if (((targets >> target) & 1) == 0) continue;
        kings |= kEmptyBoardAttacks[slot][target];
        if (pawn && (target < 8 || target >= 56)) {
          kings |= kEmptyBoardAttacks[colour + pieceSlot(piece::Queen)][target] |
                   kEmptyBoardAttacks[colour + pieceSlot(piece::Knight)][target];
        }
      }
      checks[slot][square] = kings;
    }
  }
  return checks;
}

inline constexpr auto kOneMoveChecks = makeOneMoveChecks();

// A knight on a8 checks a king on d5 from c7; a king never checks.
static_assert(((kOneMoveChecks[pieceSlot(piece::Knight)][0] >> 27) & 1) == 1);
static_assert(((kOneMoveChecks[pieceSlot(piece::King)][0] >> 63) & 1) == 0);
static_assert(kLines[60][4] == 2 && kLines[60][56] == 0 && kLines[0][63] == 5 && kLines[0][10] == -1);
static_assert(kEmptyBoardAttacks[pieceSlot(piece::Knight)][56] ==
              ((std::uint64_t{1} << 41) | (std::uint64_t{1} << 50)));
static_assert(kEmptyBoardAttacks[pieceSlot(piece::Pawn)][52] == ((std::uint64_t{1} << 43) | (std::uint64_t{1} << 45)));
static_assert(kEmptyBoardAttacks[pieceSlot(-piece::Pawn)][12] == ((std::uint64_t{1} << 19) | (std::uint64_t{1} << 21)));

}  // namespace check_geometry

// Whether a move can have given check to the king on `enemyKing`: the man it
// placed on `to` bears on the king's square, or it left a square on one of
// the king's lines that hold the mover's line pieces (`discoveryLines`, as
// from attackLinesAgainst). Castling and en passant move more men than one
// and are not judged here.
inline bool mayGiveCheck(int placed, int from, int to, int enemyKing, unsigned discoveryLines) {
  if ((check_geometry::kEmptyBoardAttacks[static_cast<std::size_t>(pieceSlot(placed))][static_cast<std::size_t>(to)] >>
       enemyKing) &
      1) {
    return true;
  }
  const int line = check_geometry::kLines[static_cast<std::size_t>(enemyKing)][static_cast<std::size_t>(from)];
  return line >= 0 && ((discoveryLines >> line) & 1) != 0;
}

// Whether the man `code` on `from` could check the king on `enemyKing` with one
// of its moves: by the squares it can reach, or by uncovering a line that holds
// the mover's line pieces. Castling and en passant are left to the caller.
inline bool mayCheckWithAMove(int code, int from, int enemyKing, unsigned discoveryLines) {
  if ((check_geometry::kOneMoveChecks[static_cast<std::size_t>(pieceSlot(code))][static_cast<std::size_t>(from)] >>
       enemyKing) & 1) {
    return true;
  }
  const int line = check_geometry::kLines[static_cast<std::size_t>(enemyKing)][static_cast<std::size_t>(from)];
  return line >= 0 && ((discoveryLines >> line) & 1) != 0;
}

}  // namespace velkaro::core
