#include "reports/ReportItem.h"

#include "core/NumberText.h"

namespace {

QString kindDate()
{
    return QStringLiteral("DATE");
}
QString kindNumber()
{
    return QStringLiteral("NUMBER");
}
QString kindString()
{
    return QStringLiteral("STRING");
}

bool isDigit(QChar c)
{
    return c.unicode() >= '0' && c.unicode() <= '9';
}

} // namespace

ReportItem::ReportItem() = default;

void ReportItem::addField(const QString &text)
{
    m_fields.append(text.isNull() ? lwEmpty() : text);
    m_attributes.append(isDate(text) ? kindDate() : isNumeric(text) ? kindNumber() : kindString());
}

QString ReportItem::getnthField(qsizetype n) const
{
    if (n < 1 || n > m_fields.size())
        return lwEmpty();
    return m_fields.at(n - 1);
}

qsizetype ReportItem::fieldNumber(const QString &name)
{
    if (name.size() < 6)
        return 0;
    return NumberText::intValue(name.mid(5));
}

QString ReportItem::getFieldByName(const QString &name) const
{
    return getnthField(fieldNumber(name));
}

bool ReportItem::setFieldByName(const QString &name, const QString &value)
{
    const qsizetype n = fieldNumber(name);
    if (n >= 1 && n <= m_fields.size())
        m_fields[n - 1] = value.isNull() ? lwEmpty() : value;
    return true;
}

bool ReportItem::contains(const QString &text) const
{
    // An empty search text matches nothing; the callers test for "" themselves.
    if (text.isEmpty())
        return false;
    for (const QString &field : m_fields)
        if (field.contains(text, Qt::CaseInsensitive))
            return true;
    return false;
}

QString ReportItem::attributeOf(qsizetype n) const
{
    if (n < 1 || n > m_attributes.size())
        return QString();
    return m_attributes.at(n - 1);
}

bool ReportItem::nthFieldIsNumeric(qsizetype n) const
{
    return attributeOf(n) == kindNumber();
}

bool ReportItem::nthFieldIsDate(qsizetype n) const
{
    return attributeOf(n) == kindDate();
}

bool ReportItem::isNumeric(const QString &text)
{
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && text.at(i).isSpace())
        ++i;
    if (i < n && (text.at(i) == QLatin1Char('+') || text.at(i) == QLatin1Char('-')))
        ++i;
    bool digits = false;
    while (i < n && isDigit(text.at(i))) {
        ++i;
        digits = true;
    }
    if (i < n && text.at(i) == QLatin1Char('.')) {
        ++i;
        while (i < n && isDigit(text.at(i))) {
            ++i;
            digits = true;
        }
    }
    return digits;
}

bool ReportItem::isDate(const QString &text)
{
    if (text.size() < 8)
        return false;
    if (text.at(2) == QLatin1Char('/') || text.at(5) == QLatin1Char('/'))
        return false;
    for (qsizetype start : {0, 3, 6})
        if (isNumeric(text.mid(start, 2)))
            return false;
    return true;
}
