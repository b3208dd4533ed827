// libFuzzer target for the FEN import: every line of the input is selected as a
// FEN, EPD and PGN line, and each accepted position is written out as FEN and
// read back, which must give the same board, side and castling rights.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formats/fen.h"

namespace {

using velkaro::formats::FenImport;
using velkaro::formats::ImportResult;

// What the writer makes of an accepted position has to come back unchanged.
void checkRoundTrip(const ImportResult& result) {
  const velkaro::core::BoardSetup setup = velkaro::formats::setupFromImport(result);
  const velkaro::formats::FenText text = velkaro::formats::PositionToFen(setup, velkaro::core::Stipulation{});
  const std::vector<std::string> lines{std::string(text.fen())};
  FenImport reread;
  if (!reread.selectLine(lines, 0, "FEN")) __builtin_trap();
  const ImportResult& back = reread.result();
  if (back.board != result.board) __builtin_trap();
  if (back.sideToMove != setup.sideToMove) __builtin_trap();
  if (back.whiteLongCastle != result.whiteLongCastle || back.whiteShortCastle != result.whiteShortCastle ||
      back.blackLongCastle != result.blackLongCastle || back.blackShortCastle != result.blackShortCastle) {
    __builtin_trap();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::vector<std::string> lines;
  for (std::size_t start = 0; start <= input.size();) {
    const std::size_t end = std::min(input.find('\n', start), input.size());
    lines.emplace_back(input.substr(start, end - start));
    start = end + 1;
  }
  FenImport import;
  for (int selected = 0; selected < static_cast<int>(lines.size()); ++selected) {
    for (std::string_view type : {"FEN", "EPD", "PGN"}) {
      if (import.selectLine(lines, selected, type)) checkRoundTrip(import.result());
      if (import.normalized().size() >= FenImport::kBufferSize) __builtin_trap();
    }
  }
  return 0;
}
