#pragma once
// A Creator run: checks the set-up, builds the group list, then goes through
// the placements (in turn or at random), tests each one and lists those that
// are problems. Stop, the pause after a find and Resume go on with the next
// placement; the list is the same however the run is interrupted and on how
// many threads the placements are tested.

#include <memory>
#include <optional>
#include <vector>

#include "generator/placement_test.h"
#include "generator/placements.h"
#include "generator/records.h"
#include "generator/settings.h"
#include "jobs/job.h"

namespace velkaro::generator {

class TesterPool;

class GeneratorJob : public jobs::Job {
 public:
  // Records go to `records` as the run finds them; refused set-ups to
  // `messages` with the caption "Velkaro - ". The tick counts examined
  // placements.
  GeneratorJob(jobs::ProgressSink& progress, RecordSink& records, core::MessageSink& messages);
  ~GeneratorJob() override;

  // Start: a fresh run. Refused when the problem length is not 2 or 3 (no
  // message) or the set-up fails its check.
  jobs::RunEnd start(const CreateSettings& settings);
  // Resume: after Stop, or after the pause on a find.
  jobs::RunEnd resume();

  bool finished() const { return finished_; }
  // The problem table: every problem of the run so far, in order.
  const std::vector<Problem>& problems() const { return problems_; }
  // A listed problem as a set-up, to show it on the board.
  core::BoardSetup setupOf(const Problem& problem) const;

 private:
  // The next placement's verdict, or why there is none.
  enum class Supply { Tested, Exhausted, Stopped };
  Supply nextTested(Tested& tested);
  // The next placement whose men all stand on their available squares.
  Supply produce(Board& board);
  void prepareSource(const std::vector<Group>& groups, const Odometer& firstPlacement);
  jobs::RunEnd runLoop();
  jobs::RunEnd pauseRun(jobs::RunEnd end);
  jobs::RunEnd finishRun();

  RecordSink& records_;
  CreateSettings settings_;
  bool finished_ = true;
  std::vector<Problem> problems_;
  std::optional<Odometer> odometer_;
  bool odometerPrimed_ = false;  // the odometer stands on a placement not yet handed out
  bool odometerExhausted_ = false;
  std::optional<RandomPlacer> random_;
  std::unique_ptr<PlacementTester> tester_;  // the run's own thread
  std::unique_ptr<TesterPool> pool_;         // the other threads, if any
};

}  // namespace velkaro::generator
