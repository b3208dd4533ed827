// Solving and counting from the window: Start, Continue and Stop on the
// "Solver" and "Variants" tabs, the result tree, a refused set-up, the
// "Select move" dialog, the options a run reads, and closing during a run.

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabBar>
#include <QtTest>
#include <functional>
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

// Root lines as they are, children indented by two blanks.
QStringList treeLines(const ResultPane& pane) {
  QStringList lines;
  for (int root = 0; root < pane.topLevelItemCount(); ++root) {
    const QTreeWidgetItem* item = pane.topLevelItem(root);
    lines << item->text(0);
    for (int child = 0; child < item->childCount(); ++child) lines << "  " + item->child(child)->text(0);
  }
  return lines;
}

// Clicks `button`; `inside` runs at the first input the click lets through
// (a progress tick of the run, or a message box), or after the click when
// there was none. It checks for itself which it is.
void clickWith(QPushButton* button, const std::function<void()>& inside) {
  QMetaObject::invokeMethod(button, inside, Qt::QueuedConnection);
  QTest::mouseClick(button, Qt::LeftButton);
  QCoreApplication::processEvents();
}

struct JobWindow : WindowFixture {
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
    if (main.stopOnFirstSolution() != on) main.commandAction(StopOnFirstSolution)->trigger();
  }
  QStringList tree() const { return treeLines(*main.resultPane()); }
};

}  // namespace

class JobsTest : public QObject {
  Q_OBJECT

 private slots:
  void runsShowTheirLinesStepByStep_data();
  void runsShowTheirLinesStepByStep();
  void stopAndContinueGiveTheSameLines_data();
  void stopAndContinueGiveTheSameLines();
  void refusedSetUpSearchesNothing_data();
  void refusedSetUpSearchesNothing();
  void selectMoveForcesTheFirstMove_data();
  void selectMoveForcesTheFirstMove();
  void enPassantLastMoveIsTheChosenOne();
  void optionsTakeEffectInTheNextRun();
  void closingDuringARunStopsItFirst();
};

void JobsTest::runsShowTheirLinesStepByStep_data() {
  QTest::addColumn<int>("tab");
  QTest::addColumn<QString>("fen");
  QTest::addColumn<QString>("stipulation");
  QTest::addColumn<bool>("stopFirst");
  QTest::addColumn<QList<QStringList>>("steps");  // after Start, then after each Continue
  QTest::addColumn<QString>("testedMoves");
  QTest::newRow("mate in 2, a pause at the key")
      << kSolverTab << kKish << "#2" << true << QList<QStringList>{kKishSolution, {"No more solutions"}} << "  1 678";
  QTest::newRow("mate in 2 at once") << kSolverTab << kKish << "#2" << false
                                     << QList<QStringList>{kKishSolution + QStringList{"No more solutions"}}
                                     << "  1 678";
  QTest::newRow("helpmate in 2, two solutions")
      << kSolverTab << kHelpmate << "H#2" << true
      << QList<QStringList>{{"  Solution No 1", "1. Bc4 - b5 ,  Re4 - e3 ", "2. Kd3 - c4 ,  Re8 - c8 #"},
                            {"  Solution No 2", "1. Re3 - e4 ,  Bb5 - c4 ", "2. Kd3 - e3 ,  Qa6 - h6 #"},
                            {"No more solutions"}}
      << "  54 157";
  QTest::newRow("continuations of a game's start")
      << kVariantsTab << kGameStart << "#3" << true
      << QList<QStringList>{{"In 1 single moves:", " 20                                 x20.00   / Black /",
                             "In 2 single moves:", " 400                               x20.00   / White /",
                             "In 3 single moves:", " 8 902                            x22.25   / Black /"}}
      << "  9 762";
}

