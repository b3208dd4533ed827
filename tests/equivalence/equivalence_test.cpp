// The table of proved positions, killer moves and the counter's walkers may
// change how much is searched, never what is found: every problem of the
// problem files and random legal positions are solved with the table and
// without it, and stopped over and over, and the whole result text must be
// the same; deeper problems must give the text they gave before any of this;
// the counter's lines must be the same with one walker, two, and stops
// between.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "counter/counting_job.h"
#include "published_problems.h"
#include "random_setup.h"
#include "solver/report_writer.h"
#include "solver/solver_job.h"

namespace velkaro {
namespace {

// The sanitizer build takes a tenth of the random positions and only the
// quicker deep problems.
constexpr int kShare = testing::kRandomShare;

// Keeps the records of a run; asks for a stop at every tick when told to.
class Recorder : public jobs::ProgressSink, public solver::RecordSink, public core::MessageSink {
 public:
  explicit Recorder(bool stopAtTicks) : stopAtTicks_(stopAtTicks) {}
  void record(const solver::Record& record) override { records.push_back(record); }
  void tick(const jobs::Progress&) override {
    if (stopAtTicks_ && job != nullptr) job->requestStop();
  }
  void showMessage(std::string_view, std::string_view) override {}

  std::vector<solver::Record> records;
  jobs::Job* job = nullptr;

