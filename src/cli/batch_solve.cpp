// velkaro-cli solve --file: every position of a FEN, EPD or PGN file solved
// with the stipulation its record carries, read as the import dialog reads the
// file. Several problems are solved at once, each by its own job, and printed
// in file order; a summary of the outcomes goes to stderr.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <fstream>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "cli/cli.h"
#include "formats/fen.h"

namespace velkaro::cli {

namespace {

struct BatchProblem {
  int line = 0;  // 1 for the file's first line
  core::BoardSetup setup;
  core::Stipulation stipulation;
};

enum class Outcome { Solved, NoSolution, Refused };

struct BatchResult {
  Outcome outcome = Outcome::NoSolution;
  std::string text;     // the solution text, as `solve --fen` prints it
  std::string message;  // why the set-up was refused
  std::uint64_t tested = 0;
};

class CollectedText : public solver::LineSink {
 public:
  void appendText(std::string_view text) override { text_.append(text); }
  std::string text_;
};

class CollectedMessage : public core::MessageSink {
 public:
  void showMessage(std::string_view, std::string_view text) override { text_ = text; }
  std::string text_;
};

// The problem of line `index`, when the line holds a position with a number
// of moves the solver takes; a position without one is noted and skipped.
std::optional<BatchProblem> problemAt(const std::vector<std::string>& lines, int index, const BatchOptions& options,
                                      int& skipped) {
  formats::FenImport import;
  if (!import.selectLine(lines, index, formats::fileTypeOf(options.file))) return std::nullopt;
  const formats::ImportResult& result = import.result();
  if (result.moves < 1 || result.moves > core::kMaxMoves) {
    std::fprintf(stderr, "%s:%d: skipped: %s\n", options.file.c_str(), index + 1,
                 result.moves == 0 ? "the record gives no number of moves" : "too many moves for the solver");
    ++skipped;
    return std::nullopt;
  }
  core::Stipulation stipulation{result.helpmate != 0, result.selfmate != 0, result.moves};
  return BatchProblem{index + 1, formats::setupFromImport(result), stipulation};
}

std::vector<BatchProblem> readProblems(const BatchOptions& options, int& skipped) {
  const std::vector<std::string> lines = formats::readImportLines(options.file);
  if (options.line == 0) {
    std::vector<BatchProblem> problems;
    for (int index = 0; index < static_cast<int>(lines.size()); ++index) {
      if (std::optional<BatchProblem> problem = problemAt(lines, index, options, skipped)) problems.push_back(*problem);
    }
    return problems;
  }
  const std::string where = "--line " + std::to_string(options.line) + ": " + options.file;
  if (options.line > static_cast<int>(lines.size())) {
    throw UsageError(where + " has only " + std::to_string(lines.size()) + " lines");
  }
  formats::FenImport import;
  if (!import.selectLine(lines, options.line - 1, "FEN")) throw UsageError(where + " holds no position on that line");
  std::optional<BatchProblem> problem = problemAt(lines, options.line - 1, options, skipped);
  return problem ? std::vector<BatchProblem>{*problem} : std::vector<BatchProblem>{};
}

BatchResult solveProblem(const BatchProblem& problem, solver::SolveSettings settings, int language) {
  settings.setup = problem.setup;
  settings.stipulation = problem.stipulation;
  settings.testAllSecondMoves = settings.testAllSecondMoves && !problem.stipulation.helpmate;
  CollectedText text;
  solver::ReportWriter writer(text, language);
  jobs::ProgressSink silent;
  CollectedMessage message;
  const auto job = std::make_unique<solver::SolverJob>(silent, writer, message);  // the ply stack is large
  const jobs::RunEnd end = job->start(settings);
  BatchResult result;
  result.outcome = end == jobs::RunEnd::Refused ? Outcome::Refused
                   : job->solutionsFound() > 0  ? Outcome::Solved
                                                : Outcome::NoSolution;
  result.text = std::move(text.text_);
  result.message = std::move(message.text_);
  result.tested = job->testedMoves().total();
  return result;
}

// Results are filled by the workers in any order and taken in file order.
class ResultBoard {
 public:
  explicit ResultBoard(std::size_t count) : results_(count) {}
  void put(std::size_t index, BatchResult result) {
    {
      std::lock_guard lock(mutex_);
      results_[index] = std::move(result);
    }
    ready_.notify_all();
  }
  BatchResult take(std::size_t index) {
    std::unique_lock lock(mutex_);
    ready_.wait(lock, [&] { return results_[index].has_value(); });
    return std::move(*results_[index]);
  }

