// The list of legal first moves for "Select move", and the second frame of a
// run whose first move is forced.

#include "core/first_moves.h"

#include <cctype>

#include "core/attacks.h"
#include "core/movegen.h"

namespace velkaro::core {

namespace {

// Plays a move on a plain board: the man lifted and placed (or promoted), the
// rook of a castling moved, the pawn taken en passant removed.
void playOnBoard(std::int8_t* board, int from, int to, int moveKind, int placed, int side) {
  board[from] = 0;
  board[to] = static_cast<std::int8_t>(placed);
  if (isCastling(moveKind)) {
    const bool isLong = moveKind == kind::WhiteLongCastle || moveKind == kind::BlackLongCastle;
    board[isLong ? to - 2 : to + 1] = 0;
    board[isLong ? to + 1 : to - 1] = static_cast<std::int8_t>(side * piece::Rook);
  } else if (moveKind == kind::EnPassant) {
    board[to + 8 * side] = 0;
  }
}

// Whether the move leaves the mover's king attacked.
bool leavesKingAttacked(const Position& position, const FirstMove& move, int side) {
  Position scratch = position;
  playOnBoard(scratch.board, move.fromSquare, move.toSquare, move.moveKind, move.placedPiece(), side);
  const int king = firstSquareOf(scratch.board, side * piece::King);
  if (scratch.board[king] != side * piece::King) return false;
  return side == White ? isAttackedByBlack(king, scratch) >= 0 : isAttackedByWhite(king, scratch) >= 0;
}

char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

// The move's text with nothing but squares, piece letters and the promotion.
std::string compact(std::string_view text) {
  std::string kept;
  for (char c : text) {
    if (c != ' ' && c != '-' && c != 'x' && c != '+' && c != '#' && c != '=') kept += lower(c);
  }
  return kept;
}

}  // namespace

std::vector<FirstMove> firstMoveList(const BoardSetup& setup) {
  static constexpr PlyFrame kEmptyFrame{};
  PlyFrame frame = kEmptyFrame;
  for (int square = 0; square < 64; ++square) {
    frame.position.board[square] = static_cast<std::int8_t>(setup.board[static_cast<std::size_t>(square)]);
  }
  frame.position.whiteLongCastle = setup.whiteLongCastle;
  frame.position.whiteShortCastle = setup.whiteShortCastle;
  frame.position.blackLongCastle = setup.blackLongCastle;
  frame.position.blackShortCastle = setup.blackShortCastle;
  const int side = setup.sideToMove < 0 ? Black : White;
  const int enPassant = setup.lastMoveSquare >= 8 && setup.lastMoveSquare < 56 ? setup.lastMoveSquare : -1;

  std::vector<FirstMove> moves;
  for (int from = 0; from < 64; ++from) {
    const int code = frame.position.board[from];
    if (code * side <= 0) continue;
    const int count = generatePieceMoves(frame, from, code, code == side * piece::Pawn ? enPassant : -1);
    for (int ordinal = 0; ordinal < count && ordinal < kMovesPerMan; ++ordinal) {
      const MoveEntry& entry = frame.moveList[ordinal];
      const FirstMove move{code, from, entry.target, entry.kind, ordinal};
      if (!leavesKingAttacked(frame.position, move, side)) moves.push_back(move);
    }
  }
  return moves;
}

bool namesMove(const FirstMove& move, std::string_view text) {
  const std::string given = compact(text);
  if (isCastling(move.moveKind)) {
    const bool isLong = move.moveKind == kind::WhiteLongCastle || move.moveKind == kind::BlackLongCastle;
    return given == (isLong ? "000" : "00") || given == (isLong ? "ooo" : "oo");
  }
  Notation english;
  const std::string full = compact(english.MoveText(move.record()));  // "ng1f3", "e7e8q"
  const bool pawn = move.movedPiece == piece::Pawn || move.movedPiece == -piece::Pawn;
  const std::string squares = pawn ? full : full.substr(1);                               // "g1f3"
  const std::string target = pawn ? full.substr(2) : full.substr(0, 1) + full.substr(3);  // "e4", "nf3"
  const std::string capture = pawn ? full.substr(0, 1) + full.substr(2) : "";             // "exd5" as "ed5"
  return given == full || given == squares || given == target || (pawn && given == capture);
}

void applyFirstMove(PlyStack& stack, const FirstMove& move) {
  PlyFrame& root = stack[1];
  root.movedPiece = move.movedPiece;
  root.fromSquare = move.fromSquare;
  root.toSquare = move.toSquare;
  root.moveKind = move.moveKind;
  root.placedPiece = move.placedPiece();

  Position& next = stack[2].position;
  next = root.position;  // castling rights included, untouched by the move
  playOnBoard(next.board, move.fromSquare, move.toSquare, move.moveKind, move.placedPiece(),
              move.movedPiece > 0 ? White : Black);
  next.whiteKingSquare = firstSquareOf(next.board, piece::King);
  next.blackKingSquare = firstSquareOf(next.board, -piece::King);
}

}  // namespace velkaro::core
