// The counter checkout: sales made with the order rules and kept in the
// orders list, the tender panel's sums, and the question before a sale is
// dropped.
#include "orders/BOMManager.h"
#include "orders/CheckoutManager.h"
#include "prefs/PrefsController.h"
#include "products/Item.h"
#include "support/AppFixture.h"
#include "support/LogCapture.h"

#include <QFile>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using Control = CheckoutState::Control;

class tst_Checkout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_app.reset(); }

    void tenderShowsWhatIsOwedOrTheChange_data();
    void tenderShowsWhatIsOwedOrTheChange();
    void tenderOKRecordsThePayment_data();
    void tenderOKRecordsThePayment();
    void abandoningASale_data();
    void abandoningASale();
    void aPickedProductKeepsTheSaleAndItsStock();
    void finishCopiesOnlyTheWindowsControls_data();
    void finishCopiesOnlyTheWindowsControls();
    void readOnlyRefuses();
    void theControllerOpensOrdersInTheCheckout();

private:
    std::unique_ptr<AppFixture> m_app;
    CheckoutManager *m_checkout = nullptr;
    OrderManager *m_orders = nullptr;
};

void tst_Checkout::init()
{
    m_app = std::make_unique<AppFixture>();
    QVERIFY(m_app->isValid());
    m_checkout = m_app->ledgerwick->getCheckoutManager();
    m_orders = m_app->ledgerwick->getOrderManager();
    m_checkout->setClock([] { return CalendarDate(QDate(2024, 3, 5), QTime(9, 30)); });
    m_checkout->setControls(CheckoutState::Controls(0xffff));
}

void tst_Checkout::tenderShowsWhatIsOwedOrTheChange_data()
{
    QTest::addColumn<QString>("tendered");
    QTest::addColumn<QString>("balance");
    QTest::addColumn<QString>("words");
    QTest::addRow("change") << "20" << "10" << "Change Due";
    QTest::addRow("part payment") << "4" << "6" << "Balance Remaining";
    QTest::addRow("exact: no minus zero") << "10" << "0" << "Change Due";
    QTest::addRow("not a number counts 0") << "ten" << "10" << "Balance Remaining";
}

void tst_Checkout::tenderShowsWhatIsOwedOrTheChange()
{
    QFETCH(QString, tendered);
    m_checkout->editRecord(nullptr);
    m_checkout->editorState().balance = u"10.00"_s;
    m_checkout->tender(nullptr);
    const CheckoutState &c = m_checkout->checkoutState();
    QCOMPARE(c.tenderDue, u"10.00"_s);
    QVERIFY(!c.windowEdited);

    m_checkout->checkoutState().tenderTendered = tendered;
    m_checkout->controlTextDidChange(); // a keystroke
    QTEST(c.tenderBalance, "balance");
    QTEST(c.tenderInformativeText, "words");
    QVERIFY(c.windowEdited);
}

void tst_Checkout::tenderOKRecordsThePayment_data()
{
    QTest::addColumn<QString>("tendered"); // "": the Full Amount button
    QTest::addColumn<bool>("ukFormat");
    QTest::addColumn<QString>("deposit");
    QTest::addColumn<QString>("depositPaid");
    QTest::addColumn<QString>("balancePaid");
    QTest::addRow("part payment") << "4" << true << "4" << "05/03/24" << "";
    QTest::addRow("part payment, month first") << "4" << false << "4" << "03/05/24" << "";
    QTest::addRow("paid with change") << "20" << true << "" << "" << "05/03/24";
    QTest::addRow("full amount") << "" << true << "" << "" << "05/03/24";
}

void tst_Checkout::tenderOKRecordsThePayment()
{
    QFETCH(QString, tendered);
    QFETCH(bool, ukFormat);
    m_app->ledgerwick->getPrefsController()->controls().dateFormatColumn = ukFormat ? 0 : 1;
    m_app->ledgerwick->getPrefsController()->readDefaults();
    m_checkout->editRecord(nullptr);
    m_checkout->editorState().balance = u"10"_s;
    m_checkout->tender(nullptr);
    if (tendered.isEmpty())
        m_checkout->tenderFullAmount(nullptr);
    else
        m_checkout->checkoutState().tenderTendered = tendered;
    m_checkout->updateTender(nullptr);
    LogCapture log;
    m_checkout->tenderOK(nullptr);
    QCOMPARE(log.lines().value(0), u"today is "_s + (ukFormat ? u"05/03/24"_s : u"03/05/24"_s));
    QVERIFY(m_checkout->checkoutState().tendered);

    // The sale itself changes only at the commit.
    Order *sale = m_checkout->currentItem();
    QCOMPARE(sale->getDeposit(), QString());
    m_checkout->finish(nullptr);
    QTEST(sale->getDeposit(), "deposit");
    QTEST(sale->getDepositPaid(), "depositPaid");
    QTEST(sale->getBalancePaid(), "balancePaid");
    QCOMPARE(m_orders->getCount(), 1);
    QVERIFY(!QFile::exists(m_app->bundleFile(u"orders.xml"_s))); // the checkout's own save writes nothing
    QVERIFY(m_checkout->isEditorShown()); // the window stays open
}

