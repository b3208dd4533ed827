// FEN, EPD and PGN files imported through the "Import FEN position" dialog,
// opened with Ctrl+I and driven through its lists: the preview, the
// stipulation label and what OK takes over into the main window.

#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QtTest>

#include "ui/import_fen_dialog.h"
#include "ui_test_support.h"

namespace velkaro::ui::testing {
namespace {

const char* const kFenFile =
    "A. Composer, 1990\n"
    "[Ask \"#2\"]\n"
    "8/8/8/8/8/8/8/K6k w - -\n"
    "\n"
    "[Ask \"S#4\"]\n"
    "r3k2r/8/8/8/8/8/8/R3K2R b QKqk -\n"
    "no position on this line\n";
const char* const kEpdFile = "8/8/8/8/8/8/8/K6k b - - c6 H#;dm 3;\n";
const char* const kPgnFile =
    "[Event \"S#\"]\n"
    "[Site \"?\"]\n"
    "[PlyCount \"12\"]\n"
    "[FEN \"1k6/8/8/8/8/8/8/1K6 b KQkq -\"]\n";

void writeFile(const QString& path, const char* text) {
  QFile file(path);
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write(text);
}

// Clicks (or double-clicks) the list row that shows `text`.
void clickRow(QListWidget* list, const QString& text, bool twice = false) {
  const QList<QListWidgetItem*> found = list->findItems(text, Qt::MatchExactly);
  QVERIFY2(!found.isEmpty(), qPrintable(text + " is not listed"));
  const QPoint centre = list->visualItemRect(found.first()).center();
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, centre);
  if (twice) QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, centre);
}

// The accelerator reaches the window that has the keyboard.
void pressCtrlI(MainWindow& window) {
  window.activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&window));
  QTest::keyClick(&window, Qt::Key_I, Qt::ControlModifier);
}

}  // namespace

class ImportDialogTest : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase();
  void importsTheChosenLine_data();
  void importsTheChosenLine();
  void anInvalidLineCannotBeTakenOver();

 private:
  ImportFenDialog* openDialog(WindowFixture& fixture);

  QTemporaryDir files_;
};

void ImportDialogTest::initTestCase() {
  QVERIFY(QDir(files_.path()).mkdir("problems"));
  writeFile(files_.filePath("problems/set.fen"), kFenFile);
  writeFile(files_.filePath("problems/set.epd"), kEpdFile);
  writeFile(files_.filePath("problems/GAMES.PGN"), kPgnFile);
  writeFile(files_.filePath("problems/notes.txt"), "8/8/8/8/8/8/8/K6k w - -\n");
  QVERIFY(QDir::setCurrent(files_.path()));
}

// Opened with Ctrl+I in the folder the program was started in; the test
// then goes down into "problems".
ImportFenDialog* ImportDialogTest::openDialog(WindowFixture& fixture) {
  pressCtrlI(*fixture.window);
  auto* dialog = fixture.window->findChild<ImportFenDialog*>();
  if (!dialog || !dialog->isVisible()) return nullptr;
  if (dialog->windowTitle() != "Import FEN position") return nullptr;
  clickRow(dialog->folderList(), "[problems]", true);
  return dialog;
}

void ImportDialogTest::importsTheChosenLine_data() {
  QTest::addColumn<QString>("file");
  QTest::addColumn<int>("row");
  QTest::addColumn<QString>("label");
  QTest::addColumn<QString>("problem");
  QTest::newRow("FEN line under its Ask tag") << "set.fen" << 2 << "#2" << "8/8/8/8/8/8/8/K6k w - - | #2";
  QTest::newRow("FEN line with castling and Black to move")
      << "set.fen" << 5 << "S#4" << "r3k2r/8/8/8/8/8/8/R3K2R b QKqk - | S#4";
  QTest::newRow("EPD opcodes") << "set.epd" << 0 << "H#3" << "8/8/8/8/8/8/8/K6k b - - | H#3";
  QTest::newRow("PGN tags; no castling from a tag line")
      << "GAMES.PGN" << 3 << "S#12" << "1k6/8/8/8/8/8/8/1K6 b - - | S#12";
}

void ImportDialogTest::importsTheChosenLine() {
  QFETCH(QString, file);
  QFETCH(int, row);
  QFETCH(QString, label);
  QFETCH(QString, problem);
  WindowFixture fixture;
  ImportFenDialog* dialog = openDialog(fixture);
  QVERIFY(dialog);
  QCOMPARE(dialog->fileList()->count(), 3);  // notes.txt is not offered

  clickRow(dialog->fileList(), file);
  QListWidget* positions = dialog->positionList();
  QCOMPARE(positions->count(), QString(file == "set.fen" ? kFenFile : file == "set.epd" ? kEpdFile : kPgnFile).count('\n'));
  clickRow(positions, positions->item(row)->text());
  QCOMPARE(placement(dialog->preview()->board()), problem.section(' ', 0, 0));
  QCOMPARE(dialog->stipulationLabel()->text(), label);
  QTest::mouseClick(dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
  QCOMPARE(problemText(fixture.window->document()), problem);

  // The next import starts where this one was found.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QVERIFY(!fixture.window->findChild<ImportFenDialog*>());
  pressCtrlI(*fixture.window);
  QVERIFY(fixture.window->findChild<ImportFenDialog*>());
  QCOMPARE(fixture.window->findChild<ImportFenDialog*>()->fileList()->count(), 3);
}

void ImportDialogTest::anInvalidLineCannotBeTakenOver() {
  WindowFixture fixture;
  const core::BoardSetup before = fixture.window->document().setup();
  ImportFenDialog* dialog = openDialog(fixture);
  QVERIFY(dialog);
  clickRow(dialog->fileList(), "set.fen");
  auto* ok = dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);

  clickRow(dialog->positionList(), "8/8/8/8/8/8/8/K6k w - -");
  QVERIFY(ok->isEnabled());
  clickRow(dialog->positionList(), "no position on this line");
  QCOMPARE(placement(dialog->preview()->board()), QString("8/8/8/8/8/8/8/8"));
  QCOMPARE(dialog->stipulationLabel()->text(), QString());
  QVERIFY(!ok->isEnabled());

  clickRow(dialog->fileList(), "set.epd");
  QCOMPARE(dialog->positionList()->count(), 1);
  QVERIFY(!ok->isEnabled());
  dialog->reject();
  QCOMPARE(placement(fixture.window->document().setup().board), placement(before.board));
}

}  // namespace velkaro::ui::testing

QTEST_MAIN(velkaro::ui::testing::ImportDialogTest)
#include "import_dialog_test.moc"
