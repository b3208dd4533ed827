// The Creator: its set-up messages in order, complete runs against an
// independent enumeration and judgement of every placement, and the same list
// however a run is interrupted and on however many threads it tests.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "core/attacks.h"
#include "core/first_moves.h"
#include "generator_support.h"
#include "solver/key_finder.h"

namespace velkaro::generator {
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

TEST(Creator, TooFewAvailableSquaresFindNothing) {
  CreateSettings settings = scenario(readTable("exhaustive.txt").front());
  readMaps("Q:a1", settings.available);
  settings.white.queens = 2;
  Recorded run(settings);
  EXPECT_EQ(run.run(), jobs::RunEnd::Finished);
  EXPECT_EQ(run.records, std::vector<Record>{NoFound{false}});
  EXPECT_EQ(run.job->testedMoves().total(), 0u);
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
