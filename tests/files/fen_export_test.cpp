// Tests of the FEN export: the record texts of each file type against golden
// texts, the file type from the extension, and collections written record by
// record and read back by the import.

#include "formats/fen_export.h"

#include <gtest/gtest.h>

#include <map>

#include "files_test_support.h"

namespace velkaro::formats {
namespace {

using files_test::dataPath;
using files_test::readFile;
using files_test::setupOf;

constexpr char kKish[] = "2n2K2/1Q3Pr1/3pk3/5bp1/4p1q1/2B1nNNB/8/8 w - -";
constexpr char kMintz[] = "8/8/8/8/k7/2R5/p5N1/7K b - -";
constexpr char kWeber[] = "8/8/1p6/1Nk5/p1P5/PP2r2p/KP3Q1p/RN5B w - -";
const std::string kLong(80, 'x');

// The golden texts, each after a line "=== name"; the line break before the
// next name (or the end of the file) belongs to no record.
std::map<std::string, std::string> goldenRecords() {
  std::string text = readFile(dataPath("export_records.txt"));
  text += "=== ";
  std::map<std::string, std::string> records;
  for (std::size_t at = text.find("=== "), next; at + 4 < text.size(); at = next + 1) {
    const std::size_t body = text.find('\n', at) + 1;
    next = text.find("\n=== ", body - 1);
    records[text.substr(at + 4, body - at - 5)] = next < body ? "" : text.substr(body, next - body);
  }
  return records;
}

struct RecordCase {
  const char* name;
  const char* fen;
  core::Stipulation stipulation;
  ExportType type;
  bool appending;
  const char* ask;  // nullptr: the stipulation the dialog opens with
  std::string date, site, author, section;
};

TEST(FenRecord, TextsOfEachType) {
  const RecordCase cases[] = {
      {"fen-plain", kKish, {false, false, 2}, ExportType::Fen, false, nullptr, "", "", "", ""},
      {"fen-fields-appended",
       kKish,
       {false, false, 2},
       ExportType::Fen,
       true,
       nullptr,
       "1935",
       "Christian Science Monitor",
       "A. Kish",
       "Two-movers"},
      {"fen-edited-ask-blank-author", kMintz, {true, false, 3}, ExportType::Fen, false, "H#3 exact", " ", "", " ", ""},
      {"fen-all-castling",
       "r3k2r/8/8/8/8/8/8/R3K2R w KQkq -",
       {false, false, 1},
       ExportType::Fen,
       false,
       nullptr,
       "",
       "",
       "",
       ""},
      {"pgn-helpmate",
       kMintz,
       {true, false, 3},
       ExportType::Pgn,
       false,
       nullptr,
       "1982",
       "1st Pr. The Problemist",
       "J. Mintz",
       "Helpmates"},
      {"pgn-mate-in-12", kKish, {false, false, 12}, ExportType::Pgn, true, "#12?", "", "", "", ""},
      {"pgn-long-fields", kKish, {false, false, 2}, ExportType::Pgn, false, nullptr, kLong, kLong, kLong, kLong},
      {"pgn-utf8-author",
       kKish,
       {false, false, 2},
       ExportType::Pgn,
       false,
       nullptr,
       "",
       "",
       std::string(62, 'a') + "éü",
       ""},
      {"epd-selfmate",
       kWeber,
       {false, true, 3},
       ExportType::Epd,
       false,
       nullptr,
       "1950",
       "Deutsche Schachblaetter",
       "W. Weber",
       "Selfmates"},
      {"epd-en-passant-appended",
       "8/8/8/3pP3/8/8/8/K6k w - d6",
       {false, false, 1},
       ExportType::Epd,
       true,
       nullptr,
       "",
       "",
       "",
       ""},
      {"other-appended", kKish, {false, false, 2}, ExportType::Other, true, nullptr, "1935", "", "A. Kish", ""},
      {"other-replacing", kKish, {false, false, 2}, ExportType::Other, false, nullptr, "1935", "", "A. Kish", ""},
  };
  const std::map<std::string, std::string> golden = goldenRecords();
  for (const RecordCase& c : cases) {
    SCOPED_TRACE(c.name);
    const FenText text = PositionToFen(setupOf(c.fen), c.stipulation);
    ExportFields fields = exportFieldsFor(text);
    if (c.ask != nullptr) fields.ask = c.ask;
    fields.date = c.date;
    fields.site = c.site;
    fields.author = c.author;
    fields.section = c.section;
    ASSERT_TRUE(golden.contains(c.name));
    EXPECT_EQ(fenRecordText(text, fields, c.type, c.appending), golden.at(c.name));
  }
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
