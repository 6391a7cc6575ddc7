// The task and bill records, and the rules of the tasks, bills and statement
// managers that the shared editor contract (tst_editormanagers) does not cover.
#include "accounts/Action.h"
#include "accounts/ActionManager.h"
#include "accounts/Bill.h"
#include "accounts/BillManager.h"
#include "accounts/StatementManager.h"
#include "core/DatabasePaths.h"
#include "orders/Order.h"
#include "prefs/PrefsController.h"
#include "support/AppFixture.h"
#include "support/LogCapture.h"

#include <QAbstractItemModelTester>
#include <QFile>
#include <QSettings>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// So that a failed comparison of two dates prints both.
char *toString(const CalendarDate &date)
{
    return qstrdup(qPrintable(date.isValid() ? date.toString(u"%d/%m/%Y %H:%M:%S"_s) : u"(no date)"_s));
}

namespace {

CalendarDate at(int day, int month, int year, int hour = 0, int minute = 0, int second = 0)
{
    return CalendarDate(QDate(year, month, day), QTime(hour, minute, second));
}

QString moneyInFile()
{
    return DatabasePaths::applicationSupportFolder() + u"/reports/MoneyIn.xml"_s;
}

// An action's stored values in field order.
QStringList texts(const Action &a)
{
    return {a.getDetails(),        a.getEndDate(),
            a.getEndTime(),        a.getRate(),
            a.getStartDate(),      a.getStartTime(),
            a.getTotalCharge(),    a.getTotalTime(),
            a.getTotalTimeUnits(), QString::number(a.getOrder()),
            a.getTitle(),          a.isComplete() ? u"complete"_s : u"open"_s};
}

// A bill's stored values in field order.
QStringList texts(const Bill &b)
{
    return {b.getNumber(), b.getName(),   b.getDatePaid(), b.getNet(),
            b.getVat(),    b.getAmount(), b.getDetails(),  b.getCategory()};
}

} // namespace

class tst_AccountManagers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void calculateButtons_data();
    void calculateButtons();
    void completeBoxFlipsAtOnce();
    void alarmGoesOffOnceUntilRearmed();

    void billTotalsRows();
    void billEditorCalculatesAndKeepsCategories();
    void billPeriods_data();
    void billPeriods();
    void statementBalance_data();
    void statementBalance();

    void actionReadByName();
    void actionWriteByName_data();
    void actionWriteByName();
    void actionDueMoment_data();
    void actionDueMoment();
    void billByName_data();
    void billByName();

private:
    void setUkFormat(bool uk);
    std::shared_ptr<Action> addAction(const QString &title, bool alarm = false, const QString &endDate = {});
    std::shared_ptr<Bill> addBill(const QString &name, const QString &datePaid, const QString &amount);

    std::unique_ptr<AppFixture> m_app;
    ActionManager *m_actions = nullptr;
    BillManager *m_bills = nullptr;
    CalendarDate m_now;
};

void tst_AccountManagers::init()
{
    m_app = std::make_unique<AppFixture>();
    QVERIFY(m_app->isValid());
    m_actions = m_app->ledgerwick->getActionManager();
    m_bills = m_app->ledgerwick->getBillManager();
    m_now = at(1, 2, 2009, 9, 0);
    m_actions->setClock([this] { return m_now; });
    m_bills->setClock([this] { return m_now; });
}

void tst_AccountManagers::cleanup()
{
    m_app.reset();
}

void tst_AccountManagers::setUkFormat(bool uk)
{
    QSettings(u"Ledgerwick"_s, u"Ledgerwick"_s).setValue(u"LedgerwickDateFormat"_s, uk ? u"2"_s : u"1"_s);
    m_app->ledgerwick->getPrefsController()->readDefaults();
}

