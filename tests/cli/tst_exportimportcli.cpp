#include "support/CliRunner.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

using Run = CliRun;

// Every file of the bundle with its bytes, to show that nothing was written.
QMap<QString, QByteArray> snapshot(const QString &folder)
{
    QMap<QString, QByteArray> files;
    const QStringList names = QDir(folder).entryList(QDir::Files);
    for (const QString &name : names)
        files.insert(name, fileBytes(QDir(folder).filePath(name)));
    return files;
}

} // namespace

// The export and import commands, run as a user would on a copy of a bundle.
class TestExportImportCli : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void exportWritesWhatTheAppWrites();
    void exportBadUsage_data();
    void exportBadUsage();
    void importSavesAndReleasesTheLock();
    void importStopsAtARefusedField();
    void importRefusesALockedBundle();

private:
    Run cli(const QStringList &args);
    QString bundle() const { return m_home->filePath(QStringLiteral("shop.lwkdb")); }
    QTemporaryDir *m_home = nullptr;
};

Run TestExportImportCli::cli(const QStringList &args)
{
    return runCli(QStringLiteral(LW_CLI), args, m_home->path());
}

void TestExportImportCli::init()
{
    m_home = new QTemporaryDir;
    QVERIFY(m_home->isValid());
    QVERIFY(QDir().mkpath(m_home->filePath(QStringLiteral("runtime"))));
    QVERIFY(QFile::setPermissions(m_home->filePath(QStringLiteral("runtime")),
                                  QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
    QVERIFY(copyFolder(QStringLiteral(LW_TEST_DATA "/bundle-foreign"), bundle()));
}

void TestExportImportCli::cleanup()
{
    delete m_home;
}

void TestExportImportCli::exportWritesWhatTheAppWrites()
{
    const auto before = snapshot(bundle());
    const Run items = cli(
        {QStringLiteral("export"), QStringLiteral("items"), QStringLiteral("--csv"), QStringLiteral("--db"), bundle()});
    QCOMPARE(items.status, 0);
    QCOMPARE(items.outBytes, QByteArray("\"Code\",\"Item\",\"Qty\",\"Price\",\"Cost\",\"Status\"\r"
                                        "\"P2\",\"Brass hinge \xC2\xBD\"\",\"14\",\"1,250.00\",\"\",\"\"\r"));

    // The lines of order 5 only, the second row shaded, as a UTF-16 page.
    const QString output = m_home->filePath(QStringLiteral("lines.html"));
    const Run lines =
        cli({QStringLiteral("export"), QStringLiteral("materials"), QStringLiteral("--html"), QStringLiteral("--order"),
             QStringLiteral("5"), QStringLiteral("--columns"), QStringLiteral("item:Item,qty"),
             QStringLiteral("--output"), output, QStringLiteral("--db"), bundle()});
    QCOMPARE(lines.status, 0);
    QVERIFY(lines.outBytes.isEmpty());
    const QString page = QStringLiteral(
        "<html><head><title>Data Export from Ledgerwick</title><body>"
        "<table cellpadding=2 cellspacing=2 border=0><tr>"
        "<th style = background:#cccccc;font-family:sans-serif;text-align:left>Item</th>"
        "<th style = background:#cccccc;font-family:sans-serif;text-align:left>qty</th></tr>"
        "<tr><td  style = font-family:monospace>Brass hinge</td><td  style = font-family:monospace>2</td></tr>"
        "<tr><td style = background:#f0f0ff;font-family:monospace style = font-family:monospace>Labour</td>"
        "<td style = background:#f0f0ff;font-family:monospace style = font-family:monospace>1</td></tr>"
        "</table><br /></body></head></html>");
    QByteArray expected("\xFF\xFE", 2);
    for (const QChar ch : page)
        expected.append(char(ch.unicode() & 0xFF)).append(char(ch.unicode() >> 8));
    QCOMPARE(fileBytes(output), expected);

    // Reading only: no lock taken, not a byte changed.
    QCOMPARE(snapshot(bundle()), before);
}

void TestExportImportCli::exportBadUsage_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    QTest::addRow("no format") << QStringList{QStringLiteral("items")} << QStringLiteral("usage:");
    QTest::addRow("two formats") << QStringList{QStringLiteral("items"), QStringLiteral("--csv"),
                                                QStringLiteral("--html")}
                                 << QStringLiteral("usage:");
    QTest::addRow("unknown list") << QStringList{QStringLiteral("reports"), QStringLiteral("--csv")}
                                  << QStringLiteral("usage:");
    QTest::addRow("materials without order") << QStringList{QStringLiteral("materials"), QStringLiteral("--csv"),
                                                            QStringLiteral("--columns"), QStringLiteral("item:Item")}
                                             << QStringLiteral("--order ID is required");
    QTest::addRow("order for items") << QStringList{QStringLiteral("items"), QStringLiteral("--csv"),
                                                    QStringLiteral("--order"), QStringLiteral("5")}
                                     << QStringLiteral("--order ID is required");
    QTest::addRow("empty column") << QStringList{QStringLiteral("items"), QStringLiteral("--csv"),
                                                 QStringLiteral("--columns"), QStringLiteral("code:Code,,qty")}
                                  << QStringLiteral("--columns needs");
    QTest::addRow("unknown stock filter") << QStringList{QStringLiteral("items"), QStringLiteral("--csv"),
                                                         QStringLiteral("--filter"), QStringLiteral("Nowhere")}
                                          << QStringLiteral("the items filter has no entry \"Nowhere\"");
    QTest::addRow("filter") << QStringList{QStringLiteral("bills"), QStringLiteral("--csv"), QStringLiteral("--filter"),
                                           QStringLiteral("Paid")}
                            << QStringLiteral("the bills list has no filter pop-up yet");
}

void TestExportImportCli::exportBadUsage()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    const Run run = cli(QStringList{QStringLiteral("export")} + args + QStringList{QStringLiteral("--db"), bundle()});
    QCOMPARE(run.status, 2);
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY(run.outBytes.isEmpty());
}

