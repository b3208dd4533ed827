#pragma once
// Velkaro's main window: the editor board with its palette, the menu and tool
// bar, the tab strip of the four modes with their panels, the progress panel
// and the result pane. It owns the problem document and turns commands into
// changes of it and into Solver and Variants runs; the settings file is read
// when the window is made.

#include <QMainWindow>
#include <QStringList>
#include <QUndoStack>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "core/notation.h"
#include "core/position.h"
#include "core/stipulation.h"
#include "formats/fen.h"
#include "ui/board_transform.h"
#include "ui/job_runner.h"
#include "ui/problem_document.h"
#include "ui/result_model.h"

class QComboBox;
class QLabel;
class QMenu;
class QSplitter;
class QStackedWidget;
class QTabBar;

namespace velkaro::ui {

class BoardView;
class CreatorPanel;
class HelpBrowser;
class PositionsPanel;
class PiecePalette;
class ProgressPanel;
class ResultPane;
class SolverPanel;

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // The tabs, in the order of the tab strip.
  enum class Mode { Solver, Creator, Positions, Variants };

  // `problemFolder` holds the settings file; it is read (or made) here.
  explicit MainWindow(const QString& problemFolder, QWidget* parent = nullptr);
  ~MainWindow() override;

  ProblemDocument& document() { return document_; }
  const ProblemDocument& document() const { return document_; }
  // Position, side, castling, en passant and stipulation of an import.
  void takeOverImport(const formats::ImportResult& result);
  // Takes over the first line of a FEN, EPD or PGN file that holds a valid
  // position; false when there is none.
  bool openFirstPosition(const QString& path);
  // Takes over line `row` of a FEN, EPD or PGN file, which becomes the file
  // that Next and Previous problem step through; false when the line holds
  // no position.
  bool importLine(const QString& path, int row);
  // The men of a game's start, White to move, all four castlings allowed.
  void setUpInitialPosition();

  Mode mode() const { return mode_; }
  int language() const { return language_; }
  int refreshInterval() const { return refreshInterval_; }
  // While a job runs, everything but Stop is out of reach.
  void setRunLocked(bool locked);
  bool jobRunning() const { return runner_->running(); }
  JobRunner& runner() { return *runner_; }

  QAction* commandAction(int command) const;
  QComboBox* languageBox() const { return languageBox_; }
  QComboBox* intervalBox() const { return intervalBox_; }
  QTabBar* modeTabs() const { return tabs_; }
  BoardView* boardView() const { return boardView_; }
  PiecePalette* piecePalette() const { return palette_; }
  QLabel* pieceCountLabel() const { return pieceCount_; }
  SolverPanel* solverPanel() const { return solverPanel_; }
  CreatorPanel* creatorPanel() const { return creatorPanel_; }
  PositionsPanel* positionsPanel() const { return positionsPanel_; }
  ProgressPanel* progressPanel() const { return progressPanel_; }
  ResultPane* resultPane() const { return resultPane_; }
  ResultModel& resultModel() { return resultModel_; }
  QSplitter* boardSplitter() const { return boardSplitter_; }
  QSplitter* resultSplitter() const { return resultSplitter_; }
  QUndoStack& undoStack() { return undoStack_; }
  // Where the problem came from ("file:line") and how the last run went.
  QString statusText() const;

 signals:
  // A run has ended (stopped, paused at a solution, finished or refused) and
  // everything it said is shown.
  void runEnded(jobs::RunEnd end);

 protected:
  // Closing during a run stops the run first; the window closes when it has.
  void closeEvent(QCloseEvent* event) override;

 private:
  // Layout and editing (main_window.cpp).
  QWidget* createCentralArea();
  QWidget* createBoardArea();
  QWidget* createModeArea();
  void clickSquare(int square, Qt::MouseButton button);
  void dragMan(int from, int to);
  void dropPiece(int code, QPoint globalPosition);
  void editSquare(int square, int code);
  void showBoard();
  void setupChanged();
  void showPlacement(const std::array<std::int8_t, 64>& men, std::uint64_t unattacked);
  void clearBoard();
  void transform(int command);
  void changeMode(int tab);

  // Undo, the clipboard, the keyboard on the board, the status bar and the
  // window's own state across starts (main_window_edit.cpp).
  void createEditCommands();
  void recordSetupChange();
  void copySolution();
  void copySelectedLines();
  void showResultMenu(QPoint position);
  void keyOnBoard(int square, int key, const QString& text);
  void showRunSummary(jobs::RunEnd end);
  QString windowSettingsPath() const;
  void restoreWindowState();
  void saveWindowState() const;