std::shared_ptr<Action> tst_AccountManagers::addAction(const QString &title, bool alarm, const QString &endDate)
{
    auto action = std::make_shared<Action>();
    action->setTitle(title);
    action->setAlarm(alarm);
    action->setEndDate(endDate);
    action->setEndTime(u"10:00"_s);
    m_actions->add(action);
    return action;
}

std::shared_ptr<Bill> tst_AccountManagers::addBill(const QString &name, const QString &datePaid, const QString &amount)
{
    auto bill = std::make_shared<Bill>();
    bill->setName(name);
    bill->setDatePaid(datePaid);
    bill->setAmount(amount);
    bill->setVat(u"1"_s);
    m_bills->add(bill);
    return bill;
}

// --- tasks -------------------------------------------------------------------------

void tst_AccountManagers::calculateButtons_data()
{
    QTest::addColumn<bool>("uk");
    QTest::addColumn<QStringList>("fields"); // start date, start time, end date, end time
    QTest::addColumn<QString>("units");
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("charge"); // at rate 20

    const QStringList workday{u"01/02/09"_s, u"09:00"_s, u"01/02/09"_s, u"17:30"_s};
    QTest::addRow("hours") << true << workday << u"Hours"_s << u"8.5"_s << u"170"_s;
    QTest::addRow("days") << true << workday << u"Days"_s << u"0.354167"_s << u"7.08334"_s;
    // Read in the user's order: month first, this night spans midnight.
    const QStringList night{u"01/31/09"_s, u"22:00"_s, u"02/01/09"_s, u"02:00"_s};
    QTest::addRow("month first") << false << night << u"Hours"_s << u"4"_s << u"80"_s;
}

void tst_AccountManagers::calculateButtons()
{
    QFETCH(bool, uk);
    QFETCH(QStringList, fields);
    QFETCH(QString, units);
    setUkFormat(uk);
    addAction(u"Fit kitchen"_s);
    m_app->select(m_actions, 0);
    m_actions->edit(nullptr);
    ActionEditorState &s = m_actions->editorState();
    s.startDate = fields[0];
    s.startTime = fields[1];
    s.endDate = fields[2];
    s.endTime = fields[3];
    s.rate = u"20"_s;
    s.totalTimeUnits.selectTitle(units);
    m_actions->calculateTotalTime(nullptr);
    QTEST(s.totalTime, "time");
    m_actions->calculateTotalCharge(nullptr);
    QTEST(s.totalCharge, "charge");
    // Nothing reaches the record before OK.
    QCOMPARE(m_actions->currentItem()->getTotalTime(), QString());
    QCOMPARE(m_actions->currentItem()->getTotalCharge(), QString());
}

