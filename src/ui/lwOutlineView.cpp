#include "ui/lwOutlineView.h"

#include <QHeaderView>

lwOutlineView::lwOutlineView(QWidget *parent) : QTreeView(parent)
{
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    header()->setSectionsClickable(true);
    header()->setSectionsMovable(true);
    header()->setStretchLastSection(true);
}

void lwOutlineView::reloadData(QObject *)
{
    reset();
}
