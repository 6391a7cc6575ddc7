#include "core/Ledgerwick.h"

#include "accounts/Action.h"
#include "accounts/Bill.h"
#include "contacts/Contact.h"
#include "core/CalendarDate.h"
#include "core/DatabasePaths.h"
#include "contacts/ContactManager.h"
#include "core/Log.h"
#include "products/ItemManager.h"
#include "products/Picker.h"
#include "products/SupplierDataSource.h"
#include "core/lwDataSource.h"
#include "core/lwDateFormatter.h"
#include "core/NumberText.h"
#include "core/Platform.h"
#include "core/PropertyListWriter.h"
#include "core/RecordTable.h"
#include "orders/Material.h"
#include "orders/Order.h"
#include "prefs/Manual.h"
#include "prefs/PrefsController.h"
#include "products/Item.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringEncoder>

#include <algorithm>
#include <functional>
#include <atomic>
#include <thread>

using Kind = DatabaseStore::Kind;

Ledgerwick::Ledgerwick(Platform *platform, QObject *parent)
    : QObject(parent), m_platform(platform), m_prefs(new PrefsController(platform, this)),
      m_manual(new Manual(platform, this))
{
    // Until each manager brings its own rules, its list is a plain table of
    // its records, dates sorting as dates where the record kind says so.
    const RecordTable::DateTest dateTests[] = {{}, &Order::isDate, {}, {}, &Bill::isDate, {}};
    // The import makes plain default records until a manager brings its own.
    const RecordTable::Factory factories[] = {
        [] { return std::make_shared<Contact>(); }, [] { return std::make_shared<Order>(); },
        [] { return std::make_shared<Item>(); },    [] { return std::make_shared<Material>(); },
        [] { return std::make_shared<Bill>(); },    [] { return std::make_shared<Action>(); },
    };
    for (const auto &file : DatabaseStore::files()) {
        auto *collection = new RecordTable(dateTests[size_t(file.kind)], this);
        collection->setFactory(factories[size_t(file.kind)]);
        collection->setObjectName(QString::fromLatin1(file.name));
        collection->setLedgerwick(this);
        m_managers[size_t(file.kind)] = collection;
    }

    // The managers whose rules have landed take the place of their plain lists.
    auto *contacts = new ContactManager;
    contacts->setObjectName(QStringLiteral("contacts"));
    setManager(Kind::Contacts, contacts);
    auto *items = new ItemManager;
    items->setObjectName(QStringLiteral("items"));
    setManager(Kind::Items, items);

    m_supplierDataSource = new SupplierDataSource(this);
    m_supplierDataSource->setLedgerwick(this);
    m_supplierDataSource->setContactManager(contacts);
    m_picker = new Picker(this);
    m_picker->setLedgerwick(this);
    items->setSupplierSource(m_supplierDataSource);
    items->setPickerOpener([picker = m_picker](lwDataSource *source, const QString &field1, const QString &field2,
                                               const QString &type, std::function<void(dataObject *)> done) {
        picker->beginfor(std::move(done), source, field1, field2, type);
    });
}

Ledgerwick::~Ledgerwick() = default;

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
    readDatabase();
    lwLog(QStringLiteral("Finished reading database"));
}

void Ledgerwick::applicationShouldTerminate()
{
    m_prefs->OKButton(this);
    writeDatabase(this);
    if (auto *items = dynamic_cast<ItemManager *>(getItemManager()))
        items->disconnectWindow(this);
}

void Ledgerwick::setManager(Kind kind, lwDataSource *manager)
{
    if (!manager || m_managers[size_t(kind)] == manager)
        return;
    delete m_managers[size_t(kind)];
    manager->setParent(this);
    manager->setLedgerwick(this);
    m_managers[size_t(kind)] = manager;
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
}

Contact *Ledgerwick::getContactbyId(const QString &id) const
{
    return dynamic_cast<Contact *>(getContactManager()->getItemById(NumberText::intValue(id)));
}

QString Ledgerwick::getContactNameforId(const QString &id) const
{
    if (id == QLatin1String("0"))
        return QString(QLatin1String(""));
    const Contact *contact = getContactbyId(id);
    return contact ? contact->getName() : QString(QLatin1String(""));
}

QString Ledgerwick::getContactIdForName(const QString &name) const
{
    for (const auto &record : getContactManager()->records()) {
        const auto *contact = dynamic_cast<const Contact *>(record.get());
        if (contact && contact->getName() == name)
            return QString::number(contact->getID());
    }
    return QStringLiteral("0");
}

int Ledgerwick::getContactIdForOrder(int orderId) const
{
    const auto *order = dynamic_cast<const Order *>(getOrderManager()->getItemById(orderId));
    return order ? order->getContactId() : 0;
}

dataObject *Ledgerwick::getProductbyId(int id) const
{
    return getItemManager()->getItemById(id);
}

