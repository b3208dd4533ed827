#pragma once
// FEN text in both directions: the reader behind the FEN/EPD/PGN import (check a
// line, convert it to a preview position, take the stipulation from the tags or
// opcodes around it) and the writer that the export turns a set-up into.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/position.h"
#include "core/stipulation.h"

namespace velkaro::formats {

// The preview position an import hands back: the 64 squares, then nine bytes.
struct ImportResult {
  std::array<std::int8_t, 64> board{};
  std::int8_t sideToMove = 0;  // 1 "w", -1 "b", 0 "-" or missing
  std::uint8_t whiteLongCastle = 0;
  std::uint8_t whiteShortCastle = 0;
  std::uint8_t blackLongCastle = 0;
  std::uint8_t blackShortCastle = 0;
  // 'a'..'h', 0 none. The field is taken only when the normalized copy holds a
  // file letter (or a comma) at the position given by the placement's last
  // digit, and then as it stands, so it can also be '-'.
  char enPassantFile = 0;
  std::uint8_t helpmate = 0;
  std::uint8_t selfmate = 0;
  std::uint8_t moves = 0;
};

struct TagStipulation {
  bool helpmate = false;
  bool selfmate = false;
  int moves = 0;
  std::string text;  // what the tags said, e.g. "H#3"; at most 255 characters
};

// "FEN", "EPD" or "PGN": the last three letters of a file name, upper-cased.
std::string fileTypeOf(std::string_view fileName);

// The stipulation that goes with line `selected`: from the nearest "[Ask" line
// above it in a FEN file, from its own "c6" and "dm" opcodes in an EPD file, or
// from the "[Event" and "[PlyCount" tags above it in a PGN file.
TagStipulation ReadStipulationFromTags(const std::vector<std::string>& lines, int selected,
                                       std::string_view fileType);

// The reader state of the import dialog. The quirks of the reader depend on
// byte positions, so it works on two fixed 256-byte buffers as the dialog does:
// the source line and the normalized copy of the fields the check accepted.
class FenImport {
 public:
  static constexpr int kBufferSize = 256;
  static constexpr int kLineLimit = 255;  // longer lines are cut, as the list shows them

  // Checks `line`; true when its placement is valid. Fills the normalized copy
  // (placement, side, castling, en passant) and the side to move.
  bool FenCheck(std::string_view line);

  // Turns the normalized copy into the import result and reads the stipulation;
  // does nothing unless the last check accepted the placement.
  void FenToPosition(const std::vector<std::string>& lines, int selected, std::string_view fileType);

  // What selecting line `selected` of a file does: clear both buffers, check it,
  // then convert it when valid (otherwise the preview board stays empty).
  bool selectLine(const std::vector<std::string>& lines, int selected, std::string_view fileType);

  bool placementValid() const { return placementValid_; }
  const ImportResult& result() const { return result_; }
  std::string_view stipulationText() const { return label_; }  // the label beside the preview
  std::string_view normalized() const;                          // up to its first zero byte

 private:
  void clearBuffers();
  bool checkPlacement(int& in, int& out);
  bool checkUpperRow(int& in, int& out);
  bool checkLastRow(int& in, int& out);
  void checkFields(int in, int out);
  int convertPlacement(int& lastDigit);
  void convertFields(int at, int lastDigit);
  char sourceAt(int index) const;
  char copyAt(int index) const;
  void put(int index, char c);

  std::array<char, kBufferSize> source_{};
  std::array<char, kBufferSize> normalized_{};
  ImportResult result_{};
  std::int8_t side_ = 0;
  bool placementValid_ = false;
  std::string label_;
};

// The editor set-up an import becomes: side 0 means White; an en-passant file
// becomes the square of the enemy pawn on it that has just made its double step
// (rank 5 when White is to move, rank 4 when Black is).
core::BoardSetup setupFromImport(const ImportResult& result);

// A whole file's lines, each cut to 255 characters as the import list shows
// them; empty when the file cannot be read.
std::vector<std::string> readImportLines(const std::string& path);

// The writer's 90-byte area: the FEN line from position 0, zero-terminated, and
// the stipulation at position 86, where the export picks it up.
struct FenText {
  static constexpr int kStipulationAt = 86;
  std::array<char, 90> area{};
  std::string_view fen() const;          // up to the first zero
  std::string_view stipulation() const;  // from position 86 to a zero or the end
};

FenText PositionToFen(const core::BoardSetup& setup, const core::Stipulation& stipulation);

}  // namespace velkaro::formats
