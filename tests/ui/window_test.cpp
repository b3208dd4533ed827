// The window as a composer uses it, through its real menus, keys and dialogs:
// problem files, FEN export and the clipboard, dropped files, closing with
// changes, the splitter, the keyboard, undo and redo, and collections.

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QSpinBox>
#include <QSplitter>
#include <QStatusBar>
#include <QtTest>

#include "formats/problem_file.h"
#include "ui/commands.h"
#include "ui/export_fen_dialog.h"
#include "ui/piece_palette.h"
#include "ui/progress_panel.h"
#include "ui/result_pane.h"
#include "ui/select_move_dialog.h"
#include "ui/solver_panel.h"
#include "ui_test_support.h"

namespace velkaro::ui::testing {
namespace {

const char* const kKish = "2n2K2/1Q3Pr1/3pk3/5bp1/4p1q1/2B1nNNB/8/8 w - -";
const char* const kShmatov = "8/7p/8/4p2K/5kPP/1Q4N1/8/8 w - -";
const char* const kHelpmate = "4R3/8/Q7/1B1p4/2bpR3/P2kr3/6K1/6b1 b - -";
const char* const kCastles = "r3k2r/8/8/8/3pP3/8/8/R3K2R b KQkq e3";

// The shown top-level window of type `Window`, once there is one.
template <typename Window>
Window* shown() {
  Window* found = nullptr;
  (void)QTest::qWaitFor([&] {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (auto* candidate = qobject_cast<Window*>(widget); candidate && candidate->isVisible()) found = candidate;
    }
    return found != nullptr;
  });
  return found;
}

// The file dialog's name field, with the keyboard's focus as a click into it
// gives it.
QLineEdit* nameField(QFileDialog* dialog) {
  auto* field = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  QApplication::setActiveWindow(dialog->window());
  field->setFocus();
  return field;
}

// Types `name` over the file dialog's name field and presses its Open or
// Save button, which closes the completion list if it shows.
bool chooseFile(QFileDialog* dialog, const QString& name) {
  if (!dialog) return false;
  QLineEdit* field = nameField(dialog);
  QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(field, name);
  if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
  auto* buttons = dialog->findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"));
  QPushButton* accept = buttons->button(dialog->acceptMode() == QFileDialog::AcceptSave ? QDialogButtonBox::Save
                                                                                       : QDialogButtonBox::Open);
  if (!QTest::qWaitFor([&] { return accept->isEnabled(); })) return false;
  accept->click();
  return !dialog->isVisible();
}

QByteArray fileBytes(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) qFatal("cannot write %s", qPrintable(path));
}

// Clicks `menu` on the menu bar, then its entry `entry`.
void choose(MainWindow& window, const QString& menu, const QString& entry) {
  QMenuBar* bar = window.menuBar();
  for (QAction* title : bar->actions()) {
    if (title->text().remove('&') != menu) continue;
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(title).center());
    QMenu* popup = title->menu();
    if (!QTest::qWaitFor([&] { return popup->isVisible(); })) qFatal("the menu %s did not open", qPrintable(menu));
    for (QAction* item : popup->actions()) {
      if (item->text() == entry) QTest::mouseClick(popup, Qt::LeftButton, {}, popup->actionGeometry(item).center());
    }
  }
}

struct Window : WindowFixture {
  MainWindow& main = *window;

  QString path(const QString& name) const { return folder.filePath(name); }
  QString statusShown() const { return main.statusBar()->findChild<QLabel*>()->text(); }
  // A key pressed where the focus of the window stands.
  void key(int key, Qt::KeyboardModifiers modifiers = {}) {
    QApplication::setActiveWindow(window.get());
    QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : window.get(),
                    static_cast<Qt::Key>(key), modifiers);
  }
  // Puts `text` on the clipboard and presses Ctrl+V on the board.
  void paste(const QString& text) {
    QApplication::clipboard()->setText(text);
    main.boardView()->setFocus();
    key(Qt::Key_V, Qt::ControlModifier);
  }
  void setProblem(const char* fen, const char* stipulation) {
    paste(QStringLiteral("[Ask \"%1\"]\n%2").arg(stipulation, fen));
  }
  void solveFully() {
    if (main.document().options().stopOnFirstSolution) main.commandAction(StopOnFirstSolution)->trigger();
    press(main.progressPanel()->startButton());
  }
};

}  // namespace

