#pragma once

#include "core/lwDataSource.h"

#include <functional>

// A collection whose table shows each visible record's fields by column
// identifier: what every list shows until its manager brings its own rules.
class RecordTable : public lwDataSource
{
    Q_OBJECT
public:
    using DateTest = std::function<bool(const QString &column)>;

    explicit RecordTable(DateTest isDate = {}, QObject *parent = nullptr);

    QString objectValueForTableColumn(const QString &identifier, int row) const override;
    bool isDateColumn(const QString &identifier) const override;

private:
    DateTest m_isDate;
};
