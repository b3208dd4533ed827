#pragma once
// What the problem asks for: a direct mate, a selfmate or a helpmate in n moves.

#include <string>

#include "core/position.h"

namespace velkaro::core {

// Deepest stipulations the ply stack holds: 2n + 2 frames for a helpmate or
// selfmate in n, 2n + 1 for a direct mate.
inline constexpr int kMaxMoves = (kPlyFrameCount - 2) / 2 - 1;

struct Stipulation {
  bool helpmate = false;
  bool selfmate = false;
  int moves = 0;

  // "#2", "H#3", "S#4".
  std::string text() const {
    return std::string(helpmate ? "H#" : selfmate ? "S#" : "#") + std::to_string(moves);
  }
};

}  // namespace velkaro::core
