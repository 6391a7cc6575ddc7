// The materials manager and the order manager as the order editor drives them.
#include "accounts/Action.h"
#include "contacts/Contact.h"
#include "orders/BOMManager.h"
#include "orders/OrderManager.h"
#include "products/Item.h"
#include "support/AppFixture.h"
#include "support/LogCapture.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSettings>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

// A data-table column read where it is compared.
#define FETCHED(Type, name) (*static_cast<Type *>(QTest::qData(#name, ::qMetaTypeId<Type>())))

class tst_OrderManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void lineIndexMatchesAWalkOfTheCollection();
    void quantityEditsMoveStockByTheDifference();
    void numberColumnsRefuseTextAndFormat_data();
    void numberColumnsRefuseTextAndFormat();
    void deletingLinesGivesStockBack();
    void pickingAProduct_data();
    void pickingAProduct();
    void sumsOfTheCurrentOrder();
    void customerLinkedWhileCreatingThenCancelled();
    void filterByStatusAndCustomer_data();
    void filterByStatusAndCustomer();
    void rowsTakeTheirStatusColour();
    void attachmentsAreCounted_data();
    void attachmentsAreCounted();
    void deletingAnOrderTakesItsAttachmentsAndLines();
    void repeatCheckCatchesUpOnePeriodPerPass();
    void openingAnOrderAsksAboutAChangedRate();

private:
    std::shared_ptr<Order> addOrder(const QString &title, const QString &status = u"Enquiry"_s);
    std::shared_ptr<Item> addTrackedItem(const QString &qty, const QString &warn = u"0"_s);

    std::unique_ptr<AppFixture> m_app;
    OrderManager *m_orders = nullptr;
    BOMManager *m_bom = nullptr;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void tst_OrderManager::init()
{
    m_app = std::make_unique<AppFixture>();
    QVERIFY(m_app->isValid());
    m_orders = m_app->ledgerwick->getOrderManager();
    m_bom = m_app->ledgerwick->getBOMManager();
    m_tester = std::make_unique<QAbstractItemModelTester>(m_bom);
}

void tst_OrderManager::cleanup()
{
    m_tester.reset();
    m_app.reset();
}

std::shared_ptr<Order> tst_OrderManager::addOrder(const QString &title, const QString &status)
{
    auto order = std::make_shared<Order>();
    order->setTitle(title);
    order->setStatus(status);
    order->setTaxRate(u"20.00"_s);
    order->setOrderNum(u"ORD"_s + QString::number(m_orders->highestId() + 1));
    m_orders->add(order);
    return order;
}

std::shared_ptr<Item> tst_OrderManager::addTrackedItem(const QString &qty, const QString &warn)
{
    auto item = m_app->addItem(u"P1"_s, u"Widget"_s, qty);
    item->setDecreaseQty(true);
    item->setWarnlevel(warn);
    item->setPrice(u"10"_s);
    return item;
}

void tst_OrderManager::lineIndexMatchesAWalkOfTheCollection()
{
    // Random adds, deletes, moves between orders and sorts, each checked
    // against the plain walk of the collection by order id.
    QRandomGenerator random(7);
    for (int step = 0; step < 400; ++step) {
        const int order = int(random.bounded(1, 5));
        const quint32 what = random.bounded(10);
        if (what < 6) {
            m_bom->setCurrentOrder(order);
            m_bom->create(nullptr);
        } else if (what < 8 && m_bom->getCount() > 0) {
            m_bom->deleteLine(static_cast<Material *>(m_bom->getnthItem(random.bounded(int(m_bom->getCount())))));
        } else if (what == 8 && m_bom->getCount() > 0) {
            static_cast<Material *>(m_bom->getnthItem(random.bounded(int(m_bom->getCount()))))->setOrder(order);
        } else {
            m_bom->sortByColumn(u"item"_s, random.bounded(2) == 0, 0);
        }
        for (int id = 1; id < 5; ++id) {
            std::vector<Material *> walked;
            for (const auto &record : m_bom->records())
                if (static_cast<Material *>(record.get())->getOrder() == id)
                    walked.push_back(static_cast<Material *>(record.get()));
            QCOMPARE(m_bom->linesOf(id), walked);
        }
    }
    // Past the last line of the order: the first record of the whole collection.
    m_bom->setCurrentOrder(9);
    QCOMPARE(m_bom->getnthItem(0, 9), m_bom->getFirstItem());
    QCOMPARE(m_bom->numberOfRowsInTableView(), 0);
}

