#pragma once
// How many men of one kind can still stand on a set of squares when no man
// may stand attacked: the bound that lets the non-attacking search drop a
// partial placement that can never be completed.

#include "placement/bitboards.h"
#include "placement/layout.h"

namespace velkaro::placement {

// False when `men` men of `kind` cannot stand on `squares` with none
// attacking another; exact for knights and pawns, a necessary condition for
// the others.
//
// In a placement without an attacked man, a rook (queen, bishop) shares its
// lines with no man at all, since the nearest man along a line would stand
// attacked. So one rook per rank and per file, one bishop per diagonal of
// each colour, one queen per line of every kind; one king per 2x2 block. The
// knight's and the pawn's attacks join squares of two classes only (the two
// colours; ranks of odd and even number), so there the largest set of
// squares without an attack is the number of squares less a largest
// matching of attacking pairs.
bool canHold(Kind kind, Squares squares, int men);

}  // namespace velkaro::placement
