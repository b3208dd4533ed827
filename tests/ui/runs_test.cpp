// Solving and counting from the window, the run on its worker thread: Start,
// Continue and Stop on the "Solver" and "Variants" tabs, Stop honoured at
// once, the progress panel alive while the interface thread is idle, a run
// that floods the tree with solutions, a refused set-up, the "Select move"
// dialog, the options a run reads, and closing during a run.

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabBar>
#include <QtTest>
#include <memory>

#include "ui/commands.h"
#include "ui/piece_palette.h"
#include "ui/progress_panel.h"
#include "ui/result_pane.h"
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

const QStringList kKishSolution = {
    "Solution No 1",
    "1. Kf8 - e8   threat:  2.  f7 - f8N#",
    "  1...., Rg7 - g8   2.  f7 - g8Q#",
    "  1...., Rg7 - f7   2. Qb7 - f7 #",
    "  1....,  d6 - d5   2. Qb7 - d7 #",
    "  1...., Bf5 - g6   2. Nf3 - g5 #",
    "  1...., Qg4 - h5   2. Qb7 - e4 #",
    "  1...., Ne3 - d5   2. Qb7 - d7 #",
};

// Tested moves as the panel shows them: " 1 234", " 3 000 001 234".
qint64 shownCount(const QString& text) { return QString(text).remove(' ').toLongLong(); }

struct RunWindow : WindowFixture {
  MainWindow& main = *window;
  ProgressPanel& progress = *main.progressPanel();

  // Sets the problem up through a FEN file, as the program does with one
  // named on its command line.
  void open(const char* fen, const char* stipulation, int tab) {
    QFile file(folder.filePath("problem.fen"));
    if (!file.open(QIODevice::WriteOnly)) qFatal("no problem file");
    file.write(QStringLiteral("[Ask \"%1\"]\n%2\n").arg(stipulation, fen).toUtf8());
    file.close();
    if (!main.openFirstPosition(file.fileName())) qFatal("no position in the problem file");
    QTest::mouseClick(main.modeTabs(), Qt::LeftButton, {}, main.modeTabs()->tabRect(tab).center());
  }
  void setStopOnFirstSolution(bool on) {
    if (main.document().options().stopOnFirstSolution != on) main.commandAction(StopOnFirstSolution)->trigger();
  }
  // Clicks Start or Continue and waits until the run has ended and all it
  // said is shown; returns how it ended.
  jobs::RunEnd press(QPushButton* button) {
    QSignalSpy ended(&main, &MainWindow::runEnded);
    QTest::mouseClick(button, Qt::LeftButton);
    if (!ended.wait(60'000)) qFatal("the run did not end");
    return ended.takeFirst().at(0).value<jobs::RunEnd>();
  }
  QStringList tree() const {
    QStringList lines;
    for (const std::string& line : window->resultModel().lines()) {
      lines << QString::fromStdString(line).replace(QRegularExpression("^\t"), "  ");
    }
    return lines;
  }
};

}  // namespace

class RunsTest : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() { qRegisterMetaType<jobs::RunEnd>(); }
  void runsShowTheirLinesStepByStep_data();
  void runsShowTheirLinesStepByStep();
  void stopIsHonouredAtOnce_data();
  void stopIsHonouredAtOnce();
  void progressGoesOnWhileTheWindowIsIdle();
  void stopAndContinueGiveTheSameLines();
  void aFloodOfSolutionsLeavesTheWindowResponsive();
  void refusedSetUpSearchesNothing();
  void selectMoveForcesTheFirstMove();
  void enPassantLastMoveIsTheChosenOne();
  void optionsTakeEffectInTheNextRun();
  void closingDuringARunStopsItFirst();
};

