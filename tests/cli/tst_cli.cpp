#include "support/CliRunner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kRichText = QStringLiteral(LW_TEST_DATA "/richtext/");

using Run = CliRun;

// Every file of the bundle with its bytes, to show that nothing was written.
QMap<QString, QByteArray> snapshot(const QString &folder)
{
    QMap<QString, QByteArray> files;
    const QStringList names = QDir(folder).entryList(QDir::Files);
    for (const QString &name : names)
        files.insert(name, fileBytes(QDir(folder).filePath(name)));
    return files;
}

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

// Runs the command-line tool as a user would, on a copy of a bundle in a private home.
class TestCli : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void helpAndVersion();
    void checkCountsWithoutWriting();
    void saveWritesEverythingAndReleasesTheLock();
    void aStaleLockIsKeptUntilTakenOver();
    void missingBundleIsRefused();
    void badUsage();
    void exportsTheFlaggedItems();
    void exportWritesWhatTheAppWrites();
    void exportsTheAccounts();
    void exportBadUsage_data();
    void exportBadUsage();
    void importSavesAndReleasesTheLock();
    void importStopsAtARefusedField();
    void reportListsAndRuns();
    void overlappingCommandsLoseNothing();
    void backupsListAndRestore();
    void failuresGoToStandardError();
    void importV1SavesAndTellsAnEarlyEnd();
    void exportTakesAColumnFile();
    void invoiceWritesEachFormat_data();
    void invoiceWritesEachFormat();
    void invoiceRefusesUnknownOrderOrTemplate_data();
    void invoiceRefusesUnknownOrderOrTemplate();
    void convertThroughEveryFormat();
    void convertRtfdPackageBothWays();
    void convertHtmlKeepsTablesAndPictures();
    void convertWrongUsage_data();
    void convertWrongUsage();
    void convertUnreadableInput_data();
    void convertUnreadableInput();
    void convertUnwritableOutput();

private:
    Run cli(const QStringList &args) { return m_home->run(args); }
    Run db(const QStringList &args) { return m_home->onBundle(args); } // on the copied bundle
    Run convert(const QStringList &args) { return cli(QStringList{u"convert"_s} + args); }
    QString bundle() const { return m_home->bundle(); }
    QString home(const QString &name) const { return m_home->path(name); }
    std::unique_ptr<CliHome> m_home;
};

void TestCli::init()
{
    m_home = std::make_unique<CliHome>();
    QVERIFY(m_home->ready);
}

void TestCli::cleanup()
{
    m_home.reset();
}

void TestCli::helpAndVersion()
{
    const Run help = cli({u"--help"_s});
    QCOMPARE(help.status, 0);
    for (const char *command : {"check", "save", "convert"})
        QVERIFY2(help.out.contains(QLatin1String("\n  ") + QLatin1String(command) + QLatin1Char(' ')), command);
    const Run version = cli({u"--version"_s});
    QCOMPARE(version.status, 0);
    QVERIFY(version.out.startsWith(QLatin1String("ledgerwick-cli ")));
    // Each command explains its own options, and writes nothing doing so.
    for (const char *command : {"check", "save", "export", "import", "convert", "website-export", "report", "backups",
                                "restore", "import-v1", "repeats"}) {
        const Run own = db({QLatin1String(command), u"--help"_s});
        QCOMPARE(own.status, 0);
        QVERIFY2(own.out.startsWith(QLatin1String("usage: ledgerwick-cli ") + QLatin1String(command)), command);
    }
    QVERIFY(!QFile::exists(bundle() + u"/lock.xml"_s));
}

void TestCli::checkCountsWithoutWriting()
{
    const QStringList before = QDir(bundle()).entryList(QDir::Files);
    const Run run = db({u"check"_s});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out, u"contacts 2\norders 2\nitems 1\nmaterials 3\nbills 1\nactions 1\nread-only no\n"_s);
    QCOMPARE(QDir(bundle()).entryList(QDir::Files), before); // no lock taken, nothing written

    QVERIFY(writeBytes(bundle() + u"/lock.xml"_s, QByteArray()));
    const Run locked = cli({u"check"_s, u"--db="_s + bundle()});
    QCOMPARE(locked.status, 0);
    QVERIFY(locked.out.endsWith(QLatin1String("read-only yes\n")));

    // The location preference is used when no --db is given.
    QVERIFY(QDir().mkpath(home(u".config/Ledgerwick"_s)));
    QVERIFY(
        writeBytes(home(u".config/Ledgerwick/Ledgerwick.conf"_s), "[General]\nLedgerwickDbLocation=~/shop.lwkdb\n"));
    const Run byPreference = cli({u"check"_s});
    QCOMPARE(byPreference.status, 0);
    QVERIFY(byPreference.out.startsWith(QLatin1String("contacts 2\n")));
}

