#pragma once

#include "core/dataObject.h"

#include <QHash>
#include <QString>
#include <QStringList>

// A record with free-form fields, for testing the collection base.
class TestRecord : public dataObject
{
public:
    explicit TestRecord(const QString &name = {}, int id = 0)
    {
        fields.insert(QStringLiteral("name"), name);
        setID(id);
    }
    QString getFieldByName(const QString &name) const override { return fields.value(name, QStringLiteral("")); }
    bool setFieldByName(const QString &name, const QString &value) override
    {
        fields.insert(name, value);
        return true;
    }
    QString name() const { return fields.value(QStringLiteral("name")); }

    QHash<QString, QString> fields;
};

// Writes one field by name and tells which of the names given then read
// differently, in their order; a refused write reads "(refused)".
inline QStringList namesChangedByWriting(dataObject &record, const QStringList &names, const QString &name,
                                         const QString &value)
{
    QStringList before, changed;
    for (const QString &read : names)
        before << record.getFieldByName(read);
    if (!record.setFieldByName(name, value))
        return {QStringLiteral("(refused)")};
    for (qsizetype i = 0; i < names.size(); ++i)
        if (record.getFieldByName(names.at(i)) != before.at(i))
            changed << names.at(i);
    return changed;
}
