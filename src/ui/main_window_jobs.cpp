// Start, Continue and Stop on the "Solver" and "Variants" tabs, the first
// move to test, and closing the window while a run goes on. A run goes on a
// worker thread while the window stays locked; what it says arrives as mail
// that is shown in batches, and Stop reaches the job at once.

#include <QApplication>
#include <QCloseEvent>
#include <QMessageBox>

#include "jobs/progress_text.h"
#include "ui/creator_panel.h"
#include "ui/positions_panel.h"
#include "ui/main_window.h"
#include "ui/progress_panel.h"
#include "ui/result_pane.h"
#include "ui/select_move_dialog.h"
#include "ui/solver_panel.h"

namespace velkaro::ui {

namespace {

// Records shown per turn of the event loop: enough to keep up with any run,
// few enough that the window repaints and takes Stop in between.
constexpr std::size_t kRecordsPerTurn = 20'000;

}  // namespace

void MainWindow::createRunner() {
  runner_ = std::make_unique<JobRunner>();
  connect(runner_.get(), &JobRunner::mailArrived, this, &MainWindow::takeMail, Qt::QueuedConnection);
  connect(progressPanel_, &ProgressPanel::startPressed, this, &MainWindow::startJob);
  connect(progressPanel_, &ProgressPanel::continuePressed, this, &MainWindow::continueJob);
  connect(progressPanel_, &ProgressPanel::stopPressed, this, [this] { runner_->requestStop(); });
  connect(solverPanel_, &SolverPanel::selectMoveRequested, this, &MainWindow::selectFirstMove);
}

std::optional<JobRunner::Kind> MainWindow::jobKind() const {
  switch (mode_) {
    case Mode::Solver:
      return JobRunner::Kind::Solving;
    case Mode::Creator:
      return JobRunner::Kind::Creating;
    case Mode::Positions:
      return JobRunner::Kind::Placing;
    case Mode::Variants:
      return JobRunner::Kind::Counting;
  }
  return std::nullopt;
}

void MainWindow::startJob() {
  const std::optional<JobRunner::Kind> kind = jobKind();
  if (runner_->running() || !kind) return;
  const RunOptions options = runOptions();
  setRunLocked(true);
  switch (*kind) {
    case JobRunner::Kind::Creating: {
      generator::CreateSettings settings = creatorPanel_->settings(document_.setup());
      settings.stopOnFirstSolution = options.stopOnFirstSolution;
      settings.refreshInterval = options.refreshInterval;
      creatorPanel_->beginRun(document_.setup(), true, options.language);
      runner_->create(settings, options);
      return;
    }
    case JobRunner::Kind::Placing:
      runner_->place(positionsPanel_->settings(options.stopOnFirstSolution), options);
      return;
    case JobRunner::Kind::Solving:
    case JobRunner::Kind::Counting:
      break;
  }
  document_.setLastRunCounted(*kind == JobRunner::Kind::Counting);
  clearResults();
  writer_ = std::make_unique<solver::ReportWriter>(resultModel_, options.language);
  if (*kind == JobRunner::Kind::Counting) {
    runner_->count(countSettings(), options);
  } else {
    runner_->solve(solveSettings(), options);
  }
}

void MainWindow::continueJob() {
  if (runner_->running() || !jobKind() || runner_->continuable() != jobKind()) return;
  const RunOptions options = runOptions();
  if (jobKind() == JobRunner::Kind::Creating) {
    creatorPanel_->beginRun(document_.setup(), false, options.language);
  } else {
    writer_ = std::make_unique<solver::ReportWriter>(resultModel_, options.language);
  }
  setRunLocked(true);
  runner_->resume(options);
}

// One batch of what the run said: its records into the tree and the
// document, the panel's latest state, and at the end the run's end. A batch
// left over is taken on the next turn of the event loop.
void MainWindow::takeMail() {
  JobRunner::Mail mail = runner_->takeMail(kRecordsPerTurn);
  showRecords(mail.records);
  if (mail.panel) {
    showPanel(*mail.panel);
    if (mail.panel->showsLine) {
      const jobs::Progress& progress = mail.panel->progress;
      const int moves = std::min(core::kShownLineMoves, std::max(2, progress.linePly));
      document_.setCurrentLine({progress.lineDepth, progress.linePly,
                                std::vector<core::MoveRecord>(progress.line.begin(), progress.line.begin() + moves)});
    }
  }
  if (mail.more) QMetaObject::invokeMethod(this, &MainWindow::takeMail, Qt::QueuedConnection);
  if (mail.end) endRun(*mail.end, mail.caption, mail.refusal, mail.kind);
}

// Solver and Variants records go into the tree and the document, Creator
// and Positions records into their panels' lists.
void MainWindow::showRecords(std::vector<AnyRecord>& records) {
  std::vector<solver::Record> kept;
  for (AnyRecord& any : records) {
    if (auto* found = std::get_if<generator::Record>(&any)) {
      creatorPanel_->record(*found);
    } else if (auto* placed = std::get_if<placement::Record>(&any)) {
      positionsPanel_->record(*placed);
    } else if (auto* result = std::get_if<solver::Record>(&any); result && writer_) {
      writer_->record(*result);
      if (!std::holds_alternative<solver::Searching>(*result)) kept.push_back(std::move(*result));
    }
  }
  if (kept.empty()) return;
  const ResultModel::Batch batch = resultModel_.showBatch();
  document_.addSolution(kept, batch.text);
  if (batch.resultShown) resultPane_->scrollToBottom();
  if (batch.beep) QApplication::beep();
}

void MainWindow::showPanel(const PanelState& state) {
  const jobs::Progress& progress = state.progress;
  progressPanel_->setClockText(jobs::clockText(progress.elapsedMs));
  progressPanel_->setTestedMovesText(state.blankCounts ? "" : jobs::testedMovesText(progress.tested));
  progressPanel_->setSpeedText(state.blankCounts ? "" : jobs::speedText(progress.tested, progress.elapsedMs));
  progressPanel_->setBar(progress.bar);
  if (state.showsLine && progress.lineDepth > 0) {
    progressPanel_->setLineDisplay(jobs::lineText(progress, notation_));
  } else {
    progressPanel_->clearLineDisplay();
  }
}

// A refused set-up is told in a message box of its own, owned by no window.
void MainWindow::endRun(jobs::RunEnd end, const QString& caption, const QString& refusal, JobRunner::Kind kind) {
  setRunLocked(false);
  showRunSummary(end);
  if (kind == JobRunner::Kind::Creating) creatorPanel_->showSelection();
  if (end == jobs::RunEnd::Refused && !refusal.isEmpty()) {
    auto* box = new QMessageBox(QMessageBox::Warning, caption, refusal, QMessageBox::Ok);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
  }
  emit runEnded(end);
  if (closeAfterRun_) {
    closeAfterRun_ = false;
    close();
  }
}

void MainWindow::clearResults() {
  resultModel_.clear();
  document_.clearSolution();
}

// Continue belongs to the tab whose run it would go on with.
void MainWindow::updateRunButtons() {
  if (runner_->running()) return;
  const std::optional<JobRunner::Kind> kind = jobKind();
  progressPanel_->showIdle(kind.has_value(), kind && runner_->continuable() == kind);
}

RunOptions MainWindow::runOptions() const {
  const SolverOptions& options = document_.options();
  return {language_, refreshInterval_, options.stopOnFirstSolution,
          options.testAllSecondMoves && !document_.stipulation().helpmate};
}

solver::SolveSettings MainWindow::solveSettings() const {
  solver::SolveSettings settings;
  settings.setup = document_.setup();
  settings.stipulation = document_.stipulation();
  settings.minimumMoves = document_.options().minimumMoves;
  settings.testAllSecondMoves = document_.options().testAllSecondMoves && !settings.stipulation.helpmate;
  settings.firstMove = document_.firstMove();
  return settings;
}

// The "Mate in" number counts single moves here.
counter::CountSettings MainWindow::countSettings() const {
  counter::CountSettings settings;
  settings.setup = document_.setup();
  settings.depth = document_.stipulation().moves;
  settings.firstMove = document_.firstMove();
  return settings;
}

// The first row ("Wszystkie") and OK with no row mean all moves; Cancel keeps
// the choice as it was.
void MainWindow::selectFirstMove() {
  const std::vector<core::FirstMove> moves = core::firstMoveList(document_.setup());
  std::vector<std::string> rows{"Wszystkie"};
  int currentRow = 0;
  for (const core::FirstMove& move : moves) {
    if (document_.firstMove() && move.sameMove(*document_.firstMove())) currentRow = static_cast<int>(rows.size());
    rows.push_back(notation_.MoveText(move.record()));
  }
  auto* dialog = new SelectMoveDialog(rows, currentRow, this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QDialog::accepted, this, [this, dialog, moves] {
    const int row = dialog->chosenRow();
    std::optional<core::FirstMove> chosen;
    if (row >= 1 && row <= static_cast<int>(moves.size())) chosen = moves[static_cast<std::size_t>(row) - 1];
    document_.setFirstMove(chosen);
  });
  dialog->open();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (runner_->running()) {
    closeAfterRun_ = true;
    runner_->requestStop();
    event->ignore();
    return;
  }
  if (!mayClose()) {
    event->ignore();
    return;
  }
  saveWindowState();
  QMainWindow::closeEvent(event);
}

}  // namespace velkaro::ui
