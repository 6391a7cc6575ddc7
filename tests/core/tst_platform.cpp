#include "core/CliPlatform.h"

#include <QTest>

class TestPlatform : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cliPlatformTakesTheDefaults();
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

QTEST_GUILESS_MAIN(TestPlatform)
#include "tst_platform.moc"
