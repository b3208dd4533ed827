// The menu, accelerators and tool bar as the user meets them: entries, tool
// tips and what is available; the two option toggles kept in step between menu
// and tool bar; the help window; the tab strip's modes.

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
    if (action->text() == title) return action->menu();
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
  void menuEntries_data();
  void menuEntries();
  void submenus();
  void toolButtons_data();
  void toolButtons();
  void togglesKeptInStep_data();
  void togglesKeptInStep();
  void informationsOpensTheHelpAtItsContents();
  void variantsTab();
  void exitClosesTheWindow();
};

void CommandsTest::menuEntries_data() {
  QTest::addColumn<QString>("menu");
  QTest::addColumn<QString>("entry");
  QTest::addColumn<QString>("shortcut");
  QTest::addColumn<bool>("enabled");
  QTest::newRow("Open") << "File" << "Open" << "Ctrl+O" << false;
  QTest::newRow("Save") << "File" << "Save" << "Ctrl+S" << false;
  QTest::newRow("Save as") << "File" << "Save as" << "" << false;
  QTest::newRow("Import FEN") << "File" << "Import FEN" << "Ctrl+I" << true;
  QTest::newRow("Export FEN") << "File" << "Export FEN" << "Ctrl+E" << false;
  QTest::newRow("Print") << "File" << "Print" << "Ctrl+P" << false;
  QTest::newRow("Exit") << "File" << "Exit" << "Ctrl+X" << true;
  QTest::newRow("Search minimum moves") << "Option" << "Search minimum moves" << "" << true;
  QTest::newRow("Stop on first solution") << "Option" << "Stop on first solution" << "" << true;
  QTest::newRow("Informations") << "Info" << "Informations" << "" << true;
  QTest::newRow("About") << "Info" << "About Velkaro ..." << "" << true;
}

void CommandsTest::menuEntries() {
  QFETCH(QString, menu);
  QFETCH(QString, entry);
  QFETCH(QString, shortcut);
  QFETCH(bool, enabled);
  WindowFixture fixture;
  QMenu* found = menuNamed(*fixture.window, menu);
  QVERIFY(found);
  QAction* action = entryNamed(found, entry);
  QVERIFY(action);
  QCOMPARE(action->shortcut().toString(), shortcut);
  QCOMPARE(action->isEnabled(), enabled);
}

void CommandsTest::submenus() {
  WindowFixture fixture;
  QMenu* option = menuNamed(*fixture.window, "Option");
  QMenu* languages = entryNamed(option, "Notation's language")->menu();
  QCOMPARE(languages->actions().size(), 17);
  QCOMPARE(languages->actions().first()->text(), QString("Czech"));
  QCOMPARE(languages->actions().at(3), fixture.window->commandAction(116));
  QCOMPARE(languages->actions().last()->text(), QString("Swedish"));
  QStringList intervals;
  for (QAction* action : entryNamed(option, "Refresh interval (moves)")->menu()->actions()) intervals << action->text();
  QCOMPARE(intervals, (QStringList{"      100 000", "      500 000", "  1 000 000", "  5 000 000", "10 000 000"}));
}

void CommandsTest::toolButtons_data() {
  QTest::addColumn<int>("command");
  QTest::addColumn<QString>("toolTip");
  QTest::addColumn<bool>("enabled");
  const std::pair<int, const char*> tips[] = {
      {ToolOpen, "Open"},
      {ToolSave, "Save"},
      {ToolPrint, "Print"},
      {ToolImportFen, "Import FEN position"},
      {ToolExportFen, "Export FEN position"},
      {ToolStopOnFirstSolution, "Stop on first solution"},
      {ToolSearchMinimumMoves, "Search minimum moves"},
      {FlipPosition, "Flip position"},
      {VerticalMirror, "Vertical Mirror"},
      {HorizontalMirror, "Horizontal Mirror"},
      {RotateLeft, "Rotate Left"},
      {RotateRight, "Rotate Right"},
      {MoveUp, "Move Up"},
      {MoveDown, "Move Down"},
      {MoveLeft, "Move Left"},
      {MoveRight, "Move Right"},
  };
  for (const auto& [command, tip] : tips) {
    const bool enabled = command != ToolOpen && command != ToolSave && command != ToolPrint && command != ToolExportFen;
    QTest::newRow(tip) << command << QString(tip) << enabled;
  }
}

void CommandsTest::toolButtons() {
  QFETCH(int, command);
  QFETCH(QString, toolTip);
  QFETCH(bool, enabled);
  WindowFixture fixture;
  QToolButton* button = fixture.toolButton(command);
  QVERIFY(button);
  QCOMPARE(button->toolTip(), toolTip);
  QCOMPARE(button->isEnabled(), enabled);
  QVERIFY(!button->icon().isNull());
}

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
  auto option = [&] { return menuEntry == StopOnFirstSolution ? window.stopOnFirstSolution() : window.searchMinimumMoves(); };
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
