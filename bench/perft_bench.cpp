// Speed of the chess core: legal leaf moves per second through the legal-move
// iterator, single-threaded, on the standard perft positions. The last line is
// the bench signature, the total of all counts: a change that alters it has
// changed move generation.
//
//   perft_bench [runs]     (default 3; the best run of each position is shown)

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>

#include "core/perft.h"
#include "formats/fen.h"

namespace {

struct BenchPosition {
  const char* name;
  const char* fen;
  int depth;
};

constexpr BenchPosition kPositions[] = {
    {"start", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -", 6},
    {"kiwipete", "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -", 5},
};

}  // namespace

int main(int argc, char** argv) {
  using namespace velkaro;
  const int runs = argc > 1 ? std::atoi(argv[1]) : 3;
  static core::PlyStack stack;
  std::uint64_t signature = 0;
  for (const BenchPosition& position : kPositions) {
    formats::FenImport import;
    if (!import.selectLine({position.fen}, 0, "FEN")) return 1;
    const core::BoardSetup setup = formats::setupFromImport(import.result());
    double best = 0;
    std::uint64_t leaves = 0;
    for (int run = 0; run < (runs > 0 ? runs : 1); ++run) {
      core::setUpRoot(stack, setup);
      const auto start = std::chrono::steady_clock::now();
      leaves = core::perft(stack, position.depth);
      const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
      if (run == 0 || seconds < best) best = seconds;
    }
    std::printf("%-9s perft %d: %" PRIu64 " leaves in %.3f s, %.1f M leaves/s\n", position.name, position.depth,
                leaves, best, static_cast<double>(leaves) / best / 1e6);
    signature += leaves;
  }
  std::printf("bench signature: %" PRIu64 "\n", signature);
  return 0;
}
