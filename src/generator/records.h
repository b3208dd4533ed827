#pragma once
// The Creator's results as data: each problem found with its key and the note
// on the black king's flights, and how the list ends. The generator emits
// these; the list writer makes the rows, and the window, the command line and
// the tests read the same records.

#include <array>
#include <cstdint>
#include <variant>

#include "core/position.h"

namespace velkaro::generator {

// The problem list holds at most this many problems; the last one closes it.
inline constexpr int kMaxProblems = 990;

// How the black king's flights change with the key.
enum class FlightMark {
  Gained,  // more flights after the key: "+"
  Lost,    // fewer: a blank
  Same,    // as many, on the same squares: "="
  Moved,   // as many, on other squares: the plus-minus sign
};

// A placement that passed every test: a sound direct mate with one key.
struct Problem {
  int ordinal = 0;                      // 1 for the first problem of the run
  std::array<std::int8_t, 64> board{};  // piece codes, a8 = 0 ... h1 = 63
  core::MoveRecord key;
  int flights = 0;  // the black king's flights before the key
  FlightMark mark = FlightMark::Same;
  bool operator==(const Problem&) const = default;
};

// The run is testing placements: the list's last row says so until the next
// problem or the end replaces it.
struct Testing {
  bool operator==(const Testing&) const = default;
};

// The placements (in turn) are exhausted without a further problem.
struct NoFound {
  bool more = false;  // problems were found earlier in the run
  bool operator==(const NoFound&) const = default;
};

// The list is full: the last problem was the 990th.
struct AndOther {
  bool operator==(const AndOther&) const = default;
};

using Record = std::variant<Testing, Problem, NoFound, AndOther>;

class RecordSink {
 public:
  virtual ~RecordSink() = default;
  virtual void record(const Record& record) = 0;
};

}  // namespace velkaro::generator
