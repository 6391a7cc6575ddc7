#pragma once

#include "accounts/ActionManager.h"
#include "accounts/BillManager.h"
#include "accounts/StatementManager.h"
#include "app/BundleLock.h"
#include "app/DatabaseStore.h"
#include "app/V1DatabaseImport.h"
#include "contacts/CompanyContactEditor.h"
#include "contacts/CompanyEditor.h"
#include "contacts/ContactManager.h"
#include "core/RecordTable.h"
#include "core/lwController.h"
#include "core/lwDataSource.h"
#include "orders/BOMManager.h"
#include "orders/CheckoutManager.h"
#include "orders/OrderManager.h"
#include "products/ItemManager.h"
#include "reports/ReportManager.h"

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
    // The print settings every print of the program shares.
    struct PrintInfo
    {
        bool horizontallyCentered = true;
        bool verticallyCentered = true;
    };
    const PrintInfo &printInfo() const { return m_printInfo; }

    // --- start and quit -----------------------------------------------------
    // In order: the preferences, the date formatter, the reports folder and
    // list, the database (with its lock), then "Finished reading database".
    void startUp();
    // Before quitting: the preferences are stored as if confirmed, everything
    // is saved (nothing while read-only), then the editors are disconnected.
    // A save that fails asks whether to try again, quit anyway or cancel:
    // false when the user cancelled the quit.
    bool applicationShouldTerminate();

    // --- the managers -------------------------------------------------------
    ContactManager *getContactManager() const { return m_contacts; }
    CompanyEditor *getCompanyEditor() const { return m_companyEditor; }
    CompanyContactEditor *getCompanyContactEditor() const { return m_companyContactEditor; }
    ItemManager *getItemManager() const { return m_items; }
    OrderManager *getOrderManager() const { return m_orders; }
    BOMManager *getBOMManager() const { return m_materials; }
    // The lists whose managers have not landed yet are plain record tables.
    BillManager *getBillManager() const { return m_bills; }
    ActionManager *getActionManager() const { return m_actions; }
    // The pick-a-record panel and the list of supplier contacts it offers.
    Picker *getPicker() const { return m_picker; }
    SupplierDataSource *getSupplierDataSource() const { return m_supplierDataSource; }
    // The accounts tab's money-in and statement tables and the reports table.
    ReportManager *getMoneyInList() const { return m_moneyIn; }
    StatementManager *getStatementList() const { return m_statement; }
    ReportManager *getReportList() const { return m_reports; }
    ReportManager *getReportManager() const { return m_reports; }
    // A report manager for another screen's table (the contact editors'),
    // reading the same collections and dates as the reports tab's.
    ReportManager *makeReportManager(QObject *parent);
    // The collection a report's "selectfrom" names; none for any other name.
    lwDataSource *reportSource(const QString &selectfrom) const;
    // The collection that one record file fills.
    lwDataSource *manager(DatabaseStore::Kind kind) const { return m_managers[size_t(kind)]; }
    CheckoutManager *getCheckoutManager() const { return m_checkout; }

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
    void bringOrdersToFront() override { Q_EMIT ordersToFrontRequested(); }
    // The checkout and the order editor each ask the other to let go of an
    // unfinished edit when they come to the front.
    void requestOrderManagerResign() override;
    void requestCheckoutManagerResign();
    // The contact editor on the customer of the order whose lines are shown.
    void editContactForCurrentOrder() override;

    // --- routing ------------------------------------------------------------
    // The window tells the controller what the user has in front of them: the
    // selected tab ("1", "2", "3", "tabActions", "tabAccounts", "tabReports"),
    // the accounts sub-tab ("1" bills, "2" money in, "3" statement), the list
    // whose view has the keyboard focus (none), and whether the main window
    // is the key window.
    // The reports tab logs "*** is reports" each time it comes to the front.
    void setSelectedTab(const QString &identifier);
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
    // Opens the checkout on that order.
    void checkout();
    // A double-click or Enter on a list's row: its manager's editor, except
    // that an order opens in the checkout while the checkout has the list.
    void openRow(lwDataSource *list);

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
    // The lock found was left by a copy that is no longer running (a crash).
    bool lockIsStale() const { return m_lockStale; }
    // Takes over a stale lock and makes this copy writable; a lock held by a
    // running copy is never broken (false).
    bool openAnyway();
    // The files the last save could not write, each "name: reason", and the
    // damaged files it kept aside, each "name (kept as copy)".
    const QStringList &lastSaveFailures() const { return m_saveFailures; }
    const QStringList &lastKeptAside() const { return m_keptAside; }
    // Puts the record files of a backup back (after backing up the current
    // ones) and reads them again. False, with the reason, when it could not.
    bool restoreBackup(const QString &stamp, QString *error = nullptr);

    const QString &originalDbLocation() const { return m_originalDbLocation; }
    const QString &lockLocation() const { return m_lockLocation; }

    // --- table export ------------------------------------------------------
    // Asks where to save, then writes the table as spreadsheet text (UTF-8)
    // or as an HTML page (UTF-16 with a byte-order mark). The columns are the
    // view's, in their visual order. A missing data source exports nothing
    // but a log line.
    void exportCSVMenuItem(const lwDataSource *source, const QList<lwDataSource::Column> &columns);
    void exportHTMLMenuItem(const lwDataSource *source, const QList<lwDataSource::Column> &columns);

    // --- the version-1 database ---------------------------------------------
    // Asks first ("OK" imports, "Cancel" leaves everything as it is).
    void importLedgerwickDatabaseWithWarning();
    // Backs up the bundle, then replaces every list with the records of the
    // version-1 file (see V1DatabaseImport). Nothing is saved.
    V1DatabaseImport::Result importLedgerwickDatabase(
        const QString &path = QStringLiteral("~/Ledgerwick/ledgerwickdatabase.xml"));
    void setV1ImportBackup(V1DatabaseImport::Backup backup) { m_v1ImportBackup = std::move(backup); }

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
    void loadRecords();
    bool takeLockForWriting();
    // Tells the user of damaged files kept aside and, unless the caller asks
    // its own question, of the files not written.
    void tellAboutSave(bool failuresToo);

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
    BillManager *m_bills = nullptr;
    ActionManager *m_actions = nullptr;
    ReportManager *m_moneyIn = nullptr;
    StatementManager *m_statement = nullptr;
    ReportManager *m_reports = nullptr;
    Picker *m_picker = nullptr;
    SupplierDataSource *m_supplierDataSource = nullptr;
    CheckoutManager *m_checkout = nullptr;
    std::array<lwDataSource *, 6> m_managers{};

    QString m_selectedTab = QStringLiteral("1");
    PrintInfo m_printInfo;
    QString m_selectedAccountsTab = QStringLiteral("1");
    const lwDataSource *m_focusedList = nullptr;
    bool m_mainWindowKey = true;

    bool m_readOnly = false;
    std::array<bool, 6> m_unreadable{};
    QString m_locationOverride;
    QString m_originalDbLocation;
    QString m_lockLocation;
    QString m_lockDateTime;
    std::unique_ptr<BundleLock> m_lock;
    bool m_lockStale = false;
    bool m_backedUp = false; // once per run, before the first save replaces a file
    QStringList m_saveFailures;
    QStringList m_keptAside;
    int m_currentOrder = 0;
    V1DatabaseImport::Backup m_v1ImportBackup;
};
