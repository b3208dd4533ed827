#pragma once
// The "Select move" dialog: the first row stands for all moves, every other
// row for one legal first move, which the next runs then test alone.

#include <QDialog>
#include <string>
#include <vector>

class QListWidget;

namespace velkaro::ui {

class SelectMoveDialog : public QDialog {
  Q_OBJECT

 public:
  // `rows` as the list shows them; `currentRow` is selected at the start.
  SelectMoveDialog(const std::vector<std::string>& rows, int currentRow, QWidget* parent = nullptr);

  // The selected row; -1 when none is.
  int chosenRow() const;
  QListWidget* moveList() const { return list_; }

 private:
  QListWidget* list_;
};

}  // namespace velkaro::ui
