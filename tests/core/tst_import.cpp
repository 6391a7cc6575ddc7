#include "core/RecordTable.h"
#include "support/CliRunner.h"
#include "support/LogCapture.h"
#include "support/AppFixture.h"
#include "support/TestRecord.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace {

const QString kImported = QStringLiteral("Imported using Ledgerwick import routine\n");

// Each record as "field=value" pairs in name order, the id first.
QStringList dump(const lwDataSource &list)
{
    QStringList out;
    for (const auto &record : list.records()) {
        const auto *test = static_cast<const TestRecord *>(record.get());
        QStringList keys = test->fields.keys();
        std::sort(keys.begin(), keys.end());
        QStringList pairs{QString::number(record->getID())};
        for (const QString &key : keys)
            pairs << key + QLatin1Char('=') + test->fields.value(key);
        out << pairs.join(QLatin1Char('|'));
    }
    return out;
}

QStringList alertTexts(const ScriptedPlatform &platform)
{
    QStringList out;
    for (const Platform::Alert &alert : platform.alerts)
        out << alert.title + QStringLiteral(": ") + alert.informativeText;
    return out;
}

QString success(int count)
{
    return QStringLiteral("Import successful: %1 records imported").arg(count);
}

} // namespace

class TestImport : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void importsText_data();
    void importsText();
    void readsFilesAndLogs();
    void decodesByByteOrderMark();
    void panelAndContext();

private:
    std::unique_ptr<AppFixture> m_app;
    ScriptedPlatform *m_platform = nullptr;
    Ledgerwick *m_ledgerwick = nullptr;
    RecordTable *m_table = nullptr; // the controller's child
};

void TestImport::init()
{
    m_app = std::make_unique<AppFixture>();
    m_platform = &m_app->platform;
    m_ledgerwick = m_app->ledgerwick.get();
    m_table = new RecordTable({}, m_ledgerwick);
    m_table->setLedgerwick(m_ledgerwick);
    // Every new record already holds a comment, so the prefix must keep it.
    m_table->setFactory([] {
        auto record = std::make_shared<TestRecord>();
        record->fields.remove(QStringLiteral("name"));
        record->fields.insert(QStringLiteral("comments"), QStringLiteral("old"));
        return record;
    });
    new QAbstractItemModelTester(m_table, m_table);
}

void TestImport::cleanup()
{
    // The import must never write: the home folder stays empty.
    QCOMPARE(QDir(m_app->home()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList());
    m_app.reset();
}

void TestImport::importsText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("records");
    QTest::addColumn<QStringList>("alerts");

    const QString c = QStringLiteral("comments=") + kImported + QStringLiteral("old");
    const QStringList annBob{QStringLiteral("1|") + c + QStringLiteral("|name=Ann|qty=3"),
                             QStringLiteral("2|") + c + QStringLiteral("|name=Bob|qty=4")};
    QTest::addRow("cr line ends") << QStringLiteral("name\tqty\rAnn\t3\rBob\t4") << annBob << QStringList{success(2)};
    QTest::addRow("crlf line ends") << QStringLiteral("name\tqty\r\nAnn\t3\r\nBob\t4\r\n") << annBob
                                    << QStringList{success(2)};
    QTest::addRow("quoted and padded") << QStringLiteral(" \"name\" \t\"qty\"\r\"\"Ann\"\"\t \" 3 \" \rBob\t\"4\"")
                                       << annBob << QStringList{success(2)};
    QTest::addRow("inner quotes kept") << QStringLiteral("name\tqty\r\"A \"B\" C\"\t3")
                                       << QStringList{QStringLiteral("1|") + c +
                                                      QStringLiteral("|name=A \"B\" C|qty=3")}
                                       << QStringList{success(1)};
    QTest::addRow("one line") << QStringLiteral("name\tqty\t") << QStringList()
                              << QStringList{QStringLiteral("No Data: Only one row found in csv file")};
    QTest::addRow("one-field rows skipped")
        << QStringLiteral("name\tqty\rAnn\r\rBob\t4")
        << QStringList{QStringLiteral("1|") + c + QStringLiteral("|name=Bob|qty=4")} << QStringList{success(1)};
    QTest::addRow("one heading") << QStringLiteral("name\rAnn\tx\rBob") << QStringList() << QStringList{success(0)};
    QTest::addRow("long row imported") << QStringLiteral("name\tqty\rAnn\t3\textra\rBob\t4") << annBob
                                       << QStringList{QStringLiteral("Bad Data: Row 1 has a different number of "
                                                                     "fields (3) than there are headers (2)"),
                                                      success(2)};
    QTest::addRow("short row ends all") << QStringLiteral("name\tqty\tprice\rAnn\t3\t1\rBob\t4\rCid\t5\t6\t7")
                                        << QStringList()
                                        << QStringList{QStringLiteral("Bad Data: Row 2 has a different number of "
                                                                      "fields (2) than there are headers (3)")};
}

