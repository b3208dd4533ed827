// Variations open under their key as they arrive; every row has one height,
// so a tree of millions of lines scrolls without measuring them.

#include "ui/result_pane.h"

#include <QFontDatabase>
#include <QHeaderView>
#include <QKeyEvent>

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

// The copy keys belong to the tree while it has the focus, before the
// window's Copy FEN sees them.
bool ResultPane::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
    event->accept();
    return true;
  }
  return QTreeView::event(event);
}

void ResultPane::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    emit copyRequested();
    return;
  }
  QTreeView::keyPressEvent(event);
}

}  // namespace velkaro::ui
