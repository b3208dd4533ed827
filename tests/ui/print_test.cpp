// The "Print" preview opened from the window, and the page it prints: the
// page's items against the cases in tests/data/print, the page growing one
// row per solution line, the printer choice, and the page saved as a PDF and
// read back with poppler's tools.

#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QProcess>
#include <QtTest>
#include <algorithm>
#include <cmath>
#include <vector>

#include "ui/commands.h"
#include "ui/print_dialog.h"
#include "ui/progress_panel.h"
#include "ui_test_support.h"

namespace velkaro::ui::testing {
namespace {

using Item = PrintPage::Item;

// The page as a reader meets it, top to bottom: each shown item's text.
QString pageText(const PrintPage& page) {
  const std::pair<Item, const char*> items[] = {
      {PrintPage::Caption, "caption: "},   {PrintPage::Stipulation, "stipulation: "},
      {PrintPage::PieceCount, "pieces: "}, {PrintPage::Solution, "solution:\n"},
      {PrintPage::TimeLabel, "label: "},   {PrintPage::Time, "time: "},
      {PrintPage::MovesLabel, "label: "},  {PrintPage::Moves, "examined: "},
  };
  QString text;
  for (const auto& [item, name] : items) {
    if (!page.itemShown(item)) continue;
    text += name + page.itemText(item);
    if (!text.endsWith('\n')) text += '\n';
  }
  return text;
}

QByteArray runTool(const QString& program, const QStringList& arguments) {
  QProcess tool;
  tool.start(program, arguments);
  if (!tool.waitForFinished(60'000) || tool.exitCode() != 0) qFatal("%s failed", qPrintable(program));
  return tool.readAllStandardOutput();
}

// The page's face cut out of the image of the PDF page and brought to the
// preview's size: the frame, the outermost line of the face, marks where it is.
QImage faceOnPage(const QImage& image, const QRectF& frame, const QSize& faceSize) {
  const QImage gray = image.convertToFormat(QImage::Format_Grayscale8);
  QRect ink;
  for (int y = 0; y < gray.height(); ++y) {
    const uchar* row = gray.constScanLine(y);
    for (int x = 0; x < gray.width(); ++x) {
      if (row[x] < 230) ink |= QRect(x, y, 1, 1);
    }
  }
  const qreal scaleX = ink.width() / frame.width();
  const qreal scaleY = ink.height() / frame.height();
  const QRectF face(ink.left() - frame.left() * scaleX, ink.top() - frame.top() * scaleY, faceSize.width() * scaleX,
                    faceSize.height() * scaleY);
  return gray.copy(face.toRect()).scaled(faceSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// Mean difference of the grey values of two images within `area`, 0 to 255.
double meanDifference(const QImage& a, const QImage& b, const QRect& area) {
  double sum = 0;
  for (int y = area.top(); y <= area.bottom(); ++y) {
    for (int x = area.left(); x <= area.right(); ++x) sum += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y)));
  }
  return sum / (area.width() * area.height());
}

struct PrintWindow : WindowFixture {
  void open(const Case& page) {
    openProblem(page.fields["fen"], page.fields["stip"]);
    if (page.fields["solve"] != "yes") return;
    window->commandAction(StopOnFirstSolution)->setChecked(false);
    press(window->progressPanel()->startButton());
  }
  PrintDialog* pressCtrlP() {
    window->activateWindow();
    if (!QTest::qWaitForWindowActive(window.get())) qFatal("the window never became active");
    QTest::keyClick(window.get(), Qt::Key_P, Qt::ControlModifier);
    return window->findChild<PrintDialog*>();
  }
};

}  // namespace

class PrintTest : public QObject {
  Q_OBJECT

