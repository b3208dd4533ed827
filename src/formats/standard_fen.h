#pragma once
// A standard FEN line as other chess programs write it, every field honoured:
// placement, side to move, castling, the en-passant target square and the two
// move counters (read, not used). The command line takes positions this way;
// the import dialog keeps its own tolerant reader (fen.h).

#include <optional>
#include <string>
#include <string_view>

#include "core/position.h"

namespace velkaro::formats {

// The set-up a FEN line describes. Fields after the placement may be left
// out (White to move, no castling, no en passant). A malformed field gives
// nothing and `error` names the field and what is wrong with it.
std::optional<core::BoardSetup> readStandardFen(std::string_view line, std::string& error);

}  // namespace velkaro::formats
