#include "core/NumberText.h"

#include <QTest>

#include <clocale>
#include <cstdio>

class TestNumberText : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void readsLeadingFloats_data();
    void readsLeadingFloats();
    void readsLeadingIntegers_data();
    void readsLeadingIntegers();
    void formatsLikePrintf();
    void ignoresTheUsersLocale();
};

void TestNumberText::readsLeadingFloats_data()
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

void TestNumberText::readsLeadingFloats()
{
    QFETCH(QString, text);
    QFETCH(float, expected);
    QCOMPARE(NumberText::floatValue(text), expected);
    QCOMPARE(float(NumberText::doubleValue(text)), expected);
}

void TestNumberText::readsLeadingIntegers_data()
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

void TestNumberText::readsLeadingIntegers()
{
    QFETCH(QString, text);
    QTEST(NumberText::intValue(text), "expected");
}

void TestNumberText::formatsLikePrintf()
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

void TestNumberText::ignoresTheUsersLocale()
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

QTEST_GUILESS_MAIN(TestNumberText)
#include "tst_numbertext.moc"
