#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>
#include <utility>
#include <vector>

// Writes XML property lists (version 1.0) in the exact form of the platform's
// own writer: the XML declaration, the DOCTYPE, <plist version="1.0">, one tab
// per level, "&", "<" and ">" escaped, UTF-8. Values are always strings.
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

    void beginRecord();
    // The platform's writer sorts the keys of a dictionary: give them sorted.
    void field(std::string_view key, const QString &value);
    void endRecord();
    void finish();

    const QByteArray &data() const { return m_out; }

    // A root dictionary of strings (the lock file), keys sorted here.
    static QByteArray dictionary(std::vector<std::pair<QString, QString>> entries);

    // Writes the bytes atomically: the old file stays whole when this fails.
    static bool writeFile(const QString &path, const QByteArray &bytes, QString *error = nullptr);

    // Appends the text as UTF-8 with "&", "<" and ">" escaped.
    static void appendEscaped(QByteArray &out, const QString &text);

private:
    QByteArray m_out;
};
