#pragma once
// What velkaro-cli's commands share: the options every position command takes
// (--fen, --ep), reading them into a set-up, the exit statuses, and the sinks
// that print a job's results to stdout and its progress to stderr.

#include <CLI/App.hpp>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/first_moves.h"
#include "core/messages.h"
#include "core/position.h"
#include "core/stipulation.h"
#include "jobs/job.h"
#include "solver/report_writer.h"
#include "solver/solver_job.h"

namespace velkaro::cli {

// Exit statuses the command line promises.
inline constexpr int kExitRefused = 2;    // the set-up was refused; the message is on stderr
inline constexpr int kExitUsage = 64;     // bad arguments; what was wrong and a usage line are on stderr
inline constexpr int kExitFileError = 1;  // a file could not be read or written; the message is on stderr

// Thrown from a command's callback when its arguments, read together, make no
// sense; main turns it into a message, the usage line and status 64.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Each command adds itself to the program; its callback leaves its exit
// status in `status`.
void addPerftCommand(CLI::App& app, int& status);
void addSolveCommand(CLI::App& app, int& status);
void addCountCommand(CLI::App& app, int& status);
void addCreateCommand(CLI::App& app, int& status);
void addPlaceCommand(CLI::App& app, int& status);
void addExportCommand(CLI::App& app, int& status);
void addSaveCommand(CLI::App& app, int& status);
void addShowCommand(CLI::App& app, int& status);

// solve --file: the positions of a FEN, EPD or PGN file, each with the
// stipulation its record carries.
struct BatchOptions {
  std::string file;
  int line = 0;  // 1 for the file's first line; 0: every line that holds a position
  int jobs = 0;  // problems solved at once; 0: one per core
};
// --file, --line and --jobs; --file takes the place of --fen, --stip and --ep.
void addBatchOptions(CLI::App& command, BatchOptions& options);
// Solves the file's problems with the options of `settings` (its set-up and
// stipulation are each record's own), printing each in file order.
int runBatchSolve(const BatchOptions& options, const solver::SolveSettings& settings, int language);

// --fen and --ep.
struct PositionOptions {
  std::string fen;
  std::string enPassant;
};
void addPositionOptions(CLI::App& command, PositionOptions& options);

// The set-up the standard FEN line describes, --ep overriding its
// en-passant field.
core::BoardSetup setupFrom(const PositionOptions& options);

// "#2", "S#3", "h#4" (any case), n from 1 to `maxMoves`.
core::Stipulation stipulationFrom(const std::string& text, int maxMoves);

// The legal first move `text` names: exactly one must.
core::FirstMove chosenFirstMove(const core::BoardSetup& setup, const std::string& text);

// A refused set-up's message goes to stderr as it stands.
class StderrMessages : public core::MessageSink {
 public:
  void showMessage(std::string_view caption, std::string_view text) override;
};

// stdout gets exactly the plain-text result, each result as soon as it is
// complete: a solution of many lines costs one write, and an interrupted run
// has printed every result found before it.
class PrintedText : public solver::LineSink {
 public:
  void appendText(std::string_view text) override;
  void resultShown(bool beep) override;
};

// On a terminal the clock, the tested moves (or what the job counts) and the
// speed stay on one line of stderr while a job runs.
class TerminalProgress : public jobs::ProgressSink {
 public:
  explicit TerminalProgress(const char* counted = "moves");
  void tick(const jobs::Progress& progress) override;
  void clear() const;

 private:
  bool shown_;
  const char* counted_;
};

// The last line on stderr: time, examined moves (or what the job counts) and
// speed.
void printSummary(double seconds, std::uint64_t moves, const char* counted = "moves");

// Runs a solving or counting job to its end: the result text goes to stdout
// as it grows, progress to a terminal's stderr, the summary last.
template <typename Job, typename Settings>
int runJob(const Settings& settings, int language) {
  PrintedText text;
  solver::ReportWriter writer(text, language);
  TerminalProgress progress;
  StderrMessages messages;
  const auto job = std::make_unique<Job>(progress, writer, messages);  // the ply stack is large
  const jobs::RunEnd end = job->start(settings);
  progress.clear();
  std::fflush(stdout);  // the result before the summary, also when both go to one pipe
  if (end == jobs::RunEnd::Refused) return kExitRefused;
  printSummary(static_cast<double>(job->elapsedMs()) / 1000.0, job->testedMoves().total());
  return 0;
}

}  // namespace velkaro::cli
