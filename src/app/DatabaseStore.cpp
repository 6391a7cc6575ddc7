#include "app/DatabaseStore.h"

#include "core/CalendarDate.h"

#include "accounts/Action.h"
#include "accounts/Bill.h"
#include "contacts/Contact.h"
#include "core/lwDataSource.h"
#include "core/NumberText.h"
#include "core/AtomicFile.h"
#include "core/PropertyListWriter.h"
#include "orders/Material.h"
#include "orders/Order.h"
#include "products/Item.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <functional>
#include <thread>
#include <typeinfo>
#include <cstring>
#include <unistd.h>

namespace {

using Dict = PropertyListReader::Dict;

// How a key is written, and read back.
enum class Rule {
    Text,       // written when not empty; read when present
    TextAlways, // written always (an unset value is an error); read always, absent = none
    Int,        // written always as "%i"; read as the leading integer when present
    IntAlways,  // written always; read always, absent = 0
    Flag,       // written "YES"/"NO"; read: on when "YES", otherwise untouched
    FlagAlways, // written "YES"/"NO"; read: on when "YES", off otherwise (absent too)
};

template<class R> struct Field
{
    const char *key;
    Rule rule;
    // One of the three readers is set, after the rule.
    const QString &(*text)(const R &);
    int (*integer)(const R &);
    bool (*flag)(const R &);
    void (*set)(R &, const QString &);
};

#define LW_TEXT(R, key, getter, setter)                                                                                \
    Field<R>                                                                                                           \
    {                                                                                                                  \
        key, Rule::Text, [](const R &r) -> const QString & { return r.getter(); }, nullptr, nullptr,                   \
            [](R &r, const QString &v) { r.setter(v); }                                                                \
    }
#define LW_TEXT_ALWAYS(R, key, getter, setter)                                                                         \
    Field<R>                                                                                                           \
    {                                                                                                                  \
        key, Rule::TextAlways, [](const R &r) -> const QString & { return r.getter(); }, nullptr, nullptr,             \
            [](R &r, const QString &v) { r.setter(v); }                                                                \
    }
#define LW_INT(R, key, rule, getter, setter)                                                                           \
    Field<R>                                                                                                           \
    {                                                                                                                  \
        key, rule, nullptr, [](const R &r) -> int { return r.getter(); }, nullptr,                                     \
            [](R &r, const QString &v) { r.setter(NumberText::intValue(v)); }                                          \
    }
#define LW_FLAG(R, key, rule, getter, setter)                                                                          \
    Field<R>                                                                                                           \
    {                                                                                                                  \
        key, rule, nullptr, nullptr, [](const R &r) -> bool { return r.getter(); },                                    \
            [](R &r, const QString &v) { r.setter(v == QLatin1String("YES")); }                                        \
    }

// The key tables, each sorted by key as the platform's writer orders them.
const std::vector<Field<Contact>> &contactFields()
{
    static const std::vector<Field<Contact>> fields{
        LW_TEXT(Contact, "add1", getAdd1, setAdd1),
        LW_TEXT(Contact, "add2", getAdd2, setAdd2),
        LW_TEXT(Contact, "add3", getAdd3, setAdd3),
        LW_TEXT(Contact, "comments", getComments, setComments),
        LW_INT(Contact, "company", Rule::IntAlways, getCompany, setCompany),
        LW_TEXT(Contact, "companyname", getCompanyName, setCompanyName),
        LW_TEXT(Contact, "email", getEmail, setEmail),
        LW_TEXT(Contact, "extension", getExtension, setExtension),
        LW_TEXT(Contact, "fax", getFax, setFax),
        LW_INT(Contact, "id", Rule::Int, getID, setID),
        LW_TEXT(Contact, "jobtitle", getJobTitle, setJobTitle),
        LW_TEXT(Contact, "kind", getKind, setKind),
        LW_TEXT(Contact, "mobile", getMobile, setMobile),
        LW_TEXT(Contact, "name", getName, setName),
        LW_TEXT(Contact, "phone", getPhone, setPhone),
        LW_TEXT(Contact, "postcode", getPostcode, setPostcode),
        LW_TEXT(Contact, "title", getTitle, setTitle),
        LW_TEXT(Contact, "type", getType, setType),
        LW_TEXT(Contact, "website", getWebsite, setWebsite),
    };
    return fields;
}

const std::vector<Field<Order>> &orderFields()
{
    static const std::vector<Field<Order>> fields{
        LW_TEXT(Order, "balance", getBalance, setBalance),
        LW_TEXT(Order, "balancepaid", getBalancePaid, setBalancePaid),
        LW_INT(Order, "contact", Rule::Int, getContactId, setContactId),
        LW_TEXT(Order, "date", getDate, setDate),
        LW_TEXT(Order, "deposit", getDeposit, setDeposit),
        LW_TEXT(Order, "depositpaid", getDepositPaid, setDepositPaid),
        LW_TEXT(Order, "description", getDescription, setDescription),
        LW_INT(Order, "id", Rule::Int, getID, setID),
        LW_FLAG(Order, "includeBOM", Rule::Flag, getIncludeBOM, setIncludeBOM),
        LW_TEXT(Order, "lastrepeatdate", getLastRepeatDate, setLastRepeatDate),
        LW_TEXT(Order, "net", getNet, setNet),
        LW_TEXT(Order, "ordernum", getOrderNum, setOrderNum),
        LW_TEXT(Order, "paymentmethod", getPaymentMethod, setPaymentMethod),
        LW_FLAG(Order, "repeats", Rule::Flag, getRepeats, setRepeats),
        LW_TEXT(Order, "repeatfrequency", getRepeatFrequency, setRepeatFrequency),
        LW_FLAG(Order, "sent", Rule::Flag, getSent, setSent),
        LW_TEXT(Order, "shipping", getShipping, setShipping),
        LW_TEXT(Order, "status", getStatus, setStatus),
        LW_TEXT(Order, "tax", getTax, setTax),
        LW_TEXT(Order, "taxrate", getTaxRate, setTaxRate),
        LW_TEXT(Order, "title", getTitle, setTitle),
        LW_TEXT(Order, "type", getType, setType),
        LW_TEXT(Order, "value", getValue, setValue),
        LW_TEXT(Order, "valuewithtax", getValueWithTax, setValueWithTax),
    };
    return fields;
}

const std::vector<Field<Item>> &itemFields()
{
    // The three flags are read in three different ways on purpose.
    static const std::vector<Field<Item>> fields{
        LW_TEXT(Item, "bought", getBought, setBought),
        LW_TEXT(Item, "buttoncode", getButtonCode, setButtonCode),
        LW_TEXT(Item, "code", getCode, setCode),
        LW_TEXT(Item, "condition", getCondition, setCondition),
        LW_FLAG(Item, "decreaseQty", Rule::Flag, getDecreaseQty, setDecreaseQty),
        LW_TEXT(Item, "description", getDescription, setDescription),
        LW_FLAG(Item, "exportsitemoss", Rule::FlagAlways, getExportSitemoss, setExportSitemoss),
        LW_FLAG(Item, "hidebuttoncode", Rule::FlagAlways, getHideButtonCode, setHideButtonCode),
        LW_INT(Item, "id", Rule::Int, getID, setID),
        LW_TEXT(Item, "item", getItem, setItem),
        LW_TEXT(Item, "optimumqty", getOptimumQty, setOptimumQty),
        LW_TEXT(Item, "price", getPrice, setPrice),
        LW_TEXT(Item, "qty", getQty, setQty),
        LW_TEXT(Item, "quantitymethod", getQuantityMethod, setQuantityMethod),
        LW_TEXT(Item, "shipping", getShipping, setShipping),
        LW_TEXT(Item, "status", getStatus, setStatus),
        LW_TEXT(Item, "supplier", getSupplier, setSupplier),
        LW_TEXT(Item, "taxcode", getTaxCode, setTaxCode),
        LW_TEXT(Item, "variation", getVariation, setVariation),
        LW_TEXT(Item, "warnlevel", getWarnlevel, setWarnlevel),
        LW_TEXT(Item, "websitefolder", getWebsiteFolder, setWebsiteFolder),
    };
    return fields;
}

const std::vector<Field<Material>> &materialFields()
{
    // "id" and "contact" are handled by the loader: the id is applied only
    // after the line has entered its collection, and a missing contact is
    // derived from the line's order.
    static const std::vector<Field<Material>> fields{
        LW_TEXT(Material, "code", getCode, setCode),
        LW_INT(Material, "contact", Rule::Int, getContact, setContact),
        LW_TEXT(Material, "cost", getCost, setCost),
        LW_INT(Material, "id", Rule::Int, getID, setID),
        LW_TEXT(Material, "item", getItem, setItem),
        LW_INT(Material, "order", Rule::IntAlways, getOrder, setOrder),
        LW_INT(Material, "product", Rule::IntAlways, getProduct, setProduct),
        LW_TEXT(Material, "qty", getQty, setQty),
        LW_TEXT(Material, "taxcode", getTaxCode, setTaxCode),
        LW_TEXT(Material, "total", getTotal, setTotal),
        LW_TEXT(Material, "unit", getUnit, setUnit),
    };
    return fields;
}

const std::vector<Field<Bill>> &billFields()
{
    static const std::vector<Field<Bill>> fields{
        LW_TEXT(Bill, "amount", getAmount, setAmount),
        LW_TEXT(Bill, "category", getCategory, setCategory),
        LW_TEXT(Bill, "datepaid", getDatePaid, setDatePaid),
        LW_TEXT(Bill, "details", getDetails, setDetails),
        LW_INT(Bill, "id", Rule::Int, getID, setID),
        LW_TEXT(Bill, "name", getName, setName),
        LW_TEXT(Bill, "net", getNet, setNet),
        LW_TEXT(Bill, "number", getNumber, setNumber),
        LW_TEXT(Bill, "vat", getVat, setVat),
    };
    return fields;
}

const std::vector<Field<Action>> &actionFields()
{
    static const std::vector<Field<Action>> fields{
        LW_FLAG(Action, "alarm", Rule::Flag, isAlarm, setAlarm),
        LW_FLAG(Action, "alarmacknowledged", Rule::Flag, isAlarmAcknowledged, setAlarmAcknowledged),
        LW_FLAG(Action, "complete", Rule::Flag, isComplete, setComplete),
        LW_TEXT_ALWAYS(Action, "details", getDetails, setDetails),
        LW_TEXT_ALWAYS(Action, "enddate", getEndDate, setEndDate),
        LW_TEXT_ALWAYS(Action, "endtime", getEndTime, setEndTime),
        LW_INT(Action, "id", Rule::Int, getID, setID),
        LW_TEXT_ALWAYS(Action, "rate", getRate, setRate),
        LW_TEXT_ALWAYS(Action, "startdate", getStartDate, setStartDate),
        LW_TEXT_ALWAYS(Action, "starttime", getStartTime, setStartTime),
        LW_TEXT_ALWAYS(Action, "title", getTitle, setTitle),
        LW_TEXT_ALWAYS(Action, "totalcharge", getTotalCharge, setTotalCharge),
        LW_TEXT_ALWAYS(Action, "totaltime", getTotalTime, setTotalTime),
        LW_TEXT_ALWAYS(Action, "totaltimeunits", getTotalTimeUnits, setTotalTimeUnits),
    };
    return fields;
}

#undef LW_TEXT
#undef LW_TEXT_ALWAYS
#undef LW_INT
#undef LW_FLAG

// Applies a stored dictionary to a record by its key table. Keys the table
// does not know are ignored; keys the table reads always are applied even
// when absent.
template<class R>
void applyFields(R &record, const Dict &dict, const std::vector<Field<R>> &table, const char *skipA = nullptr,
                 const char *skipB = nullptr)
{
    for (const Field<R> &field : table) {
        if ((skipA && std::strcmp(field.key, skipA) == 0) || (skipB && std::strcmp(field.key, skipB) == 0))
            continue;
        const QString *value = dict.find(field.key);
        switch (field.rule) {
        case Rule::Text:
        case Rule::Int:
            if (value)
                field.set(record, *value);
            break;
        case Rule::Flag:
            if (value && *value == QLatin1String("YES"))
                field.set(record, *value);
            break;
        case Rule::TextAlways:
            field.set(record, value ? *value : QString());
            break;
        case Rule::IntAlways:
        case Rule::FlagAlways:
            field.set(record, value ? *value : QString());
            break;
        }
    }
}

template<class R>
bool writeRecords(PropertyListWriter &writer, const lwDataSource &collection, qsizetype from, qsizetype to,
                  const std::vector<Field<R>> &table, QString *error)
{
    // The mark-up opening each field, made once per table.
    static const std::vector<PropertyListWriter::Key> keys = [&] {
        std::vector<PropertyListWriter::Key> made;
        for (const Field<R> &field : table)
            made.emplace_back(field.key);
        return made;
    }();
    const auto &records = collection.records();
    for (qsizetype i = std::max<qsizetype>(from, 0); i < std::min<qsizetype>(to, qsizetype(records.size())); ++i) {
        const dataObject *object = records[size_t(i)].get();
        // The exact type is the common case and cheaper to confirm.
        const auto *typed =
            object && typeid(*object) == typeid(R) ? static_cast<const R *>(object) : dynamic_cast<const R *>(object);
        if (!typed)
            continue; // not a record of this file's kind
        const R &record = *typed;
        writer.beginRecord();
        for (size_t k = 0; k < table.size(); ++k) {
            const Field<R> &field = table[k];
            const PropertyListWriter::Key &key = keys[k];
            switch (field.rule) {
            case Rule::Text: {
                const QString &value = field.text(record);
                if (!value.isEmpty())
                    writer.field(key, value);
                break;
            }
            case Rule::TextAlways: {
                const QString &value = field.text(record);
                if (value.isNull()) {
                    if (error)
                        *error = QStringLiteral("record %1 has no value for \"%2\"")
                                     .arg(record.getID())
                                     .arg(QLatin1String(field.key));
                    return false;
                }
                writer.field(key, value);
                break;
            }
            case Rule::Int:
            case Rule::IntAlways:
                writer.field(key, field.integer(record));
                break;
            case Rule::Flag:
            case Rule::FlagAlways:
                writer.flag(key, field.flag(record));
                break;
            }
        }
        writer.endRecord();
    }
    return true;
}

template<class R>
DatabaseStore::Loaded readRecords(const QString *path, const QByteArray *data, const char *key,
                                  const std::vector<Field<R>> &table)
{
    DatabaseStore::Loaded loaded;
    auto onRecord = [&](const Dict &dict) {
        auto record = std::make_shared<R>();
        applyFields(*record, dict, table);
        loaded.records.push_back(std::move(record));
    };
    loaded.status = path ? PropertyListReader::readCollection(*path, key, onRecord)
                         : PropertyListReader::readCollection(*data, key, onRecord);
    return loaded;
}

DatabaseStore::Loaded readMaterials(const QString *path, const QByteArray *data)
{
    DatabaseStore::Loaded loaded;
    auto onRecord = [&](const Dict &dict) {
        auto line = std::make_shared<Material>();
        applyFields(*line, dict, materialFields(), "id", "contact");
        const QString *id = dict.find("id");
        const QString *contact = dict.find("contact");
        if (contact)
            line->setContact(NumberText::intValue(*contact));
        loaded.storedIds.push_back(id ? NumberText::intValue(*id) : 0);
        loaded.hasContact.push_back(contact != nullptr);
        loaded.records.push_back(std::move(line));
    };
    loaded.status = path ? PropertyListReader::readCollection(*path, "materials", onRecord)
                         : PropertyListReader::readCollection(*data, "materials", onRecord);
    return loaded;
}

DatabaseStore::Loaded readKind(DatabaseStore::Kind kind, const QString *path, const QByteArray *data)
{
    DatabaseStore::Loaded loaded;
    const char *key = DatabaseStore::fileOf(kind).collectionKey;
    switch (kind) {
    case DatabaseStore::Kind::Contacts:
        loaded = readRecords(path, data, key, contactFields());
        break;
    case DatabaseStore::Kind::Orders:
        loaded = readRecords(path, data, key, orderFields());
        break;
    case DatabaseStore::Kind::Items:
        loaded = readRecords(path, data, key, itemFields());
        break;
    case DatabaseStore::Kind::Materials:
        loaded = readMaterials(path, data);
        break;
    case DatabaseStore::Kind::Bills:
        loaded = readRecords(path, data, key, billFields());
        break;
    case DatabaseStore::Kind::Actions:
        loaded = readRecords(path, data, key, actionFields());
        break;
    }
    if (loaded.status != PropertyListReader::Status::Ok) {
        // A damaged file reads as having no records.
        loaded.error = PropertyListReader::lastError();
        loaded.records.clear();
        loaded.storedIds.clear();
        loaded.hasContact.clear();
    }
    return loaded;
}

} // namespace

