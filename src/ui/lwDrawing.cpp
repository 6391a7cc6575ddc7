#include "ui/lwDrawing.h"

#include <algorithm>

namespace lwDrawing {

QPainterPath roundedRect(const QRectF &rect, qreal radius)
{
    QPainterPath path;
    const qreal r = std::clamp(radius, qreal(0), std::min(rect.width(), rect.height()) / 2);
    path.addRoundedRect(rect, r, r);
    return path;
}

QPainterPath pill(const QRectF &rect)
{
    return roundedRect(rect, std::min(rect.width(), rect.height()) / 2);
}

} // namespace lwDrawing
