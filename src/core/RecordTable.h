#pragma once

#include "core/lwDataSource.h"

#include <functional>
#include <memory>

// A collection whose table shows each visible record's fields by column
// identifier: what every list shows until its manager brings its own rules.
class RecordTable : public lwDataSource
{
    Q_OBJECT
public:
    using DateTest = std::function<bool(const QString &column)>;
    // Makes a new record of the list's kind with its defaults.
    using Factory = std::function<std::shared_ptr<dataObject>()>;

    explicit RecordTable(DateTest isDate = {}, QObject *parent = nullptr);

    // Without a factory the list cannot import.
    void setFactory(Factory factory) { m_factory = std::move(factory); }
    dataObject *createAndAddDataObject() override;

    QString objectValueForTableColumn(const QString &identifier, int row) const override;
    bool isDateColumn(const QString &identifier) const override;

private:
    DateTest m_isDate;
    Factory m_factory;
};