const std::array<DatabaseStore::FileSpec, 6> &DatabaseStore::files()
{
    static const std::array<FileSpec, 6> records{{
        {Kind::Contacts, "contacts.xml", "contacts", "contacts"},
        {Kind::Orders, "orders.xml", "orders", "orders"},
        {Kind::Items, "items.xml", "products", "items"},
        {Kind::Materials, "itemsordered.xml", "materials", "materials"},
        {Kind::Bills, "bills.xml", "bills", "bills"},
        {Kind::Actions, "actions.xml", "actions", "actions"},
    }};
    return records;
}

const DatabaseStore::FileSpec &DatabaseStore::fileOf(Kind kind)
{
    return files()[size_t(kind)];
}

DatabaseStore::Loaded DatabaseStore::read(Kind kind, const QString &folder)
{
    const QString path = QDir(folder).filePath(QString::fromLatin1(fileOf(kind).fileName));
    return readKind(kind, &path, nullptr);
}

DatabaseStore::Loaded DatabaseStore::readData(Kind kind, const QByteArray &data)
{
    return readKind(kind, nullptr, &data);
}

namespace {

// Roughly the size of a record of each kind, to avoid growing the buffer.
qsizetype expectedBytes(DatabaseStore::Kind kind, qsizetype records)
{
    static const qsizetype bytesPerRecord[] = {700, 1100, 900, 460, 450, 800};
    return std::max<qsizetype>(records, 0) * bytesPerRecord[size_t(kind)];
}

} // namespace

