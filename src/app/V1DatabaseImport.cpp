#include "app/V1DatabaseImport.h"

#include "accounts/Action.h"
#include "accounts/Bill.h"
#include "app/DatabaseStore.h"
#include "app/Ledgerwick.h"
#include "contacts/Contact.h"
#include "core/CalendarDate.h"
#include "core/DatabasePaths.h"
#include "core/Log.h"
#include "core/NumberText.h"
#include "core/Parser.h"
#include "core/Platform.h"
#include "orders/Material.h"
#include "orders/Order.h"
#include "products/Item.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <numeric>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kOrder = 4;

std::shared_ptr<dataObject> freshRecord(int kind)
{
    switch (kind) {
    case 0:
        return std::make_shared<Item>();
    case 1:
        return std::make_shared<Material>();
    case 2:
        return std::make_shared<Action>();
    case 3:
        return std::make_shared<Contact>();
    case kOrder:
        return std::make_shared<Order>();
    default:
        return std::make_shared<Bill>();
    }
}

int kindOfParent(const QString &parent)
{
    for (int kind = 0; kind < V1DatabaseImport::kKinds; ++kind)
        if (parent == QLatin1String(V1DatabaseImport::kParents[size_t(kind)]))
            return kind;
    return -1;
}

// Files and sub-folders; symbolic links are left behind so a loop cannot recurse.
void copyFolder(const QString &from, const QString &to)
{
    QDir().mkpath(to);
    const QDir source(from);
    const QFileInfoList entries =
        source.entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden | QDir::NoSymLinks);
    for (const QFileInfo &entry : entries) {
        const QString target = QDir(to).filePath(entry.fileName());
        if (entry.isDir())
            copyFolder(entry.filePath(), target);
        else
            QFile::copy(entry.filePath(), target);
    }
}

} // namespace

V1DatabaseImport::V1DatabaseImport(Ledgerwick &ledgerwick, Backup backup)
    : m_ledgerwick(ledgerwick), m_backup(std::move(backup))
{
}

QString V1DatabaseImport::bundleOf(const Ledgerwick &ledgerwick)
{
    return ledgerwick.originalDbLocation().isEmpty() ? ledgerwick.databaseLocation() : ledgerwick.originalDbLocation();
}

V1DatabaseImport::Result V1DatabaseImport::importFile(const QString &path)
{
    Result result;
    Platform *platform = m_ledgerwick.platform();
    const QString file = DatabasePaths::expandTilde(path);
    if (!QFileInfo(file).isFile()) {
        if (platform)
            platform->inform(lwTr("Import Ledgerwick Database"), lwTr("An Ledgerwick database hasn't been found."));
        return result;
    }

    // Everything is emptied next: without a backup nothing is touched.
    QString error = u"no backup is set up"_s;
    const QString stamp = m_backup ? m_backup(&error) : QString();
    if (stamp.isEmpty()) {
        lwLog(u"version-1 import refused: no backup (%1)"_s.arg(error));
        if (platform)
            platform->inform(
                lwTr("Import Ledgerwick Database"),
                lwTr("The current database could not be backed up (%1), so nothing was imported.").arg(error));
        return result;
    }
    result.backupFolder = QDir(bundleOf(m_ledgerwick)).filePath(u"Backups/"_s + stamp);
    result.imported = true;

    lwDataSource *managers[] = {m_ledgerwick.getItemManager(),   m_ledgerwick.getBOMManager(),
                                m_ledgerwick.getActionManager(), m_ledgerwick.getContactManager(),
                                m_ledgerwick.getOrderManager(),  m_ledgerwick.getBillManager(),
                                m_ledgerwick.getReportManager()};
    for (lwDataSource *manager : managers)
        manager->clear();

    walk(file, result);

    // The materials are shown per order and are not refreshed here.
    for (lwDataSource *manager : {managers[0], managers[2], managers[3], managers[4], managers[5]})
        manager->filter(nullptr);
    copyAttachments();

    QString summary = lwTr("Imported %1 products, %2 material lines, %3 actions, %4 contacts, %5 orders and %6 bills.")
                          .arg(result.counts[0])
                          .arg(result.counts[1])
                          .arg(result.counts[2])
                          .arg(result.counts[3])
                          .arg(result.counts[4])
                          .arg(result.counts[5]);
    if (result.ending != Ending::Complete)
        summary += u" "_s + lwTr("The file ended early (%1): only the records before that point were imported.")
                                .arg(endingText(result.ending));
    summary += u" "_s + lwTr("The previous database was backed up to %1. Nothing is saved until the next save.")
                            .arg(result.backupFolder);
    if (platform)
        platform->alert(
            {lwTr("Import Ledgerwick Database"),
             summary,
             {lwTr("OK")},
             result.ending == Ending::Complete ? Platform::AlertStyle::Informational : Platform::AlertStyle::Warning});
    return result;
}