void Ledgerwick::connectContact(const std::shared_ptr<Contact> &contact, int orderId)
{
    auto *order = dynamic_cast<Order *>(getOrderManager()->getItemById(orderId));
    if (!order || !contact)
        return;
    order->setContact(contact);
    order->setContactId(contact->getID());
}

void Ledgerwick::setCurrentOrder(int orderId)
{
    m_currentOrder = orderId;
    Q_EMIT currentOrderChanged(orderId);
}

void Ledgerwick::requestOrderManagerResign()
{
    getOrderManager()->requestResign(this);
}

void Ledgerwick::requestCheckoutManagerResign()
{
    if (m_checkoutManager)
        m_checkoutManager->requestResign(this);
}

QString Ledgerwick::getCurrentContactIdAsString() const
{
    const dataObject *contact = getContactManager()->getSelectedItem();
    return contact ? QString::number(contact->getID()) : QStringLiteral("-1");
}

bool Ledgerwick::fileManagerShouldProceedAfterError(const QString &error)
{
    lwLog(QStringLiteral("Error while writing: ") + error);
    return true;
}

void Ledgerwick::readDatabase(bool takeLock)
{
    m_originalDbLocation = m_locationOverride.isEmpty() ? DatabasePaths::databaseLocation(m_prefs->getDbLocation())
                                                        : DatabasePaths::expandTilde(m_locationOverride);
    const QDir folder(m_originalDbLocation);
    m_unreadable.fill(false);
    m_lockDateTime.clear();

    // The six files are parsed side by side (largest first), then added to
    // their managers in the fixed order below on this thread.
    std::array<DatabaseStore::Loaded, 6> loaded;
    std::vector<Kind> queue;
    for (const auto &file : DatabaseStore::files())
        queue.push_back(file.kind);
    std::stable_sort(queue.begin(), queue.end(), [&](Kind a, Kind b) {
        return QFileInfo(folder.filePath(QString::fromLatin1(DatabaseStore::fileOf(a).fileName))).size() >
               QFileInfo(folder.filePath(QString::fromLatin1(DatabaseStore::fileOf(b).fileName))).size();
    });
    std::atomic<size_t> next{0};
    auto work = [&] {
        for (size_t i = next++; i < queue.size(); i = next++)
            loaded[size_t(queue[i])] = DatabaseStore::read(queue[i], m_originalDbLocation);
    };
    const unsigned workers = std::clamp(std::thread::hardware_concurrency(), 1u, 2u);
    std::vector<std::thread> threads;
    for (unsigned t = 1; t < workers; ++t)
        threads.emplace_back(work);
    work();
    for (std::thread &thread : threads)
        thread.join();

    lwLog(QStringLiteral("reading db, starting contacts"));
    m_lockLocation = folder.filePath(QStringLiteral("lock.xml"));
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
    }

    // The lock.
    if (QFile::exists(m_lockLocation)) {
        QFile lock(m_lockLocation);
        std::vector<std::pair<QString, QString>> entries;
        if (lock.open(QIODevice::ReadOnly) &&
            PropertyListReader::readDictionary(lock.readAll(), entries) == PropertyListReader::Status::Ok) {
            for (const auto &[key, value] : entries)
                if (key == QLatin1String("datetime"))
                    m_lockDateTime = value;
        }
        setReadOnly(true);
        Q_EMIT lockFound(m_lockDateTime);
        return;
    }
    if (!takeLock) {
        setReadOnly(false);
        return;
    }
    const QString now = CalendarDate::currentDate().toString(QStringLiteral("%Y-%m-%d %H:%M:%S %z"));
    const bool written = QDir().mkpath(m_originalDbLocation) &&
                         PropertyListWriter::writeFile(
                             m_lockLocation, PropertyListWriter::dictionary({{QStringLiteral("datetime"), now}}));
    lwLog(written ? QStringLiteral("lock written successfully") : QStringLiteral("lock not written successfully"));
    setReadOnly(false);
}

QString Ledgerwick::keepUnreadableAside(Kind kind, const QString &path)
{
    // A file that could not be read is never replaced by what little was
    // loaded from it: it is copied aside first, once.
    if (!m_unreadable[size_t(kind)])
        return {};
    if (!QFile::exists(path)) {
        m_unreadable[size_t(kind)] = false;
        return {};
    }
    const QString stamp = CalendarDate::currentDate().toString(QStringLiteral("%Y%m%d-%H%M%S"));
    QString aside = path + QStringLiteral(".unreadable-") + stamp;
    for (int n = 2; QFile::exists(aside); ++n)
        aside = path + QStringLiteral(".unreadable-") + stamp + QLatin1Char('-') + QString::number(n);
    if (!QFile::copy(path, aside))
        return {};
    m_unreadable[size_t(kind)] = false;
    return QStringLiteral("%1 could not be read at start; kept as %2")
        .arg(QFileInfo(path).fileName(), QFileInfo(aside).fileName());
}

