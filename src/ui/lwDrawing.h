#pragma once

#include <QPainterPath>
#include <QRectF>

class QAbstractItemView;

// Additions to path drawing used by the lists and buttons.
namespace lwDrawing {

// A rectangle with its corners rounded by the radius (clamped to half the
// shorter side).
QPainterPath roundedRect(const QRectF &rect, qreal radius);
// A rectangle whose short ends are half circles.
QPainterPath pill(const QRectF &rect);
// Over an empty list, what to do: the view's "emptyText" property while its
// records are none at all, a short note when a search or filter hides them all.
void emptyListText(QAbstractItemView *view);

} // namespace lwDrawing