void JobsTest::runsShowTheirLinesStepByStep() {
  QFETCH(int, tab);
  QFETCH(QString, fen);
  QFETCH(QString, stipulation);
  QFETCH(bool, stopFirst);
  QFETCH(QList<QStringList>, steps);
  QFETCH(QString, testedMoves);
  JobWindow fixture;
  fixture.open(qPrintable(fen), qPrintable(stipulation), tab);
  fixture.setStopOnFirstSolution(stopFirst);
  QStringList expected;
  for (int step = 0; step < steps.size(); ++step) {
    QTest::mouseClick(step == 0 ? fixture.progress.startButton() : fixture.progress.continueButton(), Qt::LeftButton);
    expected += steps[step];
    QCOMPARE(fixture.tree(), expected);
    QCOMPARE(fixture.progress.continueButton()->isEnabled(), step + 1 < steps.size());
    QVERIFY(fixture.progress.startButton()->isEnabled() && !fixture.progress.stopButton()->isEnabled());
  }
  QCOMPARE(fixture.progress.testedMovesText(), testedMoves);
  QCOMPARE(fixture.progress.bar(), ProgressPanel::kBarFull);
  QVERIFY(fixture.main.boardView()->isEnabled() && fixture.main.modeTabs()->isEnabled());
}

void JobsTest::stopAndContinueGiveTheSameLines_data() {
  QTest::addColumn<int>("tab");
  QTest::addColumn<QString>("fen");
  QTest::addColumn<QString>("stipulation");
  QTest::addColumn<QString>("placeholder");
  QTest::addColumn<bool>("showsLine");
  QTest::newRow("mate in 4, three keys") << kSolverTab << kShmatov << "#4"
                                         << " searching ..." << true;
  QTest::newRow("continuations to 4 single moves") << kVariantsTab << kGameStart << "#4"
                                                   << " counting ..." << false;
}

// Stop is pressed at every progress tick, every 100 000 tested moves.
void JobsTest::stopAndContinueGiveTheSameLines() {
  QFETCH(int, tab);
  QFETCH(QString, fen);
  QFETCH(QString, stipulation);
  QFETCH(QString, placeholder);
  QFETCH(bool, showsLine);
  JobWindow fixture;
  MainWindow& window = fixture.main;
  fixture.open(qPrintable(fen), qPrintable(stipulation), tab);
  fixture.setStopOnFirstSolution(false);
  window.commandAction(FirstInterval)->trigger();
  QTest::mouseClick(fixture.progress.startButton(), Qt::LeftButton);
  const QStringList whole = fixture.tree();

  int stops = 0;
  const auto pressStop = [&] {
    if (!window.jobRunning()) return;
    QVERIFY(!window.boardView()->isEnabled() && !window.piecePalette()->isEnabled());
    QVERIFY(!window.modeTabs()->isEnabled() && !window.solverPanel()->movesField()->isEnabled());
    QVERIFY(!window.solverPanel()->selectMoveButton()->isEnabled() &&
            !window.solverPanel()->clearButton()->isEnabled());
    for (int command : {ImportFen, SearchMinimumMoves, LastInterval, FlipPosition}) {
      QVERIFY(!window.commandAction(command)->isEnabled());
    }
    QVERIFY(!fixture.progress.startButton()->isEnabled() && !fixture.progress.continueButton()->isEnabled());
    QCOMPARE(fixture.tree().last(), placeholder);
    QCOMPARE(fixture.progress.lineDisplay(0)->count() > 0, showsLine);
    QTest::mouseClick(fixture.progress.stopButton(), Qt::LeftButton);
    ++stops;
  };
  clickWith(fixture.progress.startButton(), pressStop);
  for (int run = 0; fixture.progress.continueButton()->isEnabled() && run < 100; ++run) {
    QVERIFY(window.boardView()->isEnabled());
    clickWith(fixture.progress.continueButton(), pressStop);
  }
  QCOMPARE(fixture.tree(), whole);
  QVERIFY2(stops >= 2, qPrintable(QString::number(stops)));
}

void JobsTest::refusedSetUpSearchesNothing_data() {
  QTest::addColumn<int>("tab");
  QTest::newRow("Solver") << kSolverTab;
  QTest::newRow("Variants") << kVariantsTab;
}

