// velkaro-cli solve: every key of a direct mate, selfmate or helpmate, printed
// as the solution text grows; progress and a summary on stderr.

#include <memory>
#include <string>

#include "cli/cli.h"
#include "solver/solver_job.h"

namespace velkaro::cli {

namespace {

struct SolveOptions {
  PositionOptions position;
  std::string stipulation;
  std::string firstMove;
  int language = core::Notation::kEnglish;
  bool secondMoves = false;
  bool minimumMoves = false;
  bool stopFirst = false;
  int tableMegabytes = solver::SolveSettings{}.tableMegabytes;
};

// The options a run reads, whatever position it solves.
solver::SolveSettings runOptions(const SolveOptions& options) {
  solver::SolveSettings settings;
  settings.minimumMoves = options.minimumMoves;
  settings.stopOnFirstSolution = options.stopFirst;
  settings.testAllSecondMoves = options.secondMoves;
  return settings;
}

int runSolve(const SolveOptions& options) {
  if (options.position.fen.empty() || options.stipulation.empty()) {
    throw UsageError("solve needs --fen and --stip, or --file");
  }
  solver::SolveSettings settings = runOptions(options);
  settings.stipulation = stipulationFrom(options.stipulation, core::kMaxMoves);
  settings.setup = setupFrom(options.position);
  settings.testAllSecondMoves = options.secondMoves && !settings.stipulation.helpmate;
  settings.tableMegabytes = options.tableMegabytes;
  if (!options.firstMove.empty()) settings.firstMove = chosenFirstMove(settings.setup, options.firstMove);
  return runJob<solver::SolverJob>(settings, options.language);
}

}  // namespace

void addSolveCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<SolveOptions>();
  auto batch = std::make_shared<BatchOptions>();
  CLI::App* command = app.add_subcommand("solve", "find every key of a direct mate, selfmate or helpmate");
  addPositionOptions(*command, options->position);
  command->add_option("--stip", options->stipulation, "#n, S#n or H#n");
  command->add_option("--lang", options->language, "notation language, 1 to 17 (4: English)")
      ->check(CLI::Range(1, core::Notation::kLanguageCount));
  command->add_flag("--second-moves", options->secondMoves, "list every working second move");
  command->add_flag("--min-moves", options->minimumMoves, "look for the shortest solution first");
  command->add_option("--first-move", options->firstMove, "test this one first move (Qb3-a3, b3a3, Qa3, e8=Q, 0-0)");
  command->add_flag("--stop-first", options->stopFirst, "stop after the first key");
  command->add_option("--table-mb", options->tableMegabytes, "memory for proved positions, in MB (0: none)")
      ->check(CLI::Range(0, 65536));
  addBatchOptions(*command, *batch);
  command->callback([options, batch, &status] {
    status = batch->file.empty() ? runSolve(*options) : runBatchSolve(*batch, runOptions(*options), options->language);
  });
}

}  // namespace velkaro::cli