void tst_AccountManagers::completeBoxFlipsAtOnce()
{
    // The search and filter themselves are tested through the command line's export.
    m_actions->setColumns({{u"title"_s, u"Title"_s}, {u"complete"_s, u"Done"_s}});
    addAction(u"Order paint"_s);
    m_actions->editorState().filter.selectTitle(u"Incomplete"_s);
    m_actions->filter(nullptr);
    // The task changes at once; the row stays until the next filter.
    const QModelIndex box = m_actions->index(0, 1);
    QVERIFY(m_actions->setData(box, Qt::Unchecked, Qt::CheckStateRole)); // the value is ignored
    QCOMPARE(box.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QCOMPARE(m_actions->numberOfRowsInTableView(), 1);
    QCOMPARE(m_actions->objectValueForTableColumn(u"complete"_s, 0), u"Yes"_s); // what exports show
    m_actions->filter(nullptr);
    QCOMPARE(m_actions->numberOfRowsInTableView(), 0);
}

void tst_AccountManagers::alarmGoesOffOnceUntilRearmed()
{
    m_actions->startAlarmChecker();
    QVERIFY(m_actions->alarmTimer().isActive());
    QCOMPARE(m_actions->alarmTimer().interval(), ActionManager::kFirstAlarmRoundMs);

    const auto due = addAction(u"Ring the bank"_s, true, u"01/02/09"_s);
    addAction(u"No alarm"_s, false, u"01/01/09"_s);
    addAction(u"Post parcels"_s, true, u"02/02/09"_s);

    QStringList seen;
    auto round = [&](const CalendarDate &now) {
        m_now = now;
        m_app->platform.alerts.clear();
        m_actions->checkForOverdueActions();
        seen.clear();
        for (const Platform::Alert &alert : std::as_const(m_app->platform.alerts))
            seen << AppFixture::alertText(alert);
    };
    round(at(1, 2, 2009, 10, 0)); // due, but not yet past
    QCOMPARE(seen, QStringList());
    QVERIFY(m_actions->alarmTimer().isActive());
    QCOMPARE(m_actions->alarmTimer().interval(), ActionManager::kAlarmRoundMs);
    round(at(1, 2, 2009, 10, 1));
    QCOMPARE(seen, QStringList{u"Alarm | Ring the bank | OK"_s});
    QVERIFY(due->isAlarmAcknowledged());
    round(at(3, 2, 2009, 0, 0)); // the first once only; the second falls due
    QCOMPARE(seen, QStringList{u"Alarm | Post parcels | OK"_s});
    QVERIFY(!QFile::exists(m_app->bundleFile(u"actions.xml"_s))); // acknowledging saves nothing

    // Month first, "01/02/09" falls due on 2 January.
    setUkFormat(false);
    due->setAlarmAcknowledged(false);
    round(at(3, 1, 2009, 0, 0));
    QCOMPARE(seen, QStringList{u"Alarm | Ring the bank | OK"_s});

    // An OK in the editor offers to re-arm an acknowledged alarm still ahead.
    setUkFormat(true);
    m_now = at(1, 2, 2009, 9, 0);
    for (int answer : {1, 0}) {
        m_app->select(m_actions, 0);
        m_actions->edit(nullptr);
        m_app->platform.alertAnswers.enqueue(answer);
        m_actions->finish(nullptr);
        QCOMPARE(AppFixture::alertText(m_app->platform.alerts.last()),
                 u"Reset Alarm | The alarm for this item has been acknowledged. Would you like to reset the alarm? | OK, No"_s);
        QCOMPARE(due->isAlarmAcknowledged(), answer != 0);
    }
    QVERIFY(QFile::exists(m_app->bundleFile(u"actions.xml"_s)));
    round(at(1, 2, 2009, 10, 1));
    QCOMPARE(seen, QStringList{u"Alarm | Ring the bank | OK"_s});
}

// --- bills ---------------------------------------------------------------------------

void tst_AccountManagers::billTotalsRows()
{
    // The amounts' total is read through the statement below.
    QAbstractItemModelTester tester(m_bills);
    addBill(u"Gas"_s, u"01/02/09"_s, u"9"_s);
    addBill(u"Oil"_s, u"01/02/09"_s, u"9"_s)->setVat(u"1,000"_s);
    QCOMPARE(m_bills->numberOfRowsInTableView(), 4);
    QCOMPARE(m_bills->objectValueForTableColumn(u"vat"_s, 2), u"_____"_s);
    QCOMPARE(m_bills->objectValueForTableColumn(u"vat"_s, 3), u"1001.00"_s);
    QCOMPARE(m_bills->objectValueForTableColumn(u"name"_s, 3), QString());
    // The totals rows open no editor and delete nothing.
    m_app->select(m_bills, 3);
    m_bills->edit(nullptr);
    m_bills->deleteKey(nullptr);
    QVERIFY(!m_bills->isEditorShown());
    QVERIFY(m_app->platform.alerts.isEmpty());
}

void tst_AccountManagers::billEditorCalculatesAndKeepsCategories()
{
    m_app->ledgerwick->getPrefsController()->controls().invoiceCategories = u"Rent\nFuel"_s;
    m_app->ledgerwick->getPrefsController()->populateLists();
    addBill(u"Post Office"_s, u"01/02/09"_s, u"9"_s)->setCategory(u"Postage"_s);
    m_app->select(m_bills, 0);
    m_bills->edit(nullptr);
    BillEditorState &s = m_bills->editorState();
    QCOMPARE(s.category.entries, (QStringList{u"Rent"_s, u"Fuel"_s, u"Postage"_s}));
    QCOMPARE(s.category.selectedTitle(), u"Postage"_s);

    s.net = u"100"_s;
    s.vat = u"17.5"_s;
    m_bills->calculateTotal(nullptr);
    QCOMPARE(s.amount, u"117.50"_s);
    QCOMPARE(m_bills->currentItem()->getAmount(), u"9"_s);
    s.category.index = -1; // nothing chosen: the old category stays
    m_bills->finish(nullptr);
    QCOMPARE(m_bills->currentItem()->getAmount(), u"117.50"_s);
    QCOMPARE(m_bills->currentItem()->getCategory(), u"Postage"_s);
}

void tst_AccountManagers::billPeriods_data()
{
    QTest::addColumn<QString>("period");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("visible"); // the names of the bills shown
    QTest::addColumn<QString>("fromAfter");
    QTest::addColumn<QStringList>("log");

    // Today is 15 March 2009; the bills are named after the day they were paid.
    QTest::addRow("all") << u"All"_s << u"01/03/09"_s << u"28/02 01/03 08/03 01/04 02/04 bad"_s << u"01/03/09"_s
                         << QStringList();
    QTest::addRow("week without start") << u"1 Week"_s << u""_s << u"28/02 01/03 08/03 01/04 02/04 bad"_s << u""_s
                                        << QStringList();
    QTest::addRow("week") << u"1 Week"_s << u"01/03/09"_s << u"01/03 08/03 bad"_s << u"01/03/09"_s
                          << QStringList{u"calculating one week from 01/03/09"_s, u"dateTo is 08/03/09"_s};
    QTest::addRow("three months") << u"3 Months"_s << u"01/01/09"_s << u"28/02 01/03 08/03 01/04 bad"_s
                                  << u"01/01/09"_s
                                  << QStringList{u"calculating THREE montha from 01/01/09"_s, u"dateTo is 01/04/09"_s};
    QTest::addRow("current month") << u"Current calendar month"_s << u""_s << u"01/03 08/03 01/04 bad"_s
                                   << u"01/03/09"_s << QStringList();
    QTest::addRow("last month") << u"Last calendar month"_s << u"01/03/09"_s << u"28/02 01/03 bad"_s << u"01/02/09"_s
                                << QStringList();
}

void tst_AccountManagers::billPeriods()
{
    QFETCH(QString, period);
    QFETCH(QString, from);
    for (const char *day : {"28/02", "01/03", "08/03", "01/04", "02/04"})
        addBill(QString::fromLatin1(day), QString::fromLatin1(day) + u"/09"_s, u"1"_s);
    addBill(u"bad"_s, u"soon"_s, u"1"_s);
    m_now = at(15, 3, 2009, 14, 30);
    QString ranFormat;
    m_bills->setMoneyInRunner([&](const QString &format) { ranFormat = format; });
    BillEditorState &s = m_bills->editorState();
    s.period.selectTitle(period);
    s.fromDate = from;

    LogCapture log;
    m_bills->filter(nullptr);
    QStringList shown;
    for (int row = 0; row < m_bills->numberOfRowsInTableView() - 2; ++row)
        shown << m_bills->objectValueForTableColumn(u"name"_s, row);
    QTEST(shown.join(u' '), "visible");
    QTEST(s.fromDate, "fromAfter");
    QCOMPARE(s.fromDateEnabled, period.startsWith(u'1') || period.startsWith(u'3'));
    QTEST(log.lines(), "log");

    // A period waiting for its start writes and runs no money-in report.
    const bool ran = !(period == u"1 Week"_s && from.isEmpty());
    QCOMPARE(ranFormat, ran ? u"%d/%m/%y"_s : QString());
    QCOMPARE(QFile::exists(moneyInFile()), ran);
    if (!ran)
        return;
    QFile file(moneyInFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString definition = QString::fromUtf8(file.readAll());
    const QString start = u"\t\t\t<string>depositpaid</string>\n\t\t\t<string>&gt;</string>\n"_s;
    QCOMPARE(definition.contains(start + u"\t\t\t<string>"_s + s.fromDate), period != u"All"_s);
    QCOMPARE(definition.contains(u"<string>balancepaid</string>\n\t\t\t<string>&lt;</string>"_s), period != u"All"_s);
}

// --- the statement --------------------------------------------------------------------

void tst_AccountManagers::statementBalance_data()
{
    QTest::addColumn<QStringList>("deposits"); // paid on the orders
    QTest::addColumn<QString>("moneyIn");
    QTest::addColumn<QStringList>("amounts"); // of the bills
    QTest::addColumn<QString>("moneyOut");
    QTest::addColumn<QString>("balance");
    QTest::addRow("in and out") << QStringList{u"1,000"_s, u"20"_s} << u"1020.00"_s << QStringList{u"250.50"_s}
                                << u"250.50"_s << u"769.50"_s;
    QTest::addRow("nothing in") << QStringList() << u"0.00"_s << QStringList{u"100"_s} << u"100.00"_s << u"-100.00"_s;
    QTest::addRow("no bills") << QStringList{u"5"_s} << u"5.00"_s << QStringList() << u"0.00"_s << u"5.00"_s;
    QTest::addRow("commas stripped") << QStringList{u"0"_s} << u"0.00"_s << QStringList{u"1,000.50"_s, u"20"_s}
                                     << u"1020.50"_s << u"-1020.50"_s;
}

void tst_AccountManagers::statementBalance()
{
    QFETCH(QStringList, deposits);
    QFETCH(QString, moneyIn);
    QFETCH(QStringList, amounts);
    // The bills' filter runs the money-in report over the orders' paid deposits.
    for (const QString &deposit : deposits) {
        auto order = std::make_shared<Order>();
        order->setTitle(u"Order"_s);
        order->setDeposit(deposit);
        order->setDepositPaid(u"01/02/09"_s);
        m_app->ledgerwick->getOrderManager()->add(order);
    }
    StatementManager *statement = m_app->ledgerwick->getStatementList();
    QAbstractItemModelTester tester(statement);
    for (const QString &amount : amounts)
        addBill(u"Gas"_s, u"01/02/09"_s, amount);
    m_bills->filter(nullptr);

    QStringList values;
    for (int row = 0; row < 4; ++row)
        values << statement->objectValueForTableColumn(u"name"_s, row) + u'='
                      + statement->objectValueForTableColumn(u"value"_s, row);
    QFETCH(QString, moneyOut);
    QFETCH(QString, balance);
    QCOMPARE(values, (QStringList{u"Money In="_s + moneyIn, u"Money Out="_s + moneyOut, u"=_____"_s, u"="_s + balance}));

    const QList<lwDataSource::Column> one{{u"value"_s, u"Amount"_s}};
    const QString html = statement->getDataAsHTMLusingTableView(one);
    QVERIFY(html.startsWith(u"<table cellpadding=2 cellspacing=2 border=0><tr>"
                            "<th style = background:#cccccc;font-family:monospace>Amount</th></tr>"_s));
    QCOMPARE(html.count(u"background:#f0f0ff"_s), 2); // rows 1 and 3
}

// --- the records -------------------------------------------------------------------

void tst_AccountManagers::actionReadByName()
{
    Action a;
    QCOMPARE(texts(a), (QStringList{u""_s, u""_s, u""_s, u""_s, u""_s, u""_s, u""_s, u""_s, u"Hours"_s, u"0"_s, u""_s,
                                    u"open"_s}));
    QVERIFY(!a.isAlarm() && !a.isAlarmAcknowledged());

    const QStringList names{u"details"_s,        u"enddate"_s,   u"endtime"_s,     u"rate"_s,
                            u"startdate"_s,      u"starttime"_s, u"totalcharge"_s, u"totaltime"_s,
                            u"totaltimeunits"_s, u"order"_s,     u"title"_s,       u"complete"_s};
    for (const QString &name : names)
        QVERIFY(a.setFieldByName(name, name == u"complete"_s ? u"Yes"_s : name == u"order"_s ? u"4"_s : name));
    QStringList read;
    for (const QString &name : names)
        read << a.getFieldByName(name);
    // "rate" and "order" are stored but read as "" on purpose, so their columns stay empty.
    QCOMPARE(read, (QStringList{u"details"_s, u"enddate"_s, u"endtime"_s, u""_s, u"startdate"_s, u"starttime"_s,
                                u"totalcharge"_s, u"totaltime"_s, u"totaltimeunits"_s, u""_s, u"title"_s, u"Yes"_s}));
    QCOMPARE(a.getRate(), u"rate"_s);
    QCOMPARE(a.getOrder(), 4);
    for (const QString &name : {u"EndDate"_s, u"alarm"_s, u"id"_s})
        QCOMPARE(a.getFieldByName(name), u""_s);

    // Search looks at the title only.
    QVERIFY(a.contains(u"TITL"_s));
    QVERIFY(!a.contains(u"details"_s));
    QVERIFY(!a.contains(u""_s));
}

void tst_AccountManagers::actionWriteByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("changedField"); // index into texts(), -1 for none
    QTest::addColumn<QString>("stored");

    QTest::addRow("ENDDATE") << u"ENDDATE"_s << u"x"_s << 1 << u"x"_s;
    QTest::addRow("rate") << u"rate"_s << u"x"_s << 3 << u"x"_s;
    QTest::addRow("TotalTimeUnits") << u"TotalTimeUnits"_s << u"Days"_s << 8 << u"Days"_s;
    QTest::addRow("order takes the integer") << u"order"_s << u"12abc"_s << 9 << u"12"_s;
    QTest::addRow("complete by Yes") << u"complete"_s << u"Yes"_s << 11 << u"complete"_s;
    QTest::addRow("complete not by YES") << u"complete"_s << u"YES"_s << -1 << u""_s;
    // Only the date, time and total names match in any case.
    for (const char *name : {"Title", "Details", "Rate", "Order", "Complete", "id", "enddates"})
        QTest::addRow("%s sets nothing", name) << QString::fromLatin1(name) << u"Yes"_s << -1 << u""_s;
    // The database reader hands absent keys over as null: every field keeps a value.
    QTest::addRow("null units") << u"totaltimeunits"_s << QString() << -1 << u""_s;
}

void tst_AccountManagers::actionWriteByName()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(int, changedField);
    QFETCH(QString, stored);

    Action a;
    QStringList expected = texts(a);
    if (changedField >= 0)
        expected[changedField] = stored;
    QVERIFY(a.setFieldByName(name, value));
    QCOMPARE(texts(a), expected);
    QCOMPARE(a.getID(), 0);
}

