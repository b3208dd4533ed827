// Speed of the Variants counter: counts a position to a depth with a given
// number of walkers and prints each depth's count, the time and the tested
// moves, so that one walker and one per core can be set side by side.
//
//   count_bench [depth] [walkers] [FEN]   (default 7, 0 = one per core, the
//   start position)

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "counter/counting_job.h"
#include "formats/standard_fen.h"

namespace {

using namespace velkaro;

class Printer : public jobs::ProgressSink, public solver::RecordSink, public core::MessageSink {
 public:
  void record(const solver::Record& record) override {
    if (const auto* line = std::get_if<solver::CountLine>(&record)) {
      std::printf("depth %d: %llu\n", line->depth, static_cast<unsigned long long>(line->count.total()));
    }
  }
  void showMessage(std::string_view, std::string_view text) override {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
  }
};

}  // namespace

int main(int argc, char** argv) {
  const int depth = argc > 1 ? std::atoi(argv[1]) : 7;
  const int walkers = argc > 2 ? std::atoi(argv[2]) : 0;
  const std::string fen = argc > 3 ? argv[3] : "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
  counter::CountSettings settings;
  std::string error;
  const auto setup = formats::readStandardFen(fen, error);
  if (!setup) {
    std::fprintf(stderr, "%s\n", error.c_str());
    return 1;
  }
  settings.setup = *setup;
  settings.depth = depth;
  settings.threads = walkers;
  Printer printer;
  const auto job = std::make_unique<counter::CountingJob>(printer, printer, printer);
  const auto start = std::chrono::steady_clock::now();
  if (job->start(settings) != jobs::RunEnd::Finished) return 1;
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("%.3f s, %llu tested moves, walkers %d\n", seconds,
              static_cast<unsigned long long>(job->testedMoves().total()), walkers);
  return 0;
}
