// Every icon is drawn on a 32 by 32 grid that the painter scales to the size
// asked for. The transformations share a small chequered board under their
// arrows, so that they read as one family.

#include "ui/tool_icons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <cmath>

#include "ui/commands.h"

namespace velkaro::ui {
namespace {

const QColor kInk(0x30, 0x30, 0x38);
const QColor kArrow(0x1e, 0x5a, 0xb4);
const QColor kPaper(0xfa, 0xfa, 0xf4);

void drawMiniBoard(QPainter& p) {
  p.setPen(Qt::NoPen);
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      p.setBrush((row + column) % 2 ? QColor(0xc8, 0xa8, 0x84) : QColor(0xf0, 0xe2, 0xc8));
      p.drawRect(QRectF(4 + column * 6, 4 + row * 6, 6, 6));
    }
  }
  p.setPen(QPen(QColor(0x8a, 0x6a, 0x4a), 1));
  p.setBrush(Qt::NoBrush);
  p.drawRect(QRectF(4, 4, 24, 24));
}

void drawArrowHead(QPainter& p, QPointF tip, qreal angle) {
  const qreal size = 6;
  QPainterPath head;
  head.moveTo(tip);
  head.lineTo(tip - QPointF(std::cos(angle - 0.5) * size, std::sin(angle - 0.5) * size));
  head.lineTo(tip - QPointF(std::cos(angle + 0.5) * size, std::sin(angle + 0.5) * size));
  head.closeSubpath();
  p.setPen(Qt::NoPen);
  p.setBrush(kArrow);
  p.drawPath(head);
}

void drawArrow(QPainter& p, QPointF from, QPointF to, bool bothEnds) {
  const qreal angle = std::atan2(to.y() - from.y(), to.x() - from.x());
  p.setPen(QPen(kArrow, 2.6, Qt::SolidLine, Qt::FlatCap));
  const QPointF inset(std::cos(angle) * 4, std::sin(angle) * 4);
  p.drawLine(bothEnds ? from + inset : from, to - inset);
  drawArrowHead(p, to, angle);
  if (bothEnds) drawArrowHead(p, from, angle + M_PI);
}

// Three quarters of a circle from 12 o'clock, ending at 3 o'clock when turning
// left and at 9 o'clock when turning right; either way the head points up.
void drawTurn(QPainter& p, bool clockwise) {
  p.setPen(QPen(kArrow, 2.6, Qt::SolidLine, Qt::FlatCap));
  p.setBrush(Qt::NoBrush);
  p.drawArc(QRectF(9, 9, 14, 14), 90 * 16, (clockwise ? -270 : 270) * 16);
  drawArrowHead(p, QPointF(clockwise ? 9 : 23, 12), -M_PI / 2);
}

void drawPage(QPainter& p, QRectF page) {
  QPainterPath sheet;
  sheet.moveTo(page.topLeft());
  sheet.lineTo(page.right() - 6, page.top());
  sheet.lineTo(page.right(), page.top() + 6);
  sheet.lineTo(page.bottomRight());
  sheet.lineTo(page.bottomLeft());
  sheet.closeSubpath();
  p.setPen(QPen(kInk, 1.5));
  p.setBrush(kPaper);
  p.drawPath(sheet);
  p.setPen(QPen(kInk, 1.2));
  for (qreal y = page.top() + 9; y < page.bottom() - 3; y += 4) {
    p.drawLine(QPointF(page.left() + 3, y), QPointF(page.right() - 3, y));
  }
}

void drawFolder(QPainter& p) {
  QPainterPath folder;
  folder.moveTo(3, 9);
  folder.lineTo(12, 9);
  folder.lineTo(15, 12);
  folder.lineTo(29, 12);
  folder.lineTo(29, 26);
  folder.lineTo(3, 26);
  folder.closeSubpath();
  p.setPen(QPen(kInk, 1.5));
  p.setBrush(QColor(0xf2, 0xc0, 0x4a));
  p.drawPath(folder);
}

void drawDisk(QPainter& p) {
  p.setPen(QPen(kInk, 1.5));
  p.setBrush(QColor(0x3c, 0x6e, 0xc8));
  p.drawRoundedRect(QRectF(4, 4, 24, 24), 2, 2);
  p.setBrush(kPaper);
  p.drawRect(QRectF(9, 4, 14, 9));
  p.setBrush(QColor(0xdd, 0xdd, 0xdd));
  p.drawRect(QRectF(8, 18, 16, 10));
}

