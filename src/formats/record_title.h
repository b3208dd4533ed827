#pragma once
// The title of a record in a FEN, EPD or PGN collection: who composed the
// problem and where it appeared, as the record's tags (or opcodes) say, or
// the free line of text above a FEN record. The window shows it in its title.

#include <string>
#include <string_view>
#include <vector>

namespace velkaro::formats {

// The title of the record on line `selected`: the author, site and date
// found in its tags, joined by ", " ("[Author]"/"[Site]"/"[Date]" above a FEN
// line, "[White]"/"[Site]"/"[Date]" of a PGN game, the opcodes c0, c1 and c2 of
// an EPD line); without them, for a FEN file, the nearest line of plain text
// above the record. Empty when there is none.
std::string recordTitle(const std::vector<std::string>& lines, int selected, std::string_view fileType);

}  // namespace velkaro::formats
