// Variations open under their key as they arrive; every row has one height,
// so a tree of millions of lines scrolls without measuring them.

#include "ui/result_pane.h"

#include <QFontDatabase>
#include <QHeaderView>

#include "ui/result_model.h"

namespace velkaro::ui {

ResultPane::ResultPane(ResultModel& model, QWidget* parent) : QTreeView(parent), model_(model) {
  setModel(&model);
  header()->hide();
  setUniformRowHeights(true);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  // Solution lines line their moves up in columns of blanks.
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  connect(&model, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex& parent, int first, int last) {
    if (parent.isValid()) {
      expand(parent);
      return;
    }
    for (int row = first; row <= last; ++row) {
      const QModelIndex root = model_.index(row, 0);
      if (model_.rowCount(root) > 0) expand(root);
    }
  });
}

}  // namespace velkaro::ui