void TestCli::saveWritesEverythingAndReleasesTheLock()
{
    const Run run = db({u"save"_s});
    QCOMPARE(run.status, 0);
    QVERIFY(!QFile::exists(bundle() + u"/lock.xml"_s));
    // Written in our own form now, with every record kept.
    const QByteArray orders = fileBytes(bundle() + u"/orders.xml"_s);
    QVERIFY(orders.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist"));
    QVERIFY(orders.contains("<string>Oak &amp; brass, \"quoted\" 5 &gt; 4</string>"));
}

void TestCli::aStaleLockIsKeptUntilTakenOver()
{
    // The copy that left "lock.xml" no longer runs: saving and importing refuse
    // and change nothing until asked to take the lock over.
    QVERIFY(writeBytes(bundle() + u"/lock.xml"_s,
                       "<plist version=\"1.0\"><dict><key>datetime</key><string>2007-03-01 14:05:09 +0000</string>"
                       "</dict></plist>"));
    const auto before = snapshot(bundle());
    const Run run = db({u"save"_s});
    QCOMPARE(run.status, 3);
    QVERIFY(run.err.contains(QLatin1String("on 2007-03-01 14:05:09 +0000 is no longer running")));
    QVERIFY(run.err.contains(u"--break-stale-lock"_s));
    const QString file = home(u"stock.tdl"_s);
    QVERIFY(writeBytes(file, "code\titem\rN1\tNail\r"));
    QCOMPARE(db({u"import"_s, u"items"_s, file}).status, 3);
    QCOMPARE(snapshot(bundle()), before); // the lock among them
    QCOMPARE(db({u"save"_s, u"--break-stale-lock"_s}).status, 0);
    QVERIFY(!QFile::exists(bundle() + u"/lock.xml"_s));
}

void TestCli::missingBundleIsRefused()
{
    for (const QString &command : {u"check"_s, u"website-export"_s}) {
        const Run run = cli({command, u"--db"_s, home(u"nowhere"_s)});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.err.contains(QLatin1String("no database at")), qPrintable(run.err));
        QVERIFY(!run.err.contains(QLatin1String("Finished exporting items.")));
        QVERIFY(run.out.isEmpty());
    }
    QCOMPARE(cli({u"save"_s, u"--db"_s, home(u"nowhere"_s)}).status, 1);
    QVERIFY(!QFileInfo::exists(home(u"nowhere"_s))); // nor is one made
}

void TestCli::badUsage()
{
    QCOMPARE(cli({u"frobnicate"_s}).status, 2);
    QCOMPARE(cli({u"check"_s, u"--db"_s}).status, 2);
    QCOMPARE(cli({u"save"_s, u"--colour"_s, u"red"_s}).status, 2);
    QVERIFY(cli({u"--help"_s}).out.contains(QLatin1String("\n  website-export [--db BUNDLE] ")));
    QCOMPARE(cli({u"website-export"_s, u"extra"_s}).status, 2);
    QCOMPARE(cli({u"website-export"_s, u"--folder"_s, u"x"_s}).status, 2);
}