void RunsTest::runsShowTheirLinesStepByStep_data() {
  QTest::addColumn<int>("tab");
  QTest::addColumn<QString>("fen");
  QTest::addColumn<QString>("stipulation");
  QTest::addColumn<bool>("stopFirst");
  QTest::addColumn<QList<QStringList>>("steps");  // after Start, then after each Continue
  QTest::newRow("mate in 2, a pause at the key")
      << kSolverTab << kKish << "#2" << true << QList<QStringList>{kKishSolution, {"No more solutions"}};
  QTest::newRow("mate in 2 at once") << kSolverTab << kKish << "#2" << false
                                     << QList<QStringList>{kKishSolution + QStringList{"No more solutions"}};
  QTest::newRow("helpmate in 2, two solutions")
      << kSolverTab << kHelpmate << "H#2" << true
      << QList<QStringList>{{"  Solution No 1", "1. Bc4 - b5 ,  Re4 - e3 ", "2. Kd3 - c4 ,  Re8 - c8 #"},
                            {"  Solution No 2", "1. Re3 - e4 ,  Bb5 - c4 ", "2. Kd3 - e3 ,  Qa6 - h6 #"},
                            {"No more solutions"}};
  QTest::newRow("continuations of a game's start")
      << kVariantsTab << kGameStart << "#3" << true
      << QList<QStringList>{{"In 1 single moves:", " 20                                 x20.00   / Black /",
                             "In 2 single moves:", " 400                               x20.00   / White /",
                             "In 3 single moves:", " 8 902                            x22.25   / Black /"}};
}