 private:
  bool stopAtTicks_;
};

// How a run is driven: the table's size, and whether it is stopped at every
// tick (a tick every few hundred tested moves) and continued.
struct Drive {
  int tableMegabytes;
  bool stopped;
};

constexpr Drive kPlain{0, false};
constexpr Drive kDrives[] = {{64, false}, {1, false}, {64, true}};

// The whole text of a run driven to its end, how often it was stopped and
// how many moves it tested.
std::string solveText(solver::SolveSettings settings, Drive drive, int* stops = nullptr,
                      std::uint64_t* tested = nullptr) {
  settings.tableMegabytes = drive.tableMegabytes;
  Recorder recorder(drive.stopped);
  auto job = std::make_unique<solver::SolverJob>(recorder, recorder, recorder);
  recorder.job = job.get();
  job->setRefreshInterval(drive.stopped ? 397 : 1 << 30);
  jobs::RunEnd end = job->start(settings);
  while (end == jobs::RunEnd::Solution || end == jobs::RunEnd::Stopped) {
    if (stops != nullptr && end == jobs::RunEnd::Stopped) ++*stops;
    end = job->resume();
  }
  if (tested != nullptr) *tested += job->testedMoves().total();
  return end == jobs::RunEnd::Refused ? "refused" : solver::solutionText(recorder.records, 4);
}

// Also adds up the tested moves without the table and with it.
void expectSameText(const solver::SolveSettings& settings, const std::string& what, std::uint64_t* withoutTable = nullptr,
                    std::uint64_t* withTable = nullptr) {
  const std::string expected = solveText(settings, kPlain, nullptr, withoutTable);
  for (const Drive& drive : kDrives) {
    EXPECT_EQ(solveText(settings, drive, nullptr, &drive == kDrives ? withTable : nullptr), expected)
        << what << " (table " << drive.tableMegabytes << " MB" << (drive.stopped ? ", stopped)" : ")");
  }
}

// Everything of the problem files that is solved in moments without a table.
bool quickWithoutTable(const published::Problem& problem) {
  const core::Stipulation stipulation = problem.stipulation();
  const core::BoardSetup setup = problem.setup();
  const auto men = std::count_if(setup.board.begin(), setup.board.end(), [](int code) { return code != 0; });
  return stipulation.moves <= 2 || (stipulation.moves == 3 && kShare == 1 && (!stipulation.helpmate || men <= 6));
}

TEST(TableEquivalence, PublishedProblemsGiveTheSameText) {
  int solved = 0;
  std::uint64_t withoutTable = 0;
  std::uint64_t withTable = 0;
  for (const char* path : {VELKARO_SOURCE_DIR "/tests/data/problems.txt", VELKARO_SOURCE_DIR "/bench/problems.txt"}) {
    for (const published::Problem& problem : published::readProblems(path)) {
      if (!quickWithoutTable(problem)) continue;
      solver::SolveSettings settings;
      settings.setup = problem.setup();
      settings.stipulation = problem.stipulation();
      settings.stopOnFirstSolution = false;
      expectSameText(settings, problem.id, &withoutTable, &withTable);
      settings.testAllSecondMoves = !settings.stipulation.helpmate;
      settings.minimumMoves = true;
      expectSameText(settings, problem.id + " (all second moves, minimum moves)");
      ++solved;
    }
  }
  EXPECT_GT(solved, 40 / kShare);
  // The table is consulted: it saves work.
  EXPECT_LT(withTable, withoutTable);
}

using testing::randomSetup;

struct RandomCase {
  const char* stipulation;
  int minMen;
  int maxMen;
  int positions;
};

constexpr RandomCase kRandomCases[] = {
    {"#2", 4, 12, 600}, {"#3", 3, 6, 150}, {"S#2", 4, 10, 600},
    {"S#3", 3, 5, 100}, {"H#2", 3, 9, 600}, {"H#3", 3, 5, 100},
};

core::Stipulation stipulationOf(std::string_view text) {
  core::Stipulation stipulation;
  stipulation.helpmate = text[0] == 'H';
  stipulation.selfmate = text[0] == 'S';
  stipulation.moves = text.back() - '0';
  return stipulation;
}

TEST(TableEquivalence, RandomPositionsGiveTheSameText) {
  std::mt19937 random(20261124);
  for (const RandomCase& test : kRandomCases) {
    for (int i = 0; i < test.positions / kShare; ++i) {
      solver::SolveSettings settings;
      const int span = test.maxMen - test.minMen + 1;
      settings.setup = randomSetup(random, test.minMen + static_cast<int>(random() % static_cast<unsigned>(span)));
      settings.stipulation = stipulationOf(test.stipulation);
      settings.stopOnFirstSolution = random() % 2 == 0;
      settings.testAllSecondMoves = !settings.stipulation.helpmate && random() % 3 == 0;
      settings.minimumMoves = random() % 4 == 0;
      const std::vector<core::FirstMove> moves = core::firstMoveList(settings.setup);
      if (!moves.empty() && random() % 4 == 0) settings.firstMove = moves[random() % moves.size()];
      expectSameText(settings, std::string(test.stipulation) + " #" + std::to_string(i));
    }
  }
}

// A deep helpmate is stopped hundreds of times and still gives the text of
// an uninterrupted run.
TEST(TableEquivalence, ManyStopsGiveTheTextOfOneRun) {
  solver::SolveSettings settings;
  settings.setup = published::readProblems(VELKARO_SOURCE_DIR "/bench/problems.txt", "b-h4-bily").at(0).setup();
  settings.stipulation = stipulationOf("H#4");
  settings.stopOnFirstSolution = false;
  int stops = 0;
  EXPECT_EQ(solveText(settings, {64, true}, &stops), solveText(settings, kPlain));
  EXPECT_GT(stops, 100);
}

// Deeper problems, against the whole text the solver wrote before it skipped
// proved positions or tried killer moves first: tests/data/equivalence holds
// one file a problem of bench/problems.txt, "ID.second-moves.txt" for a run
// testing all second moves.
TEST(GoldenEquivalence, DeeperProblemsGiveTheTextTheyAlwaysGave) {
  int compared = 0;
  for (const auto& entry : std::filesystem::directory_iterator(VELKARO_SOURCE_DIR "/tests/data/equivalence")) {
    std::string id = entry.path().stem().string();
    if (entry.path().extension() != ".txt" || id == "README") continue;
    const bool secondMoves = id.ends_with(".second-moves");
    if (secondMoves) id.resize(id.size() - 13);
    const auto problems = published::readProblems(VELKARO_SOURCE_DIR "/bench/problems.txt", id);
    ASSERT_FALSE(problems.empty()) << id;
    ++compared;
    if (kShare > 1 && problems.front().stipulation().moves > 3) continue;
    solver::SolveSettings settings;
    settings.setup = problems.front().setup();
    settings.stipulation = problems.front().stipulation();
    settings.stopOnFirstSolution = false;
    settings.testAllSecondMoves = secondMoves;
    std::ifstream golden(entry.path(), std::ios::binary);
    EXPECT_EQ(solveText(settings, kDrives[0]), std::string(std::istreambuf_iterator<char>(golden), {})) << id;
  }
  EXPECT_EQ(compared, 19);
}

// The count lines of a Variants run.
std::string countText(const core::BoardSetup& setup, int depth, int threads, bool stopped) {
  counter::CountSettings settings;
  settings.setup = setup;
  settings.depth = depth;
  settings.threads = threads;
  Recorder recorder(stopped);
  auto job = std::make_unique<counter::CountingJob>(recorder, recorder, recorder);
  recorder.job = job.get();
  job->setRefreshInterval(stopped ? 5000 : 1 << 30);
  jobs::RunEnd end = job->start(settings);
  while (end == jobs::RunEnd::Stopped) end = job->resume();
  return solver::solutionText(recorder.records, 4) + std::to_string(job->testedMoves().total());
}

TEST(WalkerEquivalence, CountsAreTheSameWithOneWalkerOrTwo) {
  std::mt19937 random(7);
  for (int i = 0; i < 60 / kShare; ++i) {
    const core::BoardSetup setup = randomSetup(random, 4 + static_cast<int>(random() % 12));
    const std::string expected = countText(setup, 4, 1, false);
    EXPECT_EQ(countText(setup, 4, 2, false), expected) << i;
    EXPECT_EQ(countText(setup, 4, 2, true), expected) << i << " (stopped)";
  }
}

}  // namespace
}  // namespace velkaro