void tst_OrderManager::quantityEditsMoveStockByTheDifference()
{
    auto item = addTrackedItem(u"10"_s, u"5"_s);
    m_bom->setCurrentOrder(1);
    m_bom->addProduct(*item);
    m_bom->setObjectValueForTableColumn(u"3"_s, u"qty"_s, 0);
    QCOMPARE(item->getQty(), u"8"_s);
    QVERIFY(m_app->platform.alerts.isEmpty());
    m_bom->setObjectValueForTableColumn(u"5"_s, u"qty"_s, 0); // 2 more off: 6 left, above the warning
    QCOMPARE(item->getQty(), u"6"_s);
    m_bom->setObjectValueForTableColumn(u"6"_s, u"qty"_s, 0); // at the warning level
    QCOMPARE(item->getQty(), u"5"_s);
    QCOMPARE(AppFixture::alertText(m_app->platform.alerts.value(0)),
             u"Item Adjusted | Low stock: this leaves 5 of these items in stock. | OK"_s);
    m_bom->setObjectValueForTableColumn(u"3"_s, u"qty"_s, 0);
    QCOMPARE(item->getQty(), u"8"_s);
    QCOMPARE(m_bom->getnthItem(0, 1)->getTotal(), u"30.00"_s);

    item->setDecreaseQty(false); // untracked: the quantity changes, the stock does not
    m_bom->setObjectValueForTableColumn(u"1"_s, u"qty"_s, 0);
    QCOMPARE(item->getQty(), u"8"_s);
}

void tst_OrderManager::numberColumnsRefuseTextAndFormat_data()
{
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("cost");
    QTest::addColumn<QString>("total");
    QTest::addColumn<int>("beeps");
    QTest::addRow("abc in cost") << u"cost"_s << u"abc"_s << u"4.00"_s << u"8.00"_s << 1;
    QTest::addRow("2.5 in cost") << u"cost"_s << u"2.5"_s << u"2.50"_s << u"5.00"_s << 0;
    QTest::addRow("abc in total") << u"total"_s << u"abc"_s << u"4.00"_s << u"8.00"_s << 1;
    QTest::addRow("7 in total stays") << u"total"_s << u"7"_s << u"4.00"_s << u"7.00"_s << 0;
    QTest::addRow("empty cost") << u"cost"_s << QString() << u"4.00"_s << u"8.00"_s << 1;
}

void tst_OrderManager::numberColumnsRefuseTextAndFormat()
{
    QFETCH(QString, column);
    QFETCH(QString, typed);
    m_bom->setCurrentOrder(1);
    m_bom->create(nullptr);
    m_bom->setObjectValueForTableColumn(u"2"_s, u"qty"_s, 0);
    m_bom->setObjectValueForTableColumn(u"4"_s, u"cost"_s, 0);
    m_bom->setData(m_bom->index(0, m_bom->columnForIdentifier(column)), typed);
    const Material *line = m_bom->getnthItem(0, 1);
    QCOMPARE(line->getCost(), FETCHED(QString, cost));
    QCOMPARE(line->getTotal(), FETCHED(QString, total));
    QCOMPARE(m_app->platform.beeps, FETCHED(int, beeps));
}

void tst_OrderManager::deletingLinesGivesStockBack()
{
    auto item = addTrackedItem(u"10"_s);
    m_bom->setCurrentOrder(1);
    m_bom->addProduct(*item);
    m_bom->setObjectValueForTableColumn(u"4"_s, u"qty"_s, 0);
    QCOMPARE(item->getQty(), u"7"_s);
    m_bom->create(nullptr); // an ad-hoc line moves no stock
    m_app->select(m_bom, 0);
    m_app->platform.alertAnswers.enqueue(0);
    m_bom->deleteKey(nullptr);
    QCOMPARE(item->getQty(), u"11"_s);
    QCOMPARE(m_bom->numberForThisOrder(), 1);
    QVERIFY(QFile::exists(m_app->bundleFile(u"itemsordered.xml"_s)));

    m_bom->addProduct(*item);
    LogCapture log;
    m_bom->deleteAllForCurrentOrder(nullptr);
    QCOMPARE(m_bom->numberForThisOrder(), 0);
    QCOMPARE(item->getQty(), u"12"_s);
    QCOMPARE(log.lines().first(), u"Deleting material 1 for Order 1, name:Widget"_s);
}

