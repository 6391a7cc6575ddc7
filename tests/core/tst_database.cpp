#include "accounts/Action.h"
#include "accounts/Bill.h"
#include "contacts/Contact.h"
#include "core/DatabasePaths.h"
#include "app/DatabaseStore.h"
#include "app/Ledgerwick.h"
#include "core/lwDataSource.h"
#include "orders/Material.h"
#include "orders/Order.h"
#include "products/Item.h"
#include "support/CliRunner.h"
#include "support/LogCapture.h"
#include "support/AppFixture.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

namespace {

// Every file of a bundle serialized again from the loaded collections.
QList<QByteArray> serializeAll(const Ledgerwick &ledgerwick)
{
    QList<QByteArray> out;
    for (const auto &file : DatabaseStore::files()) {
        QByteArray bytes;
        DatabaseStore::serialize(file.kind, *ledgerwick.manager(file.kind), bytes);
        out << bytes;
    }
    return out;
}

} // namespace

class TestDatabase : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { m_app = std::make_unique<AppFixture>(); }
    void cleanup() { m_app.reset(); }
    void firstStartCreatesTheLockAndTheBundle();
    void aLockMakesTheCopyReadOnly();
    void actionSavesReleaseTheLock();
    void savesWriteOnlyTheFileAsked();
    void readsAnotherWritersBundleAndWritesItBack();
    void materialIdsCountOnFromTheNumberLoaded();
    void hiddenRecordsAndAnyTextSurvive();
    void largeFilesAreBuiltInStretches();

private:
    QString bundle() const { return m_app->home(QStringLiteral("db.lwkdb")); }
    std::unique_ptr<AppFixture> m_app;
};

void TestDatabase::firstStartCreatesTheLockAndTheBundle()
{
    LogCapture log;
    Ledgerwick ledgerwick(&m_app->platform);
    ledgerwick.readDatabase();
    const QString standard = DatabasePaths::standardBundleFolder();
    QCOMPARE(ledgerwick.originalDbLocation(), standard);
    for (const auto &file : DatabaseStore::files())
        QCOMPARE(ledgerwick.manager(file.kind)->getCount(), 0);
    QCOMPARE(log.lines(), QStringList({
                              QStringLiteral("reading db, starting contacts"),
                              QStringLiteral("can't find contacts at ") + standard + QStringLiteral("/contacts.xml"),
                              QStringLiteral("reading db, starting orders"),
                              QStringLiteral("reading db, starting items"),
                              QStringLiteral("reading db, starting materials"),
                              QStringLiteral("reading db, starting bills"),
                              QStringLiteral("reading db, starting actions"),
                              QStringLiteral("lock written successfully"),
                          }));
    QVERIFY(!ledgerwick.isReadOnly());
    const QByteArray lock = fileBytes(standard + QStringLiteral("/lock.xml"));
    QVERIFY(lock.contains("<key>datetime</key>"));
    QVERIFY(QRegularExpression(QStringLiteral("<string>\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d [+-]\\d{4}</string>"))
                .match(QString::fromUtf8(lock))
                .hasMatch());

    // The save at quit writes all six files and releases the lock.
    log.clear();
    QVERIFY(ledgerwick.writeDatabase(&ledgerwick));
    for (const auto &file : DatabaseStore::files())
        QVERIFY(QFile::exists(standard + QLatin1Char('/') + QLatin1String(file.fileName)));
    QVERIFY(!QFile::exists(standard + QStringLiteral("/lock.xml")));
    QVERIFY(log.lines().isEmpty());
}

void TestDatabase::aLockMakesTheCopyReadOnly()
{
    QVERIFY(copyFolder(QStringLiteral(LW_TEST_DATA "/bundle-foreign"), bundle()));
    QVERIFY(writeBytes(
        bundle() + QStringLiteral("/lock.xml"),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n\t<key>datetime</key>\n"
        "\t<string>2007-03-01 14:05:09 +0000</string>\n</dict>\n</plist>\n"));
    const QByteArray before = fileBytes(bundle() + QStringLiteral("/contacts.xml"));

    Ledgerwick &ledgerwick = *m_app->ledgerwick;
    QSignalSpy found(&ledgerwick, &Ledgerwick::lockFound);
    ledgerwick.readDatabase();
    QVERIFY(ledgerwick.isReadOnly());
    QCOMPARE(found.count(), 1);
    QCOMPARE(found.at(0).at(0).toString(), QStringLiteral("2007-03-01 14:05:09 +0000"));
    QCOMPARE(ledgerwick.getContactManager()->getCount(), 2);

    QVERIFY(!ledgerwick.getItemManager()->readOnlyCheck());

    QVERIFY(!ledgerwick.writeDatabase(&ledgerwick));
    QVERIFY(!ledgerwick.writeDatabase(ledgerwick.getActionManager()));
    QCOMPARE(fileBytes(bundle() + QStringLiteral("/contacts.xml")), before);
    QVERIFY(QFile::exists(bundle() + QStringLiteral("/lock.xml")));
}

