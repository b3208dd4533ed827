// Solving and counting from the window, the run on its worker thread: golden
// cases set up through the controls, Stop and Continue, the progress panel
// while the window is idle, a flood of solutions, a refused set-up, the
// "Select move" dialog, an option changed during a pause, and closing.

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QtTest>
#include <memory>

#include "ui/commands.h"
#include "ui/progress_panel.h"
#include "ui/select_move_dialog.h"
#include "ui/solver_panel.h"
#include "ui_test_support.h"

namespace velkaro::ui::testing {
namespace {

const char* const kKish = "2n2K2/1Q3Pr1/3pk3/5bp1/4p1q1/2B1nNNB/8/8 w - -";
const char* const kShmatov = "8/7p/8/4p2K/5kPP/1Q4N1/8/8 w - -";
const char* const kHelpmate = "4R3/8/Q7/1B1p4/2bpR3/P2kr3/6K1/6b1 b - -";
const char* const kGameStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -";
constexpr int kSolverTab = 0;
constexpr int kVariantsTab = 3;

// Tested moves as the panel shows them: " 1 234", " 3 000 001 234".
qint64 shownCount(const QString& text) { return QString(text).remove(' ').toLongLong(); }

struct RunWindow : WindowFixture {
  MainWindow& main = *window;
  ProgressPanel& progress = *main.progressPanel();

  void open(const QString& fen, const QString& stipulation, int tab) {
    openProblem(fen, stipulation);
    chooseTab(tab);
  }
  void setStopOnFirstSolution(bool on) {
    if (main.document().options().stopOnFirstSolution != on) main.commandAction(StopOnFirstSolution)->trigger();
  }
  // Chooses the row `move` ("Qb3-a3", "e2e4") in the "Select move" dialog and
  // closes it with `button`; gives the row chosen when it opened.
  QString selectMove(const QString& move, QDialogButtonBox::StandardButton button) {
    QTest::mouseClick(main.solverPanel()->selectMoveButton(), Qt::LeftButton);
    std::unique_ptr<SelectMoveDialog> dialog(main.findChild<SelectMoveDialog*>());
    QListWidget* list = dialog->moveList();
    const QString shown = list->currentItem()->text();
    const QRegularExpression spacing("[ -]");
    for (int row = 0; row < list->count(); ++row) {
      if (list->item(row)->text().remove(spacing) == QString(move).remove(spacing)) list->setCurrentRow(row);
    }
    dialog->findChild<QDialogButtonBox*>()->button(button)->click();
    return shown;
  }
};

}  // namespace

class RunsTest : public QObject {
  Q_OBJECT

