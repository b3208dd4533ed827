// The settings file as the window uses it: what a file found at start-up
// selects in the menus, combo boxes and palette, and what choosing a language
// or a refresh interval writes back.

#include <QComboBox>
#include <QDir>
#include <QtTest>

#include "ui/commands.h"
#include "ui/piece_palette.h"
#include "ui_test_support.h"

namespace velkaro::ui::testing {
namespace {

QByteArray bytes(std::initializer_list<int> values) {
  QByteArray result;
  for (int value : values) result.append(static_cast<char>(value));
  return result;
}

// What the window shows of the settings: the palette's letters (the Black
// ones must agree and the pawns have none), then the checked language and
// interval entries each beside its combo box's choice, counted from 1, and
// the refresh interval.
QString shown(const MainWindow& window) {
  QString white, black;
  for (int code : {core::piece::King, core::piece::Queen, core::piece::Rook, core::piece::Bishop,
                   core::piece::Knight, core::piece::Pawn}) {
    white += window.piecePalette()->button(code)->text();
    black += window.piecePalette()->button(-code)->text();
  }
  QString text = white == black ? white : white + "/" + black;
  for (const auto& [first, last, combo] : {std::tuple{FirstLanguage, LastLanguage, window.languageBox()},
                                           std::tuple{FirstInterval, LastInterval, window.intervalBox()}}) {
    text += ' ';
    for (int id = first; id <= last; ++id) {
      if (window.commandAction(id)->isChecked()) text += QString::number(id - first + 1) + '/';
    }
    text += QString::number(combo->currentIndex() + 1);
  }
  return text + ' ' + QString::number(window.refreshInterval());
}

}  // namespace

class SettingsWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void fileAndWindowAgree_data();
  void fileAndWindowAgree();
  void anUnwritableFileKeepsTheOldLetters();
};

// Each row starts with the settings file `start` (none if empty), makes at
// most one choice, through the menu or a key press in a combo box, and reads
// the file and the window afterwards.
void SettingsWindowTest::fileAndWindowAgree_data() {
  QTest::addColumn<QByteArray>("start");
  QTest::addColumn<int>("menuEntry");
  QTest::addColumn<int>("combo");
  QTest::addColumn<int>("key");
  QTest::addColumn<QByteArray>("file");
  QTest::addColumn<QString>("window");
  QTest::newRow("first start") << QByteArray() << 0 << 0 << 0 << bytes({255, 4, 3, 0}) << "KQRBN 4/4 3/3 1000000";
  QTest::newRow("Hungarian, 100 000") << bytes({255, 9, 1}) << 0 << 0 << 0 << bytes({255, 9, 1})
                                      << "KVTLH 9/9 1/1 100000";
  QTest::newRow("Polish, 10 000 000") << bytes({255, 13, 5}) << 0 << 0 << 0 << bytes({255, 13, 5})
                                      << "KHWGS 13/13 5/5 10000000";
  QTest::newRow("menu French") << QByteArray() << commandOfLanguage(7) << 0 << 0 << bytes({255, 7, 3})
                               << "RDTFC 7/7 3/3 1000000";
  QTest::newRow("combo English to Estonian") << QByteArray() << 0 << int(LanguageCombo) << int(Qt::Key_Down)
                                             << bytes({255, 5, 3}) << "KLVOR 5/5 3/3 1000000";
  QTest::newRow("combo 1 000 000 to 500 000") << QByteArray() << 0 << int(IntervalCombo) << int(Qt::Key_Up)
                                              << bytes({255, 4, 2}) << "KQRBN 4/4 2/2 500000";
}

void SettingsWindowTest::fileAndWindowAgree() {
  QFETCH(QByteArray, start);
  QFETCH(int, menuEntry);
  QFETCH(int, combo);
  QFETCH(int, key);
  QFETCH(QByteArray, file);
  QFETCH(QString, window);
  WindowFixture fixture(start.isEmpty() ? std::nullopt : std::optional(start));
  MainWindow& main = *fixture.window;
  if (menuEntry) main.commandAction(menuEntry)->trigger();
  if (combo) QTest::keyClick(combo == LanguageCombo ? main.languageBox() : main.intervalBox(), Qt::Key(key));
  QCOMPARE(fixture.settingsFile(), file);
  QCOMPARE(shown(main), window);
  QCOMPARE(main.language(), int(file[1]));
}

// A settings "file" that is a folder can be neither read nor written: the
// defaults hold, and a new language is checked but its letters never come.
void SettingsWindowTest::anUnwritableFileKeepsTheOldLetters() {
  QTemporaryDir folder;
  QVERIFY(QDir(folder.path()).mkdir("kvzl.cfg"));
  MainWindow window(folder.path());
  QCOMPARE(shown(window), QString("KQRBN 4/4 3/3 1000000"));
  window.commandAction(commandOfLanguage(8))->trigger();
  QCOMPARE(shown(window), QString("KQRBN 8/8 3/3 1000000"));
}

}  // namespace velkaro::ui::testing

QTEST_MAIN(velkaro::ui::testing::SettingsWindowTest)
#include "settings_window_test.moc"
