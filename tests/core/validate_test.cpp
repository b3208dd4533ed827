// The set-up check: each refusal with its exact text and in its order, the
// loose limits for promoted men, the check test on the side that has just
// moved, and what an accepted position leaves in frame 1.

#include "core/validate.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace velkaro::core {
namespace {

struct RecordingSink : MessageSink {
  std::vector<std::pair<std::string, std::string>> shown;
  void showMessage(std::string_view caption, std::string_view text) override {
    shown.emplace_back(std::string(caption), std::string(text));
  }
};

int sq(const char* name) { return squareAt(name[0] - 'a', name[1] - '0'); }
int& at(BoardSetup& setup, const char* name) { return setup.board[static_cast<std::size_t>(sq(name))]; }

// Runs the check; returns the one message shown, or "" when accepted.
std::string verdict(const BoardSetup& setup) {
  auto stack = std::make_unique<PlyStack>();
  RecordingSink sink;
  const int refused = validatePosition(setup, *stack, sink);
  EXPECT_EQ(refused, sink.shown.empty() ? 0 : 1);
  EXPECT_LE(sink.shown.size(), 1u);
  if (sink.shown.empty()) return "";
  EXPECT_EQ(sink.shown[0].first, "Velkaro");
  return sink.shown[0].second;
}

// White king h1; Black king a8 sheltered by pawns on a7 and b7, so White men
// added on ranks 2-4 never give check. White to move.
BoardSetup shelteredKings() {
  BoardSetup setup;
  at(setup, "h1") = piece::King;
  at(setup, "a8") = -piece::King;
  at(setup, "a7") = at(setup, "b7") = -piece::Pawn;
  return setup;
}

// Adds White men from h2 backwards through rank 4, Black men from c7 on
// through rank 5, on the first empty squares.
void add(BoardSetup& setup, int code, int count) {
  int square = code > 0 ? sq("h2") : sq("c7");
  for (; count > 0; --count) {
    while (setup.board[static_cast<std::size_t>(square)] != 0) square += code > 0 ? -1 : 1;
    setup.board[static_cast<std::size_t>(square)] = code;
  }
}

struct Men {
  int code;
  int count;
};

struct RefusalCase {
  const char* expected;
  std::vector<Men> added;
  std::vector<std::pair<const char*, int>> placed;  // square, code (0 clears)
};

BoardSetup build(const RefusalCase& c) {
  BoardSetup setup = shelteredKings();
  for (auto [code, count] : c.added) add(setup, code, count);
  for (auto [name, code] : c.placed) at(setup, name) = code;
  return setup;
}

using namespace piece;

// Each board breaks one rule only, so dropping or weakening a check lets it through.
const RefusalCase kOneRuleBroken[] = {
    {"No found white king", {}, {{"h1", 0}}},
    {"Too many black kings", {}, {{"a1", King}}},
    {"No found black king", {}, {{"a8", 0}}},
    {"Too many black kings", {}, {{"h8", -King}}},
    {"Too many white pieces", {{Pawn, 6}, {Queen, 2}, {Rook, 3}, {Bishop, 3}, {Knight, 2}}, {}},
    {"Too many black pieces", {{-Pawn, 4}, {-Queen, 2}, {-Rook, 3}, {-Bishop, 3}, {-Knight, 2}}, {}},
    {"Too many white pawns", {{Pawn, 9}}, {}},
    {"Too many black pawns", {{-Pawn, 7}}, {}},
    {"Too many white queens", {{Pawn, 8}, {Queen, 2}}, {}},
    {"Too many black queens", {{-Pawn, 6}, {-Queen, 2}}, {}},
    {"Too many white rooks", {{Pawn, 8}, {Rook, 3}}, {}},
    {"Too many black rooks", {{-Pawn, 6}, {-Rook, 3}}, {}},
    {"Too many white bishops", {{Pawn, 8}, {Bishop, 3}}, {}},
    {"Too many black bishops", {{-Pawn, 6}, {-Bishop, 3}}, {}},
    {"Too many white knights", {{Pawn, 8}, {Knight, 3}}, {}},
    {"Too many black knights", {{-Pawn, 6}, {-Knight, 3}}, {}},
    {"White pawn !", {}, {{"d8", Pawn}}},
    {"White pawn !", {}, {{"d1", Pawn}}},
    {"Black pawn !", {}, {{"d8", -Pawn}}},
    {"Black pawn !", {}, {{"d1", -Pawn}}},
    {"CHECKMATE !", {}, {{"h8", Rook}}},
    {"", {{Pawn, 8}, {Queen, 1}, {Rook, 2}, {Bishop, 2}, {Knight, 2}}, {}},  // every limit reached
};

// Boards breaking two rules that follow each other in the order (a missing
// and a doubled king exclude each other, so those pairs skip one): the
// earlier must be reported. Together the pairs pin down the whole order.
const RefusalCase kEarlierRuleWins[] = {
    {"No found white king", {}, {{"h1", 0}, {"a8", 0}}},
    {"Too many black kings", {}, {{"a1", King}, {"a8", 0}}},
    {"No found black king", {{Pawn, 6}, {Queen, 2}, {Rook, 3}, {Bishop, 3}, {Knight, 2}}, {{"a8", 0}}},
    {"Too many black kings", {{Pawn, 6}, {Queen, 2}, {Rook, 3}, {Bishop, 3}, {Knight, 2}}, {{"h8", -King}}},
    {"Too many white pieces",
     {{Pawn, 6}, {Queen, 2}, {Rook, 3}, {Bishop, 3}, {Knight, 2},
      {-Pawn, 4}, {-Queen, 2}, {-Rook, 3}, {-Bishop, 3}, {-Knight, 2}}, {}},
    {"Too many black pieces", {{-Pawn, 4}, {-Queen, 2}, {-Rook, 3}, {-Bishop, 3}, {-Knight, 2}, {Pawn, 9}}, {}},
    {"Too many white pawns", {{Pawn, 9}, {-Pawn, 7}}, {}},
    {"Too many black pawns", {{-Pawn, 7}, {Pawn, 8}, {Queen, 2}}, {}},
    {"Too many white queens", {{Pawn, 8}, {Queen, 2}, {-Pawn, 6}, {-Queen, 2}}, {}},
    {"Too many black queens", {{-Pawn, 6}, {-Queen, 2}, {Pawn, 8}, {Rook, 3}}, {}},
    {"Too many white rooks", {{Pawn, 8}, {Rook, 3}, {-Pawn, 6}, {-Rook, 3}}, {}},
    {"Too many black rooks", {{-Pawn, 6}, {-Rook, 3}, {Pawn, 8}, {Bishop, 3}}, {}},
    {"Too many white bishops", {{Pawn, 8}, {Bishop, 3}, {-Pawn, 6}, {-Bishop, 3}}, {}},
    {"Too many black bishops", {{-Pawn, 6}, {-Bishop, 3}, {Pawn, 8}, {Knight, 3}}, {}},
    {"Too many white knights", {{Pawn, 8}, {Knight, 3}, {-Pawn, 6}, {-Knight, 3}}, {}},
    {"Too many black knights", {{-Pawn, 6}, {-Knight, 3}}, {{"d1", Pawn}}},
    {"White pawn !", {}, {{"d1", Pawn}, {"e8", -Pawn}}},
    {"Black pawn !", {}, {{"e1", -Pawn}, {"h8", Rook}}},
};

TEST(Validation, EachRuleRefusesWithItsOwnMessageInOrder) {
  auto expectVerdicts = [](const auto& table) {
    for (const RefusalCase& c : table) {
      SCOPED_TRACE(c.expected);
      EXPECT_EQ(verdict(build(c)), c.expected);
    }
  };
  expectVerdicts(kOneRuleBroken);
  expectVerdicts(kEarlierRuleWins);
}

TEST(Validation, QueensBeyondEightNeedMissingPawns) {
  BoardSetup setup = shelteredKings();
  add(setup, Queen, 9);
  EXPECT_EQ(verdict(setup), "");
  add(setup, Pawn, 1);
  EXPECT_EQ(verdict(setup), "Too many white queens");
}

struct CheckCase {
  const char* what;
  std::vector<std::pair<const char*, int>> men;
  int sideToMove;
  const char* expected;
};

const CheckCase kCheckCases[] = {
    {"black king checked, white to move", {{"e1", King}, {"e8", -King}, {"e4", Rook}}, White, "CHECKMATE !"},
    {"black king checked, black to move", {{"e1", King}, {"e8", -King}, {"e4", Rook}}, Black, ""},
    {"white king checked, black to move", {{"e1", King}, {"e8", -King}, {"b4", -Bishop}}, Black, "CHECKMATE !"},
    {"white king checked, white to move", {{"e1", King}, {"e8", -King}, {"b4", -Bishop}}, White, ""},
    {"adjacent kings, white to move", {{"e4", King}, {"e5", -King}}, White, "CHECKMATE !"},
    {"adjacent kings, black to move", {{"d4", King}, {"e5", -King}}, Black, "CHECKMATE !"},
    {"white pawn in front of black king", {{"a1", King}, {"e5", -King}, {"e4", Pawn}}, White, ""},
    {"white pawn beside the file", {{"a1", King}, {"e5", -King}, {"d4", Pawn}}, White, "CHECKMATE !"},
    {"black pawn in front of white king", {{"e4", King}, {"h8", -King}, {"e5", -Pawn}}, Black, ""},
    {"black pawn beside the file", {{"e4", King}, {"h8", -King}, {"f5", -Pawn}}, Black, "CHECKMATE !"},
};

TEST(Validation, SideThatHasJustMovedMustNotBeInCheck) {
  for (const CheckCase& c : kCheckCases) {
    SCOPED_TRACE(c.what);
    BoardSetup setup;
    setup.sideToMove = c.sideToMove;
    for (auto [name, code] : c.men) at(setup, name) = code;
    EXPECT_EQ(verdict(setup), c.expected);
  }
}

TEST(Validation, AcceptedPositionFillsRootFrame) {
  BoardSetup setup;
  at(setup, "g1") = King;
  at(setup, "c7") = -King;
  at(setup, "d5") = -Queen;
  at(setup, "b2") = Pawn;
  setup.sideToMove = Black;
  auto stack = std::make_unique<PlyStack>();
  for (auto& square : (*stack)[1].position.board) square = Rook;  // stale contents
  RecordingSink sink;
  ASSERT_EQ(validatePosition(setup, *stack, sink), 0);
  EXPECT_TRUE(sink.shown.empty());
  const Position& root = (*stack)[1].position;
  for (int square = 0; square < 64; ++square) {
    EXPECT_EQ(root.board[square], setup.board[static_cast<std::size_t>(square)]) << "square " << square;
  }
  EXPECT_EQ(root.whiteKingSquare, sq("g1"));
  EXPECT_EQ(root.blackKingSquare, sq("c7"));
}

}  // namespace
}  // namespace velkaro::core