class WindowTest : public QObject {
  Q_OBJECT

 private slots:
  void saveAsThenOpenGivesTheProblemBack();
  void exportOffersAppendingOnlyForAnExistingFile();
  void exportAppendsRecordByRecord_data();
  void exportAppendsRecordByRecord();
  void pasteFenTakesPositionAndStipulation_data();
  void pasteFenTakesPositionAndStipulation();
  void copyFenThenPasteFenGivesTheSameProblem();
  void droppedProblemFileOpens();
  void closingWithChangesAsksToSave_data();
  void closingWithChangesAsksToSave();
  void splitterDragSurvivesARestart();
  void editingTheBoardClearsTheSolution_data();
  void editingTheBoardClearsTheSolution();
  void countFieldRefusesZero();
  void keysReachMenuAndTree();
  void keyboardPlacesMen_data();
  void keyboardPlacesMen();
  void undoAndRedoCrossTransformationAndClear();
  void copySolutionAndSelectedLines();
  void nextAndPreviousWalkACollection();
};

// Everything a problem file keeps comes back in a second window that opens
// it: set-up, stipulation, options, first move, the tree from the companion
// text, and the title.
void WindowTest::saveAsThenOpenGivesTheProblemBack() {
  Window first;
  first.setProblem(kKish, "#2");
  first.solveFully();
  first.main.commandAction(SearchMinimumMoves)->trigger();
  click(first.main.solverPanel()->allSecondMovesBox());
  QTest::mouseClick(first.main.solverPanel()->selectMoveButton(), Qt::LeftButton);
  auto* select = first.main.findChild<SelectMoveDialog*>();
  select->moveList()->setCurrentRow(3);
  select->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
  choose(first.main, "File", "Save as");
  QVERIFY(chooseFile(shown<QFileDialog>(), "kish"));
  QCOMPARE(first.main.windowTitle(), QString("Velkaro - kish.kvz"));
  QVERIFY(QFileInfo::exists(first.path("kish.red")));
  QVERIFY(!first.main.document().modified());

  MainWindow second(first.folder.path());
  second.show();
  choose(second, "File", "Open");
  QVERIFY(chooseFile(shown<QFileDialog>(), "kish.kvz"));
  QCOMPARE(second.windowTitle(), QString("Velkaro - kish.kvz"));
  QCOMPARE(problemText(second.document()), problemText(first.main.document()));
  QVERIFY(second.document().options() == first.main.document().options());
  QCOMPARE(second.solverPanel()->firstMoveField()->text(), first.main.solverPanel()->firstMoveField()->text());
  QVERIFY(second.solverPanel()->allSecondMovesBox()->isChecked());
  QVERIFY(second.commandAction(SearchMinimumMoves)->isChecked());
  QVERIFY(!second.commandAction(StopOnFirstSolution)->isChecked());
  QCOMPARE(second.resultModel().lines(), first.main.resultModel().lines());
  QVERIFY(second.resultModel().lines().size() > 5);
  QVERIFY(!second.document().modified());
}

