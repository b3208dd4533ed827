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

using core::piece::Bishop;
using core::piece::King;
using core::piece::Knight;
using core::piece::Pawn;
using core::piece::Queen;
using core::piece::Rook;

QByteArray bytes(std::initializer_list<int> values) {
  QByteArray result;
  for (int value : values) result.append(static_cast<char>(value));
  return result;
}

// The letters on the White and the Black buttons, which must agree, and the
// pawns', which have none.
QString paletteLetters(const MainWindow& window) {
  QString white;
  QString black;
  for (int code : {King, Queen, Rook, Bishop, Knight}) {
    white += window.piecePalette()->button(code)->text();
    black += window.piecePalette()->button(-code)->text();
  }
  const bool pawnsBare = window.piecePalette()->button(Pawn)->text().isEmpty() &&
                         window.piecePalette()->button(-Pawn)->text().isEmpty();
  return white == black && pawnsBare ? white : white + "/" + black;
}

// The checked entries of a range of menu commands.
QList<int> checkedCommands(const MainWindow& window, int first, int last) {
  QList<int> checked;
  for (int id = first; id <= last; ++id) {
    if (window.commandAction(id)->isChecked()) checked << id;
  }
  return checked;
}

}  // namespace

class SettingsWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void startUpShowsTheFile_data();
  void startUpShowsTheFile();
  void choosingRewritesTheFile_data();
  void choosingRewritesTheFile();
  void anUnwritableFileKeepsTheOldLetters();
};

void SettingsWindowTest::startUpShowsTheFile_data() {
  QTest::addColumn<QByteArray>("file");
  QTest::addColumn<QString>("letters");
  QTest::addColumn<QList<int>>("languageEntry");
  QTest::addColumn<QList<int>>("intervalEntry");
  QTest::addColumn<int>("intervalBox");
  QTest::addColumn<int>("refreshInterval");
  QTest::newRow("Hungarian, 100 000") << bytes({255, 9, 1}) << "KVTLH" << QList<int>{121} << QList<int>{130} << 0
                                      << 100'000;
  QTest::newRow("Polish, 10 000 000") << bytes({255, 13, 5}) << "KHWGS" << QList<int>{125} << QList<int>{134} << 4
                                      << 10'000'000;
}

void SettingsWindowTest::startUpShowsTheFile() {
  QFETCH(QByteArray, file);
  QFETCH(QString, letters);
  QFETCH(QList<int>, languageEntry);
  QFETCH(QList<int>, intervalEntry);
  QFETCH(int, intervalBox);
  QFETCH(int, refreshInterval);
  WindowFixture fixture(file);
  const MainWindow& window = *fixture.window;
  QCOMPARE(paletteLetters(window), letters);
  QCOMPARE(checkedCommands(window, FirstLanguage, LastLanguage), languageEntry);
  QCOMPARE(window.languageBox()->currentIndex(), languageOfCommand(languageEntry.first()) - 1);
  QCOMPARE(checkedCommands(window, FirstInterval, LastInterval), intervalEntry);
  QCOMPARE(window.intervalBox()->currentIndex(), intervalBox);
  QCOMPARE(window.refreshInterval(), refreshInterval);
  QCOMPARE(fixture.settingsFile(), file);
}

// Each row starts from a first start (no file), makes one choice through the
// menu or a combo box, and reads the file and the palette afterwards.
void SettingsWindowTest::choosingRewritesTheFile_data() {
  QTest::addColumn<int>("menuEntry");  // 0: a key press in the combo box instead
  QTest::addColumn<int>("combo");
  QTest::addColumn<int>("key");
  QTest::addColumn<QByteArray>("file");
  QTest::addColumn<QString>("letters");
  QTest::addColumn<int>("refreshInterval");
  QTest::newRow("menu French") << 119 << 0 << 0 << bytes({255, 7, 3}) << "RDTFC" << 1'000'000;
  QTest::newRow("combo English to Estonian") << 0 << int(LanguageCombo) << int(Qt::Key_Down) << bytes({255, 5, 3})
                                             << "KLVOR" << 1'000'000;
  QTest::newRow("combo 1 000 000 to 500 000") << 0 << int(IntervalCombo) << int(Qt::Key_Up) << bytes({255, 4, 2})
                                              << "KQRBN" << 500'000;
}

void SettingsWindowTest::choosingRewritesTheFile() {
  QFETCH(int, menuEntry);
  QFETCH(int, combo);
  QFETCH(int, key);
  QFETCH(QByteArray, file);
  QFETCH(QString, letters);
  QFETCH(int, refreshInterval);
  WindowFixture fixture;
  MainWindow& window = *fixture.window;
  QCOMPARE(fixture.settingsFile(), bytes({255, 4, 3, 0}));

  if (menuEntry) {
    window.commandAction(menuEntry)->trigger();
  } else {
    QTest::keyClick(combo == LanguageCombo ? window.languageBox() : window.intervalBox(), Qt::Key(key));
  }

  QCOMPARE(fixture.settingsFile(), file);
  QCOMPARE(paletteLetters(window), letters);
  QCOMPARE(window.language(), int(file[1]));
  QCOMPARE(window.refreshInterval(), refreshInterval);
  QCOMPARE(checkedCommands(window, FirstLanguage, LastLanguage), QList<int>{commandOfLanguage(file[1])});
  QCOMPARE(checkedCommands(window, FirstInterval, LastInterval), QList<int>{FirstInterval + file[2] - 1});
  QCOMPARE(window.languageBox()->currentIndex(), file[1] - 1);
  QCOMPARE(window.intervalBox()->currentIndex(), file[2] - 1);
}

// A settings "file" that is a folder can be neither read nor written: the
// defaults hold, and a new language is checked but its letters never come.
void SettingsWindowTest::anUnwritableFileKeepsTheOldLetters() {
  QTemporaryDir folder;
  QVERIFY(QDir(folder.path()).mkdir("kvzl.cfg"));
  MainWindow window(folder.path());
  QCOMPARE(paletteLetters(window), QString("KQRBN"));
  window.commandAction(commandOfLanguage(8))->trigger();
  QCOMPARE(checkedCommands(window, FirstLanguage, LastLanguage), QList<int>{commandOfLanguage(8)});
  QCOMPARE(paletteLetters(window), QString("KQRBN"));
}

}  // namespace velkaro::ui::testing

QTEST_MAIN(velkaro::ui::testing::SettingsWindowTest)
#include "settings_window_test.moc"
