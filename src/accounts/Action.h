#pragma once

#include "core/CalendarDate.h"
#include "core/dataObject.h"

#include <QString>

// One task: a title and notes, a start and an end (dates and times of day as
// typed), the time spent and its charge, a complete tick and an alarm that
// goes off once the end has passed. Dates, times, rate and totals stay the
// strings the user typed; they are parsed only when something is computed.
// Text setters ignore a null string, so every field always holds a value
// and can be written out.
class Action : public dataObject
{
public:
    Action();

    // The text, ignoring case, in the title only; the details are not searched.
    bool contains(const QString &text) const override;
    // Exact names; "complete" reads "Yes"/"No". "rate" and "order" read ""
    // on purpose, so columns and reports of those names stay empty; the
    // alarm flags are not reachable by name.
    QString getFieldByName(const QString &name) const override;
    // "details", "rate", "title", "complete" (set by "Yes") and "order" (the
    // integer value) match exactly; the date, time and total names match in
    // any case ("StartDate" sets the start date, "Title" sets nothing).
    bool setFieldByName(const QString &name, const QString &value) override;

    // The end date and end time joined by a blank and read as
    // "%d/%m/%y %H:%M" (ukFormat) or "%m/%d/%y %H:%M"; no date when that
    // text does not parse, and then the alarm never goes off.
    CalendarDate dueMoment(bool ukFormat) const;
    // An armed alarm (set, not yet acknowledged) whose due moment lies before now.
    bool isAlarmDue(const CalendarDate &now, bool ukFormat) const;

    bool isComplete() const { return m_complete; }
    bool isAlarm() const { return m_alarm; }
    bool isAlarmAcknowledged() const { return m_alarmAcknowledged; }
    const QString &getDetails() const { return m_details; }
    const QString &getEndDate() const { return m_endDate; }
    const QString &getEndTime() const { return m_endTime; }
    const QString &getRate() const { return m_rate; }
    const QString &getStartDate() const { return m_startDate; }
    const QString &getStartTime() const { return m_startTime; }
    const QString &getTotalCharge() const { return m_totalCharge; }
    const QString &getTotalTime() const { return m_totalTime; }
    const QString &getTotalTimeUnits() const { return m_totalTimeUnits; }
    int getOrder() const { return m_order; }
    const QString &getTitle() const { return m_title; }

    void setComplete(bool on) { m_complete = on; }
    void setAlarm(bool on) { m_alarm = on; }
    void setAlarmAcknowledged(bool on) { m_alarmAcknowledged = on; }
    void setDetails(const QString &value);
    void setEndDate(const QString &value);
    void setEndTime(const QString &value);
    void setRate(const QString &value);
    void setStartDate(const QString &value);
    void setStartTime(const QString &value);
    void setTotalCharge(const QString &value);
    void setTotalTime(const QString &value);
    void setTotalTimeUnits(const QString &value);
    void setOrder(int order) { m_order = order; }
    void setTitle(const QString &value);

private:
    bool m_complete = false;
    bool m_alarm = false;
    bool m_alarmAcknowledged = false;
    QString m_details = lwEmpty();
    QString m_endDate = lwEmpty();
    QString m_endTime = lwEmpty();
    QString m_rate = lwEmpty();
    QString m_startDate = lwEmpty();
    QString m_startTime = lwEmpty();
    QString m_totalCharge = lwEmpty();
    QString m_totalTime = lwEmpty();
    QString m_totalTimeUnits = QStringLiteral("Hours");
    int m_order = 0;
    QString m_title = lwEmpty();
};
