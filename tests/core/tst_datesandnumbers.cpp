// Dates and numbers as text: read and written one way, whatever the user's locale.
#include "core/CalendarDate.h"
#include "core/NumberText.h"

#include <QTest>

#include <clocale>
#include <cstdio>

using namespace Qt::Literals::StringLiterals;

class TestDatesAndNumbers : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void parses_data();
    void parses();
    void formats_data();
    void formats();
    void roundTripsEveryPattern();
    void addsByTheCalendar_data();
    void addsByTheCalendar();
    void comparesAndMeasures();
    void readsLeadingFloats_data();
    void readsLeadingFloats();
    void readsLeadingIntegers_data();
    void readsLeadingIntegers();
    void formatsLikePrintf();
    void ignoresTheUsersLocale();
};

void TestDatesAndNumbers::parses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("expected"); // date and time; "" = no date
    const QString none;
    QTest::addRow("day first") << u"15/01/07"_s << u"%d/%m/%y"_s << u"2007-01-15 00:00:00"_s;
    QTest::addRow("pivot 68") << u"01/01/68"_s << u"%d/%m/%y"_s << u"2068-01-01 00:00:00"_s;
    QTest::addRow("pivot 69") << u"01/01/69"_s << u"%d/%m/%y"_s << u"1969-01-01 00:00:00"_s;
    QTest::addRow("with time") << u"31/12/08 23:59"_s << u"%d/%m/%y %H:%M"_s << u"2008-12-31 23:59:00"_s;
    QTest::addRow("us with time") << u"12/31/08 07:05"_s << u"%m/%d/%y %H:%M"_s << u"2008-12-31 07:05:00"_s;
    QTest::addRow("lock") << u"2007-03-01 14:05:09 +0000"_s << u"%Y-%m-%d %H:%M:%S %z"_s << u"2007-03-01 14:05:09"_s;
    QTest::addRow("trailing space") << u"15/01/07 "_s << u"%d/%m/%y"_s << u"2007-01-15 00:00:00"_s;
    QTest::addRow("four-digit year, two-digit pattern") << u"15/01/2007"_s << u"%d/%m/%y"_s << none;
    QTest::addRow("no such day") << u"30/02/07"_s << u"%d/%m/%y"_s << none;
    QTest::addRow("hour 24") << u"01/01/07 24:00"_s << u"%d/%m/%y %H:%M"_s << none;
    QTest::addRow("missing time") << u"01/01/07 "_s << u"%d/%m/%y %H:%M"_s << none;
    QTest::addRow("trailing text") << u"01/02/07x"_s << u"%d/%m/%y"_s << none;
    QTest::addRow("arabic digits") << QString::fromUtf8("\u0661/02/07") << u"%d/%m/%y"_s << none;
    QTest::addRow("bad offset") << u"2007-03-01 14:05:09 +00"_s << u"%Y-%m-%d %H:%M:%S %z"_s << none;
}

void TestDatesAndNumbers::parses()
{
    QFETCH(QString, text);
    QFETCH(QString, format);
    QTEST(CalendarDate::fromString(text, format).toString(u"%Y-%m-%d %H:%M:%S"_s), "expected");
}

void TestDatesAndNumbers::formats_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("expected");
    QTest::addRow("day first") << u"%d/%m/%y"_s << u"05/03/09"_s;
    QTest::addRow("widths") << u"%2m/%2d/%2Y"_s << u"03/05/2009"_s;
    QTest::addRow("unpadded") << u"%1d/%1m"_s << u"5/3"_s;
    QTest::addRow("lock") << u"%Y-%m-%d %H:%M:%S %z"_s << u"2009-03-05 07:08:09 -0130"_s;
    QTest::addRow("percent and unknown") << u"100%% %q"_s << u"100% %q"_s;
}

void TestDatesAndNumbers::formats()
{
    QFETCH(QString, format);
    const CalendarDate date(QDate(2009, 3, 5), QTime(7, 8, 9), -(3600 + 1800));
    QTEST(date.toString(format), "expected");
    QCOMPARE(CalendarDate().toString(format), QString());
}

