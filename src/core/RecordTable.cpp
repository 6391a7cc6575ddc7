#include "core/RecordTable.h"

RecordTable::RecordTable(DateTest isDate, QObject *parent) : lwDataSource(parent), m_isDate(std::move(isDate))
{
}

QString RecordTable::objectValueForTableColumn(const QString &identifier, int row) const
{
    const dataObject *record = getnthVisibleItem(row);
    return record ? record->getFieldByName(identifier) : QString(QLatin1String(""));
}

bool RecordTable::isDateColumn(const QString &identifier) const
{
    return m_isDate && m_isDate(identifier);
}
