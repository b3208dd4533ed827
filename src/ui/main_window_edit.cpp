// Undo and redo of set-up changes, the clipboard, editing the board from the
// keyboard, the status bar, and the window's own state across starts. Every
// change of the set-up (board edits, transformations, Clear, Initial
// position, imports, the side and castling settings) becomes one undo step,
// recorded when the document says its set-up changed.

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QTabBar>
#include <QUndoCommand>

#include "ui/board_view.h"
#include "ui/commands.h"
#include "ui/main_window.h"
#include "ui/piece_palette.h"
#include "ui/progress_panel.h"
#include "ui/result_pane.h"

namespace velkaro::ui {

namespace {

// One step back or forward between two set-ups. The change has happened when
// the step is recorded, so its first redo does nothing.
class SetupChange : public QUndoCommand {
 public:
  SetupChange(ProblemDocument& document, const core::BoardSetup& before, const core::BoardSetup& after,
              bool& replaying)
      : QUndoCommand(QStringLiteral("board change")),
        document_(document),
        before_(before),
        after_(after),
        replaying_(replaying) {}

  void undo() override { apply(before_); }
  void redo() override {
    if (recorded_) apply(after_);
    recorded_ = true;
  }

 private:
  void apply(const core::BoardSetup& setup) {
    replaying_ = true;
    document_.setSetup(setup);
    replaying_ = false;
  }

