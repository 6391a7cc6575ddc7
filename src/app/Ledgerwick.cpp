#include "app/Ledgerwick.h"

#include "accounts/Action.h"
#include "accounts/Bill.h"
#include "app/BundleBackups.h"
#include "invoices/Stationery.h"
#include "app/DefaultColumns.h"
#include "contacts/Contact.h"
#include "contacts/ContactManager.h"
#include "core/CalendarDate.h"
#include "core/DatabasePaths.h"
#include "core/Log.h"
#include "core/NumberText.h"
#include "core/Platform.h"
#include "core/PropertyListWriter.h"
#include "core/RecordTable.h"
#include "core/lwDataSource.h"
#include "core/lwDateFormatter.h"
#include "orders/Material.h"
#include "orders/Order.h"
#include "prefs/Manual.h"
#include "prefs/PrefsController.h"
#include "products/Item.h"
#include "products/ItemManager.h"
#include "products/Picker.h"
#include "products/SupplierDataSource.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringEncoder>

using Kind = DatabaseStore::Kind;

Ledgerwick::Ledgerwick(Platform *platform, QObject *parent)
    : lwController(parent), m_platform(platform), m_prefs(new PrefsController(platform, this)),
      m_manual(new Manual(platform, this))
{
    m_contacts = new ContactManager(this);
    m_companyEditor = new CompanyEditor(m_contacts, this);
    m_companyContactEditor = new CompanyContactEditor(m_contacts, this);
    m_contacts->setEditors(m_companyEditor, m_companyContactEditor);
    for (lwDataSource *editor : {static_cast<lwDataSource *>(m_companyEditor), static_cast<lwDataSource *>(m_companyContactEditor)})
        editor->setLedgerwick(this);
    m_items = new ItemManager(this);
    m_orders = new OrderManager(this);
    m_orders->setObjectName(QString::fromLatin1(DatabaseStore::fileOf(Kind::Orders).name));
    m_materials = new BOMManager(this);
    m_materials->setObjectName(QString::fromLatin1(DatabaseStore::fileOf(Kind::Materials).name));
    m_bills = new BillManager(this);
    m_actions = new ActionManager(this);
    m_managers = {m_contacts, m_orders, m_items, m_materials, m_bills, m_actions};
    for (const auto &file : DatabaseStore::files()) {
        m_managers[size_t(file.kind)]->setLedgerwick(this);
        m_managers[size_t(file.kind)]->setColumns(DefaultColumns::forKind(file.kind));
    }

    // The money-in table is a report the bills' filter runs from its own
    // period; the statement reads its totals row and the bills'.
    m_moneyIn = makeReportManager(this);
    m_moneyIn->setObjectName(QStringLiteral("moneyIn"));
    m_moneyIn->setColumns(DefaultColumns::moneyIn());
    m_bills->setMoneyInRunner([moneyIn = m_moneyIn](const QString &fromDateFormat) {
        moneyIn->setFromDate(fromDateFormat);
        moneyIn->doReport(QStringLiteral("MoneyIn"));
    });
    m_statement = new StatementManager(this);
    m_statement->setColumns(DefaultColumns::statement());
    m_statement->setInTable(m_moneyIn);
    m_statement->setOutTable(m_bills);
    m_statement->setLedgerwick(this);
    m_reports = makeReportManager(this);
    m_reports->setObjectName(QStringLiteral("reports"));
    m_reports->setCurrentContactSource([this] { return getCurrentContactIdAsString(); });

    // The preferences' own contact types join the contact pop-ups.
    connect(m_prefs, &PrefsController::listsPopulated, m_contacts, &ContactManager::populateLists);
    connect(m_prefs, &PrefsController::listsPopulated, m_bills, &BillManager::populateCategories);

    m_supplierDataSource = new SupplierDataSource(this);
    m_supplierDataSource->setLedgerwick(this);
    m_supplierDataSource->setContactManager(m_contacts);
    m_picker = new Picker(this);
    m_picker->setLedgerwick(this);
    m_items->setSupplierSource(m_supplierDataSource);
    m_items->setPickerOpener([picker = m_picker](lwDataSource *source, const QString &field1, const QString &field2,
                                                 const QString &type, std::function<void(dataObject *)> done) {
        picker->beginfor(std::move(done), source, field1, field2, type);
    });
    m_v1ImportBackup = [this](QString *error) {
        return BundleBackups::create(V1DatabaseImport::bundleOf(*this), error);
    };
    m_materials->setItemManager(m_items);
    // The checkout edits the orders' own records with the order editor's rules.
    m_checkout = new CheckoutManager(this);
    m_checkout->setLedgerwick(this);
    for (OrderManager *orders : {m_orders, static_cast<OrderManager *>(m_checkout)}) {
        orders->setBOMManager(m_materials);
        orders->setContactManager(m_contacts);
        orders->setItemManager(m_items);
        orders->setActionSource(m_actions);
        orders->setPickerOpener([picker = m_picker](lwDataSource *source, const QString &field1,
                                                    const QString &field2, const QString &type,
                                                    std::function<void(dataObject *)> done) {
            picker->beginfor(std::move(done), source, field1, field2, type);
        });
    }
    m_checkout->setOrderManager(m_orders);
    connect(m_materials, &BOMManager::currentOrderChanged, this, &Ledgerwick::currentOrderChanged);
}