 private:
  std::mutex mutex_;
  std::condition_variable ready_;
  std::vector<std::optional<BatchResult>> results_;
};

struct Tally {
  int solved = 0;
  int noSolution = 0;
  int refused = 0;
  std::uint64_t tested = 0;
};

void printResult(const BatchOptions& options, const BatchProblem& problem, const BatchResult& result, Tally& tally) {
  const formats::FenText fen = formats::PositionToFen(problem.setup, problem.stipulation);
  std::printf("== %s:%d %.*s %s\n%s\n", options.file.c_str(), problem.line, static_cast<int>(fen.fen().size()),
              fen.fen().data(), problem.stipulation.text().c_str(), result.text.c_str());
  std::fflush(stdout);
  if (result.outcome == Outcome::Refused) {
    std::fprintf(stderr, "%s:%d: %s\n", options.file.c_str(), problem.line, result.message.c_str());
  }
  ++(result.outcome == Outcome::Solved    ? tally.solved
     : result.outcome == Outcome::Refused ? tally.refused
                                          : tally.noSolution);
  tally.tested += result.tested;
}

}  // namespace

void addBatchOptions(CLI::App& command, BatchOptions& options) {
  CLI::Option* file = command.add_option("--file", options.file, "solve the positions of a FEN, EPD or PGN file");
  for (const char* replaced : {"--fen", "--stip", "--ep", "--first-move"}) {
    CLI::Option* option = command.get_option(replaced);
    option->required(false);
    file->excludes(option);
  }
  command.add_option("--line", options.line, "only the position on this line of the file (1 for the first)")
      ->check(CLI::PositiveNumber)
      ->needs(file);
  command.add_option("--jobs", options.jobs, "problems solved at once (default: one per core)")
      ->check(CLI::Range(1, 256))
      ->needs(file);
}

int runBatchSolve(const BatchOptions& options, const solver::SolveSettings& settings, int language) {
  const auto start = std::chrono::steady_clock::now();
  if (!std::ifstream(options.file)) {
    std::fprintf(stderr, "velkaro-cli: cannot read %s\n", options.file.c_str());
    return kExitFileError;
  }
  int skipped = 0;
  const std::vector<BatchProblem> problems = readProblems(options, skipped);

  const int cores = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
  const int workers =
      std::clamp(options.jobs > 0 ? options.jobs : cores, 1, std::max(1, static_cast<int>(problems.size())));
  ResultBoard board(problems.size());
  std::atomic<std::size_t> next = 0;
  std::vector<std::jthread> threads;
  for (int worker = 0; worker < workers; ++worker) {
    threads.emplace_back([&] {
      for (std::size_t index = next++; index < problems.size(); index = next++) {
        board.put(index, solveProblem(problems[index], settings, language));
      }
    });
  }
  Tally tally;
  for (std::size_t index = 0; index < problems.size(); ++index) {
    printResult(options, problems[index], board.take(index), tally);
  }
  std::fprintf(stderr, "Problems: %zu, solved %d, without solution %d, refused %d; records skipped %d\n",
               problems.size(), tally.solved, tally.noSolution, tally.refused, skipped);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  printSummary(seconds.count(), tally.tested);
  return tally.refused > 0 ? kExitRefused : 0;
}

}  // namespace velkaro::cli