void tst_AccountManagers::actionDueMoment_data()
{
    QTest::addColumn<QString>("endDate");
    QTest::addColumn<QString>("endTime");
    QTest::addColumn<bool>("uk");
    QTest::addColumn<CalendarDate>("due");

    QTest::addRow("day first") << u"01/02/09"_s << u"10:00"_s << true << at(1, 2, 2009, 10);
    QTest::addRow("month first") << u"01/02/09"_s << u"10:00"_s << false << at(2, 1, 2009, 10);
    QTest::addRow("single digits") << u"1/2/09"_s << u"9:05"_s << true << at(1, 2, 2009, 9, 5);
    QTest::addRow("day 13 is no month") << u"13/02/09"_s << u"10:00"_s << false << CalendarDate();
    QTest::addRow("four-digit year") << u"01/02/2009"_s << u"10:00"_s << true << CalendarDate();
    QTest::addRow("no time") << u"01/02/09"_s << u""_s << true << CalendarDate();
}

void tst_AccountManagers::actionDueMoment()
{
    QFETCH(QString, endDate);
    QFETCH(QString, endTime);
    QFETCH(bool, uk);
    QFETCH(CalendarDate, due);

    Action a;
    a.setEndDate(endDate);
    a.setEndTime(endTime);
    a.setAlarm(true);
    QCOMPARE(a.dueMoment(uk), due);
    QCOMPARE(a.dueMoment(uk).isValid(), due.isValid());
    if (!due.isValid()) {
        QVERIFY(!a.isAlarmDue(at(1, 1, 2030), uk)); // an unreadable end never goes off
        return;
    }
    // Due once now is past the due moment, and only while armed.
    QVERIFY(!a.isAlarmDue(due, uk));
    QVERIFY(a.isAlarmDue(due.addSeconds(1), uk));
    a.setAlarmAcknowledged(true);
    QVERIFY(!a.isAlarmDue(due.addSeconds(1), uk));
    a.setAlarmAcknowledged(false);
    a.setAlarm(false);
    QVERIFY(!a.isAlarmDue(due.addSeconds(1), uk));
}

