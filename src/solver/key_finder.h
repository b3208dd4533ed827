#pragma once
// The keys of a position, silently: no text, no progress, no messages. The
// Creator's unique-key test and batch work ask "which keys does this position
// have for this stipulation?" many times over, so one finder keeps its job
// (and the job's ply stack) from question to question.

#include <memory>
#include <optional>
#include <vector>

#include "core/position.h"
#include "core/stipulation.h"
#include "solver/records.h"

namespace velkaro::solver {

class SolverJob;

class KeyFinder {
 public:
  KeyFinder();
  ~KeyFinder();
  KeyFinder(const KeyFinder&) = delete;
  KeyFinder& operator=(const KeyFinder&) = delete;

  // The keys of a direct mate or selfmate in generation order, each with its
  // threat and variations (every working second move when
  // `allSecondMoves`), stopping after `limit` keys (0: all). Nothing when the
  // set-up check refuses the position. Helpmates have no keys: their
  // solutions are not asked for here.
  std::optional<std::vector<Key>> keys(const core::BoardSetup& setup, const core::Stipulation& stipulation,
                                       int limit = 0, bool allSecondMoves = false);

  // The tested moves of the last question.
  std::uint64_t testedMoves() const;

 private:
  class Collector;
  std::unique_ptr<Collector> collector_;
  std::unique_ptr<SolverJob> job_;
};

}  // namespace velkaro::solver