// The choice follows every change of the typed name; an existing file's name
// checks "Append to file" again, typed with or without its extension.
void WindowTest::exportOffersAppendingOnlyForAnExistingFile() {
  Window fixture;
  writeFile(fixture.path("shelf.fen"), "[Ask \"#2\"]\n8/8/8/8/8/8/8/K6k w - -");
  QVERIFY(QDir(fixture.folder.path()).mkdir("old"));
  fixture.main.commandAction(ExportFen)->trigger();
  auto* dialog = shown<ExportFenDialog>();
  QVERIFY(dialog);
  QLineEdit* name = nameField(dialog->fileDialog());
  const struct {
    const char* typed;
    bool offered;
  } steps[] = {{"shel", false}, {"f", true}, {".fen", true}, {"x", false}};
  for (const auto& step : steps) {
    QTest::keyClicks(name, step.typed);
    QCOMPARE(dialog->appendButton()->isEnabled(), step.offered);
    QCOMPARE(dialog->replaceButton()->isEnabled(), step.offered);
    if (step.offered) {
      QVERIFY(dialog->appendButton()->isChecked());
      dialog->replaceButton()->click();
      QVERIFY(dialog->replaceButton()->isChecked());
    }
  }
  QTest::keyClick(name, Qt::Key_Backspace);
  QVERIFY(dialog->appendButton()->isEnabled() && dialog->appendButton()->isChecked());
  if (QWidget* popup = QApplication::activePopupWidget()) popup->close();

  // A double click into a folder without that file takes the offer back.
  QAbstractItemView* files = nullptr;
  for (auto* view : dialog->fileDialog()->findChildren<QAbstractItemView*>()) {
    if (view->isVisible() && (view->objectName() == "listView" || view->objectName() == "treeView")) files = view;
  }
  QModelIndex old;
  QVERIFY(QTest::qWaitFor([&] {
    const QModelIndexList found = files->model()->match(files->model()->index(0, 0, files->rootIndex()),
                                                        Qt::DisplayRole, "old", 1, Qt::MatchExactly);
    old = found.value(0);
    return old.isValid();
  }));
  QTest::mouseClick(files->viewport(), Qt::LeftButton, {}, files->visualRect(old).center());  // Qt 6.4 needs the first click
  QTest::mouseDClick(files->viewport(), Qt::LeftButton, {}, files->visualRect(old).center());
  QCOMPARE(QDir(dialog->fileDialog()->directory()).dirName(), QString("old"));
  QCOMPARE(name->text(), QString("shelf.fen"));
  QVERIFY(!dialog->appendButton()->isEnabled());
  dialog->reject();
}

void WindowTest::exportAppendsRecordByRecord_data() {
  QTest::addColumn<QString>("file");
  for (const char* file : {"shelf.fen", "shelf.pgn", "shelf.epd"}) QTest::newRow(file) << QString(file);
}

// Three problems exported to one file, each record appended after the last
// with the author typed into the dialog. Reading such files back is the
// import's own test.
void WindowTest::exportAppendsRecordByRecord() {
  QFETCH(QString, file);
  Window fixture;
  QByteArray before;
  for (const auto& [fen, stipulation] : {std::pair{kKish, "#2"}, std::pair{kHelpmate, "H#2"}, std::pair{kShmatov, "S#3"}}) {
    fixture.setProblem(fen, stipulation);
    choose(fixture.main, "File", "Export FEN");
    auto* dialog = shown<ExportFenDialog>();
    QVERIFY(dialog);
    QTest::keyClicks(dialog->field(formats::kAuthorLabel), "A. Composer");
    QVERIFY(chooseFile(dialog->fileDialog(), file));
    QVERIFY(!dialog->isVisible());
    const QByteArray after = fileBytes(fixture.path(file));
    const QByteArray record = after.mid(before.size());
    QVERIFY2(after.startsWith(before) && record.contains(QByteArray(fen).split(' ').first()) &&
                 record.contains("A. Composer"),
             after.constData());
    before = after;
  }
}