void TestImport::importsText()
{
    QFETCH(QString, text);
    QFETCH(QStringList, records);
    QCOMPARE(m_table->importText(text), int(records.size()));
    QCOMPARE(dump(*m_table), records);
    QTEST(alertTexts(*m_platform), "alerts");
}

void TestImport::readsFilesAndLogs()
{
    LogCapture log;
    m_table->openPanelDidEnd(QStringLiteral(LW_TEST_DATA "/import/people.tdl"), 1, QStringLiteral("Import Data"));
    QCOMPARE(log.lines(),
             QStringList({QStringLiteral("Importing Data"), QStringLiteral("Header: name"),
                          QStringLiteral("Header: qty"), QStringLiteral("row: 1"), QStringLiteral("name: Zoë"),
                          QStringLiteral("qty: 3"), QStringLiteral("row: 2"), QStringLiteral("name: Bob"),
                          QStringLiteral("qty: 4"), QStringLiteral("row: 3")}));
    QCOMPARE(alertTexts(*m_platform), QStringList{success(2)});
    QCOMPARE(m_table->getCount(), 2);

    // A file that cannot be read is said to be so and imports nothing.
    log.clear();
    m_platform->alerts.clear();
    m_table->openPanelDidEnd(QStringLiteral(LW_TEST_DATA "/import/missing.tdl"), 1, QStringLiteral("Import Data"));
    QCOMPARE(log.lines(), QStringList({QStringLiteral("Importing Data"), QStringLiteral("can't open")}));
    QCOMPARE(alertTexts(*m_platform),
             QStringList({QStringLiteral("Cannot Read File: missing.tdl could not be read as UTF-8 or UTF-16 text."),
                          success(0)}));
    QCOMPARE(m_table->getCount(), 2);
}

void TestImport::decodesByByteOrderMark()
{
    // UTF-16 with its mark, UTF-8 with its mark: the mark is not part of the
    // first heading. Without a mark, text that is not UTF-8 cannot be read.
    QTemporaryDir dir;
    const QString name = QStringLiteral("name\tqty\rZo\u00eb\t3\r");
    const struct
    {
        QByteArray bytes;
        int records;
    } files[] = {
        {QByteArray("\xFF\xFE", 2) + QByteArray(reinterpret_cast<const char *>(name.utf16()), name.size() * 2), 1},
        {QByteArray("\xEF\xBB\xBF") + name.toUtf8(), 1},
        {name.toLatin1(), 0},
    };
    int expected = 0;
    for (const auto &file : files) {
        const QString path = dir.filePath(QStringLiteral("in.csv"));
        QVERIFY(writeBytes(path, file.bytes));
        m_table->openPanelDidEnd(path, 1, QStringLiteral("Import Data"));
        expected += file.records;
        QCOMPARE(m_table->getCount(), expected);
        if (file.records)
            QCOMPARE(m_table->records().back()->getFieldByName(QStringLiteral("name")), QStringLiteral("Zo\u00eb"));
    }
    QCOMPARE(alertTexts(*m_platform),
             QStringList({success(1), success(1),
                          QStringLiteral("Cannot Read File: in.csv could not be read as UTF-8 or UTF-16 text."),
                          success(0)}));
}

void TestImport::panelAndContext()
{
    // Only a confirmed panel with the import's context imports.
    const QString file = QStringLiteral(LW_TEST_DATA "/import/people.tdl");
    m_table->openPanelDidEnd(file, 0, QStringLiteral("Import Data"));
    m_table->openPanelDidEnd(file, 1, QStringLiteral("Export Data"));
    QCOMPARE(m_table->getCount(), 0);
    QVERIFY(m_platform->alerts.isEmpty());

    m_platform->panelAnswers.enqueue(QString()); // cancelled
    m_platform->panelAnswers.enqueue(file);
    m_table->importData(nullptr);
    QCOMPARE(m_table->getCount(), 0);
    m_table->importData(nullptr);
    QCOMPARE(m_table->getCount(), 2);
    QCOMPARE(m_platform->panels.size(), 2);
    QCOMPARE(m_platform->panels.at(1).fileTypes, QStringList({QStringLiteral("csv"), QStringLiteral("tdl")}));

    // The import goes on while read-only: the records wait for a save.
    m_ledgerwick->setReadOnly(true);
    m_platform->panelAnswers.enqueue(file);
    m_table->importData(nullptr);
    QCOMPARE(m_table->getCount(), 4);

    // A list without a record factory cannot import.
    RecordTable plain({}, m_ledgerwick);
    plain.setLedgerwick(m_ledgerwick);
    m_platform->alerts.clear();
    QCOMPARE(plain.importText(QStringLiteral("name\tqty\rAnn\t3")), 0);
    QCOMPARE(plain.getCount(), 0);
    QCOMPARE(alertTexts(*m_platform), QStringList{QStringLiteral("Import stopped: This list cannot import records.")});
}

QTEST_MAIN(TestImport)
#include "tst_import.moc"
