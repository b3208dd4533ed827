#pragma once
// The results of a Positions run as data. The job emits these records; the
// report writer turns them into the rows and captions of the positions
// panel, and anything else (batch work, tests) reads them as they are.

#include <cstdint>
#include <variant>

#include "jobs/job.h"
#include "placement/board_text.h"
#include "placement/layout.h"

namespace velkaro::placement {

// A fresh Start: the list, its captions and the kept texts are cleared.
struct FreshStart {};

// The run (fresh or resumed) goes on searching until its end.
struct Searching {};

// A cover goal's score was beaten: the finds before are forgotten, and the
// next find is found placement 1.
struct NewBest {
  int score = 0;
};

// A placement kept, with its ordinal among the finds.
struct Found {
  std::int64_t ordinal = 0;
  Board board{};
};

// A run returned: stopped, paused after a find, or finished.
struct RunOver {
  jobs::RunEnd end = jobs::RunEnd::Finished;
  Goal goal = Goal::NonAttackingPieces;
  std::int64_t found = 0;   // the found count
  int best = 0;             // the best score (cover goals)
  bool foundInRun = false;  // something was found since the last Start or the Resume after a pause
};

using Record = std::variant<FreshStart, Searching, NewBest, Found, RunOver>;

class RecordSink {
 public:
  virtual ~RecordSink() = default;
  virtual void record(const Record& record) = 0;
};

}  // namespace velkaro::placement