void RunsTest::runsShowTheirLinesStepByStep() {
  QFETCH(int, tab);
  QFETCH(QString, fen);
  QFETCH(QString, stipulation);
  QFETCH(bool, stopFirst);
  QFETCH(QList<QStringList>, steps);
  RunWindow fixture;
  fixture.open(qPrintable(fen), qPrintable(stipulation), tab);
  fixture.setStopOnFirstSolution(stopFirst);
  QStringList expected;
  for (int step = 0; step < steps.size(); ++step) {
    fixture.press(step == 0 ? fixture.progress.startButton() : fixture.progress.continueButton());
    expected += steps[step];
    QCOMPARE(fixture.tree(), expected);
    QCOMPARE(fixture.progress.continueButton()->isEnabled(), step + 1 < steps.size());
    QVERIFY(fixture.progress.startButton()->isEnabled() && !fixture.progress.stopButton()->isEnabled());
  }
  QString text;
  for (const QString& line : expected) text += (line.startsWith("  1") ? "\t" + line.mid(2) : line) + "\n";
  QCOMPARE(QString::fromStdString(fixture.main.document().solutionText()), text);
  QCOMPARE(fixture.progress.bar(), ProgressPanel::kBarFull);
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
  fixture.open(qPrintable(fen), qPrintable(stipulation), tab);
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

// The choice holds for the following runs, Cancel keeps it, and an edit of
// the set-up (here the side to move) or the first row gives all moves back.
void RunsTest::selectMoveForcesTheFirstMove() {
  RunWindow fixture;
  fixture.open(kShmatov, "#3", kSolverTab);
  SolverPanel& panel = *fixture.main.solverPanel();
  const QString move = "Qb3 - a3 ";
  const auto choose = [&](const QString& row, QDialogButtonBox::StandardButton button, const QString& shownRow) {
    QTest::mouseClick(panel.selectMoveButton(), Qt::LeftButton);
    std::unique_ptr<SelectMoveDialog> dialog(fixture.main.findChild<SelectMoveDialog*>());
    QVERIFY(dialog && dialog->isVisible());
    QListWidget* list = dialog->moveList();
    QCOMPARE(dialog->findChild<QLabel*>()->text(), QString("Select first move to test:"));
    QCOMPARE(list->item(0)->text(), QString("Wszystkie"));
    QCOMPARE(list->currentItem()->text(), shownRow);
    list->setCurrentItem(list->findItems(row, Qt::MatchExactly).first());
    dialog->findChild<QDialogButtonBox*>()->button(button)->click();
  };
  choose(move, QDialogButtonBox::Ok, "Wszystkie");
  QCOMPARE(panel.firstMoveField()->text(), move);
  for (int run = 0; run < 2; ++run) {
    fixture.press(fixture.progress.startButton());
    QCOMPARE(fixture.tree(), (QStringList{"1. Qb3 - a3    O.K.", "  1....,  h7 - h6   2. Qa3 - c3 ",
                                          "  1....,  e5 - e4   2. Ng3 - f5 "}));
  }
  choose("Wszystkie", QDialogButtonBox::Cancel, move);
  QCOMPARE(panel.firstMoveField()->text(), move);
  click(panel.sideButton(core::Black));
  QCOMPARE(panel.firstMoveField()->text(), QString("All moves"));
  click(panel.sideButton(core::White));
  choose(move, QDialogButtonBox::Ok, "Wszystkie");
  choose("Wszystkie", QDialogButtonBox::Ok, move);
  QCOMPARE(panel.firstMoveField()->text(), QString("All moves"));
}

// J. Kling, The Chess Euclid 1849: the key takes en passant after b7-b5.
void RunsTest::enPassantLastMoveIsTheChosenOne() {
  RunWindow fixture;
  fixture.open("R7/7q/7r/Pp6/5p1r/7P/4Q3/k3K2R w K -", "#2", kSolverTab);
  fixture.setStopOnFirstSolution(false);
  fixture.press(fixture.progress.startButton());
  QCOMPARE(fixture.tree(), QStringList{"No solution"});
  QAbstractButton* choice = fixture.main.solverPanel()->enPassantButton(0);
  QCOMPARE(choice->text(), QString("b7 - b5"));
  click(choice);
  fixture.press(fixture.progress.startButton());
  QCOMPARE(fixture.tree(), (QStringList{"Solution No 1", "1.  a5 - b6 ", "  1...., Qh7 - a7   2. Ke1 - f2 #",
                                        "  1...., Ka1 - b1   2. Ke1 - f2 #", "No more solutions"}));
}

// The language, "Testing all second moves", "Search minimum moves" and "Stop
// on first solution" are read by the run after they were set.
void RunsTest::optionsTakeEffectInTheNextRun() {
  RunWindow fixture;
  MainWindow& window = fixture.main;
  fixture.open(kKish, "#2", kSolverTab);
  fixture.setStopOnFirstSolution(false);
  window.commandAction(commandOfLanguage(7))->trigger();  // French
  fixture.press(fixture.progress.startButton());
  QCOMPARE(fixture.tree().at(1), QString("1. Rf8 - e8   threat:  2.  f7 - f8C#"));

  window.commandAction(commandOfLanguage(4))->trigger();
  click(window.solverPanel()->allSecondMovesBox());
  fixture.press(fixture.progress.startButton());
  const QStringList secondMoves = fixture.tree();
  QCOMPARE(secondMoves.at(1), QString("1. Kf8 - e8 "));
  QVERIFY(secondMoves.indexOf("  1...., Rg7 - g8   2.  f7 - g8Q#") + 1 ==
          secondMoves.indexOf(QString(2 + 24, ' ') + "2.  f7 - g8B#"));

  click(window.solverPanel()->allSecondMovesBox());
  QTest::mouseClick(fixture.toolButton(ToolSearchMinimumMoves), Qt::LeftButton);
  fixture.press(fixture.progress.startButton());
  QCOMPARE(fixture.tree(), QStringList({"In 1 moves:", "- no solution", "In 2 moves:"}) + kKishSolution +
                               QStringList{"No more solutions"});

  // Paused at a solution, the run goes on to the end once the option is off.
  QTest::mouseClick(fixture.toolButton(ToolSearchMinimumMoves), Qt::LeftButton);
  fixture.open(kHelpmate, "H#2", kSolverTab);
  fixture.setStopOnFirstSolution(true);
  fixture.press(fixture.progress.startButton());
  QCOMPARE(fixture.tree().size(), 3);
  QTest::mouseClick(fixture.toolButton(ToolStopOnFirstSolution), Qt::LeftButton);
  fixture.press(fixture.progress.continueButton());
  QCOMPARE(fixture.tree().size(), 7);
  QCOMPARE(fixture.tree().last(), QString("No more solutions"));
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