void TestDatesAndNumbers::roundTripsEveryPattern()
{
    const QStringList formats{"%d/%m/%y", "%m/%d/%y", "%d/%m/%y %H:%M", "%m/%d/%y %H:%M", "%Y-%m-%d %H:%M:%S %z"};
    const CalendarDate dates[] = {
        CalendarDate(QDate(1969, 1, 1), QTime(0, 0)),
        CalendarDate(QDate(2068, 12, 31), QTime(23, 59)),
        CalendarDate(QDate(2024, 2, 29), QTime(12, 30), 5 * 3600 + 1800),
    };
    for (const QString &format : formats) {
        for (const CalendarDate &date : dates) {
            const CalendarDate back = CalendarDate::fromString(date.toString(format), format);
            QVERIFY2(back.isValid(), qPrintable(format));
            QCOMPARE(back.date(), date.date());
            if (format.contains(QLatin1String("%H")))
                QCOMPARE(back.time(), QTime(date.time().hour(), date.time().minute()));
            if (format.contains(QLatin1String("%z")))
                QCOMPARE(back.utcOffsetSeconds(), date.utcOffsetSeconds());
        }
    }
}

void TestDatesAndNumbers::addsByTheCalendar_data()
{
    QTest::addColumn<QDate>("start");
    QTest::addColumn<int>("years");
    QTest::addColumn<int>("months");
    QTest::addColumn<int>("days");
    QTest::addColumn<QDate>("expected");
    QTest::addRow("month end carries over") << QDate(2009, 1, 31) << 0 << 1 << 0 << QDate(2009, 3, 3);
    QTest::addRow("leap month end") << QDate(2008, 1, 31) << 0 << 1 << 0 << QDate(2008, 3, 2);
    QTest::addRow("leap day plus a year") << QDate(2008, 2, 29) << 1 << 0 << 0 << QDate(2009, 3, 1);
    QTest::addRow("backwards") << QDate(2009, 3, 31) << 0 << -1 << 0 << QDate(2009, 3, 3);
    QTest::addRow("back across the year") << QDate(2009, 1, 10) << 0 << -2 << -10 << QDate(2008, 10, 31);
}

void TestDatesAndNumbers::addsByTheCalendar()
{
    QFETCH(QDate, start);
    QFETCH(int, years);
    QFETCH(int, months);
    QFETCH(int, days);
    const CalendarDate result = CalendarDate(start, QTime(10, 30)).addYearsMonthsDays(years, months, days);
    QTEST(result.date(), "expected");
    QCOMPARE(result.time(), QTime(10, 30));
    QVERIFY(!CalendarDate().addYearsMonthsDays(0, 1, 0).isValid());
}

void TestDatesAndNumbers::comparesAndMeasures()
{
    const CalendarDate jan(QDate(2007, 1, 15));
    const CalendarDate feb(QDate(2007, 2, 1));
    QVERIFY(jan < feb);
    QVERIFY(CalendarDate(QDate(2007, 1, 15), QTime(0, 0), 3600) == jan); // wall-clock comparison
    QVERIFY(CalendarDate() < jan);
    QCOMPARE(jan.secondsTo(feb), qint64(17) * 86400);
    QCOMPARE(jan.addSeconds(90).time(), QTime(0, 1, 30));
    QCOMPARE(jan.addSeconds(-1).date(), QDate(2007, 1, 14));
    const CalendarDate now = CalendarDate::currentDate();
    QVERIFY(now.isValid());
    QVERIFY(now > jan);
}

void TestDatesAndNumbers::readsLeadingFloats_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<float>("expected");
    QTest::addRow("thousands comma stops") << "1,250.00" << 1.0f;
    QTest::addRow("leading space") << "  \t3.25kg" << 3.25f;
    QTest::addRow("currency first") << QString::fromUtf8("\u00a35") << 0.0f;
    QTest::addRow("negative") << "-7.5" << -7.5f;
    QTest::addRow("leading point") << ".5" << 0.5f;
    QTest::addRow("trailing point") << "5." << 5.0f;
    QTest::addRow("lone point") << "." << 0.0f;
    QTest::addRow("exponent") << "1e3" << 1000.0f;
    QTest::addRow("dangling exponent") << "2e" << 2.0f;
    QTest::addRow("percent") << "17.5%" << 17.5f;
    QTest::addRow("single precision") << "0.1" << 0.1f;
}

