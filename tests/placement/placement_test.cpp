// The Positions mode end to end: the job's finds and counts against published
// results and against the plain enumeration, the list after pauses and
// beyond 990 finds, Stop and Resume anywhere, the refusals, and the squares
// marked when a listed placement is shown. The panel's whole text after a run
// is checked by the velkaro-cli place tests.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "placement/placement_job.h"
#include "placement/report_writer.h"
#include "plain_enumeration.h"
#include "table_file.h"

namespace velkaro::placement {
namespace {

std::vector<std::string> readLines(const std::string& name) {
  std::ifstream file(std::string(VELKARO_TEST_DATA_DIR) + "/placement/" + name);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

std::vector<std::vector<std::string>> readTable(const std::string& name) {
  return velkaro::testing::readTable(std::string(VELKARO_TEST_DATA_DIR) + "/placement/" + name);
}

// "kings queens rooks bishops knights pawns".
PieceCounts countsFrom(const std::string& text) {
  PieceCounts counts;
  std::istringstream(text) >> counts.kings >> counts.queens >> counts.rooks >> counts.bishops >> counts.knights >>
      counts.pawns;
  return counts;
}

// Everything a run shows and finds; it may ask the job to stop at each tick.
class Recorder : public jobs::ProgressSink, public RecordSink, public core::MessageSink {
 public:
  void record(const Record& record) override {
    writer.record(record);
    if (const auto* found = std::get_if<Found>(&record)) {
      finds.resize(static_cast<std::size_t>(found->ordinal - 1));
      finds.push_back(found->board);
    }
  }
  void tick(const jobs::Progress&) override {
    if (++ticks % stopEvery == 0 && stopping != nullptr) stopping->requestStop();
  }
  void showMessage(std::string_view caption, std::string_view text) override {
    message = std::string(caption) + "|" + std::string(text);
  }

  PositionsPanel panel;
  ReportWriter writer{panel};
  std::vector<Board> finds;
  std::string message;
  int ticks = 0;
  PlacementJob* stopping = nullptr;  // asked to stop at every stopEvery-th tick
  int stopEvery = 1;
};

// The enumeration order: the squares of each group in turn, lowest first.
std::vector<int> orderKey(const Board& board) {
  std::vector<int> key;
  for (int code : kKindCode) {
    for (int square = 0; square < 64; ++square) {
      if (board[static_cast<std::size_t>(square)] == code) key.push_back(square);
    }
  }
  return key;
}

bool wholeDiagonals(const PieceCounts& counts) {
  const int kinds = (counts.kings > 0) + (counts.queens > 0) + (counts.rooks > 0) + (counts.bishops > 0) +
                    (counts.knights > 0) + (counts.pawns > 0);
  return kinds == 1 && (counts.bishops > 0 || counts.queens > 0);
}

// Table: counts | goal | found | best | examined | how the finds are checked:
// "plain" against the plain enumeration, "judged" one by one and in order.
TEST(Placement, KnownResults) {
  for (const auto& row : readTable("cases.txt")) {
    SCOPED_TRACE(row[0] + "|" + row[1]);
    const PieceCounts counts = countsFrom(row[0]);
    const auto goal = static_cast<Goal>(std::stoi(row[1]));
    Recorder recorder;
    const auto job = std::make_unique<PlacementJob>(recorder, recorder, recorder);
    ASSERT_EQ(job->start({counts, goal, false}), jobs::RunEnd::Finished);
    EXPECT_EQ(job->foundCount(), std::stoll(row[2]));
    if (goal != Goal::NonAttackingPieces) {
      EXPECT_EQ(job->bestScore(), std::stoi(row[3]));
    }
    EXPECT_EQ(job->examined(), std::stoull(row[4]));
    ASSERT_EQ(static_cast<std::int64_t>(recorder.finds.size()), job->foundCount());
    if (row[5] == "plain") {
      const testing::PlainResult plain = testing::plainEnumeration(counts, goal);
      EXPECT_EQ(plain.examined, job->examined());
      EXPECT_EQ(plain.best, job->bestScore());
      EXPECT_TRUE(plain.finds == recorder.finds);
      continue;
    }
    for (const Board& board : recorder.finds) {
      ASSERT_TRUE(goal == Goal::NonAttackingPieces
                      ? testing::noManAttacked(board)
                      : testing::coverScore(board, wholeDiagonals(counts)) == job->bestScore())
          << boardText(board);
    }
    std::vector<std::vector<int>> keys;
    for (const Board& board : recorder.finds) keys.push_back(orderKey(board));
    EXPECT_TRUE(std::adjacent_find(keys.begin(), keys.end(), std::greater_equal<>()) == keys.end());
  }
}

// Every case once straight through and once stopped at some 500 progress
// ticks spread over the run and resumed: the same list, captions and counts.
TEST(Placement, StopAndResumeAnywhere) {
  for (const auto& row : readTable("cases.txt")) {
    SCOPED_TRACE(row[0] + "|" + row[1]);
    const PlaceSettings settings{countsFrom(row[0]), static_cast<Goal>(std::stoi(row[1])), false};
    Recorder straight;
    const auto whole = std::make_unique<PlacementJob>(straight, straight, straight);
    const int interval = static_cast<int>(std::clamp<Count>(std::stoull(row[4]) / 2000, 997, 1'000'000'000));
    whole->setRefreshInterval(interval);
    ASSERT_EQ(whole->start(settings), jobs::RunEnd::Finished);

    Recorder stopped;
    const auto job = std::make_unique<PlacementJob>(stopped, stopped, stopped);
    stopped.stopping = job.get();
    stopped.stopEvery = std::max(1, straight.ticks / 500);
    job->setRefreshInterval(interval);
    int stops = 0;
    for (jobs::RunEnd end = job->start(settings); end != jobs::RunEnd::Finished; end = job->resume()) {
      ASSERT_EQ(end, jobs::RunEnd::Stopped);
      ++stops;
    }
    if (straight.ticks > stopped.stopEvery) {  // a stop before the last tick
      EXPECT_GT(stops, 0);
    }
    EXPECT_EQ(stopped.panel.text(), straight.panel.text());
    EXPECT_TRUE(stopped.finds == straight.finds);
    EXPECT_EQ(job->examined(), whole->examined());
  }
}

// Eight queens pausing at each find: each Resume lists the next one; the
// Resume after the last says "No many solutions".
TEST(Placement, PausesOnEachFind) {
  const std::vector<std::string> queens = readLines("eight_queens.txt");
  ASSERT_EQ(queens.size(), 92u);
  Recorder recorder;
  const auto job = std::make_unique<PlacementJob>(recorder, recorder, recorder);
  jobs::RunEnd end = job->start({{0, 8}, Goal::NonAttackingPieces, true});
  for (std::size_t shown = 1; shown <= queens.size(); ++shown, end = job->resume()) {
    ASSERT_EQ(end, jobs::RunEnd::Solution);
    EXPECT_EQ(recorder.panel.rows(), std::vector<std::string>(queens.begin(), queens.begin() + shown));
    EXPECT_EQ(recorder.panel.caption(Caption::Positions), std::to_string(shown));
    EXPECT_EQ(recorder.panel.selectedRow(), static_cast<int>(shown) - 1);
  }
  EXPECT_EQ(end, jobs::RunEnd::Finished);
  EXPECT_EQ(recorder.panel.rows().size(), 93u);
  EXPECT_EQ(recorder.panel.rows().back(), kNoManySolutions);
  EXPECT_EQ(job->examined(), 4'426'165'368u);
}

// Pausing beyond the kept texts: the 990th find's row is empty, and every
// later pause adds " ... and other".
TEST(Placement, PausesBeyondTheKeptTexts) {
  std::vector<std::string> rows = readLines("eight_rooks.txt");
  rows.resize(kRowsListed);
  rows.insert(rows.end(), 2, std::string(kAndOtherRow));
  Recorder recorder;
  const auto job = std::make_unique<PlacementJob>(recorder, recorder, recorder);
  jobs::RunEnd end = job->start({{0, 0, 8}, Goal::NonAttackingPieces, true});
  for (std::size_t pause = 1; pause < rows.size() && end == jobs::RunEnd::Solution; ++pause) end = job->resume();
  EXPECT_EQ(recorder.panel.rows(), rows);
  EXPECT_EQ(recorder.panel.caption(Caption::Positions), "992");
}

// Table: counts | caption and message.
TEST(Placement, Refusals) {
  for (const auto& row : readTable("refused.txt")) {
    Recorder recorder;
    const auto job = std::make_unique<PlacementJob>(recorder, recorder, recorder);
    EXPECT_EQ(job->start({countsFrom(row[0]), Goal::NonAttackingPieces, true}), jobs::RunEnd::Refused) << row[0];
    EXPECT_EQ(recorder.message, row[1] + "|" + row[2]) << row[0];
    EXPECT_EQ(job->resume(), jobs::RunEnd::Finished);
  }
}

// Table: board text | the empty squares no man attacks.
TEST(Placement, UnattackedEmptySquares) {
  for (const auto& row : readTable("unattacked.txt")) {
    const std::optional<Squares> squares = unattackedEmptySquares(row[0]);
    std::string names;
    for (Squares rest = squares.value_or(0); rest != 0; rest &= rest - 1) {
      const int square = lowestOf(rest);
      names += std::string(names.empty() ? "" : " ") + static_cast<char>('a' + square % 8) +
               static_cast<char>('8' - square / 8);
    }
    EXPECT_EQ(squares ? (names.empty() ? "-" : names) : "no board", row[1]) << row[0];
    if (squares) {
      EXPECT_EQ(boardText(*parseBoardText(row[0])), row[0]);
    }
  }
}

}  // namespace
}  // namespace velkaro::placement
