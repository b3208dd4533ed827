// A Black man is the solid figure (U+265A-U+265F) filled black; its inner
// lines are holes in it. A White man is drawn in two layers: the outline of
// the hollow figure (U+2654-U+2659), filled white so that the square does not
// show through, and the hollow figure itself in black over it.

#include "ui/piece_painter.h"

#include <QFont>
#include <QPainter>
#include <QPainterPath>
#include <array>

#include "core/position.h"

namespace velkaro::ui {
namespace {

constexpr int kKinds = 6;  // king, queen, rook, bishop, knight, pawn: the order of the figures
constexpr int kKindCodes[kKinds] = {core::piece::King,   core::piece::Queen,  core::piece::Rook,
                                    core::piece::Bishop, core::piece::Knight, core::piece::Pawn};
constexpr char16_t kHollowKing = 0x2654;
constexpr char16_t kSolidKing = 0x265A;

struct Figures {
  std::array<QPainterPath, kKinds> solid;
  std::array<QPainterPath, kKinds> hollow;
  std::array<QPainterPath, kKinds> whiteBody;
  qreal top = 0;     // over all figures, so that a pawn stays smaller than a king
  qreal height = 1;
};

// The figure's outer contours only: a contour that lies within a larger one
// is an inner line, not part of the outline.
QPainterPath outlineOf(const QPainterPath& figure) {
  const QList<QPolygonF> contours = figure.toSubpathPolygons();
  QPainterPath outline;
  outline.setFillRule(Qt::WindingFill);
  for (const QPolygonF& contour : contours) {
    const qreal extent = contour.boundingRect().width() * contour.boundingRect().height();
    bool inner = false;
    for (const QPolygonF& other : contours) {
      const QRectF bounds = other.boundingRect();
      if (&other != &contour && bounds.width() * bounds.height() > extent &&
          other.containsPoint(contour.first(), Qt::OddEvenFill)) {
        inner = true;
        break;
      }
    }
    if (!inner) outline.addPolygon(contour);
  }
  return outline;
}

Figures makeFigures() {
  QFont font(QStringLiteral("DejaVu Sans"));
  font.setPixelSize(100);
  Figures figures;
  qreal top = 0;
  qreal bottom = 0;
  for (int kind = 0; kind < kKinds; ++kind) {
    figures.solid[kind].addText(0, 0, font, QString(QChar(kSolidKing + kind)));
    figures.hollow[kind].addText(0, 0, font, QString(QChar(kHollowKing + kind)));
    figures.whiteBody[kind] = outlineOf(figures.hollow[kind]);
    const QRectF bounds = figures.solid[kind].boundingRect().united(figures.hollow[kind].boundingRect());
    top = kind == 0 ? bounds.top() : qMin(top, bounds.top());
    bottom = kind == 0 ? bounds.bottom() : qMax(bottom, bounds.bottom());
  }
  figures.top = top;
  figures.height = qMax<qreal>(1, bottom - top);
  return figures;
}

// Built on first use, once the application (and with it the font database) exists.
const Figures& figures() {
  static const Figures shapes = makeFigures();
  return shapes;
}

int kindOf(int code) {
  const int magnitude = code < 0 ? -code : code;
  for (int kind = 0; kind < kKinds; ++kind) {
    if (kKindCodes[kind] == magnitude) return kind;
  }
  return -1;
}

}  // namespace

void paintPiece(QPainter& painter, const QRectF& box, int code) {
  const int kind = kindOf(code);
  if (kind < 0) return;
  const Figures& shapes = figures();
  const qreal scale = box.height() * 0.8 / shapes.height;
  const QPainterPath& figure = code > 0 ? shapes.hollow[kind] : shapes.solid[kind];
  const QRectF bounds = figure.boundingRect();
  const qreal x = box.center().x() - bounds.center().x() * scale;
  const qreal y = box.top() + (box.height() - shapes.height * scale) / 2 - shapes.top * scale;

  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.translate(x, y);
  painter.scale(scale, scale);
  if (code > 0) {
    painter.setBrush(QColor(0xfb, 0xf8, 0xf0));
    painter.drawPath(shapes.whiteBody[kind]);
  }
  painter.setBrush(QColor(0x1c, 0x1c, 0x1c));
  painter.drawPath(figure);
  painter.restore();
}

QPixmap piecePixmap(int code, int size, qreal devicePixelRatio) {
  QPixmap pixmap(QSize(size, size) * devicePixelRatio);
  pixmap.setDevicePixelRatio(devicePixelRatio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  paintPiece(painter, QRectF(0, 0, size, size), code);
  return pixmap;
}

}  // namespace velkaro::ui
