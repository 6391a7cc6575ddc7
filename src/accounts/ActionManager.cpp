#include "accounts/ActionManager.h"

#include "core/Log.h"
#include "core/NumberText.h"
#include "core/Platform.h"
#include "core/lwController.h"
#include "prefs/PrefsController.h"

namespace {

const QString kComplete = QStringLiteral("complete");
const QString kTimeFormat = QStringLiteral("%H:%M");

// A date field plus the hour and minute of a time field. A missing time adds
// nothing; a missing date gives no moment.
CalendarDate moment(const QString &date, const QString &dateFormat, const QString &time)
{
    const CalendarDate day = CalendarDate::fromString(date, dateFormat);
    if (!day.isValid())
        return {};
    const CalendarDate clock = CalendarDate::fromString(time, kTimeFormat);
    const qint64 seconds = clock.isValid() ? clock.time().hour() * 3600 + clock.time().minute() * 60 : 0;
    return day.addSeconds(seconds);
}

} // namespace

ActionManager::ActionManager(QObject *parent)
    : lwEditorManager({lwTr("Delete Task"), lwTr("Do you want to delete the selected item from the database?"), {},
                       CancelRule::RemoveNew},
                      {}, parent),
      m_clock(&CalendarDate::currentDate)
{
    setObjectName(QStringLiteral("actions"));
    setFactory([] { return std::make_shared<Action>(); });
    m_state.totalTimeUnits = PopUp::withEntries(unitEntries());
    m_state.filter = PopUp::withEntries(filterEntries());
    m_state.searchText = lwEmpty();
    m_alarmTimer.setSingleShot(true);
    connect(&m_alarmTimer, &QTimer::timeout, this, &ActionManager::checkForOverdueActions);
}

ActionManager::~ActionManager() = default;

QStringList ActionManager::unitEntries()
{
    return {QStringLiteral("Hours"), QStringLiteral("Days")};
}

QStringList ActionManager::filterEntries()
{
    return {lwTr("All"), lwTr("Incomplete")};
}

bool ActionManager::ukFormat() const
{
    const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr;
    return prefs ? prefs->isUKFormat() : true;
}

QString ActionManager::dateFormat() const
{
    return ukFormat() ? QStringLiteral("%d/%m/%y") : QStringLiteral("%m/%d/%y");
}

// --- the editor --------------------------------------------------------------

void ActionManager::edit(QObject *sender)
{
    if (!getSelectedItem())
        return;
    lwEditorManager::edit(sender);
    setCreating(false);
}

void ActionManager::fillState(const Action &a)
{
    ActionEditorState &s = m_state;
    s.alarm = a.isAlarm();
    s.complete = a.isComplete();
    s.title = a.getTitle();
    s.details = a.getDetails();
    s.startDate = a.getStartDate();
    s.startTime = a.getStartTime();
    s.endDate = a.getEndDate();
    s.endTime = a.getEndTime();
    s.rate = a.getRate();
    s.totalTime = a.getTotalTime();
    s.totalCharge = a.getTotalCharge();
    s.totalTimeUnits.selectTitle(a.getTotalTimeUnits());
}

void ActionManager::copyState(Action &a)
{
    const ActionEditorState &s = m_state;
    a.setAlarm(s.alarm);
    a.setComplete(s.complete);
    a.setDetails(lwNonNull(s.details));
    a.setEndDate(lwNonNull(s.endDate));
    a.setTitle(lwNonNull(s.title));
    a.setEndTime(lwNonNull(s.endTime));
    a.setRate(lwNonNull(s.rate));
    a.setStartDate(lwNonNull(s.startDate));
    a.setStartTime(lwNonNull(s.startTime));
    a.setTotalTime(lwNonNull(s.totalTime));
    a.setTotalTimeUnits(lwNonNull(s.totalTimeUnits.selectedTitle()));
    a.setTotalCharge(lwNonNull(s.totalCharge));
}

void ActionManager::committed(dataObject &record)
{
    auto &action = static_cast<Action &>(record);
    if (!action.isAlarm() || !action.isAlarmAcknowledged())
        return;
    const CalendarDate due = action.dueMoment(ukFormat());
    if (!due.isValid() || due <= m_clock())
        return;
    lwLog(QStringLiteral("date in future"));
    Platform *desktop = platform();
    const int answer =
        desktop ? desktop->alert({lwTr("Reset Alarm"),
                                  lwTr("The alarm for this item has been acknowledged. Would you like to reset the alarm?"),
                                  {lwTr("OK"), lwTr("No")}})
                : 1;
    if (answer == 0)
        action.setAlarmAcknowledged(false);
}

