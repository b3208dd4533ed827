// velkaro-cli perft: counts the legal move paths to a depth, optionally split
// by first move, to check move generation against published counts.

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <memory>
#include <string>

#include "cli/cli.h"
#include "core/notation.h"
#include "core/perft.h"
#include "core/validate.h"

namespace velkaro::cli {

namespace {

struct PerftOptions {
  PositionOptions position;
  int depth = 0;
  bool divide = false;
};

int runPerft(const PerftOptions& options) {
  const core::BoardSetup setup = setupFrom(options.position);
  const auto stack = std::make_unique<core::PlyStack>();  // 51 kB: kept off the call stack
  StderrMessages messages;
  if (core::validatePosition(setup, *stack, messages) != 0) return kExitRefused;
  core::setUpRoot(*stack, setup);

  core::Notation notation;
  core::FirstMoveCount divide;
  if (options.divide) {
    divide = [&](const core::PlyFrame& root, std::uint64_t leaves) {
      std::printf("%s: %" PRIu64 "\n", notation.MoveText(core::moveOf(root)).c_str(), leaves);
    };
  }
  const auto start = std::chrono::steady_clock::now();
  const std::uint64_t nodes = core::perft(*stack, options.depth, divide);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("Nodes: %" PRIu64 "\n", nodes);
  std::fflush(stdout);  // the result before the summary, also when both go to one pipe
  printSummary(seconds, nodes);
  return 0;
}

}  // namespace

void addPerftCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<PerftOptions>();
  CLI::App* command = app.add_subcommand("perft", "count the legal move paths to a depth");
  addPositionOptions(*command, options->position);
  command->add_option("--depth", options->depth, "the number of single moves")
      ->required()
      ->check(CLI::Range(0, core::kMaxPerftDepth));
  command->add_flag("--divide", options->divide, "list the count under each first move");
  command->callback([options, &status] { status = runPerft(*options); });
}

}  // namespace velkaro::cli
