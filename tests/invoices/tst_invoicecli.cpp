#include "support/CliRunner.h"

#include <QDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// Invoices written by the command-line tool, run as a user would.
class TestInvoiceCli : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void writesEachFormat_data();
    void writesEachFormat();
    void refusesUnknownOrderOrTemplate_data();
    void refusesUnknownOrderOrTemplate();

private:
    QString home(const QString &name) const { return m_home->path(name); }
    std::unique_ptr<CliHome> m_home;
};

void TestInvoiceCli::init()
{
    m_home = std::make_unique<CliHome>();
    QVERIFY(m_home->ready);
}

void TestInvoiceCli::writesEachFormat_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("templateName"); // "" for the default
    QTest::addColumn<QByteArray>("starts");    // the file's first bytes
    QTest::addColumn<QByteArray>("holds");     // a piece of the filled text
    QTest::addRow("pdf") << u"out.pdf"_s << u""_s << QByteArray("%PDF") << QByteArray();
    QTest::addRow("text") << u"out.txt"_s << u""_s << QByteArray() << QByteArray("Brass hinge");
    QTest::addRow("html") << u"out.html"_s << u"Invoice with tax"_s << QByteArray("<!DOCTYPE") << QByteArray("20.00");
    QTest::addRow("rtfd") << u"out.rtfd/TXT.rtf"_s << u""_s << QByteArray("{\\rtf1") << QByteArray("Labour");
    // A template of the user's own, in the stationery folder.
    QTest::addRow("own template") << u"out.txt"_s << u"Mine"_s << QByteArray("Order ORD5 for Kitchen refit")
                                  << QByteArray();
}

void TestInvoiceCli::writesEachFormat()
{
    QFETCH(QString, file);
    QFETCH(QString, templateName);
    QFETCH(QByteArray, starts);
    QFETCH(QByteArray, holds);
    const QString stationery = home(u"Library/Application Support/Ledgerwick/stationary"_s);
    QVERIFY(QDir().mkpath(stationery));
    QVERIFY(writeBytes(stationery + u"/Mine.rtf"_s, "{\\rtf1 Order <ordernumber> for <title>\\par}"));
    QStringList args = {u"invoice"_s, u"5"_s, u"--output"_s, home(file.section(u'/', 0, 0))};
    if (!templateName.isEmpty())
        args << u"--template"_s << templateName;
    const CliRun run = m_home->onBundle(args);
    QVERIFY2(run.status == 0, qPrintable(run.err));
    const QByteArray bytes = fileBytes(home(file));
    QVERIFY2(bytes.startsWith(starts), bytes.left(40).constData());
    QVERIFY(bytes.contains(holds));
    QVERIFY(!bytes.contains("&lt;ordernumber") && !bytes.contains("<ordernumber>"));
}

void TestInvoiceCli::refusesUnknownOrderOrTemplate_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    QTest::addRow("unknown order") << QStringList{u"42"_s} << u"there is no order with the id 42"_s;
    QTest::addRow("unknown template") << QStringList{u"5"_s, u"--template"_s, u"Quote"_s}
                                      << u"there is no template called \"Quote\""_s;
}

void TestInvoiceCli::refusesUnknownOrderOrTemplate()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    const CliRun run =
        m_home->onBundle(QStringList{u"invoice"_s} + args + QStringList{u"--output"_s, home(u"out.pdf"_s)});
    QCOMPARE(run.status, 2);
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY(!QFile::exists(home(u"out.pdf"_s)));
}

QTEST_GUILESS_MAIN(TestInvoiceCli)
#include "tst_invoicecli.moc"
