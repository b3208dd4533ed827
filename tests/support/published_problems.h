#pragma once
// The published-problem files the tests and the solving bench read: one
// problem per line, fields separated by " | ":
//   id | stipulation | FEN | last-move square or - | source | solution
// Lines starting with '#' are comments.

#include <string>
#include <vector>

#include "core/position.h"
#include "core/stipulation.h"

namespace velkaro::published {

struct Problem {
  std::string id;
  std::string stipulationText;  // "#2", "S#3", "H#4"
  std::string fen;
  std::string lastMove;  // "b5", or "-"
  std::string source;
  std::string solution;  // as published: "key Qd4; threat ...", "2 solutions: ..."

  core::Stipulation stipulation() const;
  // The position with the last-move square set; the FEN goes through the
  // import reader, as a user's file would.
  core::BoardSetup setup() const;
};

// The problems of a file whose id or stipulation contains `filter` (all when
// it is empty); none when the file cannot be read.
std::vector<Problem> readProblems(const std::string& path, const std::string& filter = "");

}  // namespace velkaro::published