void V1DatabaseImport::walk(const QString &path, Result &result)
{
    lwDataSource *managers[] = {m_ledgerwick.getItemManager(),   m_ledgerwick.getBOMManager(),
                                m_ledgerwick.getActionManager(), m_ledgerwick.getContactManager(),
                                m_ledgerwick.getOrderManager(),  m_ledgerwick.getBillManager()};
    std::array<std::shared_ptr<dataObject>, kKinds> fresh;
    for (int kind = 0; kind < kKinds; ++kind)
        fresh[size_t(kind)] = freshRecord(kind);
    // A record joins its list when the next one begins, the last at the end.
    int pending = -1;
    auto addPending = [&] {
        if (pending < 0)
            return;
        managers[pending]->add(fresh[size_t(pending)]);
        fresh[size_t(pending)] = freshRecord(pending);
        ++result.counts[size_t(pending)];
        pending = -1;
    };

    Parser parser;
    parser.initWithFilePath(path);
    while (const std::unique_ptr<DbItem> item = parser.getItem()) {
        if (item->isNewParent())
            addPending();
        const int kind = kindOfParent(item->getParentName());
        if (kind < 0)
            continue;
        dataObject &record = *fresh[size_t(kind)];
        record.setFieldByName(item->getName(), item->getData());
        if (item->isNewParent())
            pending = kind;
        if (kind == kOrder && item->getName() == "contactId"_L1 && item->getData() != "0"_L1) {
            // The order is not in its list yet, so it is linked here rather
            // than by order id: the contact by id, else just the id.
            auto &order = static_cast<Order &>(record);
            const int contactId = NumberText::intValue(item->getData());
            ContactManager *contacts = m_ledgerwick.getContactManager();
            if (Contact *contact = contacts->getContactbyId(QString::number(contactId)))
                order.setContact(std::static_pointer_cast<Contact>(contacts->sharedRecord(contact)));
            order.setContactId(contactId);
        }
    }
    addPending();

    if (parser.indent() == 0)
        result.ending = Ending::Complete;
    else if (parser.stopped())
        result.ending = Ending::TooLong;
    else if (parser.indent() == 4 && parser.currentByte() == '<')
        result.ending = Ending::NotAscii; // a value read up to its "<" that could not be decoded
    else
        result.ending = Ending::Truncated;
    lwLog(u"version-1 import: %1 records"_s.arg(std::accumulate(result.counts.begin(), result.counts.end(), 0)));
}

void V1DatabaseImport::copyAttachments() const
{
    const QString from = DatabasePaths::expandTilde(u"~/Library/Ledgerwick/Attachments"_s);
    const QString to = QDir(DatabasePaths::standardBundleFolder()).filePath(u"Attachments"_s);
    // A missing source or an existing target: nothing is copied, silently.
    if (!QFileInfo(from).isDir() || QFileInfo::exists(to))
        return;
    copyFolder(from, to);
}

QString V1DatabaseImport::endingText(Ending ending)
{
    switch (ending) {
    case Ending::Complete:
        return {};
    case Ending::Truncated:
        return lwTr("the file is cut short");
    case Ending::NotAscii:
        return lwTr("a text in it is not plain ASCII");
    case Ending::TooLong:
        return lwTr("a tag or value in it is longer than the reader takes");
    }
    return {};
}
