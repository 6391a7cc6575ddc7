#include "core/CliPlatform.h"
#include "core/Log.h"
#include "support/LogCapture.h"
#include "support/ScriptedPlatform.h"

#include <QTest>

class TestPlatform : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void scriptedPlatformRecordsAndAnswers();
    void cliPlatformTakesTheDefaults();
    void logLinesAreCaptured();
};

void TestPlatform::scriptedPlatformRecordsAndAnswers()
{
    ScriptedPlatform platform;
    platform.alertAnswers.enqueue(1);
    Platform &base = platform;
    QCOMPARE(base.alert({QStringLiteral("Delete?"),
                         QStringLiteral("Really?"),
                         {QStringLiteral("Delete"), QStringLiteral("Cancel")}}),
             1);
    QCOMPARE(base.alert({QStringLiteral("Again?"), QString(), {QStringLiteral("Yes"), QStringLiteral("No")}}), 0);
    base.inform(QStringLiteral("Done"), QStringLiteral("All saved"));
    QCOMPARE(platform.alerts.size(), 3);
    QCOMPARE(platform.alerts.at(2).title, QStringLiteral("Done"));
    QCOMPARE(platform.alerts.at(2).informativeText, QStringLiteral("All saved"));
    QCOMPARE(platform.alerts.at(2).buttons, QStringList{QStringLiteral("OK")});

    platform.panelAnswers.enqueue(QStringLiteral("/tmp/out.csv"));
    QCOMPARE(base.savePanel({QStringLiteral("Export"), {QStringLiteral("csv")}}), QStringLiteral("/tmp/out.csv"));
    QCOMPARE(base.openPanel({}), QString()); // an empty queue cancels
    QCOMPARE(platform.panels.at(0).fileTypes, QStringList{QStringLiteral("csv")});
    base.setPasteboardText(QStringLiteral("copied"));
    QCOMPARE(base.pasteboardText(), QStringLiteral("copied"));
    QVERIFY(base.openUrl(QUrl(QStringLiteral("mailto:a@b.c"))));
    QCOMPARE(platform.openedUrls.at(0).scheme(), QStringLiteral("mailto"));
    base.beep();
    QCOMPARE(platform.beeps, 1);
}

void TestPlatform::cliPlatformTakesTheDefaults()
{
    CliPlatform platform;
    QCOMPARE(
        platform.alert(
            {QStringLiteral("Question"), QStringLiteral("Proceed?"), {QStringLiteral("Yes"), QStringLiteral("No")}}),
        0);
    QCOMPARE(platform.savePanel({}), QString());
    QCOMPARE(platform.openPanel({}), QString());
    QVERIFY(!platform.openUrl(QUrl(QStringLiteral("https://example.org"))));
    platform.setPasteboardText(QStringLiteral("x"));
    QCOMPARE(platform.pasteboardText(), QStringLiteral("x"));
}

void TestPlatform::logLinesAreCaptured()
{
    LogCapture capture;
    lwLog(QStringLiteral("reading db, starting contacts"));
    qInfo("not ours");
    lwLog(QStringLiteral("contacts not written successfully"));
    QCOMPARE(capture.lines(), QStringList({QStringLiteral("reading db, starting contacts"),
                                           QStringLiteral("contacts not written successfully")}));
    capture.clear();
    QVERIFY(capture.lines().isEmpty());
}

QTEST_GUILESS_MAIN(TestPlatform)
#include "tst_platform.moc"