bool DatabaseStore::serialize(Kind kind, const lwDataSource &collection, QByteArray &out, QString *error)
{
    PropertyListWriter writer(fileOf(kind).collectionKey, expectedBytes(kind, collection.getCount()));
    if (!writeRecords(kind, collection, 0, collection.getCount(), writer, error))
        return false;
    writer.finish();
    out = writer.data();
    return true;
}

bool DatabaseStore::serializeRecords(Kind kind, const lwDataSource &collection, qsizetype from, qsizetype to,
                                     QByteArray &out, QString *error)
{
    PropertyListWriter writer(expectedBytes(kind, to - from));
    if (!writeRecords(kind, collection, from, to, writer, error))
        return false;
    writer.finishRecords();
    out = writer.data();
    return true;
}

bool DatabaseStore::writeRecords(Kind kind, const lwDataSource &collection, qsizetype from, qsizetype to,
                                 PropertyListWriter &writer, QString *error)
{
    bool ok = true;
    switch (kind) {
    case Kind::Contacts:
        ok = ::writeRecords(writer, collection, from, to, contactFields(), error);
        break;
    case Kind::Orders:
        ok = ::writeRecords(writer, collection, from, to, orderFields(), error);
        break;
    case Kind::Items:
        ok = ::writeRecords(writer, collection, from, to, itemFields(), error);
        break;
    case Kind::Materials:
        ok = ::writeRecords(writer, collection, from, to, materialFields(), error);
        break;
    case Kind::Bills:
        ok = ::writeRecords(writer, collection, from, to, billFields(), error);
        break;
    case Kind::Actions:
        ok = ::writeRecords(writer, collection, from, to, actionFields(), error);
        break;
    }
    return ok;
}