void tst_Checkout::abandoningASale_data()
{
    QTest::addColumn<bool>("byClosing"); // else New Sale
    QTest::addColumn<bool>("edited");
    QTest::addColumn<bool>("tendered");
    QTest::addColumn<int>("answer"); // -1: nothing is asked
    QTest::addColumn<int>("kept");   // orders in the list afterwards
    QTest::addColumn<bool>("stays"); // the same sale is still in the window
    for (bool closing : {false, true}) {
        const char *how = closing ? "close" : "new sale";
        QTest::addRow("%s, untouched", how) << closing << false << false << -1 << 0 << false;
        QTest::addRow("%s, tendered", how) << closing << true << true << -1 << 1 << false;
        QTest::addRow("%s, Save", how) << closing << true << false << 0 << 1 << false;
        QTest::addRow("%s, Don't Save", how) << closing << true << false << 1 << 0 << false;
        QTest::addRow("%s, Cancel", how) << closing << true << false << 2 << 0 << true;
    }
}

void tst_Checkout::abandoningASale()
{
    QFETCH(bool, byClosing);
    QFETCH(bool, edited);
    QFETCH(bool, tendered);
    QFETCH(int, answer);
    QFETCH(int, kept);
    QFETCH(bool, stays);
    m_checkout->editRecord(nullptr);
    const Order *sale = m_checkout->currentItem();
    m_checkout->editorState().title = u"Fence"_s;
    if (edited)
        m_checkout->markWindowEdited();
    m_checkout->checkoutState().tendered = tendered;
    if (answer >= 0)
        m_app->platform.alertAnswers.enqueue(answer);

    if (byClosing)
        QCOMPARE(m_checkout->windowShouldClose(nullptr), answer != 2);
    else
        m_checkout->checkoutNew(nullptr);

    QCOMPARE(m_app->platform.alerts.size(), answer >= 0 ? 1 : 0);
    if (answer >= 0)
        QCOMPARE(AppFixture::alertText(m_app->platform.alerts.first()),
                 u"Close Checkout | Do you want to save this transaction before closing? | Save, Don't Save, Cancel"_s);
    QCOMPARE(m_orders->getCount(), kept);
    if (kept)
        QCOMPARE(static_cast<Order *>(m_orders->getnthItem(0))->getTitle(), u"Fence"_s);
    QCOMPARE(m_checkout->currentItem() == sale, stays || byClosing);
    QCOMPARE(m_checkout->isEditorShown(), stays || !byClosing);
    if (!byClosing && !stays) // a fresh sale
        QVERIFY(m_checkout->isCreating() && m_checkout->currentItem()->getIncludeBOM());
}

void tst_Checkout::aPickedProductKeepsTheSaleAndItsStock()
{
    auto item = m_app->addItem(u"P1"_s, u"Widget"_s, u"5"_s);
    item->setDecreaseQty(true);
    item->setPrice(u"10"_s);
    m_orders->setPickerOpener([item](lwDataSource *, const QString &, const QString &, const QString &,
                                     std::function<void(dataObject *)> done) { done(item.get()); });
    m_checkout->editRecord(nullptr);
    m_checkout->checkoutSelectItem(nullptr);
    QCOMPARE(m_orders->getCount(), 1); // joined the list when the product was picked
    QVERIFY(!m_checkout->isCreating());
    QCOMPARE(item->getQty(), u"4"_s);
    QCOMPARE(m_checkout->editorState().balance, u"10"_s); // the money follows the lines

    m_app->platform.alertAnswers.enqueue(1); // Don't Save
    m_checkout->checkoutNew(nullptr);
    QCOMPARE(m_orders->getCount(), 1);
    QCOMPARE(m_app->ledgerwick->getBOMManager()->linesOf(m_orders->getnthItem(0)->getID()).size(), size_t(1));
    QCOMPARE(item->getQty(), u"4"_s);
    QVERIFY(m_checkout->currentItem() != m_orders->getnthItem(0));
}