 private slots:
  void goldenCasesThroughTheControls_data();
  void goldenCasesThroughTheControls();
  void stopIsHonouredAtOnce_data();
  void stopIsHonouredAtOnce();
  void progressGoesOnWhileTheWindowIsIdle();
  void stopAndContinueGiveTheSameLines();
  void aFloodOfSolutionsLeavesTheWindowResponsive();
  void refusedSetUpSearchesNothing();
  void selectMoveChoiceLastsUntilTheSetUpChanges();
  void stopOnFirstSolutionTurnedOffDuringAPause();
  void closingDuringARunStopsItFirst();
};

void RunsTest::goldenCasesThroughTheControls_data() {
  QTest::addColumn<QString>("name");
  for (const char* name : {"mate-2-kish", "help-2-garai", "count-4-first-move", "mate-2-kling-without-last-move",
                           "mate-2-kling-en-passant-key", "mate-3-first-move-works", "mate-2-kish-second-moves",
                           "mate-2-german", "mate-5-minimum-moves"}) {
    QTest::newRow(name) << QString(name);
  }
}

// A golden case set up through the window's own controls and run pausing at
// each solution: the tree and the solution text end as the golden text. A
// first run with the window's defaults comes before the options are set, so
// each option must reach the run that follows it.
void RunsTest::goldenCasesThroughTheControls() {
  QFETCH(QString, name);
  const Case golden = readCase(VELKARO_TEST_DATA_DIR "/golden/" + name + ".case");
  const QMap<QString, QString>& field = golden.fields;
  RunWindow fixture;
  const bool counting = field.contains("count");
  fixture.open(field["fen"], counting ? "#" + field["count"] : field["stip"], counting ? kVariantsTab : kSolverTab);
  fixture.setStopOnFirstSolution(true);
  fixture.press(fixture.progress.startButton());
  SolverPanel& panel = *fixture.main.solverPanel();
  if (field.contains("lang")) fixture.main.commandAction(commandOfLanguage(field["lang"].toInt()))->trigger();
  if (field.contains("second-moves")) click(panel.allSecondMovesBox());
  if (field.contains("min-moves")) QTest::mouseClick(fixture.toolButton(ToolSearchMinimumMoves), Qt::LeftButton);
  if (field.contains("first-move")) fixture.selectMove(field["first-move"], QDialogButtonBox::Ok);
  for (int index = 0; field.contains("ep") && index < SolverPanel::kMaxEnPassantChoices; ++index) {
    if (panel.enPassantButton(index)->text().endsWith(field["ep"])) click(panel.enPassantButton(index));
  }
  const QString expected = golden.expected.chopped(golden.expected.endsWith('\n') ? 1 : 0);
  QPushButton* next = fixture.progress.startButton();
  for (int runs = 0; next; ++runs) {
    QVERIFY(runs < 10);
    fixture.press(next);
    QVERIFY(expected.startsWith(fixture.tree().join('\n')));
    next = fixture.progress.continueButton()->isEnabled() ? fixture.progress.continueButton() : nullptr;
  }
  QCOMPARE(fixture.tree().join('\n'), expected);
  QCOMPARE(QString::fromStdString(fixture.main.document().solutionText()), golden.expected);
  QVERIFY(fixture.progress.startButton()->isEnabled() && !fixture.progress.stopButton()->isEnabled());
  if (counting || !field.contains("first-move")) QCOMPARE(fixture.progress.bar(), ProgressPanel::kBarFull);
  QVERIFY(fixture.main.boardView()->isEnabled() && fixture.main.modeTabs()->isEnabled());
}

void RunsTest::stopIsHonouredAtOnce_data() {
  QTest::addColumn<int>("tab");
  QTest::addColumn<QString>("fen");
  QTest::addColumn<QString>("stipulation");
  QTest::newRow("a mate in 5 of 21 men")  // C. Gamnitzer, Die Schwalbe 2023: the key comes late
      << kSolverTab << "1N6/pQ1pr1b1/Pn1P3p/2BnpP1N/4k1P1/R2p4/6P1/6K1 w - -" << "#5";
  QTest::newRow("seven single moves of a game") << kVariantsTab << kGameStart << "#7";
}

// Stop pressed right after Start: the run stops before its first progress
// tick (every 10 000 000 tested moves), and Continue takes it up again.
void RunsTest::stopIsHonouredAtOnce() {
  QFETCH(int, tab);
  QFETCH(QString, fen);
  QFETCH(QString, stipulation);
  RunWindow fixture;
  fixture.open(fen, stipulation, tab);
  fixture.main.commandAction(LastInterval)->trigger();
  QSignalSpy ended(&fixture.main, &MainWindow::runEnded);
  QTest::mouseClick(fixture.progress.startButton(), Qt::LeftButton);
  QVERIFY(fixture.progress.stopButton()->isEnabled());
  QTest::mouseClick(fixture.progress.stopButton(), Qt::LeftButton);
  QVERIFY(ended.wait());
  QCOMPARE(ended.takeFirst().at(0).value<jobs::RunEnd>(), jobs::RunEnd::Stopped);
  QVERIFY(shownCount(fixture.progress.testedMovesText()) < 10'000'000);
  QVERIFY(fixture.progress.continueButton()->isEnabled());
  QCOMPARE(fixture.tree().last().trimmed(), tab == kSolverTab ? QString("searching ...") : QString("counting ..."));
}

// A long count with the smallest refresh interval: the panel's count and
// clock move on while the test only waits for them, then Stop ends the run.
void RunsTest::progressGoesOnWhileTheWindowIsIdle() {
  RunWindow fixture;
  fixture.open(kGameStart, "#7", kVariantsTab);
  fixture.main.commandAction(FirstInterval)->trigger();
  QLineEdit* tested = fixture.main.progressPanel()->findChildren<QLineEdit*>().at(1);
  QSignalSpy counts(tested, &QLineEdit::textChanged);
  QSignalSpy ended(&fixture.main, &MainWindow::runEnded);
  QTest::mouseClick(fixture.progress.startButton(), Qt::LeftButton);
  qint64 last = 0;
  for (int update = 0; update < 3; ++update) {
    QVERIFY(counts.wait());
    const qint64 shown = shownCount(tested->text());
    QVERIFY(shown > last);
    last = shown;
  }
  QVERIFY(ended.isEmpty());
  QTest::mouseClick(fixture.progress.stopButton(), Qt::LeftButton);
  QVERIFY(ended.wait());
  QVERIFY(shownCount(tested->text()) >= last);
}

// Stop is pressed whenever a progress tick shows, up to twenty times, and the
// run continued to its end: the same lines as an uninterrupted run. How many
// ticks a run shows depends on how the walkers share the moves, so only a
// floor of stops is asked for; with the smallest interval even a fast machine
// shows dozens.
void RunsTest::stopAndContinueGiveTheSameLines() {
  RunWindow fixture;
  fixture.open(kGameStart, "#6", kVariantsTab);
  fixture.main.commandAction(FirstInterval)->trigger();
  fixture.press(fixture.progress.startButton());
  const QStringList whole = fixture.tree();
  QCOMPARE(whole.last(), QString(" 119 060 324                 x24.47   / White /"));

  QLineEdit* tested = fixture.main.progressPanel()->findChildren<QLineEdit*>().at(1);
  int stops = 0;
  QPushButton* next = fixture.progress.startButton();
  while (next && stops < 20) {
    QSignalSpy ended(&fixture.main, &MainWindow::runEnded);
    QSignalSpy counts(tested, &QLineEdit::textChanged);
    QTest::mouseClick(next, Qt::LeftButton);
    QVERIFY(QTest::qWaitFor([&] { return !ended.isEmpty() || !counts.isEmpty(); }, 60'000));
    if (ended.isEmpty()) {
      QTest::mouseClick(fixture.progress.stopButton(), Qt::LeftButton);
      QVERIFY(ended.wait());
      stops += ended.first().at(0).value<jobs::RunEnd>() == jobs::RunEnd::Stopped;
    }
    next = fixture.progress.continueButton()->isEnabled() ? fixture.progress.continueButton() : nullptr;
  }
  if (next) fixture.press(next);
  QCOMPARE(fixture.tree(), whole);
  QVERIFY2(stops >= 5, qPrintable(QString("only %1 stops").arg(stops)));
}

// The first example problem as a helpmate in 3 has millions of solutions:
// while they pour in, the window takes its events, and Stop ends the run.
void RunsTest::aFloodOfSolutionsLeavesTheWindowResponsive() {
  RunWindow fixture;
  fixture.open(kKish, "H#3", kSolverTab);
  click(fixture.main.solverPanel()->sideButton(core::Black));
  fixture.setStopOnFirstSolution(false);
  ResultModel& results = fixture.main.resultModel();
  QSignalSpy ended(&fixture.main, &MainWindow::runEnded);
  QTest::mouseClick(fixture.progress.startButton(), Qt::LeftButton);
  QVERIFY(QTest::qWaitFor([&] { return results.rowCount() > 200'000; }, 60'000));
  QVERIFY(ended.isEmpty());
  QTest::mouseClick(fixture.progress.stopButton(), Qt::LeftButton);
  QVERIFY(ended.wait());
  QCOMPARE(ended.first().at(0).value<jobs::RunEnd>(), jobs::RunEnd::Stopped);
  QVERIFY(fixture.progress.continueButton()->isEnabled());
  const std::vector<std::string> lines = results.lines();
  QCOMPARE(lines.back(), std::string(" searching ..."));
  QCOMPARE(std::count(fixture.main.document().solutionText().begin(), fixture.main.document().solutionText().end(),
                      '\n'),
           static_cast<std::ptrdiff_t>(lines.size() - 1));
}

// The message box is one of its own: caption "Velkaro", one OK button, no
// owner window.
void RunsTest::refusedSetUpSearchesNothing() {
  RunWindow fixture;
  fixture.open("K6K/8/8/8/8/8/8/7k w - -", "#2", kSolverTab);
  QCOMPARE(fixture.press(fixture.progress.startButton()), jobs::RunEnd::Refused);
  QMessageBox* box = nullptr;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (auto* found = qobject_cast<QMessageBox*>(widget); found && found->isVisible()) box = found;
  }
  QVERIFY(box);
  QCOMPARE(box->windowTitle() + ": " + box->text(), QString("Velkaro: Too many black kings"));
  QCOMPARE(box->buttons().size(), 1);
  QVERIFY(!box->parentWidget());
  box->button(QMessageBox::Ok)->click();
  QCOMPARE(fixture.tree(), QStringList());
  QVERIFY(fixture.main.document().solutionText().empty());
  QVERIFY(!fixture.progress.continueButton()->isEnabled() && fixture.progress.startButton()->isEnabled());
}

// The choice holds for the following runs and Cancel keeps it; an edit of the
// set-up (here the side to move) or the first row gives all moves back.
void RunsTest::selectMoveChoiceLastsUntilTheSetUpChanges() {
  RunWindow fixture;
  fixture.open(kShmatov, "#3", kSolverTab);
  SolverPanel& panel = *fixture.main.solverPanel();
  QCOMPARE(fixture.selectMove("Qb3-a3", QDialogButtonBox::Ok), QString("Wszystkie"));
  QCOMPARE(panel.firstMoveField()->text(), QString("Qb3 - a3 "));
  for (int run = 0; run < 2; ++run) {
    fixture.press(fixture.progress.startButton());
    QCOMPARE(fixture.tree().first(), QString("1. Qb3 - a3    O.K."));
  }
  QCOMPARE(fixture.selectMove("Wszystkie", QDialogButtonBox::Cancel), QString("Qb3 - a3 "));
  QCOMPARE(panel.firstMoveField()->text(), QString("Qb3 - a3 "));
  click(panel.sideButton(core::Black));
  QCOMPARE(panel.firstMoveField()->text(), QString("All moves"));
  click(panel.sideButton(core::White));
  fixture.selectMove("Qb3-a3", QDialogButtonBox::Ok);
  fixture.selectMove("Wszystkie", QDialogButtonBox::Ok);
  QCOMPARE(panel.firstMoveField()->text(), QString("All moves"));
}

// Paused at a solution, the run goes on to the end once the option is off.
void RunsTest::stopOnFirstSolutionTurnedOffDuringAPause() {
  RunWindow fixture;
  fixture.open(kHelpmate, "H#2", kSolverTab);
  fixture.setStopOnFirstSolution(true);
  QCOMPARE(fixture.press(fixture.progress.startButton()), jobs::RunEnd::Solution);
  QCOMPARE(fixture.tree().size(), 3);
  QTest::mouseClick(fixture.toolButton(ToolStopOnFirstSolution), Qt::LeftButton);
  QCOMPARE(fixture.press(fixture.progress.continueButton()), jobs::RunEnd::Finished);
  QCOMPARE(fixture.tree().size(), 7);
}

void RunsTest::closingDuringARunStopsItFirst() {
  RunWindow fixture;
  MainWindow& window = fixture.main;
  fixture.open(kGameStart, "#7", kVariantsTab);
  QSignalSpy ended(&window, &MainWindow::runEnded);
  QTest::mouseClick(fixture.progress.startButton(), Qt::LeftButton);
  window.close();
  QVERIFY(window.isVisible());  // not before the run has stopped
  QVERIFY(ended.wait());
  QVERIFY(!window.isVisible());
  QVERIFY(!window.jobRunning());
}

}  // namespace velkaro::ui::testing

QTEST_MAIN(velkaro::ui::testing::RunsTest)
#include "runs_test.moc"
