// The Creator: its set-up messages in order, complete runs against an
// independent enumeration and judgement of every placement (tables under
// tests/data/generator), and the same list however a run is interrupted and on
// however many threads it tests. A restricted kind without enough squares is
// checked by cli.create.no_squares.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "core/attacks.h"
#include "core/first_moves.h"
#include "formats/standard_fen.h"
#include "generator/generator_job.h"
#include "generator/list_writer.h"
#include "solver/key_finder.h"
#include "table_file.h"

namespace velkaro::generator {

std::vector<std::vector<std::string>> readTable(const std::string& name) {
  auto rows = testing::readTable(std::string(VELKARO_TEST_DATA_DIR) + "/generator/" + name);
  EXPECT_FALSE(rows.empty()) << name;
  return rows;
}

// Failures show a problem as its row and key.
void PrintTo(const Record& record, std::ostream* out) {
  if (const Problem* problem = std::get_if<Problem>(&record)) {
    *out << problem->ordinal << ": " << rowText(*problem) << " " << core::Notation().MoveText(problem->key);
  } else {
    *out << (std::holds_alternative<NoFound>(record) ? (std::get<NoFound>(record).more ? kNoFoundMoreRow : kNoFoundRow)
                                                     : kAndOtherRow);
  }
}

AddedMen addedMen(const std::string& digits) {
  return {digits[0] - '0', digits[1] - '0', digits[2] - '0', digits[3] - '0', digits[4] - '0'};
}

core::BoardSetup setupFromFen(const std::string& fen) {
  std::string error;
  const auto setup = formats::readStandardFen(fen, error);
  EXPECT_TRUE(setup.has_value()) << fen << ": " << error;
  return setup.value_or(core::BoardSetup{});
}

// "N:e4,h3 r:a8": the available squares of White's knights and Black's rooks.
void readMaps(const std::string& text, SquareMaps& maps) {
  static constexpr std::string_view kLetters = "KQRBNPkqrbnp";
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    SquareMap& map = maps[kLetters.find(word[0])];
    map.squares = 0;
    for (std::size_t at = 2; at < word.size(); at += 3) {
      map.squares |= std::uint64_t{1} << core::squareAt(word[at] - 'a', word[at + 1] - '0');
    }
  }
}

// A Creator run that keeps its records and messages. With `stopEvery` set it
// asks for a stop at every such tick and resumes; `pause` makes it pause at
// each problem.
class Recorded : public jobs::ProgressSink, public RecordSink, public core::MessageSink {
 public:
  explicit Recorded(CreateSettings settings) : settings_(std::move(settings)) {}

  void tick(const jobs::Progress&) override {
    if (stopEvery > 0 && ++ticks_ % stopEvery == 0) job->requestStop();
  }
  void record(const Record& record) override {
    if (std::holds_alternative<Testing>(record)) {
      if (stopWhenTesting) job->requestStop();
      return;
    }
    records.push_back(record);
  }
  void showMessage(std::string_view caption, std::string_view text) override {
    messages.push_back(std::string(caption) + std::string(text));
  }

  // Runs until the run is finished or has listed `problems` problems; a run
  // stopped as it begins testing is left so.
  jobs::RunEnd run(std::size_t problems = kMaxProblems) {
    jobs::RunEnd end = job->start(settings_);
    if (stopWhenTesting) return end;
    while (end == jobs::RunEnd::Stopped || (end == jobs::RunEnd::Solution && job->problems().size() < problems)) {
      ++resumes;
      end = job->resume();
    }
    return end;
  }

  int stopEvery = 0;
  bool stopWhenTesting = false;
  int resumes = 0;
  std::vector<Record> records;
  std::vector<std::string> messages;
  std::unique_ptr<GeneratorJob> job = std::make_unique<GeneratorJob>(*this, *this, *this);

 private:
  CreateSettings settings_;
  int ticks_ = 0;
};

