#pragma once
// The piece palette beside the board: a button for each White and Black man.
// The checked button is the man a click on the board places; a man dragged from
// a button is placed where it is let go. The king, queen, rook, bishop and
// knight buttons carry the notation language's letter.

#include <QAbstractButton>
#include <QWidget>
#include <array>
#include <string_view>

class QButtonGroup;

namespace velkaro::ui {

class PaletteButton : public QAbstractButton {
  Q_OBJECT

 public:
  PaletteButton(int code, QWidget* parent);
  int code() const { return code_; }
  QSize sizeHint() const override;
  void setSide(int side);

 signals:
  void dropped(int code, QPoint globalPosition);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  int code_;
  QPoint pressPosition_;
  bool leftPressed_ = false;
  bool dragging_ = false;
  int side_ = 0;  // 0: from the font
};

class PiecePalette : public QWidget {
  Q_OBJECT

 public:
  explicit PiecePalette(QWidget* parent = nullptr);

  int selectedPiece() const;  // the piece code of the checked button
  // The buttons' side in pixels: the men grow with the board.
  void setButtonSide(int side);
  void selectPiece(int code);
  // Letters for king, queen, rook, bishop and knight, in that order.
  void setLetters(std::string_view letters);
  PaletteButton* button(int code) const;

 signals:
  void pieceDropped(int code, QPoint globalPosition);

 private:
  std::array<PaletteButton*, 12> buttons_{};
  QButtonGroup* group_;
};

}  // namespace velkaro::ui
