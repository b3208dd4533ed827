// Speed of the solver: solves every problem of a problem file completely (all
// keys, all solutions) and reports the search time of each (process start and
// file reading excluded), the tested moves and the tested moves per second,
// the keys found beside the published ones, and the slowest problems.
//
//   solve_bench [problem file] [filter]   (default bench/problems.txt; the
//   filter keeps the problems whose id or stipulation contains it)
//
// A problem line: id | stipulation | FEN | last-move square or - | source | solution

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "core/messages.h"
#include "formats/fen.h"
#include "solver/solver_job.h"

namespace {

using namespace velkaro;

struct Problem {
  std::string id;
  std::string stipulation;
  std::string fen;
  std::string lastMove;
  std::string solution;
};

struct Result {
  const Problem* problem;
  double ms;
  std::uint64_t tested;
  int men;
  std::string keys;
};

std::string trim(const std::string& text) {
  const auto first = text.find_first_not_of(' ');
  const auto last = text.find_last_not_of(' ');
  return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::vector<Problem> readProblems(const std::string& path, const std::string& filter) {
  std::vector<Problem> problems;
  std::ifstream file(path);
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string> fields;
    std::stringstream stream(line);
    for (std::string field; std::getline(stream, field, '|');) fields.push_back(trim(field));
    if (fields.size() < 6) continue;
    Problem problem{fields[0], fields[1], fields[2], fields[3], fields[5]};
    if (filter.empty() || problem.id.find(filter) != std::string::npos ||
        problem.stipulation.find(filter) != std::string::npos) {
      problems.push_back(problem);
    }
  }
  return problems;
}

class Quiet : public solver::ProgressSink, public solver::ReportSink, public core::MessageSink {
 public:
  void showMessage(std::string_view, std::string_view text) override { message = text; }
  std::string message;
};

// The first moves of the solutions found: key lines, or each helpmate's first pair.
std::string keysFound(const std::string& text, bool helpmate) {
  std::string keys;
  std::stringstream stream(text);
  bool next = false;
  for (std::string line; std::getline(stream, line);) {
    if (next && line.rfind("1. ", 0) == 0) keys += (keys.empty() ? "" : ", ") + trim(line.substr(3, helpmate ? 22 : 9));
    next = line.find("Solution No") != std::string::npos;
  }
  return keys.empty() ? "none" : keys;
}

bool solve(const Problem& problem, Result& result) {
  formats::FenImport import;
  if (!import.selectLine({problem.fen}, 0, "FEN")) return false;
  solver::SolveSettings settings;
  settings.setup = formats::setupFromImport(import.result());
  if (problem.lastMove.size() == 2)
    settings.setup.lastMoveSquare = core::squareAt(problem.lastMove[0] - 'a', problem.lastMove[1] - '0');
  const char kind = problem.stipulation[0];
  settings.stipulation.helpmate = kind == 'H' || kind == 'h';
  settings.stipulation.selfmate = kind == 'S' || kind == 's';
  settings.stipulation.moves = std::atoi(problem.stipulation.c_str() + problem.stipulation.find('#') + 1);
  settings.stopOnFirstSolution = false;

  static Quiet sinks;
  static solver::SolverJob job(sinks, sinks, sinks);
  const auto start = std::chrono::steady_clock::now();
  if (job.start(settings) == solver::RunEnd::Refused) {
    std::fprintf(stderr, "%s: refused: %s\n", problem.id.c_str(), sinks.message.c_str());
    return false;
  }
  result.ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
  result.tested = job.testedMoves().total();
  result.men = static_cast<int>(
      std::count_if(settings.setup.board.begin(), settings.setup.board.end(), [](int code) { return code != 0; }));
  result.keys = keysFound(job.solutionText(), settings.stipulation.helpmate);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string path = argc > 1 ? argv[1] : "bench/problems.txt";
  const std::vector<Problem> problems = readProblems(path, argc > 2 ? argv[2] : "");
  if (problems.empty()) {
    std::fprintf(stderr, "no problems in %s\n", path.c_str());
    return 1;
  }
  std::vector<Result> results;
  for (const Problem& problem : problems) {
    Result result{&problem, 0, 0, 0, ""};
    if (!solve(problem, result)) continue;
    results.push_back(result);
    std::printf("%-22s %-4s %2d men %10.2f ms %14llu moves %7.1f M/s  found: %s | published: %s\n", problem.id.c_str(),
                problem.stipulation.c_str(), result.men, result.ms, static_cast<unsigned long long>(result.tested),
                result.ms > 0 ? result.tested / result.ms / 1000 : 0, result.keys.c_str(),
                problem.solution.substr(0, 60).c_str());
  }
  std::sort(results.begin(), results.end(), [](const Result& a, const Result& b) { return a.ms > b.ms; });
  std::printf("\nslowest:\n");
  for (std::size_t i = 0; i < results.size() && i < 5; ++i) {
    std::printf("  %-22s %-4s %10.2f ms\n", results[i].problem->id.c_str(), results[i].problem->stipulation.c_str(),
                results[i].ms);
  }
  return 0;
}
