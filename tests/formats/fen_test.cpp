// Tests of the FEN reader and writer: which lines the import accepts, what it
// takes over from the fields after the placement, the stipulation read from
// tags and opcodes, the writer's text, and written lines read back.

#include "formats/fen.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace velkaro::formats {
namespace {

using core::piece::King;

constexpr char kKings[] = "8/8/8/8/8/8/8/K6k";  // White king a1, Black king h1

struct CheckCase {
  std::string line;
  bool valid;
  int side;
};

TEST(FenCheck, AcceptsOnlyAStrictPlacement) {
  const CheckCase cases[] = {
      {"8/8/8/8/8/8/8/K6k", true, 0},                 // 16 characters, no side field
      {"8/8/8/8/8/8/8/8", false, 0},                  // complete, but only 15 characters
      {"8/8/8/8/8/8/K6k w - - 1 2 and more", false, 0},  // six slashes
      {"9/8/8/8/8/8/8/K6k w - -", false, 0},
      {"8/8/8/99999999/8/8/8/K6k w - -", false, 0},
      {"44/8/8/8/8/8/8/K6k b - -", true, -1},
      {"K7/8/8/8/8/8/8/7k w - -", true, 1},
      {"K6/8/8/8/8/8/8/7k w - -", false, 0},          // seven squares, then the slash
      {"K62/8/8/8/8/8/8/7k w - -", false, 0},         // nine squares
      {"8/8/8/8/8/8/8/K6k/ w - -", true, 0},          // slash after the last row stops before the side
      {"8/8/8/8/8/8/8/K6/ w - -", false, 0},          // the last row has no slash
      {"8/8/8/8/8/8/8/K6k - - -", true, 0},
      {"8/8/8/8/8/8/8/K6k x - -", true, 0},
      {"8/8/8/8/8/8/8/K6kw - -", true, 0},
      {"xK7/8/8/8/8/8/8/7k w - -", false, 0},         // one character before the FEN is never skipped
      {"x K7/8/8/8/8/8/8/7k w - -", true, 1},
      {"K6,/8/8/8/8/8/8/7k w - -", true, 1},          // the comma passes as a square
      {"8/8/8/8/8/8/8/K5,k w - -", true, 1},
  };
  for (const CheckCase& c : cases) {
    SCOPED_TRACE(c.line);
    FenImport import;
    EXPECT_EQ(import.selectLine({c.line}, 0, "FEN"), c.valid);
    EXPECT_EQ(import.placementValid(), c.valid);
    EXPECT_EQ(import.result().sideToMove, c.side);
    if (!c.valid) {
      EXPECT_EQ(import.result().board, ImportResult{}.board);
    }
  }
}

TEST(FenCheck, LinesAreCutAt255Characters) {
  const std::string fits = std::string(237, 'x') + " " + kKings;  // 255 characters
  const std::string cut = "x" + fits;                             // the last "k" is cut off
  FenImport import;
  EXPECT_TRUE(import.selectLine({fits}, 0, "FEN"));
  EXPECT_EQ(import.result().board[63], -King);
  EXPECT_FALSE(import.selectLine({cut}, 0, "FEN"));
}

TEST(FenToPosition, RowClosedByK8WithoutSlash) {
  // "K8" closes the first row, so the remaining rows shift up one: the slash
  // that would have ended it is missing, and the Black king lands on h2.
  FenImport import;
  ASSERT_TRUE(import.selectLine({"K88/8/8/8/8/8/7k w - - /"}, 0, "FEN"));
  EXPECT_EQ(import.result().board[0], King);
  EXPECT_EQ(import.result().board[55], -King);
  EXPECT_EQ(import.result().board[63], 0);
}

TEST(FenToPosition, CommaEndsThePlacement) {
  for (const std::string line : {"K6,/8/8/8/8/8/8/7k w KQkq -", "8/8/8/8/8/8/8/K5,k b - -", ",7/8/8/8/8/8/8/7k w"}) {
    SCOPED_TRACE(line);
    FenImport import;
    ASSERT_TRUE(import.selectLine({"[Ask \"#2\"]", line}, 1, "FEN"));
    int pieces = 0;
    for (int code : import.result().board) pieces += code != 0;
    EXPECT_LE(pieces, 1);                         // nothing after the comma is placed
    EXPECT_EQ(import.result().board[63], 0);
    EXPECT_EQ(import.result().whiteLongCastle, 0);
    EXPECT_NE(import.result().sideToMove, 0);     // read by the check all the same
    EXPECT_EQ(import.stipulationText(), "#2");
  }
}

struct FieldCase {
  std::string line;
  int side;
  std::array<int, 4> castling;  // Q, K, q, k
  std::string normalized;
};

TEST(FenToPosition, CastlingOnlyFromLinesThatStartWithTheFen) {
  const FieldCase cases[] = {
      {"8/8/8/8/8/8/8/K6k w KQkq -", 1, {1, 1, 1, 1}, "8/8/8/8/8/8/8/K6k w KQkq -"},
      {"8/8/8/8/8/8/8/K6k b Qk", -1, {1, 0, 0, 1}, "8/8/8/8/8/8/8/K6k b Qk"},
      {"8/8/8/8/8/8/8/K6k w K,q - 0 1", 1, {0, 1, 1, 0}, "8/8/8/8/8/8/8/K6k w K,q -"},
      {"8/8/8/8/8/8/8/K6k w - e3", 1, {0, 0, 0, 0}, "8/8/8/8/8/8/8/K6k w - e3"},
      {"8/8/8/8/8/8/8/K6k w KQxq -", 1, {1, 1, 0, 0}, "8/8/8/8/8/8/8/K6k w KQ"},
      {"[FEN \"8/8/8/8/8/8/8/K6k w KQkq -\"]", 1, {0, 0, 0, 0}, "8/8/8/8/8/8/8/K6k w"},
      {"id \"p1\"; 8/8/8/8/8/8/8/K6k b KQkq -", -1, {0, 0, 0, 0}, "8/8/8/8/8/8/8/K6k b"},
  };
  for (const FieldCase& c : cases) {
    SCOPED_TRACE(c.line);
    FenImport import;
    ASSERT_TRUE(import.selectLine({c.line}, 0, "PGN"));
    const ImportResult& r = import.result();
    EXPECT_EQ(r.sideToMove, c.side);
    EXPECT_EQ((std::array<int, 4>{r.whiteLongCastle, r.whiteShortCastle, r.blackLongCastle, r.blackShortCastle}),
              c.castling);
    EXPECT_EQ(import.normalized(), c.normalized);
    EXPECT_EQ(r.board[56], King);
  }
}

struct EnPassantCase {
  std::string line;
  char file;
  int lastMoveSquare;  // after setupFromImport
};

TEST(FenToPosition, EnPassantTakenOnlyWhenTheLastDigitPointsAtAFileLetter) {
  const EnPassantCase cases[] = {
      // The last digit is 1 and the copy's character 1 is "n": the field is ignored.
      {"rnbqkbnr/pp1ppppp/8/2p5/4P3/8/PPPP1PPP/RNBQKBNR w KQkq c6", 0, 0},
      // The last digit is 2 and character 2 is "b", which passes the file list.
      {"rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKB2 w Qkq d6", 'd', core::squareAt(3, 5)},
      {"rnbqkbnr/pppp1ppp/8/8/3pP3/8/PPPP1PPP/RNBQKB2 b Qkq e3", 'e', core::squareAt(4, 4)},
      {"rnbqkbnr/pppp1ppp/8/8/3pP3/8/PPPP1PPP/RNBQKB2 - Qkq e3", 'e', core::squareAt(4, 5)},
      {"rnbqkbnr/pppp1ppp/8/8/8/8/PPPP1PPP/RNBQKB2 w Qkq -", '-', 0},
      {"rnbqkbnr/pppp1ppp/8/8/8/8/PPPP1PPP/RNBQKB2 w Qkq x", 0, 0},
  };
  for (const EnPassantCase& c : cases) {
    SCOPED_TRACE(c.line);
    FenImport import;
    ASSERT_TRUE(import.selectLine({c.line}, 0, "FEN"));
    EXPECT_EQ(import.result().enPassantFile, c.file);
    EXPECT_EQ(setupFromImport(import.result()).lastMoveSquare, c.lastMoveSquare);
  }
}

TEST(FenImport, SetupFromImportTakesMissingSideAsWhite) {
  FenImport import;
  ASSERT_TRUE(import.selectLine({kKings}, 0, "FEN"));
  const core::BoardSetup setup = setupFromImport(import.result());
  EXPECT_EQ(setup.sideToMove, core::White);
  EXPECT_EQ(setup.board[56], King);
  EXPECT_EQ(setup.board[63], -King);
  EXPECT_EQ(setup.lastMoveSquare, 0);
}

struct StipulationCase {
  std::vector<std::string> lines;  // the last line is the one selected
  std::string type;
  std::string text;
  bool helpmate;
  bool selfmate;
  int moves;
};

TEST(FenStipulation, ReadFromTagsAndOpcodes) {
  const std::string fen = std::string(kKings) + " w - -";
  const std::string pgnFen = "[FEN \"" + fen + "\"]";
  const StipulationCase cases[] = {
      {{"[Ask \"H#3\"]", fen}, "FEN", "H#3", true, false, 3},
      {{"[Ask S#12; set play]", "", "a comment", fen}, "FEN", "S#12", false, true, 12},
      {{"[Ask \"h#2 (2.1.1.1)\"]", fen}, "FEN", "h#2", true, false, 2},
      {{"[Ask \"#123\"]", fen}, "FEN", "#123", false, false, 12},
      {{"a comment", fen}, "FEN", "", false, false, 0},
      {{fen + " c6 H#;dm 3;"}, "EPD", "H#3", true, false, 3},
      {{fen + " dm 2;"}, "EPD", "2", false, false, 2},
      {{fen + " c6 S#"}, "EPD", "", false, false, 0},  // the comment is not closed
      {{"rnbqkbnr/pp1ppppp/8/2p5/4P3/8/PPPP1PPP/RNBQKBNR w KQkq c6 dm 4;"}, "EPD", "dm 44", false, false, 4},
      {{"[Event \"S#\"]", "[Site \"?\"]", "[PlyCount \"12\"]", pgnFen}, "PGN", "S#12", false, true, 12},
      {{"[PlyCount \"3\"]", "[Event \"H#\"]", pgnFen}, "PGN", "H#3", true, false, 3},
      {{"[PlyCount \"3\"]", "", "[Event \"H#\"]", pgnFen}, "PGN", "H#", true, false, 0},
      {{"[Event \"#\"]", "[PlyCount \"07\"]", pgnFen}, "PGN", "#", false, false, 0},
      // The nearest tag beginning with "[Event" counts, EventDate included.
      {{"[PlyCount \"4\"]", "[Event \"S#\"]", "[EventDate \"1990\"]", pgnFen}, "PGN", "Date 4", false, false, 4},
      {{"[Event \"H#\"]", "[PlyCount \"3\"]", pgnFen}, "FEN", "", false, false, 0},
  };
  for (const StipulationCase& c : cases) {
    SCOPED_TRACE(c.lines.back());
    const int selected = static_cast<int>(c.lines.size()) - 1;
    const TagStipulation s = ReadStipulationFromTags(c.lines, selected, c.type);
    EXPECT_EQ(s.text, c.text);
    EXPECT_EQ(s.helpmate, c.helpmate);
    EXPECT_EQ(s.selfmate, c.selfmate);
    EXPECT_EQ(s.moves, c.moves);

    FenImport import;
    ASSERT_TRUE(import.selectLine(c.lines, selected, c.type));
    EXPECT_EQ(import.stipulationText(), c.text);
    EXPECT_EQ(import.result().helpmate, c.helpmate ? 1 : 0);
    EXPECT_EQ(import.result().selfmate, c.selfmate ? 1 : 0);
    EXPECT_EQ(import.result().moves, c.moves);
  }
}

TEST(FenImport, RefusedLineClearsThePreviousPosition) {
  FenImport import;
  ASSERT_TRUE(import.selectLine({"[Ask \"H#3\"]", kKings}, 1, "FEN"));
  EXPECT_FALSE(import.selectLine({"[Ask \"H#3\"]", "8/8/8/8/8/8/8/8"}, 1, "FEN"));
  EXPECT_EQ(import.result().board, ImportResult{}.board);
  EXPECT_EQ(import.stipulationText(), "");
  EXPECT_EQ(import.normalized(), "");
  EXPECT_FALSE(import.selectLine({kKings}, 5, "FEN"));  // no such line
}

TEST(FenImport, FileTypeAndLines) {
  EXPECT_EQ(fileTypeOf("problems.pgn"), "PGN");
  EXPECT_EQ(fileTypeOf("/home/u/Mates.Epd"), "EPD");
  EXPECT_EQ(fileTypeOf("x"), "X");

  const auto path = std::filesystem::temp_directory_path() / "velkaro_fen_lines_test.fen";
  {
    std::ofstream out(path, std::ios::binary);
    out << "[Ask \"#2\"]\r\n" << kKings << " w - -\r\n\r\n" << std::string(300, '8') << "\n";
  }
  const std::vector<std::string> lines = readImportLines(path.string());
  std::filesystem::remove(path);
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0], "[Ask \"#2\"]");
  EXPECT_EQ(lines[1], std::string(kKings) + " w - -");
  EXPECT_EQ(lines[2], "");
  EXPECT_EQ(lines[3].size(), 255u);
  EXPECT_TRUE(readImportLines((path.parent_path() / "velkaro_no_such_file.fen").string()).empty());
}

