#include "core/PropertyListWriter.h"

#include "core/AtomicFile.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif
#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#include <immintrin.h>
#define LW_X86_AVX_CHECK 1
#endif

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>

namespace {

const char kHeader[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                       "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                       "<plist version=\"1.0\">\n"
                       "<dict>\n";
const char kFooter[] = "</dict>\n"
                       "</plist>\n";

void appendKey(QByteArray &out, const char *indent, std::string_view key)
{
    out.append(indent);
    out.append("<key>");
    for (char c : key) {
        switch (c) {
        case '&':
            out.append("&amp;");
            break;
        case '<':
            out.append("&lt;");
            break;
        case '>':
            out.append("&gt;");
            break;
        default:
            out.append(c);
        }
    }
    out.append("</key>\n");
}

#ifdef LW_X86_AVX_CHECK
__attribute__((target("avx"))) void zeroUpperHalves()
{
    _mm256_zeroupper();
}
#endif

} // namespace

void PropertyListWriter::clearVectorState()
{
#ifdef LW_X86_AVX_CHECK
    // Code run earlier in the process (Qt's start-up among it) can leave the
    // upper halves of the AVX registers dirty; every SSE instruction then
    // waits on them, and building the bytes runs several times slower.
    static const bool avx = __builtin_cpu_supports("avx");
    if (avx)
        zeroUpperHalves();
#endif
}

PropertyListWriter::PropertyListWriter(std::string_view collectionKey, qsizetype expectedBytes)
{
    clearVectorState();
    const QByteArray head = header(collectionKey);
    grow(std::max<qsizetype>(expectedBytes, 4096) + head.size());
    append(std::string_view(head.constData(), size_t(head.size())));
}

PropertyListWriter::PropertyListWriter(qsizetype expectedBytes)
{
    clearVectorState();
    grow(std::max<qsizetype>(expectedBytes, 4096));
}

QByteArray PropertyListWriter::header(std::string_view collectionKey)
{
    QByteArray head(kHeader);
    appendKey(head, "\t", collectionKey);
    head.append("\t<array>\n");
    return head;
}

QByteArray PropertyListWriter::footer()
{
    return QByteArray("\t</array>\n") + kFooter;
}

void PropertyListWriter::grow(qsizetype n)
{
    m_out.resize(std::max(m_capacity * 2, m_used + n + 4096));
    m_data = m_out.data();
    m_capacity = m_out.size();
}

void PropertyListWriter::beginRecord()
{
    append("\t\t<dict>\n");
}

PropertyListWriter::Key::Key(std::string_view name)
    : m_name(name), m_opening("\t\t\t<key>" + std::string(name) + "</key>\n\t\t\t<string>")
{
    m_length = m_opening.size();
    m_opening.resize(std::max(m_length, kPadded), '\0');
}

char *PropertyListWriter::putOpening(char *d, const Key &key)
{
    if (key.m_length <= Key::kPadded) [[likely]]
        std::memcpy(d, key.m_opening.data(), Key::kPadded);
    else
        std::memcpy(d, key.m_opening.data(), key.m_length);
    return d + key.m_length;
}

void PropertyListWriter::openField(std::string_view key)
{
    append("\t\t\t<key>");
    append(key);
    append("</key>\n\t\t\t<string>");
}

void PropertyListWriter::text(const QString &value)
{
    char *d = room(escapedRoom(value.size()));
    m_used = encodeEscaped(d, reinterpret_cast<const char16_t *>(value.constData()), value.size(), m_replaced) - m_data;
}

void PropertyListWriter::number(int value)
{
    char *d = room(16);
    m_used = std::to_chars(d, d + 16, value).ptr - m_data;
}

void PropertyListWriter::field(std::string_view key, const QString &value)
{
    openField(key);
    text(value);
    closeField();
}

void PropertyListWriter::field(std::string_view key, int value)
{
    openField(key);
    number(value);
    closeField();
}

void PropertyListWriter::field(std::string_view key, std::string_view asciiValue)
{
    openField(key);
    append(asciiValue);
    closeField();
}

namespace {
const char kClosing[] = "</string>\n";
constexpr qsizetype kClosingLength = sizeof kClosing - 1;
} // namespace

// The fields of a record file, with one check of the room for the whole field.
void PropertyListWriter::field(const Key &key, const QString &value)
{
    const qsizetype n = value.size();
    char *d = putOpening(room(qsizetype(std::max(key.m_length, Key::kPadded)) + escapedRoom(n) + kClosingLength), key);
    d = encodeEscaped(d, reinterpret_cast<const char16_t *>(value.constData()), n, m_replaced);
    std::memcpy(d, kClosing, kClosingLength);
    m_used = d + kClosingLength - m_data;
}

void PropertyListWriter::field(const Key &key, int value)
{
    char *d = putOpening(room(qsizetype(std::max(key.m_length, Key::kPadded)) + 16 + kClosingLength), key);
    d = std::to_chars(d, d + 16, value).ptr;
    std::memcpy(d, kClosing, kClosingLength);
    m_used = d + kClosingLength - m_data;
}

void PropertyListWriter::field(const Key &key, std::string_view asciiValue)
{
    append(key.opening());
    append(asciiValue);
    closeField();
}

void PropertyListWriter::flag(const Key &key, bool on)
{
    // Both the same length, so that either is copied in one fixed-size move.
    static const char yes[] = "YES</string>\n", no[] = "NO</string>\n\0";
    char *d = putOpening(room(qsizetype(std::max(key.m_length, Key::kPadded)) + qsizetype(sizeof yes)), key);
    std::memcpy(d, on ? yes : no, sizeof yes - 1);
    m_used = d + (on ? sizeof yes - 1 : sizeof no - 2) - m_data;
}

void PropertyListWriter::endRecord()
{
    append("\t\t</dict>\n");
}

void PropertyListWriter::finish()
{
    append("\t</array>\n");
    append(kFooter);
    finishRecords();
}

void PropertyListWriter::finishRecords()
{
    m_out.resize(m_used);
    m_data = m_out.data();
    m_capacity = m_used;
}

void PropertyListWriter::appendEscaped(QByteArray &out, const QString &text)
{
    const qsizetype at = out.size();
    out.resize(at + escapedRoom(text.size()));
    qsizetype replaced = 0;
    out.resize(
        encodeEscaped(out.data() + at, reinterpret_cast<const char16_t *>(text.constData()), text.size(), replaced) -
        out.constData());
}

namespace {

// ASCII characters below "@" written as they are: tab, line feed, and the
// printable ones other than "&", "<" and ">".
constexpr quint64 plainBelow64()
{
    quint64 mask = (quint64(1) << '\t') | (quint64(1) << '\n');
    for (int c = ' '; c < 64; ++c)
        if (c != '&' && c != '<' && c != '>')
            mask |= quint64(1) << c;
    return mask;
}
constexpr quint64 kPlainBelow64 = plainBelow64();

inline bool plainAscii(char16_t c)
{
    return c < 64 ? (kPlainBelow64 >> c) & 1 : c < 0x80;
}

// One character that is not plain ASCII, or a surrogate pair, from s[i];
// advances i past it.
inline char *encodeSpecial(char *d, const char16_t *s, qsizetype &i, qsizetype n, qsizetype &replaced)
{
    const char16_t c = s[i++];
    if (c < 0x80) {
        switch (c) {
        case u'&':
            std::memcpy(d, "&amp;", 5);
            return d + 5;
        case u'<':
            std::memcpy(d, "&lt;", 4);
            return d + 4;
        case u'>':
            std::memcpy(d, "&gt;", 4);
            return d + 4;
        case u'\r':
            // So that a reader's line-end handling cannot turn it into a line feed.
            std::memcpy(d, "&#13;", 5);
            return d + 5;
        default:
            if (plainAscii(c)) {
                *d = char(c);
                return d + 1;
            }
            // A control character XML 1.0 does not allow.
            ++replaced;
            std::memcpy(d, "\xEF\xBF\xBD", 3);
            return d + 3;
        }
    }
    if (c < 0x800) {
        d[0] = char(0xC0 | (c >> 6));
        d[1] = char(0x80 | (c & 0x3F));
        return d + 2;
    }
    if (c >= 0xD800 && c < 0xDC00 && i < n && s[i] >= 0xDC00 && s[i] < 0xE000) {
        const char32_t cp = 0x10000 + ((char32_t(c) - 0xD800) << 10) + (char32_t(s[i]) - 0xDC00);
        ++i;
        d[0] = char(0xF0 | (cp >> 18));
        d[1] = char(0x80 | ((cp >> 12) & 0x3F));
        d[2] = char(0x80 | ((cp >> 6) & 0x3F));
        d[3] = char(0x80 | (cp & 0x3F));
        return d + 4;
    }
    // A lone surrogate cannot be written as UTF-8, nor U+FFFE or U+FFFF in
    // XML: the replacement character stands in.
    const bool forbidden = (c >= 0xD800 && c < 0xE000) || c >= 0xFFFE;
    replaced += forbidden;
    const char32_t cp = forbidden ? 0xFFFD : c;
    d[0] = char(0xE0 | (cp >> 12));
    d[1] = char(0x80 | ((cp >> 6) & 0x3F));
    d[2] = char(0x80 | (cp & 0x3F));
    return d + 3;
}

#ifdef __SSE2__
// UTF-16 units narrowed to bytes: a unit beyond U+00FF saturates to 0x00 or
// 0xFF, so that it, like every unit beyond ASCII, shows as a control or a
// byte with the high bit set.
inline __m128i narrow(__m128i low, __m128i high)
{
    return _mm_packus_epi16(low, high);
}

// A bit for each narrowed byte that is not plain ASCII text: controls (tab
// and line ends included, they are rare), "&", "<", ">" and all beyond ASCII.
inline unsigned notPlain(__m128i bytes)
{
    const __m128i low = _mm_cmplt_epi8(bytes, _mm_set1_epi8(' ')); // high bit set reads as negative
    const __m128i amp = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('&'));
    const __m128i lt = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('<'));
    const __m128i gt = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('>'));
    return unsigned(_mm_movemask_epi8(_mm_or_si128(_mm_or_si128(low, amp), _mm_or_si128(lt, gt))));
}

