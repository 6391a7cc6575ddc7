#include "products/SupplierDataSource.h"

#include "contacts/Contact.h"
#include "contacts/ContactManager.h"

#include <climits>
#include <cstdio>

SupplierDataSource::SupplierDataSource(QObject *parent) : lwDataSource(parent)
{
}

void SupplierDataSource::setContactManager(ContactManager *manager)
{
    beginResetModel();
    for (const QMetaObject::Connection &connection : std::as_const(m_connections))
        disconnect(connection);
    m_connections.clear();
    m_contactManager = manager;
    if (manager) {
        // The suppliers are a subset of the contacts that no row signal of the
        // manager maps onto: any change there starts this list afresh.
        const auto begin = [this] { beginResetModel(); };
        const auto end = [this] { endResetModel(); };
        m_connections = {
            connect(manager, &QAbstractItemModel::modelAboutToBeReset, this, begin),
            connect(manager, &QAbstractItemModel::modelReset, this, end),
            connect(manager, &QAbstractItemModel::rowsAboutToBeInserted, this, begin),
            connect(manager, &QAbstractItemModel::rowsInserted, this, end),
            connect(manager, &QAbstractItemModel::rowsAboutToBeRemoved, this, begin),
            connect(manager, &QAbstractItemModel::rowsRemoved, this, end),
            connect(manager, &QAbstractItemModel::layoutAboutToBeChanged, this, begin),
            connect(manager, &QAbstractItemModel::layoutChanged, this, end),
            connect(manager, &QAbstractItemModel::dataChanged, this,
                    [this] {
                        beginResetModel();
                        endResetModel();
                    }),
            connect(manager, &QObject::destroyed, this,
                    [this] {
                        beginResetModel();
                        endResetModel();
                    }),
        };
    }
    endResetModel();
}

int SupplierDataSource::getCount() const
{
    return m_contactManager ? m_contactManager->countSuppliers() : 0;
}

dataObject *SupplierDataSource::getnthItem(qsizetype n) const
{
    if (!m_contactManager || n > qsizetype(INT_MAX))
        return nullptr;
    return m_contactManager->getnthSupplier(int(n));
}

dataObject *SupplierDataSource::getItemById(int id) const
{
    return m_contactManager ? m_contactManager->getItemById(id) : nullptr;
}

int SupplierDataSource::numberOfRowsInTableView() const
{
    return getCount();
}

QString SupplierDataSource::objectValueForTableColumn(const QString &identifier, int row) const
{
    // A trace of every cell asked for, kept on purpose.
    std::printf("request for item %i\n", row);
    std::fflush(stdout);
    const Contact *supplier = m_contactManager ? m_contactManager->getnthSupplier(row) : nullptr;
    return supplier ? supplier->getFieldByName(identifier) : lwEmpty();
}
