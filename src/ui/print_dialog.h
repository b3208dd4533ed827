#pragma once
// The "Print" preview: the page as it will be printed, the caption field
// copied live into it, the four check boxes that show or hide its items, and
// the ways out: the system print dialog, a PDF file, or Cancel.

#include <QDialog>
#include <array>
#include <memory>

#include "ui/print_page.h"

class QCheckBox;
class QLineEdit;
class QPrinter;
class QPushButton;
class QScrollArea;

namespace velkaro::ui {

class ProblemDocument;
class ProgressPanel;

class PrintDialog : public QDialog {
  Q_OBJECT

 public:
  explicit PrintDialog(const PrintContent& content, QWidget* parent = nullptr);
  ~PrintDialog() override;

  const PrintPage& page() const { return page_; }
  // The face at scale 1, as large as the page's face.
  QWidget* preview() const { return preview_; }
  QLineEdit* captionField() const { return caption_; }
  QCheckBox* partBox(PrintPage::Part part) const { return boxes_[part]; }
  QPushButton* printButton() const { return print_; }
  QPushButton* pdfButton() const { return pdf_; }

 private:
  QWidget* createChoices();
  void showPart(PrintPage::Part part, bool shown);
  void askForPrinter();
  void askForPdfFile();
  void writePdf(const QString& path);

  PrintPage page_;
  std::unique_ptr<QPrinter> printer_;
  QScrollArea* scroll_;
  QWidget* preview_;
  QLineEdit* caption_ = nullptr;
  std::array<QCheckBox*, PrintPage::kPartCount> boxes_{};
  QPushButton* print_ = nullptr;
  QPushButton* pdf_ = nullptr;
};

// The Print command: the preview of the document's page, with the progress
// panel's time and examined moves; it deletes itself when closed.
PrintDialog* openPrintDialog(const ProblemDocument& document, const ProgressPanel& panel, QWidget* parent);

}  // namespace velkaro::ui
