// velkaro-cli count: the number of legal continuations after 1, 2, ... N
// single moves, one heading and count line per depth.

#include <memory>
#include <string>

#include "cli/cli.h"
#include "counter/counting_job.h"

namespace velkaro::cli {

namespace {

struct CountOptions {
  PositionOptions position;
  int depth = 0;
  std::string firstMove;
};

int runCount(const CountOptions& options) {
  counter::CountSettings settings;
  settings.setup = setupFrom(options.position);
  settings.depth = options.depth;
  if (!options.firstMove.empty()) settings.firstMove = chosenFirstMove(settings.setup, options.firstMove);
  return runJob<counter::CountingJob>(settings, core::Notation::kEnglish);
}

}  // namespace

void addCountCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<CountOptions>();
  CLI::App* command = app.add_subcommand("count", "count the legal continuations after 1 to N single moves");
  addPositionOptions(*command, options->position);
  command->add_option("--depth", options->depth, "the largest number of single moves")
      ->required()
      ->check(CLI::Range(1, counter::kMaxCountDepth));
  command->add_option("--first-move", options->firstMove, "count after this one first move");
  command->callback([options, &status] { status = runCount(*options); });
}

}  // namespace velkaro::cli
