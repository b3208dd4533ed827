// Reading a record's tags and opcodes for its title. The walk upwards stops
// at the record before: a line that holds a position, or a blank line after
// tags in a PGN file, so one record never takes another's title.

#include "formats/record_title.h"

#include <array>

#include "formats/fen.h"

namespace velkaro::formats {

namespace {

// The value of a tag line `[Name "value"]`, or nothing.
bool tagValue(const std::string& line, std::string_view name, std::string& value) {
  if (line.size() < name.size() + 4 || line[0] != '[' || line.compare(1, name.size(), name) != 0 ||
      line[name.size() + 1] != ' ') {
    return false;
  }
  const std::size_t open = line.find('"', name.size() + 1);
  const std::size_t close = open == std::string::npos ? open : line.find('"', open + 1);
  if (close == std::string::npos) return false;
  value = line.substr(open + 1, close - open - 1);
  return value != "?" && !value.empty();
}

// The text of EPD opcode `code` ("c0 text;"), or nothing.
bool opcodeValue(const std::string& line, std::string_view code, std::string& value) {
  for (std::size_t at = line.find(code); at != std::string::npos; at = line.find(code, at + 1)) {
    if (at > 0 && line[at - 1] != ' ' && line[at - 1] != ';') continue;
    const std::size_t start = line.find_first_not_of(' ', at + code.size());
    const std::size_t end = start == std::string::npos ? start : line.find(';', start);
    if (end == std::string::npos) return false;
    value = line.substr(start, end - start);
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"') value = value.substr(1, value.size() - 2);
    return !value.empty();
  }
  return false;
}

bool holdsPosition(const std::string& line) { return FenImport{}.FenCheck(line); }

std::string joined(const std::array<std::string, 3>& parts) {
  std::string text;
  for (const std::string& part : parts) {
    if (part.empty()) continue;
    if (!text.empty()) text += ", ";
    text += part;
  }
  return text;
}

}  // namespace

std::string recordTitle(const std::vector<std::string>& lines, int selected, std::string_view fileType) {
  if (selected < 0 || selected >= static_cast<int>(lines.size())) return {};
  std::array<std::string, 3> parts;  // author, site, date
  if (fileType == "EPD") {
    const std::string& line = lines[static_cast<std::size_t>(selected)];
    for (std::size_t index = 0; index < parts.size(); ++index) {
      opcodeValue(line, std::array<std::string_view, 3>{"c0", "c1", "c2"}[index], parts[index]);
    }
    return joined(parts);
  }
  const bool pgn = fileType == "PGN";
  const std::array<std::string_view, 3> names{pgn ? "White" : "Author", "Site", "Date"};
  std::string plainText;
  for (int row = selected - 1; row >= 0; --row) {
    const std::string& line = lines[static_cast<std::size_t>(row)];
    if (line.empty()) {
      if (pgn) break;
      continue;
    }
    if (line[0] == '[') {
      for (std::size_t index = 0; index < parts.size(); ++index) {
        std::string value;
        if (parts[index].empty() && tagValue(line, names[index], value)) parts[index] = value;
      }
      continue;
    }
    if (pgn || holdsPosition(line)) break;
    if (plainText.empty()) plainText = line;
  }
  std::string title = joined(parts);
  return title.empty() ? plainText : title;
}

}  // namespace velkaro::formats
