// Building the root frame of a job from the editor board.

#include "core/position.h"

namespace velkaro::core {

void setUpRoot(PlyStack& stack, const BoardSetup& setup) {
  PlyFrame& root = stack[1];
  for (int square = 0; square < 64; ++square) {
    root.position.board[square] = static_cast<std::int8_t>(setup.board[static_cast<std::size_t>(square)]);
  }
  root.position.whiteKingSquare = firstSquareOf(setup.board.data(), piece::King);
  root.position.blackKingSquare = firstSquareOf(setup.board.data(), -piece::King);
  for (int ply : {1, 2}) {
    Position& position = stack[ply].position;
    position.whiteLongCastle = setup.whiteLongCastle;
    position.whiteShortCastle = setup.whiteShortCastle;
    position.blackLongCastle = setup.blackLongCastle;
    position.blackShortCastle = setup.blackShortCastle;
  }
  stack.rootSide = setup.sideToMove < 0 ? Black : White;
  // Only a square from which both the capture target and the captured pawn stay
  // on the board can be an en-passant square; anything else means none.
  stack.lastMoveSquare = (setup.lastMoveSquare >= 8 && setup.lastMoveSquare < 56) ? setup.lastMoveSquare : 0;
}

}  // namespace velkaro::core
