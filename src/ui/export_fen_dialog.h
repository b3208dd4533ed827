#pragma once
// "Save FEN position to file": a file dialog with the export's own fields
// below it (Ask, Date, Site, Author, Section, the FEN line) and the choice
// between appending the record to the file and replacing it, offered only
// while the chosen name is a file that exists.

#include <QDialog>

#include "formats/fen_export.h"

class QFileDialog;
class QLineEdit;
class QRadioButton;

namespace velkaro::ui {

class ExportFenDialog : public QDialog {
  Q_OBJECT

 public:
  ExportFenDialog(const QString& folder, const formats::FenText& text, QWidget* parent = nullptr);

  // The chosen file and the fields as the user left them, once accepted.
  QString filePath() const { return path_; }
  formats::ExportFields fields() const;

  QFileDialog* fileDialog() const { return files_; }
  QLineEdit* field(const char* label) const;
  QRadioButton* appendButton() const { return append_; }
  QRadioButton* replaceButton() const { return replace_; }

 private:
  void nameChanged(const QString& name);
  void fileChosen(const QString& path);

  QFileDialog* files_;
  QLineEdit* name_;
  QLineEdit* ask_;
  QLineEdit* date_;
  QLineEdit* site_;
  QLineEdit* author_;
  QLineEdit* section_;
  QLineEdit* fen_;
  QRadioButton* append_;
  QRadioButton* replace_;
  QString path_;
};

}  // namespace velkaro::ui
