// The preview paints the page's face at scale 1 on white, as paper; the
// printer and the PDF writer paint the same face larger. The printer and
// file dialogs are opened, not run, so the preview's window stays responsive
// and a cancelled choice simply leaves it open.

#include "ui/print_dialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStandardPaths>
#include <QStyle>
#include <QVBoxLayout>

#include "ui/problem_document.h"
#include "ui/progress_panel.h"

namespace velkaro::ui {
namespace {

class FacePreview : public QWidget {
 public:
  FacePreview(const PrintPage& page, QWidget* parent) : QWidget(parent), page_(page) { setFixedSize(page_.faceSize()); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    page_.paint(painter);
  }

 private:
  const PrintPage& page_;
};

struct PartChoice {
  PrintPage::Part part;
  const char* text;
};
constexpr PartChoice kPartChoices[] = {
    {PrintPage::PieceCountPart, "Number of pieces"},
    {PrintPage::AskPart, "Ask"},
    {PrintPage::SolutionPart, "Solution"},
    {PrintPage::TimePart, "Time and number of examined moves"},
};

QString pdfFolder() {
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  return documents.isEmpty() ? QDir::homePath() : documents;
}

}  // namespace

PrintDialog::PrintDialog(const PrintContent& content, QWidget* parent)
    : QDialog(parent), page_(content), scroll_(new QScrollArea(this)), preview_(new FacePreview(page_, scroll_)) {
  setWindowTitle(QStringLiteral("Print"));
  scroll_->setWidget(preview_);
  scroll_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll_->ensurePolished();  // the style sets the frame's width
  const int frame = 2 * scroll_->frameWidth();
  scroll_->setFixedWidth(preview_->width() + frame + style()->pixelMetric(QStyle::PM_ScrollBarExtent));
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(scroll_);
  QWidget* choices = createChoices();
  layout->addWidget(choices, 1);
  // As tall as the face, growing with the solution, while the screen has
  // room; the rest scrolls.
  const QMargins margins = layout->contentsMargins();
  const int wanted = qMax(preview_->height() + frame, choices->sizeHint().height()) + margins.top() + margins.bottom();
  const QScreen* screen = parent ? parent->screen() : QApplication::primaryScreen();
  const int room = screen ? screen->availableGeometry().height() * 9 / 10 : wanted;
  resize(sizeHint().width(), qMin(wanted, room));
}

// A printer dialog still waiting to be deleted must not outlive the printer
// it points to.
PrintDialog::~PrintDialog() { qDeleteAll(findChildren<QPrintDialog*>(Qt::FindDirectChildrenOnly)); }

QWidget* PrintDialog::createChoices() {
  auto* choices = new QWidget(this);
  auto* column = new QVBoxLayout(choices);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(new QLabel(QStringLiteral("Caption:"), choices));
  caption_ = new QLineEdit(choices);
  caption_->setMaxLength(PrintPage::kCaptionLength);
  column->addWidget(caption_);
  column->addSpacing(12);
  for (const PartChoice& choice : kPartChoices) {
    auto* box = new QCheckBox(QString::fromLatin1(choice.text), choices);
    box->setChecked(true);
    boxes_[choice.part] = box;
    column->addWidget(box);
    connect(box, &QCheckBox::toggled, this, [this, part = choice.part](bool on) { showPart(part, on); });
  }
  column->addStretch();
  print_ = new QPushButton(QStringLiteral("Print"), choices);
  pdf_ = new QPushButton(QStringLiteral("Save as PDF"), choices);
  auto* cancel = new QPushButton(QStringLiteral("Cancel"), choices);
  print_->setDefault(true);
  for (QPushButton* button : {print_, pdf_, cancel}) column->addWidget(button);

  connect(caption_, &QLineEdit::textChanged, this, [this](const QString& text) {
    page_.setCaption(text);
    preview_->update();
  });
  connect(print_, &QPushButton::clicked, this, &PrintDialog::askForPrinter);
  connect(pdf_, &QPushButton::clicked, this, &PrintDialog::askForPdfFile);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  return choices;
}

void PrintDialog::showPart(PrintPage::Part part, bool shown) {
  page_.setShown(part, shown);
  preview_->update();
}

// One copy of one page. A page that cannot be started prints nothing and
// says nothing; either way the preview's work is done.
void PrintDialog::askForPrinter() {
  if (!printer_) {
    printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer_->setDocName(QStringLiteral("Velkaro"));
  }
  printer_->setCopyCount(1);
  auto* dialog = new QPrintDialog(printer_.get(), this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setOption(QAbstractPrintDialog::PrintPageRange, false);
  connect(dialog, &QDialog::accepted, this, [this] {
    page_.print(*printer_);
    accept();
  });
  dialog->open();
}

void PrintDialog::askForPdfFile() {
  auto* dialog = new QFileDialog(this, QStringLiteral("Save as PDF"), QDir(pdfFolder()).filePath("Velkaro.pdf"),
                                 QStringLiteral("PDF files (*.pdf)"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setDefaultSuffix(QStringLiteral("pdf"));
  connect(dialog, &QFileDialog::fileSelected, this, &PrintDialog::writePdf);
  dialog->open();
}

// A file that cannot be written is told, and the preview stays for another try.
void PrintDialog::writePdf(const QString& path) {
  if (page_.writePdf(path)) {
    accept();
    return;
  }
  auto* box = new QMessageBox(QMessageBox::Warning, QStringLiteral("Velkaro"),
                              QStringLiteral("The file %1 could not be written.").arg(QDir::toNativeSeparators(path)),
                              QMessageBox::Ok, this);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();
}

PrintDialog* openPrintDialog(const ProblemDocument& document, const ProgressPanel& panel, QWidget* parent) {
  auto* dialog = new PrintDialog(printContentOf(document, panel.clockText(), panel.testedMovesText()), parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->open();
  return dialog;
}

}  // namespace velkaro::ui
