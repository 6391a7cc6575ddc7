#include "app/BundleBackups.h"
#include "app/DatabaseStore.h"
#include "contacts/Contact.h"
#include "products/Item.h"
#include "support/AppFixture.h"
#include "support/CliRunner.h"
#include "support/LogCapture.h"

#include <QSignalSpy>
#include <QTest>
#include <QXmlStreamReader>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

using Kind = DatabaseStore::Kind;

namespace {

QByteArray contactsFile(const QByteArray &inner, const QByteArray &declaration = "encoding=\"UTF-8\"")
{
    return "<?xml version=\"1.0\" " + declaration + "?>\n<plist version=\"1.0\">\n<dict>\n" + inner +
           "</dict>\n</plist>\n";
}

QByteArray oneContact(const QByteArray &fields, const QByteArray &declaration = "encoding=\"UTF-8\"")
{
    return contactsFile("<key>contacts</key><array><dict>" + fields + "</dict></array>", declaration);
}

ino_t inode(const QString &path)
{
    struct stat info {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_ino : 0;
}

} // namespace

// The bundle is never lost: one writer at a time, damaged files kept,
// failures said, backups to go back to.
class TestBundleSafety : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void damagedFilesAreNotReadInPart_data();
    void damagedFilesAreNotReadInPart();
    void aDamagedFileIsKeptAsideAndTheUserTold();
    void standardReadersReadTheWritersFiles();
    void theImportDropsWhatAFileCannotHold();
    void aRunningCopysLockIsNeverTaken();
    void aStaleLockCanBeOpenedAnyway();
    void failuresNameTheFileAndTheReason();
    void backupsAreLinkedOncePerRunAndRestored();
};

void TestBundleSafety::damagedFilesAreNotReadInPart_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("name"); // "" when the file must count as damaged
    const QByteArray name = "<key>name</key><string>Ann</string>";
    QTest::addRow("value is a dictionary") << oneContact(name + "<key>phone</key><dict/>") << QString();
    QTest::addRow("value is an array") << oneContact(name + "<key>phone</key><array/>") << QString();
    QTest::addRow("record in an array")
        << contactsFile("<key>contacts</key><array><array><dict>" + name + "</dict></array></array>") << QString();
    QTest::addRow("element not a dictionary")
        << contactsFile("<key>contacts</key><array><dict>" + name + "</dict><string>x</string></array>") << QString();
    QTest::addRow("collection key twice")
        << contactsFile("<key>contacts</key><array><dict>" + name + "</dict></array><key>contacts</key><array/>")
        << QString();
    QTest::addRow("key twice in a record") << oneContact(name + "<key>name</key><string>Bo</string>") << QString();
    QTest::addRow("extra root key")
        << contactsFile("<key>contacts</key><array><dict>" + name + "</dict></array><key>x</key><string/>")
        << QString();
    QTest::addRow("invalid UTF-8") << oneContact("<key>name</key><string>A\xff</string>") << QString();
    QTest::addRow("overlong UTF-8") << oneContact("<key>name</key><string>A\xc0\xaf</string>") << QString();
    QTest::addRow("surrogate in UTF-8") << oneContact("<key>name</key><string>A\xed\xa0\x80</string>") << QString();
    QTest::addRow("unknown encoding") << oneContact(name, "encoding=\"X-NOPE\"") << QString();
    QTest::addRow("ISO-8859-1 decoded")
        << oneContact("<key>name</key><string>caf\xe9</string>", "encoding=\"ISO-8859-1\"") << u"café"_s;
    QTest::addRow("typed values read as text")
        << oneContact("<key>name</key><integer>12</integer><key>phone</key><true/>") << u"12"_s;
}

void TestBundleSafety::damagedFilesAreNotReadInPart()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, name);
    const DatabaseStore::Loaded loaded = DatabaseStore::readData(Kind::Contacts, file);
    if (name.isEmpty()) {
        QCOMPARE(loaded.status, PropertyListReader::Status::Unreadable);
        QVERIFY(loaded.records.empty());
        return;
    }
    QCOMPARE(loaded.status, PropertyListReader::Status::Ok);
    QCOMPARE(loaded.records.size(), size_t(1));
    QCOMPARE(static_cast<Contact *>(loaded.records[0].get())->getName(), name);
}

