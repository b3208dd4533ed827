// Building the second frame of a run whose first move is forced.

#include "solver/first_move.h"

namespace velkaro::solver {

namespace {

std::uint8_t squareOf(const core::Position& position, int code) {
  for (int square = 0; square < 64; ++square) {
    if (position.board[square] == code) return static_cast<std::uint8_t>(square);
  }
  return 0;
}

}  // namespace

void applyFirstMove(core::PlyStack& stack, const FirstMove& move) {
  using namespace core;
  PlyFrame& root = stack[1];
  const int side = move.movedPiece > 0 ? White : Black;
  root.movedPiece = move.movedPiece;
  root.fromSquare = move.fromSquare;
  root.toSquare = move.toSquare;
  root.moveKind = move.moveKind;
  root.placedPiece = move.moveKind > kind::EnPassant || move.moveKind < 0 ? move.moveKind : move.movedPiece;

  Position& next = stack[2].position;
  next = root.position;  // castling rights included, untouched by the move

  std::int8_t* board = next.board;
  const int to = move.toSquare;
  board[move.fromSquare] = 0;
  board[to] = static_cast<std::int8_t>(root.placedPiece);
  if (isCastling(move.moveKind)) {
    const bool isLong = move.moveKind == kind::WhiteLongCastle || move.moveKind == kind::BlackLongCastle;
    board[isLong ? to - 2 : to + 1] = 0;
    board[isLong ? to + 1 : to - 1] = static_cast<std::int8_t>(side * piece::Rook);
  } else if (move.moveKind == kind::EnPassant) {
    board[to + 8 * side] = 0;
  }
  next.whiteKingSquare = squareOf(next, piece::King);
  next.blackKingSquare = squareOf(next, -piece::King);
}

}  // namespace velkaro::solver