inline __m128i load8(const char16_t *s)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(s));
}

inline __m128i load4(const char16_t *s)
{
    return _mm_loadl_epi64(reinterpret_cast<const __m128i *>(s));
}

inline __m128i load2(const char16_t *s)
{
    quint32 units;
    std::memcpy(&units, s, sizeof units);
    return _mm_cvtsi32_si128(int(units));
}

inline void store4(char *d, __m128i bytes)
{
    const quint32 four = quint32(_mm_cvtsi128_si32(bytes));
    std::memcpy(d, &four, sizeof four);
}

// The last m units (2 <= m < 16) when all are plain ASCII: two overlapping
// loads cover them, and the two stores write the same bytes where they
// overlap. Answers nullptr when some unit needs more.
inline char *encodeShortPlain(char *d, const char16_t *s, qsizetype m)
{
    if (m >= 8) {
        const __m128i bytes = narrow(load8(s), load8(s + m - 8));
        if (notPlain(bytes))
            return nullptr;
        _mm_storel_epi64(reinterpret_cast<__m128i *>(d), bytes);
        _mm_storel_epi64(reinterpret_cast<__m128i *>(d + m - 8), _mm_unpackhi_epi64(bytes, bytes));
    } else if (m >= 4) {
        const __m128i units = _mm_unpacklo_epi64(load4(s), load4(s + m - 4));
        const __m128i bytes = narrow(units, units);
        if (notPlain(bytes) & 0xFF)
            return nullptr;
        store4(d, bytes);
        store4(d + m - 4, _mm_srli_si128(bytes, 4));
    } else {
        const __m128i units = _mm_unpacklo_epi32(load2(s), load2(s + m - 2));
        const __m128i bytes = narrow(units, units);
        if (notPlain(bytes) & 0xF)
            return nullptr;
        const quint32 four = quint32(_mm_cvtsi128_si32(bytes));
        d[0] = char(four);
        d[1] = char(four >> 8);
        d[m - 2] = char(four >> 16);
        d[m - 1] = char(four >> 24);
    }
    return d + m;
}
#endif

} // namespace

