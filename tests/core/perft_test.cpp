// Move generation checked end to end: leaf counts of the legal-move tree
// against published values and against counts from an independent engine.

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "core/legal.h"
#include "core/perft.h"
#include "formats/fen.h"

namespace velkaro::core {
namespace {

struct PerftCase {
  const char* name;
  const char* fen;
  const char* enPassant;  // the "last move" square, or ""
  std::vector<std::uint64_t> counts;  // depth 1, 2, ...
};

PlyStack& stackFor(const char* fen, const char* enPassant) {
  static PlyStack stack;
  formats::FenImport import;
  EXPECT_TRUE(import.selectLine({fen}, 0, "FEN")) << fen;
  BoardSetup setup = formats::setupFromImport(import.result());
  if (enPassant[0] != 0) setup.lastMoveSquare = squareAt(enPassant[0] - 'a', enPassant[1] - '0');
  stack = PlyStack{};
  setUpRoot(stack, setup);
  return stack;
}

// Counts beyond this many leaves run only in optimised builds, so that the
// sanitizer build stays quick.
#ifdef NDEBUG
constexpr std::uint64_t kLeafBudget = 200'000'000;
#else
constexpr std::uint64_t kLeafBudget = 5'000'000;
#endif

const PerftCase kPublished[] = {
    {"start", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -", "",
     {20, 400, 8902, 197281, 4865609, 119060324}},
    {"kiwipete", "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -", "",
     {48, 2039, 97862, 4085603}},
    {"rook endgame", "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -", "", {14, 191, 2812, 43238, 674624, 11030083}},
    {"promotions and castling", "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq -", "",
     {6, 264, 9467, 422333}},
    {"discovered checks", "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ -", "", {44, 1486, 62379, 2103487}},
    {"middlegame", "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - -", "",
     {46, 2079, 89890, 3894594}},
    {"promotion race", "n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - -", "", {24, 496, 9483, 182838, 3605103}},
};

// Counted with Debian's stockfish ("go perft N") for the same positions.
const PerftCase kOwn[] = {
    {"en passant pinned along the rank", "8/8/8/8/k2Pp2Q/8/8/3K4 b - -", "d4", {6, 136, 863, 20471, 117741}},
    {"check escaped by en passant", "8/8/8/2k5/3Pp3/8/8/4K3 b - -", "d4", {9, 50, 379, 2369, 17879}},
    {"en passant at a deeper ply", "8/5bk1/8/2Pp4/8/1K6/8/8 w - -", "d5", {8, 104, 736, 9287, 62297, 824064}},
    {"castling, White first", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq -", "", {26, 568, 13744, 314346}},
    {"castling, Black first", "r3k2r/8/8/8/8/8/8/R3K2R b KQkq -", "", {26, 568, 13744, 314346}},
    {"castling out of and through check", "r3k2r/8/3Q4/8/8/5q2/8/R3K2R b KQkq -", "", {44, 1494, 50509, 1720476}},
    {"castling against bishops", "r3k2r/1b4bq/8/8/8/8/7B/R3K2R w KQkq -", "", {26, 1141, 27826, 1274206}},
    {"short castling only", "5k2/8/8/8/8/8/8/4K2R w K -", "", {15, 66, 1198, 6399, 120330, 661072}},
    {"long castling only", "3k4/8/8/8/8/8/8/R3K3 w Q -", "", {16, 71, 1286, 7418, 141077, 803711}},
    {"promotion by capture", "2K2r2/4P3/8/8/8/8/8/3k4 w - -", "", {11, 133, 1442, 19174, 266199, 3821001}},
    {"underpromotion to avoid stalemate", "8/P1k5/K7/8/8/8/8/8 w - -", "", {6, 27, 273, 1329, 18135, 92683}},
    {"promotion giving check", "4k3/1P6/8/8/8/8/K7/8 w - -", "", {9, 40, 472, 2661, 38983, 217342}},
    {"rook pinning the pawn", "3k4/3p4/8/K1P4r/8/8/8/8 b - -", "", {18, 92, 1670, 10138, 185429, 1134888}},
    {"queen and knight checks", "8/8/2k5/5q2/5n2/8/5K2/8 b - -", "", {37, 183, 6559, 23527}},
};

void expectCounts(const PerftCase& test) {
  for (std::size_t depth = 1; depth <= test.counts.size(); ++depth) {
    const std::uint64_t expected = test.counts[depth - 1];
    if (expected > kLeafBudget) continue;
    PlyStack& stack = stackFor(test.fen, test.enPassant);
    EXPECT_EQ(perft(stack, static_cast<int>(depth)), expected) << test.name << " depth " << depth;
  }
}

TEST(Perft, PublishedCounts) {
  for (const PerftCase& test : kPublished) expectCounts(test);
}

TEST(Perft, EnPassantCastlingAndPromotionCounts) {
  for (const PerftCase& test : kOwn) expectCounts(test);
}

// Castling rights change only for the side that moves. After 1.Ra1xa8 Rb8xa8
// a Black rook stands on a8 again and Black's long castling flag was never
// cleared, so Black may castle long at ply 4, after each of White's 5 king
// moves: 5 leaves more than the 98 754 that rules clearing the flag on the
// capture give.
TEST(Perft, CastlingRightsChangeOnlyForTheMover) {
  PlyStack& stack = stackFor("rr2k3/8/8/8/8/8/8/R3K3 w q -", "");
  EXPECT_EQ(perft(stack, 4), 98754u + 5u);
}

}  // namespace
}  // namespace velkaro::core