void tst_OrderManager::pickingAProduct_data()
{
    QTest::addColumn<QString>("stock");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("stockAfter");
    QTest::addColumn<int>("lines");
    QTest::addColumn<QStringList>("alerts");
    QTest::addRow("in stock") << u"9"_s << 0 << u"8"_s << 1 << QStringList();
    QTest::addRow("low") << u"3"_s << 0 << u"2"_s << 1
                         << QStringList{u"Low Stock | This leaves 2 of these items in stock. | OK"_s};
    const QString out =
        u"Out of Stock | You have none of these items. Do you still wish to add one to this order? | Add anyway, Cancel"_s;
    QTest::addRow("none, added anyway") << u"0"_s << 0 << u"-1"_s << 1
                                        << QStringList{out, u"Low Stock | This leaves -1 of these items in stock. | OK"_s};
    QTest::addRow("none, cancelled") << u"0"_s << 1 << u"0"_s << 0 << QStringList{out};
}

void tst_OrderManager::pickingAProduct()
{
    QFETCH(QString, stock);
    QFETCH(int, answer);
    auto item = addTrackedItem(stock, u"2"_s);
    item->setTaxCode(QString());
    m_orders->create(nullptr);
    m_app->platform.alertAnswers.enqueue(answer);
    m_orders->setMaterial(item.get());
    QCOMPARE(item->getQty(), FETCHED(QString, stockAfter));
    QCOMPARE(m_bom->numberForThisOrder(), FETCHED(int, lines));
    QStringList alerts;
    for (const Platform::Alert &alert : m_app->platform.alerts)
        alerts << AppFixture::alertText(alert);
    QCOMPARE(alerts, FETCHED(QStringList, alerts));
    if (m_bom->numberForThisOrder() == 1) {
        const Material *line = m_bom->getnthItem(0, m_orders->currentItem()->getID());
        QCOMPARE(line->getTaxCode(), u"S"_s); // the product's was empty
        QCOMPARE(line->getTotal(), u"10.00"_s);
    }
}

void tst_OrderManager::sumsOfTheCurrentOrder()
{
    m_orders->create(nullptr);
    QCOMPARE(m_bom->getTotalforCurrentOrder(), 0.0f);
    QCOMPARE(m_bom->getShippingforCurrentOrder(), 0.0f);
    auto item = m_app->addItem(u"P1"_s, u"Widget"_s, u"9"_s);
    item->setPrice(u"60"_s);
    item->setShipping(u"2.5"_s);
    m_orders->setMaterial(item.get());
    m_bom->setObjectValueForTableColumn(u"2"_s, u"qty"_s, 0); // 120 taxable
    auto task = std::make_shared<Action>();
    task->setTitle(u"Fitting"_s);
    task->setTotalCharge(u"30.00"_s);
    m_orders->setTime(task.get()); // untaxed
    m_orders->calculateTax(nullptr);
    m_orders->insertBOMShipping(nullptr);
    const OrderEditorState &s = m_orders->editorState();
    QCOMPARE(s.value, u"150.000000"_s);
    QCOMPARE(s.shipping, u"5.000000"_s);
    QCOMPARE(s.taxAmount, u"20.833334"_s); // the shipping carries its tax share
    QCOMPARE(s.net, u"130.00"_s);
    QCOMPARE(s.balance, u"155"_s);
}

void tst_OrderManager::customerLinkedWhileCreatingThenCancelled()
{
    auto ann = m_app->addContact(u"Ann"_s);
    m_orders->create(nullptr);
    Order *order = m_orders->currentItem();
    QCOMPARE(m_orders->getCount(), 0);
    m_orders->setContact(ann.get());
    QCOMPARE(m_orders->getCount(), 1); // in the list at once
    QCOMPARE(order->getContactId(), ann->getID());
    QCOMPARE(m_orders->editorState().contactName, u"Ann"_s);
    QVERIFY(m_orders->editorState().editContactEnabled);
    LogCapture log;
    m_orders->cancel(nullptr); // no longer new: cancelling keeps it
    QCOMPARE(log.lines(), QStringList{u"Ordermanager cancelling"_s});
    QCOMPARE(m_orders->getCount(), 1);

    m_orders->create(nullptr);
    m_orders->cancel(nullptr);
    QCOMPARE(log.lines().mid(1), (QStringList{u"Ordermanager cancelling"_s, u"Ordermanager creating is yes"_s}));
    QCOMPARE(m_orders->getCount(), 1);
}

