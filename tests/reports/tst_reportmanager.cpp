#include "core/DatabasePaths.h"
#include "core/RecordTable.h"
#include "reports/ReportItem.h"
#include "reports/ReportManager.h"
#include "support/LogCapture.h"
#include "support/TestRecord.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

using Rows = std::vector<std::shared_ptr<ReportItem>>;

std::shared_ptr<TestRecord> record(const QHash<QString, QString> &fields)
{
    auto r = std::make_shared<TestRecord>();
    r->fields = fields;
    return r;
}

// A definition file in the reports folder, written as the property list it is.
void writeDefinition(const QString &name, const QList<std::pair<QString, QVariant>> &entries)
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n";
    for (const auto &[key, value] : entries) {
        xml += "<key>" + key.toUtf8() + "</key>";
        if (value.typeId() == QMetaType::QString) {
            xml += "<string>" + value.toString().toUtf8() + "</string>\n";
            continue;
        }
        xml += "<array>";
        for (const QVariant &entry : value.toList()) {
            if (entry.typeId() == QMetaType::QStringList)
                xml += "<array><string>" + entry.toStringList().join(u"</string><string>"_s).toUtf8() + "</string></array>";
            else
                xml += "<string>" + entry.toString().toUtf8() + "</string>";
        }
        xml += "</array>\n";
    }
    QDir().mkpath(DatabasePaths::reportsFolder());
    QFile file(DatabasePaths::reportsFolder() + u"/"_s + name + u".xml"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(xml + "</dict>\n</plist>\n");
}

QVariantList list(const QStringList &strings)
{
    QVariantList out;
    for (const QString &s : strings)
        out << s;
    return out;
}

// Every cell of the table as shown, rows joined by "|", cells by ",".
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

Rows rowsOf(const QList<QStringList> &fields)
{
    Rows rows;
    for (const QStringList &texts : fields) {
        auto row = std::make_shared<ReportItem>();
        for (const QString &text : texts)
            row->addField(text);
        rows.push_back(row);
    }
    return rows;
}

QList<QStringList> fieldsOf(const Rows &rows)
{
    QList<QStringList> out;
    for (const auto &row : rows) {
        QStringList texts;
        for (qsizetype n = 1; n <= row->fieldCount(); ++n)
            texts << row->getnthField(n);
        out << texts;
    }
    return out;
}

// Every row against every later one, exactly as the rule reads.
void pairwiseReference(Rows &rows, const QString &matchCol, const QString &qtyCol)
{
    for (qsizetype i = 0; i < qsizetype(rows.size()); ++i)
        for (qsizetype j = i + 1; j < qsizetype(rows.size()); ++j)
            if (rows[i]->getFieldByName(matchCol) == rows[j]->getFieldByName(matchCol) &&
                ReportManager::merge(*rows[i], *rows[j], qtyCol)) {
                rows.erase(rows.begin() + j);
                --j;
            }
}

} // namespace

class tst_ReportManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void conditions_data();
    void conditions();
    void runs_data();
    void runs();
    void failuresLeaveNoRows();
    void collationEqualsPairwise();
    void populateFilterCopiesAndLists();

private:
    QTemporaryDir *m_home = nullptr;
    QByteArray m_oldHome;
    RecordTable *m_source = nullptr;
    ReportManager *m_reports = nullptr;
};

void tst_ReportManager::init()
{
    m_home = new QTemporaryDir;
    m_oldHome = qgetenv("HOME");
    qputenv("HOME", m_home->path().toLocal8Bit());
    m_source = new RecordTable;
    m_reports = new ReportManager;
    new QAbstractItemModelTester(m_reports, QAbstractItemModelTester::FailureReportingMode::QtTest, m_reports);
    m_reports->setSourceLookup(
        [this](const QString &name) { return name == "orders"_L1 ? static_cast<lwDataSource *>(m_source) : nullptr; });
    m_reports->setCurrentContactSource([] { return u"7"_s; });
}

void tst_ReportManager::cleanup()
{
    delete m_reports;
    delete m_source;
    qputenv("HOME", m_oldHome);
    delete m_home;
}