void JobsTest::refusedSetUpSearchesNothing() {
  QFETCH(int, tab);
  JobWindow fixture;
  fixture.open("P7/8/8/8/8/8/8/K6k w - -", "#2", tab);
  QString shown;
  clickWith(fixture.progress.startButton(), [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box) return;
    shown = box->windowTitle() + ": " + box->text();
    QCOMPARE(box->buttons().size(), 1);
    box->button(QMessageBox::Ok)->click();
  });
  QCOMPARE(shown, QString("Velkaro: White pawn !"));
  QCOMPARE(fixture.tree(), QStringList());
  QVERIFY(fixture.main.resultPane()->text().empty());
  QCOMPARE(fixture.progress.testedMovesText(), QString());
  QVERIFY(!fixture.progress.continueButton()->isEnabled() && fixture.progress.startButton()->isEnabled());
  QVERIFY(fixture.main.boardView()->isEnabled());
}

void JobsTest::selectMoveForcesTheFirstMove_data() {
  QTest::addColumn<int>("tab");
  QTest::addColumn<QString>("fen");
  QTest::addColumn<QString>("stipulation");
  QTest::addColumn<QString>("move");
  QTest::addColumn<QStringList>("tree");
  QTest::newRow("a key that works") << kSolverTab << kShmatov << "#3"
                                    << "Qb3 - a3 "
                                    << QStringList{"1. Qb3 - a3    O.K.", "  1....,  h7 - h6   2. Qa3 - c3 ",
                                                   "  1....,  e5 - e4   2. Ng3 - f5 "};
  QTest::newRow("one first move counted")
      << kVariantsTab << kGameStart << "#2"
      << " e2 - e4 "
      << QStringList{"In 1 single moves:", " 1                                   x1.00   / Black /",
                     "In 2 single moves:", " 20                                 x20.00   / White /"};
}

