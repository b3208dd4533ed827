// Items are kept by the job's numbers, so a job can replace its placeholder
// line (" searching ...") and hang variations under their key.

#include "ui/result_pane.h"

#include <QFontDatabase>
#include <QHeaderView>

namespace velkaro::ui {
namespace {

QString fromView(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

}  // namespace

ResultPane::ResultPane(QWidget* parent) : QTreeWidget(parent) {
  setColumnCount(1);
  header()->hide();
  setUniformRowHeights(true);
  // Solution lines line their moves up in columns of blanks.
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
}

void ResultPane::clearResults() {
  clear();
  items_.clear();
  text_.clear();
}

void ResultPane::insertRootItem(int id, std::string_view text) {
  auto* item = new QTreeWidgetItem(this, QStringList(fromView(text)));
  items_.insert(id, item);
}

void ResultPane::insertChildItem(int parentId, int id, std::string_view text) {
  QTreeWidgetItem* parent = items_.value(parentId);
  if (!parent) {
    insertRootItem(id, text);
    return;
  }
  auto* item = new QTreeWidgetItem(parent, QStringList(fromView(text)));
  parent->setExpanded(true);
  items_.insert(id, item);
}

// Deleting an item deletes its children too; their numbers go with them.
void ResultPane::deleteItem(int id) {
  QTreeWidgetItem* item = items_.take(id);
  if (!item) return;
  for (auto it = items_.begin(); it != items_.end();) {
    QTreeWidgetItem* ancestor = it.value()->parent();
    while (ancestor && ancestor != item) ancestor = ancestor->parent();
    it = ancestor ? items_.erase(it) : std::next(it);
  }
  delete item;
}

void ResultPane::scrollToEnd() { scrollToBottom(); }

void ResultPane::appendText(std::string_view text) { text_.append(text); }

}  // namespace velkaro::ui
