// Speed of the placement search: runs each case to its end and prints the
// search time, the placements examined (exactly those of the plain
// enumeration), the found count and, for the cover goals, the best score.
//
//   place_bench [case ...]   (default: every case; a case is chosen by name)

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "jobs/progress_text.h"
#include "placement/placement_job.h"

namespace {

using namespace velkaro;
using placement::Goal;

struct Case {
  const char* name;
  placement::PieceCounts counts;
  Goal goal;
};

// Kings, queens, rooks, bishops, knights, pawns.
const Case kCases[] = {
    {"eight-queens", {0, 8, 0, 0, 0, 0}, Goal::NonAttackingPieces},
    {"five-queens", {0, 5, 0, 0, 0, 0}, Goal::AttackingSquares},
    {"one-of-each", {1, 1, 1, 1, 1, 0}, Goal::NonAttackingSquares},
    {"sixteen-kings", {16, 0, 0, 0, 0, 0}, Goal::NonAttackingPieces},
    {"thirty-two-knights", {0, 0, 0, 0, 32, 0}, Goal::NonAttackingPieces},
    {"fourteen-bishops", {0, 0, 0, 14, 0, 0}, Goal::NonAttackingPieces},
    {"eight-rooks", {0, 0, 8, 0, 0, 0}, Goal::NonAttackingPieces},
};

class Quiet : public jobs::ProgressSink, public placement::RecordSink, public core::MessageSink {
 public:
  void record(const placement::Record&) override {}
  void showMessage(std::string_view, std::string_view text) override {
    std::printf("%.*s\n", int(text.size()), text.data());
  }
};

void run(const Case& benchCase) {
  Quiet quiet;
  const auto job = std::make_unique<placement::PlacementJob>(quiet, quiet, quiet);
  placement::PlaceSettings settings{benchCase.counts, benchCase.goal, false};
  const auto start = std::chrono::steady_clock::now();
  job->start(settings);
  const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - start;
  std::printf("%-20s %10.1f ms %28s examined %8lld found", benchCase.name, spent.count(),
              jobs::testedMovesText(job->testedMoves()).c_str(), static_cast<long long>(job->foundCount()));
  if (benchCase.goal != Goal::NonAttackingPieces) std::printf("  best %d", job->bestScore());
  std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
  for (const Case& benchCase : kCases) {
    bool chosen = argc == 1;
    for (int arg = 1; arg < argc; ++arg) chosen = chosen || std::string_view(argv[arg]) == benchCase.name;
    if (chosen) run(benchCase);
  }
  return 0;
}
