// The record texts of the FEN export and the writing of a record.

#include "formats/fen_export.h"

#include <algorithm>
#include <fstream>
#include <system_error>

namespace velkaro::formats {

namespace {

// At most `limit` characters of `text`; a UTF-8 character is never split.
std::string cut(const std::string& text, std::size_t limit) {
  std::size_t characters = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool continuation = (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
    if (!continuation && characters++ == limit) return text.substr(0, at);
  }
  return text;
}

// A field of a single blank counts as empty.
bool present(const std::string& field) { return !field.empty() && field != " "; }

void addTag(std::string& record, std::string_view name, std::string_view value) {
  record.append("[").append(name).append(" \"").append(value).append("\"]\n");
}

void addOpcode(std::string& record, std::string_view name, std::string_view value) {
  record.append(name).append(" ").append(value).append(";");
}

// Event: "#", "H#" or "S#"; PlyCount: the number of moves that follows.
struct TagTexts {
  std::string event;
  std::string plyCount;
};

TagTexts tagTexts(std::string_view stipulation) {
  const std::size_t eventLength = stipulation.size() > 1 && stipulation[1] == '#' ? 2 : 1;
  const std::size_t split = std::min(eventLength, stipulation.size());
  return {std::string(stipulation.substr(0, split)), std::string(stipulation.substr(split))};
}

void fenRecord(std::string& record, std::string_view fen, const ExportFields& fields) {
  addTag(record, "Ask", fields.ask);
  if (present(fields.author)) addTag(record, "Author", fields.author);
  if (present(fields.site)) addTag(record, "Site", fields.site);
  if (present(fields.date)) addTag(record, "Date", fields.date);
  record.append(fen);
}

void pgnRecord(std::string& record, std::string_view fen, const ExportFields& fields, const TagTexts& tags) {
  if (present(fields.author)) addTag(record, "White", fields.author);
  addTag(record, "Event", tags.event);
  if (present(fields.site)) addTag(record, "Site", fields.site);
  if (present(fields.date)) addTag(record, "Date", fields.date);
  if (present(fields.section)) addTag(record, "Section", fields.section);
  addTag(record, "PlyCount", tags.plyCount);
  record.append("[FEN \"").append(fen).append("\"]");
}

void epdRecord(std::string& record, std::string_view fen, const ExportFields& fields, const TagTexts& tags) {
  record.append(fen).append(" ");
  if (present(fields.author)) addOpcode(record, "c0", fields.author);
  if (present(fields.site)) addOpcode(record, "c1", fields.site);
  if (present(fields.date)) addOpcode(record, "c2", fields.date);
  if (present(fields.section)) addOpcode(record, "c4", fields.section);
  addOpcode(record, "c6", tags.event);
  addOpcode(record, "dm", tags.plyCount);
}

}  // namespace

ExportFields exportFieldsFor(const FenText& text) {
  ExportFields fields;
  fields.ask = std::string(text.stipulation());
  fields.fen = std::string(text.fen());
  return fields;
}

ExportFields takenFields(const ExportFields& typed) {
  ExportFields taken = typed;
  taken.ask = cut(typed.ask, kAskLength);
  taken.date = cut(typed.date, kDateLength);
  taken.site = cut(typed.site, kSiteLength);
  taken.author = cut(typed.author, kAuthorLength);
  taken.section = cut(typed.section, kSectionLength);
  taken.fen = cut(typed.fen, kFenFieldLength);
  return taken;
}

ExportType exportTypeOf(std::string_view path) {
  const std::string type = fileTypeOf(path);
  if (type == "FEN") return ExportType::Fen;
  if (type == "PGN") return ExportType::Pgn;
  if (type == "EPD") return ExportType::Epd;
  return ExportType::Other;
}

std::string fenRecordText(const FenText& text, const ExportFields& fields, ExportType type, bool appending) {
  const ExportFields taken = takenFields(fields);
  const TagTexts tags = tagTexts(text.stipulation());
  // The record before ends without a line break.
  std::string record = appending ? "\n\n" : "";
  switch (type) {
    case ExportType::Fen:
      fenRecord(record, text.fen(), taken);
      break;
    case ExportType::Pgn:
      pgnRecord(record, text.fen(), taken, tags);
      break;
    case ExportType::Epd:
      epdRecord(record, text.fen(), taken, tags);
      break;
    case ExportType::Other:
      break;
  }
  return record;
}

bool WriteFenRecord(const std::filesystem::path& path, const FenText& text, const ExportFields& fields) {
  std::error_code ignored;
  const bool appending = fields.append && std::filesystem::exists(path, ignored);
  const std::string record = fenRecordText(text, fields, exportTypeOf(path.string()), appending);
  std::ofstream out(path, appending ? std::ios::app : std::ios::trunc);
  out << record;
  out.close();
  return !out.fail();
}

}  // namespace velkaro::formats
