// Painting is done square by square within the paint event's region, so a
// board change that marks only the changed squares dirty costs only those.
// Dragging is done by hand rather than with QDrag: the man follows the mouse
// as the cursor, and the press-move-release sequence stays in this widget.

#include "ui/board_view.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>

#include "ui/piece_painter.h"

namespace velkaro::ui {
namespace {

const QColor kLightSquare(0xee, 0xdc, 0xb8);
const QColor kDarkSquare(0xb0, 0x85, 0x5e);
constexpr int kPreferredSquare = 52;
constexpr int kSmallestSquare = 24;

}  // namespace

BoardView::BoardView(QWidget* parent) : QWidget(parent) {
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  setFocusPolicy(Qt::StrongFocus);
  placeSquares();
}

void BoardView::setBoard(const Board& board) {
  for (int square = 0; square < 64; ++square) {
    const std::size_t index = static_cast<std::size_t>(square);
    if (board_[index] == board[index]) continue;
    board_[index] = board[index];
    update(squareRect(square));
  }
}

void BoardView::setEditable(bool editable) {
  editable_ = editable;
  setFocusPolicy(editable ? Qt::StrongFocus : Qt::NoFocus);
  if (!editable_ && dragging_) endDrag();
}

void BoardView::setMarkedSquares(std::uint64_t squares) {
  const std::uint64_t changed = squares ^ marked_;
  marked_ = squares;
  for (int square = 0; square < 64; ++square) {
    if ((changed >> square) & 1) update(squareRect(square));
  }
}

void BoardView::setShowsCoordinates(bool shows) {
  showsCoordinates_ = shows;
  placeSquares();
  updateGeometry();
  update();
}

int BoardView::coordinateBand() const { return showsCoordinates_ ? qMax(12, squareSize_ * 2 / 5) : 0; }

QSize BoardView::sizeHint() const {
  const int band = showsCoordinates_ ? kPreferredSquare * 2 / 5 : 0;
  return {8 * kPreferredSquare + band, 8 * kPreferredSquare + band};
}

QSize BoardView::minimumSizeHint() const {
  const int band = showsCoordinates_ ? 12 : 0;
  return {8 * kSmallestSquare + band, 8 * kSmallestSquare + band};
}

// Whole-pixel squares; the board (with its coordinate band) is centred across
// and kept at the top.
void BoardView::placeSquares() {
  const int side = qMin(width(), height());
  const int before = squareSize_;
  squareSize_ = qMax(1, showsCoordinates_ ? side * 5 / 42 : side / 8);
  if (squareSize_ != before) emit squareSizeChanged(squareSize_);
  const int band = coordinateBand();
  const int extent = 8 * squareSize_ + band;
  origin_ = QPoint((width() - extent) / 2 + band, 0);
}

QRect BoardView::squareRect(int square) const {
  return {origin_.x() + (square % 8) * squareSize_, origin_.y() + (square / 8) * squareSize_, squareSize_,
          squareSize_};
}

int BoardView::squareAt(QPoint position) const {
  const QPoint offset = position - origin_;
  if (offset.x() < 0 || offset.y() < 0) return -1;
  const int column = offset.x() / squareSize_;
  const int row = offset.y() / squareSize_;
  return column < 8 && row < 8 ? row * 8 + column : -1;
}

int BoardView::squareAtGlobal(QPoint globalPosition) const { return squareAt(mapFromGlobal(globalPosition)); }

void BoardView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  placeSquares();
}

void BoardView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const QRegion& region = event->region();
  for (int square = 0; square < 64; ++square) {
    if (region.intersects(squareRect(square))) paintSquare(painter, square);
  }
  if (showsCoordinates_) paintCoordinates(painter, region);
}