// The choice holds for the following runs, Cancel keeps it, and an edit of
// the set-up (here the side to move) or the first row gives all moves back.
void JobsTest::selectMoveForcesTheFirstMove() {
  QFETCH(int, tab);
  QFETCH(QString, fen);
  QFETCH(QString, stipulation);
  QFETCH(QString, move);
  QFETCH(QStringList, tree);
  JobWindow fixture;
  fixture.open(qPrintable(fen), qPrintable(stipulation), tab);
  SolverPanel& panel = *fixture.main.solverPanel();
  // Opens the dialog, checks what it shows, selects `row` and closes it.
  const auto choose = [&](const QString& row, QDialogButtonBox::StandardButton button, const QString& shownRow) {
    QTest::mouseClick(panel.selectMoveButton(), Qt::LeftButton);
    std::unique_ptr<SelectMoveDialog> dialog(fixture.main.findChild<SelectMoveDialog*>());
    QVERIFY(dialog && dialog->isVisible());
    QListWidget* list = dialog->moveList();
    QCOMPARE(dialog->findChild<QLabel*>()->text(), QString("Select first move to test:"));
    QCOMPARE(list->item(0)->text(), QString("Wszystkie"));
    QCOMPARE(list->currentItem()->text(), shownRow);
    QCOMPARE(list->findItems(row, Qt::MatchExactly).size(), 1);
    list->setCurrentItem(list->findItems(row, Qt::MatchExactly).first());
    dialog->findChild<QDialogButtonBox*>()->button(button)->click();
  };
  choose(move, QDialogButtonBox::Ok, "Wszystkie");
  QCOMPARE(panel.firstMoveField()->text(), move);
  for (int run = 0; run < 2; ++run) {
    QTest::mouseClick(fixture.progress.startButton(), Qt::LeftButton);
    QCOMPARE(fixture.tree(), tree);
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
void JobsTest::enPassantLastMoveIsTheChosenOne() {
  JobWindow fixture;
  fixture.open("R7/7q/7r/Pp6/5p1r/7P/4Q3/k3K2R w K -", "#2", kSolverTab);
  fixture.setStopOnFirstSolution(false);
  QTest::mouseClick(fixture.progress.startButton(), Qt::LeftButton);
  QCOMPARE(fixture.tree(), QStringList{"No solution"});
  QAbstractButton* choice = fixture.main.solverPanel()->enPassantButton(0);
  QCOMPARE(choice->text(), QString("b7 - b5"));
  click(choice);
  QTest::mouseClick(fixture.progress.startButton(), Qt::LeftButton);
  QCOMPARE(fixture.tree(), (QStringList{"Solution No 1", "1.  a5 - b6 ", "  1...., Qh7 - a7   2. Ke1 - f2 #",
                                        "  1...., Ka1 - b1   2. Ke1 - f2 #", "No more solutions"}));
}

// The language, "Testing all second moves", "Search minimum moves" and "Stop
// on first solution" are read by the run after they were set.
void JobsTest::optionsTakeEffectInTheNextRun() {
  JobWindow fixture;
  MainWindow& window = fixture.main;
  fixture.open(kKish, "#2", kSolverTab);
  fixture.setStopOnFirstSolution(false);
  window.commandAction(commandOfLanguage(7))->trigger();  // French
  QTest::mouseClick(fixture.progress.startButton(), Qt::LeftButton);
  QCOMPARE(fixture.tree().at(1), QString("1. Rf8 - e8   threat:  2.  f7 - f8C#"));

  window.commandAction(commandOfLanguage(4))->trigger();
  click(buttonWithText<QAbstractButton>(window.solverPanel(), "Testing all second moves"));
  QTest::mouseClick(fixture.progress.startButton(), Qt::LeftButton);
  const QStringList secondMoves = fixture.tree();
  QCOMPARE(secondMoves.at(1), QString("1. Kf8 - e8 "));
  QVERIFY(secondMoves.indexOf("  1...., Rg7 - g8   2.  f7 - g8Q#") + 1 ==
          secondMoves.indexOf(QString(2 + 24, ' ') + "2.  f7 - g8B#"));

  click(buttonWithText<QAbstractButton>(window.solverPanel(), "Testing all second moves"));
  QTest::mouseClick(fixture.toolButton(ToolSearchMinimumMoves), Qt::LeftButton);
  QTest::mouseClick(fixture.progress.startButton(), Qt::LeftButton);
  QCOMPARE(fixture.tree(), QStringList({"In 1 moves:", "- no solution", "In 2 moves:"}) + kKishSolution +
                               QStringList{"No more solutions"});

  // Paused at a solution, the run goes on to the end once the option is off.
  QTest::mouseClick(fixture.toolButton(ToolSearchMinimumMoves), Qt::LeftButton);
  fixture.open(kHelpmate, "H#2", kSolverTab);
  fixture.setStopOnFirstSolution(true);
  QTest::mouseClick(fixture.progress.startButton(), Qt::LeftButton);
  QCOMPARE(fixture.tree().size(), 3);
  QTest::mouseClick(fixture.toolButton(ToolStopOnFirstSolution), Qt::LeftButton);
  QTest::mouseClick(fixture.progress.continueButton(), Qt::LeftButton);
  QCOMPARE(fixture.tree().size(), 7);
  QCOMPARE(fixture.tree().last(), QString("No more solutions"));
}

void JobsTest::closingDuringARunStopsItFirst() {
  JobWindow fixture;
  MainWindow& window = fixture.main;
  fixture.open(kShmatov, "#4", kSolverTab);
  fixture.setStopOnFirstSolution(false);
  window.commandAction(FirstInterval)->trigger();
  bool openAfterClose = false;
  clickWith(fixture.progress.startButton(), [&] {
    if (!window.jobRunning()) return;
    window.close();
    openAfterClose = window.isVisible();
  });
  QVERIFY(openAfterClose);
  QVERIFY(!window.isVisible());
  QVERIFY(!window.jobRunning());
  QCOMPARE(fixture.tree().last(), QString(" searching ..."));
}

}  // namespace velkaro::ui::testing

QTEST_MAIN(velkaro::ui::testing::JobsTest)
#include "jobs_test.moc"
