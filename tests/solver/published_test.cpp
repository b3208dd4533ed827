// Every problem of tests/data/problems.txt solved completely: the keys found
// (for helpmates the solutions' first moves) are exactly the published ones.

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "core/notation.h"
#include "counter/first_moves.h"
#include "solver_fixture.h"

namespace velkaro::solver {
namespace {

struct Entry {
  std::string id;
  std::string stipulation;
  std::string fen;
  std::string lastMove;
  std::string solution;
};

std::string trim(const std::string& text) {
  const auto first = text.find_first_not_of(' ');
  const auto last = text.find_last_not_of(' ');
  return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::vector<Entry> readEntries() {
  std::vector<Entry> entries;
  std::ifstream file(VELKARO_TEST_DATA_DIR "/problems.txt");
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string> fields;
    std::stringstream stream(line);
    for (std::string field; std::getline(stream, field, '|');) fields.push_back(trim(field));
    if (fields.size() == 6) entries.push_back({fields[0], fields[1], fields[2], fields[3], fields[5]});
  }
  return entries;
}

// The published first moves: "key Ke8; ..." or "keys Rf4+, Qb1+; ..."; for a
// helpmate the first move of each of its "N solutions: 1.X Y 2. ...; 1.Z ...".
std::multiset<std::string> publishedFirstMoves(const Entry& entry) {
  std::multiset<std::string> moves;
  const std::string& text = entry.solution;
  if (entry.stipulation[0] == 'H') {
    for (std::size_t at = text.find("1."); at != std::string::npos; at = text.find("; 1.", at + 1)) {
      const std::size_t start = text.find('.', at) + 1;
      moves.insert(text.substr(start, text.find(' ', start) - start));
    }
    return moves;
  }
  const std::size_t start = text.find(' ') + 1;
  std::stringstream keys(text.substr(start, text.find(';') - start));
  for (std::string key; std::getline(keys, key, ',');) moves.insert(trim(key));
  return moves;
}

// Our first moves: the key line after each "Solution No", or a helpmate
// solution's first move, as move texts.
std::multiset<std::string> foundFirstMoves(const std::string& text) {
  std::multiset<std::string> moves;
  std::stringstream lines(text);
  bool next = false;
  for (std::string line; std::getline(lines, line);) {
    if (next) {
      const std::string move = line.substr(3);
      moves.insert(move.rfind("0 - 0 - 0", 0) == 0 ? "0 - 0 - 0" : move.rfind("0 - 0", 0) == 0 ? "0 - 0" : move.substr(0, 9));
    }
    next = line.find("Solution No") != std::string::npos;
  }
  return moves;
}

// Deep problems take long without optimisation; the sanitizer build leaves them out.
bool withinBudget(const Entry& entry) {
#ifdef NDEBUG
  return true;
#else
  return entry.stipulation.back() <= '3';
#endif
}

TEST(PublishedProblems, FirstMovesAreThePublishedOnes) {
  const std::vector<Entry> entries = readEntries();
  ASSERT_GE(entries.size(), 25u);
  for (const Entry& entry : entries) {
    if (!withinBudget(entry)) continue;
    const int lastMove =
        entry.lastMove.size() == 2 ? core::squareAt(entry.lastMove[0] - 'a', entry.lastMove[1] - '0') : 0;
    Solve solve(entry.fen.c_str(), entry.stipulation.c_str(), lastMove);
    core::Notation notation;
    std::multiset<std::string> expected;
    for (const std::string& published : publishedFirstMoves(entry)) {
      std::vector<std::string> named;
      for (const FirstMove& move : counter::firstMoveList(solve.settings.setup)) {
        if (counter::namesMove(move, published)) named.push_back(counter::firstMoveText(move, notation));
      }
      ASSERT_EQ(named.size(), 1u) << entry.id << ": " << published;
      expected.insert(named.front());
    }
    EXPECT_EQ(foundFirstMoves(solve.runToEnd()), expected) << entry.id;
  }
}

}  // namespace
}  // namespace velkaro::solver