void WindowTest::pasteFenTakesPositionAndStipulation_data() {
  QTest::addColumn<QString>("clipboard");
  QTest::addColumn<QString>("problem");  // empty: refused, the problem stays
  QTest::newRow("FEN with its Ask tag")
      << QString("[Ask \"H#2\"]\n%1\n").arg(kHelpmate) << QString("%1 | H#2").arg(kHelpmate);
  QTest::newRow("EPD line") << "8/7p/8/4p2K/5kPP/1Q4N1/8/8 w - - c0 V. Shmatov;c6 #;dm 3;"
                            << QString("%1 | #3").arg(kShmatov);
  QTest::newRow("PGN game, CR LF") << QString("[Event \"S#\"]\r\n[PlyCount \"4\"]\r\n[FEN \"%1\"]\r\n\r\n*\r\n").arg(kKish)
                                   << QString("%1 | S#4").arg(kKish);
  QTest::newRow("PGN game, castling kept")
      << "[Event \"#\"]\n[PlyCount \"2\"]\n[FEN \"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1\"]\n"
      << "r3k2r/8/8/8/8/8/8/R3K2R w QKqk - | #2";
  QTest::newRow("plain text") << "Mate in two, white to play." << QString();
  QTest::newRow("empty clipboard") << "" << QString();
}

void WindowTest::pasteFenTakesPositionAndStipulation() {
  QFETCH(QString, clipboard);
  QFETCH(QString, problem);
  Window fixture;
  fixture.setProblem(kCastles, "#5");
  const QString before = problemText(fixture.main.document());
  fixture.paste(clipboard);
  auto* box = problem.isEmpty() ? shown<QMessageBox>() : nullptr;
  if (box) box->button(QMessageBox::Ok)->click();
  QCOMPARE(problemText(fixture.main.document()), problem.isEmpty() ? before : problem);
  QCOMPARE(box == nullptr, !problem.isEmpty());
}

// Black to move, castling rights and an en-passant last move, S#5.
void WindowTest::copyFenThenPasteFenGivesTheSameProblem() {
  Window fixture;
  fixture.setProblem(kCastles, "S#5");
  QCOMPARE(fixture.main.document().setup().lastMoveSquare, sq("e4"));
  const QString problem = problemText(fixture.main.document());
  fixture.main.boardView()->setFocus();
  fixture.key(Qt::Key_C, Qt::ControlModifier);
  fixture.main.commandAction(VerticalMirror)->trigger();
  click(fixture.main.solverPanel()->kindButton(0));
  choose(fixture.main, "Edit", "Paste FEN");
  QCOMPARE(problemText(fixture.main.document()), problem);
  QCOMPARE(fixture.main.document().setup().lastMoveSquare, sq("e4"));
}

// A problem file dropped on the window opens; a file of another kind is
// refused as it comes in.
void WindowTest::droppedProblemFileOpens() {
  Window fixture;
  formats::ProblemData problem;
  problem.setup = formats::setupFromImport([] {
    formats::FenImport import;
    import.selectLine({kHelpmate}, 0, "FEN");
    return import.result();
  }());
  problem.stipulation = {true, false, 2};
  problem.solutionText = "  Solution No 1\n1. Bc4 - b5 ,  Re4 - e3 \n";
  QVERIFY(formats::SaveProblem(fixture.path("dropped.kvz").toStdString(), problem));
  writeFile(fixture.path("notes.txt"), "a note");
  for (const QString name : {"notes.txt", "dropped.kvz"}) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(fixture.path(name))});
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(fixture.window.get(), &enter);
    QCOMPARE(enter.isAccepted(), name.endsWith(".kvz"));
    if (!enter.isAccepted()) continue;
    QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(fixture.window.get(), &drop);
  }
  QCOMPARE(problemText(fixture.main.document()), QString("%1 | H#2").arg(kHelpmate));
  QCOMPARE(fixture.tree(), (QStringList{"  Solution No 1", "1. Bc4 - b5 ,  Re4 - e3 "}));
  QCOMPARE(fixture.main.windowTitle(), QString("Velkaro - dropped.kvz"));
}