RecordTable *Ledgerwick::makeList(Kind kind)
{
    // Until each manager brings its own rules, its list is a plain table of
    // its records, dates sorting as dates where the record kind says so, and
    // the import makes plain default records.
    static const RecordTable::DateTest dateTests[] = {{}, &Order::isDate, {}, {}, &Bill::isDate, {}};
    static const RecordTable::Factory factories[] = {
        [] { return std::make_shared<Contact>(); }, [] { return std::make_shared<Order>(); },
        [] { return std::make_shared<Item>(); },    [] { return std::make_shared<Material>(); },
        [] { return std::make_shared<Bill>(); },    [] { return std::make_shared<Action>(); },
    };
    auto *list = new RecordTable(dateTests[size_t(kind)], this);
    list->setFactory(factories[size_t(kind)]);
    list->setObjectName(QString::fromLatin1(DatabaseStore::fileOf(kind).name));
    return list;
}

Ledgerwick::~Ledgerwick() = default;

ReportManager *Ledgerwick::makeReportManager(QObject *parent)
{
    auto *reports = new ReportManager(parent);
    reports->setLedgerwick(this);
    reports->setSourceLookup([this](const QString &selectfrom) { return reportSource(selectfrom); });
    reports->setUserDateFormat(m_prefs->dateFormat());
    connect(m_prefs, &PrefsController::dateFormatApplied, reports,
            [reports, prefs = m_prefs] { reports->setUserDateFormat(prefs->dateFormat()); });
    return reports;
}

lwDataSource *Ledgerwick::reportSource(const QString &selectfrom) const
{
    const std::pair<const char *, lwDataSource *> sources[] = {
        {"contacts", m_contacts}, {"itemspurchased", m_materials}, {"orders", m_orders},
        {"items", m_items},       {"actions", m_actions},          {"bills", m_bills},
    };
    for (const auto &[name, source] : sources)
        if (selectfrom == QLatin1String(name))
            return source;
    return nullptr;
}

void Ledgerwick::setPlatform(Platform *platform)
{
    m_platform = platform;
    m_prefs->setPlatform(platform);
    m_manual->setPlatform(platform);
}

void Ledgerwick::startUp()
{
    m_prefs->readDefaults(this);
    m_dateFormatter = std::make_unique<lwDateFormatter>(this);
    m_reports->populateFilter();
    // The invoice templates: missing defaults copied, the user's own never touched.
    if (QString error; !Stationery::installStationary(&error))
        lwLog(QStringLiteral("stationery not installed: ") + error);
    readDatabase();
    lwLog(QStringLiteral("Finished reading database"));
    // Lists and invoices print from the page's top left corner.
    m_printInfo.horizontallyCentered = false;
    m_printInfo.verticallyCentered = false;
}

