// Speed of the Creator: placements tested per second and problems found per
// minute for a mate-in-2 and a mate-in-3 generation with the kings fixed and
// three White men added, on one thread and on two. Each run also prints a
// signature of its problem list, which must not depend on the threads.
//
//   create_bench [placements of the mate-in-3 runs] [#2|#3] [threads]
//   (default 20000, both generations, one thread and two)

#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <string>

#include "core/messages.h"
#include "formats/standard_fen.h"
#include "generator/generator_job.h"
#include "generator/list_writer.h"

namespace {

using namespace velkaro;

struct Workload {
  const char* name;
  const char* fen;
  int moves;
  generator::AddedMen white;
  std::uint64_t placements;  // stop after this many (0: run to the end of the list)
};

// Counts problems, folds their rows into a signature, and stops the run once
// it has examined enough placements.
class Log : public jobs::ProgressSink, public generator::RecordSink, public core::MessageSink {
 public:
  Log(generator::GeneratorJob*& job, std::uint64_t cap) : job_(job), cap_(cap) {}
  void tick(const jobs::Progress& progress) override {
    if (cap_ != 0 && progress.tested.total() >= cap_) job_->requestStop();
  }
  void record(const generator::Record& record) override {
    if (const auto* problem = std::get_if<generator::Problem>(&record)) {
      ++problems;
      signature = signature * 31 + std::hash<std::string>{}(generator::rowText(*problem));
    }
  }
  void showMessage(std::string_view, std::string_view text) override { message = text; }

  int problems = 0;
  std::size_t signature = 0;
  std::string message;

 private:
  generator::GeneratorJob*& job_;
  std::uint64_t cap_;
};

void run(const Workload& workload, int threads) {
  std::string error;
  generator::CreateSettings settings;
  settings.setup = *formats::readStandardFen(workload.fen, error);
  settings.moves = workload.moves;
  settings.white = workload.white;
  settings.stopOnFirstSolution = false;
  settings.threads = threads;
  settings.refreshInterval = 10'000;  // a tick every 100 (mate in 2) or 10 (mate in 3) placements

  generator::GeneratorJob* running = nullptr;
  Log log(running, workload.placements);
  auto job = std::make_unique<generator::GeneratorJob>(log, log, log);
  running = job.get();
  const auto wall = std::chrono::steady_clock::now();
  const std::clock_t cpu = std::clock();
  job->start(settings);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - wall).count();
  const double cpuSeconds = static_cast<double>(std::clock() - cpu) / CLOCKS_PER_SEC;
  const auto placements = job->testedMoves().total();
  std::printf(
      "%-32s %d thread%s %8llu placements %7.2f s (cpu %7.2f s) %8.0f placements/s %5d problems %8.1f /min"
      "  list %016zx%s%s\n",
      workload.name, threads, threads == 1 ? " " : "s", static_cast<unsigned long long>(placements), seconds,
      cpuSeconds, static_cast<double>(placements) / seconds, log.problems, log.problems * 60.0 / seconds, log.signature,
      log.message.empty() ? "" : "  ", log.message.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  const std::uint64_t mateIn3Placements = argc > 1 ? std::stoull(argv[1]) : 20000;
  const Workload workloads[] = {
      {"#2, kings fixed, +Q R N", "8/8/8/2k5/8/8/8/3K4 w - -", 2, {1, 1, 0, 1, 0}, 0},
      {"#3, kings fixed, +R B N", "8/8/8/2k5/8/8/8/3K4 w - -", 3, {0, 1, 1, 1, 0}, mateIn3Placements},
  };
  const std::string only = argc > 2 ? argv[2] : "";
  const int onlyThreads = argc > 3 ? std::stoi(argv[3]) : 0;
  for (const Workload& workload : workloads) {
    if (!only.empty() && std::string(workload.name).rfind(only, 0) != 0) continue;
    for (int threads : {1, 2}) {
      if (onlyThreads == 0 || threads == onlyThreads) run(workload, threads);
    }
  }
  return 0;
}
