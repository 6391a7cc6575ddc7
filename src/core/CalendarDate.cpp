#include "core/CalendarDate.h"

#include <QDateTime>

namespace {

// Reads up to maxDigits decimal digits at pos; false when there is none.
bool readNumber(const QString &text, qsizetype &pos, int maxDigits, int &value)
{
    value = 0;
    int digits = 0;
    while (pos < text.size() && digits < maxDigits && text.at(pos).isDigit() && text.at(pos).unicode() < 128) {
        value = value * 10 + (text.at(pos).unicode() - '0');
        ++pos;
        ++digits;
    }
    return digits > 0;
}

QString padded(int value, int width)
{
    QString s = QString::number(value < 0 ? -value : value);
    if (s.size() < width)
        s.prepend(QString(width - s.size(), QLatin1Char('0')));
    return value < 0 ? QLatin1Char('-') + s : s;
}

} // namespace

CalendarDate::CalendarDate(QDate date, QTime time, int utcOffsetSeconds)
    : m_date(date), m_time(time.isValid() ? time : QTime(0, 0)), m_offset(utcOffsetSeconds)
{
}

CalendarDate CalendarDate::fromString(const QString &text, const QString &format)
{
    int day = 1, month = 1, year = 2000, hour = 0, minute = 0, second = 0, offset = 0;
    qsizetype pos = 0;
    const QString input = text;
    for (qsizetype f = 0; f < format.size(); ++f) {
        const QChar fc = format.at(f);
        if (fc != QLatin1Char('%')) {
            if (pos >= input.size() || input.at(pos) != fc)
                return {};
            ++pos;
            continue;
        }
        ++f;
        while (f < format.size() && format.at(f).isDigit())
            ++f; // a width only matters when formatting
        if (f >= format.size())
            return {};
        const char conv = format.at(f).toLatin1();
        int value = 0;
        switch (conv) {
        case '%':
            if (pos >= input.size() || input.at(pos) != QLatin1Char('%'))
                return {};
            ++pos;
            break;
        case 'd':
            if (!readNumber(input, pos, 2, day))
                return {};
            break;
        case 'm':
            if (!readNumber(input, pos, 2, month))
                return {};
            break;
        case 'y':
            if (!readNumber(input, pos, 2, value))
                return {};
            year = value <= 68 ? 2000 + value : 1900 + value;
            break;
        case 'Y':
            if (!readNumber(input, pos, 4, year))
                return {};
            break;
        case 'H':
            if (!readNumber(input, pos, 2, hour))
                return {};
            break;
        case 'M':
            if (!readNumber(input, pos, 2, minute))
                return {};
            break;
        case 'S':
            if (!readNumber(input, pos, 2, second))
                return {};
            break;
        case 'z': {
            if (pos >= input.size())
                return {};
            const QChar sign = input.at(pos);
            if (sign != QLatin1Char('+') && sign != QLatin1Char('-'))
                return {};
            ++pos;
            const qsizetype start = pos;
            if (!readNumber(input, pos, 4, value) || pos - start != 4)
                return {};
            offset = (value / 100) * 3600 + (value % 100) * 60;
            if (sign == QLatin1Char('-'))
                offset = -offset;
            break;
        }
        default:
            return {}; // a pattern this reader does not know
        }
    }
    while (pos < input.size() && input.at(pos).isSpace())
        ++pos;
    if (pos != input.size())
        return {};
    const QDate date(year, month, day);
    const QTime time(hour, minute, second);
    if (!date.isValid() || !time.isValid())
        return {};
    return CalendarDate(date, time, offset);
}

CalendarDate CalendarDate::currentDate()
{
    const QDateTime now = QDateTime::currentDateTime();
    const QTime t = now.time();
    return CalendarDate(now.date(), QTime(t.hour(), t.minute(), t.second()), now.offsetFromUtc());
}

QString CalendarDate::toString(const QString &format) const
{
    if (!isValid())
        return {};
    QString out;
    out.reserve(format.size() + 8);
    for (qsizetype f = 0; f < format.size(); ++f) {
        const QChar fc = format.at(f);
        if (fc != QLatin1Char('%')) {
            out += fc;
            continue;
        }
        ++f;
        int width = -1;
        while (f < format.size() && format.at(f).isDigit()) {
            width = (width < 0 ? 0 : width * 10) + format.at(f).digitValue();
            ++f;
        }
        if (f >= format.size()) {
            out += QLatin1Char('%');
            break;
        }
        const char conv = format.at(f).toLatin1();
        auto num = [&](int value, int defaultWidth) { out += padded(value, width < 0 ? defaultWidth : width); };
        switch (conv) {
        case '%':
            out += QLatin1Char('%');
            break;
        case 'd':
            num(m_date.day(), 2);
            break;
        case 'm':
            num(m_date.month(), 2);
            break;
        case 'y':
            num(((m_date.year() % 100) + 100) % 100, 2);
            break;
        case 'Y':
            num(m_date.year(), 4);
            break;
        case 'H':
            num(m_time.hour(), 2);
            break;
        case 'M':
            num(m_time.minute(), 2);
            break;
        case 'S':
            num(m_time.second(), 2);
            break;
        case 'z': {
            const int abs = m_offset < 0 ? -m_offset : m_offset;
            out += (m_offset < 0 ? QLatin1Char('-') : QLatin1Char('+'));
            out += padded(abs / 3600, 2) + padded((abs % 3600) / 60, 2);
            break;
        }
        default:
            // Unknown conversions are copied as they stand, like strftime does.
            out += QLatin1Char('%');
            out += format.at(f);
        }
    }
    return out;
}

CalendarDate CalendarDate::addYearsMonthsDays(int years, int months, int days) const
{
    if (!isValid())
        return {};
    qint64 totalMonths = qint64(m_date.year()) * 12 + (m_date.month() - 1) + qint64(years) * 12 + months;
    const int year = int(totalMonths >= 0 ? totalMonths / 12 : (totalMonths - 11) / 12);
    const int month = int(totalMonths - qint64(year) * 12) + 1;
    const QDate first(year, month, 1);
    if (!first.isValid())
        return {};
    const QDate date = first.addDays(qint64(m_date.day()) - 1 + days);
    return CalendarDate(date, m_time, m_offset);
}

CalendarDate CalendarDate::addSeconds(qint64 seconds) const
{
    if (!isValid())
        return {};
    const QDateTime dt = QDateTime(m_date, m_time, Qt::UTC).addSecs(seconds);
    return CalendarDate(dt.date(), dt.time(), m_offset);
}

qint64 CalendarDate::wallClockSeconds() const
{
    return m_date.toJulianDay() * 86400 + m_time.msecsSinceStartOfDay() / 1000;
}

qint64 CalendarDate::secondsTo(const CalendarDate &other) const
{
    if (!isValid() || !other.isValid())
        return 0;
    return other.wallClockSeconds() - wallClockSeconds();
}

std::strong_ordering CalendarDate::operator<=>(const CalendarDate &other) const
{
    if (!isValid() || !other.isValid())
        return isValid() <=> other.isValid();
    return wallClockSeconds() <=> other.wallClockSeconds();
}

bool CalendarDate::operator==(const CalendarDate &other) const
{
    return (*this <=> other) == std::strong_ordering::equal;
}
