#pragma once

#include <QHash>
#include <QStringList>

// The arguments of one command: options that take a value ("--db PATH" or
// "--db=PATH"), flags, and the positional arguments in order.
class CommandLine
{
public:
    CommandLine(const QStringList &args, const QStringList &valueOptions, const QStringList &flags = {});

    bool ok() const { return m_error.isEmpty(); }
    const QString &error() const { return m_error; }
    QString option(const QString &name) const { return m_values.value(name); }
    bool has(const QString &name) const { return m_values.contains(name); }
    const QStringList &positional() const { return m_positional; }
    // The database bundle named by --db ("~" expanded), or the one the
    // location preference names.
    QString bundleFolder() const;

private:
    QHash<QString, QString> m_values;
    QStringList m_positional;
    QString m_error;
};