void tst_Checkout::finishCopiesOnlyTheWindowsControls_data()
{
    QTest::addColumn<int>("controls");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("valueWithTax");
    QTest::addRow("none") << 0 << "Old" << "1" << "";
    QTest::addRow("title") << int(Control::Title) << "New" << "1" << "";
    // Without a tax field the order's own tax is added.
    QTest::addRow("value with tax") << int(Control::Value | Control::ValueWithTax) << "Old" << "12" << "12.50";
    QTest::addRow("all") << 0xffff << "New" << "12" << "14.00";
}

void tst_Checkout::finishCopiesOnlyTheWindowsControls()
{
    QFETCH(int, controls);
    auto order = std::make_shared<Order>();
    order->setTitle(u"Old"_s);
    order->setValue(u"1"_s);
    order->setTax(u"0.5"_s);
    order->setNet(u"99"_s);
    order->setSent(true);
    order->setTaxRate(u"20.00"_s);
    m_orders->add(order);
    m_checkout->setControls(CheckoutState::Controls(controls));
    m_checkout->editRecord(order.get());
    OrderEditorState &s = m_checkout->editorState();
    s.title = u"New"_s;
    s.value = u"12"_s;
    s.taxAmount = u"2"_s;
    s.net = u"1"_s;
    s.sent = false;
    m_checkout->finish(nullptr);
    QTEST(order->getTitle(), "title");
    QTEST(order->getValue(), "value");
    QTEST(order->getValueWithTax(), "valueWithTax");
    // Never touched by the checkout.
    QCOMPARE(order->getNet(), u"99"_s);
    QVERIFY(order->getSent());
    QVERIFY(!order->getIncludeBOM());
}

void tst_Checkout::readOnlyRefuses()
{
    m_checkout->editRecord(nullptr);
    m_checkout->editorState().title = u"Fence"_s;
    m_app->ledgerwick->setReadOnly(true);
    const Order *sale = m_checkout->currentItem();
    m_checkout->finish(nullptr); // only hides
    QVERIFY(!m_checkout->isEditorShown());
    QCOMPARE(sale->getTitle(), QString());
    m_checkout->editRecord(nullptr);
    QVERIFY(!m_checkout->isEditorShown());
    QCOMPARE(m_checkout->currentItem(), sale);
    QCOMPARE(m_app->platform.alerts.size(), 2);
    QCOMPARE(m_app->platform.alerts.last().informativeText, u"Database is in read-only mode."_s);
    QCOMPARE(m_orders->getCount(), 0);
}

void tst_Checkout::theControllerOpensOrdersInTheCheckout()
{
    Ledgerwick &l = *m_app->ledgerwick;
    auto contact = m_app->addContact(u"Ann"_s);
    auto order = std::make_shared<Order>();
    order->setTaxRate(u"20.00"_s);
    m_orders->add(order);
    m_orders->filter(nullptr);
    m_app->select(m_orders, 0);

    // The list's double-click edits until the checkout comes to the front.
    l.openRow(m_orders);
    QVERIFY(m_orders->isEditorShown());
    m_checkout->editRecord(nullptr);
    m_checkout->windowDidBecomeKey();
    QVERIFY(!m_orders->isEditorShown()); // the order editor let go of its order
    QVERIFY(m_checkout->listOpensCheckout());
    l.setFocusedList(m_orders);
    m_app->select(m_orders, 0); // the commit reloaded the list
    l.openRow(m_orders);
    QCOMPARE(m_checkout->currentItem(), order.get());

    // A customer picked in the checkout shows in its window.
    m_orders->setPickerOpener([contact](lwDataSource *, const QString &, const QString &, const QString &,
                                        std::function<void(dataObject *)> done) { done(contact.get()); });
    m_checkout->checkoutSelectContact(nullptr);
    QCOMPARE(order->getContact(), contact);
    QCOMPARE(m_checkout->editorState().contactName, u"Ann"_s);

    // The order editor coming to the front hides the checkout and gives the list back.
    l.requestCheckoutManagerResign();
    QVERIFY(!m_checkout->isEditorShown());
    QVERIFY(!m_checkout->listOpensCheckout());
    l.setFocusedList(nullptr);
    l.checkout(); // not from the list: a new sale
    QVERIFY(m_checkout->isCreating());
}

QTEST_GUILESS_MAIN(tst_Checkout)
#include "tst_checkout.moc"
