// velkaro-cli: Velkaro's engines from the command line, for batch work,
// scripts and end-to-end checks. stdout carries exactly the result text;
// progress and the summary go to stderr.

#include <unistd.h>

#include <cinttypes>
#include <cstdio>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "core/notation.h"

namespace velkaro::cli {

void StderrMessages::showMessage(std::string_view, std::string_view text) {
  std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
}

void PrintedReport::bufferAppended(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  if (!text.empty() && text.back() == '\n') std::fflush(stdout);
}

TerminalProgress::TerminalProgress() : shown_(isatty(STDERR_FILENO) != 0) {}

bool TerminalProgress::tick(const solver::Progress& progress) {
  if (shown_) {
    std::fprintf(stderr, "\r%s %s moves %s moves/sec  ", progress.clock.c_str(), progress.testedMoves.c_str(),
                 progress.speed.c_str());
  }
  return false;
}

void TerminalProgress::clear() const {
  if (shown_) std::fputs("\r\033[K", stderr);
}

void printSummary(double seconds, std::uint64_t moves) {
  const auto perSecond = seconds > 0 ? static_cast<std::uint64_t>(static_cast<double>(moves) / seconds) : 0;
  std::fprintf(stderr, "Time %.3f s, %s moves, %s moves/sec\n", seconds,
               core::GroupDigits(std::to_string(moves)).c_str(), core::GroupDigits(std::to_string(perSecond)).c_str());
}

}  // namespace velkaro::cli

int main(int argc, char** argv) {
  using namespace velkaro::cli;
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const auto options = parseOptions(arguments);
  if (!options) return usage();
  if (options->command == "perft") return runPerft(*options);
  if (options->command == "solve") return runSolve(*options);
  if (options->command == "count") return runCount(*options);
  std::fprintf(stderr, "velkaro-cli: unknown command \"%s\"\n", options->command.c_str());
  return usage();
}