namespace {

// Runs the tasks in order on this thread (worker 0) and, when there is a
// second core, one more (worker 1).
void onBothCores(size_t tasks, const std::function<void(size_t task, int worker)> &task)
{
    std::atomic<size_t> next{0};
    auto work = [&](int worker) {
        for (size_t i = next++; i < tasks; i = next++)
            task(i, worker);
    };
    std::vector<std::thread> threads;
    if (tasks > 1 && std::thread::hardware_concurrency() > 1)
        threads.emplace_back(work, 1);
    work(0);
    for (std::thread &thread : threads)
        thread.join();
}

// Keeps an unreadable file aside before it is first replaced (a hard link,
// or a copy where links are impossible): a file that could not be read is
// never replaced by what little was loaded from it. Answers the name of the
// copy; the mark stays when it could not be made.
QString keepUnreadableAside(bool &unreadable, const QString &path)
{
    if (!unreadable)
        return {};
    if (!QFileInfo::exists(path)) {
        unreadable = false;
        return {};
    }
    const QString stamp = CalendarDate::currentDate().toString(QStringLiteral("%Y%m%d-%H%M%S"));
    QString aside = path + QStringLiteral(".unreadable-") + stamp;
    for (int n = 2; QFileInfo::exists(aside); ++n)
        aside = path + QStringLiteral(".unreadable-") + stamp + QLatin1Char('-') + QString::number(n);
    if (::link(QFile::encodeName(path).constData(), QFile::encodeName(aside).constData()) != 0 &&
        !QFile::copy(path, aside))
        return {};
    unreadable = false;
    return QFileInfo(aside).fileName();
}

// One file being written: its stretches of records are built on both cores
// and appended in order, so memory holds only the stretches in hand.
struct Target
{
    DatabaseStore::Kind kind;
    const lwDataSource *collection;
    QString path;
    std::unique_ptr<AtomicFile> file;
    DatabaseStore::WriteOutcome outcome;
    qsizetype nextToWrite = 0; // the stretch whose turn it is
    qsizetype replaced = 0;
    QString stop; // why a record stopped the file
    bool writeFailed = false;
};

struct Stretch
{
    Target *target;
    qsizetype index, from, to;
};

// Records per stretch: a few megabytes of text.
constexpr qsizetype kStretchRecords = 8000;

void fail(Target &target, DatabaseStore::WriteResult result, const QString &reason)
{
    const auto &file = DatabaseStore::fileOf(target.kind);
    target.outcome.log << QLatin1String(file.name) + QStringLiteral(" not written successfully")
                       << QStringLiteral("error: ") + reason;
    target.outcome.result = result;
    target.outcome.reason = reason;
    if (target.file)
        target.file->cancel();
}

// Keeps a damaged file aside and opens the new one; false when the file
// cannot be written at all.
bool begin(Target &target, bool &unreadable)
{
    const auto &file = DatabaseStore::fileOf(target.kind);
    target.outcome.keptAs = keepUnreadableAside(unreadable, target.path);
    if (!target.outcome.keptAs.isEmpty())
        target.outcome.log << QStringLiteral("%1 could not be read at start; kept as %2")
                                  .arg(QLatin1String(file.fileName), target.outcome.keptAs);
    if (unreadable) {
        fail(target, DatabaseStore::WriteResult::Failed, QStringLiteral("the unreadable file could not be set aside"));
        return false;
    }
    target.file = std::make_unique<AtomicFile>(target.path);
    const QByteArray header = PropertyListWriter::header(file.collectionKey);
    if (!target.file->open() || !target.file->write(header.constData(), header.size())) {
        fail(target, DatabaseStore::WriteResult::Failed, target.file->errorString());
        return false;
    }
    return true;
}

void finish(Target &target)
{
    const auto &file = DatabaseStore::fileOf(target.kind);
    if (!target.stop.isEmpty())
        return fail(target, DatabaseStore::WriteResult::Stopped, target.stop);
    const QByteArray footer = PropertyListWriter::footer();
    if (target.writeFailed || !target.file->write(footer.constData(), footer.size()) || !target.file->commit())
        return fail(target, DatabaseStore::WriteResult::Failed, target.file->errorString());
    if (target.replaced > 0)
        target.outcome.log << QStringLiteral("%1: %2 characters XML cannot hold were written as U+FFFD")
                                  .arg(QLatin1String(file.fileName))
                                  .arg(target.replaced);
    target.outcome.result = DatabaseStore::WriteResult::Written;
}

} // namespace

