#pragma once

#include "core/CalendarDate.h"
#include "core/lwEditorManager.h"
#include "orders/Order.h"
#include "orders/OrderEditorState.h"

#include <QColor>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

class BOMManager;
class Contact;
class ContactManager;
class ItemManager;

// The orders: the list with its status filter and label colours, the order
// editor (customer, lines, money, attachments, repeats), and the check that
// turns repeating orders into new orders as they fall due.
class OrderManager : public lwEditorManager<Order, OrderEditorState>
{
    Q_OBJECT
public:
    using PickerOpener = std::function<void(lwDataSource *source, const QString &field1, const QString &field2,
                                            const QString &type, std::function<void(dataObject *)> done)>;
    using Clock = std::function<CalendarDate()>;

    // The repeat check: first pass this long after the orders are read, then again after the period.
    static constexpr int kFirstRepeatPassMs = 5 * 1000;
    static constexpr int kRepeatPeriodMs = 21600 * 1000;

    explicit OrderManager(QObject *parent = nullptr);
    ~OrderManager() override;

    // --- wiring ---------------------------------------------------------------------
    void setBOMManager(BOMManager *bom);
    void setContactManager(ContactManager *contacts);
    void setItemManager(ItemManager *items);
    // The tasks offered by pickTime().
    void setActionSource(lwDataSource *actions) { m_actions = actions; }
    void setPickerOpener(PickerOpener opener) { m_pickerOpener = std::move(opener); }
    // "Now" for dates and the repeat check; the system clock unless replaced.
    void setClock(Clock clock) { m_clock = std::move(clock); }
    CalendarDate now() const;

    static QStringList typeEntries();
    static QStringList paymentMethodEntries();
    static QStringList balancePaidEntries();
    static QStringList frequencyEntries();
    // The statuses of the preferences, "Complete" included.
    QStringList statusEntries() const;

    // --- the editor cycle --------------------------------------------------------------
    void edit(QObject *sender) override;
    void editRecord(dataObject *record) override;
    // Copies the editor into the order without adding, hiding or saving (before printing).
    void commitEditor();
    void cancel(QObject *sender) override;
    void requestResign(QObject *sender) override;
    Order *createAndAddDataObject() override;
    // Takes the order out with its attachments and its lines (their stock given back).
    void remove(dataObject *record) override;
    using lwEditorManagerBase::remove;

    // --- the customer ---------------------------------------------------------------------
    void pickContact(QObject *sender);
    // The picked contact becomes the customer of the order in the editor.
    void setContact(dataObject *contact);
    // A new order in the editor joins the list first.
    void connectContactToOrderId(const std::shared_ptr<Contact> &contact, int orderId);
    void connectContactById(int contactId, Order &order) const;
    void createContact(QObject *sender);
    void editContact(QObject *sender);
    // The customer's fields in the editor; an order without a link is relinked by its contact id.
    void updateContactFields();
    QString grabContactFields() const;
    void copyContact(QObject *sender);
    void sendEmail(QObject *sender);

    // --- lines ---------------------------------------------------------------------------------
    void pickMaterial(QObject *sender);
    void pickTime(QObject *sender);
    // A product picked into the order: asks when out of stock, takes one off,
    // warns when low, adds the line.
    void setMaterial(dataObject *item);
    void setTime(dataObject *action);
    void addAdHocLine(QObject *sender);
    void deleteLine(QObject *sender);

    // --- money ------------------------------------------------------------------------------------
    void insertBOMTotal(QObject *sender);
    void insertBOMShipping(QObject *sender);
    void insertBOMTax(QObject *sender);
    void calculateTax(QObject *sender);
    void calculateBalance(QObject *sender);

    // --- copies ----------------------------------------------------------------------------------------
    // A copy of the order, added and saved, announced in an alert. The copy
    // keeps the customer link in memory only: its contact id stays 0.
    Order *duplicate(Order *source);
    // The editor's button: the order in the editor, committed first.
    void duplicate(QObject *sender);

    // --- the list -------------------------------------------------------------------------------------------
    void filter(QObject *sender) override;
    QColor labelColorForRow(int row) const override;
    // The colour the preferences give the order's status, else the clear colour.
    QColor labelColorForOrder(const Order *order) const;
    QColor clearcolour() const { return m_clearColour; }

    // --- attachments ------------------------------------------------------------------------------------------
    // The one folder of an order's attachments in the standard bundle.
    static QString attachmentsFolder(int orderId);
    static int countAttachments(int orderId);
    static void deleteAttachments(int orderId);
    void attach(QObject *sender);
    // Copies the file into the current order's folder.
    void fileDropped(const QString &path);
    void viewAttachments(QObject *sender);
    void setAttachmentStatus();
    int getNumberOfAttachments() const { return m_numberOfAttachments; }

    // --- repeats ------------------------------------------------------------------------------------------------
    // Starts the periodic check on this thread's event loop.
    void kickOffCheckForOverdueRepeats();
    bool isRepeatCheckRunning() const { return m_repeatTimer.isActive(); }
    int repeatTimerInterval() const { return m_repeatTimer.interval(); }
    // One pass over the orders there were when it started: every order falling
    // due is copied once and its last date moved one period on. Answers the
    // pairs of source and copy order numbers. A pass asked while another is
    // showing its alert does nothing.
    QList<std::pair<QString, QString>> checkForOverdueRepeats();
    // What each pass does first: every order without a customer link is
    // linked to the contact its id names.
    void relinkContacts();

Q_SIGNALS:
    // The balance was recalculated (the checkout's tender display follows).
    void balanceCalculated();
    void attachmentsChanged(int count);

protected:
    BOMManager *bomManager() const;
    ContactManager *contactManager() const;
    ItemManager *itemManager() const;
    std::shared_ptr<dataObject> makeNewRecord() override;
    void fillState(const Order &order) override;
    void copyState(Order &order) override;

private:
    Order *orderInEditor() const { return currentItem(); }
    std::shared_ptr<Order> sharedOrder(const Order *order) const;
    void addNewOrderToList();
    void openPicker(lwDataSource *source, const QString &f1, const QString &f2, const QString &type,
                    void (OrderManager::*answer)(dataObject *));
    void repeatTimerFired();
    // The orders added since the count was taken wait for the next pass.
    QList<std::pair<QString, QString>> repeatPass(int count);

    QPointer<BOMManager> m_bom;
    QPointer<ContactManager> m_contacts;
    QPointer<ItemManager> m_items;
    QPointer<lwDataSource> m_actions;
    PickerOpener m_pickerOpener;
    Clock m_clock;
    QColor m_clearColour;
    int m_numberOfAttachments = 0;

    QTimer m_repeatTimer;
    bool m_repeatWaitsForPass = false; // the next firing is the pass, not the count
    int m_repeatCount = 0;
    bool m_repeatPassRunning = false;
};
