// The odometer: the last group turns fastest; a group's next combination is
// found by scanning down from square 63 (55 for pawns).

#include "plain_enumeration.h"

#include <array>
#include <utility>

#include "core/attacks.h"

namespace velkaro::placement::testing {

namespace {

using Groups = std::vector<std::pair<int, int>>;  // piece code, count

void putFirst(Board& board, int code, int count) {
  for (int square = 0; count > 0; ++square) {
    if (board[square] == 0) {
      board[square] = static_cast<std::int8_t>(code);
      --count;
    }
  }
}

bool nextCombination(Board& board, int code, int count) {
  int lifted = 0;
  bool emptyMet = false;
  for (int square = code == core::piece::Pawn ? 55 : 63; square >= 0; --square) {
    if (board[square] == 0) {
      emptyMet = true;
    } else if (board[square] == code) {
      board[square] = 0;
      ++lifted;
      if (!emptyMet && lifted == count) return false;
      if (!emptyMet) continue;
      for (int target = square + 1; lifted > 0; ++target) {
        if (board[target] == 0) {
          board[target] = static_cast<std::int8_t>(code);
          --lifted;
        }
      }
      return true;
    }
  }
  return false;
}

bool nextPlacement(Board& board, const Groups& groups) {
  for (int group = static_cast<int>(groups.size()) - 1; group >= 0; --group) {
    if (!nextCombination(board, groups[group].first, groups[group].second)) continue;
    for (std::size_t later = group + 1; later < groups.size(); ++later)
      putFirst(board, groups[later].first, groups[later].second);
    return true;
  }
  return false;
}

}  // namespace

bool noManAttacked(const Board& board) {
  core::Position position{};
  for (int square = 0; square < 64; ++square) position.board[square] = board[square];
  for (int square = 63; square >= 0; --square) {
    if (board[square] != 0 && core::isAttackedByWhite(square, position) >= 0) return false;
  }
  return true;
}

namespace {

void coverSteps(const Board& board, std::array<bool, 64>& cover, int square, int fileStep, int rowStep, bool far,
                bool blocked) {
  int file = square % 8 + fileStep;
  int row = square / 8 + rowStep;
  for (; file >= 0 && file < 8 && row >= 0 && row < 8; file += fileStep, row += rowStep) {
    if (blocked && board[row * 8 + file] != 0) return;
    cover[row * 8 + file] = true;
    if (!far) return;
  }
}

}  // namespace

int coverScore(const Board& board, bool wholeDiagonals) {
  constexpr int kLines[4][2] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};
  constexpr int kDiagonals[4][2] = {{-1, -1}, {1, -1}, {-1, 1}, {1, 1}};
  constexpr int kLeaps[8][2] = {{-1, -2}, {1, -2}, {-2, -1}, {2, -1}, {-2, 1}, {2, 1}, {-1, 2}, {1, 2}};
  std::array<bool, 64> cover{};
  for (int square = 63; square >= 0; --square) {
    const int code = board[square];
    if (code == 0) continue;
    cover[square] = true;
    const bool lines = code == core::piece::Rook || code == core::piece::Queen;
    const bool diagonals = code == core::piece::Bishop || code == core::piece::Queen;
    const bool king = code == core::piece::King;
    for (auto [file, row] : kLines) {
      if (lines) coverSteps(board, cover, square, file, row, true, true);
      if (king) coverSteps(board, cover, square, file, row, false, false);
    }
    for (auto [file, row] : kDiagonals) {
      if (diagonals) coverSteps(board, cover, square, file, row, true, !wholeDiagonals);
      if (king || (code == core::piece::Pawn && row < 0)) coverSteps(board, cover, square, file, row, false, false);
    }
    for (auto [file, row] : kLeaps) {
      if (code == core::piece::Knight) coverSteps(board, cover, square, file, row, false, false);
    }
  }
  int free = 0;
  for (bool covered : cover) free += !covered;
  return free;
}

PlainResult plainEnumeration(const PieceCounts& counts, Goal goal) {
  const std::pair<int, int> byKind[] = {{core::piece::Pawn, counts.pawns},     {core::piece::King, counts.kings},
                                        {core::piece::Queen, counts.queens},   {core::piece::Rook, counts.rooks},
                                        {core::piece::Bishop, counts.bishops}, {core::piece::Knight, counts.knights}};
  Groups groups;
  Board board{};
  for (auto [code, count] : byKind) {
    if (count == 0) continue;
    groups.emplace_back(code, count);
    if (code == core::piece::Pawn) {
      for (int man = 0; man < count; ++man) board[8 + man] = static_cast<std::int8_t>(code);
    } else {
      putFirst(board, code, count);
    }
  }
  const bool whole =
      groups.size() == 1 && (groups[0].first == core::piece::Bishop || groups[0].first == core::piece::Queen);
  PlainResult result;
  result.best = goal == Goal::AttackingSquares ? 64 : 0;
  do {
    ++result.examined;
    if (goal == Goal::NonAttackingPieces) {
      if (noManAttacked(board)) result.finds.push_back(board);
      continue;
    }
    const int free = coverScore(board, whole);
    if (free != result.best && (goal == Goal::AttackingSquares) == (free > result.best)) continue;
    if (free != result.best) result.finds.clear();
    result.best = free;
    result.finds.push_back(board);
  } while (nextPlacement(board, groups));
  return result;
}

}  // namespace velkaro::placement::testing
