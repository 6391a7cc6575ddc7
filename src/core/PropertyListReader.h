#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

// Reads XML property lists (version 1.0) as any conforming writer produces
// them: any white space, comments, a byte-order mark, entities, character
// references and CDATA sections. Built for the record files of the database:
// a root dictionary whose one key names an array of dictionaries of strings.
// The file is scanned once, without building a document tree, so that the
// largest record files load quickly and without a second copy in memory.
//
// Values of other types are read as their text: <integer>, <real>, <date> and
// <data> as written, <true/> and <false/> as "YES" and "NO". Anything else
// is damage, and the file is Unreadable rather than read in part: a value
// that is an array or dictionary, an element of the collection that is not a
// dictionary, a key twice, a root key other than the collection's, bytes not
// valid in the encoding the file declares. Line ends inside values are
// kept exactly as stored.
class PropertyListReader
{
public:
    enum class Status {
        Ok,         // read; the records were delivered
        Missing,    // no such file
        Unreadable, // not a property list of the expected shape: nothing delivered
    };

    struct Field
    {
        std::string_view key; // valid during the callback only
        QString value;
    };
    // One record: its fields in the order they were stored.
    class Dict
    {
    public:
        const std::vector<Field> &fields() const { return m_fields; }
        // The value stored under the key, or nullptr when the key is absent.
        const QString *find(std::string_view key) const;

    private:
        friend class PropertyListReader;
        std::vector<Field> m_fields;
    };
    using RecordCallback = std::function<void(const Dict &)>;

    // Reads the array stored under collectionKey in the root dictionary and
    // hands each of its dictionaries to onRecord, in order, as they are read.
    // When the answer is Unreadable, records read before the fault may have
    // been delivered: the caller drops them, because a damaged file reads as
    // having no records.
    static Status readCollection(const QString &path, std::string_view collectionKey, const RecordCallback &onRecord);
    static Status readCollection(const QByteArray &data, std::string_view collectionKey,
                                 const RecordCallback &onRecord);

    // Reads a root dictionary of simple values (the lock file).
    static Status readDictionary(const QByteArray &data, std::vector<std::pair<QString, QString>> &out);

    // Why the last read on this thread failed, for the log.
    static QString lastError();
};
