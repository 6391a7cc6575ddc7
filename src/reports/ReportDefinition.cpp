#include "reports/ReportDefinition.h"

#include <QFile>
#include <QXmlStreamReader>

#include <variant>

namespace {

// A value of the dictionary: a string, or an array of strings and arrays.
struct Value
{
    QString text;
    QList<Value> items;
    bool isArray = false;
};

bool readValue(QXmlStreamReader &xml, Value &out);

bool readArray(QXmlStreamReader &xml, Value &out)
{
    out.isArray = true;
    while (xml.readNextStartElement()) {
        Value item;
        if (!readValue(xml, item))
            return false;
        out.items.append(item);
    }
    return !xml.hasError();
}

// Reads the element the reader stands on.
bool readValue(QXmlStreamReader &xml, Value &out)
{
    const auto name = xml.name();
    if (name == QLatin1String("array"))
        return readArray(xml, out);
    if (name == QLatin1String("true") || name == QLatin1String("false")) {
        out.text = name == QLatin1String("true") ? QStringLiteral("YES") : QStringLiteral("NO");
        xml.skipCurrentElement();
        return true;
    }
    if (name == QLatin1String("dict")) {
        xml.skipCurrentElement(); // nothing in a definition is a dictionary
        return !xml.hasError();
    }
    // string, integer, real, date: their text
    out.text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
    return !xml.hasError();
}

QStringList strings(const Value &value)
{
    QStringList out;
    for (const Value &item : value.items)
        out.append(item.text);
    return out;
}

QList<ReportDefinition::Condition> conditions(const Value &value)
{
    QList<ReportDefinition::Condition> out;
    for (const Value &item : value.items) {
        // Entries with fewer than three strings are outside what definitions
        // may hold; the missing parts read as empty rather than failing.
        const QStringList parts = strings(item);
        out.append({parts.value(0), parts.value(1), parts.value(2)});
    }
    return out;
}

} // namespace

bool ReportDefinition::read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    return readData(file.readAll());
}

bool ReportDefinition::readData(const QByteArray &data)
{
    QXmlStreamReader xml(data);
    if (!xml.readNextStartElement() || xml.name() != QLatin1String("plist") || !xml.readNextStartElement() ||
        xml.name() != QLatin1String("dict"))
        return false;
    ReportDefinition read;
    while (xml.readNextStartElement()) {
        if (xml.name() != QLatin1String("key"))
            return false;
        const QString key = xml.readElementText();
        if (!xml.readNextStartElement())
            return false;
        Value value;
        if (!readValue(xml, value))
            return false;
        if (key == QLatin1String("selectfrom"))
            read.selectfrom = value.text;
        else if (key == QLatin1String("colheadings"))
            read.colheadings = strings(value);
        else if (key == QLatin1String("colwidths"))
            read.colwidths = strings(value);
        else if (key == QLatin1String("fields"))
            read.fields = strings(value);
        else if (key == QLatin1String("where"))
            read.where = conditions(value);
        else if (key == QLatin1String("fields2")) {
            read.fields2 = strings(value);
            read.hasFields2 = true;
        } else if (key == QLatin1String("where2")) {
            read.where2 = conditions(value);
            read.hasWhere2 = true;
        } else if (key == QLatin1String("totalcol"))
            read.totalcol = columnIdentifier(value.text);
        else if (key == QLatin1String("total2col"))
            read.total2col = columnIdentifier(value.text);
        else if (key == QLatin1String("collationmatchcol"))
            read.collationmatchcol = columnIdentifier(value.text);
        else if (key == QLatin1String("collationqtycol"))
            read.collationqtycol = columnIdentifier(value.text);
    }
    if (xml.hasError())
        return false;
    *this = read;
    return true;
}
