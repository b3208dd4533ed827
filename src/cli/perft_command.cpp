// velkaro-cli perft: counts the legal move paths to a depth, optionally split
// by first move, to check move generation against published counts.

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <string>

#include "cli/commands.h"
#include "core/notation.h"
#include "core/perft.h"
#include "core/validate.h"

namespace velkaro::cli {

int runPerft(const Options& options) {
  if (options.depth < 0) {
    std::fputs("velkaro-cli: perft needs --depth N\n", stderr);
    return usage();
  }
  if (options.depth > core::kMaxPerftDepth) {
    std::fprintf(stderr, "velkaro-cli: --depth is at most %d\n", core::kMaxPerftDepth);
    return usage();
  }
  const auto setup = setupFromOptions(options);
  if (!setup) return usage();

  static core::PlyStack stack;  // 51 kB: kept off the call stack
  StderrMessages messages;
  if (core::validatePosition(*setup, stack, messages) != 0) return kExitRefused;
  core::setUpRoot(stack, *setup);

  core::Notation notation;
  core::FirstMoveCount divide;
  if (options.divide) {
    divide = [&](const core::PlyFrame& root, std::uint64_t leaves) {
      const std::string move =
          notation.MoveText(root.movedPiece, root.fromSquare, root.toSquare, root.placedPiece, root.moveKind);
      std::printf("%s: %" PRIu64 "\n", move.c_str(), leaves);
    };
  }
  const auto start = std::chrono::steady_clock::now();
  const std::uint64_t nodes = core::perft(stack, options.depth, divide);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("Nodes: %" PRIu64 "\n", nodes);
  std::fflush(stdout);  // the result before the summary, also when both go to one pipe
  printSummary(seconds, nodes);
  return 0;
}

}  // namespace velkaro::cli
