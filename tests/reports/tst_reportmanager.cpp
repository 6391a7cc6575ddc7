#include "core/DatabasePaths.h"
#include "support/AppFixture.h"
#include "support/CliRunner.h"
#include "reports/ReportItem.h"
#include "reports/ReportManager.h"
#include "support/LogCapture.h"
#include "support/TestRecord.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

using Rows = std::vector<std::shared_ptr<ReportItem>>;

bool writeFile(const QString &name, const QByteArray &bytes)
{
    return QDir().mkpath(DatabasePaths::reportsFolder()) &&
           writeBytes(DatabasePaths::reportsFolder() + u'/' + name, bytes);
}

// "<key>k</key><string>v</string>" for each pair, strings given as "v"
// and arrays as "[a,b]" or, for conditions, "[[f,op,v],...]".
QByteArray plist(const QList<std::pair<QByteArray, QString>> &entries)
{
    QByteArray body;
    for (const auto &[key, value] : entries) {
        QString v = value;
        if (v.startsWith(u'[')) {
            v.replace(u"[["_s, u"<array><array><string>"_s).replace(u"]]"_s, u"</string></array></array>"_s);
            v.replace(u"],["_s, u"</string></array><array><string>"_s).replace(u"["_s, u"<array><string>"_s);
            v.replace(u"]"_s, u"</string></array>"_s).replace(u","_s, u"</string><string>"_s);
        } else {
            v = u"<string>"_s + v + u"</string>"_s;
        }
        body += "<key>" + key + "</key>" + v.toUtf8();
    }
    return "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + body + "</dict></plist>";
}

// Every cell as shown: cells joined by ",", rows by "|".
QString table(const ReportManager &reports)
{
    QStringList rows;
    for (int row = 0; row < reports.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < reports.columnCount(); ++column)
            cells << reports.data(reports.index(row, column)).toString();
        rows << cells.join(u',');
    }
    return rows.join(u'|');
}

QString texts(const Rows &rows)
{
    QStringList out;
    for (const auto &row : rows)
        out << row->getnthField(1) + u':' + row->getnthField(2) + u':' + row->getnthField(3);
    return out.join(u' ');
}

// Every row against every later one, exactly as the rule reads.
void pairwise(Rows &rows, const QString &matchCol, const QString &qtyCol)
{
    for (qsizetype i = 0; i < qsizetype(rows.size()); ++i)
        for (qsizetype j = i + 1; j < qsizetype(rows.size()); ++j)
            if (rows[i]->getFieldByName(matchCol) == rows[j]->getFieldByName(matchCol) &&
                ReportManager::merge(*rows[i], *rows[j], qtyCol))
                rows.erase(rows.begin() + j--);
}


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

class tst_ReportManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_app = std::make_unique<AppFixture>();
        m_reports = m_app->ledgerwick->getReportManager();
        new QAbstractItemModelTester(m_reports, QAbstractItemModelTester::FailureReportingMode::QtTest, m_reports);
        m_reports->setCurrentContactSource([] { return u"7"_s; });
    }
    void cleanup() { m_app.reset(); }
    void conditions_data();
    void conditions();
    void runs_data();
    void runs();
    void collationEqualsPairwise();
    void populateFilterCopiesAndLists();
    void kindOfAddedField_data();
    void kindOfAddedField();
    void fieldsByName_data();
    void fieldsByName();
    void replaceAndSearch();

private:
    std::unique_ptr<AppFixture> m_app;
    ReportManager *m_reports = nullptr;
};

void tst_ReportManager::conditions_data()
{
    QTest::addColumn<QString>("v");
    QTest::addColumn<QString>("op");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("meets");

    QTest::addRow("number > is strict") << u"5"_s << u">"_s << u"5"_s << false;
    QTest::addRow("number > passes above") << u"5.5"_s << u">"_s << u"5"_s << true;
    QTest::addRow("number = as numbers") << u"5"_s << u"="_s << u"5.00"_s << true;
    QTest::addRow("number = fails on a non-number") << u"0"_s << u"="_s << u"abc"_s << false;
    QTest::addRow("date > is inclusive") << u"01/02/09"_s << u">"_s << u"01/02/09"_s << true;
    QTest::addRow("date > earlier fails") << u"31/01/09"_s << u">"_s << u"01/02/09"_s << false;
    QTest::addRow("date < is strict") << u"01/02/09"_s << u"<"_s << u"01/02/09"_s << false;
    QTest::addRow("date = compares texts") << u"01/02/09"_s << u"="_s << u"1/2/09"_s << false;
    QTest::addRow("text > always holds") << u"Alice"_s << u">"_s << u"M"_s << true;
    QTest::addRow("text = is case-sensitive") << u"abc"_s << u"="_s << u"ABC"_s << false;
    QTest::addRow("empty ! empty") << u""_s << u"!"_s << u""_s << false;
    QTest::addRow("unknown operator") << u"a"_s << u"~"_s << u"b"_s << true;
    QTest::addRow("currentcontact") << u"7"_s << u"="_s << u"currentcontact"_s << true;
    QTest::addRow("currentcontact other") << u"8"_s << u"="_s << u"currentcontact"_s << false;
}