void TestExportImportCli::importSavesAndReleasesTheLock()
{
    const QString file = m_home->filePath(QStringLiteral("stock.tdl"));
    QVERIFY(writeBytes(file, "code\titem\tqty\tcomments\r\nN1\tNail\t100\tbox\r\nS1\tScrew\t50\t\r\n"));
    const Run run = cli({QStringLiteral("import"), QStringLiteral("items"), file, QStringLiteral("--db"), bundle()});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.err, QStringLiteral("Import successful: 2 records imported\n"));
    QVERIFY(!QFile::exists(bundle() + QStringLiteral("/lock.xml")));

    const Run items =
        cli({QStringLiteral("export"), QStringLiteral("items"), QStringLiteral("--csv"), QStringLiteral("--columns"),
             QStringLiteral("code:Code,qty:Qty,comments:Notes"), QStringLiteral("--db"), bundle()});
    QCOMPARE(items.outBytes, QByteArray("\"Code\",\"Qty\",\"Notes\"\r"
                                        "\"P2\",\"14\",\"\"\r"
                                        "\"N1\",\"100\",\"Imported using Ledgerwick import routine\nbox\"\r"
                                        "\"S1\",\"50\",\"Imported using Ledgerwick import routine\n\"\r"));

    // The list's own search field and stock filter apply before the export.
    const Run searched =
        cli({QStringLiteral("export"), QStringLiteral("items"), QStringLiteral("--csv"), QStringLiteral("--columns"),
             QStringLiteral("code:Code"), QStringLiteral("--search"), QStringLiteral("SCREW"),
             QStringLiteral("--filter"), QStringLiteral("In Stock"), QStringLiteral("--db"), bundle()});
    QCOMPARE(searched.status, 0);
    QCOMPARE(searched.outBytes, QByteArray("\"Code\"\r\"S1\"\r"));

    // A file of one line imports nothing and says so.
    QVERIFY(writeBytes(file, "code\titem"));
    const Run empty = cli({QStringLiteral("import"), QStringLiteral("items"), file, QStringLiteral("--db"), bundle()});
    QCOMPARE(empty.status, 1);
    QCOMPARE(empty.err, QStringLiteral("No Data: Only one row found in csv file\n"));
    QVERIFY(!QFile::exists(bundle() + QStringLiteral("/lock.xml")));
}

void TestExportImportCli::importStopsAtARefusedField()
{
    const QString file = m_home->filePath(QStringLiteral("stock.csv"));
    QVERIFY(writeBytes(file, "code\tquantitymethod\nN1\teach\nS1\teach\n"));
    const Run run = cli({QStringLiteral("import"), QStringLiteral("items"), file, QStringLiteral("--db"), bundle()});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err, QStringLiteral("Import stopped: The import stopped at row 1: the field \"quantitymethod\" cannot "
                                     "be set by an import. 1 records, this row's included, were added to the list.\n"));
    // What was made before the stop is saved, as at quit.
    const Run check = cli({QStringLiteral("check"), QStringLiteral("--db"), bundle()});
    QVERIFY2(check.outBytes.contains("\nitems 2\n"), check.outBytes.constData());
}

void TestExportImportCli::importRefusesALockedBundle()
{
    QVERIFY(writeBytes(bundle() + QStringLiteral("/lock.xml"), QByteArray()));
    const auto before = snapshot(bundle());
    const QString file = m_home->filePath(QStringLiteral("stock.tdl"));
    QVERIFY(writeBytes(file, "code\titem\rN1\tNail\r"));
    const Run run = cli({QStringLiteral("import"), QStringLiteral("items"), file, QStringLiteral("--db"), bundle()});
    QCOMPARE(run.status, 3);
    QVERIFY(run.err.contains(QLatin1String("open in another copy")));
    QCOMPARE(snapshot(bundle()), before);
}

QTEST_GUILESS_MAIN(TestExportImportCli)
#include "tst_exportimportcli.moc"
