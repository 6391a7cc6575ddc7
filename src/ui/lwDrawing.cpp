#include "ui/lwDrawing.h"

#include "core/Platform.h"
#include "core/lwDataSource.h"

#include <QAbstractItemView>
#include <QPainter>

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

void emptyListText(QAbstractItemView *view)
{
    const auto *source = qobject_cast<const lwDataSource *>(view->model());
    if (!source || source->rowCount() > 0)
        return;
    // A view showing one slice of its list (an order's lines) says its own text.
    const QVariant sliceText = view->property("noRowsText");
    const QString text = sliceText.isValid()         ? sliceText.toString()
                         : source->getCount() == 0 ? view->property("emptyText").toString()
                                                   : lwTr("Nothing matches the search or the filter.");
    if (text.isEmpty())
        return;
    QPainter painter(view->viewport());
    painter.setPen(view->palette().color(QPalette::PlaceholderText));
    const QRect area = view->viewport()->rect().adjusted(24, 24, -24, -24);
    painter.drawText(area, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, text);
}

} // namespace lwDrawing