void tst_ReportManager::conditions()
{
    QFETCH(QString, v);
    QFETCH(QString, op);
    QFETCH(QString, value);
    m_reports->setUserDateFormat(u"%d/%m/%y"_s);
    const TestRecord row(v);
    QTEST(m_reports->meetsCriteria(row, {{u"name"_s, op, value}}), "meets");
    // A later condition that fails rejects.
    QVERIFY(!m_reports->meetsCriteria(row, {{u"name"_s, op, value}, {u"name"_s, u"="_s, u"\x01"_s}}));
}

void tst_ReportManager::runs_data()
{
    QTest::addColumn<QString>("keys"); // after selectfrom, the columns and the fields: "key=value;..."
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("log");

    QTest::addRow("total") << u"totalcol=2"_s << u"a,1,000.00|b,20|a,abc|b,20|,_____|,1040.00"_s << u""_s;
    QTest::addRow("where") << u"where=[[name,=,a]]"_s << u"a,1,000.00|a,abc"_s << u""_s;
    QTest::addRow("where2 without fields2") << u"where2=[[name,=,b]]"_s << u"a,1,000.00|b,20|a,abc|b,20"_s << u""_s;
    QTest::addRow("second rows next to the first") << u"where2=[[name,=,b]];fields2=[qty,name,extra]"_s
                                                   << u"a,1,000.00|b,20|20,b|a,abc|b,20|20,b"_s << u""_s;
    // Merged after the totals: the total still counts every row.
    QTest::addRow("collation") << u"totalcol=2;collationmatchcol=1;collationqtycol=2"_s
                               << u"a,1,000.00|b,40.00|a,abc|,_____|,1040.00"_s << u"couldn't merge 1,000.00 and abc"_s;
    QTest::addRow("no datasource") << u"selectfrom=Orders;totalcol=2"_s << u",_____|,0.00"_s << u"no datasource"_s;
}

void tst_ReportManager::runs()
{
    QFETCH(QString, keys);

    for (const char *row : {"a 1,000.00", "b 20", "a abc", "b 20"}) {
        auto r = std::make_shared<TestRecord>(QString::fromLatin1(row).section(u' ', 0, 0));
        r->fields.insert(u"qty"_s, QString::fromLatin1(row).section(u' ', 1));
        r->fields.insert(u"extra"_s, u"x"_s);
        m_app->ledgerwick->getOrderManager()->add(r);
    }
    QList<std::pair<QByteArray, QString>> entries{{"colheadings", u"[Name,Qty]"_s},
                                                  {"colwidths", u"[120,60]"_s},
                                                  {"fields", u"[name,qty]"_s}};
    if (!keys.startsWith(u"selectfrom"_s))
        entries.append({"selectfrom", u"orders"_s});
    for (const QString &entry : keys.split(u';'))
        entries.append({entry.section(u'=', 0, 0).toLatin1(), entry.section(u'=', 1)});
    QVERIFY(writeFile(u"Test.xml"_s, plist(entries)));

    LogCapture logged;
    m_reports->doReport(u"Test"_s);
    QTEST(table(*m_reports), "shown");
    QTEST(logged.lines().join(u'\n'), "log");
    QCOMPARE(m_reports->headerData(1, Qt::Horizontal).toString(), u"Qty"_s);

    logged.clear();
    m_reports->doReport(u"Missing"_s);
    QCOMPARE(logged.lines().value(0), u"couldn't open file: "_s + DatabasePaths::reportsFolder() + u"/Missing.xml"_s);
    QCOMPARE(m_reports->rowCount() + m_reports->columnCount(), 0);
}

