#pragma once
// What the problem asks for: a direct mate, a selfmate or a helpmate in n moves.

#include <string>

namespace velkaro::core {

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
