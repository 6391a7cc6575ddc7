#include "reports/ReportItem.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

ReportItem rowOf(const QStringList &fields)
{
    ReportItem row;
    for (const QString &field : fields)
        row.addField(field);
    return row;
}

// The kinds marked on a row's fields, as one text.
QString kindsOf(const ReportItem &row)
{
    QStringList kinds;
    for (qsizetype n = 1; n <= row.fieldCount(); ++n)
        kinds << (row.nthFieldIsDate(n) ? u"DATE"_s : row.nthFieldIsNumeric(n) ? u"NUMBER"_s : u"STRING"_s);
    return kinds.join(u' ');
}

} // namespace

class tst_ReportItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kindOfAddedField_data();
    void kindOfAddedField();
    void fieldsByName_data();
    void fieldsByName();
    void replaceAndSearch();
};

void tst_ReportItem::kindOfAddedField_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("kind");

    QTest::addRow("leading number") << u"12abc"_s << u"NUMBER"_s;
    // A real date passes the engine's date test, so it is never marked DATE here.
    QTest::addRow("day-first date") << u"01/02/09"_s << u"NUMBER"_s;
    QTest::addRow("white space, sign, point") << u" \t-.5"_s << u"NUMBER"_s;
    QTest::addRow("point alone") << u"."_s << u"STRING"_s;
    QTest::addRow("number later") << u"ab12"_s << u"STRING"_s;
    QTest::addRow("empty") << u""_s << u"STRING"_s;
    QTest::addRow("long word") << u"Stationery"_s << u"DATE"_s;
    QTest::addRow("eight characters") << u"abcdefgh"_s << u"DATE"_s;
    QTest::addRow("seven characters") << u"abcdefg"_s << u"STRING"_s;
    QTest::addRow("slash at 2") << u"ab/defghi"_s << u"STRING"_s;
    QTest::addRow("number at 3") << u"abc12fghi"_s << u"STRING"_s;
    QTest::addRow("number after a blank at 6") << u"abcdef 7i"_s << u"STRING"_s;
}

void tst_ReportItem::kindOfAddedField()
{
    QFETCH(QString, text);
    QFETCH(QString, kind);

    QCOMPARE(kindsOf(rowOf({text})), kind);
    QCOMPARE(ReportItem::isDate(text), kind == u"DATE"_s);
    QCOMPARE(ReportItem::isNumeric(text), kind == u"NUMBER"_s);
}

void tst_ReportItem::fieldsByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");

    QTest::addRow("field1") << u"field1"_s << u"f1"_s;
    QTest::addRow("field13 is past the end") << u"field13"_s << u""_s;
    QTest::addRow("field alone") << u"field"_s << u""_s;
    QTest::addRow("field-1 means none") << u"field-1"_s << u""_s;
    QTest::addRow("any five characters") << u"abcde2"_s << u"f2"_s;
    QTest::addRow("trailing text") << u"field3x"_s << u"f3"_s;
}

void tst_ReportItem::fieldsByName()
{
    QFETCH(QString, name);

    QStringList fields;
    for (int n = 1; n <= 12; ++n)
        fields << u"f"_s + QString::number(n);
    QTEST(rowOf(fields).getFieldByName(name), "value");
}

void tst_ReportItem::replaceAndSearch()
{
    ReportItem row = rowOf({u"xabcx"_s, u"01/02/09"_s});
    QCOMPARE(row.getnthField(3), u""_s);
    QCOMPARE(row.getnthField(0), u""_s);
    QCOMPARE(ReportItem().getnthField(1), u""_s);

    QVERIFY(row.contains(u"ABC"_s));
    QVERIFY(row.contains(u"02/09"_s));
    QVERIFY(!row.contains(u"x01"_s)); // fields are searched one by one
    QVERIFY(!row.contains(u""_s));

    QVERIFY(row.setFieldByName(u"field2"_s, u"Stationery"_s));
    QCOMPARE(row.getnthField(2), u"Stationery"_s);
    QCOMPARE(kindsOf(row), u"STRING NUMBER"_s); // the kind stays as marked when added
    for (const QString &name : {u"field3"_s, u"field"_s, u"field0"_s})
        QVERIFY(row.setFieldByName(name, u"x"_s));
    QCOMPARE(row.fieldCount(), 2);
    QCOMPARE(row.getnthField(1), u"xabcx"_s);
}

QTEST_GUILESS_MAIN(tst_ReportItem)
#include "tst_reportitem.moc"