 private slots:
  void pageItems_data();
  void pageItems();
  void captionIsCopiedLive();
  void printerChoice();
  void savedPdfIsThePreviewedPage();
};

void PrintTest::pageItems_data() {
  QTest::addColumn<QString>("path");
  for (const QFileInfo& file : QDir(VELKARO_TEST_DATA_DIR "/print").entryInfoList({"*.case"})) {
    QTest::newRow(qPrintable(file.baseName())) << file.filePath();
  }
}

void PrintTest::pageItems() {
  QFETCH(QString, path);
  const Case page = readCase(path);
  PrintWindow fixture;
  fixture.open(page);
  PrintDialog* dialog = fixture.pressCtrlP();
  QVERIFY(dialog && dialog->isVisible());
  QCOMPARE(dialog->windowTitle(), QString("Print"));
  QTest::keyClicks(dialog->captionField(), page.fields["caption"]);

  // One row of the page for each line of the solution.
  const std::string& solution = fixture.window->document().solutionText();
  const int lines = static_cast<int>(std::count(solution.begin(), solution.end(), '\n'));
  QCOMPARE(dialog->page().solutionLines(), lines);
  QCOMPARE(dialog->page().faceSize().height(),
           PrintPage(PrintContent{}).faceSize().height() + PrintPage::kLineHeight * lines);
  QCOMPARE(dialog->preview()->size(), dialog->page().faceSize());

  const QString shownAtOpening = pageText(dialog->page());
  QStringList hidden = page.fields["hide"].split(", ", Qt::SkipEmptyParts);
  for (const QString& text : hidden) {
    auto* box = buttonWithText<QCheckBox>(dialog, text);
    QVERIFY2(box && box->isChecked(), qPrintable(text));
    click(box);
  }
  const ProgressPanel& panel = *fixture.window->progressPanel();
  QString expected = page.expected;
  expected.replace("{clock}", panel.clockText()).replace("{examined}", panel.testedMovesText());
  QCOMPARE(pageText(dialog->page()), expected);

  for (const QString& text : hidden) click(buttonWithText<QCheckBox>(dialog, text));
  QCOMPARE(pageText(dialog->page()), shownAtOpening);
}

// Each keystroke reaches the page and the preview at once.
void PrintTest::captionIsCopiedLive() {
  PrintWindow fixture;
  PrintDialog* dialog = fixture.pressCtrlP();
  const QImage before = dialog->preview()->grab().toImage();
  QTest::keyClicks(dialog->captionField(), "K");
  QCOMPARE(dialog->page().itemText(PrintPage::Caption), QString("K"));
  QVERIFY(dialog->preview()->grab().toImage() != before);
  QTest::keyClick(dialog->captionField(), Qt::Key_Backspace);
  QCOMPARE(dialog->preview()->grab().toImage(), before);
}

// Cancelled, the printer choice leaves the preview open; accepted (here a
// PDF printer, the choice the dialog's own widgets would make left out), one
// page named "Velkaro" is printed and the preview closes.
void PrintTest::printerChoice() {
  PrintWindow fixture;
  fixture.window->commandAction(ToolPrint)->trigger();
  QPointer<PrintDialog> dialog = fixture.window->findChild<PrintDialog*>();
  QVERIFY(dialog);
  QTest::mouseClick(dialog->printButton(), Qt::LeftButton);
  auto* printers = dialog->findChild<QPrintDialog*>();
  QVERIFY(printers && printers->isVisible());
  printers->reject();
  QVERIFY(dialog && dialog->isVisible());
  QVERIFY(QApplication::activeModalWidget() == dialog);

  QTest::mouseClick(dialog->printButton(), Qt::LeftButton);
  printers = dialog->findChildren<QPrintDialog*>().last();  // the cancelled one is not yet deleted
  QVERIFY(printers->isVisible());
  const QString pdf = fixture.folder.filePath("printed.pdf");
  printers->printer()->setOutputFormat(QPrinter::PdfFormat);
  printers->printer()->setOutputFileName(pdf);
  printers->done(QDialog::Accepted);
  QVERIFY(!dialog->isVisible());
  const QString info = QString::fromUtf8(runTool("pdfinfo", {pdf}));
  QVERIFY(info.contains(QRegularExpression("Title: +Velkaro\\n")));
  QVERIFY(info.contains(QRegularExpression("\\nPages: +1\\n")));
}

// The PDF's text holds the page's items; its image, brought to the preview's
// scale, has as much ink as the preview within each item's place.
void PrintTest::savedPdfIsThePreviewedPage() {
  PrintWindow fixture;
  fixture.open(readCase(VELKARO_TEST_DATA_DIR "/print/mate-2-kish-solved.case"));
  PrintDialog* dialog = fixture.pressCtrlP();
  QTest::keyClicks(dialog->captionField(), "A. Kish");
  const QImage preview = dialog->preview()->grab().toImage().convertToFormat(QImage::Format_Grayscale8);
  const QRect frame = dialog->page().itemRect(PrintPage::Frame);
  std::vector<QRect> areas;
  for (Item item : {PrintPage::Caption, PrintPage::BoardPicture, PrintPage::PieceCount, PrintPage::Stipulation,
                    PrintPage::Solution, PrintPage::Time, PrintPage::Moves}) {
    areas.push_back(dialog->page().itemRect(item));
  }
  QSignalSpy accepted(dialog, &QDialog::accepted);
  QTest::mouseClick(dialog->pdfButton(), Qt::LeftButton);
  auto* files = dialog->findChild<QFileDialog*>();
  QVERIFY(files);
  const QString pdf = fixture.folder.filePath("kish.pdf");
  files->selectFile(pdf);
  QMetaObject::invokeMethod(files, "accept");
  QCOMPARE(accepted.count(), 1);

  QVERIFY(QString(runTool("pdfinfo", {pdf})).contains(QRegularExpression("\\nPages: +1\\n")));
  const QString text = QString::fromUtf8(runTool("pdftotext", {pdf, "-"}));
  for (const char* item : {"A. Kish", "#2", "Solution No 1", "No more solutions", "Examined moves:"}) {
    QVERIFY2(text.contains(item), item);
  }
  runTool("pdftoppm", {"-r", "300", "-gray", "-singlefile", "-png", pdf, fixture.folder.filePath("kish")});
  const QImage face = faceOnPage(QImage(fixture.folder.filePath("kish.png")), frame, preview.size());
  QImage paper(preview.size(), QImage::Format_Grayscale8);
  paper.fill(Qt::white);
  for (const QRect& area : areas) {
    const double previewInk = meanDifference(preview, paper, area);
    QVERIFY(previewInk > 1);
    QVERIFY(std::abs(meanDifference(face, paper, area) - previewInk) < previewInk / 10);
  }
}

}  // namespace velkaro::ui::testing

QTEST_MAIN(velkaro::ui::testing::PrintTest)
#include "print_test.moc"