void ActionManager::calculateTotalTime(QObject *)
{
    const QString format = dateFormat();
    const CalendarDate start = moment(m_state.startDate, format, m_state.startTime);
    const CalendarDate end = moment(m_state.endDate, format, m_state.endTime);
    // Minutes rounded to single precision, then hours in single precision.
    float hours = 0;
    if (start.isValid() && end.isValid())
        hours = float(double(start.secondsTo(end)) / 60.0) / 60.0f;
    if (m_state.totalTimeUnits.selectedTitle() == QLatin1String("Days"))
        hours = float(hours / 24.0);
    m_state.totalTime = NumberText::format("%g", double(hours));
    Q_EMIT editorStateChanged();
}

void ActionManager::calculateTotalCharge(QObject *)
{
    const float charge = NumberText::floatValue(m_state.totalTime) * NumberText::floatValue(m_state.rate);
    m_state.totalCharge = NumberText::format("%g", double(charge));
    Q_EMIT editorStateChanged();
}

// --- the list ------------------------------------------------------------------

void ActionManager::filter(QObject *)
{
    const QString &search = m_state.searchText;
    const QString shown = m_state.filter.selectedTitle();
    const bool all = shown == lwTr("All");
    const bool incomplete = shown == lwTr("Incomplete");
    for (const auto &record : records()) {
        const auto *action = static_cast<const Action *>(record.get());
        bool visible = search.isEmpty() || action->contains(search);
        visible = visible && (all || (incomplete && !action->isComplete()));
        record->setVisible(visible);
    }
    reloadData();
}

QVariant ActionManager::data(const QModelIndex &index, int role) const
{
    const bool completeColumn =
        index.isValid() && index.column() < columns().size() && columns().at(index.column()).identifier == kComplete;
    if (!completeColumn)
        return lwEditorManager::data(index, role);
    const dataObject *record = getnthVisibleItem(index.row());
    if (!record)
        lwLog(QStringLiteral("no item for row %1").arg(index.row()));
    switch (role) {
    case Qt::CheckStateRole:
        return record && static_cast<const Action *>(record)->isComplete() ? Qt::Checked : Qt::Unchecked;
    case Qt::DisplayRole:
    case Qt::EditRole:
        return {}; // the box alone
    default:
        return lwEditorManager::data(index, role);
    }
}

bool ActionManager::setData(const QModelIndex &index, const QVariant &, int role)
{
    if (!index.isValid() || role != Qt::CheckStateRole || index.column() >= columns().size() ||
        columns().at(index.column()).identifier != kComplete)
        return false;
    auto *action = static_cast<Action *>(getnthVisibleItem(index.row()));
    if (!action)
        return false;
    action->setComplete(!action->isComplete());
    Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
    if (ledgerwick())
        ledgerwick()->setChangeFlag();
    return true;
}

Qt::ItemFlags ActionManager::flags(const QModelIndex &index) const
{
    Qt::ItemFlags f = lwEditorManager::flags(index);
    if (index.isValid() && index.column() < columns().size() && columns().at(index.column()).identifier == kComplete)
        f |= Qt::ItemIsUserCheckable;
    return f;
}

// --- the alarm check -------------------------------------------------------------

void ActionManager::startAlarmChecker()
{
    m_alarmTimer.start(kFirstAlarmRoundMs);
}

void ActionManager::checkForOverdueActions()
{
    // An alert's own event loop may let the timer through again: one round at a time.
    if (m_alarmAlertOpen)
        return;
    m_alarmTimer.stop();
    const bool uk = ukFormat();
    for (qsizetype i = 0; i < getCount(); ++i) {
        // Held while the alert is open: the task may be deleted meanwhile.
        const std::shared_ptr<dataObject> record = sharedRecord(getnthItem(i));
        auto *action = static_cast<Action *>(record.get());
        if (!action || !action->isAlarmDue(m_clock(), uk))
            continue;
        if (Platform *desktop = platform()) {
            m_alarmAlertOpen = true;
            desktop->alert({lwTr("Alarm"), action->getTitle(), {lwTr("OK")}, Platform::AlertStyle::Informational});
            m_alarmAlertOpen = false;
        }
        action->setAlarmAcknowledged(true);
        lwLog(QStringLiteral("acknowledged"));
    }
    m_alarmTimer.start(kAlarmRoundMs);
}
