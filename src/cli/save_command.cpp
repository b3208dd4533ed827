// velkaro-cli save: a position and its stipulation as a problem file, with
// its full solution in the companion file when asked to solve it first.

#include <cstdio>
#include <memory>
#include <string>

#include "cli/cli.h"
#include "formats/problem_file.h"
#include "solver/solver_job.h"

namespace velkaro::cli {

namespace {

struct SaveOptions {
  PositionOptions position;
  std::string stipulation;
  std::string out;
  bool solve = false;
};

class CollectedRecords : public solver::RecordSink {
 public:
  void record(const solver::Record& record) override { records_.push_back(record); }
  std::vector<solver::Record> records_;
};

bool endsWithKvz(const std::string& name) {
  constexpr std::string_view kExtension = formats::kProblemExtension;
  if (name.size() <= kExtension.size()) return false;
  std::string ending = name.substr(name.size() - kExtension.size());
  for (char& c : ending) c = static_cast<char>(c | 0x20);
  return ending == kExtension;
}

// Every key, without pausing: the solution text the window would hold after
// the last Continue.
std::optional<std::string> fullSolution(const formats::ProblemData& problem) {
  solver::SolveSettings settings;
  settings.setup = problem.setup;
  settings.stipulation = problem.stipulation;
  settings.stopOnFirstSolution = false;
  CollectedRecords records;
  TerminalProgress progress;
  StderrMessages messages;
  const auto job = std::make_unique<solver::SolverJob>(progress, records, messages);  // the ply stack is large
  const jobs::RunEnd end = job->start(settings);
  progress.clear();
  if (end == jobs::RunEnd::Refused) return std::nullopt;
  printSummary(static_cast<double>(job->elapsedMs()) / 1000.0, job->testedMoves().total());
  return solver::solutionText(records.records_, core::Notation::kEnglish);
}

int runSave(const SaveOptions& options) {
  // The companion file replaces the last three letters of the name.
  if (!endsWithKvz(options.out))
    throw UsageError("--out: a problem file's name ends in .kvz, not \"" + options.out + "\"");
  formats::ProblemData problem;
  problem.stipulation = stipulationFrom(options.stipulation, core::kMaxMoves);
  problem.setup = setupFrom(options.position);
  if (options.solve) {
    std::optional<std::string> text = fullSolution(problem);
    if (!text) return kExitRefused;
    problem.solutionText = std::move(*text);
  }
  if (!formats::SaveProblem(options.out, problem)) {
    std::fprintf(stderr, "velkaro-cli: cannot write %s\n", options.out.c_str());
    return kExitFileError;
  }
  return 0;
}

}  // namespace

void addSaveCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<SaveOptions>();
  CLI::App* command = app.add_subcommand("save", "write the position and its stipulation as a problem file");
  addPositionOptions(*command, options->position);
  command->add_option("--stip", options->stipulation, "#n, S#n or H#n")->required();
  command->add_option("--out", options->out, "the problem file, FILE.kvz")->required();
  command->add_flag("--solve", options->solve, "solve it first and keep the solution in FILE.red");
  command->callback([options, &status] { status = runSave(*options); });
}

}  // namespace velkaro::cli
