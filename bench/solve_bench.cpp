// Speed of the solver: solves every problem of a problem file completely (all
// keys, all solutions) and reports the search time of each (process start and
// file reading excluded), the tested moves and the tested moves per second,
// the keys found beside the published ones, and the slowest problems.
//
//   solve_bench [problem file] [filter]   (default bench/problems.txt; the
//   filter keeps the problems whose id or stipulation contains it)

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "core/messages.h"
#include "published_problems.h"
#include "solver/solver_job.h"

namespace {

using namespace velkaro;

struct Result {
  const published::Problem* problem;
  double ms;
  std::uint64_t tested;
  int men;
  std::string keys;
};

// Keeps the first move of each key, or the first pair of each helpmate line.
class KeyLog : public jobs::ProgressSink, public solver::RecordSink, public core::MessageSink {
 public:
  void record(const solver::Record& record) override {
    if (const auto* key = std::get_if<solver::Key>(&record)) {
      add(notation_.MoveText(key->move));
    } else if (const auto* line = std::get_if<solver::HelpLine>(&record)) {
      add(notation_.MoveText(line->moves[0]) + ", " + notation_.MoveText(line->moves[1]));
    }
  }
  void showMessage(std::string_view, std::string_view text) override { message = text; }

  std::string keys;
  std::string message;

 private:
  void add(const std::string& move) { keys += (keys.empty() ? "" : ", ") + move; }
  core::Notation notation_;
};

bool solve(const published::Problem& problem, Result& result) {
  solver::SolveSettings settings;
  settings.setup = problem.setup();
  settings.stipulation = problem.stipulation();
  settings.stopOnFirstSolution = false;

  KeyLog log;
  const auto job = std::make_unique<solver::SolverJob>(log, log, log);
  const auto start = std::chrono::steady_clock::now();
  if (job->start(settings) == jobs::RunEnd::Refused) {
    std::fprintf(stderr, "%s: refused: %s\n", problem.id.c_str(), log.message.c_str());
    return false;
  }
  result.ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
  result.tested = job->testedMoves().total();
  result.men = static_cast<int>(
      std::count_if(settings.setup.board.begin(), settings.setup.board.end(), [](int code) { return code != 0; }));
  result.keys = log.keys.empty() ? "none" : log.keys;
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string path = argc > 1 ? argv[1] : "bench/problems.txt";
  const std::vector<published::Problem> problems = published::readProblems(path, argc > 2 ? argv[2] : "");
  if (problems.empty()) {
    std::fprintf(stderr, "no problems in %s\n", path.c_str());
    return 1;
  }
  std::vector<Result> results;
  for (const published::Problem& problem : problems) {
    Result result{&problem, 0, 0, 0, ""};
    if (!solve(problem, result)) continue;
    results.push_back(result);
    std::printf("%-22s %-4s %2d men %10.2f ms %14llu moves %7.1f M/s  found: %s | published: %s\n", problem.id.c_str(),
                problem.stipulationText.c_str(), result.men, result.ms,
                static_cast<unsigned long long>(result.tested), result.ms > 0 ? result.tested / result.ms / 1000 : 0,
                result.keys.c_str(), problem.solution.substr(0, 60).c_str());
  }
  std::sort(results.begin(), results.end(), [](const Result& a, const Result& b) { return a.ms > b.ms; });
  std::printf("\nslowest:\n");
  for (std::size_t i = 0; i < results.size() && i < 5; ++i) {
    std::printf("  %-22s %-4s %10.2f ms\n", results[i].problem->id.c_str(),
                results[i].problem->stipulationText.c_str(), results[i].ms);
  }
  return 0;
}