void BoardView::paintSquare(QPainter& painter, int square) {
  const QRect rect = squareRect(square);
  const bool light = (square / 8 + square % 8) % 2 == 0;
  painter.fillRect(rect, light ? kLightSquare : kDarkSquare);
  if (!(dragging_ && square == pressSquare_)) paintPiece(painter, QRectF(rect), board_[static_cast<std::size_t>(square)]);
  if ((marked_ >> square) & 1) {
    const qreal radius = squareSize_ / 6.0;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x2e, 0x7d, 0x32, 200));
    painter.drawEllipse(QRectF(rect).center(), radius, radius);
  }
  if (square == cursor_ && hasFocus()) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), qMax(2, squareSize_ / 16)));
    painter.drawRect(QRectF(rect).adjusted(1.5, 1.5, -1.5, -1.5));
  }
}

// Arrow keys move the cursor within the board; any other key is the window's
// to interpret on the cursor's square.
void BoardView::keyPressEvent(QKeyEvent* event) {
  const int row = cursor_ / 8;
  const int column = cursor_ % 8;
  int moved = -1;
  switch (event->key()) {
    case Qt::Key_Left: moved = column > 0 ? cursor_ - 1 : cursor_; break;
    case Qt::Key_Right: moved = column < 7 ? cursor_ + 1 : cursor_; break;
    case Qt::Key_Up: moved = row > 0 ? cursor_ - 8 : cursor_; break;
    case Qt::Key_Down: moved = row < 7 ? cursor_ + 8 : cursor_; break;
    default:
      if (!editable_ || (event->text().isEmpty() && event->key() != Qt::Key_Delete)) {
        QWidget::keyPressEvent(event);
        return;
      }
      emit keyPressedOnSquare(cursor_, event->key(), event->text());
      return;
  }
  update(squareRect(cursor_));
  cursor_ = moved;
  update(squareRect(cursor_));
}

void BoardView::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  update(squareRect(cursor_));
}

void BoardView::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  update(squareRect(cursor_));
}

void BoardView::paintCoordinates(QPainter& painter, const QRegion& region) {
  const int band = coordinateBand();
  QFont font = painter.font();
  font.setPixelSize(qMax(9, band * 3 / 4));
  painter.setFont(font);
  painter.setPen(palette().color(QPalette::WindowText));
  for (int i = 0; i < 8; ++i) {
    const QRect file(origin_.x() + i * squareSize_, origin_.y() + 8 * squareSize_, squareSize_, band);
    const QRect rank(origin_.x() - band, origin_.y() + i * squareSize_, band, squareSize_);
    if (region.intersects(file)) painter.drawText(file, Qt::AlignCenter, QString(QChar('a' + i)));
    if (region.intersects(rank)) painter.drawText(rank, Qt::AlignCenter, QString::number(8 - i));
  }
}

void BoardView::mousePressEvent(QMouseEvent* event) {
  if (!editable_ || pressButton_ != Qt::NoButton) return;
  pressSquare_ = squareAt(event->position().toPoint());
  if (pressSquare_ < 0) return;
  pressButton_ = event->button();
  pressPosition_ = event->position().toPoint();
}

void BoardView::mouseMoveEvent(QMouseEvent* event) {
  if (dragging_ || pressButton_ != Qt::LeftButton) return;
  const int code = board_[static_cast<std::size_t>(pressSquare_)];
  if (code == 0) return;
  if ((event->position().toPoint() - pressPosition_).manhattanLength() < QApplication::startDragDistance()) return;
  dragging_ = true;
  QApplication::setOverrideCursor(QCursor(piecePixmap(code, squareSize_, devicePixelRatioF())));
  update(squareRect(pressSquare_));
}

void BoardView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != pressButton_ || pressSquare_ < 0) return;
  const int from = pressSquare_;
  const Qt::MouseButton button = pressButton_;
  if (dragging_) {
    endDrag();
    emit manDragged(from, squareAt(event->position().toPoint()));
  } else {
    pressSquare_ = -1;
    pressButton_ = Qt::NoButton;
    emit squareClicked(from, button);
  }
}

void BoardView::endDrag() {
  QApplication::restoreOverrideCursor();
  dragging_ = false;
  update(squareRect(pressSquare_));
  pressSquare_ = -1;
  pressButton_ = Qt::NoButton;
}

}  // namespace velkaro::ui
