#pragma once
// What the window tests share: a main window on a problem folder of its own,
// squares by name, boards written as lists of men, and the real widgets behind
// commands and squares.

#include <QAbstractButton>
#include <QByteArray>
#include <QFile>
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