bool Ledgerwick::applicationShouldTerminate()
{
    m_prefs->OKButton(this);
    for (;;) {
        writeDatabase(this);
        if (m_saveFailures.isEmpty() || !m_platform)
            break;
        const int answer = m_platform->alert(
            {lwTr("Some Files Were Not Saved"),
             m_saveFailures.join(QLatin1Char('\n')) + lwTr("\nIf you quit now, the changes in these files are lost."),
             {lwTr("Try Again"), lwTr("Quit Anyway"), lwTr("Cancel")}});
        if (answer == 2)
            return false;
        if (answer != 0)
            break;
    }
    // In this order: items, actions, bills, contacts (and through them their
    // two other editors), the company editor, orders and the checkout.
    m_items->disconnectWindow(this);
    m_actions->disconnectWindow(this);
    m_bills->disconnectWindow(this);
    m_contacts->disconnectWindow(this);
    m_companyEditor->disconnectWindow(this);
    m_orders->disconnectWindow(this);
    m_checkout->disconnectWindow(this);
    return true;
}

void Ledgerwick::setReadOnly(bool readOnly)
{
    if (m_readOnly == readOnly)
        return;
    m_readOnly = readOnly;
    Q_EMIT readOnlyChanged(readOnly);
}

void Ledgerwick::cancelLockSheet()
{
    setReadOnly(true);
    // A copy that stays read-only leaves the bundle to the next one.
    if (m_lock)
        m_lock->releaseSystemLock();
}

Contact *Ledgerwick::getContactbyId(const QString &id) const
{
    return m_contacts->getContactbyId(id);
}

QString Ledgerwick::getContactNameforId(const QString &id) const
{
    if (id == QLatin1String("0"))
        return lwEmpty();
    const Contact *contact = getContactbyId(id);
    return contact ? contact->getName() : lwEmpty();
}

QString Ledgerwick::getContactIdForName(const QString &name) const
{
    const Contact *contact = m_contacts->getContactbyName(name);
    return contact ? QString::number(contact->getID()) : QStringLiteral("0");
}

int Ledgerwick::getContactIdForOrder(int orderId) const
{
    // Lines picked into the order in the editor ask for it without the id index,
    // which every new record anywhere makes stale. A new order not yet in the
    // list has no contact id either, so the answer is the same.
    const Order *editing = m_orders->currentItem();
    const auto *order = editing && editing->getID() == orderId
                            ? editing
                            : dynamic_cast<const Order *>(getOrderManager()->getItemById(orderId));
    return order ? order->getContactId() : 0;
}

dataObject *Ledgerwick::getProductbyId(int id) const
{
    return getItemManager()->getItemById(id);
}

void Ledgerwick::connectContact(const std::shared_ptr<Contact> &contact, int orderId)
{
    m_orders->connectContactToOrderId(contact, orderId);
    m_orders->updateContactFields();
    m_checkout->updateContactFields();
}

void Ledgerwick::setCurrentOrder(int orderId)
{
    m_materials->setCurrentOrder(orderId);
    m_materials->reloadData(this);
}

void Ledgerwick::requestOrderManagerResign()
{
    getOrderManager()->requestResign(this);
}

void Ledgerwick::requestCheckoutManagerResign()
{
    m_checkout->requestResign(this);
}

void Ledgerwick::editContactForCurrentOrder()
{
    const auto *order = dynamic_cast<const Order *>(m_orders->getItemById(getCurrentOrder()));
    if (const std::shared_ptr<Contact> contact = order ? order->getContact() : nullptr)
        m_contacts->editThisContact(contact.get());
}

// --- routing ---------------------------------------------------------------------

