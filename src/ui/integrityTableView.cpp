#include "ui/integrityTableView.h"

#include "core/lwDataSource.h"
#include "ui/lwDrawing.h"

#include <QHeaderView>
#include <QPainter>

integrityTableView::integrityTableView(QWidget *parent) : QTableView(parent)
{
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSortingEnabled(false);
    setShowGrid(false);
    setWordWrap(false);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setStretchLastSection(true);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
}

void integrityTableView::setRowColour(const QColor &colour)
{
    if (colour == m_rowColour)
        return;
    m_rowColour = colour;
    viewport()->update();
}

void integrityTableView::paintEvent(QPaintEvent *event)
{
    if (model()) {
        QPainter painter(viewport());
        painter.setRenderHint(QPainter::Antialiasing);
        const int first = rowAt(0);
        const int last = rowAt(viewport()->height() - 1);
        const int end = last < 0 ? model()->rowCount() - 1 : last;
        for (int row = first < 0 ? 0 : first; row <= end && first >= 0; ++row) {
            const QVariant colour = m_rowColour.isValid() ? QVariant(m_rowColour)
                                                          : model()->index(row, 0).data(lwDataSource::LabelColorRole);
            if (!colour.isValid())
                continue;
            const QRect band(0, rowViewportPosition(row), viewport()->width(), rowHeight(row));
            painter.fillPath(lwDrawing::roundedRect(QRectF(band).adjusted(1.5, 1.5, -1.5, -1.5), 6),
                             colour.value<QColor>());
        }
    }
    QTableView::paintEvent(event);
    lwDrawing::emptyListText(this);
}