void tst_ReportManager::conditions_data()
{
    QTest::addColumn<QString>("v");
    QTest::addColumn<QString>("op");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("meets");

    QTest::addRow("number > is strict") << u"5"_s << u">"_s << u"5"_s << false;
    QTest::addRow("number > passes above") << u"5.5"_s << u">"_s << u"5"_s << true;
    QTest::addRow("number <") << u"4"_s << u"<"_s << u"5"_s << true;
    QTest::addRow("number = as numbers") << u"5"_s << u"="_s << u"5.00"_s << true;
    QTest::addRow("number = fails on a non-number") << u"0"_s << u"="_s << u"abc"_s << false;
    QTest::addRow("number ! as numbers") << u"5"_s << u"!"_s << u"5.0"_s << false;
    QTest::addRow("date > is inclusive") << u"01/02/09"_s << u">"_s << u"01/02/09"_s << true;
    QTest::addRow("date > earlier fails") << u"31/01/09"_s << u">"_s << u"01/02/09"_s << false;
    QTest::addRow("date < is strict") << u"01/02/09"_s << u"<"_s << u"01/02/09"_s << false;
    QTest::addRow("date < earlier") << u"31/01/09"_s << u"<"_s << u"01/02/09"_s << true;
    QTest::addRow("date = compares texts") << u"01/02/09"_s << u"="_s << u"1/2/09"_s << false;
    QTest::addRow("text > always holds") << u"Alice"_s << u">"_s << u"M"_s << true;
    QTest::addRow("text < always holds") << u"Zoe"_s << u"<"_s << u"M"_s << true;
    QTest::addRow("text = is case-sensitive") << u"abc"_s << u"="_s << u"ABC"_s << false;
    QTest::addRow("empty ! empty") << u""_s << u"!"_s << u""_s << false;
    QTest::addRow("filled ! empty") << u"Yes"_s << u"!"_s << u""_s << true;
    QTest::addRow("unknown operator") << u"a"_s << u"~"_s << u"b"_s << true;
    QTest::addRow("currentcontact") << u"7"_s << u"="_s << u"currentcontact"_s << true;
    QTest::addRow("currentcontact other") << u"8"_s << u"="_s << u"currentcontact"_s << false;
}

void tst_ReportManager::conditions()
{
    QFETCH(QString, v);
    QFETCH(QString, op);
    QFETCH(QString, value);
    QFETCH(bool, meets);

    m_reports->setUserDateFormat(u"%d/%m/%y"_s);
    const TestRecord row(v);
    QCOMPARE(m_reports->meetsCriteria(row, {{u"name"_s, op, value}}), meets);
    // An empty list accepts; a later condition that fails rejects.
    QVERIFY(m_reports->meetsCriteria(row, {}));
    QVERIFY(!m_reports->meetsCriteria(row, {{u"name"_s, op, value}, {u"name"_s, u"="_s, u"\x01"_s}}));
}

void tst_ReportManager::runs_data()
{
    QTest::addColumn<QVariantList>("definition"); // key, value pairs after selectfrom and colheadings
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("log");

    const QVariantList fields{u"fields"_s, list({u"name"_s, u"qty"_s})};
    QTest::addRow("total with commas and text")
        << (fields + QVariantList{u"totalcol"_s, u"2"_s}) << u"a,1,000.00|b,20|a,abc|b,20|,_____|,1040.00"_s << u""_s;
    QTest::addRow("second total")
        << (fields + QVariantList{u"totalcol"_s, u"1"_s, u"total2col"_s, u"2"_s})
        << u"a,1,000.00|b,20|a,abc|b,20|_____,_____|0.00,1040.00"_s << u""_s;
    QTest::addRow("where")
        << (fields + QVariantList{u"where"_s, QVariantList{QStringList{u"name"_s, u"="_s, u"a"_s}}})
        << u"a,1,000.00|a,abc"_s << u""_s;
    QTest::addRow("where2 without fields2")
        << (fields + QVariantList{u"where2"_s, QVariantList{QStringList{u"name"_s, u"="_s, u"b"_s}}})
        << u"a,1,000.00|b,20|a,abc|b,20"_s << u""_s;
    QTest::addRow("second rows next to the first")
        << (fields + QVariantList{u"where2"_s, QVariantList{QStringList{u"name"_s, u"="_s, u"b"_s}}, u"fields2"_s,
                                  list({u"qty"_s, u"name"_s, u"extra"_s})})
        << u"a,1,000.00|b,20|20,b|a,abc|b,20|20,b"_s << u""_s;
    // Merged after the totals: the total counts every row.
    QTest::addRow("collation")
        << (fields + QVariantList{u"totalcol"_s, u"2"_s, u"collationmatchcol"_s, u"1"_s, u"collationqtycol"_s, u"2"_s})
        << u"a,1,000.00|b,40.00|a,abc|,_____|,1040.00"_s << u"couldn't merge 1,000.00 and abc"_s;
    QTest::addRow("fewer fields than headings")
        << QVariantList{u"fields"_s, list({u"name"_s})} << u"a,|b,|a,|b,"_s << u""_s;
}