void WindowTest::closingWithChangesAsksToSave_data() {
  QTest::addColumn<bool>("titled");  // the problem was saved under a name before the change
  QTest::addColumn<int>("answer");
  QTest::addColumn<bool>("closes");
  QTest::addColumn<bool>("saved");
  QTest::newRow("Cancel") << true << int(QMessageBox::Cancel) << false << false;
  QTest::newRow("Discard") << true << int(QMessageBox::Discard) << true << false;
  QTest::newRow("Save") << true << int(QMessageBox::Save) << true << true;
  QTest::newRow("Save, untitled") << false << int(QMessageBox::Save) << true << true;
}

// The question is modal: it is answered from the event loop it runs. An
// untitled problem is saved through "Save problem as" first.
void WindowTest::closingWithChangesAsksToSave() {
  QFETCH(bool, titled);
  QFETCH(int, answer);
  QFETCH(bool, closes);
  QFETCH(bool, saved);
  Window fixture;
  fixture.setProblem(kKish, "#2");
  if (titled) {
    fixture.main.commandAction(SaveAs)->trigger();
    QVERIFY(chooseFile(shown<QFileDialog>(), "kish.kvz"));
  }
  fixture.main.boardView()->setFocus();
  fixture.key(Qt::Key_Delete);  // e4 empties: the black pawn goes
  QVERIFY(fixture.main.document().modified());
  QStringList asked;
  QMetaObject::invokeMethod(
      this,
      [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box) return;
        for (QAbstractButton* button : box->buttons()) asked << button->text().remove('&');
        box->button(static_cast<QMessageBox::StandardButton>(answer))->click();
      },
      Qt::QueuedConnection);
  fixture.main.close();
  asked.sort();
  QCOMPARE(asked, (QStringList{"Cancel", "Discard", "Save"}));
  if (!titled) QVERIFY(chooseFile(shown<QFileDialog>(), "kish.kvz"));
  QCOMPARE(!fixture.main.isVisible(), closes);
  formats::ProblemData onDisk;
  QVERIFY(formats::OpenProblem(fixture.path("kish.kvz").toStdString(), onDisk) || !saved);
  QCOMPARE(onDisk.setup.board[static_cast<std::size_t>(sq("e4"))] == 0, saved);
}

// The result tree is dragged taller; a second window on the same problem
// folder starts with it as tall.
void WindowTest::splitterDragSurvivesARestart() {
  Window fixture;
  QSplitter* splitter = fixture.main.resultSplitter();
  const int treeBefore = fixture.main.resultPane()->height();
  QWidget* handle = splitter->handle(1);
  const QPoint grip = handle->rect().center();
  QTest::mousePress(handle, Qt::LeftButton, {}, grip);
  QTest::mouseMove(handle, grip - QPoint(0, 120));
  QTest::mouseRelease(handle, Qt::LeftButton, {}, grip - QPoint(0, 120));
  const QList<int> sizes = splitter->sizes();
  QVERIFY2(fixture.main.resultPane()->height() >= treeBefore + 100,
           qPrintable(QString("%1 -> %2").arg(treeBefore).arg(fixture.main.resultPane()->height())));
  QVERIFY(fixture.main.close());

  MainWindow second(fixture.folder.path());
  second.show();
  QVERIFY(QTest::qWaitForWindowExposed(&second));
  QCOMPARE(second.resultSplitter()->sizes(), sizes);
}

void WindowTest::editingTheBoardClearsTheSolution_data() {
  QTest::addColumn<int>("command");  // a tool-bar button, or 0 for a click on a1
  QTest::addColumn<QString>("board");
  QTest::newRow("a man placed by a click") << 0 << "2n2K2/1Q3Pr1/3pk3/5bp1/4p1q1/2B1nNNB/8/K7";
  QTest::newRow("Flip position") << int(FlipPosition) << "8/8/2b1Nnnb/4P1Q1/5BP1/3PK3/1q3pR1/2N2k2";
}

