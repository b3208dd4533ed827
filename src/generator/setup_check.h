#pragma once
// The Creator's own set-up check, made before anything is placed: pawns off
// the edge ranks, single kings, the men of each side (fixed and added) within
// what a game can produce, and the Black king not set up in check. Also the
// group list: which men are to be placed, in the order the odometer turns.

#include <cstdint>
#include <string_view>
#include <vector>

#include "generator/settings.h"

namespace velkaro::generator {

// The caption of the Creator's message boxes.
inline constexpr std::string_view kCreatorCaption = "Velkaro - ";

// The message that refuses the set-up, or nullptr when the run may start.
const char* setupRefusal(const CreateSettings& settings);

// Men of one kind and side to place, and the squares they may take: their
// available squares, and for pawns only ranks 2 to 7.
struct Group {
  int code = 0;
  int count = 0;
  std::uint64_t allowed = SquareMap::kAll;
};

// Squares a7 to h2: the only ones a pawn ever stands on.
inline constexpr std::uint64_t kPawnSquares = 0x00ffffffffffff00;

// Up to fourteen groups in the order white pawns, black pawns, white king
// (when none is set up), white queens, black queens, rooks, bishops, knights
// (White before Black each time), black king (when none is set up). Kinds
// with nothing to place are left out. With `withMaps` off every group may
// take any square (pawns still only ranks 2 to 7).
std::vector<Group> groupList(const CreateSettings& settings, bool withMaps);

// A kind whose map is restricted marks fewer squares than there are men of
// it to place: then no placement can pass.
bool mapsTooSmall(const CreateSettings& settings);

}  // namespace velkaro::generator
