#include "ui/lwOutlineView.h"

#include "ui/lwDrawing.h"

#include <QHeaderView>
#include <QStyledItemDelegate>

namespace {

// Rows as tall as the tables' rows, so that every list reads alike.
class RowHeightDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        size.setHeight(qMax(size.height(), option.fontMetrics.height() + 8));
        return size;
    }
};

} // namespace

lwOutlineView::lwOutlineView(QWidget *parent) : QTreeView(parent)
{
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformRowHeights(true);
    setItemDelegate(new RowHeightDelegate(this));
    setAlternatingRowColors(true);
    header()->setSectionsClickable(true);
    header()->setSectionsMovable(true);
    header()->setStretchLastSection(true);
}

void lwOutlineView::reloadData(QObject *)
{
    reset();
}

void lwOutlineView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    lwDrawing::emptyListText(this);
}
