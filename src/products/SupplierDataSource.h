#pragma once

#include "core/lwDataSource.h"

#include <QMetaObject>
#include <QPointer>

class ContactManager;

// The supplier contacts of the contact manager as a list of their own. It
// keeps no records: every question is answered by the contact manager, and
// any change there resets this list's views.
class SupplierDataSource : public lwDataSource
{
    Q_OBJECT
public:
    explicit SupplierDataSource(QObject *parent = nullptr);

    void setContactManager(ContactManager *manager);
    ContactManager *contactManager() const { return m_contactManager; }

    int getCount() const override;
    dataObject *getnthItem(qsizetype n) const override;
    dataObject *getItemById(int id) const override;

    int numberOfRowsInTableView() const override;
    // The field named by the column of the row's supplier. Each call leaves a
    // "request for item <row>" trace line on standard output.
    QString objectValueForTableColumn(const QString &identifier, int row) const override;
    // Columns of this list are never selected as a whole.
    bool shouldSelectTableColumn() const { return false; }

private:
    QPointer<ContactManager> m_contactManager;
    QList<QMetaObject::Connection> m_connections;
};
