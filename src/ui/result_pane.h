#pragma once
// The result pane: the tree of result lines (a key line with its threat and
// variations as children) and the plain-text copy of the same lines that
// printing and the problem file use. A job names its items by number.

#include <QTreeWidget>
#include <QHash>
#include <string>
#include <string_view>

namespace velkaro::ui {

class ResultPane : public QTreeWidget {
  Q_OBJECT

 public:
  explicit ResultPane(QWidget* parent = nullptr);

  // Empties the tree and the text.
  void clearResults();
  void insertRootItem(int id, std::string_view text);
  // A child of an item that does not exist (any more) becomes a root line.
  void insertChildItem(int parentId, int id, std::string_view text);
  void deleteItem(int id);
  void scrollToEnd();

  void appendText(std::string_view text);
  const std::string& text() const { return text_; }

 private:
  QHash<int, QTreeWidgetItem*> items_;
  std::string text_;
};

}  // namespace velkaro::ui
