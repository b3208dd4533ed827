// velkaro-cli count: the number of legal continuations after 1, 2, ... N
// single moves, one heading and count line per depth.

#include <cstdio>

#include "cli/commands.h"
#include "counter/counting_job.h"

namespace velkaro::cli {

int runCount(const Options& options) {
  if (options.depth < 1 || options.depth > counter::kMaxCountDepth) {
    std::fprintf(stderr, "velkaro-cli: count needs --depth N with N from 1 to %d\n", counter::kMaxCountDepth);
    return usage();
  }
  const auto setup = setupFromOptions(options);
  if (!setup) return usage();
  counter::CountSettings settings;
  settings.setup = *setup;
  settings.depth = options.depth;
  if (!options.firstMove.empty()) {
    settings.firstMove = chosenFirstMove(settings.setup, options.firstMove);
    if (!settings.firstMove) return usage();
  }

  return runJob<counter::CountingJob, counter::CountSettings>(settings, options.language);
}

}  // namespace velkaro::cli