void TestDatesAndNumbers::readsLeadingFloats()
{
    QFETCH(QString, text);
    QFETCH(float, expected);
    QCOMPARE(NumberText::floatValue(text), expected);
    QCOMPARE(float(NumberText::doubleValue(text)), expected);
}

void TestDatesAndNumbers::readsLeadingIntegers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    QTest::addRow("plain") << "42" << 42;
    QTest::addRow("suffix") << "12abc" << 12;
    QTest::addRow("decimals cut") << "1.9" << 1;
    QTest::addRow("space and sign") << "  -8" << -8;
    QTest::addRow("empty") << "" << 0;
    QTest::addRow("words") << "x1" << 0;
    QTest::addRow("saturates high") << "99999999999" << 2147483647;
    QTest::addRow("saturates low") << "-99999999999" << int(-2147483648LL);
}

void TestDatesAndNumbers::readsLeadingIntegers()
{
    QFETCH(QString, text);
    QTEST(NumberText::intValue(text), "expected");
}

void TestDatesAndNumbers::formatsLikePrintf()
{
    const char *floatFormats[] = {"%.2f",   "%1.2f", "%f",   "%.0f", "%8.3f", "%-8.1f|",        "%+.2f",
                                  "%08.2f", "%e",    "%.3E", "%g",   "%.10g", "Total: %.2f GBP"};
    QList<float> values{0.0f,   -0.0f, 0.005f,       0.015f,    0.125f, 1.005f,     2.675f,
                        120.0f, 1e-7f, 123456789.0f, -3.14159f, 1e30f,  16777217.0f};
    char expected[512];
    for (float value : values) {
        for (const char *format : floatFormats) {
            std::snprintf(expected, sizeof expected, format, double(value));
            QCOMPARE(NumberText::format(format, double(value)), QString::fromLatin1(expected));
        }
    }
    const char *intFormats[] = {"%i", "%d", "%5i", "%-5d|", "%05i", "%.3d", "%+i", "#%i"};
    const QList<int> ints{0, 1, -1, 42, -42, 123456, INT_MAX, INT_MIN};
    for (int value : ints) {
        for (const char *format : intFormats) {
            std::snprintf(expected, sizeof expected, format, value);
            QCOMPARE(NumberText::format(format, value), QString::fromLatin1(expected));
        }
    }
    QCOMPARE(NumberText::format("%i", 7.9), QStringLiteral("7"));
    QCOMPARE(NumberText::format("%i", 1e12), QStringLiteral("2147483647"));
    QCOMPARE(NumberText::format("%i", -1e12), QStringLiteral("-2147483648"));
    QCOMPARE(NumberText::twoDecimals(140.0f), QStringLiteral("140.00"));
    QCOMPARE(NumberText::sixDecimals(20.0f), QStringLiteral("20.000000"));
}

void TestDatesAndNumbers::ignoresTheUsersLocale()
{
    const char *previous = std::setlocale(LC_NUMERIC, nullptr);
    const std::string saved = previous ? previous : "C";
    // A locale with a decimal comma, when the machine has one.
    const bool haveComma = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") || std::setlocale(LC_NUMERIC, "fr_FR.UTF-8");
    QCOMPARE(NumberText::floatValue(QStringLiteral("2.5")), 2.5f);
    QCOMPARE(NumberText::format("%.2f", 2.5), QStringLiteral("2.50"));
    std::setlocale(LC_NUMERIC, saved.c_str());
    if (!haveComma)
        QSKIP("no decimal-comma locale installed; the C-locale results were checked");
}

QTEST_GUILESS_MAIN(TestDatesAndNumbers)
#include "tst_datesandnumbers.moc"