void TestCli::exportsTheFlaggedItems()
{
    const QString site = home(u"site/"_s);
    const QString gone = home(u"gone"_s);
    QVERIFY(QDir().mkpath(site + u"objects"_s));
    const QString bundle = home(u"web.lwkdb"_s);
    QVERIFY(QDir().mkpath(bundle));
    // No "hidebuttoncode" key reads as off: P2's button is shown at stock 0.
    const QByteArray items =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n"
        "\t<key>products</key>\n\t<array>\n" +
        itemRecord({{"id", u"2"_s},
                    {"code", u"P2"_s},
                    {"qty", u"0"_s},
                    {"quantitymethod", u"Show quantity"_s},
                    {"buttoncode", u"<b>B</b>"_s},
                    {"exportsitemoss", u"YES"_s},
                    {"websitefolder", home(u"site"_s)}}) +
        itemRecord({{"id", u"3"_s}, {"code", u"P3"_s}, {"websitefolder", site}}) +
        itemRecord({{"id", u"4"_s}, {"code", u"P4"_s}, {"exportsitemoss", u"YES"_s}, {"websitefolder", gone}}) +
        "\t</array>\n</dict>\n</plist>\n";
    QVERIFY(writeBytes(bundle + u"/items.xml"_s, items));

    const Run run = cli({u"website-export"_s, u"--verbose"_s, u"--db"_s, bundle});
    QCOMPARE(run.status, 1); // the object in the missing folder
    QVERIFY2(run.err.contains(u"not written: "_s + gone + u"/objects/LwkItemP4\n"_s), qPrintable(run.err));
    QCOMPARE(run.out, QString());
    QVERIFY2(run.err.contains(u"Export: Finished exporting items.\n"_s), qPrintable(run.err));
    QVERIFY2(run.err.contains(u"Unsuccessful exporting data to "_s + gone + u"/objects/LwkItemP4\n"_s),
             qPrintable(run.err));

    QCOMPARE(QDir(site + u"objects"_s).entryList(QDir::Files, QDir::Name), QStringList{u"LwkItemP2"_s});
    QVERIFY(fileBytes(site + u"objects/LwkItemP2"_s).contains("Quantity:0</span></div>\n<b>B</b>\n"));
    QVERIFY(!QFileInfo::exists(gone));

    // The database is only read: no lock taken, nothing rewritten.
    QCOMPARE(QDir(bundle).entryList(QDir::Files), QStringList{u"items.xml"_s});
    QCOMPARE(fileBytes(bundle + u"/items.xml"_s), items);

    // Without --verbose the log stays quiet; the alert and the failure are still shown.
    const Run quiet = cli({u"website-export"_s, u"--db="_s + bundle});
    QCOMPARE(quiet.status, 1);
    QVERIFY(quiet.err.contains(u"not written: "_s + gone));
    QCOMPARE(quiet.err.count(u"Finished exporting items."_s), 1);
    QVERIFY(!quiet.err.contains(u"Unsuccessful"_s));
}

void TestCli::exportWritesWhatTheAppWrites()
{
    const auto before = snapshot(bundle());
    const Run items = db({u"export"_s, u"items"_s, u"--csv"_s});
    QCOMPARE(items.status, 0);
    QCOMPARE(items.outBytes, QByteArray("\"Code\",\"Item\",\"Qty\",\"Price\",\"Cost\",\"Status\"\r"
                                        "\"P2\",\"Brass hinge \xC2\xBD\"\",\"14\",\"1,250.00\",\"\",\"\"\r"));

    // The lines of order 5 only, the second row shaded, as a UTF-16 page.
    const QString output = home(u"lines.html"_s);
    const Run lines = db({u"export"_s, u"materials"_s, u"--html"_s, u"--order"_s, u"5"_s, u"--columns"_s,
                          u"item:Item,qty"_s, u"--output"_s, output});
    QCOMPARE(lines.status, 0);
    QVERIFY(lines.outBytes.isEmpty());
    const QString page = QStringLiteral(
        "<html><head><title>Data Export from Ledgerwick</title><body>"
        "<table cellpadding=2 cellspacing=2 border=0><tr>"
        "<th style = background:#cccccc;font-family:sans-serif;text-align:left>Item</th>"
        "<th style = background:#cccccc;font-family:sans-serif;text-align:left>qty</th></tr>"
        "<tr><td  style = font-family:monospace>Brass hinge</td><td  style = font-family:monospace>2</td></tr>"
        "<tr><td style = background:#f0f0ff;font-family:monospace style = font-family:monospace>Labour</td>"
        "<td style = background:#f0f0ff;font-family:monospace style = font-family:monospace>1</td></tr>"
        "</table><br /></body></head></html>");
    QByteArray expected("\xFF\xFE", 2);
    for (const QChar ch : page)
        expected.append(char(ch.unicode() & 0xFF)).append(char(ch.unicode() >> 8));
    QCOMPARE(fileBytes(output), expected);

    // Reading only: no lock taken, not a byte changed.
    QCOMPARE(snapshot(bundle()), before);
}

