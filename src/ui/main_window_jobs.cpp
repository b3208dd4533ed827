// Start, Continue and Stop on the "Solver" and "Variants" tabs, the first
// move to test, and closing the window while a run goes on. A run locks the
// window for as long as the job has control; Stop reaches the job through the
// input that each progress tick lets through.

#include <QCloseEvent>

#include "counter/first_moves.h"
#include "ui/main_window.h"
#include "ui/progress_panel.h"
#include "ui/result_pane.h"
#include "ui/select_move_dialog.h"
#include "ui/solver_panel.h"

namespace velkaro::ui {

void MainWindow::createRunner() {
  runner_ = std::make_unique<JobRunner>(*progressPanel_, *resultPane_, *this);
  connect(progressPanel_, &ProgressPanel::startPressed, this, &MainWindow::startJob);
  connect(progressPanel_, &ProgressPanel::continuePressed, this, &MainWindow::continueJob);
  connect(progressPanel_, &ProgressPanel::stopPressed, this, [this] { runner_->requestStop(); });
  connect(solverPanel_, &SolverPanel::selectMoveRequested, this, &MainWindow::selectFirstMove);
  connect(solverPanel_, &SolverPanel::settingsEdited, this, &MainWindow::setupEdited);
}

// Creator and Positions run no jobs in this version.
std::optional<JobRunner::Kind> MainWindow::jobKind() const {
  if (mode_ == Mode::Solver) return JobRunner::Kind::Solving;
  if (mode_ == Mode::Variants) return JobRunner::Kind::Counting;
  return std::nullopt;
}

void MainWindow::startJob() {
  const std::optional<JobRunner::Kind> kind = jobKind();
  if (runner_->running() || !kind) return;
  setRunLocked(true);
  if (*kind == JobRunner::Kind::Counting) {
    runner_->count(countSettings(), runOptions());
  } else {
    runner_->solve(solveSettings(), runOptions());
  }
  endRun();
}

void MainWindow::continueJob() {
  if (runner_->running() || !jobKind() || runner_->continuable() != jobKind()) return;
  setRunLocked(true);
  runner_->resume(runOptions());
  endRun();
}

void MainWindow::endRun() {
  setRunLocked(false);
  if (closeAfterRun_) {
    closeAfterRun_ = false;
    close();
  }
}

// Continue belongs to the tab whose run it would go on with.
void MainWindow::updateRunButtons() {
  if (runner_->running()) return;
  const std::optional<JobRunner::Kind> kind = jobKind();
  progressPanel_->showIdle(kind.has_value(), kind && runner_->continuable() == kind);
}

RunOptions MainWindow::runOptions() const {
  return {language_, refreshInterval_, stopOnFirstSolution(),
          solverPanel_->testsAllSecondMoves() && !stipulation().helpmate};
}

solver::SolveSettings MainWindow::solveSettings() const {
  solver::SolveSettings settings;
  settings.setup = setup();
  settings.stipulation = stipulation();
  settings.minimumMoves = searchMinimumMoves();
  settings.testAllSecondMoves = solverPanel_->testsAllSecondMoves() && !settings.stipulation.helpmate;
  settings.firstMove = firstMove_;
  return settings;
}

// The "Mate in" number counts single moves here.
counter::CountSettings MainWindow::countSettings() const {
  counter::CountSettings settings;
  settings.setup = setup();
  settings.depth = stipulation().moves;
  settings.firstMove = firstMove_;
  return settings;
}

// A chosen first move may not exist in the new set-up, and a saved run
// belongs to the old one: both are given up.
void MainWindow::setupEdited() {
  firstMove_.reset();
  showFirstMove();
  runner_->forgetLastRun();
  updateRunButtons();
}

// OK with the first row, or with none, means all moves; Cancel keeps the
// choice as it was.
void MainWindow::selectFirstMove() {
  const std::vector<solver::FirstMove> moves = counter::firstMoveList(setup());
  int currentRow = 0;
  for (std::size_t index = 0; firstMove_ && index < moves.size(); ++index) {
    const solver::FirstMove& move = moves[index];
    if (move.fromSquare == firstMove_->fromSquare && move.toSquare == firstMove_->toSquare &&
        move.moveKind == firstMove_->moveKind) {
      currentRow = static_cast<int>(index) + 1;
    }
  }
  auto* dialog = new SelectMoveDialog(counter::selectMoveRows(moves, notation_), currentRow, this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QDialog::accepted, this, [this, dialog, moves] {
    const int row = dialog->chosenRow();
    firstMove_.reset();
    if (row >= 1 && row <= static_cast<int>(moves.size())) firstMove_ = moves[static_cast<std::size_t>(row) - 1];
    showFirstMove();
  });
  dialog->open();
}

void MainWindow::showFirstMove() {
  solverPanel_->setFirstMoveText(firstMove_ ? QString::fromStdString(counter::firstMoveText(*firstMove_, notation_))
                                            : QStringLiteral("All moves"));
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (runner_->running()) {
    closeAfterRun_ = true;
    runner_->requestStop();
    event->ignore();
    return;
  }
  QMainWindow::closeEvent(event);
}

}  // namespace velkaro::ui
