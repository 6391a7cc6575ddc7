#include "app/Ledgerwick.h"
#include "core/CliPlatform.h"
#include "contacts/Contact.h"
#include "core/lwDataSource.h"
#include "core/lwDateFormatter.h"
#include "core/RecordTable.h"
#include "orders/Order.h"
#include "products/Item.h"
#include "support/AppFixture.h"
#include "support/LogCapture.h"
#include "support/ScriptedPlatform.h"

#include <QAbstractItemModelTester>
#include <QFile>
#include <QItemSelectionModel>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class TestLedgerwick : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void contactLookups();
    void orderLookups();
    void startUpReadsPreferencesFirstAndQuitSaves();
    void commandsGoToTheListInFront_data();
    void commandsGoToTheListInFront();
    void deleteEditAndNewFollowTheFocus();
    void aChangedRecordRedrawsItsRowOnly();
    void cliPlatformTakesTheDefaults();
};

void TestLedgerwick::contactLookups()
{
    AppFixture app;
    Ledgerwick &ledgerwick = *app.ledgerwick;
    app.addContact(QStringLiteral("Ann Lee"));
    auto bob = app.addContact(QStringLiteral("Bob Ray"));
    app.addContact(QStringLiteral("Nobody"))->setID(0); // stored with id 0: never answered for "0"

    QCOMPARE(ledgerwick.getContactbyId(QStringLiteral("2")), bob.get());
    QCOMPARE(ledgerwick.getContactbyId(QStringLiteral("9")), nullptr);
    QCOMPARE(ledgerwick.getContactNameforId(QStringLiteral("1")), QStringLiteral("Ann Lee"));
    QCOMPARE(ledgerwick.getContactNameforId(QStringLiteral("0")), QString());
    QCOMPARE(ledgerwick.getContactNameforId(QStringLiteral("42")), QString());
    QCOMPARE(ledgerwick.getContactIdForName(QStringLiteral("Bob Ray")), QStringLiteral("2"));
    QCOMPARE(ledgerwick.getContactIdForName(QStringLiteral("Nobody Else")), QStringLiteral("0"));

    QCOMPARE(ledgerwick.getCurrentContactIdAsString(), QStringLiteral("-1"));
    // The contact open in an editor, not merely selected.
    auto *contacts = ledgerwick.getContactManager();
    QItemSelectionModel selection(contacts);
    contacts->setTableSelection(&selection);
    selection.setCurrentIndex(contacts->indexOf(bob.get()),
                              QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    QCOMPARE(ledgerwick.getCurrentContactIdAsString(), QStringLiteral("-1"));
    contacts->edit(nullptr);
    QCOMPARE(ledgerwick.getCurrentContactIdAsString(), QStringLiteral("2"));
}

void TestLedgerwick::orderLookups()
{
    AppFixture app;
    Ledgerwick &ledgerwick = *app.ledgerwick;
    auto contact = app.addContact(QStringLiteral("Ann"));
    contact->setEmail(QStringLiteral("ann@example.org"));
    auto order = std::make_shared<Order>();
    ledgerwick.getOrderManager()->add(order);
    QCOMPARE(ledgerwick.getContactIdForOrder(order->getID()), 0);
    QCOMPARE(ledgerwick.getContactIdForOrder(77), 0);

    ledgerwick.connectContact(contact, order->getID());
    QCOMPARE(order->getContactId(), contact->getID());
    QCOMPARE(order->getFieldByName(QStringLiteral("contact:email")), QStringLiteral("ann@example.org"));
    QCOMPARE(ledgerwick.getContactIdForOrder(order->getID()), contact->getID());
    ledgerwick.connectContact(contact, 999); // no such order: nothing happens

    auto item = app.addItem(QStringLiteral("P1"), QStringLiteral("Hinge"));
    QCOMPARE(ledgerwick.getProductbyId(item->getID()), item.get());
    QCOMPARE(ledgerwick.getProductbyId(5), nullptr);

    // The orders list sorts its date column as dates, by the orders' own rule.
    QVERIFY(ledgerwick.getOrderManager()->isDateColumn(QStringLiteral("date")));
    QVERIFY(!ledgerwick.getOrderManager()->isDateColumn(QStringLiteral("title")));

    QSignalSpy changed(&ledgerwick, &Ledgerwick::currentOrderChanged);
    ledgerwick.setCurrentOrder(order->getID());
    QCOMPARE(ledgerwick.getCurrentOrder(), order->getID());
    QCOMPARE(changed.count(), 1);
}


void TestLedgerwick::startUpReadsPreferencesFirstAndQuitSaves()
{
    QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral(".config")).toLocal8Bit());
    // A location chosen in the preferences is where start-up reads.
    {
        QSettings settings(QStringLiteral("Ledgerwick"), QStringLiteral("Ledgerwick"));
        settings.setValue(QStringLiteral("LedgerwickDbLocation"), QStringLiteral("~/elsewhere.lwkdb"));
    }
    ScriptedPlatform platform;
    Ledgerwick ledgerwick(&platform);
    QCOMPARE(ledgerwick.getDateFormatter(), nullptr);
    QVERIFY(ledgerwick.printInfo().horizontallyCentered && ledgerwick.printInfo().verticallyCentered);
    LogCapture log;
    ledgerwick.startUp();
    // Prints start at the page's corner.
    QVERIFY(!ledgerwick.printInfo().horizontallyCentered && !ledgerwick.printInfo().verticallyCentered);
    QCOMPARE(ledgerwick.originalDbLocation(), home.filePath(QStringLiteral("elsewhere.lwkdb")));
    QCOMPARE(log.lines().constLast(), QStringLiteral("Finished reading database"));
    QVERIFY(ledgerwick.getDateFormatter());
    QCOMPARE(ledgerwick.getDateFormatter()->validate(CalendarDate(QDate(2009, 3, 5))), QStringLiteral("03/05/2009"));
    QVERIFY(QFile::exists(home.filePath(QStringLiteral("elsewhere.lwkdb/lock.xml"))));

    ledgerwick.applicationShouldTerminate();
    QVERIFY(log.lines().contains(QStringLiteral("Saving terms")));
    QVERIFY(QFile::exists(home.filePath(QStringLiteral("elsewhere.lwkdb/orders.xml"))));
    QVERIFY(!QFile::exists(home.filePath(QStringLiteral("elsewhere.lwkdb/lock.xml"))));

    QVERIFY(!ledgerwick.getItemManager()->isWindowConnected());
    QVERIFY(!ledgerwick.getCheckoutManager()->isWindowConnected());
}

