#pragma once
// The "En passant - last move:" choices the solver panel offers: the double
// steps of an enemy pawn that the position allows and that a pawn of the side
// to move could take en passant.

#include <string>
#include <vector>

#include "ui/board_transform.h"

namespace velkaro::ui {

// The squares of the enemy pawns that may just have made a double step, from
// the a-file to the h-file: a pawn on its fourth rank (the fifth with White to
// move) with the two squares it crossed empty and a pawn of the side to move
// beside it. Eight files allow at most five such pawns.
std::vector<int> enPassantChoices(const Board& board, int sideToMove);

// The double step that brought the pawn on `pawnSquare` there: "d7 - d5".
std::string doubleStepText(int pawnSquare);

}  // namespace velkaro::ui
