#include "support/CliRunner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

using Run = CliRun;

// One item of items.xml; the keys are given as the database stores them.
QByteArray itemRecord(const QList<std::pair<const char *, QString>> &fields)
{
    QByteArray record = "\t\t<dict>\n";
    for (const auto &[key, value] : fields)
        record +=
            "\t\t\t<key>" + QByteArray(key) + "</key>\n\t\t\t<string>" + value.toHtmlEscaped().toUtf8() + "</string>\n";
    return record + "\t\t</dict>\n";
}

} // namespace

// Runs "ledgerwick-cli website-export" on a bundle made here, whose items
// point at website folders in the same temporary home.
class TestWebsiteCli : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void exportsTheFlaggedItems();
    void refusesAMissingBundle();
    void badUsage();

private:
    Run cli(const QStringList &args);
    QString home(const QString &name) const { return m_home->filePath(name); }
    QTemporaryDir *m_home = nullptr;
};

Run TestWebsiteCli::cli(const QStringList &args)
{
    return runCli(QStringLiteral(LW_CLI), args, m_home->path());
}

void TestWebsiteCli::init()
{
    m_home = new QTemporaryDir;
    QVERIFY(m_home->isValid());
}

void TestWebsiteCli::cleanup()
{
    delete m_home;
}

void TestWebsiteCli::exportsTheFlaggedItems()
{
    const QString site = home(u"site/"_s);
    const QString gone = home(u"gone"_s);
    QVERIFY(QDir().mkpath(site + u"objects"_s));
    const QString bundle = home(u"shop.lwkdb"_s);
    QVERIFY(QDir().mkpath(bundle));
    const QByteArray items =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n\t<key>products</key>\n"
        "\t<array>\n" +
        itemRecord({{"id", u"1"_s},
                    {"code", u"P1"_s},
                    {"price", u"12.00"_s},
                    {"qty", u"3"_s},
                    {"quantitymethod", u"Out of stock / in stock"_s},
                    {"hidebuttoncode", u"YES"_s},
                    {"buttoncode", u"<form>buy</form>"_s},
                    {"exportsitemoss", u"YES"_s},
                    {"websitefolder", site}}) +
        // No "hidebuttoncode" key reads as off: the button is shown at stock 0.
        itemRecord({{"id", u"2"_s},
                    {"code", u"P2"_s},
                    {"variation", u"Größe ½"_s},
                    {"price", u"7.50"_s},
                    {"qty", u"0"_s},
                    {"quantitymethod", u"Show quantity"_s},
                    {"buttoncode", u"<b>B</b>"_s},
                    {"exportsitemoss", u"YES"_s},
                    {"websitefolder", home(u"site"_s)}}) +
        itemRecord({{"id", u"3"_s},
                    {"code", u"P3"_s},
                    {"price", u"1.00"_s},
                    {"exportsitemoss", u"NO"_s},
                    {"websitefolder", site}}) +
        itemRecord({{"id", u"4"_s}, {"code", u"P4"_s}, {"exportsitemoss", u"YES"_s}, {"websitefolder", gone}}) +
        "\t</array>\n</dict>\n</plist>\n";
    QVERIFY(writeBytes(bundle + u"/items.xml"_s, items));

    const Run run = cli({u"website-export"_s, u"--verbose"_s, u"--db"_s, bundle});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out, QString());
    QVERIFY2(run.err.endsWith(u"Export: Finished exporting items.\n"_s), qPrintable(run.err));
    QVERIFY2(run.err.contains(u"Unsuccessful exporting data to "_s + gone + u"/objects/LwkItemP4\n"_s),
             qPrintable(run.err));

    QCOMPARE(QDir(site + u"objects"_s).entryList(QDir::Files, QDir::Name),
             (QStringList{u"LwkItemP1"_s, u"LwkItemP2"_s}));
    QCOMPARE(fileBytes(site + u"objects/LwkItemP1"_s),
             QByteArray("<div class = \"singlelinepayment\"><div class = \"price\"><strong>&pound;12</strong>"
                        "<% smt:instock %></div>\n<form>buy</form>\n"
                        "<div style = \"clear:both; height:1px;\"></div>\n</div>"));
    QCOMPARE(fileBytes(site + u"objects/LwkItemP2"_s),
             QByteArray("<div class = \"singlelinepayment\"><div class = \"price\">Gr\xc3\xb6\xc3\x9f"
                        "e \xc2\xbd : <strong>&pound;7.50</strong><span class = \"instock\">Quantity:0</span></div>\n"
                        "<b>B</b>\n<div style = \"clear:both; height:1px;\"></div>\n</div>"));
    QVERIFY(!QFileInfo::exists(gone));

    // The database is only read: no lock taken, nothing rewritten.
    QCOMPARE(QDir(bundle).entryList(QDir::Files), QStringList{u"items.xml"_s});
    QCOMPARE(fileBytes(bundle + u"/items.xml"_s), items);

    // Without --verbose the log stays quiet; the alert is still shown.
    const Run quiet = cli({u"website-export"_s, u"--db="_s + bundle});
    QCOMPARE(quiet.status, 0);
    // (Qt may add its own start-up warnings before it.)
    QVERIFY2(quiet.err.endsWith(u"\nExport: Finished exporting items.\n"_s) ||
                 quiet.err == u"Export: Finished exporting items.\n"_s,
             qPrintable(quiet.err));
    QCOMPARE(quiet.err.count(u"Finished exporting items."_s), 1);
    QVERIFY(!quiet.err.contains(u"Unsuccessful"_s));
}

void TestWebsiteCli::refusesAMissingBundle()
{
    const Run run = cli({u"website-export"_s, u"--db"_s, home(u"nowhere"_s)});
    QCOMPARE(run.status, 1);
    QVERIFY(run.err.contains(u"no database at"_s));
    QVERIFY(!run.err.contains(u"Finished exporting items."_s));
    QVERIFY(run.out.isEmpty());
}

void TestWebsiteCli::badUsage()
{
    const Run help = cli({u"--help"_s});
    QVERIFY(help.out.contains(u"\n  website-export [--db BUNDLE] "_s));
    QCOMPARE(cli({u"website-export"_s, u"--db"_s}).status, 2);
    QCOMPARE(cli({u"website-export"_s, u"extra"_s}).status, 2);
    QCOMPARE(cli({u"website-export"_s, u"--folder"_s, u"x"_s}).status, 2);
}

QTEST_GUILESS_MAIN(TestWebsiteCli)
#include "tst_websitecli.moc"