void TestCli::exportsTheAccounts()
{
    const QString tasks = home(u"tasks.tdl"_s), bills = home(u"bills.tdl"_s);
    QVERIFY(writeBytes(tasks, "title\tcomplete\tdetails\nCall Zoe\tYes\t\nOrder paint\tNo\tgloss\n"));
    QVERIFY(writeBytes(bills, "name\tdatepaid\tamount\nRent\t01/02/09\t1,000.50\nGas\t15/02/09\t250.50\n"
                              "Fuel\t01/03/09\t20\n"));
    QCOMPARE(db({u"import"_s, u"actions"_s, tasks}).status, 0);
    QCOMPARE(db({u"import"_s, u"bills"_s, bills}).status, 0);
    const QString orders = home(u"orders.tdl"_s);
    QVERIFY(writeBytes(orders, "title\tdeposit\tdepositpaid\nSale\t100\t05/02/09\nEarly\t7\t01/01/09\n"));
    QCOMPARE(db({u"import"_s, u"orders"_s, orders}).status, 0);
    auto exported = [this](const QStringList &args) {
        const Run run = db(QStringList{u"export"_s} + args + QStringList{u"--csv"_s});
        return run.status == 0 ? run.out : u"failed: "_s + run.err;
    };

    // The titles only are searched, the filter hides the complete tasks.
    QCOMPARE(exported({u"actions"_s, u"--columns"_s, u"title:Title,complete:Done"_s, u"--filter"_s, u"Incomplete"_s,
                       u"--search"_s, u"o"_s}),
             u"\"Title\",\"Done\"\r\"Order paint\",\"No\"\r"_s);
    QCOMPARE(exported({u"actions"_s, u"--columns"_s, u"title"_s, u"--search"_s, u"gloss"_s}), u"\"title\"\r"_s);
    // A month from 2 February, both ends inclusive, with the rule and totals rows.
    const QStringList month{u"--filter"_s, u"1 Month"_s, u"--from"_s, u"02/02/09"_s};
    QCOMPARE(exported(QStringList{u"bills"_s, u"--columns"_s, u"name:Name,amount:Amount"_s} + month),
             u"\"Name\",\"Amount\"\r\"Gas\",\"250.50\"\r\"Fuel\",\"20\"\r\"\",\"_____\"\r\"\",\"270.50\"\r"_s);
    const QString statement = exported(QStringList{u"statement"_s} + month);
    // Money in is the deposit paid within the month, through the money-in report.
    QCOMPARE(statement, u"\"Statement\",\"Amount\"\r\"Money In\",\"100.00\"\r\"Money Out\",\"270.50\"\r"
                        "\"\",\"_____\"\r\"\",\"-170.50\"\r"_s);

    // The money-in definition for each period is checked on the bills manager.
    const QString moneyIn = exported({u"money-in"_s, u"--filter"_s, u"Current calendar month"_s});
    QVERIFY2(moneyIn.startsWith(u"\"Name\",\"Received\",\"Date\",\"Tax\"\r"_s), qPrintable(moneyIn));
}

void TestCli::exportBadUsage_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    QTest::addRow("no format") << QStringList{u"items"_s} << u"usage:"_s;
    QTest::addRow("unknown list") << QStringList{u"reports"_s, u"--csv"_s} << u"usage:"_s;
    QTest::addRow("materials without order")
        << QStringList{u"materials"_s, u"--csv"_s, u"--columns"_s, u"item:Item"_s} << u"--order ID is required"_s;
    QTest::addRow("empty column") << QStringList{u"items"_s, u"--csv"_s, u"--columns"_s, u"code:Code,,qty"_s}
                                  << u"--columns needs"_s;
    QTest::addRow("unknown stock filter") << QStringList{u"items"_s, u"--csv"_s, u"--filter"_s, u"Nowhere"_s}
                                          << u"the items filter has no entry \"Nowhere\""_s;
    QTest::addRow("unknown period") << QStringList{u"bills"_s, u"--csv"_s, u"--filter"_s, u"Paid"_s}
                                    << u"the bills filter has no entry \"Paid\""_s;
    QTest::addRow("start without period") << QStringList{u"items"_s, u"--csv"_s, u"--from"_s, u"01/02/09"_s}
                                          << u"only bills, money-in and statement take --from"_s;
    QTest::addRow("statement search") << QStringList{u"statement"_s, u"--csv"_s, u"--search"_s, u"Rent"_s}
                                      << u"the statement table has no search field"_s;
}

void TestCli::exportBadUsage()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    const Run run = db(QStringList{u"export"_s} + args);
    QCOMPARE(run.status, 2);
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY(run.outBytes.isEmpty());
}