void tst_ReportManager::runs()
{
    QFETCH(QVariantList, definition);
    QFETCH(QString, shown);
    QFETCH(QString, log);

    for (const auto &[name, qty] : {std::pair{u"a"_s, u"1,000.00"_s}, {u"b"_s, u"20"_s}, {u"a"_s, u"abc"_s},
                                    {u"b"_s, u"20"_s}})
        m_source->add(record({{u"name"_s, name}, {u"qty"_s, qty}, {u"extra"_s, u"x"_s}}));
    QList<std::pair<QString, QVariant>> entries{{u"selectfrom"_s, u"orders"_s},
                                                {u"colheadings"_s, list({u"Name"_s, u"Qty"_s})},
                                                {u"colwidths"_s, list({u"120"_s, u"60"_s})}};
    for (qsizetype i = 0; i + 1 < definition.size(); i += 2)
        entries.append({definition.at(i).toString(), definition.at(i + 1)});
    writeDefinition(u"Test"_s, entries);

    LogCapture logged;
    m_reports->doReport(u"Test"_s);
    QCOMPARE(table(*m_reports), shown);
    QCOMPARE(logged.lines().join(u'\n'), log);
    QCOMPARE(m_reports->headerData(1, Qt::Horizontal).toString(), u"Qty"_s);
    QCOMPARE(m_reports->columns().at(0).identifier, u"field1"_s);
    QCOMPARE(m_reports->columns().at(0).width, 120);
    QVERIFY(!(m_reports->flags(m_reports->index(0, 0)) & Qt::ItemIsEditable));
}

void tst_ReportManager::failuresLeaveNoRows()
{
    m_source->add(record({{u"name"_s, u"a"_s}}));
    LogCapture logged;
    m_reports->doReport(u"Missing"_s);
    // An empty definition has no source either.
    QCOMPARE(logged.lines(), (QStringList{u"couldn't open file: "_s + DatabasePaths::reportsFolder() +
                                              u"/Missing.xml"_s,
                                          u"no datasource"_s}));
    QCOMPARE(m_reports->columnCount(), 0);
    QCOMPARE(m_reports->rowCount(), 0);

    writeDefinition(u"Elsewhere"_s, {{u"selectfrom"_s, u"Orders"_s},
                                     {u"colheadings"_s, list({u"Name"_s})},
                                     {u"colwidths"_s, list({u"100"_s})},
                                     {u"fields"_s, list({u"name"_s})},
                                     {u"totalcol"_s, u"1"_s}});
    logged.clear();
    m_reports->doReport(u"Elsewhere"_s);
    QCOMPARE(logged.lines(), QStringList{u"no datasource"_s});
    QCOMPARE(m_reports->columnCount(), 1);
    QCOMPARE(table(*m_reports), u"_____|0.00"_s);
}

