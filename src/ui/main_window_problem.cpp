// The problem on disk and on the clipboard: Open, Save and Save as of
// problem files (with the solution text beside them), Export FEN with tags,
// files dropped on the window, Copy FEN and Paste FEN, and the question
// whether to save before the window closes.

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QTabBar>
#include <sstream>

#include "formats/fen.h"
#include "formats/fen_export.h"
#include "formats/problem_file.h"
#include "jobs/progress_text.h"
#include "ui/commands.h"
#include "ui/export_fen_dialog.h"
#include "ui/import_fen_dialog.h"
#include "ui/main_window.h"
#include "ui/progress_panel.h"

namespace velkaro::ui {

namespace {

std::filesystem::path toPath(const QString& path) { return std::filesystem::path(path.toStdU16String()); }

bool isProblemFile(const QString& path) { return QFileInfo(path).suffix().compare("kvz", Qt::CaseInsensitive) == 0; }

bool isImportFile(const QString& path) {
  const QString suffix = QFileInfo(path).suffix().toLower();
  return suffix == "fen" || suffix == "epd" || suffix == "pgn";
}

// The file type the import reader would give text pasted without a name:
// PGN for a FEN tag, EPD for EPD opcodes, FEN otherwise.
std::string pastedType(const std::vector<std::string>& lines) {
  for (const std::string& line : lines) {
    if (line.rfind("[FEN", 0) == 0) return "PGN";
    if (line.find(" c6 ") != std::string::npos || line.find(";dm ") != std::string::npos) return "EPD";
  }
  return "FEN";
}

// The import reader keeps old quirks that drop castling and en passant,
// depending on where the FEN stands in its line and on the placement's last
// digit. Pasted text keeps the rights its FEN states, so that Copy FEN and
// Paste FEN give the same problem.
formats::ImportResult withStatedRights(formats::ImportResult result, std::string line) {
  if (const std::size_t tag = line.find("[FEN \""); tag != std::string::npos) line.erase(0, tag + 6);
  line = line.substr(0, line.find('"'));
  std::istringstream fields(line);
  std::string placement, side, castling, enPassant;
  if (!(fields >> placement >> side >> castling) || castling.find_first_not_of("KQkq-") != std::string::npos) {
    return result;
  }
  result.whiteShortCastle = castling.find('K') != std::string::npos;
  result.whiteLongCastle = castling.find('Q') != std::string::npos;
  result.blackShortCastle = castling.find('k') != std::string::npos;
  result.blackLongCastle = castling.find('q') != std::string::npos;
  const bool passant = fields >> enPassant && enPassant.size() == 2 && enPassant[0] >= 'a' && enPassant[0] <= 'h' &&
                       (enPassant[1] == '3' || enPassant[1] == '6');
  result.enPassantFile = passant ? enPassant[0] : 0;
  return result;
}

}  // namespace

void MainWindow::createProblemCommands() {
  for (int command : {Open, Save, SaveAs, ExportFen}) actions_.at(command)->setEnabled(true);
  connect(actions_.at(Open), &QAction::triggered, this, &MainWindow::openProblem);
  connect(actions_.at(Save), &QAction::triggered, this, &MainWindow::saveProblem);
  connect(actions_.at(SaveAs), &QAction::triggered, this, [this] { saveProblemAs(); });
  connect(actions_.at(ExportFen), &QAction::triggered, this, &MainWindow::exportFen);
  QAction* copy = addCommand(CopyFen, QStringLiteral("Copy FEN"));
  copy->setShortcuts(QKeySequence::Copy);
  connect(copy, &QAction::triggered, this, &MainWindow::copyFen);
  QAction* paste = addCommand(PasteFen, QStringLiteral("Paste FEN"));
  paste->setShortcuts(QKeySequence::Paste);
  connect(paste, &QAction::triggered, this, &MainWindow::pasteFen);
  setAcceptDrops(true);
}

void MainWindow::openProblem() {
  auto* dialog = new QFileDialog(this, QString::fromLatin1(formats::kOpenProblemTitle), problemFolder_,
                                 QString::fromLatin1(formats::kProblemFilter));
  dialog->setOption(QFileDialog::DontUseNativeDialog);
  dialog->setFileMode(QFileDialog::ExistingFile);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) { openProblemFile(path); });
  dialog->open();
}

// What the files hold replaces the problem; the tree is rebuilt from the
// solution text and the line the run stood at is shown again.
bool MainWindow::openProblemFile(const QString& path) {
  formats::ProblemData problem = document_.problemData();
  if (!formats::OpenProblem(toPath(path), problem)) {
    QMessageBox::warning(this, QStringLiteral("Velkaro"), QStringLiteral("%1 cannot be opened.").arg(path));
    return false;
  }
  document_.takeProblem(problem);
  showSolutionText();
  tabs_->setCurrentIndex(static_cast<int>(problem.options.counting ? Mode::Variants : Mode::Solver));
  becomeProblemFile(path);
  return true;
}

// The problem is now the one of the file at `path`: recent files, title and
// status bar say so.
void MainWindow::becomeProblemFile(const QString& path) {
  problemFile_ = QFileInfo(path).absoluteFilePath();
  rememberFile(problemFile_, -1);
  origin_ = QFileInfo(path).fileName();
  setWindowTitle(QString::fromStdString(formats::problemWindowTitle(toPath(path))));
  status_->setText(statusText());
}

