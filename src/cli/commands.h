#pragma once
// The subcommands of velkaro-cli and what they share.

#include <cstdint>
#include <memory>
#include <string_view>

#include "cli/options.h"
#include "core/messages.h"
#include "solver/sinks.h"
#include "solver/solver_job.h"

namespace velkaro::cli {

int runPerft(const Options& options);
int runSolve(const Options& options);
int runCount(const Options& options);

// A refused set-up's message goes to stderr as it stands.
class StderrMessages : public core::MessageSink {
 public:
  void showMessage(std::string_view caption, std::string_view text) override;
};

// stdout gets exactly the result text, as it is written.
class PrintedReport : public solver::ReportSink {
 public:
  void bufferAppended(std::string_view text) override;
};

// On a terminal the clock, the tested moves and the speed stay on one line
// of stderr while a job runs.
class TerminalProgress : public solver::ProgressSink {
 public:
  TerminalProgress();
  bool tick(const solver::Progress& progress) override;
  void clear() const;

 private:
  bool shown_;
};

// The last line on stderr: time, examined moves and speed.
void printSummary(double seconds, std::uint64_t moves);

// Runs a solving or counting job to its end: the result text goes to stdout
// as it grows, progress to a terminal's stderr, the summary last.
template <typename Job, typename Settings>
int runJob(const Settings& settings, int language) {
  PrintedReport report;
  TerminalProgress progress;
  StderrMessages messages;
  const auto job = std::make_unique<Job>(progress, report, messages);  // the ply stack is large
  job->setLanguage(language);
  const solver::RunEnd end = job->start(settings);
  progress.clear();
  if (end == solver::RunEnd::Refused) return kExitRefused;
  printSummary(static_cast<double>(job->elapsedMs()) / 1000.0, job->testedMoves().total());
  return 0;
}

}  // namespace velkaro::cli
