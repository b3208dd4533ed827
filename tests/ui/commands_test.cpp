// Commands as the user meets them: the two option toggles kept in step
// between menu, tool bar and the problem document; the help window; the tab
// strip's modes; Exit.

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QTextBrowser>
#include <QtTest>

#include "ui/commands.h"
#include "ui/help_browser.h"
#include "ui/solver_panel.h"
#include "ui_test_support.h"

namespace velkaro::ui::testing {
namespace {

// The entries of the menu `title` on the menu bar.
QList<QAction*> menuEntries(const MainWindow& window, const QString& title) {
  for (QAction* action : window.menuBar()->actions()) {
    if (action->text().remove(QChar('&')) == title) return action->menu()->actions();
  }
  return {};
}

}  // namespace

class CommandsTest : public QObject {
  Q_OBJECT

 private slots:
  void togglesKeptInStep_data();
  void togglesKeptInStep();
  void f1OpensTheHelpAtItsContents();
  void variantsTab();
  void exitClosesTheWindow();
};

void CommandsTest::togglesKeptInStep_data() {
  QTest::addColumn<int>("menuEntry");
  QTest::addColumn<int>("toolButton");
  QTest::addColumn<bool>("atStart");
  QTest::newRow("Stop on first solution") << int(StopOnFirstSolution) << int(ToolStopOnFirstSolution) << true;
  QTest::newRow("Search minimum moves") << int(SearchMinimumMoves) << int(ToolSearchMinimumMoves) << false;
}

void CommandsTest::togglesKeptInStep() {
  QFETCH(int, menuEntry);
  QFETCH(int, toolButton);
  QFETCH(bool, atStart);
  WindowFixture fixture;
  MainWindow& window = *fixture.window;
  QAction* entry = window.commandAction(menuEntry);
  QVERIFY(menuEntries(window, "Option").contains(entry));
  QToolButton* button = fixture.toolButton(toolButton);
  auto option = [&] {
    const SolverOptions& options = window.document().options();
    return menuEntry == StopOnFirstSolution ? options.stopOnFirstSolution : options.minimumMoves;
  };
  QCOMPARE(entry->isChecked(), atStart);
  QCOMPARE(button->isChecked(), atStart);
  QCOMPARE(option(), atStart);

  QTest::mouseClick(button, Qt::LeftButton);
  QCOMPARE(entry->isChecked(), !atStart);
  QCOMPARE(option(), !atStart);

  entry->trigger();
  QCOMPARE(button->isChecked(), atStart);
  QCOMPARE(option(), atStart);
}

// F1 opens the help; Informations opens it again at its contents.
void CommandsTest::f1OpensTheHelpAtItsContents() {
  WindowFixture fixture;
  QApplication::setActiveWindow(fixture.window.get());
  QTest::keyClick(fixture.window->boardView(), Qt::Key_F1);
  auto* help = fixture.window->findChild<HelpBrowser*>();
  QVERIFY(help && help->isVisible());
  QCOMPARE(help->windowTitle(), QString("Informations"));
  QTextBrowser* browser = help->browser();
  QCOMPARE(browser->source().fragment(), QString("contents"));
  const int atContents = browser->verticalScrollBar()->value();

  // Opened again from further down the page, it goes back to the contents.
  browser->scrollToAnchor("commandline");
  QVERIFY(browser->verticalScrollBar()->value() > atContents);
  fixture.window->commandAction(Informations)->trigger();
  QCOMPARE(fixture.window->findChildren<HelpBrowser*>().size(), 1);
  QCOMPARE(browser->verticalScrollBar()->value(), atContents);
}

void CommandsTest::variantsTab() {
  WindowFixture fixture;
  MainWindow& window = *fixture.window;
  QLabel* caption = nullptr;
  for (QLabel* label : window.findChildren<QLabel*>()) {
    if (label->text() == "Counting number of possible continuations") caption = label;
  }
  QVERIFY(caption && !caption->isVisible());
  auto* selfmate = buttonWithText<QRadioButton>(window.solverPanel(), "Sefmate in ");
  QVERIFY(selfmate->isEnabled());

  fixture.chooseTab(3);
  QCOMPARE(window.mode(), MainWindow::Mode::Variants);
  QVERIFY(caption->isVisible());
  QVERIFY(window.solverPanel()->isVisible());
  QVERIFY(!selfmate->isEnabled());

  fixture.chooseTab(1);
  QCOMPARE(window.mode(), MainWindow::Mode::Creator);
  QVERIFY(!caption->isVisible());
  QVERIFY(!window.solverPanel()->isVisible());
  fixture.chooseTab(0);
  QVERIFY(selfmate->isEnabled());
}

void CommandsTest::exitClosesTheWindow() {
  WindowFixture fixture;
  fixture.window->activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
  QTest::keyClick(fixture.window.get(), Qt::Key_X, Qt::ControlModifier);
  QVERIFY(!fixture.window->isVisible());
}

}  // namespace velkaro::ui::testing

QTEST_MAIN(velkaro::ui::testing::CommandsTest)
#include "commands_test.moc"
