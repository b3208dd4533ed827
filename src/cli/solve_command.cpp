// velkaro-cli solve: every key of a direct mate, selfmate or helpmate, printed
// as the solution text grows; progress and a summary on stderr.

#include <cctype>
#include <charconv>
#include <cstdio>
#include <string>

#include "cli/commands.h"
#include "counter/first_moves.h"
#include "solver/solver_job.h"

namespace velkaro::cli {

namespace {

// "#2", "S#3", "h#4" (any case).
bool parseStipulation(const std::string& text, core::Stipulation& stipulation) {
  std::size_t at = 0;
  const char first = static_cast<char>(std::toupper(static_cast<unsigned char>(text.empty() ? ' ' : text[0])));
  stipulation.helpmate = first == 'H';
  stipulation.selfmate = first == 'S';
  if (stipulation.helpmate || stipulation.selfmate) at = 1;
  if (at >= text.size() || text[at] != '#') return false;
  const char* begin = text.data() + at + 1;
  const char* end = text.data() + text.size();
  auto [stop, error] = std::from_chars(begin, end, stipulation.moves);
  return error == std::errc{} && stop == end && stipulation.moves >= 1 && stipulation.moves <= solver::kMaxMoves;
}

}  // namespace

int runSolve(const Options& options) {
  solver::SolveSettings settings;
  if (!parseStipulation(options.stipulation, settings.stipulation)) {
    std::fprintf(stderr, "velkaro-cli: --stip needs #n, S#n or H#n with n from 1 to %d\n", solver::kMaxMoves);
    return usage();
  }
  const auto setup = setupFromOptions(options);
  if (!setup) return usage();
  settings.setup = *setup;
  settings.minimumMoves = options.minimumMoves;
  settings.stopOnFirstSolution = options.stopFirst;
  settings.testAllSecondMoves = options.secondMoves && !settings.stipulation.helpmate;
  if (!options.firstMove.empty()) {
    settings.firstMove = chosenFirstMove(settings.setup, options.firstMove);
    if (!settings.firstMove) return usage();
  }

  return runJob<solver::SolverJob, solver::SolveSettings>(settings, options.language);
}

}  // namespace velkaro::cli