void TestCli::importSavesAndReleasesTheLock()
{
    const QString file = home(u"stock.tdl"_s);
    QVERIFY(writeBytes(file, "code\titem\tqty\tcomments\r\nN1\tNail\t100\tbox\r\nS1\tScrew\t50\t\r\n"));
    const Run run = db({u"import"_s, u"items"_s, file});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.err, u"Import successful: 2 records imported\n"_s);
    QVERIFY(!QFile::exists(bundle() + u"/lock.xml"_s));

    const Run items = db({u"export"_s, u"items"_s, u"--csv"_s, u"--columns"_s, u"code:Code,qty:Qty,comments:Notes"_s});
    QCOMPARE(items.outBytes, QByteArray("\"Code\",\"Qty\",\"Notes\"\r"
                                        "\"P2\",\"14\",\"\"\r"
                                        "\"N1\",\"100\",\"Imported using Ledgerwick import routine\nbox\"\r"
                                        "\"S1\",\"50\",\"Imported using Ledgerwick import routine\n\"\r"));

    // The list's own search field and stock filter apply before the export.
    const Run searched = db({u"export"_s, u"items"_s, u"--csv"_s, u"--columns"_s, u"code:Code"_s, u"--search"_s,
                             u"SCREW"_s, u"--filter"_s, u"In Stock"_s});
    QCOMPARE(searched.status, 0);
    QCOMPARE(searched.outBytes, QByteArray("\"Code\"\r\"S1\"\r"));

    // A file of one line imports nothing and says so.
    QVERIFY(writeBytes(file, "code\titem"));
    const Run empty = db({u"import"_s, u"items"_s, file});
    QCOMPARE(empty.status, 1);
    QCOMPARE(empty.err, u"No Data: Only one row found in csv file\n"_s);
    QVERIFY(!QFile::exists(bundle() + u"/lock.xml"_s));
}

void TestCli::importStopsAtARefusedField()
{
    const QString file = home(u"stock.csv"_s);
    QVERIFY(writeBytes(file, "code\tquantitymethod\nN1\teach\nS1\teach\n"));
    const Run run = db({u"import"_s, u"items"_s, file});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err, QStringLiteral("Import stopped: The import stopped at row 1: the field \"quantitymethod\" cannot "
                                     "be set by an import. 1 records, this row's included, were added to the list.\n"));
    // What was made before the stop is saved, as at quit.
    const Run check = db({u"check"_s});
    QVERIFY2(check.outBytes.contains("\nitems 2\n"), check.outBytes.constData());
}

void TestCli::reportListsAndRuns()
{
    const Run list = cli({u"report"_s, u"--list"_s});
    QCOMPARE(list.status, 0);
    QCOMPARE(list.out, u"Current Customers\nCurrent Items Purchased\nOutstanding Balances\nReorder Quantities\n"
                       "Stocktake\nTop Sellers\n"_s);

    // The open contact's lines, their total under the rule; with no contact open, none.
    const auto before = snapshot(bundle());
    const Run items = db({u"report"_s, u"ItemsforOpenContact"_s, u"--csv"_s, u"--contact"_s, u"9"_s});
    QCOMPARE(items.status, 0);
    QCOMPARE(items.outBytes, QByteArray("\"Code\",\"Item\",\"Qty\",\"Total\"\r\"\",\"Brass hinge\",\"2\",\"120.00\"\r"
                                        "\"\",\"\",\"\",\"_____\"\r\"\",\"\",\"\",\"120.00\"\r"));
    const Run none = db({u"report"_s, u"ItemsforOpenContact"_s, u"--csv"_s});
    QCOMPARE(none.out.count(u'\r'), 3);
    QVERIFY(none.out.endsWith(u"\"0.00\"\r"_s));
    QCOMPARE(snapshot(bundle()), before);

    const QString output = home(u"stock.html"_s);
    const Run page = db({u"report"_s, u"Stocktake"_s, u"--html"_s, u"--output"_s, output});
    QCOMPARE(page.status, 0);
    const QByteArray bytes = fileBytes(output);
    QVERIFY(bytes.startsWith("\xFF\xFE"));
    const QString text =
        QString::fromUtf16(reinterpret_cast<const char16_t *>(bytes.constData() + 2), (bytes.size() - 2) / 2);
    QVERIFY(text.contains(u">Stock Value</th>"_s));
    QVERIFY(text.contains(u">14.00</td>"_s));

    const Run unknown = db({u"report"_s, u"Nope"_s, u"--csv"_s});
    QCOMPARE(unknown.status, 2);
    QVERIFY(unknown.err.contains(u"there is no report called \"Nope\""_s));
    QCOMPARE(cli({u"report"_s, u"Stocktake"_s, u"--csv"_s, u"--html"_s}).status, 2);
}

