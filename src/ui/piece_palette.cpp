// The palette's buttons paint their man themselves, so they scale with the
// font and stay sharp; the letter sits in the button's corner.

#include "ui/piece_palette.h"

#include <QApplication>
#include <QButtonGroup>
#include <QGridLayout>
#include <QMouseEvent>
#include <QPainter>

#include "core/position.h"
#include "ui/piece_painter.h"

namespace velkaro::ui {
namespace {

constexpr int kCodes[6] = {core::piece::King,   core::piece::Queen,  core::piece::Rook,
                           core::piece::Bishop, core::piece::Knight, core::piece::Pawn};
const char* const kNames[6] = {"King", "Queen", "Rook", "Bishop", "Knight", "Pawn"};

}  // namespace

PaletteButton::PaletteButton(int code, QWidget* parent) : QAbstractButton(parent), code_(code) {
  setCheckable(true);
  setFocusPolicy(Qt::NoFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize PaletteButton::sizeHint() const {
  const int side = side_ > 0 ? side_ : fontMetrics().height() * 3;
  return {side, side};
}

void PaletteButton::setSide(int side) {
  side_ = side;
  setFixedSize(sizeHint());
}

void PaletteButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRectF box = QRectF(rect()).adjusted(1, 1, -1, -1);
  painter.fillRect(box, isChecked() || isDown() ? palette().color(QPalette::Highlight).lighter(150)
                                                : palette().color(QPalette::Button));
  painter.setPen(isChecked() ? palette().color(QPalette::Highlight) : palette().color(QPalette::Mid));
  painter.drawRect(box);
  // The letter takes the top-left corner; the man keeps clear of it.
  const qreal letterSize = qMax<qreal>(8, box.height() / 4);
  paintPiece(painter, box.adjusted(letterSize * 0.6, letterSize * 0.5, -1, -1), code_);
  if (!text().isEmpty()) {
    QFont font = painter.font();
    font.setBold(true);
    font.setPixelSize(qRound(letterSize));
    painter.setFont(font);
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.drawText(box.adjusted(3, 1, 0, 0), Qt::AlignLeft | Qt::AlignTop, text());
  }
}

void PaletteButton::mousePressEvent(QMouseEvent* event) {
  leftPressed_ = event->button() == Qt::LeftButton;
  pressPosition_ = event->position().toPoint();
  QAbstractButton::mousePressEvent(event);
}

void PaletteButton::mouseMoveEvent(QMouseEvent* event) {
  if (dragging_) return;
  if (!leftPressed_ ||
      (event->position().toPoint() - pressPosition_).manhattanLength() < QApplication::startDragDistance()) {
    QAbstractButton::mouseMoveEvent(event);
    return;
  }
  dragging_ = true;
  setDown(false);
  setChecked(true);
  QApplication::setOverrideCursor(QCursor(piecePixmap(code_, height(), devicePixelRatioF())));
}

void PaletteButton::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) leftPressed_ = false;
  if (!dragging_ || event->button() != Qt::LeftButton) {
    QAbstractButton::mouseReleaseEvent(event);
    return;
  }
  dragging_ = false;
  QApplication::restoreOverrideCursor();
  emit dropped(code_, event->globalPosition().toPoint());
}

PiecePalette::PiecePalette(QWidget* parent) : QWidget(parent), group_(new QButtonGroup(this)) {
  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  for (int row = 0; row < 2; ++row) {
    const int side = row == 0 ? core::White : core::Black;
    for (int kind = 0; kind < 6; ++kind) {
      auto* button = new PaletteButton(side * kCodes[kind], this);
      button->setToolTip(QStringLiteral("%1 %2").arg(row == 0 ? "White" : "Black", kNames[kind]));
      group_->addButton(button);
      layout->addWidget(button, row, kind);
      connect(button, &PaletteButton::dropped, this, &PiecePalette::pieceDropped);
      buttons_[static_cast<std::size_t>(row * 6 + kind)] = button;
    }
  }
  buttons_[0]->setChecked(true);
}

int PiecePalette::selectedPiece() const {
  const auto* checked = static_cast<PaletteButton*>(group_->checkedButton());
  return checked ? checked->code() : 0;
}

void PiecePalette::setButtonSide(int side) {
  for (PaletteButton* button : buttons_) button->setSide(side);
}

void PiecePalette::selectPiece(int code) {
  if (PaletteButton* wanted = button(code)) wanted->setChecked(true);
}

void PiecePalette::setLetters(std::string_view letters) {
  for (std::size_t index = 0; index < buttons_.size(); ++index) {
    const std::size_t kind = index % 6;
    buttons_[index]->setText(kind < letters.size() ? QString(QChar(letters[kind])) : QString());
  }
}

PaletteButton* PiecePalette::button(int code) const {
  for (PaletteButton* candidate : buttons_) {
    if (candidate->code() == code) return candidate;
  }
  return nullptr;
}

}  // namespace velkaro::ui
