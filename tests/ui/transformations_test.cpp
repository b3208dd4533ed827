// The nine board transformations run from their tool-bar buttons: where each
// man goes, that the side to move and castling stay, that the result pane and
// progress panel are reset, and that only the changed squares are repainted.

#include <QLabel>
#include <QListWidget>
#include <QPaintEvent>
#include <QtTest>
#include <vector>

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
  void menMoveAsTheButtonSays_data();
  void menMoveAsTheButtonSays();
  void onlyChangedSquaresAreRepainted_data();
  void onlyChangedSquaresAreRepainted();
  void resultsAndProgressAreReset();
};

void TransformationsTest::menMoveAsTheButtonSays_data() {
  QTest::addColumn<Board>("before");
  QTest::addColumn<QList<int>>("commands");
  QTest::addColumn<Board>("after");
  QTest::addColumn<QString>("count");
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

void TransformationsTest::menMoveAsTheButtonSays() {
  QFETCH(Board, before);
  QFETCH(QList<int>, commands);
  QFETCH(Board, after);
  QFETCH(QString, count);
  WindowFixture fixture;
  core::BoardSetup setup;
  setup.board = before;
  setup.sideToMove = core::Black;
  setup.whiteShortCastle = true;
  setup.blackLongCastle = true;
  fixture.window->setSetup(setup);

  for (int command : commands) QTest::mouseClick(fixture.toolButton(command), Qt::LeftButton);

  const core::BoardSetup result = fixture.window->setup();
  QCOMPARE(placement(result.board), placement(after));
  QCOMPARE(placement(fixture.window->boardView()->board()), placement(after));
  QCOMPARE(result.sideToMove, int(core::Black));
  QVERIFY(!result.whiteLongCastle && result.whiteShortCastle && result.blackLongCastle && !result.blackShortCastle);
  QCOMPARE(fixture.window->pieceCountLabel()->text(), count);
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
  QTest::qWait(50);  // let the first full paint pass
  PaintLog log(board);

  QTest::mouseClick(fixture.toolButton(command), Qt::LeftButton);
  if (!changed.isEmpty()) QTRY_VERIFY(!log.painted.isEmpty());
  QTest::qWait(50);

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

void TransformationsTest::resultsAndProgressAreReset() {
  WindowFixture fixture;
  fixture.setBoard(sample());
  ProgressPanel* progress = fixture.window->progressPanel();
  ResultPane* results = fixture.window->resultPane();
  progress->setClockText("00:01:07");
  progress->setTestedMovesText(" 12 345 678");
  progress->setSpeedText("184 000");
  progress->setBar(30);
  progress->setLineDisplay({{"1. Qd1 - d8 , Ke8 - f7 ", "2. Qd8 - e7 "}, {"", ""}});
  results->insertRootItem(1, "  Solution No 1");
  results->insertChildItem(1, 2, "1...., Kf7 - g6   2. Qe7 - g5#");
  results->appendText("  Solution No 1\n");

  QTest::mouseClick(fixture.toolButton(RotateRight), Qt::LeftButton);

  QCOMPARE(progress->clockText(), QString("00:00:00"));
  QCOMPARE(progress->testedMovesText(), QString());
  QCOMPARE(progress->speedText(), QString());
  QCOMPARE(progress->bar(), 0);
  QCOMPARE(progress->lineDisplay(0)->count(), 0);
  QCOMPARE(results->topLevelItemCount(), 0);
  QCOMPARE(results->text(), std::string());
}

}  // namespace velkaro::ui::testing

QTEST_MAIN(velkaro::ui::testing::TransformationsTest)
#include "transformations_test.moc"
