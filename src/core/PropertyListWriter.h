#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Writes XML property lists (version 1.0) in the exact form of the platform's
// own writer: the XML declaration, the DOCTYPE, <plist version="1.0">, one tab
// per level, "&", "<" and ">" escaped, UTF-8. Values are always strings.
// Characters XML 1.0 does not allow (control characters other than tab, line
// feed and carriage return, U+FFFE, U+FFFF, lone surrogates) are written as
// U+FFFD and counted; a carriage return is written as "&#13;" so that a
// reader's line-end handling cannot turn it into a line feed.
//
// A record file is written as a root dictionary with one key whose array
// holds one dictionary per record:
//
//     PropertyListWriter writer("contacts");
//     writer.beginRecord();
//     writer.field("id", QStringLiteral("1"));   // keys in sorted order
//     writer.endRecord();
//     writer.finish();
//     PropertyListWriter::writeFile(path, writer.data());
class PropertyListWriter
{
public:
    explicit PropertyListWriter(std::string_view collectionKey, qsizetype expectedBytes = 0);
    // A writer of records only, without the file's opening and closing
    // mark-up: a stretch of a large file built on its own (see header()).
    explicit PropertyListWriter(qsizetype expectedBytes);

    // What comes before the first record and after the last one.
    static QByteArray header(std::string_view collectionKey);
    static QByteArray footer();

    // A key with the mark-up that opens its field, made once for keys that
    // are written many times.
    class Key
    {
    public:
        explicit Key(std::string_view name);
        std::string_view name() const { return m_name; }
        std::string_view opening() const { return {m_opening.data(), m_length}; }

    private:
        friend class PropertyListWriter;
        // The mark-up, padded so that it can be copied whole in one fixed-size
        // move; a longer one (a very long key) is copied by its length.
        static constexpr size_t kPadded = 64;
        std::string m_name;
        std::string m_opening;
        size_t m_length = 0;
    };

    void beginRecord();
    // The platform's writer sorts the keys of a dictionary: give them sorted.
    // Keys are plain names and are written as they are.
    void field(std::string_view key, const QString &value);
    void field(std::string_view key, int value);
    void field(std::string_view key, std::string_view asciiValue);
    void field(const Key &key, const QString &value);
    void field(const Key &key, int value);
    void field(const Key &key, std::string_view asciiValue);
    // "YES" or "NO".
    void flag(const Key &key, bool on);
    void endRecord();
    void finish();
    // Ends a writer of records only.
    void finishRecords();

    // The file's bytes, once finish() has been called.
    const QByteArray &data() const { return m_out; }
    // The bytes made so far; restart() forgets them and keeps the buffer.
    qsizetype size() const { return m_used; }
    void restart()
    {
        m_used = 0;
        m_replaced = 0;
        clearVectorState();
    }
    const char *bytes() const { return m_data; }
    // How many characters were written as U+FFFD so far.
    qsizetype replacedCharacters() const { return m_replaced; }

    // A root dictionary of strings (the lock file), keys sorted here.
    static QByteArray dictionary(std::vector<std::pair<QString, QString>> entries);

    // Writes the bytes atomically: the old file stays whole when this fails.
    static bool writeFile(const QString &path, const QByteArray &bytes, QString *error = nullptr);
    // The same for a file given in consecutive parts.
    static bool writeFile(const QString &path, const QList<QByteArray> &parts, QString *error = nullptr);

    // Appends the text as UTF-8 with "&", "<" and ">" escaped.
    static void appendEscaped(QByteArray &out, const QString &text);

private:
    static void clearVectorState();
    // Room for n more bytes at the write position; the buffer grows in large
    // steps and is cut to size by finish().
    char *room(qsizetype n)
    {
        if (m_used + n > m_capacity)
            grow(n);
        return m_data + m_used;
    }
    void grow(qsizetype n);
    void append(std::string_view bytes)
    {
        std::memcpy(room(qsizetype(bytes.size())), bytes.data(), bytes.size());
        m_used += qsizetype(bytes.size());
    }
    void openField(std::string_view key);
    void closeField() { append("</string>\n"); }
    void text(const QString &value);
    void number(int value);
    // The longest the escaped text of n UTF-16 units can be ("&amp;").
    static constexpr qsizetype escapedRoom(qsizetype n) { return 5 * n; }
    // Writes the n units as UTF-8 with the mark-up characters escaped at d,
    // which has escapedRoom(n) bytes; answers the end of what was written and
    // adds the characters written as U+FFFD to `replaced`.
    static char *encodeEscaped(char *d, const char16_t *s, qsizetype n, qsizetype &replaced);
    // Copies the key's mark-up to d, which has Key::kPadded bytes of room.
    static char *putOpening(char *d, const Key &key);

    QByteArray m_out;
    char *m_data = nullptr; // m_out's bytes, kept to avoid a detach check per append
    qsizetype m_capacity = 0;
    qsizetype m_used = 0;
    qsizetype m_replaced = 0;
};