void TestCli::overlappingCommandsLoseNothing()
{
    // A bundle big enough that reading it takes a while, and a file of new contacts.
    QByteArray contacts = "<plist><dict><key>contacts</key><array>\n";
    for (int i = 1; i <= 3000; ++i)
        contacts += "<dict><key>id</key><string>" + QByteArray::number(i) + "</string><key>name</key><string>Person " +
                    QByteArray::number(i) + "</string></dict>\n";
    QVERIFY(writeBytes(bundle() + u"/contacts.xml"_s, contacts + "</array></dict></plist>\n"));
    QByteArray rows = "name\tphone\n";
    for (int i = 0; i < 500; ++i)
        rows += "New " + QByteArray::number(i) + "\t" + QByteArray::number(i) + "\n";
    const QString file = home(u"add.tsv"_s);
    QVERIFY(writeBytes(file, rows));
    const QString original = home(u"original.lwkdb"_s);
    QVERIFY(copyFolder(bundle(), original));

    auto start = [this](const QStringList &args) {
        return startCli(QStringLiteral(LW_CLI), args + QStringList{u"--db"_s, bundle()}, m_home->path());
    };
    int overlapped = 0;
    for (int run = 0; run < 20; ++run) {
        QDir(bundle()).removeRecursively();
        QVERIFY(copyFolder(original, bundle()));
        std::unique_ptr<QProcess> import(start({u"import"_s, u"contacts"_s, file}));
        QTest::qWait(run * 3); // the second command starts at a different moment each time
        std::unique_ptr<QProcess> save(start({u"save"_s}));
        for (QProcess *process : {import.get(), save.get()})
            QVERIFY(process->state() == QProcess::NotRunning || process->waitForFinished(60000));
        const int imported = import->exitCode(), saved = save->exitCode();
        QVERIFY2((imported == 0 || imported == 3) && (saved == 0 || saved == 3) && (imported == 0 || saved == 0),
                 qPrintable(u"import %1, save %2"_s.arg(imported).arg(saved)));
        overlapped += imported == 3 || saved == 3;
        const Run check = db({u"check"_s});
        QVERIFY2(check.out.startsWith(u"contacts %1\n"_s.arg(imported == 0 ? 3500 : 3000)),
                 qPrintable(u"run %1: import %2, save %3: %4"_s.arg(run).arg(imported).arg(saved).arg(check.out)));
    }
    qInfo("%d of 20 runs found the other command holding the bundle", overlapped);
}

void TestCli::backupsListAndRestore()
{
    QCOMPARE(db({u"save"_s}).status, 0);
    const Run listed = db({u"backups"_s});
    QCOMPARE(listed.status, 0);
    QVERIFY2(listed.out.contains(u"contacts 2, orders"_s), qPrintable(listed.out));
    const QString stamp = listed.out.section(u' ', 0, 0);

    const QString file = home(u"people.tdl"_s);
    QVERIFY(writeBytes(file, "name\tphone\nAl\t1\n"));
    QCOMPARE(db({u"import"_s, u"contacts"_s, file}).status, 0);
    QCOMPARE(db({u"restore"_s, stamp}).status, 0);
    QCOMPARE(fileBytes(bundle() + u"/contacts.xml"_s),
             fileBytes(QStringLiteral(LW_TEST_DATA "/bundle-foreign/contacts.xml")));
    QCOMPARE(db({u"restore"_s, u"19990101-000000"_s}).status, 1);
    QVERIFY(!QFile::exists(bundle() + u"/lock.xml"_s));
}

void TestCli::failuresGoToStandardError()
{
    // Nothing can be renamed over a folder: the reason is the system's own.
    QVERIFY(QFile::remove(bundle() + u"/bills.xml"_s) && QDir().mkpath(bundle() + u"/bills.xml/x"_s));
    const Run save = db({u"save"_s});
    QCOMPARE(save.status, 1);
    QVERIFY2(save.err.contains(u"not written: bills.xml: "_s), qPrintable(save.err));

    // A page object that is a link is never written through.
    const QString site = home(u"site"_s);
    QVERIFY(QDir().mkpath(site + u"/objects"_s));
    QVERIFY(writeBytes(home(u"outside.txt"_s), "mine"));
    QVERIFY(QFile::link(home(u"outside.txt"_s), site + u"/objects/LwkItemL1"_s));
    QVERIFY(writeBytes(bundle() + u"/items.xml"_s,
                       "<plist><dict><key>products</key><array>" +
                           itemRecord({{"code", u"L1"_s}, {"exportsitemoss", u"YES"_s}, {"websitefolder", site}}) +
                           itemRecord({{"code", u".."_s}, {"exportsitemoss", u"YES"_s}, {"websitefolder", site}}) +
                           "</array></dict></plist>"));
    const Run web = db({u"website-export"_s});
    QCOMPARE(web.status, 1);
    QVERIFY(web.err.contains(u"not written: "_s + site + u"/objects/LwkItemL1"_s));
    QCOMPARE(fileBytes(home(u"outside.txt"_s)), QByteArray("mine"));
    QVERIFY(QFile::exists(site + u"/objects/LwkItem.."_s));
}