void TestLedgerwick::commandsGoToTheListInFront_data()
{
    QTest::addColumn<QString>("tab");
    QTest::addColumn<QString>("subTab");
    QTest::addColumn<QString>("front"); // the front data source's name
    QTest::addColumn<QString>("list");  // the list print and export act on
    QTest::addRow("contacts") << "1" << "1" << "contacts" << "contacts";
    QTest::addRow("orders") << "2" << "1" << "orders" << "orders";
    QTest::addRow("items") << "3" << "1" << "items" << "items";
    QTest::addRow("tasks") << "tabActions" << "1" << "actions" << "actions";
    QTest::addRow("bills") << "tabAccounts" << "1" << "bills" << "bills";
    QTest::addRow("money in") << "tabAccounts" << "2" << "" << "moneyIn";
    QTest::addRow("statement") << "tabAccounts" << "3" << "" << "statement";
    QTest::addRow("reports") << "tabReports" << "1" << "reports" << "reports";
}

void TestLedgerwick::commandsGoToTheListInFront()
{
    QFETCH(QString, tab);
    QFETCH(QString, subTab);
    QFETCH(QString, front);
    AppFixture app;
    Ledgerwick &ledgerwick = *app.ledgerwick;
    LogCapture log;
    ledgerwick.setSelectedTab(tab);
    ledgerwick.setSelectedTab(tab); // still in front: logged once
    ledgerwick.setSelectedAccountsTab(subTab);
    QCOMPARE(ledgerwick.frontDataSource() ? ledgerwick.frontDataSource()->objectName() : QString(), front);
    QTEST(ledgerwick.frontList()->objectName(), "list");
    QCOMPARE(log.lines().count(QStringLiteral("*** is reports")), tab == QLatin1String("tabReports") ? 1 : 0);
    // Another window in front: nothing of the main window's.
    ledgerwick.setMainWindowKey(false);
    QCOMPARE(ledgerwick.frontDataSource(), nullptr);
    QCOMPARE(ledgerwick.frontList(), nullptr);
}