void Ledgerwick::setSelectedTab(const QString &identifier)
{
    if (identifier == m_selectedTab)
        return;
    m_selectedTab = identifier;
    if (identifier == QLatin1String("tabReports"))
        lwLog(QStringLiteral("*** is reports"));
}

lwDataSource *Ledgerwick::frontDataSource() const
{
    if (!m_mainWindowKey)
        return nullptr;
    if (m_selectedTab == QLatin1String("1"))
        return m_contacts;
    if (m_selectedTab == QLatin1String("2"))
        return m_orders;
    if (m_selectedTab == QLatin1String("3"))
        return m_items;
    if (m_selectedTab == QLatin1String("tabActions"))
        return m_actions;
    if (m_selectedTab == QLatin1String("tabAccounts"))
        return m_selectedAccountsTab == QLatin1String("1") ? m_bills : nullptr;
    if (m_selectedTab == QLatin1String("tabReports"))
        return m_reports;
    return nullptr;
}

lwDataSource *Ledgerwick::frontList() const
{
    if (!m_mainWindowKey)
        return nullptr;
    if (m_selectedTab == QLatin1String("tabAccounts")) {
        if (m_selectedAccountsTab == QLatin1String("2"))
            return m_moneyIn;
        if (m_selectedAccountsTab == QLatin1String("3"))
            return m_statement;
        return m_bills;
    }
    return frontDataSource();
}

std::array<lwDataSource *, 5> Ledgerwick::firstResponderOrder() const
{
    return {m_orders, m_contacts, m_actions, m_items, m_bills};
}

void Ledgerwick::deleteMenuItem()
{
    for (lwDataSource *manager : firstResponderOrder())
        if (m_focusedList && manager == m_focusedList) {
            manager->deleteKey(this);
            return;
        }
}

void Ledgerwick::editMenuItem()
{
    for (lwDataSource *manager : firstResponderOrder())
        if (m_focusedList && manager == m_focusedList) {
            manager->edit(this);
            return;
        }
}

void Ledgerwick::newMenuItem()
{
    if (lwDataSource *source = frontDataSource())
        source->create(this);
}

dataObject *Ledgerwick::checkoutOrder() const
{
    return m_focusedList == m_orders ? m_orders->getSelectedItem() : nullptr;
}

void Ledgerwick::checkout()
{
    m_checkout->editRecord(checkoutOrder());
}

void Ledgerwick::openRow(lwDataSource *list)
{
    if (list == m_orders && m_checkout->listOpensCheckout())
        checkout();
    else if (list)
        list->edit(nullptr);
}

QString Ledgerwick::getCurrentContactIdAsString() const
{
    // The contact open in an editor, not the row selected in the list.
    const dataObject *contact = m_contacts->getCurrentItem();
    return contact ? QString::number(contact->getID()) : QStringLiteral("-1");
}

bool Ledgerwick::fileManagerShouldProceedAfterError(const QString &error)
{
    lwLog(QStringLiteral("Error while writing: ") + error);
    return true;
}

QString Ledgerwick::databaseLocation() const
{
    return m_locationOverride.isEmpty() ? DatabasePaths::databaseLocation(m_prefs->getDbLocation())
                                        : DatabasePaths::expandTilde(m_locationOverride);
}

