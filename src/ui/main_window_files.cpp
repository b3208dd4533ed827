// Where problems come from: the import dialog (opened where the last import
// was found), a FEN, EPD or PGN file named on the command line, Next and
// Previous problem through the file last imported from, and the recent
// files. The window's title names the record's author and source.

#include <QAction>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>

#include "formats/fen.h"
#include "formats/record_title.h"
#include "ui/commands.h"
#include "ui/import_fen_dialog.h"
#include "ui/main_window.h"

namespace velkaro::ui {

namespace {

constexpr int kRecentFiles = 8;

struct ImportFile {
  std::vector<std::string> lines;
  std::string type;
};

ImportFile readImportFile(const QString& path) {
  return {formats::readImportLines(QFile::encodeName(path).toStdString()),
          formats::fileTypeOf(QFile::encodeName(QFileInfo(path).fileName()).toStdString())};
}

}  // namespace

void MainWindow::createFileNavigation() {
  QAction* next = addCommand(NextProblem, QStringLiteral("Next problem"));
  next->setShortcut(QKeySequence(Qt::Key_PageDown));
  QAction* previous = addCommand(PreviousProblem, QStringLiteral("Previous problem"));
  previous->setShortcut(QKeySequence(Qt::Key_PageUp));
  connect(next, &QAction::triggered, this, [this] { stepProblem(1); });
  connect(previous, &QAction::triggered, this, [this] { stepProblem(-1); });
  recentMenu_ = new QMenu(QStringLiteral("Recent files"), this);
}

void MainWindow::importFen() {
  const QFileInfo last(importPath_);
  const bool sameFolder = last.absolutePath() == QFileInfo(importFolder_).absoluteFilePath();
  auto* dialog = new ImportFenDialog(importFolder_, sameFolder ? last.fileName() : QString(), importRow_, this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QDialog::accepted, this, [this, dialog] {
    importFolder_ = dialog->folder();
    importLine(dialog->filePath(), dialog->row());
  });
  dialog->open();
}

bool MainWindow::openFirstPosition(const QString& path) {
  const ImportFile file = readImportFile(path);
  formats::FenImport import;
  for (int row = 0; row < static_cast<int>(file.lines.size()); ++row) {
    if (import.selectLine(file.lines, row, file.type)) return importLine(path, row);
  }
  return false;
}

bool MainWindow::importLine(const QString& path, int row) {
  const ImportFile file = readImportFile(path);
  formats::FenImport import;
  if (row < 0 || row >= static_cast<int>(file.lines.size()) || !import.selectLine(file.lines, row, file.type)) {
    return false;
  }
  takeOverImport(import.result());
  document_.setModified(false);
  problemFile_.clear();
  importFolder_ = QFileInfo(path).absolutePath();
  importPath_ = QFileInfo(path).absoluteFilePath();
  importRow_ = row;
  rememberFile(importPath_, row);
  origin_ = QStringLiteral("%1:%2").arg(QFileInfo(path).fileName()).arg(row + 1);
  showOrigin(QString::fromStdString(formats::recordTitle(file.lines, row, file.type)));
  return true;
}

// The next (or previous) line of the file that holds a position.
void MainWindow::stepProblem(int direction) {
  if (importPath_.isEmpty()) return;
  const ImportFile file = readImportFile(importPath_);
  formats::FenImport import;
  for (int row = importRow_ + direction; row >= 0 && row < static_cast<int>(file.lines.size()); row += direction) {
    if (import.selectLine(file.lines, row, file.type)) {
      importLine(importPath_, row);
      return;
    }
  }
}

// A file opens again at its line; the latest comes first, each once.
void MainWindow::rememberFile(const QString& path, int row) {
  const QString entry = row >= 0 ? QStringLiteral("%1:%2").arg(path).arg(row + 1) : path;
  recentFiles_.removeIf([&](const QString& old) { return old == path || old.startsWith(path + ':'); });
  recentFiles_.prepend(entry);
  while (recentFiles_.size() > kRecentFiles) recentFiles_.removeLast();
  showRecentFiles();
}

void MainWindow::showRecentFiles() {
  recentMenu_->clear();
  for (const QString& entry : recentFiles_) {
    QAction* action = recentMenu_->addAction(entry);
    connect(action, &QAction::triggered, this, [this, entry] {
      const qsizetype colon = entry.lastIndexOf(':');
      bool numbered = false;
      const int line = colon > 0 ? entry.mid(colon + 1).toInt(&numbered) : 0;
      if (numbered) {
        importLine(entry.left(colon), line - 1);
      } else {
        openProblemFile(entry);
      }
    });
  }
  recentMenu_->setEnabled(!recentFiles_.isEmpty());
}

void MainWindow::showOrigin(const QString& title) {
  setWindowTitle(title.isEmpty() ? QStringLiteral("Velkaro") : QStringLiteral("Velkaro - ") + title);
  status_->setText(statusText());
}

}  // namespace velkaro::ui
