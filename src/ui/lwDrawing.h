#pragma once

#include <QPainterPath>
#include <QRectF>

// Additions to path drawing used by the lists and buttons.
namespace lwDrawing {

// A rectangle with its corners rounded by the radius (clamped to half the
// shorter side).
QPainterPath roundedRect(const QRectF &rect, qreal radius);
// A rectangle whose short ends are half circles.
QPainterPath pill(const QRectF &rect);

} // namespace lwDrawing