void tst_OrderManager::filterByStatusAndCustomer_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("search");
    QTest::addColumn<QString>("shown"); // titles of the visible orders
    QTest::addRow("incomplete") << u"Incomplete"_s << QString() << u"open"_s;
    QTest::addRow("all") << u"All"_s << QString() << u"open done"_s;
    QTest::addRow("customer match overrides the status") << u"Incomplete"_s << u"bea"_s << u"done"_s;
    QTest::addRow("order text") << u"Incomplete"_s << u"ope"_s << u"open"_s;
    QTest::addRow("completed order text") << u"Incomplete"_s << u"don"_s << QString();
}

void tst_OrderManager::filterByStatusAndCustomer()
{
    addOrder(u"open"_s);
    auto done = addOrder(u"done"_s, u"Complete"_s);
    done->setContact(m_app->addContact(u"Beatrice"_s));
    m_orders->editorState().statusFilter.selectTitle(FETCHED(QString, filter));
    m_orders->editorState().searchText = FETCHED(QString, search);
    m_orders->filter(nullptr);
    QStringList shown;
    for (int row = 0; row < m_orders->numberOfRowsInTableView(); ++row)
        shown << m_orders->objectValueForTableColumn(u"title"_s, row);
    QCOMPARE(shown.join(u' '), FETCHED(QString, shown));
}

void tst_OrderManager::rowsTakeTheirStatusColour()
{
    auto entry = [](const char *status, const char *red) {
        return QVariant(QVariantMap{{u"Status"_s, QString::fromLatin1(status)}, {u"redComponent"_s, QString::fromLatin1(red)},
                                    {u"greenComponent"_s, u"0.5"_s}, {u"blueComponent"_s, u"0"_s}});
    };
    // The first entry of a status wins.
    QSettings(u"Ledgerwick"_s, u"Ledgerwick"_s).setValue(u"LedgerwickFlagColours"_s, QVariantList{entry("Quote", "1"), entry("Quote", "0")});
    addOrder(u"a"_s, u"Quote"_s);
    addOrder(u"b"_s, u"Order"_s);
    m_orders->filter(nullptr);
    QCOMPARE(m_orders->labelColorForRow(0), QColor::fromRgbF(1, 0.5f, 0));
    QCOMPARE(m_orders->labelColorForRow(1), m_orders->clearcolour());
    QVERIFY(!m_orders->data(m_orders->index(1, 0), lwDataSource::LabelColorRole).isValid());
}

void tst_OrderManager::attachmentsAreCounted_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("note");
    QTest::addRow("none") << QStringList() << 0 << u"There are no attachments"_s;
    QTest::addRow(".DS_Store only") << QStringList{u".DS_Store"_s} << 0 << u"There are no attachments"_s;
    QTest::addRow(".DS_Store and one") << QStringList{u".DS_Store"_s, u"plan.pdf"_s} << 1 << u"There is 1 attachment"_s;
    QTest::addRow("two") << QStringList{u"a.txt"_s, u"b.txt"_s} << 2 << u"There are  2  attachments"_s;
}

