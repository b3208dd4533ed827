// A two-level tree: a root index carries no internal id, a child carries its
// root row + 1, so parent() needs no lookup.

#include "ui/result_model.h"

#include <utility>

namespace velkaro::ui {

ResultModel::ResultModel(QObject* parent) : QAbstractItemModel(parent) {}

void ResultModel::clear() {
  beginResetModel();
  textBuffer_.clear();
  roots_.clear();
  children_.clear();
  placeholder_.clear();
  shown_ = Shown{};
  batch_ = Batch{};
  endResetModel();
}

ResultModel::Text ResultModel::store(std::string_view text) {
  const Text stored{textBuffer_.size(), static_cast<std::uint32_t>(text.size())};
  textBuffer_.append(text);
  return stored;
}

QString ResultModel::textOf(const Text& text) const {
  return QString::fromLatin1(textBuffer_.data() + text.offset, static_cast<qsizetype>(text.length));
}

void ResultModel::setPlaceholder(std::string_view text) { placeholder_.assign(text); }

void ResultModel::addRootLine(std::string_view text) {
  roots_.push_back({store(text), static_cast<std::uint32_t>(children_.size()), 0});
}

void ResultModel::addChildLine(std::string_view text) {
  if (roots_.empty()) {  // nothing to hang it under: it stands at the root
    addRootLine(text);
    return;
  }
  children_.push_back(store(text));
  ++roots_.back().childCount;
}

// The views hear of the batch in the order of the tree: the placeholder goes
// when roots follow it or it is gone, children join the last root they know,
// new roots are appended, and a placeholder still standing comes last.
ResultModel::Batch ResultModel::showBatch() {
  const bool newRoots = roots_.size() > shown_.roots;
  if (shown_.placeholder && (newRoots || placeholder_.empty())) {
    beginRemoveRows(QModelIndex(), static_cast<int>(shown_.roots), static_cast<int>(shown_.roots));
    shown_.placeholder = false;
    endRemoveRows();
  }
  insertChildrenOfLastShownRoot();
  if (newRoots) {
    beginInsertRows(QModelIndex(), static_cast<int>(shown_.roots), static_cast<int>(roots_.size()) - 1);
    shown_.roots = roots_.size();
    shown_.lastRootChildren = roots_.back().childCount;
    endInsertRows();
  }
  if (!placeholder_.empty()) {
    if (!shown_.placeholder) {
      beginInsertRows(QModelIndex(), static_cast<int>(shown_.roots), static_cast<int>(shown_.roots));
      shown_.placeholder = true;
      endInsertRows();
    } else {
      const QModelIndex row = index(static_cast<int>(shown_.roots), 0);
      emit dataChanged(row, row);
    }
  }
  return std::exchange(batch_, Batch{});
}

void ResultModel::insertChildrenOfLastShownRoot() {
  if (shown_.roots == 0) return;
  const RootRow& last = roots_[shown_.roots - 1];
  if (last.childCount == shown_.lastRootChildren) return;
  const QModelIndex parent = index(static_cast<int>(shown_.roots) - 1, 0);
  beginInsertRows(parent, static_cast<int>(shown_.lastRootChildren), static_cast<int>(last.childCount) - 1);
  shown_.lastRootChildren = last.childCount;
  endInsertRows();
}

std::vector<std::string> ResultModel::lines() const {
  std::vector<std::string> lines;
  for (const RootRow& root : roots_) {
    lines.emplace_back(textBuffer_, root.text.offset, root.text.length);
    for (std::uint32_t child = 0; child < root.childCount; ++child) {
      const Text& text = children_[root.firstChild + child];
      lines.emplace_back(1, '\t').append(textBuffer_, text.offset, text.length);
    }
  }
  if (!placeholder_.empty()) lines.push_back(placeholder_);
  return lines;
}

QModelIndex ResultModel::index(int row, int column, const QModelIndex& parent) const {
  if (column != 0 || row < 0 || row >= rowCount(parent)) return {};
  return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : 0);
}

QModelIndex ResultModel::parent(const QModelIndex& child) const {
  if (!child.isValid() || child.internalId() == 0) return {};
  return createIndex(static_cast<int>(child.internalId() - 1), 0, quintptr{0});
}

int ResultModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return static_cast<int>(shownRootRows());
  if (parent.internalId() != 0 || parent.column() != 0) return 0;
  const auto row = static_cast<std::size_t>(parent.row());
  if (row >= shown_.roots) return 0;  // the placeholder
  return static_cast<int>(row + 1 == shown_.roots ? shown_.lastRootChildren : roots_[row].childCount);
}

int ResultModel::columnCount(const QModelIndex&) const { return 1; }

QVariant ResultModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  const auto row = static_cast<std::size_t>(index.row());
  if (index.internalId() != 0) {
    const RootRow& root = roots_[index.internalId() - 1];
    return textOf(children_[root.firstChild + row]);
  }
  if (row == shown_.roots) return QString::fromLatin1(placeholder_.data(), static_cast<qsizetype>(placeholder_.size()));
  return textOf(roots_[row].text);
}

}  // namespace velkaro::ui
