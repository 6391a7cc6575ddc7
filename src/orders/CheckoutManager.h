#pragma once

#include "orders/CheckoutState.h"
#include "orders/OrderManager.h"

#include <QPointer>

// The counter checkout: a till-like editor of one sale at a time. A sale is
// an ordinary order made with the order editor's rules, but it joins the
// order manager's list (never a list of its own) as soon as a customer or a
// line is added to it. The tender panel takes the amount handed over and
// shows the change; what it records reaches the order at the next commit.
class CheckoutManager : public OrderManager
{
    Q_OBJECT
public:
    explicit CheckoutManager(QObject *parent = nullptr);
    ~CheckoutManager() override;

    // The list the sales join, whose customer and line pickers the checkout uses.
    void setOrderManager(OrderManager *orders);
    OrderManager *orderManager() const { return m_orders; }
    lwDataSource *recordList() override;

    CheckoutState &checkoutState() { return m_checkout; }
    const CheckoutState &checkoutState() const { return m_checkout; }
    // The window says which of the order's controls it has.
    void setControls(CheckoutState::Controls controls) { m_checkout.controls = controls; }

    // --- the sale ----------------------------------------------------------------------
    // The order in the checkout, or with none a fresh sale (lines included on
    // its invoice). Refused while read-only. The window comes up unedited.
    void editRecord(dataObject *order) override;
    // Both open a fresh sale.
    void edit(QObject *sender) override;
    void create(QObject *sender) override;
    void clearCurrentOrder(QObject *sender);
    // New Sale: a paid sale is committed first; an unpaid one that was
    // touched asks whether to save it.
    void checkoutNew(QObject *sender);
    // Whether the window may close; an edited, unpaid sale asks first.
    bool windowShouldClose(QObject *sender);
    // Commits the controls the window has into the sale, adds a new sale to
    // the orders and saves; the window stays open. Read-only, it only hides.
    void finish(QObject *sender) override;
    // The order editor came to the front: the checkout hides without committing.
    void requestResign(QObject *sender) override;
    // The user typed into one of the window's fields.
    void markWindowEdited() { m_checkout.windowEdited = true; }

    // --- customer and lines: each first puts a new sale into the orders ----------------------
    void checkoutSelectContact(QObject *sender);
    void checkoutNewContact(QObject *sender);
    void checkoutSelectItem(QObject *sender);
    void checkoutSelectTime(QObject *sender);
    void checkoutCreateAdhoc(QObject *sender);
    void checkoutEditContact(QObject *sender);
    // Deletes the line selected in the checkout's own table.
    void checkoutDeleteItem(QObject *sender);

    // --- the tender panel ---------------------------------------------------------------------
    void tender(QObject *sender);
    // Due less tendered: what is still owed, or the change.
    void updateTender(QObject *sender);
    // A keystroke in the tendered field (or a recalculated balance).
    void controlTextDidChange();
    void tenderFullAmount(QObject *sender);
    // A part payment becomes the deposit paid today; a full one, the
    // balance paid today. The sale counts as tendered.
    void tenderOK(QObject *sender);
    void tenderCancel(QObject *sender);

    // --- the window and the orders list -------------------------------------------------------
    // The window came to the front: the order editor lets go of its order,
    // the lines table shows the sale, and the list opens orders here.
    void windowDidBecomeKey();
    void setDefaultInterfaceToCheckout(QObject *sender);
    void setDefaultInterfaceToDatabase(QObject *sender);
    // Whether a double-click in the orders list opens the order in the checkout.
    bool listOpensCheckout() const { return m_listOpensCheckout; }
    void updateExistingOrder(QObject *sender);

Q_SIGNALS:
    void tenderPanelOpened();
    void tenderPanelClosed();
    void defaultInterfaceChanged(bool checkout);

protected:
    void fillState(const Order &order) override;
    void copyState(Order &order) override;

private:
    // A sale still being created joins the orders, and the window counts as edited.
    void moveSaleIntoOrders();
    OrderManager *pickerOwner();
    // The money follows the lines of the sale as they change.
    void linesChanged();
    // Save, Don't Save or Cancel: 0, 1 or 2.
    int askToSave();
    void closeTenderPanel();

    QPointer<OrderManager> m_orders;
    CheckoutState m_checkout;
    bool m_listOpensCheckout = false;
    bool m_loading = false; // filling the window moves the lines table: no recalculation
};
