#pragma once
// The board widget: the 64 squares with their men, the main window's editor
// board (clicks and drags) and the import dialog's preview (read-only). A new
// board repaints only the squares whose men changed.

#include <QWidget>
#include <cstdint>

#include "ui/board_transform.h"

namespace velkaro::ui {

class BoardView : public QWidget {
  Q_OBJECT

 public:
  explicit BoardView(QWidget* parent = nullptr);

  // Shows `board`, repainting the squares that differ from the board shown so far.
  void setBoard(const Board& board);
  const Board& board() const { return board_; }

  // A read-only board takes no clicks and gives no men away.
  void setEditable(bool editable);
  // Squares marked on the board (bit s for square s): the unattacked empty
  // squares of a placement, or the squares a kind of man may stand on.
  void setMarkedSquares(std::uint64_t squares);
  std::uint64_t markedSquares() const { return marked_; }
  // File letters below the board and rank digits to its left.
  void setShowsCoordinates(bool shows);

  QRect squareRect(int square) const;
  int squareAt(QPoint position) const;  // -1 off the board
  int squareAtGlobal(QPoint globalPosition) const;

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override { return width; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 signals:
  // A press and release on one square without dragging.
  void squareClicked(int square, Qt::MouseButton button);
  // A man dragged from `from` and let go over `to`; -1 when let go off the board.
  void manDragged(int from, int to);
  // A key pressed while the keyboard's square cursor stands on `square`
  // (arrow keys move the cursor and are not reported).
  void keyPressedOnSquare(int square, int key, const QString& text);
  // The squares' new side in pixels, after a resize.
  void squareSizeChanged(int side);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 public:
  int cursorSquare() const { return cursor_; }

 private:
  void placeSquares();
  int coordinateBand() const;
  void paintSquare(QPainter& painter, int square);
  void paintCoordinates(QPainter& painter, const QRegion& region);
  void endDrag();

  Board board_{};
  bool editable_ = true;
  bool showsCoordinates_ = false;
  int squareSize_ = 1;
  QPoint origin_;  // top-left corner of a8
  int pressSquare_ = -1;
  Qt::MouseButton pressButton_ = Qt::NoButton;
  QPoint pressPosition_;
  bool dragging_ = false;
  std::uint64_t marked_ = 0;
  int cursor_ = 36;  // e4: where the keyboard edits, framed while the board has the focus
};

}  // namespace velkaro::ui
