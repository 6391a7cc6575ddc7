#include "orders/CheckoutManager.h"

#include "contacts/ContactManager.h"
#include "core/Log.h"
#include "core/NumberText.h"
#include "core/Platform.h"
#include "core/lwController.h"
#include "orders/BOMManager.h"
#include "orders/OrderMoney.h"
#include "prefs/PrefsController.h"
#include "products/ItemManager.h"

CheckoutManager::CheckoutManager(QObject *parent) : OrderManager(parent)
{
    setObjectName(QStringLiteral("checkout"));
    // A recalculated balance reaches the tender display as the value field's
    // change notification always has.
    connect(this, &OrderManager::balanceCalculated, this, &CheckoutManager::controlTextDidChange);
}

CheckoutManager::~CheckoutManager() = default;

void CheckoutManager::setOrderManager(OrderManager *orders)
{
    m_orders = orders;
    // The lines table is shared with the order editor; only changes to the
    // sale's own lines move its money.
    if (BOMManager *bom = bomManager()) {
        connect(bom, &QAbstractItemModel::modelReset, this, &CheckoutManager::linesChanged);
        connect(bom, &QAbstractItemModel::dataChanged, this, &CheckoutManager::linesChanged);
    }
}

lwDataSource *CheckoutManager::recordList()
{
    return m_orders ? static_cast<lwDataSource *>(m_orders.data()) : this;
}

// --- the sale ------------------------------------------------------------------------------

void CheckoutManager::editRecord(dataObject *record)
{
    if (!readOnlyCheck())
        return;
    if (record && !recordList()->sharedRecord(record))
        return;
    closeTenderPanel();
    m_checkout.windowEdited = false;
    m_checkout.tendered = false;
    m_checkout.tenderDue = m_checkout.tenderBalance = m_checkout.tenderTendered = lwEmpty();
    m_checkout.tenderInformativeText = lwEmpty();
    m_loading = true;
    if (record) {
        OrderManager::editRecord(record);
    } else {
        beginCreating(makeNewRecord());
        currentItem()->setIncludeBOM(true);
        setItem(currentRecord());
        showEditor();
    }
    m_loading = false;
}

void CheckoutManager::edit(QObject *)
{
    clearCurrentOrder(this);
}

void CheckoutManager::create(QObject *)
{
    clearCurrentOrder(this);
}

void CheckoutManager::clearCurrentOrder(QObject *)
{
    editRecord(nullptr);
}

int CheckoutManager::askToSave()
{
    if (!platform())
        return 0; // nobody to ask: the default button
    return platform()->alert({lwTr("Close Checkout"), lwTr("Do you want to save this transaction before closing?"),
                              {lwTr("Save"), lwTr("Don't Save"), lwTr("Cancel")}});
}

void CheckoutManager::checkoutNew(QObject *sender)
{
    if (m_checkout.windowEdited && !m_checkout.tendered) {
        const int answer = askToSave();
        if (answer == 2)
            return;
        if (answer == 0)
            finish(sender);
    } else if (m_checkout.windowEdited) {
        finish(sender);
    }
    clearCurrentOrder(sender);
}

bool CheckoutManager::windowShouldClose(QObject *sender)
{
    if (isWindowConnected() && m_checkout.windowEdited) {
        if (m_checkout.tendered) {
            finish(sender);
        } else {
            const int answer = askToSave();
            if (answer == 2)
                return false;
            if (answer == 0)
                finish(sender);
        }
    }
    closeTenderPanel();
    hideEditor();
    setDefaultInterfaceToDatabase(sender);
    return true;
}

void CheckoutManager::finish(QObject *sender)
{
    if (!readOnlyCheck()) {
        hideEditor();
        return;
    }
    const std::shared_ptr<dataObject> sale = currentShared();
    if (!sale)
        return;
    copyState(*static_cast<Order *>(sale.get()));
    if (isCreating()) {
        recordList()->add(sale);
        setCreating(false);
    }
    recordList()->filter(sender);
    if (!ledgerwick())
        return;
    // The checkout asks as itself, which writes no file: its sales reach the
    // disk with the orders' next save or at quit, as they always have.
    ledgerwick()->writeDatabase(this);
}

