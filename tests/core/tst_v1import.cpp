#include "contacts/Contact.h"
#include "core/DatabasePaths.h"
#include "orders/Order.h"
#include "support/AppFixture.h"
#include "support/CliRunner.h"
#include "support/LogCapture.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using Ending = V1DatabaseImport::Ending;

// A version-1 file: two contacts, a record of a kind the import does not know,
// and an order naming the first contact, last in the file.
static const QByteArray kFile = "<db><people><contact><id>7</id><name>Ann</name></contact>"
                                "<contact><name>Bob</name></contact></people>"
                                "<misc><note><name>Zed</name></note></misc>"
                                "<jobs><order><title>Roof</title><contactId>7</contactId></order></jobs></db>";

class TestV1Import : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        f = std::make_unique<AppFixture>();
        f->addItem(u"N1"_s, u"Nail"_s);
        QVERIFY(QDir().mkpath(f->home(u"Ledgerwick"_s)) && QDir().mkpath(f->home(u"db.lwkdb"_s)));
        QVERIFY(writeBytes(f->bundleFile(u"items.xml"_s), "old items"));
    }
    void cleanup() { f.reset(); }
    // Cancelled, no file, or no backup: the lists and the bundle stay as they were.
    void nothingIsTouched_data()
    {
        QTest::addColumn<bool>("file");
        QTest::addColumn<bool>("backup");
        QTest::addColumn<QString>("alert");
        QTest::addRow("cancelled") << true << true
                                   << u"Import Ledgerwick Database | If you continue, an earlier version of Ledgerwick "
                                      "(v1.x) will be searched for and data will be imported. Any existing data will "
                                      "be overwritten. Do you want to continue? | OK, Cancel"_s;
        QTest::addRow("no file") << false << true
                                 << u"Import Ledgerwick Database | An Ledgerwick database hasn't been found. | OK"_s;
        QTest::addRow("no backup") << true << false
                                   << u"Import Ledgerwick Database | The current database could not be backed up "
                                      "(disk full), so nothing was imported. | OK"_s;
    }
    void nothingIsTouched()
    {
        QFETCH(bool, file);
        QFETCH(bool, backup);
        QFETCH(QString, alert);
        QVERIFY(!file || writeBytes(v1File(), kFile));
        if (!backup)
            f->ledgerwick->setV1ImportBackup([](QString *error) { return *error = u"disk full"_s, QString(); });
        f->platform.alertAnswers << (QTest::currentDataTag() == "cancelled"_L1 ? 1 : 0);
        f->ledgerwick->importLedgerwickDatabaseWithWarning();
        QCOMPARE(AppFixture::alertText(f->platform.alerts.last()), alert);
        QCOMPARE(f->ledgerwick->getItemManager()->getCount(), 1);
        QVERIFY(!QFileInfo::exists(f->bundleFile(u"Backups"_s)));
    }
    void importsEveryRecordAndLinksTheOrder()
    {
        QVERIFY(writeBytes(v1File(), kFile));
        QVERIFY(QDir().mkpath(f->home(u"Library/Ledgerwick/Attachments/Order1"_s)));
        QVERIFY(writeBytes(f->home(u"Library/Ledgerwick/Attachments/Order1/a.txt"_s), "pdf"));
        f->ledgerwick->importLedgerwickDatabaseWithWarning();
        QCOMPARE(f->ledgerwick->getItemManager()->getCount(), 0);
        QCOMPARE(f->ledgerwick->getContactManager()->getCount(), 2);
        QCOMPARE(f->ledgerwick->getOrderManager()->getCount(), 1);
        const auto *order = static_cast<Order *>(f->ledgerwick->getOrderManager()->getFirstItem());
        QCOMPARE(order->getContactId(), 7);
        QVERIFY(order->getContact() && order->getContact()->getName() == u"Ann"_s);
        QCOMPARE(f->ledgerwick->getContactManager()->numberOfRowsInTableView(), 2); // refiltered: shown
        const QStringList sets = QDir(f->bundleFile(u"Backups"_s)).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QCOMPARE(sets.size(), 1);
        QCOMPARE(fileBytes(f->bundleFile(u"Backups/"_s + sets[0] + u"/items.xml"_s)), "old items");
        QCOMPARE(fileBytes(f->bundleFile(u"items.xml"_s)), "old items"); // nothing saved
        QCOMPARE(fileBytes(DatabasePaths::standardBundleFolder() + u"/Attachments/Order1/a.txt"_s), "pdf");
        QCOMPARE(f->platform.alerts.last().informativeText,
                 u"Imported 0 products, 0 material lines, 0 actions, 2 contacts, 1 orders and 0 bills. The previous "
                 "database was backed up to %1. Nothing is saved until the next save."_s.arg(
                     f->bundleFile(u"Backups/"_s + sets[0])));
    }
    void endingsAreTold_data()
    {
        QTest::addColumn<QByteArray>("tail");
        QTest::addColumn<Ending>("ending");
        QTest::addColumn<QString>("told");
        QTest::addRow("complete") << QByteArray("<name>B</name></contact></g></db>") << Ending::Complete << QString();
        QTest::addRow("cut short") << QByteArray("<name>Bo") << Ending::Truncated << u"the file is cut short"_s;
        QTest::addRow("not ascii") << QByteArray("<name>B\xc3\xa9</name></contact></g></db>") << Ending::NotAscii
                                   << u"a text in it is not plain ASCII"_s;
        QTest::addRow("long tag") << QByteArray("<namenamenamenamenamenamenamename1>B</name>") << Ending::TooLong
                                  << u"a tag or value in it is longer than the reader takes"_s;
    }
    void endingsAreTold()
    {
        QFETCH(QByteArray, tail);
        QFETCH(Ending, ending);
        QFETCH(QString, told);
        QVERIFY(writeBytes(v1File(), "<db><g><contact><name>A</name></contact><contact>" + tail));
        const V1DatabaseImport::Result result = f->ledgerwick->importLedgerwickDatabase();
        QCOMPARE(result.ending, ending);
        QCOMPARE(result.counts[3], result.ending == Ending::Complete ? 2 : 1);
        const QString text = f->platform.alerts.last().informativeText;
        QCOMPARE(text.contains(u"The file ended early ("_s + told + u")"_s), !told.isEmpty());
    }
    void columnFiles_data()
    {
        QTest::addColumn<QByteArray>("fields");
        QTest::addColumn<bool>("taken");
        const QByteArray full = "<colwidth>40</colwidth><colheading>Code</colheading><field>code</field>"
                                "<colwidth>90</colwidth><colheading>Item</colheading><field>item</field>";
        QTest::addRow("complete") << full << true;
        QTest::addRow("a width short") << QByteArray(full).replace("<colwidth>90</colwidth>", "") << false;
        QTest::addRow("a title short") << QByteArray(full).replace("<colheading>Item</colheading>", "") << false;
        QTest::addRow("a field short") << QByteArray(full).replace("<field>item</field>", "") << false;
    }
    void columnFiles()
    {
        QFETCH(QByteArray, fields);
        QFETCH(bool, taken);
        const QString path = f->home(u"cols.xml"_s);
        QVERIFY(writeBytes(path, "<t><s><c><numberofcols>2</numberofcols>" + fields + "</c></s></t>"));
        lwDataSource *items = f->ledgerwick->getItemManager();
        auto shown = [items] {
            QStringList columns;
            for (const auto &column : items->columns())
                columns << u"%1:%2:%3"_s.arg(column.identifier, column.title).arg(column.width);
            return columns;
        };
        const QStringList before = shown();
        LogCapture log;
        QCOMPARE(items->configureTable(path), taken);
        QCOMPARE(shown(), taken ? QStringList({u"code:Code:40"_s, u"item:Item:90"_s}) : before);
        QCOMPARE(items->sortRules().size(), taken ? 2 : 0);
        QCOMPARE(log.lines().last().startsWith(u"column file %1 refused: names 2 columns"_s.arg(path)), !taken);
    }

private:
    QString v1File() const { return f->home(u"Ledgerwick/ledgerwickdatabase.xml"_s); }
    std::unique_ptr<AppFixture> f;
};

QTEST_GUILESS_MAIN(TestV1Import)
#include "tst_v1import.moc"
