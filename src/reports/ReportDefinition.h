#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// One report definition file: an XML property list whose dictionary says
// which collection to read, which records give rows, which fields become the
// columns and which columns are totalled or collated.
struct ReportDefinition
{
    // (field, operator, value); the operator is "=", "!", ">" or "<".
    struct Condition
    {
        QString field;
        QString op;
        QString value;
    };

    QString selectfrom;
    QStringList colheadings;
    QStringList colwidths;
    QStringList fields;
    QList<Condition> where;
    QStringList fields2;
    QList<Condition> where2;
    bool hasFields2 = false;
    bool hasWhere2 = false;
    // Column identifiers, "field" and the column number, or "field-1" for none.
    QString totalcol = QStringLiteral("field-1");
    QString total2col = QStringLiteral("field-1");
    QString collationmatchcol = QStringLiteral("field-1");
    QString collationqtycol = QStringLiteral("field-1");

    // Reads the file; false when it is missing or not a property list, and
    // the definition then stays empty.
    bool read(const QString &path);
    bool readData(const QByteArray &data);

    static QString columnIdentifier(const QString &number) { return QStringLiteral("field") + number; }
};