void Ledgerwick::readDatabase(bool takeLock)
{
    m_originalDbLocation = databaseLocation();
    const QDir folder(m_originalDbLocation);
    m_lockLocation = folder.filePath(QStringLiteral("lock.xml"));
    m_lockDateTime.clear();
    m_lockStale = false;
    m_lock = std::make_unique<BundleLock>(m_originalDbLocation);

    // The lock is taken before anything is read, so that no other copy can
    // write between this copy's reading and its first save. What happened is
    // logged after the records, where the lock has always been logged.
    enum class LockOutcome { Written, NotWritten, Found, Looked } outcome = LockOutcome::Looked;
    if (takeLock) {
        QDir().mkpath(m_originalDbLocation);
        if (!m_lock->takeSystemLock()) {
            // A running copy holds the bundle; a lock that cannot be made at
            // all (an unwritable folder) is a failed lock write, and every
            // save will say why it failed.
            outcome = m_lock->heldElsewhere() ? LockOutcome::Found : LockOutcome::NotWritten;
        } else if (m_lock->lockFileExists()) {
            // No running copy holds the bundle: whoever left "lock.xml" has ended.
            outcome = LockOutcome::Found;
            m_lockStale = true;
        } else {
            m_lock->removeLeftoverTemporaries();
            const QString now = CalendarDate::currentDate().toString(QStringLiteral("%Y-%m-%d %H:%M:%S %z"));
            outcome = m_lock->createLockFile(now) ? LockOutcome::Written
                      : m_lock->lockFileExists() ? LockOutcome::Found
                                                 : LockOutcome::NotWritten;
        }
    } else if (m_lock->lockFileExists()) {
        outcome = LockOutcome::Found;
    }

    loadRecords();

    switch (outcome) {
    case LockOutcome::Found:
        m_lockDateTime = m_lock->lockFileDateTime();
        if (!m_lockStale)
            m_lock->releaseSystemLock();
        setReadOnly(true);
        Q_EMIT lockFound(m_lockDateTime);
        return;
    case LockOutcome::Written:
    case LockOutcome::NotWritten:
        // A failed lock write does not make the copy read-only.
        lwLog(outcome == LockOutcome::Written ? QStringLiteral("lock written successfully")
                                              : QStringLiteral("lock not written successfully"));
        break;
    case LockOutcome::Looked:
        break;
    }
    setReadOnly(false);
}

void Ledgerwick::loadRecords()
{
    const QDir folder(m_originalDbLocation);
    m_unreadable.fill(false);
    // The six files are parsed side by side, then added to their managers
    // in the fixed order below on this thread.
    std::array<DatabaseStore::Loaded, 6> loaded = DatabaseStore::readAll(m_originalDbLocation);

    lwLog(QStringLiteral("reading db, starting contacts"));
    for (const auto &file : DatabaseStore::files()) {
        const size_t k = size_t(file.kind);
        DatabaseStore::Loaded &result = loaded[k];
        if (file.kind != Kind::Contacts)
            lwLog(QStringLiteral("reading db, starting ") + QLatin1String(file.name));
        const QString path = folder.filePath(QString::fromLatin1(file.fileName));
        if (result.status == PropertyListReader::Status::Missing && file.kind == Kind::Contacts)
            lwLog(QStringLiteral("can't find contacts at ") + path);
        if (result.status == PropertyListReader::Status::Unreadable) {
            m_unreadable[k] = true;
            lwLog(QStringLiteral("%1 could not be read (%2); it is kept until it can be set aside")
                      .arg(QLatin1String(file.fileName), result.error));
        }
        lwDataSource *collection = m_managers[k];
        collection->clear();
        if (file.kind == Kind::Materials) {
            // Each line enters its collection with no id, so add() hands out
            // the next one, and the stored id then overwrites it: later lines
            // count on from the number of lines loaded.
            for (size_t i = 0; i < result.records.size(); ++i) {
                auto *line = static_cast<Material *>(result.records[i].get());
                collection->add(result.records[i]);
                line->setID(result.storedIds[i]);
                if (!result.hasContact[i])
                    line->setContact(getContactIdForOrder(line->getOrder()));
            }
        } else {
            for (auto &record : result.records)
                collection->add(std::move(record));
        }
        result = DatabaseStore::Loaded();
        collection->filter(nullptr);
        if (file.kind == Kind::Orders)
            m_orders->kickOffCheckForOverdueRepeats();
    }
}

