#include "core/PropertyListReader.h"

#include "core/EmptyText.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <cstring>
#include <deque>

namespace {

thread_local QString t_lastError;

bool isNameChar(char c)
{
    const auto u = static_cast<unsigned char>(c);
    return (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || (u >= '0' && u <= '9') || u == '_' || u == ':' ||
           u == '-' || u == '.' || u >= 0x80;
}

void appendUtf8(std::string &out, char32_t cp)
{
    if (cp < 0x80) {
        out += char(cp);
    } else if (cp < 0x800) {
        out += char(0xC0 | (cp >> 6));
        out += char(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += char(0xE0 | (cp >> 12));
        out += char(0x80 | ((cp >> 6) & 0x3F));
        out += char(0x80 | (cp & 0x3F));
    } else {
        out += char(0xF0 | (cp >> 18));
        out += char(0x80 | ((cp >> 12) & 0x3F));
        out += char(0x80 | ((cp >> 6) & 0x3F));
        out += char(0x80 | (cp & 0x3F));
    }
}

enum class TagKind { Open, Close, Empty };

struct Tag
{
    std::string_view name;
    TagKind kind = TagKind::Open;
    bool is(TagKind k, std::string_view n) const { return kind == k && name == n; }
};

// A single forward pass over the bytes of one document.
class Scanner
{
public:
    Scanner(const char *begin, const char *end) : p(begin), m_begin(begin), m_end(end) {}

    bool failed() const { return !m_error.isEmpty(); }
    const QString &error() const { return m_error; }

    bool fail(const char *why)
    {
        if (m_error.isEmpty())
            m_error = QString::fromLatin1(why);
        return false;
    }

    void skipBom()
    {
        if (m_end - p >= 3 && std::memcmp(p, "\xEF\xBB\xBF", 3) == 0)
            p += 3;
    }

    // White space, comments, processing instructions and the DOCTYPE.
    bool skipMisc()
    {
        for (;;) {
            while (p < m_end && (*p == ' ' || *p == '\t' || *p == '\n' || *p == '\r'))
                ++p;
            if (startsWith("<!--")) {
                if (!skipPast("<!--", "-->"))
                    return fail("unterminated comment");
            } else if (startsWith("<?")) {
                if (!skipPast("<?", "?>"))
                    return fail("unterminated processing instruction");
            } else if (startsWith("<!DOCTYPE")) {
                if (!skipDoctype())
                    return fail("unterminated DOCTYPE");
            } else {
                return true;
            }
        }
    }

    bool atEnd() const { return p >= m_end; }
    // Whether text returned by readText points into the document itself (and
    // so stays valid) rather than into the scratch buffer.
    bool inDocument(std::string_view text) const { return text.data() >= m_begin && text.data() <= m_end; }

    bool readTag(Tag &tag)
    {
        if (p >= m_end || *p != '<')
            return fail(p >= m_end ? "unexpected end of file" : "text where a tag was expected");
        ++p;
        bool closing = false;
        if (p < m_end && *p == '/') {
            closing = true;
            ++p;
        }
        const char *name = p;
        while (p < m_end && isNameChar(*p))
            ++p;
        if (p == name)
            return fail("malformed tag");
        tag.name = std::string_view(name, size_t(p - name));
        while (p < m_end && *p != '>') {
            if (*p == '"' || *p == '\'') {
                const char quote = *p++;
                const void *close = std::memchr(p, quote, size_t(m_end - p));
                if (!close)
                    return fail("unterminated attribute");
                p = static_cast<const char *>(close) + 1;
                continue;
            }
            if (*p == '<')
                return fail("malformed tag");
            ++p;
        }
        if (p >= m_end)
            return fail("unexpected end of file in a tag");
        const bool empty = !closing && p[-1] == '/';
        ++p;
        tag.kind = closing ? TagKind::Close : empty ? TagKind::Empty : TagKind::Open;
        return true;
    }

    // Reads the character data of an element whose start tag was just read,
    // and its end tag. Plain text is taken straight from the buffer; text with
    // references, CDATA or comments is assembled in a scratch buffer.
    bool readText(std::string_view element, std::string_view &text)
    {
        const char *start = p;
        const char *lt = static_cast<const char *>(std::memchr(p, '<', size_t(m_end - p)));
        if (!lt)
            return fail("unexpected end of file in text");
        const bool plain = !std::memchr(p, '&', size_t(lt - p)) && lt + 1 < m_end && lt[1] == '/';
        if (plain) {
            text = std::string_view(start, size_t(lt - start));
            p = lt;
        } else {
            m_scratch.clear();
            while (true) {
                const char *q = p;
                while (q < m_end && *q != '<' && *q != '&')
                    ++q;
                m_scratch.append(p, size_t(q - p));
                p = q;
                if (p >= m_end)
                    return fail("unexpected end of file in text");
                if (*p == '&') {
                    if (!readReference(m_scratch))
                        return false;
                } else if (startsWith("<![CDATA[")) {
                    const char *cdataStart = p + 9;
                    if (!skipPast("<![CDATA[", "]]>"))
                        return fail("unterminated CDATA section");
                    m_scratch.append(cdataStart, size_t(p - 3 - cdataStart));
                } else if (startsWith("<!--")) {
                    if (!skipPast("<!--", "-->"))
                        return fail("unterminated comment");
                } else if (startsWith("<?")) {
                    if (!skipPast("<?", "?>"))
                        return fail("unterminated processing instruction");
                } else if (startsWith("</")) {
                    break;
                } else {
                    return fail("an element inside a value");
                }
            }
            text = m_scratch;
        }
        Tag close;
        if (!readTag(close))
            return false;
        if (close.kind != TagKind::Close || close.name != element)
            return fail("mismatched end tag");
        return true;
    }

    // Passes over the rest of an element whose start tag was just read.
    bool skipElement(const Tag &start)
    {
        if (start.kind == TagKind::Empty)
            return true;
        int depth = 1;
        while (depth > 0) {
            const char *lt = static_cast<const char *>(std::memchr(p, '<', size_t(m_end - p)));
            if (!lt)
                return fail("unexpected end of file");
            p = lt;
            if (startsWith("<!--")) {
                if (!skipPast("<!--", "-->"))
                    return fail("unterminated comment");
            } else if (startsWith("<![CDATA[")) {
                if (!skipPast("<![CDATA[", "]]>"))
                    return fail("unterminated CDATA section");
            } else if (startsWith("<?")) {
                if (!skipPast("<?", "?>"))
                    return fail("unterminated processing instruction");
            } else {
                Tag tag;
                if (!readTag(tag))
                    return false;
                if (tag.kind == TagKind::Open)
                    ++depth;
                else if (tag.kind == TagKind::Close)
                    --depth;
            }
        }
        return true;
    }

private:
    bool startsWith(const char *s) const
    {
        const size_t n = std::strlen(s);
        return size_t(m_end - p) >= n && std::memcmp(p, s, n) == 0;
    }

    // Moves past the opener at p and then past the next terminator; false when none.
    bool skipPast(std::string_view opener, std::string_view terminator)
    {
        p += opener.size();
        const std::string_view rest(p, size_t(m_end - p));
        const size_t found = rest.find(terminator);
        if (found == std::string_view::npos)
            return false;
        p += found + terminator.size();
        return true;
    }

    bool skipDoctype()
    {
        p += 9;
        while (p < m_end) {
            const char c = *p++;
            if (c == '"' || c == '\'') {
                const void *close = std::memchr(p, c, size_t(m_end - p));
                if (!close)
                    return false;
                p = static_cast<const char *>(close) + 1;
            } else if (c == '[') {
                const void *close = std::memchr(p, ']', size_t(m_end - p));
                if (!close)
                    return false;
                p = static_cast<const char *>(close) + 1;
            } else if (c == '>') {
                return true;
            }
        }
        return false;
    }

    bool readReference(std::string &out)
    {
        const char *semicolon =
            static_cast<const char *>(std::memchr(p, ';', size_t(std::min<ptrdiff_t>(m_end - p, 12))));
        if (!semicolon)
            return fail("malformed reference");
        const std::string_view name(p + 1, size_t(semicolon - p - 1));
        p = semicolon + 1;
        if (name == "amp")
            out += '&';
        else if (name == "lt")
            out += '<';
        else if (name == "gt")
            out += '>';
        else if (name == "quot")
            out += '"';
        else if (name == "apos")
            out += '\'';
        else if (name.size() >= 2 && name[0] == '#') {
            char32_t cp = 0;
            const bool hex = name[1] == 'x';
            const std::string_view digits = name.substr(hex ? 2 : 1);
            if (digits.empty() || digits.size() > 8)
                return fail("malformed character reference");
            for (char c : digits) {
                int d;
                if (c >= '0' && c <= '9')
                    d = c - '0';
                else if (hex && c >= 'a' && c <= 'f')
                    d = c - 'a' + 10;
                else if (hex && c >= 'A' && c <= 'F')
                    d = c - 'A' + 10;
                else
                    return fail("malformed character reference");
                cp = cp * (hex ? 16 : 10) + char32_t(d);
            }
            if (cp == 0 || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
                return fail("character reference out of range");
            appendUtf8(out, cp);
        } else {
            return fail("unknown entity");
        }
        return true;
    }

public:
    const char *p;

private:
    const char *m_begin;
    const char *m_end;
    QString m_error;
    std::string m_scratch;
};

// Whether the bytes are UTF-8 exactly: no overlong forms, no surrogates,
// nothing past U+10FFFF. Plain ASCII is passed eight bytes at a time.
bool isValidUtf8(const unsigned char *p, const unsigned char *end)
{
    while (p < end) {
        if (end - p >= 8) {
            quint64 eight;
            std::memcpy(&eight, p, 8);
            if ((eight & 0x8080808080808080ULL) == 0) {
                p += 8;
                continue;
            }
        }
        const unsigned char c = *p;
        if (c < 0x80) {
            ++p;
            continue;
        }
        int more;
        unsigned char low = 0x80, high = 0xBF; // the range of the second byte
        if (c >= 0xC2 && c <= 0xDF) {
            more = 1;
        } else if (c >= 0xE0 && c <= 0xEF) {
            more = 2;
            if (c == 0xE0)
                low = 0xA0;
            else if (c == 0xED)
                high = 0x9F;
        } else if (c >= 0xF0 && c <= 0xF4) {
            more = 3;
            if (c == 0xF0)
                low = 0x90;
            else if (c == 0xF4)
                high = 0x8F;
        } else {
            return false;
        }
        if (end - p <= more || p[1] < low || p[1] > high)
            return false;
        for (int k = 2; k <= more; ++k)
            if ((p[k] & 0xC0) != 0x80)
                return false;
        p += more + 1;
    }
    return true;
}

// The encoding the XML declaration names, in lower case; "" when none.
QByteArray declaredEncoding(const QByteArray &data)
{
    qsizetype start = data.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    if (data.mid(start, 5) != "<?xml")
        return {};
    const qsizetype close = data.indexOf("?>", start);
    const QByteArray declaration = data.mid(start, close < 0 ? 0 : close - start);
    const qsizetype at = declaration.indexOf("encoding");
    if (at < 0)
        return {};
    const qsizetype quote = declaration.indexOf('=', at) + 1;
    QByteArray rest = declaration.mid(quote).trimmed();
    if (rest.isEmpty() || (rest[0] != '"' && rest[0] != '\''))
        return {};
    const qsizetype end = rest.indexOf(rest[0], 1);
    return end < 0 ? QByteArray() : rest.mid(1, end - 1).toLower();
}

// The document in UTF-8: UTF-16 (with its byte-order mark) and the declared
// 8-bit encodings are converted; anything not decoded exactly is refused.
bool asUtf8(const QByteArray &data, QByteArray &out, QString &error)
{
    if (data.size() >= 2) {
        const auto b0 = static_cast<unsigned char>(data[0]);
        const auto b1 = static_cast<unsigned char>(data[1]);
        if ((b0 == 0xFF && b1 == 0xFE) || (b0 == 0xFE && b1 == 0xFF)) {
            QStringDecoder decoder(b0 == 0xFF ? QStringConverter::Utf16LE : QStringConverter::Utf16BE);
            const QString text = decoder(QByteArrayView(data).sliced(2));
            if (decoder.hasError() || data.size() % 2 != 0) {
                error = QStringLiteral("invalid UTF-16");
                return false;
            }
            out = text.toUtf8();
            return true;
        }
    }
    const QByteArray encoding = declaredEncoding(data);
    if (encoding.isEmpty() || encoding == "utf-8" || encoding == "utf8") {
        const auto *bytes = reinterpret_cast<const unsigned char *>(data.constData());
        if (!isValidUtf8(bytes, bytes + data.size())) {
            error = QStringLiteral("invalid UTF-8");
            return false;
        }
        out = data;
        return true;
    }
    if (encoding == "iso-8859-1" || encoding == "latin1" || encoding == "iso_8859-1") {
        out = QString::fromLatin1(data).toUtf8();
        return true;
    }
    // Other declared encodings, as far as the system knows them exactly.
    QStringDecoder decoder(encoding.constData());
    if (encoding.startsWith("utf-16") || !decoder.isValid()) {
        error = QStringLiteral("an encoding that cannot be read: ") + QString::fromLatin1(encoding);
        return false;
    }
    const QString text = decoder(data);
    if (decoder.hasError()) {
        error = QStringLiteral("text that is not ") + QString::fromLatin1(encoding);
        return false;
    }
    out = text.toUtf8();
    return true;
}

// Reads one simple value after its key; false with an error when malformed.
// Values that are containers give no field (present = false).
bool readValue(Scanner &s, QString &value, bool &present)
{
    present = false;
    if (!s.skipMisc())
        return false;
    Tag tag;
    if (!s.readTag(tag))
        return false;
    if (tag.kind == TagKind::Close)
        return s.fail("a key without a value");
    if (tag.name == "true" || tag.name == "false") {
        value = tag.name == "true" ? QStringLiteral("YES") : QStringLiteral("NO");
        present = true;
        return s.skipElement(tag);
    }
    if (tag.name == "array" || tag.name == "dict")
        return s.fail("a value that is an array or a dictionary");
    if (tag.name != "string" && tag.name != "integer" && tag.name != "real" && tag.name != "date" && tag.name != "data")
        return s.fail("unknown value type");
    present = true;
    if (tag.kind == TagKind::Empty) {
        value = lwEmpty();
        return true;
    }
    std::string_view text;
    if (!s.readText(tag.name, text))
        return false;
    value = QString::fromUtf8(text.data(), qsizetype(text.size()));
    return true;
}

// Reads the dictionary whose start tag was just read, field by field.
bool readDict(Scanner &s, std::vector<PropertyListReader::Field> &fields, std::deque<std::string> &keyStore)
{
    fields.clear();
    keyStore.clear();
    for (;;) {
        if (!s.skipMisc())
            return false;
        Tag tag;
        if (!s.readTag(tag))
            return false;
        if (tag.is(TagKind::Close, "dict"))
            return true;
        if (tag.name != "key")
            return s.fail("a dictionary entry without a key");
        std::string_view key;
        if (tag.kind == TagKind::Empty) {
            key = std::string_view();
        } else {
            if (!s.readText("key", key))
                return false;
            // Keys read through the scratch buffer must outlive the next read.
            if (!s.inDocument(key)) {
                keyStore.emplace_back(key);
                key = keyStore.back();
            }
        }
        // Keys come sorted from every writer we know; only keys out of order
        // need the full search for a twin.
        if (!fields.empty() && !(fields.back().key < key)) {
            for (const PropertyListReader::Field &field : fields)
                if (field.key == key)
                    return s.fail("a key twice in one dictionary");
        }
        QString value;
        bool present = false;
        if (!readValue(s, value, present))
            return false;
        if (present)
            fields.push_back({key, std::move(value)});
    }
}

// Reads up to the root dictionary's start tag (inside an optional <plist>).
bool openRoot(Scanner &s, bool &inPlist)
{
    s.skipBom();
    if (!s.skipMisc())
        return false;
    Tag tag;
    if (!s.readTag(tag))
        return false;
    inPlist = tag.is(TagKind::Open, "plist");
    if (inPlist) {
        if (!s.skipMisc() || !s.readTag(tag))
            return false;
    }
    if (!tag.is(TagKind::Open, "dict"))
        return s.fail("the root is not a dictionary");
    return true;
}

bool closeRoot(Scanner &s, bool inPlist)
{
    if (inPlist) {
        Tag tag;
        if (!s.skipMisc() || !s.readTag(tag))
            return false;
        if (!tag.is(TagKind::Close, "plist"))
            return s.fail("missing </plist>");
    }
    if (!s.skipMisc())
        return false;
    if (!s.atEnd())
        return s.fail("text after the document");
    return true;
}

} // namespace

const QString *PropertyListReader::Dict::find(std::string_view key) const
{
    for (const Field &field : m_fields)
        if (field.key == key)
            return &field.value;
    return nullptr;
}

QString PropertyListReader::lastError()
{
    return t_lastError;
}

PropertyListReader::Status PropertyListReader::readCollection(const QString &path, std::string_view collectionKey,
                                                              const RecordCallback &onRecord)
{
    QFile file(path);
    if (!file.exists()) {
        t_lastError = QStringLiteral("no such file");
        return Status::Missing;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        t_lastError = file.errorString();
        return Status::Unreadable;
    }
    // Map the file rather than copy it: the largest record files are big.
    const qint64 size = file.size();
    if (size > 0) {
        if (uchar *mapped = file.map(0, size)) {
            const QByteArray view = QByteArray::fromRawData(reinterpret_cast<const char *>(mapped), qsizetype(size));
            const Status status = readCollection(view, collectionKey, onRecord);
            file.unmap(mapped);
            return status;
        }
    }
    return readCollection(file.readAll(), collectionKey, onRecord);
}

PropertyListReader::Status PropertyListReader::readCollection(const QByteArray &raw, std::string_view collectionKey,
                                                              const RecordCallback &onRecord)
{
    QByteArray data;
    if (!asUtf8(raw, data, t_lastError))
        return Status::Unreadable;
    Scanner s(data.constData(), data.constData() + data.size());
    bool inPlist = false;
    bool found = false;
    Dict dict;
    std::deque<std::string> keyStore;
    auto done = [&](bool ok) {
        if (ok && !found)
            s.fail("the collection key is missing or is not an array");
        t_lastError = s.error();
        return s.failed() ? Status::Unreadable : Status::Ok;
    };
    if (!openRoot(s, inPlist))
        return done(false);
    for (;;) {
        if (!s.skipMisc())
            return done(false);
        Tag tag;
        if (!s.readTag(tag))
            return done(false);
        if (tag.is(TagKind::Close, "dict"))
            break;
        if (tag.name != "key")
            return done(s.fail("a dictionary entry without a key"));
        std::string_view key;
        if (tag.kind == TagKind::Open && !s.readText("key", key))
            return done(false);
        // The root holds the one collection and nothing else.
        if (key != collectionKey)
            return done(s.fail("an unexpected key in the root dictionary"));
        if (found)
            return done(s.fail("the collection key twice"));
        if (!s.skipMisc())
            return done(false);
        Tag value;
        if (!s.readTag(value))
            return done(false);
        if (value.kind == TagKind::Close)
            return done(s.fail("a key without a value"));
        if (value.name != "array")
            return done(s.fail("the collection is not an array"));
        found = true;
        if (value.kind == TagKind::Empty)
            continue;
        for (;;) {
            if (!s.skipMisc())
                return done(false);
            Tag element;
            if (!s.readTag(element))
                return done(false);
            if (element.is(TagKind::Close, "array"))
                break;
            if (element.is(TagKind::Open, "dict")) {
                if (!readDict(s, dict.m_fields, keyStore))
                    return done(false);
                onRecord(dict);
            } else if (element.is(TagKind::Empty, "dict")) {
                dict.m_fields.clear();
                onRecord(dict);
            } else {
                return done(s.fail("an element of the collection that is not a dictionary"));
            }
        }
    }
    return done(closeRoot(s, inPlist));
}

PropertyListReader::Status PropertyListReader::readDictionary(const QByteArray &raw,
                                                              std::vector<std::pair<QString, QString>> &out)
{
    out.clear();
    QByteArray data;
    if (!asUtf8(raw, data, t_lastError))
        return Status::Unreadable;
    Scanner s(data.constData(), data.constData() + data.size());
    bool inPlist = false;
    Dict dict;
    std::deque<std::string> keyStore;
    if (openRoot(s, inPlist) && readDict(s, dict.m_fields, keyStore) && closeRoot(s, inPlist)) {
        for (const Field &field : dict.m_fields)
            out.emplace_back(QString::fromUtf8(field.key.data(), qsizetype(field.key.size())), field.value);
        t_lastError.clear();
        return Status::Ok;
    }
    t_lastError = s.error();
    return Status::Unreadable;
}
