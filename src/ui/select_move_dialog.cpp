// The rows are move texts with blanks for the missing piece letter and the
// check mark, so they are shown in a fixed font, lined up as in the results.

#include "ui/select_move_dialog.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace velkaro::ui {

SelectMoveDialog::SelectMoveDialog(const std::vector<std::string>& rows, int currentRow, QWidget* parent)
    : QDialog(parent), list_(new QListWidget(this)) {
  setWindowTitle(QStringLiteral("Select move"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new QLabel(QStringLiteral("Select first move to test:"), this));
  list_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  for (const std::string& row : rows) list_->addItem(QString::fromStdString(row));
  list_->setCurrentRow(currentRow);
  layout->addWidget(list_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(list_, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
}

int SelectMoveDialog::chosenRow() const {
  const QList<QListWidgetItem*> selected = list_->selectedItems();
  return selected.isEmpty() ? -1 : list_->row(selected.first());
}

}  // namespace velkaro::ui
