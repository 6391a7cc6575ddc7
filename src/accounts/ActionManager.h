#pragma once

#include "accounts/Action.h"
#include "accounts/ActionEditorState.h"
#include "core/CalendarDate.h"
#include "core/lwEditorManager.h"

#include <QTimer>

#include <functional>

// The tasks list: its title search and "All"/"Incomplete" filter, the "complete"
// column ticked in place, the task editor with its two calculate buttons, and
// the alarm check. Every action takes the sender and ignores it.
class ActionManager : public lwEditorManager<Action, ActionEditorState>
{
    Q_OBJECT
public:
    using Clock = std::function<CalendarDate()>;

    // The alarm check's first round comes this long after the start, the
    // next ones this long after the previous round's alerts are dismissed.
    static constexpr int kFirstAlarmRoundMs = 2000;
    static constexpr int kAlarmRoundMs = 32000;

    explicit ActionManager(QObject *parent = nullptr);
    ~ActionManager() override;

    static QStringList unitEntries();
    static QStringList filterEntries();

    // --- actions ------------------------------------------------------------
    // The selected task in the editor; it is no longer a new one.
    void edit(QObject *sender) override;
    // Total time from the four date and time fields, in the units shown.
    void calculateTotalTime(QObject *sender);
    // Total time times rate, in single precision.
    void calculateTotalCharge(QObject *sender);
    // Shows the tasks whose title holds the search text and that pass the filter.
    void filter(QObject *sender) override;

    // --- the alarm check ----------------------------------------------------
    // The time the alarms are checked against; the current time unless set.
    void setClock(Clock clock) { m_clock = std::move(clock); }
    // Starts the rounds on this thread's event loop.
    void startAlarmChecker();
    // One round: every due, unacknowledged alarm shows its "Alarm" alert, one
    // at a time; each dismissal acknowledges it. Nothing is saved. Then the
    // next round is scheduled.
    void checkForOverdueActions();
    const QTimer &alarmTimer() const { return m_alarmTimer; }

    // --- the table ----------------------------------------------------------
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    // A click on the "complete" box flips the task at once, whatever value
    // comes with it; the row stays until the next filter.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

protected:
    void fillState(const Action &action) override;
    void copyState(Action &action) override;
    // Offers to re-arm an acknowledged alarm whose due moment lies ahead.
    void committed(dataObject &action) override;

private:
    bool ukFormat() const;
    QString dateFormat() const;

    Clock m_clock;
    QTimer m_alarmTimer;
    bool m_alarmAlertOpen = false;
};
