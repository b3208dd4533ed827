#pragma once
// The "Import FEN position" dialog: a path field, a file and a folder list,
// every line of the chosen FEN, EPD or PGN file, and a preview board with the
// stipulation of the chosen line. Closed with OK (or a double click on a
// position) it hands the previewed position back.

#include <QDialog>
#include <QDir>
#include <string>
#include <vector>

#include "formats/fen.h"

class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;

namespace velkaro::ui {

class BoardView;

class ImportFenDialog : public QDialog {
  Q_OBJECT

 public:
  // Opens at `folder`, with `file` (a name in it) and its line `row` chosen
  // again when they are still there.
  ImportFenDialog(const QString& folder, const QString& file = QString(), int row = -1, QWidget* parent = nullptr);

  // The position of the chosen line, valid when accepted.
  const formats::ImportResult& result() const { return import_.result(); }
  QString folder() const { return folder_.absolutePath(); }
  // The chosen file's full path and the chosen line (from 0), -1 for none.
  QString filePath() const;
  int row() const;

  QListWidget* fileList() const { return files_; }
  QListWidget* folderList() const { return folders_; }
  QListWidget* positionList() const { return positions_; }
  QLineEdit* pathField() const { return path_; }
  BoardView* preview() const { return preview_; }
  QLabel* stipulationLabel() const { return stipulation_; }

 private:
  QLayout* createFileArea();
  void showFolder(const QString& path);
  void goToPath();
  void chooseFile(const QString& name);
  void acceptPosition();
  void enterFolder(QListWidgetItem* item);
  void openFile(QListWidgetItem* item);
  void selectPosition(int row);
  void showImport();

  QDir folder_;
  QLineEdit* path_;
  QLabel* folderLabel_;
  QListWidget* files_;
  QListWidget* folders_;
  QListWidget* positions_;
  BoardView* preview_;
  QLabel* stipulation_;
  QDialogButtonBox* buttons_;
  formats::FenImport import_;
  std::vector<std::string> lines_;
  std::string fileType_;
};

}  // namespace velkaro::ui
