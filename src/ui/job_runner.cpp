// The window runs its jobs on the interface thread: a job returns to the
// runner only when it stops, pauses or ends, and in between the progress tick
// is the one place where the window sees its input.

#include "ui/job_runner.h"

#include <QApplication>
#include <QMessageBox>

#include "ui/progress_panel.h"
#include "ui/result_pane.h"

namespace velkaro::ui {
namespace {

QString fromView(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

}  // namespace

JobRunner::JobRunner(ProgressPanel& panel, ResultPane& pane, QWidget& dialogParent)
    : panel_(panel),
      pane_(pane),
      dialogParent_(dialogParent),
      solverJob_(std::make_unique<solver::SolverJob>(*this, *this, *this)),
      countingJob_(std::make_unique<counter::CountingJob>(*this, *this, *this)) {}

JobRunner::~JobRunner() = default;

// The job always pauses after a solution and the runner decides whether to go
// on, so that "Stop on first solution" is read again at every Continue.
solver::RunEnd JobRunner::solve(solver::SolveSettings settings, const RunOptions& options) {
  settings.stopOnFirstSolution = true;
  beginRun(options);
  return endRun(Kind::Solving, solverJob_->start(settings), options);
}

solver::RunEnd JobRunner::count(const counter::CountSettings& settings, const RunOptions& options) {
  beginRun(options);
  return endRun(Kind::Counting, countingJob_->start(settings), options);
}

solver::RunEnd JobRunner::resume(const RunOptions& options) {
  if (!continuable_) return solver::RunEnd::Finished;
  const Kind kind = *continuable_;
  beginRun(options);
  return endRun(kind, kind == Kind::Solving ? solverJob_->resume(options.testAllSecondMoves) : countingJob_->resume(),
                options);
}

// The language and the refresh interval chosen since the last run count from
// this one on.
void JobRunner::beginRun(const RunOptions& options) {
  running_ = true;
  stopRequested_ = false;
  continuable_.reset();
  solverJob_->setLanguage(options.language);
  solverJob_->setRefreshInterval(options.refreshInterval);
  countingJob_->setLanguage(options.language);
  countingJob_->setRefreshInterval(options.refreshInterval);
}

solver::RunEnd JobRunner::endRun(Kind kind, solver::RunEnd end, const RunOptions& options) {
  while (kind == Kind::Solving && end == solver::RunEnd::Solution && !options.stopOnFirstSolution) {
    end = solverJob_->resume(options.testAllSecondMoves);
  }
  running_ = false;
  if (end == solver::RunEnd::Stopped || end == solver::RunEnd::Solution) continuable_ = kind;
  return end;
}

// The fields first, so that what the user sees is current while the input
// that has waited since the last tick is handled.
bool JobRunner::tick(const solver::Progress& progress) {
  showTotals(progress);
  if (progress.showsLine) {
    panel_.setLineDisplay(progress.line);
  } else {
    panel_.clearLineDisplay();
  }
  QCoreApplication::processEvents();
  return stopRequested_;
}

void JobRunner::update(const solver::Progress& progress) {
  showTotals(progress);
  panel_.clearLineDisplay();
}

void JobRunner::showTotals(const solver::Progress& progress) {
  panel_.setClockText(progress.clock);
  panel_.setTestedMovesText(progress.testedMoves);
  panel_.setSpeedText(progress.speed);
  panel_.setBar(progress.bar);
}

void JobRunner::barMoved(int position) { panel_.setBar(position); }

void JobRunner::clearItems() { pane_.clearResults(); }

void JobRunner::insertRootItem(solver::ItemId id, std::string_view text) { pane_.insertRootItem(id, text); }

void JobRunner::insertChildItem(solver::ItemId parent, solver::ItemId id, std::string_view text) {
  pane_.insertChildItem(parent, id, text);
}

void JobRunner::deleteItem(solver::ItemId id) { pane_.deleteItem(id); }

void JobRunner::scrollToEnd() { pane_.scrollToEnd(); }

void JobRunner::beep() { QApplication::beep(); }

void JobRunner::bufferAppended(std::string_view text) { pane_.appendText(text); }

void JobRunner::showMessage(std::string_view caption, std::string_view text) {
  QMessageBox box(QMessageBox::Warning, fromView(caption), fromView(text), QMessageBox::Ok, &dialogParent_);
  box.exec();
}

}  // namespace velkaro::ui