void TestBundleSafety::aDamagedFileIsKeptAsideAndTheUserTold()
{
    AppFixture app;
    const QByteArray damaged = oneContact("<key>name</key><string>Ann</string><key>name</key><string>Bo</string>");
    QDir().mkpath(app.bundleFile({}));
    QVERIFY(writeBytes(app.bundleFile(u"contacts.xml"_s), damaged));
    app.ledgerwick->readDatabase();
    QCOMPARE(app.ledgerwick->getContactManager()->getCount(), 0);
    app.addContact(u"Cy"_s);
    LogCapture log;
    QVERIFY(app.ledgerwick->writeDatabase(app.ledgerwick->getContactManager()));
    const QStringList aside = QDir(app.bundleFile({})).entryList({u"contacts.xml.unreadable-*"_s});
    QCOMPARE(aside.size(), 1);
    QCOMPARE(fileBytes(app.bundleFile(aside.at(0))), damaged);
    QCOMPARE(app.platform.alerts.size(), 1);
    QVERIFY(app.platform.alerts.at(0).informativeText.contains(u"contacts.xml (kept as "_s + aside.at(0)));
    QVERIFY(log.lines().contains(u"contacts.xml could not be read at start; kept as "_s + aside.at(0)));
    // Only once: the next save just writes.
    QVERIFY(app.ledgerwick->writeDatabase(app.ledgerwick->getContactManager()));
    QCOMPARE(QDir(app.bundleFile({})).entryList({u"contacts.xml.unreadable-*"_s}).size(), 1);
}

void TestBundleSafety::standardReadersReadTheWritersFiles()
{
    AppFixture app;
    app.ledgerwick->readDatabase();
    const QString name = u"a"_s + QChar(0) + u"b"_s + QChar(7) + u"c"_s + QChar(0x1b) + u"d"_s + QChar(0xFFFE) +
                         QChar(0xD800) + u"e"_s;
    const QString comments = u"one\rtwo\r\nthree\tfour"_s;
    auto contact = app.addContact(name);
    contact->setComments(comments);
    LogCapture log;
    QVERIFY(app.ledgerwick->writeDatabase(app.ledgerwick->getContactManager()));
    QVERIFY(log.lines().contains(u"contacts.xml: 5 characters XML cannot hold were written as U+FFFD"_s));

    // A conforming XML reader takes the whole file and gives the CR back.
    QXmlStreamReader xml(fileBytes(app.bundleFile(u"contacts.xml"_s)));
    QStringList strings;
    while (!xml.atEnd())
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == u"string"_s)
            strings << xml.readElementText();
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    const QString replaced = u"a\uFFFDb\uFFFDc\uFFFDd\uFFFD\uFFFDe"_s;
    QVERIFY(strings.contains(replaced));
    QVERIFY(strings.contains(comments));

    AppFixture reread;
    reread.ledgerwick->setDatabaseLocation(app.bundleFile({}));
    app.ledgerwick.reset();
    reread.ledgerwick->readDatabase();
    const auto *back = static_cast<Contact *>(reread.ledgerwick->getContactManager()->getItemById(contact->getID()));
    QVERIFY(back);
    QCOMPARE(back->getComments(), comments);
    QCOMPARE(back->getName(), replaced);
}

void TestBundleSafety::theImportDropsWhatAFileCannotHold()
{
    AppFixture app;
    const QString file = app.home(u"in.tdl"_s);
    QVERIFY(writeBytes(file, "name\tphone\r" "A\x07nn\t1\x1b" "2\r" "Bo\t3\r"));
    app.platform.panelAnswers.enqueue(file);
    app.ledgerwick->getContactManager()->importData(nullptr);
    QCOMPARE(app.ledgerwick->getContactManager()->getCount(), 2);
    QCOMPARE(static_cast<Contact *>(app.ledgerwick->getContactManager()->getnthItem(0))->getName(), u"Ann"_s);
    QCOMPARE(app.platform.alerts.size(), 2);
    QCOMPARE(app.platform.alerts.at(0).title, u"Characters Removed"_s);
    QVERIFY(app.platform.alerts.at(0).informativeText.startsWith(u"2 characters"_s));

}

void TestBundleSafety::aRunningCopysLockIsNeverTaken()
{
    AppFixture first;
    first.ledgerwick->readDatabase();
    first.addContact(u"Ann"_s);
    // A save of the actions removes "lock.xml"; the system lock still holds.
    QVERIFY(first.ledgerwick->writeDatabase(first.ledgerwick.get()));
    QVERIFY(!QFile::exists(first.bundleFile(u"lock.xml"_s)));
    Ledgerwick second(&first.platform);
    second.setDatabaseLocation(first.bundleFile({}));
    QSignalSpy found(&second, &Ledgerwick::lockFound);
    second.readDatabase();
    QVERIFY(second.isReadOnly());
    QCOMPARE(found.count(), 1);
    QVERIFY(!second.lockIsStale());
    QVERIFY(!second.openAnyway());
    QVERIFY(!second.writeDatabase(&second));
    // Even a copy that only looked cannot write while the first one runs.
    Ledgerwick looker(&first.platform);
    looker.setDatabaseLocation(first.bundleFile({}));
    looker.readDatabase(false);
    QVERIFY(!looker.isReadOnly());
    QVERIFY(!looker.writeDatabase(looker.getContactManager()));
    QCOMPARE(looker.getContactManager()->getCount(), 1);
}

