// Building the en-passant choices from the board alone: which pawn moved last
// cannot be known from a set-up, so every double step the board admits is
// offered and the user says which one was played.

#include "ui/en_passant.h"

#include "core/position.h"

namespace velkaro::ui {
namespace {

int at(const Board& board, int square) { return board[static_cast<std::size_t>(square)]; }

bool hasCapturerBeside(const Board& board, int pawnSquare, int ownPawn) {
  const int file = core::fileOf(pawnSquare);
  return (file > 0 && at(board, pawnSquare - 1) == ownPawn) || (file < 7 && at(board, pawnSquare + 1) == ownPawn);
}

}  // namespace

std::vector<int> enPassantChoices(const Board& board, int sideToMove) {
  const int ownPawn = sideToMove * core::piece::Pawn;
  const int rank = sideToMove == core::White ? 5 : 4;
  const int back = -8 * sideToMove;  // from the pawn towards where it started
  std::vector<int> choices;
  for (int file = 0; file < 8; ++file) {
    const int square = core::squareAt(file, rank);
    if (at(board, square) != -ownPawn) continue;
    if (at(board, square + back) != 0 || at(board, square + 2 * back) != 0) continue;
    if (hasCapturerBeside(board, square, ownPawn)) choices.push_back(square);
  }
  return choices;
}

std::string doubleStepText(int pawnSquare) {
  const char file = static_cast<char>('a' + core::fileOf(pawnSquare));
  const int rank = core::rankOf(pawnSquare);
  const int startRank = rank == 5 ? 7 : 2;
  return std::string{file, static_cast<char>('0' + startRank), ' ', '-', ' ', file, static_cast<char>('0' + rank)};
}

}  // namespace velkaro::ui