void TestCli::importV1SavesAndTellsAnEarlyEnd()
{
    const QString file = home(u"v1.xml"_s);
    QVERIFY(writeBytes(file, "<db><g><product><item>Nail</item></product><contact><name>Ann</name></contact>"
                             "<bill><name>Rent</name></bill><bill><name>Ga"));
    const Run run = db({u"import-v1"_s, file});
    QCOMPARE(run.status, 0);
    QVERIFY2(run.out.startsWith(u"product 1\nmaterial 0\naction 0\ncontact 1\norder 0\nbill 1\n"
                                "ended early: the file is cut short\nbackup "_s +
                                bundle() + u"/Backups/"_s),
             qPrintable(run.out));
    QVERIFY(!QFileInfo::exists(bundle() + u"/lock.xml"_s));
    const Run check = db({u"check"_s});
    QVERIFY(check.out.startsWith(u"contacts 1\norders 0\nitems 1\nmaterials 0\nbills 1\nactions 0\n"_s));
}

void TestCli::exportTakesAColumnFile()
{
    const QString cols = home(u"cols.xml"_s);
    const QByteArray column = "<colwidth>60</colwidth><colheading>Who</colheading><field>name</field>";
    QVERIFY(writeBytes(cols, "<t><s><c><numberofcols>1</numberofcols>" + column + "</c></s></t>"));
    const Run run = db({u"export"_s, u"contacts"_s, u"--csv"_s, u"--columns-file"_s, cols});
    QCOMPARE(run.status, 0);
    QVERIFY2(run.out.startsWith(u"\"Who\"\r\""_s) && run.out.count(u',') == 0, qPrintable(run.out));
    QVERIFY(writeBytes(cols, "<t><s><c><numberofcols>2</numberofcols>" + column + "</c></s></t>"));
    const Run refused = db({u"export"_s, u"contacts"_s, u"--csv"_s, u"--columns-file"_s, cols, u"--verbose"_s});
    QCOMPARE(refused.status, 2);
    QVERIFY2(refused.err.contains(u"refused: names 2 columns but holds 1 widths, 1 titles and 1 fields"_s),
             qPrintable(refused.err));
    QVERIFY(refused.out.isEmpty());
}

void TestCli::invoiceWritesEachFormat_data()
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

void TestCli::invoiceWritesEachFormat()
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
    const CliRun run = db(args);
    QVERIFY2(run.status == 0, qPrintable(run.err));
    const QByteArray bytes = fileBytes(home(file));
    QVERIFY2(bytes.startsWith(starts), bytes.left(40).constData());
    QVERIFY(bytes.contains(holds));
    QVERIFY(!bytes.contains("&lt;ordernumber") && !bytes.contains("<ordernumber>"));
}

void TestCli::invoiceRefusesUnknownOrderOrTemplate_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    QTest::addRow("unknown order") << QStringList{u"42"_s} << u"there is no order with the id 42"_s;
    QTest::addRow("unknown template") << QStringList{u"5"_s, u"--template"_s, u"Quote"_s}
                                      << u"there is no template called \"Quote\""_s;
}

void TestCli::invoiceRefusesUnknownOrderOrTemplate()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    const CliRun run =
        db(QStringList{u"invoice"_s} + args + QStringList{u"--output"_s, home(u"out.pdf"_s)});
    QCOMPARE(run.status, 2);
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY(!QFile::exists(home(u"out.pdf"_s)));
}

void TestCli::convertThroughEveryFormat()
{
    // rtf -> html -> rtf -> txt, and txt -> rtf -> txt: the words survive.
    QCOMPARE(convert({kRichText + u"cocoa.rtf"_s, home(u"a.html"_s)}).status, 0);
    QCOMPARE(convert({home(u"a.html"_s), home(u"b.rtf"_s)}).status, 0);
    QCOMPARE(convert({home(u"b.rtf"_s), home(u"c.txt"_s)}).status, 0);
    const QString text = QString::fromUtf8(fileBytes(home(u"c.txt"_s)));
    for (const char *words : {"Ledgerwick Trading", "Café crème", "Widget", "€12.50", "Total due: <total>"})
        QVERIFY2(text.contains(QString::fromUtf8(words)), words);
    QVERIFY(fileBytes(home(u"b.rtf"_s)).startsWith("{\\rtf1"));

    QVERIFY(writeBytes(home(u"plain.txt"_s), "Line one {braces}\nLíne two\n"));
    QCOMPARE(convert({home(u"plain.txt"_s), home(u"plain.rtf"_s)}).status, 0);
    QCOMPARE(convert({home(u"plain.rtf"_s), home(u"again.txt"_s)}).status, 0);
    QCOMPARE(fileBytes(home(u"again.txt"_s)), QByteArray("Line one {braces}\nLíne two\n"));
    // A PDF is only written; what it holds is the printing's own test.
    QCOMPARE(convert({kRichText + u"cocoa.rtf"_s, home(u"invoice.pdf"_s)}).status, 0);
    QVERIFY(fileBytes(home(u"invoice.pdf"_s)).startsWith("%PDF-"));
}

