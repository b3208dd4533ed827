// libFuzzer target for the problem file: the input is read as a problem file
// over an empty problem and over a full one, and as a companion text. What is
// read must save and open as itself, keep only a legal first move, and keep
// the companion's line rules.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <sstream>
#include <string>

#include "formats/problem_file.h"

namespace {

using velkaro::formats::ProblemData;

// A problem with every field in use, for the file to be read over.
ProblemData fullProblem() {
  ProblemData problem;
  problem.setup.board[4] = -velkaro::core::piece::King;  // e8
  problem.setup.board[0] = -velkaro::core::piece::Rook;  // a8
  problem.setup.board[60] = velkaro::core::piece::King;  // e1
  problem.setup.board[63] = velkaro::core::piece::Rook;  // h1
  problem.setup.board[51] = velkaro::core::piece::Pawn;  // d2
  problem.setup.whiteShortCastle = true;
  problem.setup.blackLongCastle = true;
  problem.stipulation = {false, true, 3};
  problem.options = {true, false, true, true};
  problem.firstMove = velkaro::core::firstMoveList(problem.setup).front();
  problem.line = {5, 2, {problem.firstMove->record()}};
  return problem;
}

void checkProblem(const ProblemData& problem) {
  if (problem.firstMove) {
    const auto legal = velkaro::core::firstMoveList(problem.setup);
    if (std::none_of(legal.begin(), legal.end(), [&](const auto& move) { return move.sameMove(*problem.firstMove); })) {
      __builtin_trap();
    }
  }
  if (problem.line.moves.size() > static_cast<std::size_t>(velkaro::formats::kMaxLineMoves)) __builtin_trap();
  const std::vector<std::uint8_t> saved = velkaro::formats::problemFileBytes(problem);
  ProblemData reread;
  velkaro::formats::readProblemBytes(saved, reread);
  if (velkaro::formats::problemFileBytes(reread) != saved) __builtin_trap();
}

void checkCompanion(const std::string& input) {
  std::istringstream in(input);
  const std::string text = velkaro::formats::readSolutionText(in);
  if (text.size() > velkaro::formats::kSolutionTextLimit) __builtin_trap();
  std::size_t lines = 0;
  for (std::size_t start = 0; start < text.size(); ++lines) {
    const std::size_t end = text.find('\n', start);
    if (end == std::string::npos) __builtin_trap();  // every line read ends with a line break
    const std::size_t length = end - start;
    if (length < velkaro::formats::kShortestCompanionLine || length > velkaro::formats::kCompanionLineLimit) {
      __builtin_trap();
    }
    start = end + 1;
  }
  std::size_t entries = 0;
  for (const auto& entry : velkaro::formats::solutionTree(text)) entries += 1 + entry.children.size();
  if (entries != lines) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const ProblemData kFull = fullProblem();
  const std::span<const std::uint8_t> bytes(data, size);
  for (const ProblemData& start : {ProblemData{}, kFull}) {
    ProblemData problem = start;
    velkaro::formats::readProblemBytes(bytes, problem);
    checkProblem(problem);
  }
  checkCompanion(std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
