#pragma once
// "Available squares": a board on which the user marks the squares where men
// of one side and kind may be generated, with "All", "Clear", "OK" and
// "Cancel".

#include <QDialog>
#include <cstdint>

class QPushButton;

namespace velkaro::ui {

class BoardView;

class AvailableSquaresDialog : public QDialog {
  Q_OBJECT

 public:
  // `caption` names the kind ("White King:"); `squares` are marked at first.
  AvailableSquaresDialog(const QString& caption, std::uint64_t squares, QWidget* parent = nullptr);

  std::uint64_t squares() const;
  BoardView* board() const { return board_; }
  QPushButton* allButton() const { return all_; }
  QPushButton* clearButton() const { return clear_; }

 private:
  BoardView* board_;
  QPushButton* all_;
  QPushButton* clear_;
};

}  // namespace velkaro::ui