void tst_OrderManager::attachmentsAreCounted()
{
    QFETCH(QStringList, files);
    auto order = addOrder(u"job"_s);
    QDir().mkpath(OrderManager::attachmentsFolder(order->getID()));
    for (const QString &name : files) {
        QFile file(QDir(OrderManager::attachmentsFolder(order->getID())).filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QCOMPARE(OrderManager::countAttachments(order->getID()), FETCHED(int, count));
    m_orders->editRecord(order.get());
    QCOMPARE(m_orders->editorState().attachmentNote, FETCHED(QString, note));
    QCOMPARE(m_orders->editorState().viewAttachmentsEnabled, m_orders->getNumberOfAttachments() > 0);
}

void tst_OrderManager::deletingAnOrderTakesItsAttachmentsAndLines()
{
    auto item = addTrackedItem(u"5"_s);
    m_orders->create(nullptr);
    const int id = m_orders->currentItem()->getID();
    m_orders->setMaterial(item.get());
    m_bom->setObjectValueForTableColumn(u"3"_s, u"qty"_s, 0);
    QCOMPARE(item->getQty(), u"2"_s);
    const QString dropped = m_app->home(u"note.txt"_s);
    QFile file(dropped);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    m_orders->fileDropped(dropped);
    QCOMPARE(m_orders->editorState().attachmentNote, u"There is 1 attachment"_s);
    QVERIFY(QFile::exists(OrderManager::attachmentsFolder(id) + u"/note.txt"_s));
    m_orders->finish(nullptr);

    m_app->select(m_orders, 0);
    m_app->platform.alertAnswers.enqueue(0);
    m_orders->deleteKey(nullptr);
    QCOMPARE(m_orders->getCount(), 0);
    QCOMPARE(m_bom->linesOf(id).size(), size_t(0));
    QCOMPARE(item->getQty(), u"5"_s);
    QVERIFY(!QDir(OrderManager::attachmentsFolder(id)).exists());
}

void tst_OrderManager::repeatCheckCatchesUpOnePeriodPerPass()
{
    CalendarDate today = CalendarDate::fromString(u"15/03/09"_s, u"%d/%m/%y"_s);
    m_orders->setClock([&today] { return today; });
    auto monthly = addOrder(u"Window cleaning"_s);
    monthly->setRepeats(true);
    monthly->setLastRepeatDate(u"10/01/09"_s);
    monthly->setContactId(m_app->addContact(u"Ann"_s)->getID());
    m_bom->setCurrentOrder(monthly->getID());
    auto item = m_app->addItem(u"P1"_s, u"Squeegee"_s, u"4"_s);
    item->setTaxCode(u"S"_s);
    m_bom->addProduct(*item);
    addOrder(u"once"_s);

    m_orders->kickOffCheckForOverdueRepeats();
    QVERIFY(m_orders->isRepeatCheckRunning());
    QCOMPARE(m_orders->repeatTimerInterval(), OrderManager::kFirstRepeatPassMs);

    const auto first = m_orders->checkForOverdueRepeats();
    QCOMPARE(first, (QList<std::pair<QString, QString>>{{u"ORD1"_s, u"ORD3"_s}}));
    QCOMPARE(monthly->getLastRepeatDate(), u"10/02/09"_s); // one period on, not today
    QCOMPARE(AppFixture::alertText(m_app->platform.alerts.value(0)),
             u"Repeat Order | Order 'Window cleaning' has been duplicated. The number of the new Order is ORD3 | OK"_s);
    auto *copy = static_cast<Order *>(m_orders->getItemById(3));
    QVERIFY(copy->getContact()); // relinked by id, and copied as a link only
    QCOMPARE(copy->getContactId(), 0);
    QVERIFY(!copy->getRepeats());
    QCOMPARE(copy->getDescription(), u"Recurrence of Order ORD1\r"_s);
    const std::vector<Material *> &copied = m_bom->linesOf(3);
    QCOMPARE(copied.size(), size_t(1));
    QCOMPARE(copied.front()->getTotal(), u"0.00"_s);
    QCOMPARE(copied.front()->getTaxCode(), QString()); // lost on the copy

    QCOMPARE(m_orders->checkForOverdueRepeats().size(), 1); // 10/03 is still behind 15/03
    QCOMPARE(monthly->getLastRepeatDate(), u"10/03/09"_s);
    QVERIFY(m_orders->checkForOverdueRepeats().isEmpty());
    QVERIFY(QFile::exists(m_app->bundleFile(u"orders.xml"_s)));
}

void tst_OrderManager::openingAnOrderAsksAboutAChangedRate()
{
    auto order = addOrder(u"old"_s);
    order->setTaxRate(u"17.5"_s);
    m_app->platform.alertAnswers.enqueue(0);
    m_orders->editRecord(order.get());
    QCOMPARE(AppFixture::alertText(m_app->platform.alerts.value(0)),
             u"Tax Rate Changed | The tax rate has changed since this item was last saved. Do you wish to change the "
             "tax rate for this item? | Change to 20.00%, Keep 17.5%"_s);
    QCOMPARE(order->getTaxRate(), u"20.00"_s);
    QCOMPARE(m_orders->editorState().taxLabel, u"VAT @ 20.00%"_s);
    m_orders->editRecord(order.get()); // now equal: nothing asked
    QCOMPARE(m_app->platform.alerts.size(), 1);
}

QTEST_GUILESS_MAIN(tst_OrderManager)
#include "tst_ordermanager.moc"
