#pragma once

#include "core/dataObject.h"
#include "core/lwDataSource.h"
#include "core/PropertyListReader.h"

class PropertyListWriter;

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <vector>

// The six record files of a database bundle: which file holds which kind,
// and how each record is read from and written to its property list.
//
// Reading builds the records without touching any collection, so the files
// can be read side by side on several threads; the controller then adds them
// to its managers in the fixed order on the main thread. Writing builds each
// file in stretches on both cores and writes the files side by side.
class DatabaseStore
{
public:
    enum class Kind { Contacts, Orders, Items, Materials, Bills, Actions };

    struct FileSpec
    {
        Kind kind;
        const char *fileName;      // "contacts.xml"
        const char *collectionKey; // "contacts"; items are stored under "products"
        const char *name;          // "contacts", as the log lines name the collection
    };
    // The six files in the fixed order of reading and writing.
    static const std::array<FileSpec, 6> &files();
    static const FileSpec &fileOf(Kind kind);

    struct Loaded
    {
        PropertyListReader::Status status = PropertyListReader::Status::Missing;
        QString error; // why an unreadable file could not be read
        std::vector<std::shared_ptr<dataObject>> records;
        // Material lines only, one per record: the stored id (applied after
        // the line has entered its collection) and whether a contact was stored.
        std::vector<int> storedIds;
        std::vector<bool> hasContact;
    };
    // Reads one record file of the bundle folder. A file that exists but
    // cannot be read yields no records and the status Unreadable.
    static Loaded read(Kind kind, const QString &folder);
    static Loaded readData(Kind kind, const QByteArray &data);

    // The whole file for the records of a collection, in collection order,
    // hidden records included. Fails (false, with the reason) only for an
    // action holding no value in a field that must always be written.
    static bool serialize(Kind kind, const lwDataSource &collection, QByteArray &out, QString *error = nullptr);
    // The records from position `from` up to (not including) `to`, without
    // the file's opening and closing mark-up (see PropertyListWriter::header),
    // so that the stretches of a large file can be built side by side.
    static bool serializeRecords(Kind kind, const lwDataSource &collection, qsizetype from, qsizetype to,
                                 QByteArray &out, QString *error = nullptr);
    // The same into a writer.
    static bool writeRecords(Kind kind, const lwDataSource &collection, qsizetype from, qsizetype to,
                             PropertyListWriter &writer, QString *error);

    // Reads the six files of the bundle folder side by side, largest first.
    static std::array<Loaded, 6> readAll(const QString &folder);

    enum class WriteResult { Written, Failed, Stopped };
    struct WriteOutcome
    {
        WriteResult result = WriteResult::Failed;
        QStringList log; // lines to log, in order
        QString reason;  // why it was not written, as the system says it
        QString keptAs;  // the name of the copy a damaged file was kept as
    };
    using Collections = std::array<const lwDataSource *, 6>;
    // Writes the files of the kinds asked, each atomically, from the
    // collections given: stretches of records are built on both cores and
    // streamed to the files in order, so memory holds only a few of them. A
    // file marked unreadable is first kept aside, and its mark cleared; one
    // that cannot be set aside is not replaced. Answers what happened to each kind; nothing is
    // logged here, so the caller logs in its fixed order.
    static std::array<WriteOutcome, 6> writeFiles(const std::vector<Kind> &kinds, const Collections &collections,
                                                  const QString &folder, std::array<bool, 6> &unreadable);
};