void TestLedgerwick::deleteEditAndNewFollowTheFocus()
{
    AppFixture app;
    Ledgerwick &ledgerwick = *app.ledgerwick;
    ItemManager *items = ledgerwick.getItemManager();
    app.addItem(QStringLiteral("P1"), QStringLiteral("Hinge"));
    app.select(items, 0);
    const std::array<lwDataSource *, 5> order{ledgerwick.getOrderManager(), ledgerwick.getContactManager(),
                                              ledgerwick.getActionManager(), items, ledgerwick.getBillManager()};
    QCOMPARE(ledgerwick.firstResponderOrder(), order);

    ledgerwick.deleteMenuItem(); // no list has the focus
    ledgerwick.setFocusedList(ledgerwick.getOrderManager());
    ledgerwick.deleteMenuItem();
    ledgerwick.editMenuItem();
    QVERIFY(app.platform.alerts.isEmpty());
    QVERIFY(!items->isEditorShown());
    QCOMPARE(ledgerwick.checkoutOrder(), nullptr); // no order selected

    ledgerwick.setFocusedList(items);
    app.platform.alertAnswers.enqueue(1);
    ledgerwick.deleteMenuItem();
    QCOMPARE(app.platform.alerts.size(), 1);
    QCOMPARE(app.platform.alerts.first().title, QStringLiteral("Delete Item"));
    ledgerwick.editMenuItem();
    QVERIFY(items->isEditorShown());
    QCOMPARE(items->currentItem(), items->getnthItem(0));
    QCOMPARE(ledgerwick.checkoutOrder(), nullptr); // only from the orders list

    items->cancel(nullptr);
    ledgerwick.setSelectedTab(QStringLiteral("3"));
    ledgerwick.newMenuItem();
    QVERIFY(items->isCreating());
}

void TestLedgerwick::aChangedRecordRedrawsItsRowOnly()
{
    AppFixture app;
    ItemManager *items = app.ledgerwick->getItemManager();
    QAbstractItemModelTester tester(items, QAbstractItemModelTester::FailureReportingMode::QtTest);
    app.addItem(QStringLiteral("P1"), QStringLiteral("Hinge"), QStringLiteral("3"));
    auto hidden = app.addItem(QStringLiteral("P2"), QStringLiteral("Latch"), QStringLiteral("0"));
    auto shown = app.addItem(QStringLiteral("P3"), QStringLiteral("Bolt"), QStringLiteral("5"));
    hidden->setVisible(false);
    items->reloadData();
    QSignalSpy changed(items, &QAbstractItemModel::dataChanged);
    QSignalSpy reset(items, &QAbstractItemModel::modelReset);
    shown->setQty(QStringLiteral("4"));
    items->recordChanged(shown.get());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().at(0).toModelIndex().row(), 1);
    QCOMPARE(changed.first().at(1).toModelIndex().column(), items->columnCount() - 1);
    items->recordChanged(hidden.get()); // not shown: nothing to redraw
    Item stranger;
    items->recordChanged(&stranger);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(reset.count(), 0);
}

void TestLedgerwick::cliPlatformTakesTheDefaults()
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

QTEST_MAIN(TestLedgerwick)
#include "tst_ledgerwick.moc"
