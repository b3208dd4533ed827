// The continuation counter: count lines against published perft counts, the
// billions form, a forced first move, Stop and Continue, and the "Select
// move" list.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/notation.h"
#include "counter/counting_job.h"
#include "counter/first_moves.h"
#include "formats/fen.h"
#include "solver_fixture.h"

namespace velkaro::counter {
namespace {

using solver::BigCount;
using solver::RunEnd;

struct Count {
  solver::Recorder recorder;
  std::vector<std::string> messages;
  CountSettings settings;
  std::unique_ptr<CountingJob> job = std::make_unique<CountingJob>(recorder, recorder, recorder);
  int stops = 0;

  Count(const char* fen, int depth) {
    recorder.messages = &messages;
    formats::FenImport import;
    EXPECT_TRUE(import.selectLine({fen}, 0, "FEN")) << fen;
    settings.setup = formats::setupFromImport(import.result());
    settings.depth = depth;
  }

  std::string runToEnd() {
    RunEnd end = job->start(settings);
    while (end == RunEnd::Stopped) {
      ++stops;
      end = job->resume();
    }
    return job->solutionText();
  }
};

constexpr const char* kStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -";

TEST(Counter, StartPosition) {
  EXPECT_EQ(Count(kStart, 5).runToEnd(),
            "In 1 single moves:\n 20                                 x20.00   / Black /\n"
            "In 2 single moves:\n 400                               x20.00   / White /\n"
            "In 3 single moves:\n 8 902                            x22.25   / Black /\n"
            "In 4 single moves:\n 197 281                        x22.16   / White /\n"
            "In 5 single moves:\n 4 865 609                     x24.66   / Black /\n");
  // Black first: the same counts, the sides named the other way round.
  EXPECT_EQ(Count("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq -", 2).runToEnd(),
            "In 1 single moves:\n 20                                 x20.00   / White /\n"
            "In 2 single moves:\n 400                               x20.00   / Black /\n");
}

TEST(Counter, Kiwipete) {
  const char* expected =
      "In 1 single moves:\n 48                                 x48.00   / %s /\n"
      "In 2 single moves:\n 2 039                            x42.48   / %s /\n"
      "In 3 single moves:\n 97 862                          x48.00   / %s /\n"
      "In 4 single moves:\n 4 085 603                     x41.75   / %s /\n";
  auto withSides = [&](const char* odd, const char* even) {
    char text[512];
    std::snprintf(text, sizeof text, expected, odd, even, odd, even);
    return std::string(text);
  };
  EXPECT_EQ(Count("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -", 4).runToEnd(),
            withSides("Black", "White"));
  // The same position with colours exchanged and Black to move has the same counts.
  EXPECT_EQ(Count("r3k2r/pppbbppp/2n2q1P/1P2p3/3pn3/BN2PNP1/P1PPQPB1/R3K2R b KQkq -", 4).runToEnd(),
            withSides("White", "Black"));
}

TEST(Counter, CountLineColumns) {
  struct Case {
    BigCount count;
    BigCount previous;
    int depth;
    const char* line;
  };
  const Case cases[] = {
      {{0, 7}, {0, 1}, 1, " 7                                   x7.00   / Black /"},
      {{0, 123'456'789}, {0, 4'865'609}, 6, " 123 456 789                 x25.37   / White /"},
      // From one billion on: billions, then the remainder in three padded groups.
      {{1, 234'567}, {0, 119'060'324}, 7, "1 000 234 567              x8.40   / Black /"},
      {{12, 5}, {3, 195'629'489}, 8, "12 000 000 005            x3.76   / White /"},
      {{0, 0}, {0, 0}, 3, " 0                                   x0.00   / Black /"},  // nothing before
  };
  for (const Case& test : cases) {
    EXPECT_EQ(countLine(test.count, test.previous, test.depth, core::White), test.line);
  }
}

TEST(Counter, ForcedFirstMove) {
  Count count(kStart, 3);
  for (const solver::FirstMove& move : firstMoveList(count.settings.setup)) {
    if (namesMove(move, "e2e4")) count.settings.firstMove = move;
  }
  ASSERT_TRUE(count.settings.firstMove.has_value());
  EXPECT_EQ(count.runToEnd(),
            "In 1 single moves:\n 1                                   x1.00   / Black /\n"
            "In 2 single moves:\n 20                                 x20.00   / White /\n"
            "In 3 single moves:\n 600                               x30.00   / Black /\n");
}

TEST(Counter, StopAndContinueChangeNothing) {
  const char* kiwipete = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -";
  Count whole(kiwipete, 3);
  const std::string expected = whole.runToEnd();
  for (const int every : {1, 3}) {
    Count interrupted(kiwipete, 3);
    interrupted.recorder.stopEvery = every;
    interrupted.job->setRefreshInterval(101);
    EXPECT_EQ(interrupted.runToEnd(), expected) << every;
    EXPECT_GT(interrupted.stops, 100);
    EXPECT_EQ(interrupted.recorder.tree().back(), " 97 862                          x48.00   / Black /");
  }
}

TEST(Counter, RefusedSetUpCountsNothing) {
  Count count("8/8/8/8/8/8/8/K6k w - -", 2);
  count.settings.setup.board[0] = core::piece::Pawn;  // a White pawn on a8
  EXPECT_EQ(count.job->start(count.settings), RunEnd::Refused);
  EXPECT_EQ(count.messages, (std::vector<std::string>{"Velkaro: White pawn !"}));
  EXPECT_EQ(count.job->solutionText(), "");
}

TEST(SelectMove, RowsAreAllMovesThenEachLegalFirstMove) {
  core::Notation notation;
  formats::FenImport import;
  // The knight on d2 is pinned; en passant b5xa6 is offered after a7-a5.
  ASSERT_TRUE(import.selectLine({"3rk3/8/8/pP6/8/8/3N4/3K4 w - -"}, 0, "FEN"));
  core::BoardSetup setup = formats::setupFromImport(import.result());
  setup.lastMoveSquare = core::squareAt(0, 5);
  const std::vector<solver::FirstMove> moves = firstMoveList(setup);
  EXPECT_EQ(selectMoveRows(moves, notation),
            (std::vector<std::string>{"Wszystkie", " b5 - b6 ", " b5 - a6 ", "Kd1 - c1 ", "Kd1 - c2 ", "Kd1 - e2 ",
                                      "Kd1 - e1 "}));
  EXPECT_EQ(moves[1].moveKind, core::kind::EnPassant);
  EXPECT_EQ(moves[1].ordinal, 1);
  EXPECT_EQ(moves[5].ordinal, 3);  // Kd1-e1: the king's fourth move, after c1, c2 and e2
}

}  // namespace
}  // namespace velkaro::counter