void tst_ReportManager::collationEqualsPairwise()
{
    // Few match texts and quantities that are sometimes not numbers, so that
    // groups, failed merges and the re-examined index all come up often.
    const QStringList keys{u"A"_s, u"B"_s, u"C"_s, u""_s, u"2"_s};
    const QStringList quantities{u"1"_s, u"2.5"_s, u"x"_s, u""_s, u"3abc"_s, u"-1"_s, u"0.1"_s, u"1,5"_s, u"2"_s};
    QRandomGenerator random(20261123);
    LogCapture logged;
    for (int round = 0; round < 10000; ++round) {
        QList<QStringList> fields;
        const int count = random.bounded(0, 14);
        for (int r = 0; r < count; ++r)
            fields << QStringList{keys.at(random.bounded(keys.size())), quantities.at(random.bounded(quantities.size())),
                                  QString::number(r)};
        // Now and then the quantity is the match column, or a column past the row.
        const int shape = random.bounded(10);
        const QString matchCol = shape == 0 ? u"field2"_s : u"field1"_s;
        const QString qtyCol = shape == 1 ? u"field9"_s : u"field2"_s;

        Rows expected = rowsOf(fields);
        logged.clear();
        pairwiseReference(expected, matchCol, qtyCol);
        const QStringList expectedLog = logged.lines();
        Rows rows = rowsOf(fields);
        logged.clear();
        ReportManager::collate(rows, matchCol, qtyCol);
        if (fieldsOf(rows) != fieldsOf(expected) || logged.lines() != expectedLog) {
            qDebug() << "rows" << fields << matchCol << qtyCol;
            QCOMPARE(fieldsOf(rows), fieldsOf(expected));
            QCOMPARE(logged.lines(), expectedLog);
        }
    }
    // The two cases of the rule itself.
    Rows added = rowsOf({{u"K"_s, u"2"_s}, {u"K"_s, u"3"_s}});
    ReportManager::collate(added, u"field1"_s, u"field2"_s);
    QCOMPARE(fieldsOf(added), (QList<QStringList>{{u"K"_s, u"5.00"_s}}));
    Rows kept = rowsOf({{u"K"_s, u"2"_s}, {u"K"_s, u"x"_s}});
    logged.clear();
    ReportManager::collate(kept, u"field1"_s, u"field2"_s);
    QCOMPARE(kept.size(), size_t(2));
    QCOMPARE(logged.lines(), QStringList{u"couldn't merge 2 and x"_s});
}

void tst_ReportManager::populateFilterCopiesAndLists()
{
    const QString folder = DatabasePaths::reportsFolder();
    LogCapture logged;
    m_reports->populateFilter();
    QCOMPARE(logged.lines().first(), u"reports folder doesn't exist, creating it and copying reports."_s);
    QCOMPARE(logged.lines().size(), 9);
    QVERIFY(logged.lines().contains(u"copied :/reports/Stocktake.xml to "_s + folder + u"/Stocktake.xml"_s));
    const QStringList builtIns{u"Current Customers"_s, u"Current Items Purchased"_s, u"Outstanding Balances"_s,
                               u"Reorder Quantities"_s, u"Stocktake"_s, u"Top Sellers"_s};
    QCOMPARE(m_reports->filterPopUp().entries, builtIns);
    QCOMPARE(m_reports->filterPopUp().selectedTitle(), builtIns.first());

    // A user's edited copy stays; a missing contact report comes back; any
    // file is offered but hidden and internal ones.
    QFile stocktake(folder + u"/Stocktake.xml"_s);
    QVERIFY(stocktake.open(QIODevice::WriteOnly));
    stocktake.write("edited");
    stocktake.close();
    QVERIFY(QFile::remove(folder + u"/ItemsforOpenContact.xml"_s));
    for (const char *name : {"notes.txt", ".hidden.xml", "MoneyIn.xml"}) {
        QFile file(folder + u"/"_s + QLatin1String(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    logged.clear();
    m_reports->populateFilter();
    QCOMPARE(logged.lines(),
             (QStringList{u"copied :/reports/ItemsforOpenContact.xml to "_s + folder + u"/ItemsforOpenContact.xml"_s,
                          u"failed to copy :/reports/Stocktake.xml to "_s + folder + u"/Stocktake.xml"_s,
                          u"failed to copy :/reports/Reorder Quantities.xml to "_s + folder +
                              u"/Reorder Quantities.xml"_s}));
    QVERIFY(stocktake.open(QIODevice::ReadOnly));
    QCOMPARE(stocktake.readAll(), QByteArray("edited"));
    QVERIFY(m_reports->filterPopUp().entries.contains(u"notes"_s));
    QCOMPARE(m_reports->filterPopUp().entries.size(), builtIns.size() + 1);
}

QTEST_GUILESS_MAIN(tst_ReportManager)
#include "tst_reportmanager.moc"