namespace {

TEST(Creator, SetupMessagesInOrder) {
  for (const auto& row : readTable("setup_messages.txt")) {
    CreateSettings settings;
    settings.white = addedMen(row[0]);
    settings.black = addedMen(row[1]);
    settings.setup = setupFromFen(row[2]);
    Recorded run(settings);
    run.stopWhenTesting = true;  // an accepted set-up need not be searched
    const jobs::RunEnd end = run.run(0);
    if (row[3] == "-") {
      EXPECT_TRUE(run.messages.empty()) << row[2];
      EXPECT_EQ(end, jobs::RunEnd::Stopped) << row[2];
    } else {
      EXPECT_EQ(run.messages, std::vector<std::string>{"Velkaro - " + row[3]}) << row[2];
      EXPECT_EQ(end, jobs::RunEnd::Refused) << row[2];
      EXPECT_TRUE(run.records.empty()) << row[2];
    }
  }
}

// ---- The independent judgement of one placement.

struct Expected {
  std::array<std::int8_t, 64> board;
  core::MoveRecord key;
  int flights;
  FlightMark mark;
};

// The squares the Black king can move to, from the list of Black's legal moves.
std::set<int> blackKingMoves(core::BoardSetup setup) {
  setup.sideToMove = core::Black;
  setup.lastMoveSquare = 0;
  std::set<int> squares;
  for (const core::FirstMove& move : core::firstMoveList(setup)) {
    if (move.movedPiece == -core::piece::King) squares.insert(move.toSquare);
  }
  return squares;
}

bool blackInCheck(const core::BoardSetup& setup) {
  core::Position position{};
  std::copy(setup.board.begin(), setup.board.end(), position.board);
  return core::isAttackedByWhite(core::firstSquareOf(position.board, -core::piece::King), position) >= 0;
}

std::optional<core::MoveRecord> onlyKey(solver::KeyFinder& finder, const core::BoardSetup& setup, int moves) {
  const auto keys = finder.keys(setup, core::Stipulation{false, false, moves});
  if (!keys || keys->size() != 1) return std::nullopt;
  return keys->front().move;
}

std::optional<Expected> judge(const core::BoardSetup& setup, const CreateSettings& settings,
                              solver::KeyFinder& finder) {
  const auto key = onlyKey(finder, setup, settings.moves);
  if (!key) return std::nullopt;
  const KeyRestrictions& rules = settings.restrictions;
  if (rules.noDuals) {
    const auto listed = finder.keys(setup, core::Stipulation{false, false, settings.moves}, 0, true);
    const auto& lines = listed->front().variations;
    if (std::any_of(lines.begin(), lines.end(), [](const solver::Variation& line) { return line.dual; })) {
      return std::nullopt;
    }
  }
  if (rules.noCapturing && setup.board[key->toSquare] != 0) return std::nullopt;
  EXPECT_GT(key->moveKind, core::kind::EnPassant) << "the scenarios have no castling or en passant";
  core::BoardSetup after = setup;
  after.board[key->fromSquare] = 0;
  after.board[key->toSquare] = key->placedPiece;
  if (rules.noChecking && blackInCheck(after)) return std::nullopt;
  const std::set<int> before = blackKingMoves(setup);
  const std::set<int> flights = blackKingMoves(after);
  if (rules.noRestrict && before.size() > flights.size()) return std::nullopt;
  for (int square = 0; square < 64; ++square) {
    const int code = setup.board[square];
    if (code == 0 || std::abs(code) == core::piece::King || square == key->fromSquare || square == key->toSquare) {
      continue;
    }
    core::BoardSetup smaller = setup;
    smaller.board[square] = 0;
    if (onlyKey(finder, smaller, settings.moves) == key) return std::nullopt;
  }
  const FlightMark mark = flights.size() > before.size()   ? FlightMark::Gained
                          : flights.size() < before.size() ? FlightMark::Lost
                          : flights == before              ? FlightMark::Same
                                                           : FlightMark::Moved;
  Expected expected{{}, *key, static_cast<int>(before.size()), mark};
  std::copy(setup.board.begin(), setup.board.end(), expected.board.begin());
  return expected;
}

// ---- Every placement in turn: the groups in their list order, the last
// turning fastest; within a group the men's squares in ascending order,
// the highest man turning fastest.

struct Men {
  int code;
  int count;
};

std::vector<Men> groupsOf(const CreateSettings& settings) {
  std::vector<Men> groups;
  const AddedMen& w = settings.white;
  const AddedMen& b = settings.black;
  using namespace core::piece;
  for (const Men men : {Men{Pawn, w.pawns}, Men{-Pawn, b.pawns}, Men{Queen, w.queens}, Men{-Queen, b.queens},
                        Men{Rook, w.rooks}, Men{-Rook, b.rooks}, Men{Bishop, w.bishops}, Men{-Bishop, b.bishops},
                        Men{Knight, w.knights}, Men{-Knight, b.knights}}) {
    if (men.count > 0) groups.push_back(men);
  }
  return groups;
}

template <typename Visit>
void placeGroups(core::BoardSetup& setup, const std::vector<Men>& groups, std::size_t group, const Visit& visit);

// The group's remaining `count` men on squares above `above`.
template <typename Visit>
void placeMen(core::BoardSetup& setup, const std::vector<Men>& groups, std::size_t group, int count, int above,
              const Visit& visit) {
  if (count == 0) return placeGroups(setup, groups, group + 1, visit);
  const bool pawn = std::abs(groups[group].code) == core::piece::Pawn;
  for (int square = std::max(above + 1, pawn ? 8 : 0); square < (pawn ? 56 : 64); ++square) {
    if (setup.board[square] != 0) continue;
    setup.board[square] = groups[group].code;
    placeMen(setup, groups, group, count - 1, square, visit);
    setup.board[square] = 0;
  }
}

template <typename Visit>
void placeGroups(core::BoardSetup& setup, const std::vector<Men>& groups, std::size_t group, const Visit& visit) {
  if (group == groups.size()) return visit(setup);
  placeMen(setup, groups, group, groups[group].count, -1, visit);
}

bool onAvailableSquares(const core::BoardSetup& setup, const core::BoardSetup& fixed, const CreateSettings& settings) {
  for (int square = 0; square < 64; ++square) {
    const int code = setup.board[square];
    if (code != fixed.board[square] && !settings.available[mapIndexOf(code)].allows(square)) return false;
  }
  return true;
}

std::vector<Record> expectedList(const CreateSettings& settings) {
  solver::KeyFinder finder;
  std::vector<Record> list;
  int placements = 0;
  core::BoardSetup setup = settings.setup;
  placeGroups(setup, groupsOf(settings), 0, [&](const core::BoardSetup& placed) {
    // The first placement only serves the check test at the start.
    if (placements++ == 0 || !onAvailableSquares(placed, settings.setup, settings)) return;
    if (const auto expected = judge(placed, settings, finder)) {
      list.push_back(Problem{static_cast<int>(list.size()) + 1, expected->board, expected->key, expected->flights,
                             expected->mark});
    }
  });
  list.push_back(NoFound{!list.empty()});
  return list;
}

CreateSettings scenario(const std::vector<std::string>& row) {
  CreateSettings settings;
  settings.setup = setupFromFen(row[0]);
  settings.moves = std::stoi(row[1]);
  settings.white = addedMen(row[2]);
  settings.black = addedMen(row[3]);
  settings.restrictions = {
      row[4].find("no-duals") != std::string::npos, row[4].find("no-capturing") != std::string::npos,
      row[4].find("no-checking") != std::string::npos, row[4].find("no-restrict") != std::string::npos};
  if (row[5] != "-") readMaps(row[5], settings.available);
  settings.stopOnFirstSolution = false;
  return settings;
}

TEST(Creator, InTurnListsEveryPlacementThatPasses) {
  for (const auto& row : readTable("exhaustive.txt")) {
    const CreateSettings settings = scenario(row);
    const std::vector<Record> expected = expectedList(settings);
    EXPECT_GT(expected.size(), 1u) << "a scenario without problems proves little: " << row[2] << " " << row[3];
    Recorded run(settings);
    EXPECT_EQ(run.run(), jobs::RunEnd::Finished);
    EXPECT_EQ(run.records, expected) << row[0] << " " << row[2] << " " << row[3] << " " << row[4];
  }
}

// ---- Interrupted and parallel runs list what one uninterrupted run lists.

TEST(Creator, StopsPausesAndThreadsKeepTheList) {
  CreateSettings settings = scenario(readTable("exhaustive.txt").front());
  settings.refreshInterval = 100;  // a tick at every placement
  Recorded whole(settings);
  whole.run();
  ASSERT_GT(whole.records.size(), 10u);

  Recorded stopped(settings);
  stopped.stopEvery = 1;
  stopped.run();
  EXPECT_EQ(stopped.records, whole.records);
  EXPECT_GT(stopped.resumes, 1000);
  EXPECT_EQ(stopped.job->testedMoves(), whole.job->testedMoves());

  CreateSettings pausing = settings;
  pausing.stopOnFirstSolution = true;
  pausing.threads = 2;
  Recorded paused(pausing);
  paused.stopEvery = 7;
  paused.run();
  EXPECT_EQ(paused.records, whole.records);

  settings.threads = 2;
  Recorded parallel(settings);
  parallel.run();
  EXPECT_EQ(parallel.records, whole.records);
}

TEST(Creator, RandomRunsRepeatWithTheirSeed) {
  CreateSettings settings = scenario(readTable("exhaustive.txt").front());
  settings.atRandom = true;
  settings.seed = 2024;
  settings.stopOnFirstSolution = true;
  settings.refreshInterval = 100;
  Recorded first(settings);
  first.run(12);
  ASSERT_EQ(first.records.size(), 12u);

  settings.threads = 2;
  Recorded again(settings);
  again.stopEvery = 3;
  again.run(12);
  EXPECT_EQ(again.records, first.records);

  settings.seed = 2025;
  Recorded other(settings);
  other.run(12);
  EXPECT_NE(other.records, first.records);
}

TEST(Creator, ListEndsAfterTheLastRow) {
  CreateSettings settings;
  settings.setup = setupFromFen("8/8/8/2k5/8/8/8/3K4 w - -");
  settings.white = addedMen("11010");
  settings.stopOnFirstSolution = false;
  settings.threads = 2;
  Recorded run(settings);
  EXPECT_EQ(run.run(), jobs::RunEnd::Finished);
  ASSERT_EQ(run.records.size(), static_cast<std::size_t>(kMaxProblems) + 1);
  EXPECT_EQ(std::get<Problem>(run.records[kMaxProblems - 1]).ordinal, kMaxProblems);
  EXPECT_EQ(run.records.back(), Record{AndOther{}});
  EXPECT_EQ(run.job->resume(), jobs::RunEnd::Finished);
}

}  // namespace
}  // namespace velkaro::generator
