#include "support/CliRunner.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

using Run = CliRun;

} // namespace

// Runs the command-line tool as a user would, on bundles in a private home.
class TestCli : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void helpAndVersion();
    void checkCountsWithoutWriting();
    void checkRefusesAMissingFolder();
    void saveWritesEverythingAndReleasesTheLock();
    void saveLeavesALockedBundleAlone();
    void badUsage();

private:
    Run cli(const QStringList &args);
    QString bundle() const { return m_home->filePath(QStringLiteral("shop.lwkdb")); }
    QTemporaryDir *m_home = nullptr;
};

Run TestCli::cli(const QStringList &args)
{
    return runCli(QStringLiteral(LW_CLI), args, m_home->path());
}

void TestCli::init()
{
    m_home = new QTemporaryDir;
    QVERIFY(m_home->isValid());
}

void TestCli::cleanup()
{
    delete m_home;
}

void TestCli::helpAndVersion()
{
    const Run help = cli({QStringLiteral("--help")});
    QCOMPARE(help.status, 0);
    for (const char *command : {"check", "save", "convert"})
        QVERIFY2(help.out.contains(QLatin1String("\n  ") + QLatin1String(command) + QLatin1Char(' ')), command);
    const Run version = cli({QStringLiteral("--version")});
    QCOMPARE(version.status, 0);
    QVERIFY(version.out.startsWith(QLatin1String("ledgerwick-cli ")));
}

void TestCli::checkCountsWithoutWriting()
{
    QVERIFY(copyFolder(QStringLiteral(LW_TEST_DATA "/bundle-foreign"), bundle()));
    const QStringList before = QDir(bundle()).entryList(QDir::Files);
    const Run run = cli({QStringLiteral("check"), QStringLiteral("--db"), bundle()});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out, QStringLiteral("contacts 2\norders 2\nitems 1\nmaterials 3\nbills 1\nactions 1\nread-only no\n"));
    QCOMPARE(QDir(bundle()).entryList(QDir::Files), before); // no lock taken, nothing written

    QFile lock(bundle() + QStringLiteral("/lock.xml"));
    QVERIFY(lock.open(QIODevice::WriteOnly));
    lock.close();
    const Run locked = cli({QStringLiteral("check"), QStringLiteral("--db=") + bundle()});
    QCOMPARE(locked.status, 0);
    QVERIFY(locked.out.endsWith(QLatin1String("read-only yes\n")));

    // The location preference is used when no --db is given.
    QDir().mkpath(m_home->filePath(QStringLiteral(".config/Ledgerwick")));
    QFile settings(m_home->filePath(QStringLiteral(".config/Ledgerwick/Ledgerwick.conf")));
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write("[General]\nLedgerwickDbLocation=~/shop.lwkdb\n");
    settings.close();
    const Run byPreference = cli({QStringLiteral("check")});
    QCOMPARE(byPreference.status, 0);
    QVERIFY(byPreference.out.startsWith(QLatin1String("contacts 2\n")));
}

void TestCli::checkRefusesAMissingFolder()
{
    const Run run = cli({QStringLiteral("check"), QStringLiteral("--db"), m_home->filePath(QStringLiteral("nowhere"))});
    QCOMPARE(run.status, 1);
    QVERIFY(run.err.contains(QLatin1String("no database at")));
    QVERIFY(run.out.isEmpty());
}

void TestCli::saveWritesEverythingAndReleasesTheLock()
{
    QVERIFY(copyFolder(QStringLiteral(LW_TEST_DATA "/bundle-foreign"), bundle()));
    const Run run = cli({QStringLiteral("save"), QStringLiteral("--db"), bundle()});
    QCOMPARE(run.status, 0);
    QVERIFY(!QFile::exists(bundle() + QStringLiteral("/lock.xml")));
    // Written in our own form now, with every record kept.
    const QByteArray orders = fileBytes(bundle() + QStringLiteral("/orders.xml"));
    QVERIFY(orders.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist"));
    QVERIFY(orders.contains("<string>Oak &amp; brass, \"quoted\" 5 &gt; 4</string>"));
    const Run check = cli({QStringLiteral("check"), QStringLiteral("--db"), bundle()});
    QCOMPARE(check.out,
             QStringLiteral("contacts 2\norders 2\nitems 1\nmaterials 3\nbills 1\nactions 1\nread-only no\n"));

    // A first save on a new place creates the bundle.
    const Run fresh =
        cli({QStringLiteral("save"), QStringLiteral("--db"), m_home->filePath(QStringLiteral("new.lwkdb"))});
    QCOMPARE(fresh.status, 0);
    QVERIFY(QFile::exists(m_home->filePath(QStringLiteral("new.lwkdb/contacts.xml"))));
}

void TestCli::saveLeavesALockedBundleAlone()
{
    QVERIFY(copyFolder(QStringLiteral(LW_TEST_DATA "/bundle-foreign"), bundle()));
    QFile lock(bundle() + QStringLiteral("/lock.xml"));
    QVERIFY(lock.open(QIODevice::WriteOnly));
    lock.write(
        "<plist version=\"1.0\"><dict><key>datetime</key><string>2007-03-01 14:05:09 +0000</string></dict></plist>");
    lock.close();
    const QByteArray before = fileBytes(bundle() + QStringLiteral("/orders.xml"));
    const Run run = cli({QStringLiteral("save"), QStringLiteral("--db"), bundle()});
    QCOMPARE(run.status, 3);
    QVERIFY(run.err.contains(QLatin1String("open in another copy")));
    QVERIFY(run.err.contains(QLatin1String("2007-03-01 14:05:09 +0000")));
    QCOMPARE(fileBytes(bundle() + QStringLiteral("/orders.xml")), before);
    QVERIFY(QFile::exists(bundle() + QStringLiteral("/lock.xml")));
}

void TestCli::badUsage()
{
    QCOMPARE(cli({QStringLiteral("frobnicate")}).status, 2);
    QCOMPARE(cli({QStringLiteral("check"), QStringLiteral("--db")}).status, 2);
    QCOMPARE(cli({QStringLiteral("save"), QStringLiteral("--colour"), QStringLiteral("red")}).status, 2);
}

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
