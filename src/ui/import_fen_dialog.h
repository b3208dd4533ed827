#pragma once
// The "Import FEN position" dialog: a file and a folder list, every line of the
// chosen FEN, EPD or PGN file, and a preview board with the stipulation of the
// chosen line. Closed with OK it hands the previewed position back.

#include <QDialog>
#include <QDir>
#include <string>
#include <vector>

#include "formats/fen.h"

class QDialogButtonBox;
class QLabel;
class QListWidget;
class QListWidgetItem;

namespace velkaro::ui {

class BoardView;

class ImportFenDialog : public QDialog {
  Q_OBJECT

 public:
  explicit ImportFenDialog(const QString& folder, QWidget* parent = nullptr);

  // The position of the chosen line, valid when accepted.
  const formats::ImportResult& result() const { return import_.result(); }
  QString folder() const { return folder_.absolutePath(); }

  QListWidget* fileList() const { return files_; }
  QListWidget* folderList() const { return folders_; }
  QListWidget* positionList() const { return positions_; }
  BoardView* preview() const { return preview_; }
  QLabel* stipulationLabel() const { return stipulation_; }

 private:
  QLayout* createFileArea();
  void showFolder(const QString& path);
  void enterFolder(QListWidgetItem* item);
  void openFile(QListWidgetItem* item);
  void selectPosition(int row);
  void showImport();

  QDir folder_;
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
