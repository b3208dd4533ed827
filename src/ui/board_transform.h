#pragma once
// The nine board transformations of the tool bar: flip (colours exchanged),
// two mirrors, two rotations and four cyclic shifts. They move men around on
// the editor board only; side to move and castling are not theirs to change.

#include <array>

namespace velkaro::ui {

using Board = std::array<int, 64>;

// The board after transformation `command` (FlipPosition ... MoveRight); any
// other command gives the board back unchanged.
Board transformBoard(const Board& board, int command);

}  // namespace velkaro::ui
