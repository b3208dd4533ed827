// The Creator and Positions tabs driven through their controls: a pause on
// each find, Continue, and a chosen row put on the board.

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSpinBox>
#include <QtTest>

#include "generator/settings.h"
#include "placement/board_text.h"
#include "ui/available_squares_dialog.h"
#include "ui/commands.h"
#include "ui/creator_panel.h"
#include "ui/positions_panel.h"
#include "ui/progress_panel.h"
#include "ui_test_support.h"

namespace velkaro::ui::testing {

namespace {

constexpr int kCreatorTab = 1;
constexpr int kPositionsTab = 2;

struct ModeWindow : WindowFixture {
  MainWindow& main = *window;
  ProgressPanel& progress = *main.progressPanel();

  QStringList rows(QListWidget* list) const {
    QStringList texts;
    for (int row = 0; row < list->count(); ++row) texts << list->item(row)->text();
    return texts;
  }
};

}  // namespace

class ModesTest : public QObject {
  Q_OBJECT

 private slots:
  void creatorFindsPausesAndShowsProblems();
  void positionsFindsEightQueensOneByOne();
};

// Kings on c5 and d1, a White queen, rook and knight to add, the knight kept
// to the a-file: each find pauses the run, Continue finds the next, and a
// chosen row puts its problem on the board with its key shown.
void ModesTest::creatorFindsPausesAndShowsProblems() {
  ModeWindow fixture;
  core::BoardSetup kings;
  kings.board = boardOf({{"c5", core::piece::King}, {"d1", -core::piece::King}});
  fixture.main.document().setSetup(kings);
  fixture.chooseTab(kCreatorTab);
  CreatorPanel& panel = *fixture.main.creatorPanel();
  for (generator::Kind kind : {generator::Kind::Queen, generator::Kind::Rook, generator::Kind::Knight}) {
    panel.addedField(core::White, kind)->setValue(1);
  }
  QCOMPARE(fixture.main.pieceCountLabel()->text(), QString("(4+1)"));
  QTest::mouseClick(panel.squaresButton(core::White, generator::Kind::Knight), Qt::LeftButton);
  auto* squares = fixture.main.findChild<AvailableSquaresDialog*>();
  QVERIFY(squares && squares->isVisible());
  QTest::mouseClick(squares->clearButton(), Qt::LeftButton);
  for (const char* square : {"a8", "a7", "a6", "a5", "a4", "a3", "a2", "a1"}) {
    QTest::mouseClick(squares->board(), Qt::LeftButton, {}, squares->board()->squareRect(sq(square)).center());
  }
  squares->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();

  QCOMPARE(fixture.press(fixture.progress.startButton()), jobs::RunEnd::Solution);
  QListWidget* list = panel.problemList();
  QCOMPARE(list->count(), 1);
  QCOMPARE(fixture.press(fixture.progress.continueButton()), jobs::RunEnd::Solution);
  QCOMPARE(list->count(), 2);
  const QStringList found = fixture.rows(list);
  for (const QString& row : found) {
    const QString board = row.left(row.indexOf(' '));
    QVERIFY2(board.split('/').filter(QRegularExpression("^N")).size() == 1, qPrintable(row));  // the knight on a
  }
  list->setCurrentRow(0);
  QCOMPARE(placement(fixture.main.document().board()), found.first().left(found.first().indexOf(' ')));
  QVERIFY(panel.keyLabel()->text().startsWith("1. "));
  QVERIFY(fixture.progress.continueButton()->isEnabled());

  // The list stays while another tab is visited.
  fixture.chooseTab(0);
  fixture.chooseTab(kCreatorTab);
  QCOMPARE(fixture.rows(list), found);
}

// Eight queens pausing at each find: Start gives the first placement,
// Continue twice the next two; a chosen row goes on the board, with the
// unattacked empty squares of five queens marked.
void ModesTest::positionsFindsEightQueensOneByOne() {
  ModeWindow fixture;
  fixture.chooseTab(kPositionsTab);
  PositionsPanel& panel = *fixture.main.positionsPanel();
  QTest::keyClicks(panel.countField(1), "8");
  QCOMPARE(fixture.press(fixture.progress.startButton()), jobs::RunEnd::Solution);
  QCOMPARE(fixture.press(fixture.progress.continueButton()), jobs::RunEnd::Solution);
  QCOMPARE(fixture.press(fixture.progress.continueButton()), jobs::RunEnd::Solution);
  QListWidget* list = panel.placementList();
  QCOMPARE(fixture.rows(list), (QStringList{"Q7/4Q3/7Q/5Q2/2Q5/6Q1/1Q6/3Q4", "Q7/5Q2/7Q/2Q5/6Q1/3Q4/1Q6/4Q3",
                                            "Q7/6Q1/3Q4/5Q2/7Q/1Q6/4Q3/2Q5"}));
  QCOMPARE(panel.captionValue(placement::Caption::Positions)->text(), QString("3"));
  QCOMPARE(placement(fixture.main.document().board()), QString("Q7/6Q1/3Q4/5Q2/7Q/1Q6/4Q3/2Q5"));
  QVERIFY(panel.goalButton(placement::Goal::AttackingSquares)->isEnabled());

  // Five queens chosen by hand in a list of their own: the marks are the
  // empty squares no queen attacks.
  panel.countField(1)->setText("5");
  QTest::mouseClick(panel.goalButton(placement::Goal::NonAttackingSquares), Qt::LeftButton);
  QCOMPARE(fixture.press(fixture.progress.startButton()), jobs::RunEnd::Finished);
  QVERIFY(list->count() > 0);
  list->setCurrentRow(0);
  const auto board = placement::parseBoardText(list->item(0)->text().toStdString());
  QVERIFY(board.has_value());
  QCOMPARE(fixture.main.boardView()->markedSquares(), placement::unattackedEmptySquares(*board));
  QVERIFY(fixture.main.boardView()->markedSquares() != 0);
}

}  // namespace velkaro::ui::testing

QTEST_MAIN(velkaro::ui::testing::ModesTest)
#include "modes_test.moc"
