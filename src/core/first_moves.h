#pragma once
// The legal first moves of a set-up, found by playing each pseudo-legal move
// on a scratch board, and a first move forced on a run ("Select move"): the
// solver and the counter both start from one.

#include <string>
#include <string_view>
#include <vector>

#include "core/notation.h"
#include "core/position.h"

namespace velkaro::core {

struct FirstMove {
  int movedPiece = 0;
  int fromSquare = 0;
  int toSquare = 0;
  int moveKind = 0;  // castling 1..4, en passant 5, otherwise the piece placed on the target
  int ordinal = 0;   // the move's place among its man's moves

  int placedPiece() const { return moveKind > kind::EnPassant || moveKind < 0 ? moveKind : movedPiece; }
  MoveRecord record() const {
    return {static_cast<std::int8_t>(movedPiece), static_cast<std::int8_t>(fromSquare),
            static_cast<std::int8_t>(toSquare), static_cast<std::int8_t>(placedPiece()),
            static_cast<std::int8_t>(moveKind)};
  }
  bool sameMove(const FirstMove& other) const {
    return fromSquare == other.fromSquare && toSquare == other.toSquare && moveKind == other.moveKind;
  }
};

// Up to this many moves of one man are looked at.
inline constexpr int kMovesPerMan = 30;

// The legal first moves of the side to move, square by square from a8, each
// man's moves in generation order.
std::vector<FirstMove> firstMoveList(const BoardSetup& setup);

// Whether `text` names `move`: "e2e4", "e2-e4", "Ng1-f3", "g1f3", "Nf3", "e4",
// "exd5", "e7e8Q", "e8=Q", "0-0" or "O-O"; piece letters in English, blanks,
// "x", "+" and "#" ignored. A short form may name several moves.
bool namesMove(const FirstMove& move, std::string_view text);

// Frame 2 from frame 1 with `move` played: the man lifted and placed, the rook
// of a castling moved, the pawn taken en passant removed, both kings found
// again. Frame 1 records the move. Frame 2's castling rights stay exactly those
// of the start position, whatever the move does: replies see the rights the
// user set up.
void applyFirstMove(PlyStack& stack, const FirstMove& move);

}  // namespace velkaro::core
