// The nine board transformations: where each man goes (the transformation
// itself, below the window), and run from their tool-bar buttons: that the
// side to move and castling stay, that the results and the progress panel are
// reset, and that only the changed squares are repainted.

#include <QLabel>
#include <QListWidget>
#include <QPaintEvent>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>
#include <vector>

#include "ui/board_transform.h"
#include "ui/commands.h"
#include "ui/progress_panel.h"
#include "ui/result_pane.h"
#include "ui/solver_panel.h"
#include "ui_test_support.h"

namespace velkaro::ui::testing {
namespace {

using core::piece::Bishop;
using core::piece::King;
using core::piece::Knight;
using core::piece::Pawn;
using core::piece::Queen;
using core::piece::Rook;

// Collects the regions of the paint events a widget receives.
class PaintLog : public QObject {
 public:
  explicit PaintLog(QWidget* widget) { widget->installEventFilter(this); }
  QRegion painted;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) painted += static_cast<QPaintEvent*>(event)->region();
    return false;
  }
};

// An asymmetric board: a man on a corner, on an edge and in the middle.
Board sample() { return boardOf({{"a8", Rook}, {"h4", -Knight}, {"e1", King}, {"c6", -Pawn}, {"d3", Bishop}}); }

}  // namespace

class TransformationsTest : public QObject {
  Q_OBJECT

 private slots:
  void menMoveAsTheTransformationSays_data();
  void menMoveAsTheTransformationSays();
  void theButtonKeepsSideAndCastlingAndResetsResults();
  void onlyChangedSquaresAreRepainted_data();
  void onlyChangedSquaresAreRepainted();
};

void TransformationsTest::menMoveAsTheTransformationSays_data() {
  QTest::addColumn<Board>("before");
  QTest::addColumn<QList<int>>("commands");
  QTest::addColumn<Board>("after");
  QTest::addColumn<QString>("count");  // not shown here
  QTest::newRow("Flip position of the kings") << boardOf({{"e1", King}, {"e8", -King}}) << QList<int>{FlipPosition}
                                              << boardOf({{"e8", -King}, {"e1", King}}) << "(1+1)";
  QTest::newRow("Flip position") << sample() << QList<int>{FlipPosition}
                                 << boardOf({{"a1", -Rook}, {"h5", Knight}, {"e8", -King}, {"c3", Pawn}, {"d6", -Bishop}})
                                 << "(2+3)";
  QTest::newRow("Vertical Mirror") << sample() << QList<int>{VerticalMirror}
                                   << boardOf({{"a1", Rook}, {"h5", -Knight}, {"e8", King}, {"c3", -Pawn}, {"d6", Bishop}})
                                   << "(3+2)";
  QTest::newRow("Horizontal Mirror") << sample() << QList<int>{HorizontalMirror}
                                     << boardOf({{"h8", Rook}, {"a4", -Knight}, {"d1", King}, {"f6", -Pawn}, {"e3", Bishop}})
                                     << "(3+2)";
  QTest::newRow("Rotate Left") << sample() << QList<int>{RotateLeft}
                               << boardOf({{"a1", Rook}, {"e8", -Knight}, {"h5", King}, {"c3", -Pawn}, {"f4", Bishop}})
                               << "(3+2)";
  QTest::newRow("Rotate Right") << sample() << QList<int>{RotateRight}
                                << boardOf({{"h8", Rook}, {"d1", -Knight}, {"a4", King}, {"f6", -Pawn}, {"c5", Bishop}})
                                << "(3+2)";
  QTest::newRow("Rotate Left then Rotate Right") << sample() << QList<int>{RotateLeft, RotateRight} << sample()
                                                 << "(3+2)";
  QTest::newRow("four Rotate Left") << sample() << QList<int>{RotateLeft, RotateLeft, RotateLeft, RotateLeft}
                                    << sample() << "(3+2)";
  QTest::newRow("Move Up wraps rank 8 to rank 1")
      << sample() << QList<int>{MoveUp}
      << boardOf({{"a1", Rook}, {"h5", -Knight}, {"e2", King}, {"c7", -Pawn}, {"d4", Bishop}}) << "(3+2)";
  QTest::newRow("Move Down wraps rank 1 to rank 8")
      << sample() << QList<int>{MoveDown}
      << boardOf({{"a7", Rook}, {"h3", -Knight}, {"e8", King}, {"c5", -Pawn}, {"d2", Bishop}}) << "(3+2)";
  QTest::newRow("Move Left wraps the a-file to the h-file")
      << sample() << QList<int>{MoveLeft}
      << boardOf({{"h8", Rook}, {"g4", -Knight}, {"d1", King}, {"b6", -Pawn}, {"c3", Bishop}}) << "(3+2)";
  QTest::newRow("Move Right wraps the h-file to the a-file")
      << sample() << QList<int>{MoveRight}
      << boardOf({{"b8", Rook}, {"a4", -Knight}, {"f1", King}, {"d6", -Pawn}, {"e3", Bishop}}) << "(3+2)";
  QTest::newRow("eight Move Right") << sample() << QList<int>(8, MoveRight) << sample() << "(3+2)";
}