// A solution shown (tree, text, progress panel) belongs to the board it was
// found on: a man placed or a transformation clears all of it.
void WindowTest::editingTheBoardClearsTheSolution() {
  QFETCH(int, command);
  QFETCH(QString, board);
  Window fixture;
  fixture.setProblem(kKish, "#2");
  fixture.solveFully();
  ProgressPanel& progress = *fixture.main.progressPanel();
  QVERIFY(!fixture.tree().isEmpty() && progress.bar() == ProgressPanel::kBarFull);
  if (command) {
    QTest::mouseClick(fixture.toolButton(command), Qt::LeftButton);
  } else {
    QTest::mouseClick(fixture.main.boardView(), Qt::LeftButton, {}, fixture.centreOf(sq("a1")));
  }
  QCOMPARE(placement(fixture.main.document().board()), board);
  QCOMPARE(fixture.tree(), QStringList());
  QVERIFY(fixture.main.document().solutionText().empty() && fixture.main.document().solutionRecords().empty());
  QCOMPARE(progress.clockText() + '|' + progress.testedMovesText().trimmed() + '|' + progress.speedText().trimmed(),
           QString("00:00:00||"));
  QCOMPARE(progress.lineDisplay(0)->count() + progress.lineDisplay(1)->count() + progress.bar(), 0);
}

void WindowTest::countFieldRefusesZero() {
  Window fixture;
  fixture.setProblem(kKish, "#2");
  QSpinBox* moves = fixture.main.solverPanel()->movesField();
  moves->setFocus();
  moves->selectAll();
  QTest::keyClicks(moves, "0");
  QTest::keyClick(moves, Qt::Key_Return);
  fixture.main.boardView()->setFocus();
  QCOMPARE(moves->value(), 2);
  QCOMPARE(fixture.main.document().stipulation().moves, 2);
}

// Alt+F opens the File menu, and Tab from the board reaches Start and the
// result tree, in a window just started.
void WindowTest::keysReachMenuAndTree() {
  Window fixture;
  QVERIFY(fixture.main.progressPanel()->startButton()->isEnabled());
  fixture.main.boardView()->setFocus();
  fixture.key(Qt::Key_F, Qt::AltModifier);
  QMenu* file = fixture.main.menuBar()->actions().first()->menu();
  QVERIFY(QTest::qWaitFor([&] { return file->isVisible(); }));
  QTest::keyClick(file, Qt::Key_Escape);
  QVERIFY(QTest::qWaitFor([&] { return !file->isVisible(); }));
  QTest::keyClick(fixture.main.menuBar(), Qt::Key_Escape);

  fixture.main.activateWindow();
  fixture.main.boardView()->setFocus();
  QStringList passed;
  for (int step = 0; step < 40 && !fixture.main.resultPane()->hasFocus(); ++step) {
    fixture.key(Qt::Key_Tab);
    passed << QApplication::focusWidget()->metaObject()->className();
  }
  QVERIFY2(fixture.main.resultPane()->hasFocus(), qPrintable(passed.join(' ')));
}

void WindowTest::keyboardPlacesMen_data() {
  QTest::addColumn<int>("language");
  QTest::addColumn<int>("paletteMan");
  QTest::addColumn<QString>("keys");  // < > ^ v arrows, ~ Delete, anything else typed; the cursor starts on e4
  QTest::addColumn<QString>("board");
  QTest::newRow("English, Black men") << 4 << -core::piece::King << "<q^^r" << "8/8/3r4/8/3q4/8/8/8";
  QTest::newRow("German letters, P a pawn") << 8 << core::piece::King << "d>t>p" << "8/8/8/8/4QRP1/8/8/8";
  QTest::newRow("Dutch P is the knight") << 3 << core::piece::Pawn << "pvv>>>>>k" << "8/8/8/8/4N3/8/7K/8";
  QTest::newRow("Space places the palette's man, Delete takes it off")
      << 4 << core::piece::Knight << " >bx<~" << "8/8/8/8/5B2/8/8/8";
  QTest::newRow("the cursor stops at the edge") << 4 << core::piece::Rook << "<<<<<<<<^^^^^^^^ " << "R7/8/8/8/8/8/8/8";
}

