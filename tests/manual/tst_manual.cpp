#include "prefs/Manual.h"
#include "support/CliRunner.h"
#include "support/LogCapture.h"
#include "support/ScriptedPlatform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QSignalSpy>
#include <QTest>

class TestManual : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void pageActionsOpenTheirPage_data();
    void pageActionsOpenTheirPage();
    void changedOrMissingPagesAreRestoredOthersLeftAlone();
    void pageIsOpenedEvenWhenItCannotBeWritten();
    void withoutABrowserTheHelpWindowIsAskedFor();

private:
    QTemporaryDir m_dir;
    QString m_dataHome;
};

void TestManual::initTestCase()
{
    QVERIFY(m_dir.isValid());
    // A space, a "#" and a letter outside ASCII in the folder: each would
    // break an address built carelessly.
    m_dataHome = m_dir.path() + QStringLiteral("/my data #1 \u00e9t\u00e9");
    QVERIFY(QDir().mkpath(m_dataHome));
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_dataHome));
    QVERIFY(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation).startsWith(m_dataHome));
}

void TestManual::pageActionsOpenTheirPage_data()
{
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QString>("page");
    // Every action's page is checked through the contents below; these two
    // stand for the way a menu reaches them.
    QTest::addRow("menu1") << QByteArray("menu1") << QStringLiteral("menu.html");
    QTest::addRow("BOM") << QByteArray("BOM") << QStringLiteral("orders2.html");
}

void TestManual::pageActionsOpenTheirPage()
{
    QFETCH(QByteArray, action);
    QFETCH(QString, page);
    QDir(Manual::folder()).removeRecursively();

    ScriptedPlatform platform;
    Manual manual(&platform);
    // Through the meta-object, as a menu or button reaches it, with and
    // without the sender.
    QVERIFY(QMetaObject::invokeMethod(&manual, action.constData()));
    QVERIFY(QMetaObject::invokeMethod(&manual, action.constData(), Q_ARG(QObject *, this)));

    QCOMPARE(platform.openedUrls.size(), 2);
    for (const QUrl &url : std::as_const(platform.openedUrls)) {
        QVERIFY(url.isLocalFile());
        QCOMPARE(url.toLocalFile(), Manual::folder() + QLatin1Char('/') + page);
        QCOMPARE(url.toString(QUrl::FullyEncoded), Manual::baseAddress() + page);
    }
    const QString opened = platform.openedUrls.constFirst().toLocalFile();
    QVERIFY2(QFileInfo(opened).isFile(), qPrintable(opened));
    QCOMPARE(fileBytes(opened), fileBytes(QStringLiteral(":/manual/v5Pro/") + page));
    QVERIFY(Manual::pageNames().contains(page));
    QVERIFY(platform.alerts.isEmpty());
}

void TestManual::changedOrMissingPagesAreRestoredOthersLeftAlone()
{
    QVERIFY(Manual::installPages());
    const QString dir = Manual::folder() + QLatin1Char('/');
    QVERIFY(writeBytes(dir + QStringLiteral("items.html"), "<p>an older manual</p>"));
    QVERIFY(QFile::remove(dir + QStringLiteral("contacts.html")));
    // A page already right must not be rewritten on every click.
    const QDateTime longAgo(QDate(2001, 2, 3), QTime(4, 5, 6));
    {
        QFile same(dir + QStringLiteral("menu.html"));
        QVERIFY(same.open(QIODevice::ReadWrite));
        QVERIFY(same.setFileTime(longAgo, QFileDevice::FileModificationTime));
    }

    ScriptedPlatform platform;
    Manual manual(&platform);
    manual.items();

    QCOMPARE(fileBytes(dir + QStringLiteral("items.html")), fileBytes(QStringLiteral(":/manual/v5Pro/items.html")));
    QCOMPARE(fileBytes(dir + QStringLiteral("contacts.html")),
             fileBytes(QStringLiteral(":/manual/v5Pro/contacts.html")));
    QCOMPARE(QFileInfo(dir + QStringLiteral("menu.html")).lastModified(), longAgo);
    QCOMPARE(platform.openedUrls.size(), 1);
}

void TestManual::pageIsOpenedEvenWhenItCannotBeWritten()
{
    // A plain file where the manual folder should be: nothing can be written.
    const QString manualRoot =
        QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/manual");
    QDir(manualRoot).removeRecursively();
    QVERIFY(writeBytes(manualRoot, QByteArray()));
    LogCapture log;
    ScriptedPlatform platform;
    Manual manual(&platform);
    manual.quickstart();
    QVERIFY(!Manual::installPages());

    QCOMPARE(platform.openedUrls.size(), 1); // the browser shows its own error
    QCOMPARE(platform.openedUrls.constFirst().toLocalFile(), Manual::folder() + QStringLiteral("/quickstart.html"));
    QVERIFY(platform.alerts.isEmpty());
    QVERIFY2(!log.lines().isEmpty() && log.lines().constFirst().startsWith(QLatin1String("manual folder")),
             qPrintable(log.lines().join(QLatin1Char('|'))));

    QVERIFY(QFile::remove(manualRoot));
    QVERIFY(Manual::installPages());
}

void TestManual::withoutABrowserTheHelpWindowIsAskedFor()
{
    ScriptedPlatform platform;
    Manual manual(&platform);
    QSignalSpy asked(&manual, &Manual::openInHelpWindow);
    manual.items();
    manual.updates();
    QCOMPARE(platform.openedUrls.last(), QUrl(Manual::homePage()));
    QCOMPARE(asked.size(), 0);
    platform.canOpenUrls = false;
    manual.items();
    manual.updates();
    QCOMPARE(asked.size(), 2);
    QCOMPARE(asked.at(0).at(0).toUrl(), QUrl(Manual::baseAddress() + QStringLiteral("items.html")));
    QCOMPARE(asked.at(1).at(0).toUrl(), QUrl(Manual::homePage()));
    // Every page of the contents has its title and an action opening it.
    QCOMPARE(Manual::contents().size(), Manual::pageNames().size());
    for (const Manual::Entry &entry : Manual::contents()) {
        QVERIFY(!Manual::pageTitle(QLatin1String(entry.page)).isEmpty());
        (manual.*entry.action)(nullptr);
        QCOMPARE(asked.last().at(0).toUrl().fileName(), QLatin1String(entry.page));
    }
}

QTEST_GUILESS_MAIN(TestManual)
#include "tst_manual.moc"