bool Ledgerwick::openAnyway()
{
    if (!m_lockStale || !m_lock || !m_lock->holdsSystemLock())
        return false;
    QFile::remove(m_lockLocation);
    m_lock->removeLeftoverTemporaries();
    const QString now = CalendarDate::currentDate().toString(QStringLiteral("%Y-%m-%d %H:%M:%S %z"));
    const bool written = m_lock->createLockFile(now);
    lwLog(written ? QStringLiteral("lock written successfully") : QStringLiteral("lock not written successfully"));
    m_lockStale = false;
    m_lockDateTime.clear();
    setReadOnly(false);
    return true;
}

bool Ledgerwick::takeLockForWriting()
{
    // A copy that never read (or only looked) takes the system lock now;
    // nothing is ever written without it.
    if (!m_lock || m_lock->lockFilePath() != m_lockLocation)
        m_lock = std::make_unique<BundleLock>(m_originalDbLocation);
    if (m_lock->takeSystemLock())
        return true;
    lwLog(QStringLiteral("database not written: another copy of Ledgerwick holds its lock"));
    m_saveFailures << lwTr("The database is open in another copy of Ledgerwick.");
    return false;
}

bool Ledgerwick::writeDatabase(QObject *which)
{
    m_saveFailures.clear();
    m_keptAside.clear();
    if (m_readOnly)
        return false;
    const bool all = which == this;
    bool anyAsked = all;
    for (lwDataSource *collection : m_managers)
        anyAsked = anyAsked || which == collection;
    if (!anyAsked)
        return false; // a save asked by anything else writes nothing

    if (m_originalDbLocation.isEmpty())
        m_originalDbLocation = databaseLocation();
    QDir().mkpath(DatabasePaths::applicationSupportFolder());
    QDir().mkpath(DatabasePaths::standardBundleFolder());
    QDir().mkpath(m_originalDbLocation);
    if (m_lockLocation.isEmpty())
        m_lockLocation = QDir(m_originalDbLocation).filePath(QStringLiteral("lock.xml"));
    if (!takeLockForWriting())
        return false;

    std::vector<Kind> kinds;
    DatabaseStore::Collections collections{};
    bool replacesAFile = false;
    for (const auto &file : DatabaseStore::files()) {
        collections[size_t(file.kind)] = m_managers[size_t(file.kind)];
        if (all || which == m_managers[size_t(file.kind)]) {
            kinds.push_back(file.kind);
            replacesAFile = replacesAFile ||
                            QFileInfo::exists(QDir(m_originalDbLocation).filePath(QLatin1String(file.fileName)));
        }
    }
    if (!m_backedUp && replacesAFile) {
        QString error;
        if (BundleBackups::create(m_originalDbLocation, &error).isEmpty())
            lwLog(QStringLiteral("backup not made: ") + error);
        m_backedUp = true;
    }
    const std::array<DatabaseStore::WriteOutcome, 6> outcomes =
        DatabaseStore::writeFiles(kinds, collections, m_originalDbLocation, m_unreadable);

    // What went wrong is logged afterwards in the fixed order.
    bool ok = true;
    bool stopped = false;
    for (const auto &file : DatabaseStore::files()) {
        if (stopped || (!all && which != m_managers[size_t(file.kind)]))
            continue;
        const DatabaseStore::WriteOutcome &outcome = outcomes[size_t(file.kind)];
        for (const QString &line : outcome.log)
            lwLog(line);
        if (!outcome.keptAs.isEmpty())
            m_keptAside << QLatin1String(file.fileName) + QStringLiteral(" (kept as ") + outcome.keptAs +
                               QLatin1Char(')');
        if (outcome.result != DatabaseStore::WriteResult::Written)
            m_saveFailures << QLatin1String(file.fileName) + QStringLiteral(": ") + outcome.reason;
        stopped = outcome.result == DatabaseStore::WriteResult::Stopped;
        ok = ok && outcome.result == DatabaseStore::WriteResult::Written;
    }
    tellAboutSave(!all);
    if (stopped)
        return false; // and the lock stays
    if (!all && which != m_actions)
        return ok;
    // Every save that writes the actions releases the lock.
    QFile lock(m_lockLocation);
    if (!lock.remove()) {
        if (lock.exists())
            fileManagerShouldProceedAfterError(lock.errorString());
        lwLog(QStringLiteral("error: lock not removed from database"));
    }
    return ok;
}

