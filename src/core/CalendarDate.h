#pragma once

#include <QDate>
#include <QString>
#include <QTime>

#include <compare>

// A calendar date and time of day as the user typed it, read and written with
// the strftime-style patterns the system stores ("%d/%m/%y", "%m/%d/%y %H:%M",
// "%Y-%m-%d %H:%M:%S %z", ...).
//
// Conversions understood when parsing and formatting:
//   %d %m %y %Y %H %M %S   day, month, two-digit year, full year, hour, minute, second
//   %z                     offset from UTC as +hhmm / -hhmm
//   %%                     a literal percent sign
// A digit between "%" and the letter is a minimum width when formatting
// ("%2m" is the month as two digits); "%1d" prints without padding.
// When parsing, each numeric field takes 1 to 2 digits (4 for %Y), every other
// character must match as it stands, and the whole text must be used (trailing
// white space aside); anything else gives no date (isValid() is false).
//
// Two-digit years ("%y"): 00-68 are 2000-2068 and 69-99 are 1969-1999, the
// pivot of the C library's strptime that the stored files were written with.
//
// Dates compare and subtract as the local wall-clock time they name; the UTC
// offset is carried only so that "%z" can be written and read back.
class CalendarDate
{
public:
    CalendarDate() = default; // no date
    explicit CalendarDate(QDate date, QTime time = QTime(0, 0), int utcOffsetSeconds = 0);

    static CalendarDate fromString(const QString &text, const QString &format);
    // The current local time, with the local offset from UTC.
    static CalendarDate currentDate();

    bool isValid() const { return m_date.isValid(); }
    QDate date() const { return m_date; }
    QTime time() const { return m_time; }
    int utcOffsetSeconds() const { return m_offset; }

    QString toString(const QString &format) const;

    // Calendar arithmetic: years and months are added to their fields and the
    // day is then carried over the month's end, as the stored dates always were
    // (31 January plus one month is 3 March, or 2 March in a leap year).
    CalendarDate addYearsMonthsDays(int years, int months, int days) const;
    CalendarDate addSeconds(qint64 seconds) const;

    // Seconds from this date to the other (negative when the other is earlier).
    qint64 secondsTo(const CalendarDate &other) const;

    // Invalid dates order before every valid date and equal each other.
    std::strong_ordering operator<=>(const CalendarDate &other) const;
    bool operator==(const CalendarDate &other) const;

private:
    qint64 wallClockSeconds() const;

    QDate m_date;
    QTime m_time = QTime(0, 0);
    int m_offset = 0;
};
