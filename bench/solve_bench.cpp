// Speed of the solver: solves every problem of a problem file completely (all
// keys, all solutions) and reports the search time of each (process start and
// file reading excluded), the tested moves and the tested moves per second,
// the number of keys or solutions and the first few of them beside the
// published ones, then per stipulation the total and slowest time and the
// tested moves, and the slowest problems.
//
//   solve_bench [problem file] [filter] [table MB]   (default
//   bench/problems.txt, all problems, the solver's default table; the filter
//   keeps the problems whose id or stipulation contains it)

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
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
  int found;
  std::string keys;
};

// Keys (or the first pairs of helpmate lines) shown per problem.
constexpr int kShownKeys = 3;

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
  void add(const std::string& move) {
    if (found++ < kShownKeys) keys += (keys.empty() ? "" : ", ") + move;
  }
  core::Notation notation_;

 public:
  int found = 0;
};

bool solve(const published::Problem& problem, int tableMegabytes, Result& result) {
  solver::SolveSettings settings;
  if (tableMegabytes >= 0) settings.tableMegabytes = tableMegabytes;
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
  result.found = log.found;
  result.keys = log.keys.empty() ? "none" : log.keys + (log.found > kShownKeys ? ", ..." : "");
  return true;
}

// Per stipulation: how many problems, the total and slowest time, the tested moves.
void printStipulationTotals(const std::vector<Result>& results) {
  std::map<std::string, std::vector<const Result*>> byStipulation;
  for (const Result& result : results) byStipulation[result.problem->stipulationText].push_back(&result);
  std::printf("\n%-5s %8s %12s %12s %16s  %s\n", "stip", "problems", "total ms", "slowest ms", "tested moves",
              "slowest problem");
  for (const auto& [stipulation, group] : byStipulation) {
    double total = 0;
    std::uint64_t tested = 0;
    const Result* slowest = group.front();
    for (const Result* result : group) {
      total += result->ms;
      tested += result->tested;
      if (result->ms > slowest->ms) slowest = result;
    }
    std::printf("%-5s %8zu %12.1f %12.1f %16llu  %s\n", stipulation.c_str(), group.size(), total, slowest->ms,
                static_cast<unsigned long long>(tested), slowest->problem->id.c_str());
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string path = argc > 1 ? argv[1] : "bench/problems.txt";
  const std::vector<published::Problem> problems = published::readProblems(path, argc > 2 ? argv[2] : "");
  if (problems.empty()) {
    std::fprintf(stderr, "no problems in %s\n", path.c_str());
    return 1;
  }
  const int tableMegabytes = argc > 3 ? std::atoi(argv[3]) : -1;
  std::vector<Result> results;
  for (const published::Problem& problem : problems) {
    Result result{&problem, 0, 0, 0, 0, ""};
    if (!solve(problem, tableMegabytes, result)) continue;
    results.push_back(result);
    std::printf("%-22s %-4s %2d men %10.2f ms %14llu moves %7.1f M/s %6d found: %s | published: %s\n",
                problem.id.c_str(), problem.stipulationText.c_str(), result.men, result.ms,
                static_cast<unsigned long long>(result.tested), result.ms > 0 ? result.tested / result.ms / 1000 : 0,
                result.found, result.keys.c_str(), problem.solution.substr(0, 60).c_str());
    std::fflush(stdout);
  }
  printStipulationTotals(results);
  std::sort(results.begin(), results.end(), [](const Result& a, const Result& b) { return a.ms > b.ms; });
  std::printf("\nslowest:\n");
  for (std::size_t i = 0; i < results.size() && i < 5; ++i) {
    std::printf("  %-22s %-4s %10.2f ms\n", results[i].problem->id.c_str(),
                results[i].problem->stipulationText.c_str(), results[i].ms);
  }
  return 0;
}