Ledgerwick::WriteOutcome Ledgerwick::writeFile(Kind kind, const std::vector<const Chunk *> &chunks)
{
    WriteOutcome outcome;
    const auto &file = DatabaseStore::fileOf(kind);
    const QString path = QDir(m_originalDbLocation).filePath(QString::fromLatin1(file.fileName));
    const QString failure = QLatin1String(file.name) + QStringLiteral(" not written successfully");
    for (const Chunk *chunk : chunks) {
        if (!chunk->built) {
            // A record that cannot be written stops the save here.
            outcome.log << failure << QStringLiteral("error: ") + chunk->error;
            outcome.result = WriteResult::Stopped;
            return outcome;
        }
    }
    const QString kept = keepUnreadableAside(kind, path);
    if (!kept.isEmpty())
        outcome.log << kept;
    if (m_unreadable[size_t(kind)]) {
        outcome.log << failure << QStringLiteral("error: the unreadable file could not be set aside");
        outcome.result = WriteResult::Failed;
        return outcome;
    }
    QList<QByteArray> parts;
    parts << PropertyListWriter::header(file.collectionKey);
    for (const Chunk *chunk : chunks)
        parts << chunk->bytes;
    parts << PropertyListWriter::footer();
    QString error;
    if (!PropertyListWriter::writeFile(path, parts, &error)) {
        outcome.log << failure << QStringLiteral("error: ") + error;
        outcome.result = WriteResult::Failed;
        return outcome;
    }
    outcome.result = WriteResult::Written;
    return outcome;
}

bool Ledgerwick::writeDatabase(QObject *which)
{
    if (m_readOnly)
        return false;
    const bool all = which == this;
    bool anyAsked = all;
    for (lwDataSource *collection : m_managers)
        anyAsked = anyAsked || which == collection;
    if (!anyAsked)
        return false; // a save asked by anything else writes nothing

    if (m_originalDbLocation.isEmpty())
        m_originalDbLocation = m_locationOverride.isEmpty() ? DatabasePaths::databaseLocation(m_prefs->getDbLocation())
                                                            : DatabasePaths::expandTilde(m_locationOverride);
    QDir().mkpath(DatabasePaths::applicationSupportFolder());
    QDir().mkpath(DatabasePaths::standardBundleFolder());
    QDir().mkpath(m_originalDbLocation);
    if (m_lockLocation.isEmpty())
        m_lockLocation = QDir(m_originalDbLocation).filePath(QStringLiteral("lock.xml"));

    // The files are built in stretches on both cores, then written side by
    // side; what went wrong is logged afterwards in the fixed order.
    constexpr qsizetype kChunkRecords = 40000;
    std::vector<Kind> kinds;
    std::vector<Chunk> chunks;
    for (const auto &file : DatabaseStore::files()) {
        if (!all && which != m_managers[size_t(file.kind)])
            continue;
        kinds.push_back(file.kind);
        const qsizetype count = m_managers[size_t(file.kind)]->getCount();
        qsizetype from = 0;
        do {
            chunks.push_back({file.kind, from, std::min(count, from + kChunkRecords), {}, false, {}});
            from += kChunkRecords;
        } while (from < count);
    }
    auto onBothCores = [](size_t tasks, const std::function<void(size_t)> &task) {
        std::atomic<size_t> next{0};
        auto work = [&] {
            for (size_t i = next++; i < tasks; i = next++)
                task(i);
        };
        std::vector<std::thread> threads;
        if (tasks > 1 && std::thread::hardware_concurrency() > 1)
            threads.emplace_back(work);
        work();
        for (std::thread &thread : threads)
            thread.join();
    };
    onBothCores(chunks.size(), [&](size_t i) {
        Chunk &chunk = chunks[i];
        chunk.built = DatabaseStore::serializeRecords(chunk.kind, *m_managers[size_t(chunk.kind)], chunk.from,
                                                      chunk.to, chunk.bytes, &chunk.error);
    });
    // The largest files first, so that the two writers finish together.
    std::stable_sort(kinds.begin(), kinds.end(), [&](Kind a, Kind b) {
        return m_managers[size_t(a)]->getCount() > m_managers[size_t(b)]->getCount();
    });
    std::array<WriteOutcome, 6> outcomes;
    onBothCores(kinds.size(), [&](size_t i) {
        std::vector<const Chunk *> parts;
        for (const Chunk &chunk : chunks)
            if (chunk.kind == kinds[i])
                parts.push_back(&chunk);
        outcomes[size_t(kinds[i])] = writeFile(kinds[i], parts);
    });

    bool ok = true;
    for (const auto &file : DatabaseStore::files()) {
        if (!all && which != m_managers[size_t(file.kind)])
            continue;
        const WriteOutcome &outcome = outcomes[size_t(file.kind)];
        for (const QString &line : outcome.log)
            lwLog(line);
        if (outcome.result == WriteResult::Stopped)
            return false; // and the lock stays
        ok = ok && outcome.result == WriteResult::Written;
    }
    if (!all && which != getActionManager())
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
