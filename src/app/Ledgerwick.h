#pragma once

#include "core/DatabaseStore.h"
#include "core/lwDataSource.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>

class Contact;
class ContactManager;
class ItemManager;
class Picker;
class SupplierDataSource;
class Manual;
class PrefsController;
class lwDateFormatter;
class Platform;
class dataObject;
class lwDataSource;

// The application controller: owner of the six record collections and of the
// database bundle they are read from and written to, and the hub every
// manager asks about the state of the database and the desktop.
class Ledgerwick : public QObject
{
    Q_OBJECT
public:
    explicit Ledgerwick(Platform *platform, QObject *parent = nullptr);
    ~Ledgerwick() override;

    Platform *platform() const { return m_platform; }
    void setPlatform(Platform *platform);

    PrefsController *getPrefsController() const { return m_prefs; }
    // The pick-a-record panel and the list of supplier contacts it offers.
    Picker *getPicker() const { return m_picker; }
    SupplierDataSource *getSupplierDataSource() const { return m_supplierDataSource; }
    Manual *getManual() const { return m_manual; }
    // Created at start-up; none before.
    lwDateFormatter *getDateFormatter() const { return m_dateFormatter.get(); }

    // --- start and quit -----------------------------------------------------
    // In order: the preferences, the date formatter, the database (with its
    // lock), then "Finished reading database" in the log.
    void startUp();
    // Before quitting: the preferences are stored as if confirmed, then
    // everything is saved (nothing while read-only).
    void applicationShouldTerminate();

    // --- the managers -------------------------------------------------------
    lwDataSource *getContactManager() const { return manager(DatabaseStore::Kind::Contacts); }
    lwDataSource *getOrderManager() const { return manager(DatabaseStore::Kind::Orders); }
    lwDataSource *getItemManager() const { return manager(DatabaseStore::Kind::Items); }
    lwDataSource *getBOMManager() const { return manager(DatabaseStore::Kind::Materials); }
    lwDataSource *getBillManager() const { return manager(DatabaseStore::Kind::Bills); }
    lwDataSource *getActionManager() const { return manager(DatabaseStore::Kind::Actions); }
    lwDataSource *manager(DatabaseStore::Kind kind) const { return m_managers[size_t(kind)]; }
    // Puts a manager in place of the plain collection of its kind (the
    // controller takes ownership). Done before the database is read.
    void setManager(DatabaseStore::Kind kind, lwDataSource *manager);

    // --- lookups for the managers -----------------------------------------
    // The contact with the id given as text; none when there is no such contact.
    Contact *getContactbyId(const QString &id) const;
    // "" for the id "0" (without asking the contacts), else the contact's name.
    QString getContactNameforId(const QString &id) const;
    // The id ("%i") of the first contact with that name; "0" when there is none.
    QString getContactIdForName(const QString &name) const;
    // The contact of an order's customer, 0 when the order or contact is unknown.
    int getContactIdForOrder(int orderId) const;
    dataObject *getProductbyId(int id) const;
    // Links the contact to the order with that id (link and id).
    void connectContact(const std::shared_ptr<Contact> &contact, int orderId);
    // The order whose lines are shown (its id; 0 for none).
    void setCurrentOrder(int orderId);
    int getCurrentOrder() const { return m_currentOrder; }
    // The checkout and the order editor each ask the other to let go of an
    // unfinished edit when they come to the front.
    void requestOrderManagerResign();
    void requestCheckoutManagerResign();
    void setCheckoutManager(lwDataSource *checkout) { m_checkoutManager = checkout; }
    lwDataSource *getCheckoutManager() const { return m_checkoutManager; }
    // The id ("%i") of the contact selected in the contacts list, "-1" when none.
    QString getCurrentContactIdAsString() const;

    // --- the database -------------------------------------------------------
    // The bundle to read instead of the location preference (the CLI's --db).
    void setDatabaseLocation(const QString &folder) { m_locationOverride = folder; }
    // Reads the six files into the managers in the fixed order, then takes
    // the lock, or finds it and goes read-only. With takeLock false the lock
    // is only looked at, and nothing is ever written.
    void readDatabase(bool takeLock = true);
    // Saves: the one file of the manager given, or all six when which is the
    // controller; anything else writes nothing. Nothing is written while
    // read-only. Answers whether every file asked for was written.
    bool writeDatabase(QObject *which);

    // True while another copy of the program holds the database's lock.
    bool isReadOnly() const { return m_readOnly; }
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

    // Accepted after a deletion; saving is left to the editors.
    void setChangeFlag() {}
    // The removal of the lock failed: logged, and the work goes on.
    bool fileManagerShouldProceedAfterError(const QString &error);

Q_SIGNALS:
    void readOnlyChanged(bool readOnly);
    void currentOrderChanged(int orderId);
    // The database is open in another copy: the window shows the lock sheet.
    void lockFound(const QString &lockDateTime);

private:
    enum class WriteResult { Written, Failed, Stopped };
    struct WriteOutcome
    {
        WriteResult result = WriteResult::Failed;
        QStringList log; // lines to log, in order
    };
    // One stretch of a file's records, built on its own.
    struct Chunk
    {
        DatabaseStore::Kind kind;
        qsizetype from, to;
        QByteArray bytes;
        bool built = false;
        QString error;
    };
    // Writes one file from its built stretches; safe to run for different
    // kinds at once.
    WriteOutcome writeFile(DatabaseStore::Kind kind, const std::vector<const Chunk *> &chunks);
    // Copies an unreadable file aside before it is first replaced; answers the line to log.
    QString keepUnreadableAside(DatabaseStore::Kind kind, const QString &path);

    Platform *m_platform = nullptr; // not owned: the app, CLI or test installs it
    PrefsController *m_prefs = nullptr;
    Manual *m_manual = nullptr;
    Picker *m_picker = nullptr;
    SupplierDataSource *m_supplierDataSource = nullptr;
    std::unique_ptr<lwDateFormatter> m_dateFormatter;
    bool m_readOnly = false;
    std::array<lwDataSource *, 6> m_managers{};
    std::array<bool, 6> m_unreadable{};
    QString m_locationOverride;
    QString m_originalDbLocation;
    QString m_lockLocation;
    QString m_lockDateTime;
    int m_currentOrder = 0;
    lwDataSource *m_checkoutManager = nullptr; // none until the checkout exists
};