  // Problem files, Export FEN, Copy and Paste FEN, dropped files
  // (main_window_problem.cpp).
 public:
  bool openProblemFile(const QString& path);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void createProblemCommands();
  void openProblem();
  void showSolutionText();
  void saveProblem();
  void saveProblemAs(std::function<void()> then = {});
  bool writeProblemFile(const QString& path);
  void becomeProblemFile(const QString& path);
  void exportFen();
  void copyFen();
  void pasteFen();
  bool mayClose();

  // Imports, Next and Previous problem and the recent files
  // (main_window_files.cpp).
  void createFileNavigation();
  void stepProblem(int direction);
  void rememberFile(const QString& path, int row);
  void showRecentFiles();
  void showOrigin(const QString& title);

  // Commands, menu, tool bar and settings (main_window_commands.cpp).
  void createActions();
  void createFileCommands();
  void createOptionCommands();
  void createMenus();
  void createToolBar();
  QAction* addCommand(int command, const QString& text, const QString& toolTip = QString());
  void addAlias(int toolCommand, int menuCommand);
  void importFen();
  void showHelp();
  void showAbout();
  void chooseLanguage(int language);
  void chooseInterval(int index);
  void loadSettings();
  void saveSettings();
  void showSettingChoices();
  void applyLetters();
  void showOptions();
  void chooseOption(int command, bool on);

  // Runs and the first move to test (main_window_jobs.cpp).
  void createRunner();
  std::optional<JobRunner::Kind> jobKind() const;
  void startJob();
  void continueJob();
  void takeMail();
  void showRecords(std::vector<AnyRecord>& records);
  void showPanel(const PanelState& state);
  void endRun(jobs::RunEnd end, const QString& caption, const QString& refusal, JobRunner::Kind kind);
  void clearResults();
  void updateRunButtons();
  RunOptions runOptions() const;
  solver::SolveSettings solveSettings() const;
  counter::CountSettings countSettings() const;
  void selectFirstMove();

  QString problemFolder_;
  QString problemFile_;  // the problem file last opened or saved
  QString exportFolder_;
  QString importFolder_;
  // The file last imported from and its line, for Next and Previous problem.
  QString importPath_;
  int importRow_ = -1;
  QStringList recentFiles_;  // "path" or "path:line", the latest first
  QString origin_;           // "file:line" of the problem on the board
  QString runSummary_;
  ProblemDocument document_;
  ResultModel resultModel_;
  Mode mode_ = Mode::Solver;
  core::Notation notation_;
  int language_ = core::Notation::kEnglish;
  int intervalCode_ = 3;
  int refreshInterval_ = 1'000'000;

  std::map<int, QAction*> actions_;
  std::vector<std::pair<QAction*, bool>> lockedActions_;
  QComboBox* languageBox_ = nullptr;
  QComboBox* intervalBox_ = nullptr;
  QTabBar* tabs_ = nullptr;
  QLabel* modeCaption_ = nullptr;
  QStackedWidget* panels_ = nullptr;
  BoardView* boardView_ = nullptr;
  PiecePalette* palette_ = nullptr;
  QLabel* pieceCount_ = nullptr;
  SolverPanel* solverPanel_ = nullptr;
  CreatorPanel* creatorPanel_ = nullptr;
  PositionsPanel* positionsPanel_ = nullptr;
  ProgressPanel* progressPanel_ = nullptr;
  ResultPane* resultPane_ = nullptr;
  HelpBrowser* help_ = nullptr;
  QSplitter* boardSplitter_ = nullptr;
  QSplitter* resultSplitter_ = nullptr;
  QMenu* recentMenu_ = nullptr;
  QLabel* status_ = nullptr;

  std::unique_ptr<JobRunner> runner_;
  // The writer of the run going on, in the language the run began with.
  std::unique_ptr<solver::ReportWriter> writer_;
  bool closeAfterRun_ = false;
  // After the runner: the stack tells its actions, which ask the runner, as
  // it goes.
  QUndoStack undoStack_;
  core::BoardSetup recordedSetup_;  // the set-up the last undo step left
  bool replaying_ = false;          // undo or redo is setting the set-up
};

}  // namespace velkaro::ui

Q_DECLARE_METATYPE(velkaro::jobs::RunEnd)