void MainWindow::showSolutionText() {
  resultModel_.clear();
  for (const formats::SolutionEntry& entry : formats::solutionTree(document_.solutionText())) {
    resultModel_.addRootLine(entry.text);
    for (const std::string& child : entry.children) resultModel_.addChildLine(child);
  }
  resultModel_.showBatch();
  const formats::CurrentLine& line = document_.currentLine();
  jobs::Progress progress;
  progress.lineDepth = line.depth;
  progress.linePly = line.ply;
  for (std::size_t move = 0; move < line.moves.size() && move < progress.line.size(); ++move) {
    progress.line[move] = line.moves[move];
  }
  if (line.depth > 0) progressPanel_->setLineDisplay(jobs::lineText(progress, notation_));
}

void MainWindow::saveProblem() {
  if (problemFile_.isEmpty()) {
    saveProblemAs();
  } else {
    writeProblemFile(problemFile_);
  }
}

// `then` runs once the problem is saved (closing the window, say).
void MainWindow::saveProblemAs(std::function<void()> then) {
  auto* dialog = new QFileDialog(this, QString::fromLatin1(formats::kSaveProblemAsTitle),
                                 problemFile_.isEmpty() ? problemFolder_ : problemFile_,
                                 QString::fromLatin1(formats::kProblemFilter));
  dialog->setOption(QFileDialog::DontUseNativeDialog);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setDefaultSuffix(QStringLiteral("kvz"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QFileDialog::fileSelected, this, [this, then](const QString& path) {
    if (writeProblemFile(path) && then) then();
  });
  dialog->open();
}

bool MainWindow::writeProblemFile(const QString& path) {
  if (!formats::SaveProblem(toPath(path), document_.problemData())) {
    QMessageBox::warning(this, QStringLiteral("Velkaro"), QStringLiteral("%1 cannot be written.").arg(path));
    return false;
  }
  document_.setModified(false);
  becomeProblemFile(path);
  return true;
}

void MainWindow::exportFen() {
  const formats::FenText text = formats::PositionToFen(document_.setup(), document_.stipulation());
  auto* dialog = new ExportFenDialog(exportFolder_.isEmpty() ? problemFolder_ : exportFolder_, text, this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QDialog::accepted, this, [this, dialog, text] {
    exportFolder_ = QFileInfo(dialog->filePath()).absolutePath();
    if (!formats::WriteFenRecord(toPath(dialog->filePath()), text, dialog->fields())) {
      QMessageBox::warning(this, QStringLiteral("Velkaro"),
                           QStringLiteral("%1 cannot be written.").arg(dialog->filePath()));
    }
  });
  dialog->open();
}

// The position with its stipulation, as the record of a FEN file.
void MainWindow::copyFen() {
  const formats::FenText text = formats::PositionToFen(document_.setup(), document_.stipulation());
  formats::ExportFields fields = formats::exportFieldsFor(text);
  QApplication::clipboard()->setText(
      QString::fromStdString(formats::fenRecordText(text, fields, formats::ExportType::Fen, false)));
}

// The first line of the clipboard's text that holds a position, with the
// stipulation its tags give, read as an imported file would be, castling and
// en passant as its FEN states them.
void MainWindow::pasteFen() {
  std::vector<std::string> lines;
  std::istringstream text(QApplication::clipboard()->text().toStdString());
  for (std::string line; std::getline(text, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line.substr(0, formats::FenImport::kLineLimit));
  }
  const std::string type = pastedType(lines);
  formats::FenImport import;
  for (int row = 0; row < static_cast<int>(lines.size()); ++row) {
    if (!import.selectLine(lines, row, type)) continue;
    takeOverImport(withStatedRights(import.result(), lines[static_cast<std::size_t>(row)]));
    return;
  }
  auto* box = new QMessageBox(QMessageBox::Information, QStringLiteral("Velkaro"),
                              QStringLiteral("The clipboard holds no position: paste a FEN line, an EPD line or a "
                                             "PGN game with a FEN tag."),
                              QMessageBox::Ok, this);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  const QList<QUrl> urls = event->mimeData()->urls();
  if (urls.size() == 1 && urls.first().isLocalFile() &&
      (isProblemFile(urls.first().toLocalFile()) || isImportFile(urls.first().toLocalFile()))) {
    event->acceptProposedAction();
  }
}

// A problem file opens; a FEN, EPD or PGN file opens in the import dialog.
void MainWindow::dropEvent(QDropEvent* event) {
  const QString path = event->mimeData()->urls().first().toLocalFile();
  event->acceptProposedAction();
  if (isProblemFile(path)) {
    openProblemFile(path);
    return;
  }
  importFolder_ = QFileInfo(path).absolutePath();
  importPath_ = QFileInfo(path).absoluteFilePath();
  importRow_ = -1;
  importFen();
}

// Save, Discard or Cancel when the problem has changed since it was opened,
// saved or imported; true when the window may close now.
bool MainWindow::mayClose() {
  if (!document_.modified()) return true;
  const QMessageBox::StandardButton answer = QMessageBox::question(
      this, QStringLiteral("Velkaro"), QStringLiteral("The problem has changed. Save it before closing?"),
      QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
  if (answer == QMessageBox::Discard) return true;
  if (answer == QMessageBox::Save) {
    if (problemFile_.isEmpty()) {
      saveProblemAs([this] { close(); });
      return false;
    }
    return writeProblemFile(problemFile_);
  }
  return false;
}

}  // namespace velkaro::ui