void TransformationsTest::menMoveAsTheTransformationSays() {
  QFETCH(Board, before);
  QFETCH(QList<int>, commands);
  QFETCH(Board, after);
  Board board = before;
  for (int command : commands) board = transformBoard(board, command);
  QCOMPARE(placement(board), placement(after));
}

// A solved problem, then Flip position: the men move, the side and castling
// stay, the count is refreshed, and nothing of the solution is left.
void TransformationsTest::theButtonKeepsSideAndCastlingAndResetsResults() {
  WindowFixture fixture;
  MainWindow& window = *fixture.window;
  core::BoardSetup setup;
  setup.board = boardOf({{"a8", -King}, {"b6", King}, {"h1", Rook}, {"c2", Pawn}});
  setup.sideToMove = core::White;
  setup.whiteShortCastle = true;
  setup.blackLongCastle = true;
  window.document().setSetup(setup);
  window.document().setStipulation({false, false, 1});
  window.document().setOptions({false, false, false});  // to the end: "No more solutions"
  QSignalSpy ended(&window, &MainWindow::runEnded);
  QTest::mouseClick(window.progressPanel()->startButton(), Qt::LeftButton);
  QVERIFY(ended.wait());
  QVERIFY(!window.document().solutionText().empty());
  QVERIFY(window.resultModel().rowCount() > 0);
  QCOMPARE(window.progressPanel()->bar(), ProgressPanel::kBarFull);

  QTest::mouseClick(fixture.toolButton(FlipPosition), Qt::LeftButton);

  const core::BoardSetup result = window.document().setup();
  QCOMPARE(placement(result.board), placement(boardOf({{"a1", King}, {"b3", -King}, {"h8", -Rook}, {"c7", -Pawn}})));
  QCOMPARE(result.sideToMove, int(core::White));
  QVERIFY(!result.whiteLongCastle && result.whiteShortCastle && result.blackLongCastle && !result.blackShortCastle);
  QCOMPARE(window.pieceCountLabel()->text(), QString("(1+3)"));
  ProgressPanel* progress = window.progressPanel();
  QCOMPARE(progress->clockText(), QString("00:00:00"));
  QCOMPARE(progress->testedMovesText(), QString());
  QCOMPARE(progress->speedText(), QString());
  QCOMPARE(progress->bar(), 0);
  QCOMPARE(progress->lineDisplay(0)->count(), 0);
  QCOMPARE(window.resultModel().rowCount(), 0);
  QVERIFY(window.document().solutionText().empty());
  QVERIFY(window.document().solutionRecords().empty());
}

void TransformationsTest::onlyChangedSquaresAreRepainted_data() {
  QTest::addColumn<Board>("before");
  QTest::addColumn<int>("command");
  QTest::addColumn<QStringList>("changed");
  QTest::newRow("Move Right of h4") << boardOf({{"h4", Queen}}) << int(MoveRight) << QStringList{"h4", "a4"};
  QTest::newRow("Move Up of a8") << boardOf({{"a8", -Rook}}) << int(MoveUp) << QStringList{"a8", "a1"};
  QTest::newRow("Horizontal Mirror of equal men") << boardOf({{"d4", Pawn}, {"e4", Pawn}, {"b2", King}})
                                                  << int(HorizontalMirror) << QStringList{"b2", "g2"};
  QTest::newRow("Flip position of the kings") << boardOf({{"e1", King}, {"e8", -King}}) << int(FlipPosition)
                                              << QStringList{};
}

void TransformationsTest::onlyChangedSquaresAreRepainted() {
  QFETCH(Board, before);
  QFETCH(int, command);
  QFETCH(QStringList, changed);
  WindowFixture fixture;
  fixture.setBoard(before);
  BoardView* board = fixture.window->boardView();
  QCoreApplication::processEvents();  // the first full paint
  PaintLog log(board);

  QTest::mouseClick(fixture.toolButton(command), Qt::LeftButton);
  QCoreApplication::processEvents();

  for (int square = 0; square < 64; ++square) {
    const QString name = QString("%1%2").arg(QChar('a' + square % 8)).arg(8 - square / 8);
    const QRect rect = board->squareRect(square);
    if (changed.contains(name)) {
      QVERIFY2(log.painted.contains(rect), qPrintable(name + " was not repainted"));
    } else {
      QVERIFY2(!log.painted.intersects(rect), qPrintable(name + " was repainted"));
    }
  }
}

}  // namespace velkaro::ui::testing

QTEST_MAIN(velkaro::ui::testing::TransformationsTest)
#include "transformations_test.moc"
