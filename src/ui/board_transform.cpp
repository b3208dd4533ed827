// Each transformation is written as where the man on (row, column) goes, rows
// counted from rank 8 and columns from the a-file. The shifts wrap round, so
// nothing ever falls off the board.

#include "ui/board_transform.h"

#include "ui/commands.h"

namespace velkaro::ui {
namespace {

struct Target {
  int square;
  bool negate;
};

Target targetOf(int square, int command) {
  const int r = square / 8;
  const int c = square % 8;
  switch (command) {
    case FlipPosition: return {(7 - r) * 8 + c, true};
    case VerticalMirror: return {(7 - r) * 8 + c, false};
    case HorizontalMirror: return {r * 8 + (7 - c), false};
    case RotateLeft: return {(7 - c) * 8 + r, false};
    case RotateRight: return {c * 8 + (7 - r), false};
    case MoveUp: return {r == 0 ? square + 56 : square - 8, false};
    case MoveDown: return {r == 7 ? square - 56 : square + 8, false};
    case MoveLeft: return {c == 0 ? square + 7 : square - 1, false};
    case MoveRight: return {c == 7 ? square - 7 : square + 1, false};
    default: return {square, false};
  }
}

}  // namespace

Board transformBoard(const Board& board, int command) {
  Board scratch{};
  for (int square = 0; square < 64; ++square) {
    const Target target = targetOf(square, command);
    const int code = board[static_cast<std::size_t>(square)];
    scratch[static_cast<std::size_t>(target.square)] = target.negate ? -code : code;
  }
  return scratch;
}

}  // namespace velkaro::ui