void WindowTest::keyboardPlacesMen() {
  QFETCH(int, language);
  QFETCH(int, paletteMan);
  QFETCH(QString, keys);
  QFETCH(QString, board);
  Window fixture;
  fixture.main.commandAction(commandOfLanguage(language))->trigger();
  QTest::mouseClick(fixture.main.piecePalette()->button(paletteMan), Qt::LeftButton);
  BoardView* view = fixture.main.boardView();
  view->setFocus();
  const std::map<QChar, Qt::Key> arrows = {
      {'<', Qt::Key_Left}, {'>', Qt::Key_Right}, {'^', Qt::Key_Up}, {'v', Qt::Key_Down}, {'~', Qt::Key_Delete}};
  for (const QChar key : keys) {
    if (arrows.count(key)) {
      QTest::keyClick(view, arrows.at(key));
    } else {
      QTest::keyClicks(view, QString(key));
    }
  }
  QCOMPARE(placement(fixture.main.document().board()), board);
}

// Ctrl+Z walks back through a placed man, a rotation and Clear, Ctrl+Y
// forward again.
void WindowTest::undoAndRedoCrossTransformationAndClear() {
  Window fixture;
  fixture.setProblem(kShmatov, "#3");
  QTest::mouseClick(fixture.main.piecePalette()->button(-core::piece::Rook), Qt::LeftButton);
  QTest::mouseClick(fixture.main.boardView(), Qt::LeftButton, {}, fixture.centreOf(sq("a8")));
  QTest::mouseClick(fixture.toolButton(RotateLeft), Qt::LeftButton);
  QTest::mouseClick(fixture.main.solverPanel()->clearButton(), Qt::LeftButton);
  const QStringList boards = {"8/7p/8/4p2K/5kPP/1Q4N1/8/8", "r7/7p/8/4p2K/5kPP/1Q4N1/8/8",
                              "1p1KP3/4PN2/4k3/3p4/8/8/5Q2/r7", "8/8/8/8/8/8/8/8"};
  fixture.main.boardView()->setFocus();
  for (int step = 3; step > 0; --step) {
    QCOMPARE(placement(fixture.main.document().board()), boards[step]);
    fixture.key(Qt::Key_Z, Qt::ControlModifier);
  }
  QCOMPARE(placement(fixture.main.document().board()), boards[0]);
  QVERIFY(!fixture.main.commandAction(Undo)->isEnabled() || fixture.main.undoStack().canUndo());
  for (int step = 1; step < 4; ++step) {
    fixture.key(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(placement(fixture.main.document().board()), boards[step]);
  }
  QVERIFY(!fixture.main.commandAction(Redo)->isEnabled());
}

// Copy solution gives the solution text as it stands; Ctrl+C in the tree the
// selected lines, a variation with its tab.
void WindowTest::copySolutionAndSelectedLines() {
  Window fixture;
  fixture.setProblem(kKish, "#2");
  fixture.solveFully();
  choose(fixture.main, "Edit", "Copy solution");
  QString text;
  for (const QString& line : fixture.tree()) text += line + '\n';
  QCOMPARE(QApplication::clipboard()->text(), text);
  QCOMPARE(text.count('\n'), 9);

  ResultPane* pane = fixture.main.resultPane();
  const QModelIndex key = pane->model()->index(1, 0);
  const QModelIndex variation = pane->model()->index(2, 0, key);
  for (const auto& [index, modifiers] : {std::pair{variation, Qt::NoModifier}, std::pair{key, Qt::ControlModifier}}) {
    pane->scrollTo(index);
    QTest::mouseClick(pane->viewport(), Qt::LeftButton, modifiers, pane->visualRect(index).center());
  }
  QTest::keyClick(pane, Qt::Key_C, Qt::ControlModifier);
  QCOMPARE(QApplication::clipboard()->text(),
           QString("1. Kf8 - e8   threat:  2.  f7 - f8N#\n\t1....,  d6 - d5   2. Qb7 - d7 #\n"));
}

// A three-problem EPD file: Page Down walks on, Page Up comes back; the
// title names the record's author and source, the status bar its line and
// the last run. Recent files opens the file at that line again, also in a
// window started later.
void WindowTest::nextAndPreviousWalkACollection() {
  Window fixture;
  writeFile(fixture.path("three.epd"),
            "2n2K2/1Q3Pr1/3pk3/5bp1/4p1q1/2B1nNNB/8/8 w - - c0 A. Kish;c1 Christian Science Monitor;c2 1935;c6 #;dm "
            "2;\nnot a position\n8/7p/8/4p2K/5kPP/1Q4N1/8/8 w - - c0 V. Shmatov;c1 StrateGems;c6 #;dm 3;\n"
            "4R3/8/Q7/1B1p4/2bpR3/P2kr3/6K1/6b1 b - - c6 H#;dm 2;\n");
  writeFile(fixture.path("other.fen"), QByteArray("[Ask \"#2\"]\n") + kKish);
  QVERIFY(fixture.main.openFirstPosition(fixture.path("three.epd")));
  const struct {
    int key;
    const char* fen;
    const char* title;
    const char* line;
  } steps[] = {
      {0, kKish, "Velkaro - A. Kish, Christian Science Monitor, 1935", "three.epd:1"},
      {Qt::Key_PageDown, kShmatov, "Velkaro - V. Shmatov, StrateGems", "three.epd:3"},
      {Qt::Key_PageDown, kHelpmate, "Velkaro", "three.epd:4"},
      {Qt::Key_PageDown, kHelpmate, "Velkaro", "three.epd:4"},
      {Qt::Key_PageUp, kShmatov, "Velkaro - V. Shmatov, StrateGems", "three.epd:3"},
  };
  fixture.main.boardView()->setFocus();
  for (const auto& step : steps) {
    if (step.key) fixture.key(step.key);
    QCOMPARE(problemText(fixture.main.document()).section(" | ", 0, 0), QString(step.fen));
    QCOMPARE(fixture.main.windowTitle(), QString(step.title));
    QCOMPARE(fixture.statusShown(), QString(step.line));
  }
  fixture.solveFully();
  QVERIFY2(QRegularExpression("^three.epd:3    Last run finished: \\d\\d:\\d\\d:\\d\\d, \\d[\\d ]* tested moves$")
               .match(fixture.statusShown())
               .hasMatch(),
           qPrintable(fixture.statusShown()));

  const auto openRecent = [](MainWindow& window, const QString& file) {
    QMenu* recent = nullptr;
    for (QAction* item : window.menuBar()->actions().first()->menu()->actions()) {
      if (item->text() == "Recent files") recent = item->menu();
    }
    for (QAction* entry : recent->actions()) {
      if (entry->text().contains(file)) entry->trigger();
    }
  };
  QVERIFY(fixture.main.openFirstPosition(fixture.path("other.fen")));
  openRecent(fixture.main, "three.epd");
  QCOMPARE(fixture.main.windowTitle(), QString("Velkaro - V. Shmatov, StrateGems"));
  QVERIFY(fixture.main.openFirstPosition(fixture.path("other.fen")));
  QVERIFY(fixture.main.close());
  MainWindow second(fixture.folder.path());
  openRecent(second, "three.epd");
  QCOMPARE(problemText(second.document()), QString("%1 | #3").arg(kShmatov));
  QCOMPARE(second.statusText(), QString("three.epd:3"));
}

}  // namespace velkaro::ui::testing

QTEST_MAIN(velkaro::ui::testing::WindowTest)
#include "window_test.moc"