void Ledgerwick::tellAboutSave(bool failuresToo)
{
    if (!m_platform)
        return;
    if (!m_keptAside.isEmpty())
        m_platform->alert({lwTr("Damaged File Kept"),
                           lwTr("These files could not be read when the database was opened and were kept aside "
                                "before being replaced: %1")
                               .arg(m_keptAside.join(QStringLiteral(", "))),
                           {lwTr("OK")}});
    if (failuresToo && !m_saveFailures.isEmpty())
        m_platform->alert({lwTr("Not Saved"),
                           m_saveFailures.join(QLatin1Char('\n')) +
                               lwTr("\nThe previous version of the file is unchanged."),
                           {lwTr("OK")}});
}

bool Ledgerwick::restoreBackup(const QString &stamp, QString *error)
{
    if (m_originalDbLocation.isEmpty())
        m_originalDbLocation = databaseLocation();
    if (m_readOnly || !takeLockForWriting()) {
        if (error)
            *error = lwTr("The database is open in another copy of Ledgerwick.");
        return false;
    }
    if (!BundleBackups::restore(m_originalDbLocation, stamp, error))
        return false;
    m_backedUp = true;
    loadRecords();
    return true;
}

void Ledgerwick::exportCSVMenuItem(const lwDataSource *source, const QList<lwDataSource::Column> &columns)
{
    if (!source)
        lwLog(QStringLiteral("lwds is nil"));
    const QString text = source ? source->getDataAsCSVusingTableView(columns) : QString();
    if (!m_platform)
        return;
    const QString path = m_platform->savePanel({lwTr("Export to Spreadsheet"), {QStringLiteral("csv")}});
    if (path.isEmpty())
        return;
    if (!PropertyListWriter::writeFile(path, text.toUtf8()))
        lwLog(QStringLiteral("Unsuccessful exporting data to %1 \nerror:").arg(path));
}

void Ledgerwick::exportHTMLMenuItem(const lwDataSource *source, const QList<lwDataSource::Column> &columns)
{
    if (!source)
        lwLog(QStringLiteral("lwds is nil"));
    const QString table = source ? source->getDataAsHTMLusingTableView(columns) : QString();
    // The body inside the head is how exported pages have always looked.
    const QString page = QStringLiteral("<html><head><title>Data Export from Ledgerwick</title><body>") + table +
                         QStringLiteral("</body></head></html>");
    if (!m_platform)
        return;
    const QString path = m_platform->savePanel({lwTr("Export to HTML"), {QStringLiteral("html")}});
    if (path.isEmpty())
        return;
    QByteArray bytes("\xFF\xFE", 2);
    QStringEncoder utf16(QStringConverter::Utf16LE);
    bytes.append(utf16(page));
    if (!PropertyListWriter::writeFile(path, bytes))
        lwLog(QStringLiteral("Unsuccessful exporting data to %1\n").arg(path));
}

void Ledgerwick::importLedgerwickDatabaseWithWarning()
{
    if (!m_platform)
        return;
    const int answer = m_platform->alert(
        {lwTr("Import Ledgerwick Database"),
         lwTr("If you continue, an earlier version of Ledgerwick (v1.x) will be searched for and data will be "
              "imported. Any existing data will be overwritten. Do you want to continue?"),
         {lwTr("OK"), lwTr("Cancel")}});
    if (answer == 0)
        importLedgerwickDatabase();
}

V1DatabaseImport::Result Ledgerwick::importLedgerwickDatabase(const QString &path)
{
    return V1DatabaseImport(*this, m_v1ImportBackup).importFile(path);
}