void TestCli::convertRtfdPackageBothWays()
{
    QCOMPARE(convert({kRichText + u"picture.rtfd"_s, home(u"copy.rtfd"_s)}).status, 0);
    QVERIFY(QFile::exists(home(u"copy.rtfd/TXT.rtf"_s)));
    QVERIFY(QFile::exists(home(u"copy.rtfd/swatch.png"_s)));
    // A folder given with its trailing slash, as a shell completes it.
    QCOMPARE(convert({home(u"copy.rtfd/"_s), home(u"flat.rtf"_s)}).status, 0);
    const QByteArray rtf = fileBytes(home(u"flat.rtf"_s));
    QCOMPARE(rtf.count("\\pict\\pngblip"), 3);
    QVERIFY(rtf.contains("Small again: "));
}

void TestCli::convertHtmlKeepsTablesAndPictures()
{
    QCOMPARE(convert({kRichText + u"libreoffice.rtf"_s, home(u"page.html"_s)}).status, 0);
    const QByteArray html = fileBytes(home(u"page.html"_s));
    QVERIFY(html.contains("<img src=\"data:image/png;base64,"));
    QVERIFY(html.contains("Pay online"));
    QCOMPARE(convert({kRichText + u"word1251.rtf"_s, home(u"table.html"_s)}).status, 0);
    QVERIFY(fileBytes(home(u"table.html"_s)).contains("<table"));
    // And back: the picture comes from its data URL.
    QCOMPARE(convert({home(u"page.html"_s), home(u"back.rtf"_s)}).status, 0);
    QCOMPARE(fileBytes(home(u"back.rtf"_s)).count("\\pict\\pngblip"), 1);
}

void TestCli::convertWrongUsage_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addRow("nothing") << QStringList();
    QTest::addRow("one path") << QStringList{u"a.rtf"_s};
    QTest::addRow("three paths") << QStringList{u"a.rtf"_s, u"b.rtf"_s, u"c.rtf"_s};
    QTest::addRow("unknown output") << QStringList{kRichText + u"cocoa.rtf"_s, u"out.docx"_s};
    QTest::addRow("unknown input") << QStringList{u"in.doc"_s, u"out.rtf"_s};
    QTest::addRow("pdf is not read") << QStringList{u"in.pdf"_s, u"out.rtf"_s};
}

void TestCli::convertWrongUsage()
{
    QFETCH(QStringList, args);
    const CliRun run = convert(args);
    QCOMPARE(run.status, 2);
    QVERIFY(run.err.contains(u"usage: ledgerwick-cli convert IN OUT"_s));
    QVERIFY(run.out.isEmpty());
}

void TestCli::convertUnreadableInput_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("message");
    QTest::addRow("missing file") << u"missing.rtf"_s << u"missing.rtf"_s;
    QTest::addRow("missing package") << u"missing.rtfd"_s << u"TXT.rtf"_s;
    QTest::addRow("not rtf") << u"fake.rtf"_s << u"not in RTF format"_s;
    QTest::addRow("missing html") << u"missing.html"_s << u"missing.html"_s;
}

void TestCli::convertUnreadableInput()
{
    QFETCH(QString, input);
    QFETCH(QString, message);
    QVERIFY(writeBytes(home(u"fake.rtf"_s), "Just some text.\n"));
    const CliRun run = convert({home(input), home(u"out.txt"_s)});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY(!QFile::exists(home(u"out.txt"_s)));
}

void TestCli::convertUnwritableOutput()
{
    for (const char *name : {"no/such/folder/out.rtf", "no/such/folder/out.pdf", "no/such/folder/out.txt"}) {
        const QString out = home(QString::fromLatin1(name));
        const CliRun run = convert({kRichText + u"cocoa.rtf"_s, out});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.err.contains(out), qPrintable(run.err));
    }
    // An existing file in the way of a package folder is left alone.
    QVERIFY(writeBytes(home(u"notes.rtfd"_s), "keep me"));
    QCOMPARE(convert({kRichText + u"cocoa.rtf"_s, home(u"notes.rtfd"_s)}).status, 1);
    QCOMPARE(fileBytes(home(u"notes.rtfd"_s)), QByteArray("keep me"));
}

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
