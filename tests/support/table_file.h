#pragma once
// The table files of the tests: one case per line, fields separated by "|"
// and trimmed of blanks; lines starting with '#' and blank lines are left out.

#include <string>
#include <vector>

namespace velkaro::testing {

// `text` without the blanks at either end.
std::string trim(const std::string& text);

// The rows of the file at `path`; none when it cannot be read.
std::vector<std::vector<std::string>> readTable(const std::string& path);

}  // namespace velkaro::testing