void CheckoutManager::requestResign(QObject *sender)
{
    closeTenderPanel();
    hideEditor();
    setDefaultInterfaceToDatabase(sender);
}

void CheckoutManager::fillState(const Order &order)
{
    OrderManager::fillState(order);
    m_checkout.balancePaid = order.getBalancePaid();
}

void CheckoutManager::copyState(Order &order)
{
    const OrderEditorState &s = m_state;
    const CheckoutState &c = m_checkout;
    using C = CheckoutState;
    if (c.has(C::Balance))
        order.setBalance(lwNonNull(s.balance));
    if (c.has(C::BalancePaid))
        order.setBalancePaid(lwNonNull(c.balancePaid));
    if (c.has(C::Date))
        order.setDate(lwNonNull(s.date));
    if (c.has(C::Deposit))
        order.setDeposit(lwNonNull(s.deposit));
    if (c.has(C::DepositPaid))
        order.setDepositPaid(lwNonNull(s.depositPaid));
    if (c.has(C::Description))
        order.setDescription(lwNonNull(s.description));
    if (c.has(C::OrderNum))
        order.setOrderNum(lwNonNull(s.orderNum));
    if (c.has(C::Shipping))
        order.setShipping(lwNonNull(s.shipping));
    if (c.has(C::Tax))
        order.setTax(lwNonNull(s.taxAmount));
    if (c.has(C::Title))
        order.setTitle(lwNonNull(s.title));
    if (c.has(C::Value))
        order.setValue(lwNonNull(s.value));
    if (c.has(C::ValueWithTax))
        order.setValueWithTax(OrderMoney::valueWithTax(order.getValue(), order.getTax(), order.getShipping()));
    if (c.has(C::PaymentMethod))
        order.setPaymentMethod(lwNonNull(s.paymentMethod.selectedTitle()));
    if (const QString status = s.status.selectedTitle(); c.has(C::Status) && !status.isEmpty())
        order.setStatus(status);
    if (const QString frequency = s.frequency.selectedTitle(); c.has(C::Frequency) && !frequency.isEmpty())
        order.setRepeatFrequency(frequency);
    if (c.has(C::Repeats))
        order.applyRepeatBox(s.repeats, now());
}

// --- customer and lines ---------------------------------------------------------------------------

void CheckoutManager::moveSaleIntoOrders()
{
    if (isCreating() && currentShared()) {
        recordList()->add(currentShared());
        setCreating(false);
    }
    m_checkout.windowEdited = true;
}

OrderManager *CheckoutManager::pickerOwner()
{
    // The order manager's pickers put their answer into the sale it has in hand.
    return m_orders ? m_orders.data() : this;
}

void CheckoutManager::checkoutSelectContact(QObject *sender)
{
    moveSaleIntoOrders();
    pickerOwner()->pickContact(sender);
}

void CheckoutManager::checkoutNewContact(QObject *sender)
{
    moveSaleIntoOrders();
    if (contactManager())
        contactManager()->createForCurrentOrder(sender);
}

void CheckoutManager::checkoutSelectItem(QObject *sender)
{
    moveSaleIntoOrders();
    pickerOwner()->pickMaterial(sender);
}

void CheckoutManager::checkoutSelectTime(QObject *sender)
{
    moveSaleIntoOrders();
    pickerOwner()->pickTime(sender);
}

void CheckoutManager::checkoutCreateAdhoc(QObject *)
{
    moveSaleIntoOrders();
    if (bomManager())
        bomManager()->create(this);
}

void CheckoutManager::checkoutEditContact(QObject *)
{
    if (ledgerwick())
        ledgerwick()->editContactForCurrentOrder();
}

void CheckoutManager::checkoutDeleteItem(QObject *)
{
    m_checkout.windowEdited = true;
    // The checkout as sender: the line selected in its own table goes.
    if (bomManager())
        bomManager()->deleteKey(this);
}

