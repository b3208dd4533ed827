// Every problem of tests/data/problems.txt solved completely: the keys found
// (for helpmates the solutions' first moves) are exactly the published ones.
// The published moves are named in short algebraic form and matched against
// the legal first moves, so no result text is read.

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "core/first_moves.h"
#include "published_problems.h"
#include "solver/key_finder.h"
#include "solver/solver_job.h"
#include "table_file.h"

namespace velkaro::solver {
namespace {

// The published first moves: "key Ke8; ..." or "keys Rf4+, Qb1+; ..."; for a
// helpmate the first move of each of its "N solutions: 1.X Y 2. ...; 1.Z ...".
std::multiset<std::string> publishedFirstMoves(const published::Problem& problem) {
  std::multiset<std::string> moves;
  const std::string& text = problem.solution;
  if (problem.stipulation().helpmate) {
    for (std::size_t at = text.find("1."); at != std::string::npos; at = text.find("; 1.", at + 1)) {
      const std::size_t start = text.find('.', at) + 1;
      moves.insert(text.substr(start, text.find(' ', start) - start));
    }
    return moves;
  }
  const std::size_t start = text.find(' ') + 1;
  std::stringstream keys(text.substr(start, text.find(';') - start));
  for (std::string key; std::getline(keys, key, ',');) moves.insert(velkaro::testing::trim(key));
  return moves;
}

// The first move of each key or helpmate line a run emits.
class FirstMoves : public jobs::ProgressSink, public RecordSink, public core::MessageSink {
 public:
  void record(const Record& record) override {
    if (const Key* key = std::get_if<Key>(&record)) moves.insert(key->move);
    if (const HelpLine* line = std::get_if<HelpLine>(&record)) moves.insert(line->moves.front());
  }
  void showMessage(std::string_view, std::string_view) override { ADD_FAILURE() << "refused"; }

  struct Less {
    bool operator()(const core::MoveRecord& a, const core::MoveRecord& b) const {
      return std::tie(a.fromSquare, a.toSquare, a.moveKind) < std::tie(b.fromSquare, b.toSquare, b.moveKind);
    }
  };
  std::multiset<core::MoveRecord, Less> moves;
};

// Deep problems take long without optimisation; the sanitizer build leaves them out.
bool withinBudget([[maybe_unused]] const published::Problem& problem) {
#ifdef NDEBUG
  return true;
#else
  return problem.stipulation().moves <= 3;
#endif
}

TEST(PublishedProblems, FirstMovesAreThePublishedOnes) {
  const std::vector<published::Problem> problems = published::readProblems(VELKARO_TEST_DATA_DIR "/problems.txt");
  ASSERT_GE(problems.size(), 25u);
  for (const published::Problem& problem : problems) {
    if (!withinBudget(problem)) continue;
    SolveSettings settings;
    settings.setup = problem.setup();
    settings.stipulation = problem.stipulation();
    settings.stopOnFirstSolution = false;
    FirstMoves found;
    decltype(found.moves) expected;
    for (const std::string& published : publishedFirstMoves(problem)) {
      int named = 0;
      for (const core::FirstMove& move : core::firstMoveList(settings.setup)) {
        if (core::namesMove(move, published)) {
          expected.insert(move.record());
          ++named;
        }
      }
      ASSERT_EQ(named, 1) << problem.id << ": " << published;
    }
    const auto job = std::make_unique<SolverJob>(found, found, found);
    job->start(settings);
    EXPECT_EQ(found.moves.size(), expected.size()) << problem.id;
    const FirstMoves::Less less;
    EXPECT_TRUE(std::ranges::equal(found.moves, expected, [&](auto& a, auto& b) { return !less(a, b) && !less(b, a); }))
        << problem.id;
  }
}

// The silent call answers with the same keys as a run, and stops after the
// number of keys asked for.
TEST(KeyFinder, KeysOfARunWithoutText) {
  const std::vector<published::Problem> problems = published::readProblems(VELKARO_TEST_DATA_DIR "/problems.txt", "#");
  KeyFinder finder;
  for (const published::Problem& problem : problems) {
    if (problem.stipulation().helpmate || problem.stipulation().moves > 3) continue;
    SolveSettings settings;
    settings.setup = problem.setup();
    settings.stipulation = problem.stipulation();
    settings.stopOnFirstSolution = false;
    FirstMoves run;
    std::make_unique<SolverJob>(run, run, run)->start(settings);
    const auto keys = finder.keys(settings.setup, settings.stipulation);
    ASSERT_TRUE(keys.has_value()) << problem.id;
    ASSERT_EQ(keys->size(), run.moves.size()) << problem.id;
    for (const Key& key : *keys) EXPECT_EQ(run.moves.count(key.move), 1u) << problem.id;
    EXPECT_EQ(finder.keys(settings.setup, settings.stipulation, 1)->size(), 1u) << problem.id;
  }
  core::BoardSetup noKings;
  EXPECT_FALSE(finder.keys(noKings, {false, false, 2}).has_value());
}

}  // namespace
}  // namespace velkaro::solver