void tst_ReportManager::collationEqualsPairwise()
{
    // Few match texts and quantities that are often not numbers, so that
    // groups, failed merges and the re-examined index come up often.
    const QStringList keys{u"A"_s, u"B"_s, u""_s, u"2"_s};
    const QStringList quantities{u"1"_s, u"2.5"_s, u"x"_s, u""_s, u"3abc"_s, u"-1"_s, u"0.1"_s, u"1,5"_s, u"2"_s};
    QRandomGenerator random(20261123);
    LogCapture logged;
    for (int round = 0; round < 10000; ++round) {
        Rows expected, rows;
        for (int r = random.bounded(0, 14); r > 0; --r) {
            const QStringList fields{keys.at(random.bounded(keys.size())),
                                     quantities.at(random.bounded(quantities.size())), QString::number(r)};
            for (Rows *list : {&expected, &rows}) {
                list->push_back(std::make_shared<ReportItem>());
                for (const QString &field : fields)
                    list->back()->addField(field);
            }
        }
        // Now and then the quantity is the match column, or a column past the row.
        const int shape = random.bounded(10);
        const QString matchCol = shape == 0 ? u"field2"_s : u"field1"_s;
        const QString qtyCol = shape == 1 ? u"field9"_s : u"field2"_s;
        logged.clear();
        pairwise(expected, matchCol, qtyCol);
        const QStringList expectedLog = logged.lines();
        logged.clear();
        ReportManager::collate(rows, matchCol, qtyCol);
        QCOMPARE(texts(rows), texts(expected));
        QCOMPARE(logged.lines(), expectedLog);
    }
}

void tst_ReportManager::populateFilterCopiesAndLists()
{
    const QString folder = DatabasePaths::reportsFolder();
    LogCapture logged;
    m_reports->populateFilter();
    QCOMPARE(logged.lines().first(), u"reports folder doesn't exist, creating it and copying reports."_s);
    QCOMPARE(logged.lines().size(), 9);
    const QStringList builtIns{u"Current Customers"_s, u"Current Items Purchased"_s, u"Outstanding Balances"_s,
                               u"Reorder Quantities"_s, u"Stocktake"_s, u"Top Sellers"_s};
    QCOMPARE(m_reports->filterPopUp().entries, builtIns);

    // A user's edited copy stays; a missing contact report comes back; any
    // file is offered but hidden and internal ones.
    QVERIFY(writeFile(u"Stocktake.xml"_s, "edited"));
    QVERIFY(QFile::remove(folder + u"/ItemsforOpenContact.xml"_s));
    for (const QString &name : {u"notes.txt"_s, u".hidden.xml"_s, u"MoneyIn.xml"_s})
        QVERIFY(writeFile(name, {}));
    logged.clear();
    m_reports->populateFilter();
    QCOMPARE(logged.lines(),
             (QStringList{u"copied :/reports/ItemsforOpenContact.xml to "_s + folder + u"/ItemsforOpenContact.xml"_s,
                          u"failed to copy :/reports/Stocktake.xml to "_s + folder + u"/Stocktake.xml"_s,
                          u"failed to copy :/reports/Reorder Quantities.xml to "_s + folder +
                              u"/Reorder Quantities.xml"_s}));
    QFile stocktake(folder + u"/Stocktake.xml"_s);
    QVERIFY(stocktake.open(QIODevice::ReadOnly));
    QCOMPARE(stocktake.readAll(), QByteArray("edited"));
    QCOMPARE(m_reports->filterPopUp().entries, builtIns.mid(0, 2) + QStringList{u"notes"_s} + builtIns.mid(2));
}

void tst_ReportManager::kindOfAddedField_data()
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

void tst_ReportManager::kindOfAddedField()
{
    QFETCH(QString, text);
    QFETCH(QString, kind);

    QCOMPARE(kindsOf(rowOf({text})), kind);
    QCOMPARE(ReportItem::isDate(text), kind == u"DATE"_s);
    QCOMPARE(ReportItem::isNumeric(text), kind == u"NUMBER"_s);
}

void tst_ReportManager::fieldsByName_data()
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

void tst_ReportManager::fieldsByName()
{
    QFETCH(QString, name);

    QStringList fields;
    for (int n = 1; n <= 12; ++n)
        fields << u"f"_s + QString::number(n);
    QTEST(rowOf(fields).getFieldByName(name), "value");
}

void tst_ReportManager::replaceAndSearch()
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

QTEST_GUILESS_MAIN(tst_ReportManager)
#include "tst_reportmanager.moc"