void tst_AccountManagers::billByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("field"); // index into texts(): what the name reads, -1 for ""
    QTest::addColumn<bool>("writable");

    QTest::addRow("name") << u"name"_s << 1 << true;
    QTest::addRow("surname reads the name only") << u"surname"_s << 1 << false;
    QTest::addRow("datepaid") << u"datepaid"_s << 2 << true;
    QTest::addRow("details") << u"details"_s << 6 << true;
    QTest::addRow("comments is details") << u"comments"_s << 6 << true;
    for (const char *name : {"Amount", "order", "id", "date"})
        QTest::addRow("%s is unknown", name) << QString::fromLatin1(name) << -1 << false;
}

void tst_AccountManagers::billByName()
{
    QFETCH(QString, name);
    QFETCH(int, field);
    QFETCH(bool, writable);

    const QStringList values{u"INV-7"_s, u"Paper Co"_s, u"01/02/09"_s, u"100"_s,
                             u"17.5"_s,  u"117.50"_s,   u"reams"_s,    u"Stationery"_s};
    Bill bill;
    const auto setters = {&Bill::setNumber, &Bill::setName,   &Bill::setDatePaid, &Bill::setNet,
                          &Bill::setVat,    &Bill::setAmount, &Bill::setDetails,  &Bill::setCategory}; // field order
    for (qsizetype i = 0; const auto set : setters)
        (bill.*set)(values[i++]);
    QCOMPARE(bill.getFieldByName(name), field >= 0 ? values[field] : u""_s);

    // Search: category, name, details and number; not the money or the date.
    for (const QString &search : {u"STATION"_s, u"paper"_s, u"REAMS"_s, u"inv-7"_s})
        QVERIFY(bill.contains(search));
    QVERIFY(!bill.contains(u"117"_s) && !bill.contains(u"01/02"_s) && !bill.contains(u""_s));

    QStringList expected = values;
    if (writable)
        expected[field] = u"new"_s;
    QVERIFY(bill.setFieldByName(name, u"new"_s));
    QVERIFY(bill.setFieldByName(name, QString())); // a null value keeps the text
    QCOMPARE(texts(bill), expected);
    QVERIFY(bill.getOrder().isNull());

    QCOMPARE(texts(Bill()), QStringList(8, u""_s));
    QVERIFY(Bill::isDate(u"datepaid"_s) && !Bill::isDate(u"datePaid"_s) && !Bill::isDate(u"date"_s));
}

QTEST_GUILESS_MAIN(tst_AccountManagers)
#include "tst_accountmanagers.moc"
