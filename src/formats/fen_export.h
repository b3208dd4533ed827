#pragma once
// Saving the position as FEN with tags: one record, the FEN line with the
// problem's stipulation and some bibliographic fields, written to a FEN file
// (tag lines and the bare FEN), a PGN file (a tag header with a FEN tag) or an
// EPD file (one line with opcodes), replacing the file or appended to it so
// that a collection grows one record at a time.

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "formats/fen.h"

namespace velkaro::formats {

// The save dialog of "Save FEN position" and its extra fields.
inline constexpr char kExportTitle[] = "Save FEN position to file";
inline constexpr char kExportFilter[] = "*.fen";
inline constexpr char kExportDefaultExtension[] = "fen";
inline constexpr char kAskLabel[] = "Ask:";
inline constexpr char kDateLabel[] = "Date:";
inline constexpr char kSiteLabel[] = "Site:";
inline constexpr char kAuthorLabel[] = "Author:";
inline constexpr char kSectionLabel[] = "Section:";
inline constexpr char kFenFieldLabel[] = "FEN postion:";
inline constexpr char kAppendLabel[] = "Append to file";
inline constexpr char kReplaceLabel[] = "Replace existing file";

// The longest text taken from each field, in characters.
inline constexpr std::size_t kAskLength = 4;
inline constexpr std::size_t kDateLength = 15;
inline constexpr std::size_t kSiteLength = 39;
inline constexpr std::size_t kAuthorLength = 63;
inline constexpr std::size_t kSectionLength = 39;
inline constexpr std::size_t kFenFieldLength = 79;

// The fields as the user left them in the dialog.
struct ExportFields {
  std::string ask;
  std::string date;
  std::string site;
  std::string author;
  std::string section;
  std::string fen;     // shown and read, but the record always carries the writer's own FEN line
  bool append = true;  // "Append to file" rather than "Replace existing file"
};

// The fields a dialog opens with: the stipulation in Ask, the FEN line in its
// field, "Append to file" chosen.
ExportFields exportFieldsFor(const FenText& text);

// Each field cut to its longest text (whole UTF-8 characters).
ExportFields takenFields(const ExportFields& typed);

enum class ExportType { Fen, Pgn, Epd, Other };

// From the last three letters of the path, whatever their case: ".Epd" is EPD.
ExportType exportTypeOf(std::string_view path);

// The record text for a file of `type`, starting with "\n\n" when it is
// appended. The fields are taken as the dialog takes them; Event ("#", "H#",
// "S#") and PlyCount (the number of moves) come from the writer's stipulation,
// never from an edited Ask field. Any other type gives no record, only the
// line breaks of an append.
std::string fenRecordText(const FenText& text, const ExportFields& fields, ExportType type, bool appending);

// Writes the record to `path`: appended when "Append to file" is chosen and
// the file exists, otherwise replacing the file. False when the file cannot be
// written; the record is lost then.
bool WriteFenRecord(const std::filesystem::path& path, const FenText& text, const ExportFields& fields);

}  // namespace velkaro::formats
