// The Creator's driver: Start with its set-up check, the supply of placements
// in order, and the commit of each verdict in that order: the examined count,
// the problem list, the pause after a find and the end of the list.

#include "generator/generator_job.h"

#include <algorithm>

#include "core/attacks.h"
#include "generator/setup_check.h"
#include "generator/tester_pool.h"

namespace velkaro::generator {

namespace {

// Placements queued ahead of the oldest per testing thread: enough to keep
// every thread busy, few enough that a pause leaves little tested ahead.
constexpr std::size_t kQueuedPerThread = 8;

bool blackKingAttacked(const Board& board) {
  core::Position position{};
  std::copy(board.begin(), board.end(), position.board);
  return core::isAttackedByWhite(core::firstSquareOf(position.board, -core::piece::King), position) >= 0;
}

}  // namespace

GeneratorJob::GeneratorJob(jobs::ProgressSink& progress, RecordSink& records, core::MessageSink& messages)
    : Job(progress, messages), records_(records) {}

GeneratorJob::~GeneratorJob() = default;

jobs::RunEnd GeneratorJob::start(const CreateSettings& settings) {
  pool_.reset();
  settings_ = settings;
  finished_ = true;
  problems_.clear();
  clearStopRequest();
  if (settings_.moves != 2 && settings_.moves != 3) return jobs::RunEnd::Refused;
  setRefreshInterval(std::max(1, settings_.refreshInterval / (settings_.moves == 2 ? 100 : 1000)));
  if (const char* refusal = setupRefusal(settings_)) {
    messages_.showMessage(kCreatorCaption, refusal);
    return jobs::RunEnd::Refused;
  }
  // The first placement: every group on the first squares free for it.
  Odometer firstPlacement(fixedBoard(settings_.setup), groupList(settings_, false));
  if (firstPlacement.first() && blackKingAttacked(firstPlacement.board())) {
    messages_.showMessage(kCreatorCaption, "CHECKMATE !");
    return jobs::RunEnd::Refused;
  }
  finished_ = false;
  startClock(false);
  if (mapsTooSmall(settings_)) {
    records_.record(NoFound{false});
    return finishRun();
  }
  prepareSource(groupList(settings_, true), firstPlacement);
  tester_ = std::make_unique<PlacementTester>(settings_);
  if (settings_.threads > 1) pool_ = std::make_unique<TesterPool>(settings_, settings_.threads - 1);
  records_.record(Testing{});
  return runLoop();
}

jobs::RunEnd GeneratorJob::resume() {
  if (finished_) return jobs::RunEnd::Finished;
  clearStopRequest();
  startClock(true);
  if (pool_) pool_->resume();
  records_.record(Testing{});
  return runLoop();
}

core::BoardSetup GeneratorJob::setupOf(const Problem& problem) const {
  return generator::setupOf(problem.board, settings_.setup);
}

// In turn, the placements come after the first one, which only served the
// check test: the odometer runs over the available squares alone, so when
// the first placement is allowed it is passed over.
void GeneratorJob::prepareSource(const std::vector<Group>& groups, const Odometer& firstPlacement) {
  odometer_.reset();
  random_.reset();
  const Board fixed = fixedBoard(settings_.setup);
  if (settings_.atRandom) {
    random_.emplace(fixed, groups, settings_.seed);
    return;
  }
  odometer_.emplace(fixed, groups);
  odometerPrimed_ = odometer_->first();
  if (odometerPrimed_ && odometer_->samePlacement(firstPlacement)) odometerPrimed_ = odometer_->next();
  odometerExhausted_ = !odometerPrimed_;
}

GeneratorJob::Supply GeneratorJob::produce(Board& board) {
  if (random_) {
    // Draws with a man off its squares are not examined; a Stop must still
    // get through when hardly any draw is allowed.
    while (!random_->draw(board)) {
      if (stopRequested()) return Supply::Stopped;
    }
    return Supply::Tested;
  }
  if (odometerExhausted_) return Supply::Exhausted;
  if (!odometerPrimed_ && !odometer_->next()) {
    odometerExhausted_ = true;
    return Supply::Exhausted;
  }
  odometerPrimed_ = false;
  board = odometer_->board();
  return Supply::Tested;
}

GeneratorJob::Supply GeneratorJob::nextTested(Tested& tested) {
  if (!pool_) {
    const Supply supply = produce(tested.board);
    if (supply == Supply::Tested) tested.verdict = tester_->test(tested.board);
    return supply;
  }
  const std::size_t queue = kQueuedPerThread * static_cast<std::size_t>(settings_.threads);
  Board board;
  while (pool_->pending() < queue) {
    const Supply supply = produce(board);
    if (supply == Supply::Stopped) return supply;
    if (supply == Supply::Exhausted) break;
    pool_->add(board);
  }
  if (pool_->pending() == 0) return Supply::Exhausted;
  tested = pool_->takeOldest(*tester_);
  return Supply::Tested;
}

jobs::RunEnd GeneratorJob::runLoop() {
  Tested tested;
  for (;;) {
    if (stopRequested()) return pauseRun(jobs::RunEnd::Stopped);
    const Supply supply = nextTested(tested);
    if (supply == Supply::Stopped) return pauseRun(jobs::RunEnd::Stopped);
    if (supply == Supply::Exhausted) {
      records_.record(NoFound{!problems_.empty()});
      return finishRun();
    }
    countTestedMove();
    if (!tested.verdict.problem) continue;
    const Verdict& verdict = tested.verdict;
    problems_.push_back(
        {static_cast<int>(problems_.size()) + 1, tested.board, verdict.key, verdict.flights, verdict.mark});
    records_.record(problems_.back());
    if (problems_.size() == static_cast<std::size_t>(kMaxProblems)) {
      records_.record(AndOther{});
      return finishRun();
    }
    if (settings_.stopOnFirstSolution) return pauseRun(jobs::RunEnd::Solution);
  }
}

jobs::RunEnd GeneratorJob::pauseRun(jobs::RunEnd end) {
  if (pool_) pool_->hold();
  stopClock();
  finalUpdate();
  return end;
}

jobs::RunEnd GeneratorJob::finishRun() {
  finished_ = true;
  pool_.reset();
  tester_.reset();
  stopClock();
  finalUpdate();
  return jobs::RunEnd::Finished;
}

}  // namespace velkaro::generator
