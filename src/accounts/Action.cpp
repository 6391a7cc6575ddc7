#include "accounts/Action.h"
#include "core/RecordFields.h"

#include "core/NumberText.h"

namespace {

using RecordFields::assign;

// One name of the by-name access. Reads always match the lower-case name
// exactly; a write matches it exactly, or, for anyCase names, when the
// upper-cased name equals the upper-cased key.
struct FieldAccess
{
    QLatin1String name;
    QLatin1String upperName; // empty: written by the exact name only
    QString (*get)(const Action &);
    void (*set)(Action &, const QString &);
};

template<const QString &(Action::*Get)() const, void (Action::*Set)(const QString &)>
constexpr FieldAccess exact(const char *name)
{
    return {QLatin1String(name), QLatin1String(), [](const Action &a) { return (a.*Get)(); },
            [](Action &a, const QString &v) { (a.*Set)(v); }};
}

template<const QString &(Action::*Get)() const, void (Action::*Set)(const QString &)>
constexpr FieldAccess anyCase(const char *name, const char *upperName)
{
    return {QLatin1String(name), QLatin1String(upperName), [](const Action &a) { return (a.*Get)(); },
            [](Action &a, const QString &v) { (a.*Set)(v); }};
}

const FieldAccess kFields[] = {
    exact<&Action::getDetails, &Action::setDetails>("details"),
    anyCase<&Action::getEndDate, &Action::setEndDate>("enddate", "ENDDATE"),
    anyCase<&Action::getEndTime, &Action::setEndTime>("endtime", "ENDTIME"),
    anyCase<&Action::getStartDate, &Action::setStartDate>("startdate", "STARTDATE"),
    anyCase<&Action::getStartTime, &Action::setStartTime>("starttime", "STARTTIME"),
    anyCase<&Action::getTotalCharge, &Action::setTotalCharge>("totalcharge", "TOTALCHARGE"),
    anyCase<&Action::getTotalTime, &Action::setTotalTime>("totaltime", "TOTALTIME"),
    anyCase<&Action::getTotalTimeUnits, &Action::setTotalTimeUnits>("totaltimeunits", "TOTALTIMEUNITS"),
    exact<&Action::getTitle, &Action::setTitle>("title"),
    {QLatin1String("complete"), QLatin1String(),
     [](const Action &a) { return a.isComplete() ? QStringLiteral("Yes") : QStringLiteral("No"); },
     [](Action &a, const QString &v) { a.setComplete(v == QLatin1String("Yes")); }},
    // Stored and written, but read by name as "" so that columns stay empty.
    {QLatin1String("rate"), QLatin1String(), nullptr, [](Action &a, const QString &v) { a.setRate(v); }},
    {QLatin1String("order"), QLatin1String(), nullptr,
     [](Action &a, const QString &v) { a.setOrder(NumberText::intValue(v)); }},
};

} // namespace

Action::Action() = default;

bool Action::contains(const QString &text) const
{
    // An empty search text matches nothing; the managers test for "" themselves.
    return !text.isEmpty() && m_title.contains(text, Qt::CaseInsensitive);
}

QString Action::getFieldByName(const QString &name) const
{
    for (const FieldAccess &field : kFields)
        if (name == field.name)
            return field.get ? field.get(*this) : lwEmpty();
    return lwEmpty();
}

bool Action::setFieldByName(const QString &name, const QString &value)
{
    QString upper; // computed once, only if an any-case name is reached
    for (const FieldAccess &field : kFields) {
        bool match;
        if (field.upperName.isEmpty()) {
            match = name == field.name;
        } else {
            if (upper.isNull())
                upper = name.toUpper();
            match = upper == field.upperName;
        }
        if (match) {
            field.set(*this, value);
            return true;
        }
    }
    return true;
}

CalendarDate Action::dueMoment(bool ukFormat) const
{
    const QString format = ukFormat ? QStringLiteral("%d/%m/%y %H:%M") : QStringLiteral("%m/%d/%y %H:%M");
    return CalendarDate::fromString(m_endDate + QLatin1Char(' ') + m_endTime, format);
}

bool Action::isAlarmDue(const CalendarDate &now, bool ukFormat) const
{
    if (!m_alarm || m_alarmAcknowledged)
        return false;
    const CalendarDate due = dueMoment(ukFormat);
    return due.isValid() && now.isValid() && due.secondsTo(now) > 0;
}

void Action::setDetails(const QString &value)
{
    assign(m_details, value);
}
void Action::setEndDate(const QString &value)
{
    assign(m_endDate, value);
}
void Action::setEndTime(const QString &value)
{
    assign(m_endTime, value);
}
void Action::setRate(const QString &value)
{
    assign(m_rate, value);
}
void Action::setStartDate(const QString &value)
{
    assign(m_startDate, value);
}
void Action::setStartTime(const QString &value)
{
    assign(m_startTime, value);
}
void Action::setTotalCharge(const QString &value)
{
    assign(m_totalCharge, value);
}
void Action::setTotalTime(const QString &value)
{
    assign(m_totalTime, value);
}
void Action::setTotalTimeUnits(const QString &value)
{
    assign(m_totalTimeUnits, value);
}
void Action::setTitle(const QString &value)
{
    assign(m_title, value);
}
