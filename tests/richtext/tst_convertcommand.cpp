#include "support/CliRunner.h"

#include <QFile>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kData = QStringLiteral(LW_TEST_DATA "/richtext/");

} // namespace

class TestConvertCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void throughEveryFormat();
    void rtfdPackageBothWays();
    void htmlKeepsTablesAndPictures();
    void wrongUsage_data();
    void wrongUsage();
    void unreadableInput_data();
    void unreadableInput();
    void unwritableOutput();

private:
    std::unique_ptr<CliHome> m_dir;
    QString path(const QString &name) const { return m_dir->path(name); }
    CliRun convert(const QStringList &args) { return m_dir->run(QStringList{u"convert"_s} + args); }
};

void TestConvertCommand::init()
{
    m_dir = std::make_unique<CliHome>();
    QVERIFY(m_dir->ready);
}

void TestConvertCommand::throughEveryFormat()
{
    // rtf -> html -> rtf -> txt, and txt -> rtf -> txt: the words survive.
    QCOMPARE(convert({kData + u"cocoa.rtf"_s, path(u"a.html"_s)}).status, 0);
    QCOMPARE(convert({path(u"a.html"_s), path(u"b.rtf"_s)}).status, 0);
    QCOMPARE(convert({path(u"b.rtf"_s), path(u"c.txt"_s)}).status, 0);
    const QString text = QString::fromUtf8(fileBytes(path(u"c.txt"_s)));
    for (const char *words : {"Ledgerwick Trading", "Café crème", "Widget", "€12.50", "Total due: <total>"})
        QVERIFY2(text.contains(QString::fromUtf8(words)), words);
    QVERIFY(fileBytes(path(u"b.rtf"_s)).startsWith("{\\rtf1"));

    QVERIFY(writeBytes(path(u"plain.txt"_s), "Line one {braces}\nLíne two\n"));
    QCOMPARE(convert({path(u"plain.txt"_s), path(u"plain.rtf"_s)}).status, 0);
    QCOMPARE(convert({path(u"plain.rtf"_s), path(u"again.txt"_s)}).status, 0);
    QCOMPARE(fileBytes(path(u"again.txt"_s)), QByteArray("Line one {braces}\nLíne two\n"));
    // A PDF is only written; what it holds is the printing's own test.
    QCOMPARE(convert({kData + u"cocoa.rtf"_s, path(u"invoice.pdf"_s)}).status, 0);
    QVERIFY(fileBytes(path(u"invoice.pdf"_s)).startsWith("%PDF-"));
}

void TestConvertCommand::rtfdPackageBothWays()
{
    QCOMPARE(convert({kData + u"picture.rtfd"_s, path(u"copy.rtfd"_s)}).status, 0);
    QVERIFY(QFile::exists(path(u"copy.rtfd/TXT.rtf"_s)));
    QVERIFY(QFile::exists(path(u"copy.rtfd/swatch.png"_s)));
    // A folder given with its trailing slash, as a shell completes it.
    QCOMPARE(convert({path(u"copy.rtfd/"_s), path(u"flat.rtf"_s)}).status, 0);
    const QByteArray rtf = fileBytes(path(u"flat.rtf"_s));
    QCOMPARE(rtf.count("\\pict\\pngblip"), 3);
    QVERIFY(rtf.contains("Small again: "));
}

void TestConvertCommand::htmlKeepsTablesAndPictures()
{
    QCOMPARE(convert({kData + u"libreoffice.rtf"_s, path(u"page.html"_s)}).status, 0);
    const QByteArray html = fileBytes(path(u"page.html"_s));
    QVERIFY(html.contains("<img src=\"data:image/png;base64,"));
    QVERIFY(html.contains("Pay online"));
    QCOMPARE(convert({kData + u"word1251.rtf"_s, path(u"table.html"_s)}).status, 0);
    QVERIFY(fileBytes(path(u"table.html"_s)).contains("<table"));
    // And back: the picture comes from its data URL.
    QCOMPARE(convert({path(u"page.html"_s), path(u"back.rtf"_s)}).status, 0);
    QCOMPARE(fileBytes(path(u"back.rtf"_s)).count("\\pict\\pngblip"), 1);
}

void TestConvertCommand::wrongUsage_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addRow("nothing") << QStringList();
    QTest::addRow("one path") << QStringList{u"a.rtf"_s};
    QTest::addRow("three paths") << QStringList{u"a.rtf"_s, u"b.rtf"_s, u"c.rtf"_s};
    QTest::addRow("unknown output") << QStringList{kData + u"cocoa.rtf"_s, u"out.docx"_s};
    QTest::addRow("unknown input") << QStringList{u"in.doc"_s, u"out.rtf"_s};
    QTest::addRow("pdf is not read") << QStringList{u"in.pdf"_s, u"out.rtf"_s};
}

void TestConvertCommand::wrongUsage()
{
    QFETCH(QStringList, args);
    const CliRun run = convert(args);
    QCOMPARE(run.status, 2);
    QVERIFY(run.err.contains(u"usage: ledgerwick-cli convert IN OUT"_s));
    QVERIFY(run.out.isEmpty());
}

void TestConvertCommand::unreadableInput_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("message");
    QTest::addRow("missing file") << u"missing.rtf"_s << u"missing.rtf"_s;
    QTest::addRow("missing package") << u"missing.rtfd"_s << u"TXT.rtf"_s;
    QTest::addRow("not rtf") << u"fake.rtf"_s << u"not in RTF format"_s;
    QTest::addRow("missing html") << u"missing.html"_s << u"missing.html"_s;
}

void TestConvertCommand::unreadableInput()
{
    QFETCH(QString, input);
    QFETCH(QString, message);
    QVERIFY(writeBytes(path(u"fake.rtf"_s), "Just some text.\n"));
    const CliRun run = convert({path(input), path(u"out.txt"_s)});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY(!QFile::exists(path(u"out.txt"_s)));
}

void TestConvertCommand::unwritableOutput()
{
    for (const char *name : {"no/such/folder/out.rtf", "no/such/folder/out.pdf", "no/such/folder/out.txt"}) {
        const QString out = path(QString::fromLatin1(name));
        const CliRun run = convert({kData + u"cocoa.rtf"_s, out});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.err.contains(out), qPrintable(run.err));
    }
    // An existing file in the way of a package folder is left alone.
    QVERIFY(writeBytes(path(u"notes.rtfd"_s), "keep me"));
    QCOMPARE(convert({kData + u"cocoa.rtf"_s, path(u"notes.rtfd"_s)}).status, 1);
    QCOMPARE(fileBytes(path(u"notes.rtfd"_s)), QByteArray("keep me"));
}

QTEST_GUILESS_MAIN(TestConvertCommand)
#include "tst_convertcommand.moc"
