// Tests of the FEN reader and writer: what selecting each line of the table in
// tests/data/formats gives, long and refused lines, file lines, the
// stipulation's place in the writer's area, and written lines read back.

#include "formats/fen.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace velkaro::formats {
namespace {

using core::piece::King;

constexpr char kKings[] = "8/8/8/8/8/8/8/K6k";  // White king a1, Black king h1

// Each result is compared as one line in the table's own format.
TEST(FenImport, EachLineOfTheTable) {
  std::ifstream table(VELKARO_TEST_DATA_DIR "/formats/fen_import.txt");
  std::vector<std::string> lines;
  int cases = 0;
  for (std::string row; std::getline(table, row);) {
    if (row.starts_with("<")) lines.push_back(row.size() > 2 ? row.substr(2) : "");
    if (!row.starts_with(">")) continue;
    const std::string type = row.substr(2, 3);
    const int selected = static_cast<int>(lines.size()) - 1;
    FenImport import;
    const bool valid = import.selectLine(lines, selected, type);
    const ImportResult& r = import.result();
    std::ostringstream got;
    got << "> " << type << " | " << valid << " " << int{r.sideToMove} << " "
        << (r.enPassantFile == 0 ? std::string("none") : std::string(1, r.enPassantFile)) << " | "
        << PositionToFen(setupFromImport(r), {}).fen() << " | " << import.stipulationText() << " | " << int{r.helpmate}
        << " " << int{r.selfmate} << " " << int{r.moves} << " | \"" << import.normalized() << "\"";
    EXPECT_EQ(got.str(), row) << lines.back();
    if (valid) {  // the tags give the same stipulation on their own
      const TagStipulation tags = ReadStipulationFromTags(lines, selected, type);
      EXPECT_EQ(tags.text, import.stipulationText()) << lines.back();
      EXPECT_EQ(tags.moves, r.moves) << lines.back();
    }
    lines.clear();
    ++cases;
  }
  EXPECT_GT(cases, 40);
}

TEST(FenImport, LinesAreCutAt255Characters) {
  const std::string fits = std::string(237, 'x') + " " + kKings;  // 255 characters
  const std::string cut = "x" + fits;                             // the last "k" is cut off
  FenImport import;
  EXPECT_TRUE(import.selectLine({fits}, 0, "FEN"));
  EXPECT_EQ(import.result().board[63], -King);
  EXPECT_FALSE(import.selectLine({cut}, 0, "FEN"));
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
  std::ofstream(path, std::ios::binary) << "[Ask \"#2\"]\r\n"
                                        << kKings << " w - -\r\n\r\n"
                                        << std::string(300, '8') << "\n";
  const std::vector<std::string> lines = readImportLines(path.string());
  std::filesystem::remove(path);
  EXPECT_EQ(lines,
            (std::vector<std::string>{"[Ask \"#2\"]", std::string(kKings) + " w - -", "", std::string(255, '8')}));
  EXPECT_TRUE(readImportLines((path.parent_path() / "velkaro_no_such_file.fen").string()).empty());
}

TEST(FenWriter, StipulationAtPosition86) {
  const std::pair<core::Stipulation, std::string> cases[] = {
      {{false, false, 2}, "#2"}, {{true, false, 3}, "H#3"}, {{false, true, 12}, "S#12"}, {{false, false, 99}, "#99"}};
  core::BoardSetup kings;
  kings.board[56] = King;
  kings.board[63] = -King;
  for (const auto& [stipulation, expected] : cases) {
    const FenText text = PositionToFen(kings, stipulation);
    EXPECT_EQ(text.stipulation(), expected);
    EXPECT_EQ(std::string(text.area.data() + FenText::kStipulationAt, expected.size()), expected);
    EXPECT_EQ(text.area[23], '\0');  // the FEN line is zero-terminated
  }
}

// Random boards with every man, side and castling right written and read back.
TEST(FenRoundTrip, WrittenLinesReadBackUnchanged) {
  using namespace core::piece;
  std::mt19937 random(7);
  const int codes[] = {King, Queen, Rook, Bishop, Knight, Pawn, -King, -Queen, -Rook, -Bishop, -Knight, -Pawn};
  for (int n = 0; n < 40; ++n) {
    core::BoardSetup setup;
    for (auto& square : setup.board) square = (random() % 3 == 0) ? codes[random() % 12] : 0;
    setup.sideToMove = (random() & 1) ? core::White : core::Black;
    setup.whiteLongCastle = random() & 1;
    setup.whiteShortCastle = random() & 1;
    setup.blackLongCastle = random() & 1;
    setup.blackShortCastle = random() & 1;
    const FenText text = PositionToFen(setup, {});
    SCOPED_TRACE(std::string(text.fen()));
    FenImport import;
    ASSERT_TRUE(import.selectLine({std::string(text.fen())}, 0, "FEN"));
    const core::BoardSetup back = setupFromImport(import.result());
    EXPECT_EQ(back.board, setup.board);
    EXPECT_EQ(back.sideToMove, setup.sideToMove);
    EXPECT_EQ(
        (std::array{back.whiteLongCastle, back.whiteShortCastle, back.blackLongCastle, back.blackShortCastle}),
        (std::array{setup.whiteLongCastle, setup.whiteShortCastle, setup.blackLongCastle, setup.blackShortCastle}));
  }
}

}  // namespace
}  // namespace velkaro::formats
