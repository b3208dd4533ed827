#pragma once
// Chess men drawn from the outlines of the chess figures in DejaVu Sans, as
// vector paths: they stay sharp at every square size and screen density.

#include <QPixmap>
#include <QRectF>

class QPainter;

namespace velkaro::ui {

// Draws the man with piece code `code` (White positive) into `box`; an empty
// square (0) or an unknown code draws nothing.
void paintPiece(QPainter& painter, const QRectF& box, int code);

// The man alone on a transparent square of `size` logical pixels, for the
// cursor while a man is dragged.
QPixmap piecePixmap(int code, int size, qreal devicePixelRatio);

}  // namespace velkaro::ui
