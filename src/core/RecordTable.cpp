#include "core/RecordTable.h"

RecordTable::RecordTable(DateTest isDate, QObject *parent) : lwDataSource(parent), m_isDate(std::move(isDate))
{
}

QString RecordTable::objectValueForTableColumn(const QString &identifier, int row) const
{
    const dataObject *record = getnthVisibleItem(row);
    return record ? record->getFieldByName(identifier) : lwEmpty();
}

bool RecordTable::isDateColumn(const QString &identifier) const
{
    return m_isDate && m_isDate(identifier);
}

dataObject *RecordTable::createAndAddDataObject()
{
    if (!m_factory)
        return nullptr;
    std::shared_ptr<dataObject> record = m_factory();
    if (!record)
        return nullptr;
    dataObject *added = record.get();
    add(std::move(record));
    return added;
}