  ProblemDocument& document_;
  core::BoardSetup before_;
  core::BoardSetup after_;
  bool& replaying_;
  bool recorded_ = false;
};

bool sameSetup(const core::BoardSetup& a, const core::BoardSetup& b) {
  return a.board == b.board && a.sideToMove == b.sideToMove && a.whiteLongCastle == b.whiteLongCastle &&
         a.whiteShortCastle == b.whiteShortCastle && a.blackLongCastle == b.blackLongCastle &&
         a.blackShortCastle == b.blackShortCastle && a.lastMoveSquare == b.lastMoveSquare;
}

}  // namespace

void MainWindow::createEditCommands() {
  QAction* undo = addCommand(Undo, QStringLiteral("Undo"));
  undo->setShortcuts(QKeySequence::Undo);
  QAction* redo = addCommand(Redo, QStringLiteral("Redo"));
  // Ctrl+Y on every platform; where the platform's own redo keys hold it
  // already, a second entry would make the key ambiguous and dead.
  QList<QKeySequence> redoKeys = QKeySequence::keyBindings(QKeySequence::Redo);
  if (!redoKeys.contains(QKeySequence(Qt::CTRL | Qt::Key_Y))) redoKeys.prepend(QKeySequence(Qt::CTRL | Qt::Key_Y));
  redo->setShortcuts(redoKeys);
  undo->setEnabled(false);
  redo->setEnabled(false);
  connect(undo, &QAction::triggered, &undoStack_, &QUndoStack::undo);
  connect(redo, &QAction::triggered, &undoStack_, &QUndoStack::redo);
  connect(&undoStack_, &QUndoStack::canUndoChanged, undo, [this, undo](bool can) {
    if (!runner_->running()) undo->setEnabled(can);
  });
  connect(&undoStack_, &QUndoStack::canRedoChanged, redo, [this, redo](bool can) {
    if (!runner_->running()) redo->setEnabled(can);
  });
  connect(addCommand(CopySolution, QStringLiteral("Copy solution")), &QAction::triggered, this,
          &MainWindow::copySolution);
  recordedSetup_ = document_.setup();

  resultPane_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(resultPane_, &QWidget::customContextMenuRequested, this, &MainWindow::showResultMenu);
  connect(resultPane_, &ResultPane::copyRequested, this, &MainWindow::copySelectedLines);
  connect(boardView_, &BoardView::keyPressedOnSquare, this, &MainWindow::keyOnBoard);

  status_ = new QLabel(this);
  statusBar()->addWidget(status_, 1);
}

void MainWindow::recordSetupChange() {
  const core::BoardSetup now = document_.setup();
  if (!replaying_ && !sameSetup(now, recordedSetup_)) {
    undoStack_.push(new SetupChange(document_, recordedSetup_, now, replaying_));
  }
  recordedSetup_ = now;
}

void MainWindow::copySolution() {
  QApplication::clipboard()->setText(QString::fromStdString(document_.solutionText()));
}

// The selected lines in tree order, a variation with a tab before it, as in
// the solution text.
void MainWindow::copySelectedLines() {
  QModelIndexList selected = resultPane_->selectionModel()->selectedRows();
  std::sort(selected.begin(), selected.end(), [](const QModelIndex& a, const QModelIndex& b) {
    const int rootA = a.parent().isValid() ? a.parent().row() : a.row();
    const int rootB = b.parent().isValid() ? b.parent().row() : b.row();
    if (rootA != rootB) return rootA < rootB;
    return (a.parent().isValid() ? a.row() + 1 : 0) < (b.parent().isValid() ? b.row() + 1 : 0);
  });
  QString text;
  for (const QModelIndex& index : selected) {
    text += (index.parent().isValid() ? QStringLiteral("\t") : QString()) + index.data().toString() + '\n';
  }
  QApplication::clipboard()->setText(text);
}

void MainWindow::showResultMenu(QPoint position) {
  QMenu menu(resultPane_);
  QAction* copy = menu.addAction(QStringLiteral("Copy"), this, &MainWindow::copySelectedLines);
  copy->setEnabled(resultPane_->selectionModel()->hasSelection());
  menu.addAction(actions_.at(CopySolution));
  menu.exec(resultPane_->viewport()->mapToGlobal(position));
}

// Delete or Backspace empties the cursor's square, Space or Enter puts the
// palette's man there, and a piece letter of the notation language puts that
// man of the palette's side there ("P" a pawn, unless it is a piece letter).
void MainWindow::keyOnBoard(int square, int key, const QString& text) {
  if (key == Qt::Key_Delete || key == Qt::Key_Backspace) {
    editSquare(square, 0);
    return;
  }
  const int chosen = palette_->selectedPiece();
  if (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter) {
    editSquare(square, chosen);
    return;
  }
  const QChar letter = text.isEmpty() ? QChar() : text.at(0).toUpper();
  const std::string_view letters = notation_.letters();
  constexpr int kKinds[5] = {core::piece::King, core::piece::Queen, core::piece::Rook, core::piece::Bishop,
                             core::piece::Knight};
  int kind = 0;
  for (std::size_t index = 0; index < letters.size() && kind == 0; ++index) {
    if (letter == QChar(letters[index])) kind = kKinds[index];
  }
  if (kind == 0 && letter == QChar('P')) kind = core::piece::Pawn;
  if (kind != 0) editSquare(square, chosen < 0 ? -kind : kind);
}

void MainWindow::showRunSummary(jobs::RunEnd end) {
  const char* ending = end == jobs::RunEnd::Stopped    ? "stopped"
                       : end == jobs::RunEnd::Solution ? "paused at a solution"
                       : end == jobs::RunEnd::Refused  ? "refused"
                                                       : "finished";
  runSummary_ = QStringLiteral("Last run %1: %2, %3 tested moves")
                    .arg(QString::fromLatin1(ending), progressPanel_->clockText(),
                         progressPanel_->testedMovesText().trimmed());
  status_->setText(statusText());
}

QString MainWindow::statusText() const {
  if (origin_.isEmpty()) return runSummary_;
  return runSummary_.isEmpty() ? origin_ : origin_ + QStringLiteral("    ") + runSummary_;
}

// The window's size, the splitters and the last tab are kept in a settings
// file of their own beside the program's settings file, whose bytes are
// fixed.
QString MainWindow::windowSettingsPath() const { return problemFolder_ + QStringLiteral("/velkaro-window.ini"); }

void MainWindow::restoreWindowState() {
  const QSettings settings(windowSettingsPath(), QSettings::IniFormat);
  if (!restoreGeometry(settings.value("window/geometry").toByteArray())) {
    const QRect screen = this->screen()->availableGeometry();
    resize(qMin(1180, screen.width()), qMin(720, screen.height() - 40));
  }
  boardSplitter_->restoreState(settings.value("window/boardSplitter").toByteArray());
  resultSplitter_->restoreState(settings.value("window/resultSplitter").toByteArray());
  // The tab's handler runs also for the first tab, which the tab bar shows
  // already and so does not report: it enables Start.
  const int tab = settings.value("window/tab", 0).toInt();
  if (tab == tabs_->currentIndex()) {
    changeMode(tab);
  } else {
    tabs_->setCurrentIndex(tab);
  }
  importFolder_ = settings.value("import/folder", importFolder_).toString();
  importPath_ = settings.value("import/file").toString();
  importRow_ = settings.value("import/row", -1).toInt();
  recentFiles_ = settings.value("recent/files").toStringList();
  showRecentFiles();
}

void MainWindow::saveWindowState() const {
  QSettings settings(windowSettingsPath(), QSettings::IniFormat);
  settings.setValue("window/geometry", saveGeometry());
  settings.setValue("window/boardSplitter", boardSplitter_->saveState());
  settings.setValue("window/resultSplitter", resultSplitter_->saveState());
  settings.setValue("window/tab", tabs_->currentIndex());
  settings.setValue("import/folder", importFolder_);
  settings.setValue("import/file", importPath_);
  settings.setValue("import/row", importRow_);
  settings.setValue("recent/files", recentFiles_);
}

}  // namespace velkaro::ui
