#pragma once
// Pseudo-legal moves of one man at a time, in the fixed order that decides the
// order of solutions: squares a8..h1, and within a man the order of its
// generator. Each generator is specialised per from-square.

#include <array>
#include <cstdint>

#include "core/position.h"

namespace velkaro::core {

// Writes the moves of the man on `from` into frame.moveList, ends the list with
// an entry of kind 0 and returns the number of moves. `enPassantPawn` is the
// square of an enemy pawn that may be taken en passant, or -1.
using PieceGenerator = int (*)(PlyFrame& frame, int enPassantPawn);

// Generator tables by piece slot (see pieceSlot) and from-square.
extern const std::array<std::array<PieceGenerator, 64>, 18> kPieceGenerators;

// Queen 0, king 1, knight 2, rook 4, pawn 6, bishop 8; Black men 9 higher.
constexpr int pieceSlotOf(int code) { return code < 0 ? (-code - piece::Queen) / 6 + 9 : (code - piece::Queen) / 6; }

inline constexpr std::array<std::uint8_t, 256> kPieceSlots = [] {
  std::array<std::uint8_t, 256> slots{};
  for (int code : {piece::King, piece::Queen, piece::Rook, piece::Bishop, piece::Knight, piece::Pawn}) {
    slots[static_cast<std::uint8_t>(code)] = static_cast<std::uint8_t>(pieceSlotOf(code));
    slots[static_cast<std::uint8_t>(-code)] = static_cast<std::uint8_t>(pieceSlotOf(-code));
  }
  return slots;
}();

constexpr int pieceSlot(int code) { return kPieceSlots[static_cast<std::uint8_t>(code)]; }

// The twelve generators, one per colour and kind of man: Code is a piece code.
template <int Code>
int generatePieceMoves(PlyFrame& frame, int from, int enPassantPawn) {
  return kPieceGenerators[pieceSlot(Code)][static_cast<std::size_t>(from)](frame, enPassantPawn);
}

// The generator for whatever man `code` is.
inline int generatePieceMoves(PlyFrame& frame, int from, int code, int enPassantPawn) {
  return kPieceGenerators[static_cast<std::size_t>(pieceSlot(code))][static_cast<std::size_t>(from)](frame,
                                                                                                      enPassantPawn);
}

// The enemy pawn a pawn of the side moving at `ply` may take en passant, or -1:
// at the root the "last move" square, deeper the previous ply's double step.
inline int enPassantPawn(const PlyStack& stack, int ply) {
  if (ply == 1) return stack.lastMoveSquare > 0 ? stack.lastMoveSquare : -1;
  const PlyFrame& previous = stack[ply - 1];
  const int pawn = piece::Pawn * stack.sideAt(ply - 1);
  const int step = previous.toSquare - previous.fromSquare;
  return previous.movedPiece == pawn && (step == 16 || step == -16) ? previous.toSquare : -1;
}

// Adds up the pseudo-legal moves of every man of the side moving at `ply` in an
// 8-bit total that wraps past 255. The move list of the frame and everything
// after its first 280 bytes (up to 50 000 bytes, within the stack) is cleared.
std::uint8_t countMoves(PlyStack& stack, int ply);

}  // namespace velkaro::core
