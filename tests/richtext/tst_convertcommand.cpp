#include "support/CliRunner.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

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
    void toPdf();
    void wrongUsage_data();
    void wrongUsage();
    void unreadableInput_data();
    void unreadableInput();
    void unwritableOutput();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString path(const QString &name) const { return m_dir->filePath(name); }
    // Runs "ledgerwick-cli convert ARGS..." as a user would.
    CliRun convert(const QStringList &args)
    {
        return runCli(QStringLiteral(LW_CLI), QStringList{QStringLiteral("convert")} + args, m_dir->path());
    }
};

void TestConvertCommand::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void TestConvertCommand::throughEveryFormat()
{
    // rtf -> html -> rtf -> txt, and txt -> rtf -> txt: the words survive.
    QCOMPARE(convert({kData + QStringLiteral("cocoa.rtf"), path(QStringLiteral("a.html"))}).status, 0);
    QCOMPARE(convert({path(QStringLiteral("a.html")), path(QStringLiteral("b.rtf"))}).status, 0);
    QCOMPARE(convert({path(QStringLiteral("b.rtf")), path(QStringLiteral("c.txt"))}).status, 0);
    const QString text = QString::fromUtf8(fileBytes(path(QStringLiteral("c.txt"))));
    for (const char *words : {"Ledgerwick Trading", "Café crème", "Widget", "€12.50", "Total due: <total>"})
        QVERIFY2(text.contains(QString::fromUtf8(words)), words);
    QVERIFY(fileBytes(path(QStringLiteral("b.rtf"))).startsWith("{\\rtf1"));

    QVERIFY(writeBytes(path(QStringLiteral("plain.txt")), "Line one {braces}\nLíne two\n"));
    QCOMPARE(convert({path(QStringLiteral("plain.txt")), path(QStringLiteral("plain.rtf"))}).status, 0);
    QCOMPARE(convert({path(QStringLiteral("plain.rtf")), path(QStringLiteral("again.txt"))}).status, 0);
    QCOMPARE(fileBytes(path(QStringLiteral("again.txt"))), QByteArray("Line one {braces}\nLíne two\n"));
}

void TestConvertCommand::rtfdPackageBothWays()
{
    QCOMPARE(convert({kData + QStringLiteral("picture.rtfd"), path(QStringLiteral("copy.rtfd"))}).status, 0);
    QVERIFY(QFile::exists(path(QStringLiteral("copy.rtfd/TXT.rtf"))));
    QVERIFY(QFile::exists(path(QStringLiteral("copy.rtfd/swatch.png"))));
    // A folder given with its trailing slash, as a shell completes it.
    QCOMPARE(convert({path(QStringLiteral("copy.rtfd/")), path(QStringLiteral("flat.rtf"))}).status, 0);
    const QByteArray rtf = fileBytes(path(QStringLiteral("flat.rtf")));
    QCOMPARE(rtf.count("\\pict\\pngblip"), 3);
    QVERIFY(rtf.contains("Small again: "));
}

void TestConvertCommand::htmlKeepsTablesAndPictures()
{
    QCOMPARE(convert({kData + QStringLiteral("libreoffice.rtf"), path(QStringLiteral("page.html"))}).status, 0);
    const QByteArray html = fileBytes(path(QStringLiteral("page.html")));
    QVERIFY(html.contains("<img src=\"data:image/png;base64,"));
    QVERIFY(html.contains("Pay online"));
    QCOMPARE(convert({kData + QStringLiteral("word1251.rtf"), path(QStringLiteral("table.html"))}).status, 0);
    QVERIFY(fileBytes(path(QStringLiteral("table.html"))).contains("<table"));
    // And back: the picture comes from its data URL.
    QCOMPARE(convert({path(QStringLiteral("page.html")), path(QStringLiteral("back.rtf"))}).status, 0);
    QCOMPARE(fileBytes(path(QStringLiteral("back.rtf"))).count("\\pict\\pngblip"), 1);
}

void TestConvertCommand::toPdf()
{
    const CliRun run = convert({kData + QStringLiteral("cocoa.rtf"), path(QStringLiteral("invoice.pdf"))});
    QCOMPARE(run.status, 0);
    const QByteArray pdf = fileBytes(path(QStringLiteral("invoice.pdf")));
    QVERIFY(pdf.startsWith("%PDF-"));
    QVERIFY(pdf.size() > 1000);
}

void TestConvertCommand::wrongUsage_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addRow("nothing") << QStringList();
    QTest::addRow("one path") << QStringList{QStringLiteral("a.rtf")};
    QTest::addRow("three paths") << QStringList{QStringLiteral("a.rtf"), QStringLiteral("b.rtf"),
                                                QStringLiteral("c.rtf")};
    QTest::addRow("unknown output") << QStringList{kData + QStringLiteral("cocoa.rtf"), QStringLiteral("out.docx")};
    QTest::addRow("unknown input") << QStringList{QStringLiteral("in.doc"), QStringLiteral("out.rtf")};
    QTest::addRow("pdf is not read") << QStringList{QStringLiteral("in.pdf"), QStringLiteral("out.rtf")};
}

void TestConvertCommand::wrongUsage()
{
    QFETCH(QStringList, args);
    const CliRun run = convert(args);
    QCOMPARE(run.status, 2);
    QVERIFY(run.err.contains(QStringLiteral("usage: ledgerwick-cli convert IN OUT")));
    QVERIFY(run.out.isEmpty());
}

void TestConvertCommand::unreadableInput_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("message");
    QTest::addRow("missing file") << QStringLiteral("missing.rtf") << QStringLiteral("missing.rtf");
    QTest::addRow("missing package") << QStringLiteral("missing.rtfd") << QStringLiteral("TXT.rtf");
    QTest::addRow("not rtf") << QStringLiteral("fake.rtf") << QStringLiteral("not in RTF format");
    QTest::addRow("missing html") << QStringLiteral("missing.html") << QStringLiteral("missing.html");
}

void TestConvertCommand::unreadableInput()
{
    QFETCH(QString, input);
    QFETCH(QString, message);
    QVERIFY(writeBytes(path(QStringLiteral("fake.rtf")), "Just some text.\n"));
    const CliRun run = convert({path(input), path(QStringLiteral("out.txt"))});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY(!QFile::exists(path(QStringLiteral("out.txt"))));
}

void TestConvertCommand::unwritableOutput()
{
    for (const char *name : {"no/such/folder/out.rtf", "no/such/folder/out.pdf", "no/such/folder/out.txt"}) {
        const QString out = path(QString::fromLatin1(name));
        const CliRun run = convert({kData + QStringLiteral("cocoa.rtf"), out});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.err.contains(out), qPrintable(run.err));
    }
    // An existing file in the way of a package folder is left alone.
    QVERIFY(writeBytes(path(QStringLiteral("notes.rtfd")), "keep me"));
    QCOMPARE(convert({kData + QStringLiteral("cocoa.rtf"), path(QStringLiteral("notes.rtfd"))}).status, 1);
    QCOMPARE(fileBytes(path(QStringLiteral("notes.rtfd"))), QByteArray("keep me"));
}

QTEST_GUILESS_MAIN(TestConvertCommand)
#include "tst_convertcommand.moc"
