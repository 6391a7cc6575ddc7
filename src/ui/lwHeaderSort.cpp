#include "ui/lwHeaderSort.h"

#include <QAbstractItemModel>
#include <QHeaderView>

void lwSortOnHeaderClicks(QHeaderView *header, QAbstractItemModel *model)
{
    QObject::connect(header, &QHeaderView::sectionClicked, model, [header, model](int section) {
        const bool ascending = !header->property("lwAscending").toBool();
        header->setProperty("lwAscending", ascending);
        model->sort(section, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
    });
}
