#include "accounts/Action.h"
#include "accounts/Bill.h"

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

class tst_Accounts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void actionReadByName();
    void actionWriteByName_data();
    void actionWriteByName();
    void actionDueMoment_data();
    void actionDueMoment();

    void billByName_data();
    void billByName();
};

void tst_Accounts::actionReadByName()
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

void tst_Accounts::actionWriteByName_data()
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

void tst_Accounts::actionWriteByName()
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

void tst_Accounts::actionDueMoment_data()
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

void tst_Accounts::actionDueMoment()
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

void tst_Accounts::billByName_data()
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

void tst_Accounts::billByName()
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

QTEST_GUILESS_MAIN(tst_Accounts)
#include "tst_accounts.moc"
