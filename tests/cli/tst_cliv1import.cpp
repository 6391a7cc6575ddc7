#include "support/CliRunner.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// The version-1 import and the column files, through the command-line tool.
class TestCliV1Import : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir().mkpath(m_home->filePath(u"runtime"_s)));
        QVERIFY(copyFolder(QStringLiteral(LW_TEST_DATA "/bundle-foreign"), bundle()));
    }
    void importsSavesAndTellsAnEarlyEnd()
    {
        const QString file = m_home->filePath(u"v1.xml"_s);
        QVERIFY(writeBytes(file, "<db><g><product><item>Nail</item></product><contact><name>Ann</name></contact>"
                                 "<bill><name>Rent</name></bill><bill><name>Ga"));
        const CliRun run = cli({u"import-v1"_s, file, u"--db"_s, bundle()});
        QCOMPARE(run.status, 0);
        QVERIFY2(run.out.startsWith(u"product 1\nmaterial 0\naction 0\ncontact 1\norder 0\nbill 1\n"
                                    "ended early: the file is cut short\nbackup "_s +
                                    bundle() + u"/Backups/"_s),
                 qPrintable(run.out));
        QVERIFY(!QFileInfo::exists(bundle() + u"/lock.xml"_s));
        const CliRun check = cli({u"check"_s, u"--db"_s, bundle()});
        QVERIFY(check.out.startsWith(u"contacts 1\norders 0\nitems 1\nmaterials 0\nbills 1\nactions 0\n"_s));
    }
    void exportTakesAColumnFile()
    {
        const QString cols = m_home->filePath(u"cols.xml"_s);
        const QByteArray column = "<colwidth>60</colwidth><colheading>Who</colheading><field>name</field>";
        QVERIFY(writeBytes(cols, "<t><s><c><numberofcols>1</numberofcols>" + column + "</c></s></t>"));
        const CliRun run =
            cli({u"export"_s, u"contacts"_s, u"--csv"_s, u"--columns-file"_s, cols, u"--db"_s, bundle()});
        QCOMPARE(run.status, 0);
        QVERIFY2(run.out.startsWith(u"\"Who\"\r\""_s) && run.out.count(u',') == 0, qPrintable(run.out));
        QVERIFY(writeBytes(cols, "<t><s><c><numberofcols>2</numberofcols>" + column + "</c></s></t>"));
        const CliRun refused = cli(
            {u"export"_s, u"contacts"_s, u"--csv"_s, u"--columns-file"_s, cols, u"--db"_s, bundle(), u"--verbose"_s});
        QCOMPARE(refused.status, 2);
        QVERIFY2(refused.err.contains(u"refused: names 2 columns but holds 1 widths, 1 titles and 1 fields"_s),
                 qPrintable(refused.err));
        QVERIFY(refused.out.isEmpty());
    }

private:
    CliRun cli(const QStringList &args) { return runCli(QStringLiteral(LW_CLI), args, m_home->path()); }
    QString bundle() const { return m_home->filePath(u"shop.lwkdb"_s); }
    std::unique_ptr<QTemporaryDir> m_home;
};

QTEST_GUILESS_MAIN(TestCliV1Import)
#include "tst_cliv1import.moc"