void TestDatabase::actionSavesReleaseTheLock()
{
    Ledgerwick &ledgerwick = *m_app->ledgerwick;
    ledgerwick.readDatabase();
    QVERIFY(QFile::exists(bundle() + QStringLiteral("/lock.xml")));

    LogCapture log;
    QVERIFY(ledgerwick.writeDatabase(ledgerwick.getActionManager()));
    QVERIFY(QFile::exists(bundle() + QStringLiteral("/actions.xml")));
    QVERIFY(!QFile::exists(bundle() + QStringLiteral("/contacts.xml")));
    QVERIFY(!QFile::exists(bundle() + QStringLiteral("/lock.xml")));
    QVERIFY(log.lines().isEmpty());

    // Quitting afterwards saves everything and finds no lock to remove.
    ledgerwick.writeDatabase(&ledgerwick);
    QCOMPARE(log.lines(), QStringList{QStringLiteral("error: lock not removed from database")});
    QVERIFY(QFile::exists(bundle() + QStringLiteral("/contacts.xml")));
}

void TestDatabase::savesWriteOnlyTheFileAsked()
{
    Ledgerwick &ledgerwick = *m_app->ledgerwick;
    ledgerwick.readDatabase();
    QVERIFY(ledgerwick.writeDatabase(ledgerwick.getItemManager()));
    QCOMPARE(QDir(bundle()).entryList(QDir::Files),
             QStringList({QStringLiteral("items.xml"), QStringLiteral("lock.xml")}));

    // A save asked by anything that is not a manager writes nothing.
    QObject checkout;
    QVERIFY(!ledgerwick.writeDatabase(&checkout));
    QVERIFY(!ledgerwick.writeDatabase(nullptr));
    QCOMPARE(QDir(bundle()).entryList(QDir::Files).size(), 2);
}

void TestDatabase::readsAnotherWritersBundleAndWritesItBack()
{
    QVERIFY(copyFolder(QStringLiteral(LW_TEST_DATA "/bundle-foreign"), bundle()));
    Ledgerwick &ledgerwick = *m_app->ledgerwick;
    ledgerwick.readDatabase();

    auto *company = dynamic_cast<Contact *>(ledgerwick.getContactManager()->getItemById(3));
    auto *person = dynamic_cast<Contact *>(ledgerwick.getContactManager()->getItemById(7));
    QVERIFY(company && person);
    QCOMPARE(company->getCompanyName(), QStringLiteral("Fish & Chips <Ltd>"));
    QCOMPARE(person->getName(), QString::fromUtf8("Zoë Ångström"));
    QCOMPARE(person->getComments(), QStringLiteral("line one\rline two\nline three\ttabbed"));

    auto *order = dynamic_cast<Order *>(ledgerwick.getOrderManager()->getItemById(5));
    QVERIFY(order);
    QCOMPARE(order->getContactId(), 7);
    QVERIFY(order->getSent());
    QCOMPARE(order->getDescription(), QStringLiteral("Oak & brass, \"quoted\" 5 > 4"));
    auto *other = dynamic_cast<Order *>(ledgerwick.getOrderManager()->getItemById(6));
    QVERIFY(other);
    QCOMPARE(other->getSent(), Order().getSent()); // only "YES" turns a flag on

    auto *item = dynamic_cast<Item *>(ledgerwick.getItemManager()->getItemById(2));
    QVERIFY(item);
    QVERIFY(item->getDecreaseQty());
    QVERIFY(!item->getHideButtonCode()); // absent reads as off, although new items start on
    QCOMPARE(item->getItem(), QString::fromUtf8("Brass hinge ½\""));

    auto *bill = dynamic_cast<Bill *>(ledgerwick.getBillManager()->getItemById(1));
    QVERIFY(bill);
    auto *action = dynamic_cast<Action *>(ledgerwick.getActionManager()->getItemById(1));
    QVERIFY(action);
    QCOMPARE(action->getTitle(), QString::fromUtf8("Call Zoë"));
    QCOMPARE(action->getDetails(), Action().getDetails()); // absent: the default stays

    // Material lines: the stored contact, or the contact of the line's order.
    auto *stored = dynamic_cast<Material *>(ledgerwick.getBOMManager()->getItemById(4));
    auto *derived = dynamic_cast<Material *>(ledgerwick.getBOMManager()->getItemById(9));
    auto *orphan = dynamic_cast<Material *>(ledgerwick.getBOMManager()->getItemById(12));
    QVERIFY(stored && derived && orphan);
    QCOMPARE(derived->getContact(), 7);
    QCOMPARE(orphan->getContact(), 0);

    // Saved and read again, every record keeps every value.
    const QList<QByteArray> first = serializeAll(ledgerwick);
    QVERIFY(ledgerwick.writeDatabase(&ledgerwick));
    Ledgerwick again(&m_app->platform);
    again.setDatabaseLocation(bundle());
    again.readDatabase();
    QCOMPARE(serializeAll(again), first);
    QCOMPARE(fileBytes(bundle() + QStringLiteral("/orders.xml")), first.at(1));
    // A new order without a contact is written with "contact" 0; the empty
    // date of order 5 is left out.
    QVERIFY(first.at(1).contains("<key>contact</key>\n\t\t\t<string>0</string>"));
    QVERIFY(first.at(0).contains("<key>company</key>\n\t\t\t<string>0</string>"));
}

