#pragma once
// The subcommands of velkaro-cli and what they share.

#include <cstdint>
#include <string_view>

#include "cli/options.h"
#include "core/messages.h"

namespace velkaro::cli {

int runPerft(const Options& options);
int runSolve(const Options& options);

// A refused set-up's message goes to stderr as it stands.
class StderrMessages : public core::MessageSink {
 public:
  void showMessage(std::string_view caption, std::string_view text) override;
};

// The last line on stderr: time, examined moves and speed.
void printSummary(double seconds, std::uint64_t moves);

}  // namespace velkaro::cli
