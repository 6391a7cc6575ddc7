#pragma once

#include "app/DatabaseStore.h"
#include "contacts/CompanyContactEditor.h"
#include "contacts/CompanyEditor.h"
#include "contacts/ContactManager.h"
#include "core/RecordTable.h"
#include "core/lwController.h"
#include "core/lwDataSource.h"
#include "orders/BOMManager.h"
#include "orders/OrderManager.h"
#include "products/ItemManager.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>

class Contact;
class Manual;
class Picker;
class PrefsController;
class SupplierDataSource;
class dataObject;
class lwDateFormatter;

// The application controller: it creates and wires every manager, owns the
// database bundle they are read from and written to, routes the menu and
// toolbar commands to the list in front, and answers the managers' questions
// about one another and about the database.
class Ledgerwick : public lwController
{
    Q_OBJECT
public:
    explicit Ledgerwick(Platform *platform, QObject *parent = nullptr);
    ~Ledgerwick() override;

    Platform *platform() const override { return m_platform; }
    void setPlatform(Platform *platform);

    PrefsController *getPrefsController() const override { return m_prefs; }
    lwDateFormatter *getDateFormatter() const override { return m_dateFormatter.get(); }
    Manual *getManual() const { return m_manual; }

    // --- start and quit -----------------------------------------------------
    // In order: the preferences, the date formatter, the database (with its
    // lock), then "Finished reading database" in the log.
    void startUp();
    // Before quitting: the preferences are stored as if confirmed, everything
    // is saved (nothing while read-only), then the editors are disconnected.
    void applicationShouldTerminate();

    // --- the managers -------------------------------------------------------
    ContactManager *getContactManager() const { return m_contacts; }
    CompanyEditor *getCompanyEditor() const { return m_companyEditor; }
    CompanyContactEditor *getCompanyContactEditor() const { return m_companyContactEditor; }
    ItemManager *getItemManager() const { return m_items; }
    OrderManager *getOrderManager() const { return m_orders; }
    BOMManager *getBOMManager() const { return m_materials; }
    // The lists whose managers have not landed yet are plain record tables.
    RecordTable *getBillManager() const { return m_bills; }
    RecordTable *getActionManager() const { return m_actions; }
    // The pick-a-record panel and the list of supplier contacts it offers.
    Picker *getPicker() const { return m_picker; }
    SupplierDataSource *getSupplierDataSource() const { return m_supplierDataSource; }
    // The accounts tab's money-in and statement tables and the reports table.
    RecordTable *getMoneyInList() const { return m_moneyIn; }
    RecordTable *getStatementList() const { return m_statement; }
    RecordTable *getReportList() const { return m_reports; }
    // The collection that one record file fills.
    lwDataSource *manager(DatabaseStore::Kind kind) const { return m_managers[size_t(kind)]; }
    // The checkout, once it exists; none until then.
    void setCheckoutManager(lwDataSource *checkout) { m_checkoutManager = checkout; }
    lwDataSource *getCheckoutManager() const { return m_checkoutManager; }

    // --- lookups for the managers -----------------------------------------
    Contact *getContactbyId(const QString &id) const override;
    QString getContactNameforId(const QString &id) const override;
    QString getContactIdForName(const QString &name) const override;
    int getContactIdForOrder(int orderId) const override;
    dataObject *getProductbyId(int id) const override;
    QString getCurrentContactIdAsString() const override;
    // Links the contact to the order with that id (link and id).
    void connectContact(const std::shared_ptr<Contact> &contact, int orderId) override;
    void setCurrentOrder(int orderId) override;
    int getCurrentOrder() const override { return m_materials->getCurrentOrder(); }
    // Shows the orders list in front.
    void bringOrdersToFront() { Q_EMIT ordersToFrontRequested(); }
    // The checkout and the order editor each ask the other to let go of an
    // unfinished edit when they come to the front.
    void requestOrderManagerResign();
    void requestCheckoutManagerResign();

