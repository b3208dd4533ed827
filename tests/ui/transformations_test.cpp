// The nine board transformations: where each man goes, and run from their
// tool-bar buttons, that side and castling stay and only changed squares are
// repainted.

#include <QLabel>
#include <QPaintEvent>
#include <QtTest>

#include "ui/board_transform.h"
#include "ui/commands.h"
#include "ui_test_support.h"

namespace velkaro::ui::testing {
namespace {

using core::piece::King;
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

}  // namespace

class TransformationsTest : public QObject {
  Q_OBJECT

 private slots:
  void menMoveAsTheTransformationSays_data();
  void menMoveAsTheTransformationSays();
  void theButtonKeepsSideAndCastling();
  void onlyChangedSquaresAreRepainted_data();
  void onlyChangedSquaresAreRepainted();
};

// Each row transforms "R7/8/2p5/8/7n/3B4/8/4K3": men on a corner, on an edge
// and in the middle, White and Black.
void TransformationsTest::menMoveAsTheTransformationSays_data() {
  QTest::addColumn<QList<int>>("commands");
  QTest::addColumn<QString>("after");
  QTest::newRow("Flip position") << QList<int>{FlipPosition} << "4k3/8/3b4/7N/8/2P5/8/r7";
  QTest::newRow("Vertical Mirror") << QList<int>{VerticalMirror} << "4K3/8/3B4/7n/8/2p5/8/R7";
  QTest::newRow("Horizontal Mirror") << QList<int>{HorizontalMirror} << "7R/8/5p2/8/n7/4B3/8/3K4";
  QTest::newRow("Rotate Left") << QList<int>{RotateLeft} << "4n3/8/8/7K/5B2/2p5/8/R7";
  QTest::newRow("Rotate Right") << QList<int>{RotateRight} << "7R/8/5p2/2B5/K7/8/8/3n4";
  QTest::newRow("Move Up wraps rank 8 to rank 1") << QList<int>{MoveUp} << "8/2p5/8/7n/3B4/8/4K3/R7";
  QTest::newRow("Move Down wraps rank 1 to rank 8") << QList<int>{MoveDown} << "4K3/R7/8/2p5/8/7n/3B4/8";
  QTest::newRow("Move Left wraps the a-file") << QList<int>{MoveLeft} << "7R/8/1p6/8/6n1/2B5/8/3K4";
  QTest::newRow("Move Right wraps the h-file") << QList<int>{MoveRight} << "1R6/8/3p4/8/n7/4B3/8/5K2";
  QTest::newRow("Rotate Left, Rotate Right") << QList<int>{RotateLeft, RotateRight} << "R7/8/2p5/8/7n/3B4/8/4K3";
  QTest::newRow("four Rotate Left") << QList<int>(4, RotateLeft) << "R7/8/2p5/8/7n/3B4/8/4K3";
  QTest::newRow("eight Move Right") << QList<int>(8, MoveRight) << "R7/8/2p5/8/7n/3B4/8/4K3";
}

void TransformationsTest::menMoveAsTheTransformationSays() {
  QFETCH(QList<int>, commands);
  QFETCH(QString, after);
  Board board = boardOf({{"a8", Rook}, {"h4", -core::piece::Knight}, {"e1", King}, {"c6", -Pawn},
                         {"d3", core::piece::Bishop}});
  for (int command : commands) board = transformBoard(board, command);
  QCOMPARE(placement(board), after);
}

// Flip position from its button: the men change colour, the side to move and
// castling stay, and the count follows.
void TransformationsTest::theButtonKeepsSideAndCastling() {
  WindowFixture fixture;
  core::BoardSetup setup;
  setup.board = boardOf({{"a8", -King}, {"b6", King}, {"h1", Rook}, {"c2", Pawn}});
  setup.sideToMove = core::White;
  setup.whiteShortCastle = true;
  setup.blackLongCastle = true;
  fixture.window->document().setSetup(setup);
  QTest::mouseClick(fixture.toolButton(FlipPosition), Qt::LeftButton);
  const core::BoardSetup result = fixture.window->document().setup();
  QCOMPARE(placement(result.board), QString("7r/2p5/8/8/8/1k6/8/K7"));
  QCOMPARE(result.sideToMove, int(core::White));
  QVERIFY(!result.whiteLongCastle && result.whiteShortCastle && result.blackLongCastle && !result.blackShortCastle);
  QCOMPARE(fixture.window->pieceCountLabel()->text(), QString("(1+3)"));
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
