// Reading the tests' table files.

#include "table_file.h"

#include <fstream>
#include <sstream>

namespace velkaro::testing {

std::string trim(const std::string& text) {
  const auto first = text.find_first_not_of(' ');
  const auto last = text.find_last_not_of(' ');
  return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::vector<std::vector<std::string>> readTable(const std::string& path) {
  std::vector<std::vector<std::string>> rows;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string> fields;
    std::stringstream stream(line);
    for (std::string field; std::getline(stream, field, '|');) fields.push_back(trim(field));
    rows.push_back(std::move(fields));
  }
  return rows;
}

}  // namespace velkaro::testing
