#pragma once
// A placement as the positions list shows it: the placement field of a FEN
// line ("Q7/4Q3/..."), and back; and the empty squares that no man attacks,
// which the board marks when a listed placement is shown.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "placement/bitboards.h"

namespace velkaro::placement {

// A placement: the piece codes of its men on the 64 squares, 0 for empty.
using Board = std::array<std::int8_t, 64>;

// Ranks 8 to 1 divided by "/", files a to h, a digit for each run of empty
// squares, the letters K, Q, R, B, N and P for the (white) men.
std::string boardText(const Board& board);

// The board of a list row; none when the row is not a whole board text (a
// row such as " ... and other").
std::optional<Board> parseBoardText(std::string_view text);

// The empty squares no man attacks (lines stop at the first man, pawns take
// towards rank 8): bit s for square s.
Squares unattackedEmptySquares(const Board& board);
std::optional<Squares> unattackedEmptySquares(std::string_view boardText);

}  // namespace velkaro::placement
