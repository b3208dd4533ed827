// Building the list of legal first moves for "Select move".

#include "counter/first_moves.h"

#include <cctype>

#include "core/attacks.h"
#include "core/movegen.h"

namespace velkaro::counter {

namespace {

using namespace core;

// Plays `entry` of the man on `from` on a copy of `position`; whether the
// mover's king is then attacked.
bool leavesKingAttacked(const Position& position, int from, const MoveEntry& entry, int side) {
  Position scratch = position;
  std::int8_t* board = scratch.board;
  const int moved = board[from];
  const int to = entry.target;
  board[from] = 0;
  if (isCastling(entry.kind)) {
    const bool isLong = entry.kind == kind::WhiteLongCastle || entry.kind == kind::BlackLongCastle;
    board[isLong ? to - 2 : to + 1] = 0;
    board[isLong ? to + 1 : to - 1] = static_cast<std::int8_t>(side * piece::Rook);
    board[to] = static_cast<std::int8_t>(moved);
  } else if (entry.kind == kind::EnPassant) {
    board[to + 8 * side] = 0;
    board[to] = static_cast<std::int8_t>(moved);
  } else {
    board[to] = static_cast<std::int8_t>(entry.kind);
  }
  int king = 0;
  while (king < 64 && board[king] != side * piece::King) ++king;
  if (king == 64) return false;
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

std::vector<solver::FirstMove> firstMoveList(const BoardSetup& setup) {
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

  std::vector<solver::FirstMove> moves;
  for (int from = 0; from < 64; ++from) {
    const int code = frame.position.board[from];
    if (code * side <= 0) continue;
    const int count = generatePieceMoves(frame, from, code, code == side * piece::Pawn ? enPassant : -1);
    for (int ordinal = 0; ordinal < count && ordinal < kMovesPerMan; ++ordinal) {
      const MoveEntry& entry = frame.moveList[ordinal];
      if (leavesKingAttacked(frame.position, from, entry, side)) continue;
      moves.push_back(solver::FirstMove{code, from, entry.target, entry.kind, ordinal});
    }
  }
  return moves;
}

std::string firstMoveText(const solver::FirstMove& move, Notation& notation) {
  const int placed = move.moveKind > kind::EnPassant || move.moveKind < 0 ? move.moveKind : move.movedPiece;
  return notation.LastMoveText(move.movedPiece, move.fromSquare, move.toSquare, placed, move.moveKind);
}

std::vector<std::string> selectMoveRows(const std::vector<solver::FirstMove>& moves, Notation& notation) {
  std::vector<std::string> rows{std::string(kAllMovesRow)};
  for (const solver::FirstMove& move : moves) rows.push_back(firstMoveText(move, notation));
  return rows;
}

bool namesMove(const solver::FirstMove& move, std::string_view text) {
  const std::string given = compact(text);
  if (isCastling(move.moveKind)) {
    const bool isLong = move.moveKind == kind::WhiteLongCastle || move.moveKind == kind::BlackLongCastle;
    return given == (isLong ? "000" : "00") || given == (isLong ? "ooo" : "oo");
  }
  Notation english;
  const std::string full = compact(firstMoveText(move, english));  // "ng1f3", "e7e8q"
  const bool pawn = move.movedPiece == piece::Pawn || move.movedPiece == -piece::Pawn;
  const std::string squares = pawn ? full : full.substr(1);          // "g1f3"
  const std::string target = pawn ? full.substr(2) : full.substr(0, 1) + full.substr(3);  // "e4", "nf3"
  const std::string capture = pawn ? full.substr(0, 1) + full.substr(2) : "";             // "exd5" as "ed5"
  return given == full || given == squares || given == target || (pawn && given == capture);
}

}  // namespace velkaro::counter
