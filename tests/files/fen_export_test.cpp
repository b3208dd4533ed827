// Tests of the FEN export: the record texts of each file type against golden
// texts, the file type from the extension, and collections written record by
// record and read back by the import.

#include "formats/fen_export.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "files_test_support.h"

namespace velkaro::formats {
namespace {

using files_test::dataPath;
using files_test::readFile;
using files_test::setupOf;

constexpr char kKish[] = "2n2K2/1Q3Pr1/3pk3/5bp1/4p1q1/2B1nNNB/8/8 w - -";
constexpr char kMintz[] = "8/8/8/8/k7/2R5/p5N1/7K b - -";
constexpr char kWeber[] = "8/8/1p6/1Nk5/p1P5/PP2r2p/KP3Q1p/RN5B w - -";

core::Stipulation stipulationOf(const std::string& text) {
  return {text[0] == 'H', text[0] == 'S', std::stoi(text.substr(text.find('#') + 1))};
}

// Each golden record follows a line "=== name|FEN|stipulation|append or
// replace|Ask|date|site|author|section" that says how it is made; the line
// break before the next "===" (or the end of the file) belongs to no record.
TEST(FenRecord, TextsOfEachType) {
  std::string text = readFile(dataPath("export_records.txt")) + "=== ";
  int records = 0;
  for (std::size_t at = text.find("\n=== ") + 1, next; at + 4 < text.size(); at = next + 1, ++records) {
    const std::size_t body = text.find('\n', at) + 1;
    next = text.find("\n=== ", body - 1);
    std::vector<std::string> made;
    std::istringstream header(text.substr(at + 4, body - at - 5));
    for (std::string field; std::getline(header, field, '|');) made.push_back(field);
    made.resize(9);
    SCOPED_TRACE(made[0]);
    const FenText fen = PositionToFen(setupOf(made[1]), stipulationOf(made[2]));
    ExportFields fields = exportFieldsFor(fen);
    if (made[4] != "*") fields.ask = made[4];
    fields.date = made[5];
    fields.site = made[6];
    fields.author = made[7];
    fields.section = made[8];
    const ExportType type = exportTypeOf(made[0].substr(0, made[0].find('-')));
    EXPECT_EQ(fenRecordText(fen, fields, type, made[3] == "append"), next < body ? "" : text.substr(body, next - body));
  }
  EXPECT_EQ(records, 12);
}

TEST(FenRecord, TypeFromTheLastThreeLetters) {
  const std::pair<const char*, ExportType> cases[] = {{"a.fen", ExportType::Fen}, {"problems/A.PGN", ExportType::Pgn},
                                                      {"c.Epd", ExportType::Epd}, {"d.txt", ExportType::Other},
                                                      {"epd", ExportType::Epd},   {"e.fe", ExportType::Other}};
  for (const auto& [path, type] : cases) EXPECT_EQ(exportTypeOf(path), type) << path;
}

class FenCollection : public files_test::ScratchFolder {};

// A collection grows record by record; the import lists each record with its
// position and stipulation. Replacing leaves one record.
TEST_F(FenCollection, GrowsAndImportsRecordByRecord) {
  const std::pair<const char*, core::Stipulation> problems[] = {
      {kKish, {false, false, 2}}, {kMintz, {true, false, 3}}, {kWeber, {false, true, 3}}, {kKish, {false, false, 12}}};
  for (const char* extension : {".fen", ".pgn", ".Epd"}) {
    SCOPED_TRACE(extension);
    const std::filesystem::path path = folder_ / (std::string("collection") + extension);
    std::vector<FenText> written;
    for (const auto& [fen, stipulation] : problems) {
      written.push_back(PositionToFen(setupOf(fen), stipulation));
      ASSERT_TRUE(WriteFenRecord(path, written.back(), exportFieldsFor(written.back())));
    }
    const std::vector<std::string> lines = readImportLines(path.string());
    std::size_t found = 0;
    for (int line = 0; line < static_cast<int>(lines.size()); ++line) {
      FenImport import;
      if (!import.selectLine(lines, line, fileTypeOf(path.string()))) continue;
      ASSERT_LT(found, written.size());
      const auto& [fen, stipulation] = problems[found++];
      const core::BoardSetup setup = setupOf(fen);
      EXPECT_TRUE(std::equal(setup.board.begin(), setup.board.end(), import.result().board.begin()));
      EXPECT_EQ(import.stipulationText(), stipulation.text());
      EXPECT_EQ(import.result().helpmate, stipulation.helpmate);
      EXPECT_EQ(import.result().selfmate, stipulation.selfmate);
      EXPECT_EQ(import.result().moves, stipulation.moves);
    }
    EXPECT_EQ(found, written.size());

    ExportFields replace = exportFieldsFor(written[0]);
    replace.append = false;
    ASSERT_TRUE(WriteFenRecord(path, written[0], replace));
    EXPECT_EQ(readFile(path), fenRecordText(written[0], replace, exportTypeOf(path.string()), false));
  }
}

}  // namespace
}  // namespace velkaro::formats
