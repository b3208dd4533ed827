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
  constexpr int kFileSteps[8] = {-1, -1, 0, 1, 1, 1, 0, -1};
  constexpr int kRowSteps[8] = {0, -1, -1, -1, 0, 1, 1, 1};
  for (int line = 0; line < 8; ++line) {
    for (int distance = 1; distance <= geometry::rayLength(from, kFileSteps[line], kRowSteps[line]); ++distance) {
      if (geometry::rayStep(from, kFileSteps[line], kRowSteps[line], distance) == to) return line;
    }
  }
  return -1;
}

constexpr std::array<std::array<std::int8_t, 64>, 64> makeLines() {
  std::array<std::array<std::int8_t, 64>, 64> lines{};
  for (int from = 0; from < 64; ++from) {
    for (int to = 0; to < 64; ++to) lines[from][to] = static_cast<std::int8_t>(lineBetween(from, to));
  }
  return lines;
}

// Squares a man of piece slot `slot` (see pieceSlot) on `square` attacks on an
// empty board, one bit per square.
constexpr std::uint64_t emptyBoardAttacks(int slot, int square) {
  const int magnitude = slot % 9;
  const bool white = slot < 9;
  std::uint64_t squares = 0;
  auto add = [&](int target) {
    if (target >= 0) squares |= std::uint64_t{1} << target;
  };
  for (int to = 0; to < 64; ++to) {
    const int line = lineBetween(square, to);
    const bool straight = line >= 0 && line % 2 == 0;
    const bool diagonal = line >= 0 && line % 2 == 1;
    const int fileStep = (to & 7) - (square & 7);
    const int rowStep = (to >> 3) - (square >> 3);
    const bool adjacent = to != square && fileStep >= -1 && fileStep <= 1 && rowStep >= -1 && rowStep <= 1;
    if ((magnitude == pieceSlot(piece::Queen) && line >= 0) || (magnitude == pieceSlot(piece::Rook) && straight) ||
        (magnitude == pieceSlot(piece::Bishop) && diagonal) || (magnitude == pieceSlot(piece::King) && adjacent)) {
      add(to);
    }
  }
  if (magnitude == pieceSlot(piece::Knight)) {
    for (auto [fileStep, rowStep] : geometry::kKnightLeaps) add(geometry::leap(square, fileStep, rowStep));
  }
  if (magnitude == pieceSlot(piece::Pawn)) {
    add(geometry::leap(square, -1, white ? -1 : 1));
    add(geometry::leap(square, 1, white ? -1 : 1));
  }
  return squares;
}

constexpr std::array<std::array<std::uint64_t, 64>, 18> makeAttacks() {
  std::array<std::array<std::uint64_t, 64>, 18> attacks{};
  for (int slot = 0; slot < 18; ++slot) {
    for (int square = 0; square < 64; ++square) attacks[slot][square] = emptyBoardAttacks(slot, square);
  }
  return attacks;
}

inline constexpr auto kLines = makeLines();
inline constexpr auto kEmptyBoardAttacks = makeAttacks();

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

}  // namespace velkaro::core
