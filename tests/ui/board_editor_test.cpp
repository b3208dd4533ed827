// The board editor driven through the mouse: men placed, moved and removed by
// click and by drag, the piece count, the en-passant choices, and the
// controls a running job locks.

#include <QLabel>
#include <QtTest>

#include "ui/commands.h"
#include "ui/en_passant.h"
#include "ui/piece_palette.h"
#include "ui/solver_panel.h"
#include "ui_test_support.h"

namespace velkaro::ui::testing {
namespace {

using core::piece::King;
using core::piece::Knight;
using core::piece::Pawn;
using core::piece::Queen;
using core::piece::Rook;

}  // namespace

class BoardEditorTest : public QObject {
  Q_OBJECT

 private slots:
  void clicksPlaceAndRemoveMen_data();
  void clicksPlaceAndRemoveMen();
  void dragsPlaceMoveAndRemoveMen_data();
  void dragsPlaceMoveAndRemoveMen();
  void enPassantChoicesFollowTheBoard_data();
  void enPassantChoicesFollowTheBoard();
  void enPassantChoiceSurvivesOnlyWhileAllowed();
  void initialPositionAndClear();
  void lockingKeepsWhatWasUnavailable();
};

void BoardEditorTest::clicksPlaceAndRemoveMen_data() {
  QTest::addColumn<int>("palette");
  QTest::addColumn<int>("square");
  QTest::addColumn<int>("before");
  QTest::addColumn<int>("button");
  QTest::addColumn<int>("after");
  QTest::addColumn<QString>("count");
  QTest::newRow("White queen on an empty square") << Queen << sq("d4") << 0 << int(Qt::LeftButton) << Queen << "(2+1)";
  QTest::newRow("Black pawn replaces a White man") << -Pawn << sq("e5") << Knight << int(Qt::LeftButton) << -Pawn
                                                   << "(1+2)";
  QTest::newRow("the same man again takes it off") << -Rook << sq("h8") << -Rook << int(Qt::LeftButton) << 0 << "(1+1)";
  QTest::newRow("a right click takes any man off") << Queen << sq("b2") << -Knight << int(Qt::RightButton) << 0
                                                   << "(1+1)";
  QTest::newRow("a right click on an empty square") << Queen << sq("b2") << 0 << int(Qt::RightButton) << 0 << "(1+1)";
}

void BoardEditorTest::clicksPlaceAndRemoveMen() {
  QFETCH(int, palette);
  QFETCH(int, square);
  QFETCH(int, before);
  QFETCH(int, button);
  QFETCH(int, after);
  QFETCH(QString, count);
  WindowFixture fixture;
  Board board = boardOf({{"e1", King}, {"a8", -King}});
  board[static_cast<std::size_t>(square)] = before;
  fixture.setBoard(board);

  QTest::mouseClick(fixture.window->piecePalette()->button(palette), Qt::LeftButton);
  QCOMPARE(fixture.window->piecePalette()->selectedPiece(), palette);
  QTest::mouseClick(fixture.window->boardView(), Qt::MouseButton(button), {}, fixture.centreOf(square));

  board[static_cast<std::size_t>(square)] = after;
  QCOMPARE(placement(fixture.window->document().setup().board), placement(board));
  QCOMPARE(placement(fixture.window->boardView()->board()), placement(board));
  QCOMPARE(fixture.window->pieceCountLabel()->text(), count);
}

// A drag goes from `from` (a palette man when `palette` is set) to `to`;
// "off" lets go beside the board.
void BoardEditorTest::dragsPlaceMoveAndRemoveMen_data() {
  QTest::addColumn<int>("palette");
  QTest::addColumn<QString>("from");
  QTest::addColumn<QString>("to");
  QTest::addColumn<QString>("empty");
  QTest::addColumn<QString>("filled");
  QTest::addColumn<int>("code");
  QTest::newRow("palette knight onto c3") << -Knight << "" << "c3" << "" << "c3" << -Knight;
  QTest::newRow("palette man over a man") << Queen << "" << "e1" << "" << "e1" << Queen;
  QTest::newRow("man to another square") << 0 << "e1" << "g4" << "e1" << "g4" << King;
  QTest::newRow("man over another man") << 0 << "e1" << "a8" << "e1" << "a8" << King;
  QTest::newRow("man off the board") << 0 << "a8" << "off" << "a8" << "" << 0;
}

void BoardEditorTest::dragsPlaceMoveAndRemoveMen() {
  QFETCH(int, palette);
  QFETCH(QString, from);
  QFETCH(QString, to);
  QFETCH(QString, empty);
  QFETCH(QString, filled);
  QFETCH(int, code);
  WindowFixture fixture;
  Board expected = boardOf({{"e1", King}, {"a8", -King}});
  fixture.setBoard(expected);
  BoardView* board = fixture.window->boardView();

  QWidget* source = palette ? static_cast<QWidget*>(fixture.window->piecePalette()->button(palette)) : board;
  const QPoint start = palette ? source->rect().center() : fixture.centreOf(sq(qPrintable(from)));
  const QPoint end = to == "off" ? QPoint(board->width() - 2, board->height() - 2)
                                 : fixture.centreOf(sq(qPrintable(to)));
  QCOMPARE(board->squareAt(QPoint(board->width() - 2, board->height() - 2)), -1);
  // The pressed widget keeps the mouse until the release, as with a real mouse.
  const QPoint endOnSource = source->mapFromGlobal(board->mapToGlobal(end));
  QTest::mousePress(source, Qt::LeftButton, {}, start);
  QTest::mouseMove(source, (start + endOnSource) / 2);
  QTest::mouseMove(source, endOnSource);
  QTest::mouseRelease(source, Qt::LeftButton, {}, endOnSource);

  if (!empty.isEmpty()) expected[static_cast<std::size_t>(sq(qPrintable(empty)))] = 0;
  if (!filled.isEmpty()) expected[static_cast<std::size_t>(sq(qPrintable(filled)))] = code;
  QCOMPARE(placement(fixture.window->document().setup().board), placement(expected));
  QCOMPARE(placement(board->board()), placement(expected));
}

// The offered double steps, left to right, for the board and side given.
void BoardEditorTest::enPassantChoicesFollowTheBoard_data() {
  QTest::addColumn<Board>("board");
  QTest::addColumn<int>("side");
  QTest::addColumn<QStringList>("choices");
  auto with = [](Men men) {
    Board board = boardOf(men);
    board[static_cast<std::size_t>(sq("e1"))] = King;
    board[static_cast<std::size_t>(sq("e8"))] = -King;
    return board;
  };
  QTest::newRow("Black pawn beside a White one") << with({{"d5", -Pawn}, {"e5", Pawn}}) << 1 << QStringList{"d7 - d5"};
  QTest::newRow("the wrong side to move") << with({{"d5", -Pawn}, {"e5", Pawn}}) << -1 << QStringList{};
  QTest::newRow("White pawn on its fourth rank") << with({{"c4", Pawn}, {"b4", -Pawn}, {"d4", -Pawn}}) << -1
                                                 << QStringList{"c2 - c4"};
  QTest::newRow("a crossed square taken") << with({{"d5", -Pawn}, {"e5", Pawn}, {"d6", Knight}}) << 1 << QStringList{};
  QTest::newRow("the start square taken") << with({{"d5", -Pawn}, {"e5", Pawn}, {"d7", -Rook}}) << 1 << QStringList{};
  QTest::newRow("no pawn beside it") << with({{"d5", -Pawn}, {"f5", Pawn}}) << 1 << QStringList{};
  QTest::newRow("edge files") << with({{"a5", -Pawn}, {"b5", Pawn}, {"h5", -Pawn}, {"g5", Pawn}}) << 1
                              << QStringList{"a7 - a5", "h7 - h5"};
  QTest::newRow("five at most") << with({{"a5", -Pawn}, {"b5", Pawn}, {"c5", -Pawn}, {"d5", -Pawn}, {"e5", Pawn},
                                         {"f5", -Pawn}, {"g5", -Pawn}, {"h5", Pawn}})
                                << 1 << QStringList{"a7 - a5", "c7 - c5", "d7 - d5", "f7 - f5", "g7 - g5"};
}

void BoardEditorTest::enPassantChoicesFollowTheBoard() {
  QFETCH(Board, board);
  QFETCH(int, side);
  QFETCH(QStringList, choices);
  WindowFixture fixture;
  SolverPanel* panel = fixture.window->solverPanel();
  fixture.setBoard(board);
  click(panel->sideButton(side));
  QCOMPARE(fixture.window->document().setup().sideToMove, side);

  QStringList shown;
  for (int index = 0; index < SolverPanel::kMaxEnPassantChoices; ++index) {
    if (panel->enPassantButton(index)->isVisible()) shown << panel->enPassantButton(index)->text();
  }
  QCOMPARE(shown, choices);
  QCOMPARE(enPassantChoices(board, side).size(), std::size_t(choices.size()));
}

void BoardEditorTest::enPassantChoiceSurvivesOnlyWhileAllowed() {
  WindowFixture fixture;
  SolverPanel* panel = fixture.window->solverPanel();
  fixture.setBoard(boardOf({{"e1", King}, {"e8", -King}, {"c5", -Pawn}, {"d5", Pawn}, {"e5", -Pawn}}));
  click(panel->enPassantButton(1));
  QCOMPARE(fixture.window->document().setup().lastMoveSquare, sq("e5"));

  // Another man elsewhere rebuilds the choices; the chosen one stays.
  QTest::mouseClick(fixture.window->boardView(), Qt::LeftButton, {}, fixture.centreOf(sq("a1")));
  QCOMPARE(fixture.window->document().setup().lastMoveSquare, sq("e5"));
  click(panel->enPassantButton(1));
  QCOMPARE(fixture.window->document().setup().lastMoveSquare, 0);
  click(panel->enPassantButton(0));
  QCOMPARE(fixture.window->document().setup().lastMoveSquare, sq("c5"));

  // Black to move: the Black pawns' double steps are no longer possible.
  click(panel->sideButton(-1));
  QCOMPARE(fixture.window->document().setup().lastMoveSquare, 0);
  click(panel->sideButton(1));
  QCOMPARE(fixture.window->document().setup().lastMoveSquare, 0);
}

void BoardEditorTest::initialPositionAndClear() {
  WindowFixture fixture;
  SolverPanel* panel = fixture.window->solverPanel();
  click(panel->sideButton(-1));
  click(panel->initialPositionButton());
  core::BoardSetup setup = fixture.window->document().setup();
  QCOMPARE(placement(setup.board), QString("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR"));
  QCOMPARE(setup.sideToMove, 1);
  QVERIFY(setup.whiteLongCastle && setup.whiteShortCastle && setup.blackLongCastle && setup.blackShortCastle);
  QCOMPARE(fixture.window->pieceCountLabel()->text(), QString("(16+16)"));

  click(panel->clearButton());
  setup = fixture.window->document().setup();
  QCOMPARE(placement(setup.board), QString("8/8/8/8/8/8/8/8"));
  QVERIFY(!setup.whiteLongCastle && !setup.whiteShortCastle && !setup.blackLongCastle && !setup.blackShortCastle);
  QCOMPARE(fixture.window->pieceCountLabel()->text(), QString("(0+0)"));
}

void BoardEditorTest::lockingKeepsWhatWasUnavailable() {
  WindowFixture fixture;
  MainWindow& window = *fixture.window;
  click(buttonWithText<QRadioButton>(window.solverPanel(), "Helpmate in "));
  auto* allSecondMoves = buttonWithText<QAbstractButton>(window.solverPanel(), "Testing all second moves");
  QVERIFY(!allSecondMoves->isEnabled());

  window.setRunLocked(true);
  for (int command : {ImportFen, Exit, StopOnFirstSolution, FirstLanguage, LastInterval, FlipPosition, MoveRight,
                      PasteFen, NextProblem}) {
    QVERIFY2(!window.commandAction(command)->isEnabled(), qPrintable(QString::number(command)));
  }
  QVERIFY(window.commandAction(Informations)->isEnabled());
  QVERIFY(!window.modeTabs()->isEnabled());
  QVERIFY(!window.solverPanel()->clearButton()->isEnabled());
  const Board before = window.document().setup().board;
  QTest::mouseClick(window.boardView(), Qt::LeftButton, {}, fixture.centreOf(sq("d4")));
  QCOMPARE(placement(window.document().setup().board), placement(before));

  window.setRunLocked(false);
  QVERIFY(window.commandAction(ImportFen)->isEnabled());
  QVERIFY(window.commandAction(MoveRight)->isEnabled());
  QVERIFY(window.commandAction(Open)->isEnabled());
  QVERIFY(!window.commandAction(Redo)->isEnabled());  // nothing to redo before the lock, nor after it
  QVERIFY(window.modeTabs()->isEnabled());
  QVERIFY(!allSecondMoves->isEnabled());
}

}  // namespace velkaro::ui::testing

QTEST_MAIN(velkaro::ui::testing::BoardEditorTest)
#include "board_editor_test.moc"
