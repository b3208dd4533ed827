#pragma once
// The results of Solver and Variants runs as data. The searches emit these
// records; the report writer turns them into the program's exact lines, and
// saving, printing, batch work and the Creator read them as they are.

#include <optional>
#include <variant>
#include <vector>

#include "core/position.h"
#include "jobs/job.h"

namespace velkaro::solver {

using core::MoveRecord;

// A run is searching (or counting) for its next result; the placeholder line
// stands until the result replaces it.
struct Searching {
  bool counting = false;
};

// "In %d moves:" of the minimum-moves search.
struct MovesHeader {
  int moves = 0;
};

// One line under a key: a defence with the reply that answers it, or a
// further reply to the same defence (a dual) when all second moves are listed.
struct Variation {
  MoveRecord defence;
  bool defenceMates = false;  // a selfmate's defence that mates at once: no reply follows
  std::optional<MoveRecord> reply;
  bool replyMates = false;
  bool dual = false;  // a further reply to the defence of the line above
  bool operator==(const Variation&) const = default;
};

// A key of a direct mate or selfmate, or a forced first move that works.
struct Key {
  int number = 0;  // "Solution No %d"; a forced first move has none
  MoveRecord move;
  bool mates = false;   // the key itself mates (direct mates)
  bool forced = false;  // the run tested this one first move: "   O.K."
  std::optional<MoveRecord> threat;
  std::vector<Variation> variations;
  bool operator==(const Key&) const = default;
};

// A helpmate solution: its moves from the first, the last one mating.
struct HelpLine {
  int number = 0;
  std::vector<MoveRecord> moves;
};

// The run has nothing (more) to find.
struct NoSolution {
  bool helpmate = false;
  bool anyFound = false;  // solutions were reported before in this run
};

// A depth of the minimum-moves search without a (further) solution.
struct FailedDepth {
  bool helpmate = false;
  bool anyFound = false;
  bool last = false;  // the run ends here
};

// The count of one depth of the continuation counter.
struct CountLine {
  int depth = 0;
  jobs::BigCount count;
  jobs::BigCount previous;  // the count of the depth before (1 before depth 1)
  int rootSide = core::White;
  bool last = false;  // the deepest count of the run
};

using Record = std::variant<Searching, MovesHeader, Key, HelpLine, NoSolution, FailedDepth, CountLine>;

class RecordSink {
 public:
  virtual ~RecordSink() = default;
  virtual void record(const Record& record) = 0;
};

}  // namespace velkaro::solver