void CheckoutManager::linesChanged()
{
    const Order *sale = currentItem();
    if (m_loading || !isEditorShown() || !sale || !bomManager() || bomManager()->getCurrentOrder() != sale->getID())
        return;
    m_loading = true; // the sums below must not start another round
    insertBOMShipping(this);
    calculateTax(this);
    m_loading = false;
}

// --- the tender panel -------------------------------------------------------------------------------

void CheckoutManager::tender(QObject *)
{
    m_checkout.tenderDue = lwNonNull(m_state.balance);
    m_checkout.tenderBalance = lwNonNull(m_state.balance);
    m_checkout.tenderTendered = lwEmpty();
    m_checkout.tenderInformativeText = lwTr("Balance Remaining");
    m_checkout.tenderPanelShown = true;
    Q_EMIT editorStateChanged();
    Q_EMIT tenderPanelOpened();
}

void CheckoutManager::updateTender(QObject *)
{
    const float remaining = NumberText::floatValue(m_checkout.tenderDue) -
                            NumberText::floatValue(m_checkout.tenderTendered);
    if (remaining <= 0) {
        // Adding zero turns an exact payment's -0 into 0.
        m_checkout.tenderBalance = OrderMoney::plainNumber(-remaining + 0.0f);
        m_checkout.tenderInformativeText = lwTr("Change Due");
    } else {
        m_checkout.tenderBalance = OrderMoney::plainNumber(remaining);
        m_checkout.tenderInformativeText = lwTr("Balance Remaining");
    }
    Q_EMIT editorStateChanged();
}

void CheckoutManager::controlTextDidChange()
{
    m_checkout.windowEdited = true;
    updateTender(this);
}

void CheckoutManager::tenderFullAmount(QObject *sender)
{
    m_checkout.tenderTendered = m_checkout.tenderDue;
    updateTender(sender);
}

void CheckoutManager::tenderOK(QObject *)
{
    const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr;
    const bool uk = prefs ? prefs->isUKFormat() : true;
    const QString today = now().toString(uk ? QStringLiteral("%d/%m/%y") : QStringLiteral("%m/%d/%y"));
    lwLog(QStringLiteral("today is ") + today);
    if (m_checkout.tenderInformativeText != lwTr("Change Due")) {
        m_state.deposit = lwNonNull(m_checkout.tenderTendered);
        m_state.depositPaid = today;
    } else {
        m_checkout.balancePaid = today;
    }
    closeTenderPanel();
    m_checkout.tendered = true;
    Q_EMIT editorStateChanged();
}

void CheckoutManager::tenderCancel(QObject *)
{
    closeTenderPanel();
}

void CheckoutManager::closeTenderPanel()
{
    if (!m_checkout.tenderPanelShown)
        return;
    m_checkout.tenderPanelShown = false;
    Q_EMIT tenderPanelClosed();
}

// --- the window and the orders list ------------------------------------------------------------------

void CheckoutManager::windowDidBecomeKey()
{
    if (ledgerwick())
        ledgerwick()->requestOrderManagerResign();
    setDefaultInterfaceToCheckout(this);
    // The order editor may have shown another order's lines meanwhile.
    if (const Order *sale = currentItem(); sale && ledgerwick() && isEditorShown()) {
        m_loading = true;
        ledgerwick()->setCurrentOrder(sale->getID());
        m_loading = false;
    }
}

void CheckoutManager::setDefaultInterfaceToCheckout(QObject *)
{
    if (m_listOpensCheckout)
        return;
    m_listOpensCheckout = true;
    Q_EMIT defaultInterfaceChanged(true);
}

void CheckoutManager::setDefaultInterfaceToDatabase(QObject *)
{
    if (!m_listOpensCheckout)
        return;
    m_listOpensCheckout = false;
    Q_EMIT defaultInterfaceChanged(false);
}

void CheckoutManager::updateExistingOrder(QObject *sender)
{
    setDefaultInterfaceToCheckout(sender);
    if (ledgerwick())
        ledgerwick()->bringOrdersToFront();
}