void TestDatabase::materialIdsCountOnFromTheNumberLoaded()
{
    QVERIFY(copyFolder(QStringLiteral(LW_TEST_DATA "/bundle-foreign"), bundle()));
    Ledgerwick &ledgerwick = *m_app->ledgerwick;
    ledgerwick.readDatabase();
    lwDataSource *lines = ledgerwick.getBOMManager();
    QCOMPARE(lines->getCount(), 3);
    QCOMPARE(lines->highestId(), 3);
    auto fresh = std::make_shared<Material>(5);
    lines->add(fresh);
    QCOMPARE(fresh->getID(), 4); // the same id as the stored line 4
    QCOMPARE(lines->getItemById(4), lines->getnthItem(0));
    // The other collections keep the stored ids.
    QCOMPARE(ledgerwick.getContactManager()->highestId(), 7);
}

void TestDatabase::hiddenRecordsAndAnyTextSurvive()
{
    const QString tricky = QString::fromUtf8("Zoë & <Co> \"quoted\" 'single'\r\nline\ttab ]]> &amp; 東京 😀");
    {
        Ledgerwick ledgerwick(&m_app->platform);
        ledgerwick.setDatabaseLocation(bundle());
        ledgerwick.readDatabase();
        auto hidden = std::make_shared<Contact>();
        hidden->setName(tricky);
        hidden->setComments(tricky);
        ledgerwick.getContactManager()->add(hidden);
        hidden->setVisible(false);
        auto bill = std::make_shared<Bill>();
        bill->setDetails(tricky);
        ledgerwick.getBillManager()->add(bill);
        auto action = std::make_shared<Action>();
        action->setTitle(QString());
        ledgerwick.getActionManager()->add(action);
        QVERIFY(ledgerwick.writeDatabase(&ledgerwick));
    }
    Ledgerwick &ledgerwick = *m_app->ledgerwick;
    ledgerwick.readDatabase();
    auto *contact = dynamic_cast<Contact *>(ledgerwick.getContactManager()->getItemById(1));
    QVERIFY(contact);
    QCOMPARE(contact->getName(), tricky);
    QCOMPARE(contact->getComments(), tricky);
    QCOMPARE(dynamic_cast<Bill *>(ledgerwick.getBillManager()->getItemById(1))->getDetails(), tricky);
    // An action is written with every field, empty ones included.
    QVERIFY(fileBytes(bundle() + QStringLiteral("/actions.xml")).contains("<key>title</key>\n\t\t\t<string></string>"));
}

void TestDatabase::largeFilesAreBuiltInStretches()
{
    // More bills than one stretch of 40,000 holds: the file must equal the one built whole.
    Ledgerwick &ledgerwick = *m_app->ledgerwick;
    ledgerwick.readDatabase();
    for (int i = 0; i < 40001; ++i) {
        auto bill = std::make_shared<Bill>();
        bill->setNumber(QString::number(i));
        ledgerwick.getBillManager()->add(bill);
    }
    QVERIFY(ledgerwick.writeDatabase(ledgerwick.getBillManager()));
    QByteArray whole;
    QVERIFY(DatabaseStore::serialize(DatabaseStore::Kind::Bills, *ledgerwick.getBillManager(), whole));
    QCOMPARE(fileBytes(bundle() + QStringLiteral("/bills.xml")), whole);
}

QTEST_GUILESS_MAIN(TestDatabase)
#include "tst_database.moc"