std::array<DatabaseStore::Loaded, 6> DatabaseStore::readAll(const QString &folderPath)
{
    const QDir folder(folderPath);
    std::array<Loaded, 6> loaded;
    std::vector<Kind> queue;
    for (const auto &file : files())
        queue.push_back(file.kind);
    // The largest first, so that the two readers finish together.
    std::stable_sort(queue.begin(), queue.end(), [&](Kind a, Kind b) {
        return QFileInfo(folder.filePath(QString::fromLatin1(fileOf(a).fileName))).size() >
               QFileInfo(folder.filePath(QString::fromLatin1(fileOf(b).fileName))).size();
    });
    onBothCores(queue.size(), [&](size_t i, int) { loaded[size_t(queue[i])] = read(queue[i], folderPath); });
    return loaded;
}

std::array<DatabaseStore::WriteOutcome, 6> DatabaseStore::writeFiles(const std::vector<Kind> &asked,
                                                                     const Collections &collections,
                                                                     const QString &folder,
                                                                     std::array<bool, 6> &unreadable)
{
    std::vector<Target> targets(asked.size());
    std::vector<Stretch> stretches;
    for (size_t t = 0; t < asked.size(); ++t) {
        Target &target = targets[t];
        const size_t k = size_t(asked[t]);
        target.kind = asked[t];
        target.collection = collections[k];
        target.path = QDir(folder).filePath(QString::fromLatin1(fileOf(target.kind).fileName));
        if (!begin(target, unreadable[k]))
            continue;
        const qsizetype count = target.collection->getCount();
        for (qsizetype from = 0, index = 0; from < count; from += kStretchRecords, ++index)
            stretches.push_back({&target, index, from, std::min(count, from + kStretchRecords)});
    }

    // Both cores build stretches in the order given; each is appended once
    // the one before it in its file is.
    std::mutex mutex;
    std::condition_variable turn;
    // One buffer per core, used again for every stretch.
    std::array<PropertyListWriter, 2> writers{PropertyListWriter(kStretchRecords * 1024),
                                              PropertyListWriter(kStretchRecords * 1024)};
    onBothCores(stretches.size(), [&](size_t i, int worker) {
        const Stretch &stretch = stretches[i];
        Target &target = *stretch.target;
        PropertyListWriter &writer = writers[size_t(worker)];
        writer.restart();
        QString error;
        const bool built = writeRecords(target.kind, *target.collection, stretch.from, stretch.to, writer, &error);
        std::unique_lock<std::mutex> lock(mutex);
        turn.wait(lock, [&] { return target.nextToWrite == stretch.index; });
        if (!built && target.stop.isEmpty())
            target.stop = error; // a record that cannot be written stops its file here
        if (target.stop.isEmpty() && !target.writeFailed) {
            target.writeFailed = !target.file->write(writer.bytes(), writer.size());
            target.replaced += writer.replacedCharacters();
        }
        ++target.nextToWrite;
        turn.notify_all();
    });
    onBothCores(targets.size(), [&](size_t t, int) {
        if (targets[t].file && targets[t].outcome.reason.isEmpty())
            finish(targets[t]);
    });

    std::array<WriteOutcome, 6> outcomes;
    for (Target &target : targets)
        outcomes[size_t(target.kind)] = std::move(target.outcome);
    return outcomes;
}