void drawPrinter(QPainter& p) {
  p.setPen(QPen(kInk, 1.5));
  p.setBrush(kPaper);
  p.drawRect(QRectF(9, 4, 14, 9));
  p.setBrush(QColor(0x9a, 0xa0, 0xaa));
  p.drawRoundedRect(QRectF(3, 12, 26, 11), 2, 2);
  p.setBrush(kPaper);
  p.drawRect(QRectF(9, 19, 14, 9));
}

void drawStopSign(QPainter& p) {
  QPolygonF octagon;
  for (int corner = 0; corner < 8; ++corner) {
    const qreal angle = M_PI / 8 + corner * M_PI / 4;
    octagon << QPointF(16 + 13 * std::cos(angle), 16 + 13 * std::sin(angle));
  }
  p.setPen(QPen(kInk, 1.2));
  p.setBrush(QColor(0xc8, 0x28, 0x28));
  p.drawPolygon(octagon);
  QFont font(QStringLiteral("DejaVu Sans"));
  font.setBold(true);
  font.setPixelSize(16);
  p.setFont(font);
  p.setPen(Qt::white);
  p.drawText(QRectF(0, 0, 32, 32), Qt::AlignCenter, QStringLiteral("1"));
}

void drawMinimum(QPainter& p) {
  QFont font(QStringLiteral("DejaVu Sans"));
  font.setBold(true);
  font.setPixelSize(13);
  p.setFont(font);
  p.setPen(kInk);
  p.drawText(QRectF(0, 0, 32, 17), Qt::AlignCenter, QStringLiteral("#n"));
  drawArrow(p, QPointF(16, 17), QPointF(16, 30), false);
}

void drawFlip(QPainter& p) {
  drawMiniBoard(p);
  p.setPen(QPen(kInk, 1.2));
  p.setBrush(Qt::white);
  p.drawEllipse(QPointF(11, 22), 4.5, 4.5);
  p.setBrush(kInk);
  p.drawEllipse(QPointF(11, 10), 4.5, 4.5);
  drawArrow(p, QPointF(22, 7), QPointF(22, 25), true);
}

void paintCommand(QPainter& p, int command) {
  switch (command) {
    case ToolOpen: drawFolder(p); break;
    case ToolSave: drawDisk(p); break;
    case ToolPrint: drawPrinter(p); break;
    case ToolImportFen:
      drawPage(p, QRectF(12, 3, 17, 26));
      drawArrow(p, QPointF(2, 16), QPointF(14, 16), false);
      break;
    case ToolExportFen:
      drawPage(p, QRectF(3, 3, 17, 26));
      drawArrow(p, QPointF(16, 16), QPointF(30, 16), false);
      break;
    case ToolStopOnFirstSolution: drawStopSign(p); break;
    case ToolSearchMinimumMoves: drawMinimum(p); break;
    case FlipPosition: drawFlip(p); break;
    default:
      drawMiniBoard(p);
      switch (command) {
        case VerticalMirror: drawArrow(p, QPointF(16, 6), QPointF(16, 26), true); break;
        case HorizontalMirror: drawArrow(p, QPointF(6, 16), QPointF(26, 16), true); break;
        case RotateLeft: drawTurn(p, false); break;
        case RotateRight: drawTurn(p, true); break;
        case MoveUp: drawArrow(p, QPointF(16, 27), QPointF(16, 5), false); break;
        case MoveDown: drawArrow(p, QPointF(16, 5), QPointF(16, 27), false); break;
        case MoveLeft: drawArrow(p, QPointF(27, 16), QPointF(5, 16), false); break;
        case MoveRight: drawArrow(p, QPointF(5, 16), QPointF(27, 16), false); break;
        default: break;
      }
  }
}

class PaintedIcon : public QIconEngine {
 public:
  explicit PaintedIcon(int command) : command_(command) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setRenderHint(QPainter::TextAntialiasing);
    if (mode == QIcon::Disabled) painter->setOpacity(0.35);
    const qreal side = qMin(rect.width(), rect.height());
    painter->translate(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
    painter->scale(side / 32, side / 32);
    paintCommand(*painter, command_);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
  }

  QIconEngine* clone() const override { return new PaintedIcon(command_); }

 private:
  int command_;
};

}  // namespace

QIcon toolIcon(int command) { return QIcon(new PaintedIcon(command)); }

}  // namespace velkaro::ui
