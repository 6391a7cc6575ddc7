// The app asked to end by the system (logout, shutdown, kill) quits as from
// its menu: everything saved, the lock given back.
#include <csignal>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_Termination : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void terminationSavesAndReleasesTheLock_data();
    void terminationSavesAndReleasesTheLock();
};

void tst_Termination::terminationSavesAndReleasesTheLock_data()
{
    QTest::addColumn<bool>("interrupt"); // Ctrl+C in a terminal, else SIGTERM
    QTest::addRow("terminate") << false;
    QTest::addRow("interrupt") << true;
}

void tst_Termination::terminationSavesAndReleasesTheLock()
{
    QFETCH(bool, interrupt);
    QTemporaryDir home;
    QVERIFY(home.isValid());
    const QString bundle = home.filePath(u"Library/Application Support/Ledgerwick/ledgerwickdatabase.lwkdb"_s);
    QProcess app;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(u"HOME"_s, home.path());
    env.insert(u"XDG_CONFIG_HOME"_s, home.filePath(u".config"_s));
    env.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    app.setProcessEnvironment(env);
    app.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    app.start(QStringLiteral(LW_APP), {});
    QVERIFY(app.waitForStarted());
    // Running: the lock is written once the database is read.
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(bundle + u"/lock.xml"_s), 60000);
    if (interrupt)
        ::kill(pid_t(app.processId()), SIGINT);
    else
        app.terminate();
    QVERIFY(app.waitForFinished(60000));
    QCOMPARE(app.exitStatus(), QProcess::NormalExit);
    QCOMPARE(app.exitCode(), 0);
    QVERIFY(!QFile::exists(bundle + u"/lock.xml"_s));
    QCOMPARE(QDir(bundle).entryList({u"*.xml"_s}, QDir::Files).size(), 6);
}

QTEST_GUILESS_MAIN(tst_Termination)
#include "tst_termination.moc"
