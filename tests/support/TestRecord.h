#pragma once

#include "core/dataObject.h"

#include <QHash>
#include <QString>

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