void TestBundleSafety::aStaleLockCanBeOpenedAnyway()
{
    AppFixture app;
    QDir().mkpath(app.bundleFile({}));
    QVERIFY(writeBytes(app.bundleFile(u"lock.xml"_s),
                       "<plist><dict><key>datetime</key><string>2024-01-02 03:04:05 +0000</string></dict></plist>"));
    QVERIFY(writeBytes(app.bundleFile(u"items.xml.Ab12Cd"_s), "half a save"));
    app.ledgerwick->readDatabase();
    QVERIFY(app.ledgerwick->isReadOnly());
    QVERIFY(app.ledgerwick->lockIsStale());
    QCOMPARE(app.ledgerwick->lockDateTime(), u"2024-01-02 03:04:05 +0000"_s);
    QVERIFY(app.ledgerwick->openAnyway());
    QVERIFY(!app.ledgerwick->isReadOnly());
    QVERIFY(!fileBytes(app.bundleFile(u"lock.xml"_s)).contains("2024-01-02"));
    QVERIFY(!QFile::exists(app.bundleFile(u"items.xml.Ab12Cd"_s)));
    QVERIFY(app.ledgerwick->writeDatabase(app.ledgerwick->getItemManager()));
}

void TestBundleSafety::failuresNameTheFileAndTheReason()
{
    AppFixture app;
    app.ledgerwick->readDatabase();
    // Nothing can be renamed over a folder, not even by the superuser.
    QVERIFY(QDir().mkpath(app.bundleFile(u"items.xml/x"_s)));
    QVERIFY(!app.ledgerwick->writeDatabase(app.ledgerwick->getItemManager()));
    QCOMPARE(app.platform.alerts.size(), 1);
    QVERIFY(app.platform.alerts.at(0).informativeText.startsWith(u"items.xml: Is a directory"_s));
    QVERIFY(QDir(app.bundleFile({})).entryList({u"items.xml.*"_s}).isEmpty());

    // At quit the user chooses: Cancel keeps the program, Try Again saves
    // again, Quit Anyway ends.
    app.platform.alertAnswers << 2 << 0 << 1;
    QVERIFY(!app.ledgerwick->applicationShouldTerminate());
    QVERIFY(app.ledgerwick->applicationShouldTerminate());
    QCOMPARE(app.platform.alerts.size(), 4);
    QCOMPARE(app.platform.alerts.at(3).buttons, QStringList({u"Try Again"_s, u"Quit Anyway"_s, u"Cancel"_s}));
}

void TestBundleSafety::backupsAreLinkedOncePerRunAndRestored()
{
    AppFixture app;
    app.ledgerwick->readDatabase();
    app.addContact(u"Ann"_s);
    QVERIFY(app.ledgerwick->writeDatabase(app.ledgerwick.get())); // nothing to back up yet
    QVERIFY(BundleBackups::stamps(app.bundleFile({})).isEmpty());
    app.ledgerwick.reset();

    for (int run = 0; run < 12; ++run) {
        app.ledgerwick = std::make_unique<Ledgerwick>(&app.platform);
        app.ledgerwick->setDatabaseLocation(app.bundleFile({}));
        app.ledgerwick->readDatabase();
        const ino_t before = inode(app.bundleFile(u"contacts.xml"_s));
        app.addContact(u"Run %1"_s.arg(run));
        QVERIFY(app.ledgerwick->writeDatabase(app.ledgerwick->getContactManager()));
        QVERIFY(app.ledgerwick->writeDatabase(app.ledgerwick.get()));
        const QStringList stamps = BundleBackups::stamps(app.bundleFile({}));
        QCOMPARE(stamps.size(), std::min(run + 1, BundleBackups::kKept));
        // The newest set holds the very file the first save replaced.
        const QString set = BundleBackups::backupsFolder(app.bundleFile({})) + u"/"_s + stamps.last();
        QCOMPARE(inode(set + u"/contacts.xml"_s), before);
        QCOMPARE(DatabaseStore::read(Kind::Contacts, set).records.size(), size_t(run + 1));
        app.ledgerwick.reset();
    }
    app.ledgerwick = std::make_unique<Ledgerwick>(&app.platform);
    app.ledgerwick->setDatabaseLocation(app.bundleFile({}));
    app.ledgerwick->readDatabase();
    const QString oldest = BundleBackups::stamps(app.bundleFile({})).first();
    QVERIFY(app.ledgerwick->restoreBackup(oldest));
    QCOMPARE(app.ledgerwick->getContactManager()->getCount(), 3);
    QVERIFY(!app.ledgerwick->restoreBackup(u"../x"_s));
}

QTEST_GUILESS_MAIN(TestBundleSafety)
#include "tst_bundlesafety.moc"