char *PropertyListWriter::encodeEscaped(char *d, const char16_t *s, qsizetype n, qsizetype &replaced)
{
    qsizetype i = 0;
#ifdef __SSE2__
    // Sixteen units at a time. The narrowed bytes are stored whole; those up
    // to the first unit that needs more are kept, and the rest are written
    // over, as every unit left makes at least one byte.
    while (n - i >= 16) {
        const __m128i bytes = narrow(load8(s + i), load8(s + i + 8));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(d), bytes);
        const unsigned care = notPlain(bytes);
        if (care == 0) {
            d += 16;
            i += 16;
            continue;
        }
        const int plain = std::countr_zero(care);
        d += plain;
        i += plain;
        d = encodeSpecial(d, s, i, n, replaced);
        // Text beyond ASCII tends to come in runs.
        while (i < n && s[i] >= 0x80)
            d = encodeSpecial(d, s, i, n, replaced);
    }
    if (n - i >= 2)
        if (char *end = encodeShortPlain(d, s + i, n - i))
            return end;
#endif
    while (i < n) {
        if (plainAscii(s[i]))
            *d++ = char(s[i++]);
        else
            d = encodeSpecial(d, s, i, n, replaced);
    }
    return d;
}

QByteArray PropertyListWriter::dictionary(std::vector<std::pair<QString, QString>> entries)
{
    std::sort(entries.begin(), entries.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    QByteArray out(kHeader);
    for (const auto &[key, value] : entries) {
        out.append("\t<key>");
        appendEscaped(out, key);
        out.append("</key>\n\t<string>");
        appendEscaped(out, value);
        out.append("</string>\n");
    }
    out.append(kFooter);
    return out;
}

bool PropertyListWriter::writeFile(const QString &path, const QByteArray &bytes, QString *error)
{
    return writeFile(path, QList<QByteArray>{bytes}, error);
}

bool PropertyListWriter::writeFile(const QString &path, const QList<QByteArray> &parts, QString *error)
{
    AtomicFile file(path);
    bool ok = file.open();
    for (const QByteArray &part : parts)
        ok = ok && file.write(part.constData(), part.size());
    ok = ok && file.commit();
    if (!ok && error)
        *error = file.errorString();
    return ok;
}
