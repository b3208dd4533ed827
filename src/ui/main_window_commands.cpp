// The main window's commands: the menu, the tool bar with its two combo boxes,
// the settings file behind the language and refresh-interval choices, the FEN
// import, the help and the About box. A tool-bar button and its menu entry are
// one QAction, so a toggle shows the same state in both places.

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QSet>
#include <QSignalBlocker>
#include <QToolBar>
#include <filesystem>

#include "formats/settings.h"
#include "ui/board_view.h"
#include "ui/commands.h"
#include "ui/creator_panel.h"
#include "ui/positions_panel.h"
#include "ui/help_browser.h"
#include "ui/import_fen_dialog.h"
#include "ui/main_window.h"
#include "ui/piece_palette.h"
#include "ui/print_dialog.h"
#include "ui/progress_panel.h"
#include "ui/solver_panel.h"
#include "ui/tool_icons.h"

namespace velkaro::ui {
namespace {

const char* const kIntervalTexts[5] = {"      100 000", "      500 000", "  1 000 000", "  5 000 000", "10 000 000"};

struct TransformationTip {
  int command;
  const char* toolTip;
};
constexpr TransformationTip kTransformations[] = {
    {FlipPosition, "Flip position"}, {VerticalMirror, "Vertical Mirror"}, {HorizontalMirror, "Horizontal Mirror"},
    {RotateLeft, "Rotate Left"},     {RotateRight, "Rotate Right"},       {MoveUp, "Move Up"},
    {MoveDown, "Move Down"},         {MoveLeft, "Move Left"},             {MoveRight, "Move Right"},
};

std::filesystem::path toPath(const QString& folder) { return std::filesystem::path(folder.toStdU16String()); }

}  // namespace

QAction* MainWindow::addCommand(int command, const QString& text, const QString& toolTip) {
  auto* action = new QAction(text, this);
  action->setData(command);
  if (!toolTip.isEmpty()) action->setToolTip(toolTip);
  actions_[command] = action;
  return action;
}

void MainWindow::addAlias(int toolCommand, int menuCommand) {
  QAction* action = actions_.at(menuCommand);
  action->setIcon(toolIcon(toolCommand));
  actions_[toolCommand] = action;
}

QAction* MainWindow::commandAction(int command) const {
  const auto found = actions_.find(command);
  return found == actions_.end() ? nullptr : found->second;
}

void MainWindow::createActions() {
  createFileCommands();
  createProblemCommands();
  createFileNavigation();
  createEditCommands();
  createOptionCommands();
  for (const TransformationTip& entry : kTransformations) {
    QAction* action = addCommand(entry.command, QString::fromLatin1(entry.toolTip), QString::fromLatin1(entry.toolTip));
    action->setIcon(toolIcon(entry.command));
    connect(action, &QAction::triggered, this, [this, command = entry.command] { transform(command); });
  }
  QAction* informations = addCommand(Informations, QStringLiteral("Informations"));
  informations->setShortcut(QKeySequence::HelpContents);
  connect(informations, &QAction::triggered, this, &MainWindow::showHelp);
  connect(addCommand(About, QStringLiteral("About Velkaro ...")), &QAction::triggered, this, &MainWindow::showAbout);
  const std::pair<int, int> aliases[] = {{ToolOpen, Open},
                                         {ToolSave, Save},
                                         {ToolPrint, Print},
                                         {ToolImportFen, ImportFen},
                                         {ToolExportFen, ExportFen},
                                         {ToolStopOnFirstSolution, StopOnFirstSolution},
                                         {ToolSearchMinimumMoves, SearchMinimumMoves}};
  for (const auto& [tool, menu] : aliases) addAlias(tool, menu);
}

// Open, Save, Save as and Export FEN are shown but not yet available.
void MainWindow::createFileCommands() {
  const struct {
    int command;
    const char* text;
    const char* toolTip;
    QKeySequence shortcut;
  } fileCommands[] = {
      {Open, "Open", "Open", QKeySequence(Qt::CTRL | Qt::Key_O)},
      {Save, "Save", "Save", QKeySequence(Qt::CTRL | Qt::Key_S)},
      {SaveAs, "Save as", "", QKeySequence()},
      {ImportFen, "Import FEN", "Import FEN position", QKeySequence(Qt::CTRL | Qt::Key_I)},
      {ExportFen, "Export FEN", "Export FEN position", QKeySequence(Qt::CTRL | Qt::Key_E)},
      {Print, "Print", "Print", QKeySequence(Qt::CTRL | Qt::Key_P)},
      {Exit, "Exit", "", QKeySequence(Qt::CTRL | Qt::Key_X)},
  };
  for (const auto& entry : fileCommands) {
    QAction* action = addCommand(entry.command, QString::fromLatin1(entry.text), QString::fromLatin1(entry.toolTip));
    action->setShortcut(entry.shortcut);
    action->setEnabled(entry.command == ImportFen || entry.command == Print || entry.command == Exit);
  }
  connect(actions_[ImportFen], &QAction::triggered, this, &MainWindow::importFen);
  connect(actions_[Print], &QAction::triggered, this,
          [this] { openPrintDialog(document_, *progressPanel_, this); });
  connect(actions_[Exit], &QAction::triggered, this, &QWidget::close);
}

// The two options live in the problem document; "Stop on first solution" is
// on at start-up, "Search minimum moves" off.
void MainWindow::createOptionCommands() {
  for (const auto& [command, text] : {std::pair{SearchMinimumMoves, "Search minimum moves"},
                                      std::pair{StopOnFirstSolution, "Stop on first solution"}}) {
    QAction* option = addCommand(command, QString::fromLatin1(text));
    option->setCheckable(true);
    connect(option, &QAction::toggled, this, [this, command = command](bool on) { chooseOption(command, on); });
  }
  connect(&document_, &ProblemDocument::optionsChanged, this, &MainWindow::showOptions);
  showOptions();
  for (int language = 1; language <= core::Notation::kLanguageCount; ++language) {
    QAction* action = addCommand(commandOfLanguage(language), QString::fromLatin1(core::Notation::languageName(language)));
    action->setCheckable(true);
    connect(action, &QAction::triggered, this, [this, language] { chooseLanguage(language); });
  }
  for (int id = FirstInterval; id <= LastInterval; ++id) {
    QAction* action = addCommand(id, QString::fromLatin1(kIntervalTexts[intervalIndexOfCommand(id)]));
    action->setCheckable(true);
    connect(action, &QAction::triggered, this, [this, id] { chooseInterval(intervalIndexOfCommand(id)); });
  }
}

// Alt and the underlined letter open a menu.
void MainWindow::createMenus() {
  QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
  for (int command : {Open, Save, SaveAs, ImportFen}) file->addAction(actions_[command]);
  file->addAction(actions_[NextProblem]);
  file->addAction(actions_[PreviousProblem]);
  file->addMenu(recentMenu_);
  for (int command : {ExportFen, Print}) file->addAction(actions_[command]);
  file->addSeparator();
  file->addAction(actions_[Exit]);

  QMenu* edit = menuBar()->addMenu(QStringLiteral("&Edit"));
  for (int command : {Undo, Redo}) edit->addAction(actions_[command]);
  edit->addSeparator();
  for (int command : {CopyFen, PasteFen, CopySolution}) edit->addAction(actions_[command]);

  QMenu* option = menuBar()->addMenu(QStringLiteral("&Option"));
  option->addAction(actions_[SearchMinimumMoves]);
  option->addAction(actions_[StopOnFirstSolution]);
  QMenu* languages = option->addMenu(QStringLiteral("Notation's language"));
  for (int id = FirstLanguage; id <= LastLanguage; ++id) languages->addAction(actions_[id]);
  QMenu* intervals = option->addMenu(QStringLiteral("Refresh interval (moves)"));
  for (int id = FirstInterval; id <= LastInterval; ++id) intervals->addAction(actions_[id]);

  QMenu* info = menuBar()->addMenu(QStringLiteral("&Info"));
  info->addAction(actions_[Informations]);
  info->addAction(actions_[About]);
}

void MainWindow::createToolBar() {
  QToolBar* bar = addToolBar(QStringLiteral("Tools"));
  bar->setMovable(false);
  bar->setIconSize(QSize(28, 28));
  for (int command : {ToolOpen, ToolSave, ToolPrint}) bar->addAction(actions_[command]);
  bar->addSeparator();
  for (int command : {ToolImportFen, ToolExportFen}) bar->addAction(actions_[command]);
  bar->addSeparator();
  for (int command : {ToolStopOnFirstSolution, ToolSearchMinimumMoves}) bar->addAction(actions_[command]);
  bar->addSeparator();
  for (const TransformationTip& entry : kTransformations) bar->addAction(actions_[entry.command]);
  bar->addSeparator();

  languageBox_ = new QComboBox(bar);
  languageBox_->setToolTip(QStringLiteral("Notation's language"));
  for (int language = 1; language <= core::Notation::kLanguageCount; ++language) {
    languageBox_->addItem(QString::fromLatin1(core::Notation::languageName(language)));
  }
  intervalBox_ = new QComboBox(bar);
  intervalBox_->setToolTip(QStringLiteral("Refresh interval (moves)"));
  for (const char* text : kIntervalTexts) intervalBox_->addItem(QString::fromLatin1(text));
  bar->addWidget(languageBox_);
  bar->addWidget(intervalBox_);
  connect(languageBox_, &QComboBox::activated, this, [this](int index) { chooseLanguage(index + 1); });
  connect(intervalBox_, &QComboBox::activated, this, &MainWindow::chooseInterval);
}

void MainWindow::chooseOption(int command, bool on) {
  SolverOptions options = document_.options();
  (command == StopOnFirstSolution ? options.stopOnFirstSolution : options.minimumMoves) = on;
  document_.setOptions(options);
}

void MainWindow::showOptions() {
  const QSignalBlocker stopFirst(actions_.at(StopOnFirstSolution));
  const QSignalBlocker minimum(actions_.at(SearchMinimumMoves));
  actions_.at(StopOnFirstSolution)->setChecked(document_.options().stopOnFirstSolution);
  actions_.at(SearchMinimumMoves)->setChecked(document_.options().minimumMoves);
}

// Locking remembers which commands were available, and unlocking gives
// exactly those back.
void MainWindow::setRunLocked(bool locked) {
  if (locked == !lockedActions_.empty()) return;
  boardView_->setEnabled(!locked);
  palette_->setEnabled(!locked);
  solverPanel_->setLocked(locked);
  creatorPanel_->setLocked(locked);
  positionsPanel_->setLocked(locked);
  tabs_->setEnabled(!locked);
  languageBox_->setEnabled(!locked);
  intervalBox_->setEnabled(!locked);
  if (!locked) {
    for (const auto& [action, enabled] : lockedActions_) action->setEnabled(enabled);
    lockedActions_.clear();
    updateRunButtons();
    return;
  }
  progressPanel_->showRunning();
  QSet<QAction*> seen;
  for (const auto& [command, action] : actions_) {
    if (!changesTheProblem(command) || seen.contains(action)) continue;
    seen.insert(action);
    lockedActions_.emplace_back(action, action->isEnabled());
    action->setEnabled(false);
  }
}

// A stipulation without a number of moves leaves the number as it is.
void MainWindow::takeOverImport(const formats::ImportResult& result) {
  document_.setSetup(formats::setupFromImport(result));
  document_.setStipulation({result.helpmate != 0, result.selfmate != 0, result.moves});
}

void MainWindow::showHelp() {
  if (!help_) help_ = new HelpBrowser(this);
  help_->showContents();
  help_->show();
  help_->raise();
  help_->activateWindow();
}

void MainWindow::showAbout() {
  QMessageBox::about(this, QStringLiteral("About Velkaro"),
                     QStringLiteral("<p><b>Velkaro %1</b></p>"
                                    "<p>A program for orthodox chess problems: it solves direct mates, "
                                    "selfmates and helpmates, and counts the continuations of a position.</p>"
                                    "<p>Built with Qt %2.</p>")
                         .arg(QApplication::applicationVersion(), QString::fromLatin1(qVersion())));
}

void MainWindow::chooseLanguage(int language) {
  if (language < 1 || language > core::Notation::kLanguageCount) return;
  language_ = language;
  saveSettings();
}

void MainWindow::chooseInterval(int index) {
  if (index < 0 || index >= 5) return;
  refreshInterval_ = formats::kRefreshIntervalTable[index];
  saveSettings();
}

void MainWindow::loadSettings() {
  const formats::Settings settings = formats::LoadSettings(toPath(problemFolder_));
  language_ = settings.language;
  intervalCode_ = settings.intervalCode;
  refreshInterval_ = formats::refreshIntervalOf(intervalCode_);
  showSettingChoices();
  applyLetters();
}

// When the file cannot be written, the letters stay those of the old language.
void MainWindow::saveSettings() {
  intervalCode_ = formats::intervalCodeOf(refreshInterval_, intervalCode_);
  showSettingChoices();
  if (formats::SaveSettings(toPath(problemFolder_), {language_, intervalCode_})) applyLetters();
}

// A code outside 1..5 (a negative one from the file) checks no interval.
void MainWindow::showSettingChoices() {
  for (int id = FirstLanguage; id <= LastLanguage; ++id) actions_[id]->setChecked(languageOfCommand(id) == language_);
  for (int id = FirstInterval; id <= LastInterval; ++id) {
    actions_[id]->setChecked(intervalIndexOfCommand(id) == intervalCode_ - 1);
  }
  languageBox_->setCurrentIndex(language_ - 1);
  intervalBox_->setCurrentIndex(intervalCode_ >= 1 && intervalCode_ <= 5 ? intervalCode_ - 1 : -1);
}

void MainWindow::applyLetters() {
  notation_.setLanguage(language_);
  palette_->setLetters(notation_.letters());
  solverPanel_->setNotation(notation_);
}

}  // namespace velkaro::ui