core::BoardSetup setupOf(std::initializer_list<std::pair<int, int>> pieces, int side = core::White) {
  core::BoardSetup setup;
  for (auto [square, code] : pieces) setup.board[static_cast<std::size_t>(square)] = code;
  setup.sideToMove = side;
  return setup;
}

TEST(FenWriter, WritesPlacementSideCastlingAndEnPassant) {
  using namespace core::piece;
  EXPECT_EQ(PositionToFen(setupOf({{56, King}, {63, -King}}), {false, false, 2}).fen(), "8/8/8/8/8/8/8/K6k w - -");

  core::BoardSetup start = setupOf({{0, -Rook}, {1, -Knight}, {2, -Bishop}, {3, -Queen}, {4, -King}, {5, -Bishop},
                                    {6, -Knight}, {7, -Rook}, {56, Rook}, {57, Knight}, {58, Bishop}, {59, Queen},
                                    {60, King}, {61, Bishop}, {62, Knight}, {63, Rook}});
  for (int file = 0; file < 8; ++file) {
    start.board[static_cast<std::size_t>(8 + file)] = -Pawn;
    start.board[static_cast<std::size_t>(48 + file)] = Pawn;
  }
  start.whiteLongCastle = start.whiteShortCastle = start.blackLongCastle = start.blackShortCastle = true;
  EXPECT_EQ(PositionToFen(start, {}).fen(), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk -");

  core::BoardSetup some = setupOf({{4, -King}, {60, King}}, core::Black);
  some.whiteShortCastle = some.blackLongCastle = true;
  EXPECT_EQ(PositionToFen(some, {}).fen(), "4k3/8/8/8/8/8/8/4K3 b Kq -");

  core::BoardSetup white = setupOf({{28, -Pawn}, {27, Pawn}});
  white.lastMoveSquare = core::squareAt(4, 5);
  EXPECT_EQ(PositionToFen(white, {}).fen(), "8/8/8/3Pp3/8/8/8/8 w - e6");
  core::BoardSetup black = setupOf({{36, Pawn}, {37, -Pawn}}, core::Black);
  black.lastMoveSquare = core::squareAt(4, 4);
  EXPECT_EQ(PositionToFen(black, {}).fen(), "8/8/8/8/4Pp2/8/8/8 b - e3");
}

TEST(FenWriter, StipulationAtPosition86) {
  struct Case {
    core::Stipulation stipulation;
    std::string text;
  };
  const Case cases[] = {{{false, false, 2}, "#2"}, {{true, false, 3}, "H#3"}, {{false, true, 12}, "S#12"},
                        {{true, false, 10}, "H#10"}, {{false, false, 99}, "#99"}};
  for (const Case& c : cases) {
    const FenText text = PositionToFen(setupOf({{56, King}, {63, -King}}), c.stipulation);
    EXPECT_EQ(text.stipulation(), c.text);
    EXPECT_EQ(std::string(text.area.data() + FenText::kStipulationAt, c.text.size()), c.text);
    EXPECT_EQ(text.area[23], '\0');  // the FEN line is zero-terminated
  }
}

TEST(FenRoundTrip, WrittenLinesReadBackUnchanged) {
  using namespace core::piece;
  std::vector<core::BoardSetup> setups = {
      setupOf({}),
      setupOf({{56, King}, {63, -King}}),
      setupOf({{4, -King}, {0, -Rook}, {7, -Rook}, {60, King}, {56, Rook}, {63, Rook}}, core::Black),
      setupOf({{0, Queen}, {9, -Bishop}, {18, Knight}, {27, -Pawn}, {36, Pawn}, {45, -Knight}, {54, Bishop},
               {63, -Queen}, {7, King}, {56, -King}}),
  };
  setups[2].whiteLongCastle = setups[2].blackShortCastle = true;
  setups[3].whiteShortCastle = setups[3].blackLongCastle = true;
  std::mt19937 random(7);
  const int codes[] = {King, Queen, Rook, Bishop, Knight, Pawn, -King, -Queen, -Rook, -Bishop, -Knight, -Pawn};
  for (int n = 0; n < 40; ++n) {
    core::BoardSetup setup = setupOf({}, (random() & 1) ? core::White : core::Black);
    for (auto& square : setup.board) square = (random() % 3 == 0) ? codes[random() % 12] : 0;
    setup.whiteLongCastle = random() & 1;
    setup.blackShortCastle = random() & 1;
    setups.push_back(setup);
  }
  for (const core::BoardSetup& setup : setups) {
    const FenText text = PositionToFen(setup, {});
    SCOPED_TRACE(std::string(text.fen()));
    FenImport import;
    ASSERT_TRUE(import.selectLine({std::string(text.fen())}, 0, "FEN"));
    const core::BoardSetup back = setupFromImport(import.result());
    EXPECT_EQ(back.board, setup.board);
    EXPECT_EQ(back.sideToMove, setup.sideToMove);
    EXPECT_EQ(back.whiteLongCastle, setup.whiteLongCastle);
    EXPECT_EQ(back.whiteShortCastle, setup.whiteShortCastle);
    EXPECT_EQ(back.blackLongCastle, setup.blackLongCastle);
    EXPECT_EQ(back.blackShortCastle, setup.blackShortCastle);
  }
}

// Random and mutated lines through all three readers: nothing may crash, read
// or write out of bounds (the sanitizer build watches), and only real piece
// codes may reach the board.
TEST(FenFuzz, RandomAndMutatedLinesAreHandled) {
  const std::string alphabet = "12345678/,KQRBNPkqrbnp wb-acdefgh[]\";#HSdm09x";
  const std::vector<std::string> seeds = {
      "rnbqkbnr/pp1ppppp/8/2p5/4P3/8/PPPP1PPP/RNBQKB2 w KQkq c6 c6 H#;dm 3;",
      "[FEN \"K88/8/8/8/8/8/8/7k b Qk e3\"]", "x K6,/8/8/8/8/8/8/7k - K,q a",
      std::string(240, ' ') + "8/8/8/8/8/8/8/K6k w KQkq -"};
  std::mt19937 random(2024);
  for (int n = 0; n < 20000; ++n) {
    std::string line;
    if (n % 2 == 0) {
      line.resize(random() % 300);
      for (char& c : line) c = alphabet[random() % alphabet.size()];
    } else {
      line = seeds[random() % seeds.size()];
      for (int edits = 1 + random() % 4; edits > 0 && !line.empty(); --edits) {
        const std::size_t at = random() % line.size();
        const char c = alphabet[random() % alphabet.size()];
        switch (random() % 4) {
          case 0: line[at] = c; break;
          case 1: line.insert(at, 1, c); break;
          case 2: line.erase(at, 1); break;
          default: line.resize(at); break;
        }
      }
    }
    const std::vector<std::string> lines = {"[Ask \"H#2\"]", "[PlyCount \"9\"]", "[Event \"S#\"]", line};
    for (const char* type : {"FEN", "EPD", "PGN"}) {
      FenImport import;
      const bool valid = import.selectLine(lines, 3, type);
      ASSERT_LT(import.normalized().size(), 256u);
      for (int code : import.result().board) {
        ASSERT_TRUE(code == 0 || code == King || code == -King || std::abs(code) == core::piece::Queen ||
                    std::abs(code) == core::piece::Rook || std::abs(code) == core::piece::Bishop ||
                    std::abs(code) == core::piece::Knight || std::abs(code) == core::piece::Pawn);
      }
      if (!valid) {
        ASSERT_EQ(import.stipulationText(), "");
      }
      (void)PositionToFen(setupFromImport(import.result()), {});
    }
  }
}

}  // namespace
}  // namespace velkaro::formats
