// The file dialog is the non-native one, held inside this dialog as a
// widget, so its name field can be watched and the fields sit under it on
// every platform.

#include "ui/export_fen_dialog.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace velkaro::ui {

namespace {

QLineEdit* addField(QGridLayout* grid, int row, int column, const char* label, const std::string& text, int length,
                    QWidget* parent) {
  auto* edit = new QLineEdit(QString::fromStdString(text), parent);
  edit->setMaxLength(length);
  edit->setObjectName(QString::fromLatin1(label));
  grid->addWidget(new QLabel(QString::fromLatin1(label), parent), row, column);
  grid->addWidget(edit, row, column + 1);
  return edit;
}

std::string textOf(const QLineEdit* edit) { return edit->text().toStdString(); }

}  // namespace

ExportFenDialog::ExportFenDialog(const QString& folder, const formats::FenText& text, QWidget* parent)
    : QDialog(parent), files_(new QFileDialog(this, QString(), folder, QString::fromLatin1(formats::kExportFilter))) {
  setWindowTitle(QString::fromLatin1(formats::kExportTitle));
  files_->setWindowFlags(Qt::Widget);
  files_->setOption(QFileDialog::DontUseNativeDialog);
  files_->setOption(QFileDialog::DontConfirmOverwrite);
  files_->setAcceptMode(QFileDialog::AcceptSave);
  files_->setDefaultSuffix(QString::fromLatin1(formats::kExportDefaultExtension));
  files_->setNameFilters({QString::fromLatin1(formats::kExportFilter), QStringLiteral("*.pgn"),
                          QStringLiteral("*.epd"), QStringLiteral("*")});

  const formats::ExportFields start = formats::exportFieldsFor(text);
  auto* grid = new QGridLayout;
  ask_ = addField(grid, 0, 0, formats::kAskLabel, start.ask, formats::kAskLength, this);
  date_ = addField(grid, 0, 2, formats::kDateLabel, start.date, formats::kDateLength, this);
  site_ = addField(grid, 0, 4, formats::kSiteLabel, start.site, formats::kSiteLength, this);
  author_ = addField(grid, 1, 0, formats::kAuthorLabel, start.author, formats::kAuthorLength, this);
  section_ = addField(grid, 1, 4, formats::kSectionLabel, start.section, formats::kSectionLength, this);
  fen_ = addField(grid, 2, 0, formats::kFenFieldLabel, start.fen, formats::kFenFieldLength, this);
  grid->removeWidget(author_);
  grid->addWidget(author_, 1, 1, 1, 3);
  grid->removeWidget(fen_);
  grid->addWidget(fen_, 2, 1, 1, 5);
  append_ = new QRadioButton(QString::fromLatin1(formats::kAppendLabel), this);
  replace_ = new QRadioButton(QString::fromLatin1(formats::kReplaceLabel), this);
  append_->setChecked(true);
  grid->addWidget(append_, 3, 1, 1, 2);
  grid->addWidget(replace_, 3, 3, 1, 2);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(files_, 1);
  layout->addLayout(grid);

  // The name field is the dialog's own line edit; every change of it, typed
  // or picked from the list, and every change of folder decides whether
  // appending is offered.
  name_ = files_->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  connect(name_, &QLineEdit::textChanged, this, &ExportFenDialog::nameChanged);
  connect(files_, &QFileDialog::directoryEntered, this, [this] { nameChanged(name_->text()); });
  connect(files_, &QFileDialog::fileSelected, this, &ExportFenDialog::fileChosen);
  connect(files_, &QFileDialog::rejected, this, &QDialog::reject);
  nameChanged(QString());
}

// The file that OK would write: a name without an extension gets the default
// one, as the file dialog gives it on OK, so "shelf" offers appending to an
// existing "shelf.fen".
void ExportFenDialog::nameChanged(const QString& name) {
  QFileInfo file(QDir(files_->directory()).absoluteFilePath(name));
  if (!file.fileName().contains('.') && !file.isDir()) file.setFile(file.filePath() + '.' + files_->defaultSuffix());
  const bool exists = !name.isEmpty() && file.isFile();
  append_->setEnabled(exists);
  replace_->setEnabled(exists);
  if (exists) append_->setChecked(true);
}

void ExportFenDialog::fileChosen(const QString& path) {
  path_ = path;
  accept();
}

QLineEdit* ExportFenDialog::field(const char* label) const {
  return findChild<QLineEdit*>(QString::fromLatin1(label));
}

formats::ExportFields ExportFenDialog::fields() const {
  return {textOf(ask_),    textOf(date_), textOf(site_), textOf(author_),
          textOf(section_), textOf(fen_), append_->isChecked() && append_->isEnabled()};
}

}  // namespace velkaro::ui
