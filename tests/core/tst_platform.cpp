#include "core/CliPlatform.h"
#include "core/Log.h"
#include "support/LogCapture.h"

#include <QTest>

class TestPlatform : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cliPlatformTakesTheDefaults();
    void logLinesAreCaptured();
};

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
