// Commands as the user meets them: the two option toggles kept in step
// between menu, tool bar and the problem document; the help window; the tab
// strip's modes; Exit.

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QRadioButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTextBrowser>
#include <QtTest>

#include "ui/commands.h"
#include "ui/help_browser.h"
#include "ui/solver_panel.h"
#include "ui_test_support.h"

namespace velkaro::ui::testing {
namespace {

QMenu* menuNamed(const MainWindow& window, const QString& title) {
  for (QAction* action : window.menuBar()->actions()) {
    if (action->text().remove(QChar('&')) == title) return action->menu();
  }
  return nullptr;
}

QAction* entryNamed(QMenu* menu, const QString& text) {
  for (QAction* action : menu->actions()) {
    if (action->text() == text) return action;
  }
  return nullptr;
}

}  // namespace

class CommandsTest : public QObject {
  Q_OBJECT

 private slots:
  void togglesKeptInStep_data();
  void togglesKeptInStep();
  void informationsOpensTheHelpAtItsContents();
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
  QAction* entry = entryNamed(menuNamed(window, "Option"), window.commandAction(menuEntry)->text());
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

void CommandsTest::informationsOpensTheHelpAtItsContents() {
  WindowFixture fixture;
  fixture.window->commandAction(Informations)->trigger();
  auto* help = fixture.window->findChild<HelpBrowser*>();
  QVERIFY(help && help->isVisible());
  QCOMPARE(help->windowTitle(), QString("Informations"));
  QTextBrowser* browser = help->browser();
  const QString text = browser->toPlainText();
  for (const char* topic : {"Contents", "Setting up a position", "Stipulations", "The four modes", "Options",
                            "Importing a FEN position", "The command line"}) {
    QVERIFY2(text.contains(topic), topic);
  }
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
  QTabBar* tabs = window.modeTabs();
  QStringList names;
  for (int tab = 0; tab < tabs->count(); ++tab) names << tabs->tabText(tab);
  QCOMPARE(names, (QStringList{"Solver", "Creator", "Positions", "Variants"}));
  QLabel* caption = nullptr;
  for (QLabel* label : window.findChildren<QLabel*>()) {
    if (label->text() == "Counting number of possible continuations") caption = label;
  }
  QVERIFY(caption && !caption->isVisible());
  auto* selfmate = buttonWithText<QRadioButton>(window.solverPanel(), "Sefmate in ");
  QVERIFY(selfmate->isEnabled());

  QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(3).center());
  QCOMPARE(window.mode(), MainWindow::Mode::Variants);
  QVERIFY(caption->isVisible());
  QVERIFY(window.solverPanel()->isVisible());
  QVERIFY(!selfmate->isEnabled());

  QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(1).center());
  QCOMPARE(window.mode(), MainWindow::Mode::Creator);
  QVERIFY(!caption->isVisible());
  QVERIFY(!window.solverPanel()->isVisible());
  QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(0).center());
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