    // --- routing ------------------------------------------------------------
    // The window tells the controller what the user has in front of them: the
    // selected tab ("1", "2", "3", "tabActions", "tabAccounts", "tabReports"),
    // the accounts sub-tab ("1" bills, "2" money in, "3" statement), the list
    // whose view has the keyboard focus (none), and whether the main window
    // is the key window.
    void setSelectedTab(const QString &identifier) { m_selectedTab = identifier; }
    void setSelectedAccountsTab(const QString &identifier) { m_selectedAccountsTab = identifier; }
    void setFocusedList(const lwDataSource *list) { m_focusedList = list; }
    void setMainWindowKey(bool key) { m_mainWindowKey = key; }
    const QString &selectedTab() const { return m_selectedTab; }
    // The list new records, imports and the tab's commands go to: the tab's
    // manager; none for the accounts tab unless it shows its bills, and none
    // while another window is key.
    lwDataSource *frontDataSource() const;
    // The list whose view print and export act on. None while another window
    // is key: then the front view is that window's focused view.
    lwDataSource *frontList() const;
    // The managers whose lists the delete and edit commands reach, in the
    // order they are tested against the focused list.
    std::array<lwDataSource *, 5> firstResponderOrder() const;
    // Delete, Edit and New from the menus and the toolbar: to the manager of
    // the focused list (delete, edit) or of the front list (new).
    void deleteMenuItem();
    void editMenuItem();
    void newMenuItem();
    // The order the checkout opens with: the selected one when the orders
    // list has the focus, else none (a new sale).
    dataObject *checkoutOrder() const;

    // --- the database -------------------------------------------------------
    // The bundle to read instead of the location preference (the CLI's --db).
    void setDatabaseLocation(const QString &folder) { m_locationOverride = folder; }
    // The bundle read and written: the override, else the location preference.
    QString databaseLocation() const;
    // Reads the six files into the managers in the fixed order, then takes
    // the lock, or finds it and goes read-only. With takeLock false the lock
    // is only looked at, and nothing is ever written.
    void readDatabase(bool takeLock = true);
    // Saves: the one file of the manager given, or all six when which is the
    // controller; anything else writes nothing. Nothing is written while
    // read-only. Answers whether every file asked for was written.
    bool writeDatabase(QObject *which) override;

    bool isReadOnly() const override { return m_readOnly; }
    void setReadOnly(bool readOnly);
    // The lock sheet's button: confirms the read-only mode.
    void cancelLockSheet();
    // The moment written in the lock that was found, "" when none was read.
    const QString &lockDateTime() const { return m_lockDateTime; }

    const QString &originalDbLocation() const { return m_originalDbLocation; }
    const QString &lockLocation() const { return m_lockLocation; }

    // --- table export ------------------------------------------------------
    // Asks where to save, then writes the table as spreadsheet text (UTF-8)
    // or as an HTML page (UTF-16 with a byte-order mark). The columns are the
    // view's, in their visual order. A missing data source exports nothing
    // but a log line.
    void exportCSVMenuItem(const lwDataSource *source, const QList<lwDataSource::Column> &columns);
    void exportHTMLMenuItem(const lwDataSource *source, const QList<lwDataSource::Column> &columns);

    // The removal of the lock failed: logged, and the work goes on.
    bool fileManagerShouldProceedAfterError(const QString &error);

Q_SIGNALS:
    void readOnlyChanged(bool readOnly);
    void currentOrderChanged(int orderId);
    void ordersToFrontRequested();
    // The database is open in another copy: the window shows the lock sheet.
    void lockFound(const QString &lockDateTime);

private:
    RecordTable *makeList(DatabaseStore::Kind kind);

    Platform *m_platform = nullptr; // not owned: the app, CLI or test installs it
    PrefsController *m_prefs = nullptr;
    Manual *m_manual = nullptr;
    std::unique_ptr<lwDateFormatter> m_dateFormatter;

    ContactManager *m_contacts = nullptr;
    CompanyEditor *m_companyEditor = nullptr;
    CompanyContactEditor *m_companyContactEditor = nullptr;
    ItemManager *m_items = nullptr;
    OrderManager *m_orders = nullptr;
    BOMManager *m_materials = nullptr;
    RecordTable *m_bills = nullptr;
    RecordTable *m_actions = nullptr;
    RecordTable *m_moneyIn = nullptr;
    RecordTable *m_statement = nullptr;
    RecordTable *m_reports = nullptr;
    Picker *m_picker = nullptr;
    SupplierDataSource *m_supplierDataSource = nullptr;
    lwDataSource *m_checkoutManager = nullptr; // none until the checkout exists
    std::array<lwDataSource *, 6> m_managers{};

    QString m_selectedTab = QStringLiteral("1");
    QString m_selectedAccountsTab = QStringLiteral("1");
    const lwDataSource *m_focusedList = nullptr;
    bool m_mainWindowKey = true;

    bool m_readOnly = false;
    std::array<bool, 6> m_unreadable{};
    QString m_locationOverride;
    QString m_originalDbLocation;
    QString m_lockLocation;
    QString m_lockDateTime;
};
