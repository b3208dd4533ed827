// A solver job with sinks that keep the keys and drop everything else.

#include "solver/key_finder.h"

#include "solver/solver_job.h"

namespace velkaro::solver {

class KeyFinder::Collector : public jobs::ProgressSink, public RecordSink, public core::MessageSink {
 public:
  void record(const Record& record) override {
    if (const Key* key = std::get_if<Key>(&record)) keys.push_back(*key);
  }
  void showMessage(std::string_view, std::string_view) override {}

  std::vector<Key> keys;
};

KeyFinder::KeyFinder()
    : collector_(std::make_unique<Collector>()),
      job_(std::make_unique<SolverJob>(*collector_, *collector_, *collector_)) {}

KeyFinder::~KeyFinder() = default;

std::optional<std::vector<Key>> KeyFinder::keys(const core::BoardSetup& setup, const core::Stipulation& stipulation,
                                                int limit, bool allSecondMoves) {
  if (stipulation.helpmate) return std::vector<Key>{};
  SolveSettings settings;
  settings.setup = setup;
  settings.stipulation = stipulation;
  settings.stopOnFirstSolution = true;
  settings.testAllSecondMoves = allSecondMoves;
  settings.countsFirstMoves = false;
  collector_->keys.clear();
  jobs::RunEnd end = job_->start(settings);
  if (end == jobs::RunEnd::Refused) return std::nullopt;
  while (end == jobs::RunEnd::Solution && (limit <= 0 || static_cast<int>(collector_->keys.size()) < limit)) {
    end = job_->resume();
  }
  return std::move(collector_->keys);
}

std::uint64_t KeyFinder::testedMoves() const { return job_->testedMoves().total(); }

}  // namespace velkaro::solver
