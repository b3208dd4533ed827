#pragma once
// What the window tests share: a main window on a problem folder of its own,
// squares by name, boards written as lists of men, and cases read from files.

#include <QAbstractButton>
#include <QByteArray>
#include <QCheckBox>
#include <QFile>
#include <QMap>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/position.h"
#include "formats/fen.h"
#include "ui/board_view.h"
#include "ui/main_window.h"

Q_DECLARE_METATYPE(velkaro::ui::Board)

namespace velkaro::ui::testing {

// "e4" -> its square number.
inline int sq(const char* name) { return core::squareAt(name[0] - 'a', name[1] - '0'); }

using Men = std::initializer_list<std::pair<const char*, int>>;

inline Board boardOf(Men men) {
  Board board{};
  for (const auto& [square, code] : men) board[static_cast<std::size_t>(sq(square))] = code;
  return board;
}

// The board's FEN placement: boards compared as text say what differs.
inline QString placement(const Board& board) {
  core::BoardSetup setup;
  setup.board = board;
  const formats::FenText text = formats::PositionToFen(setup, {});
  const std::string_view fen = text.fen();
  return QString::fromStdString(std::string(fen.substr(0, fen.find(' '))));
}

// The problem as one line: the set-up's FEN and the stipulation.
inline QString problemText(const ProblemDocument& document) {
  const formats::FenText text = formats::PositionToFen(document.setup(), document.stipulation());
  return QString::fromStdString(std::string(text.fen()) + " | " + std::string(text.stipulation()));
}

// A case file of tests/data: "key: value" lines, then after "---" the
// expected text.
struct Case {
  QMap<QString, QString> fields;
  QString expected;
};

inline Case readCase(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) qFatal("cannot read %s", qPrintable(path));
  const QString content = QString::fromUtf8(file.readAll());
  const qsizetype rule = content.indexOf("\n---\n");
  Case page{{}, content.mid(rule + 5)};
  for (const QString& line : content.left(rule).split('\n')) {
    const qsizetype colon = line.indexOf(": ");
    if (!line.startsWith('#') && colon > 0) page.fields[line.left(colon)] = line.mid(colon + 2);
  }
  return page;
}

// Check boxes and radio buttons take clicks on their indicator and text only,
// which need not reach the middle of a wide button.
inline void click(QAbstractButton* button) {
  QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(button->fontMetrics().height() / 2 + 2, button->height() / 2));
}

template <typename Button>
Button* buttonWithText(QWidget* parent, const QString& text) {
  for (Button* button : parent->findChildren<Button*>()) {
    if (button->text() == text) return button;
  }
  return nullptr;
}

// A shown main window whose settings live in a folder that goes away with it;
// `settings` is what the settings file holds when the window starts.
struct WindowFixture {
  QTemporaryDir folder;
  std::unique_ptr<MainWindow> window;

  explicit WindowFixture(const std::optional<QByteArray>& settings = std::nullopt) {
    qRegisterMetaType<jobs::RunEnd>();
    if (settings) {
      QFile file(settingsPath());
      if (!file.open(QIODevice::WriteOnly) || file.write(*settings) != settings->size()) qFatal("no settings file");
    }
    window = std::make_unique<MainWindow>(folder.path());
    window->show();
    if (!QTest::qWaitForWindowExposed(window.get())) qFatal("the window was never shown");
  }

  QString settingsPath() const { return folder.filePath("kvzl.cfg"); }

  QByteArray settingsFile() const {
    QFile file(settingsPath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  void setBoard(const Board& board) {
    core::BoardSetup setup = window->document().setup();
    setup.board = board;
    window->document().setSetup(setup);
  }

  // Sets the problem up through a FEN file, as the program does with one
  // named on its command line.
  void openProblem(const QString& fen, const QString& stipulation) {
    QFile file(folder.filePath("problem.fen"));
    if (!file.open(QIODevice::WriteOnly)) qFatal("no problem file");
    file.write(QStringLiteral("[Ask \"%1\"]\n%2\n").arg(stipulation, fen).toUtf8());
    file.close();
    if (!window->openFirstPosition(file.fileName())) qFatal("no position in the problem file");
  }

  void chooseTab(int tab) { QTest::mouseClick(window->modeTabs(), Qt::LeftButton, {}, window->modeTabs()->tabRect(tab).center()); }

  // Clicks Start or Continue and waits until the run has ended.
  jobs::RunEnd press(QAbstractButton* button) {
    QSignalSpy ended(window.get(), &MainWindow::runEnded);
    QTest::mouseClick(button, Qt::LeftButton);
    if (!ended.wait(60'000)) qFatal("the run did not end");
    return ended.takeFirst().at(0).value<jobs::RunEnd>();
  }

  // The result tree's lines, a variation with a tab before it.
  QStringList tree() const {
    QStringList lines;
    for (const std::string& line : window->resultModel().lines()) lines << QString::fromStdString(line);
    return lines;
  }

  QPoint centreOf(int square) const { return window->boardView()->squareRect(square).center(); }

  // The tool-bar button that runs `command`.
  QToolButton* toolButton(int command) const {
    QAction* action = window->commandAction(command);
    for (QToolBar* bar : window->findChildren<QToolBar*>()) {
      if (auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(action))) return button;
    }
    return nullptr;
  }
};

}  // namespace velkaro::ui::testing
