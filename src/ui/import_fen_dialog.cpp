// The dialog keeps the file's lines exactly as read (each cut to 255
// characters) and hands those to the FEN reader; the list only shows them.

#include "ui/import_fen_dialog.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/board_view.h"

namespace velkaro::ui {
namespace {

constexpr int kListWidth = 185;
constexpr int kListHeight = 196;
constexpr int kPreviewPitch = 24;
constexpr int kFolderPathRole = Qt::UserRole;

Board boardOf(const formats::ImportResult& result) {
  Board board{};
  for (std::size_t square = 0; square < board.size(); ++square) board[square] = result.board[square];
  return board;
}

QListWidget* fixedList(QWidget* parent) {
  auto* list = new QListWidget(parent);
  list->setFixedSize(kListWidth, kListHeight);
  return list;
}

}  // namespace

ImportFenDialog::ImportFenDialog(const QString& folder, const QString& file, int row, QWidget* parent)
    : QDialog(parent),
      path_(new QLineEdit(this)),
      folderLabel_(new QLabel(this)),
      files_(fixedList(this)),
      folders_(fixedList(this)),
      positions_(new QListWidget(this)),
      preview_(new BoardView(this)),
      stipulation_(new QLabel(this)),
      buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this)) {
  setWindowTitle(QStringLiteral("Import FEN position"));
  resize(740, 480);
  auto* layout = new QVBoxLayout(this);
  auto* pathRow = new QHBoxLayout;
  pathRow->addWidget(new QLabel(QStringLiteral("Path:"), this));
  path_->setToolTip(QStringLiteral("Type or paste a folder or a file and press Enter"));
  pathRow->addWidget(path_, 1);
  layout->addLayout(pathRow);
  layout->addLayout(createFileArea());
  layout->addWidget(new QLabel(QStringLiteral("Select FEN position:"), this));
  positions_->setUniformItemSizes(true);
  positions_->setMinimumHeight(168);
  layout->addWidget(positions_, 1);
  layout->addWidget(buttons_);

  connect(folders_, &QListWidget::itemActivated, this, &ImportFenDialog::enterFolder);
  connect(files_, &QListWidget::currentItemChanged, this, &ImportFenDialog::openFile);
  connect(positions_, &QListWidget::currentRowChanged, this, &ImportFenDialog::selectPosition);
  connect(positions_, &QListWidget::itemActivated, this, &ImportFenDialog::acceptPosition);
  connect(path_, &QLineEdit::returnPressed, this, &ImportFenDialog::goToPath);
  connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
  showFolder(folder);
  if (!file.isEmpty()) chooseFile(file);
  if (row >= 0 && row < positions_->count()) positions_->setCurrentRow(row);
}

QString ImportFenDialog::filePath() const {
  return files_->currentItem() ? folder_.absoluteFilePath(files_->currentItem()->text()) : QString();
}

int ImportFenDialog::row() const { return positions_->currentRow(); }

// A folder is shown; a file is shown in its folder and chosen.
void ImportFenDialog::goToPath() {
  const QFileInfo target(QDir(folder_).absoluteFilePath(path_->text().trimmed()));
  if (target.isDir()) {
    showFolder(target.absoluteFilePath());
  } else if (target.isFile()) {
    showFolder(target.absolutePath());
    chooseFile(target.fileName());
  }
}

void ImportFenDialog::chooseFile(const QString& name) {
  const QList<QListWidgetItem*> found = files_->findItems(name, Qt::MatchExactly);
  if (!found.isEmpty()) files_->setCurrentItem(found.first());
}

// A double click (or Enter) on a position takes it over, if it is one.
void ImportFenDialog::acceptPosition() {
  if (import_.placementValid()) accept();
}

QLayout* ImportFenDialog::createFileArea() {
  auto* grid = new QGridLayout;
  grid->addWidget(new QLabel(QStringLiteral("Select file:"), this), 0, 0);
  grid->addWidget(files_, 1, 0);
  grid->addWidget(new QLabel(QStringLiteral("FEN, EPD, PGN (*.fen; *.epd; *.pgn)"), this), 2, 0);
  folderLabel_->setMaximumWidth(kListWidth);
  grid->addWidget(folderLabel_, 0, 1);
  grid->addWidget(folders_, 1, 1);
  preview_->setEditable(false);
  preview_->setFixedSize(8 * kPreviewPitch, 8 * kPreviewPitch);
  grid->addWidget(preview_, 1, 2, Qt::AlignTop);
  stipulation_->setMinimumWidth(120);
  stipulation_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  stipulation_->setTextFormat(Qt::PlainText);
  grid->addWidget(stipulation_, 1, 3, Qt::AlignTop);
  grid->setColumnStretch(3, 1);
  return grid;
}

void ImportFenDialog::showFolder(const QString& path) {
  folder_ = QDir(path);
  folder_.makeAbsolute();
  folderLabel_->setText(folderLabel_->fontMetrics().elidedText(folder_.absolutePath(), Qt::ElideLeft, kListWidth));
  folderLabel_->setToolTip(folder_.absolutePath());
  path_->setText(folder_.absolutePath());

  files_->clear();
  const QStringList filters{QStringLiteral("*.fen"), QStringLiteral("*.epd"), QStringLiteral("*.pgn")};
  files_->addItems(folder_.entryList(filters, QDir::Files | QDir::Readable, QDir::Name | QDir::IgnoreCase));

  folders_->clear();
  QStringList names = folder_.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
  if (!folder_.isRoot()) names.prepend(QStringLiteral(".."));
  for (const QString& name : names) {
    auto* item = new QListWidgetItem(QStringLiteral("[%1]").arg(name), folders_);
    item->setData(kFolderPathRole, folder_.absoluteFilePath(name));
  }
}

void ImportFenDialog::enterFolder(QListWidgetItem* item) {
  if (item) showFolder(QDir::cleanPath(item->data(kFolderPathRole).toString()));
}

void ImportFenDialog::openFile(QListWidgetItem* item) {
  positions_->clear();
  import_ = formats::FenImport{};
  lines_.clear();
  if (item) {
    const std::string name = item->text().toStdString();
    lines_ = formats::readImportLines(QFile::encodeName(folder_.absoluteFilePath(item->text())).toStdString());
    fileType_ = formats::fileTypeOf(name);
    for (const std::string& line : lines_) positions_->addItem(QString::fromStdString(line));
  }
  showImport();
}

void ImportFenDialog::selectPosition(int row) {
  if (row < 0 || row >= static_cast<int>(lines_.size())) {
    import_ = formats::FenImport{};
  } else {
    import_.selectLine(lines_, row, fileType_);
  }
  showImport();
}

// An invalid line leaves an empty preview and an empty stipulation.
void ImportFenDialog::showImport() {
  preview_->setBoard(import_.placementValid() ? boardOf(import_.result()) : Board{});
  stipulation_->setText(QString::fromStdString(std::string(import_.stipulationText())));
  buttons_->button(QDialogButtonBox::Ok)->setEnabled(import_.placementValid());
}

}  // namespace velkaro::ui
