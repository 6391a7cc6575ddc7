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
}

void PropertyListWriter::openField(std::string_view key)
{
    append("\t\t\t<key>");
    append(key);
    append("</key>\n\t\t\t<string>");
}

void PropertyListWriter::text(const QString &value)
{
    char *d = room(5 * value.size());
    m_used = encodeEscaped(d, value, m_replaced) - m_data;
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

void PropertyListWriter::field(const Key &key, const QString &value)
{
    append(key.opening());
    text(value);
    closeField();
}

void PropertyListWriter::field(const Key &key, int value)
{
    append(key.opening());
    number(value);
    closeField();
}

void PropertyListWriter::field(const Key &key, std::string_view asciiValue)
{
    append(key.opening());
    append(asciiValue);
    closeField();
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
    out.resize(at + 5 * text.size());
    qsizetype replaced = 0;
    out.resize(encodeEscaped(out.data() + at, text, replaced) - out.constData());
}

// Writes the text as UTF-8 with the markup characters escaped; the caller
// provides five bytes of room per UTF-16 unit (the longest escape).
char *PropertyListWriter::encodeEscaped(char *d, const QString &text, qsizetype &replaced)
{
    const auto *s = reinterpret_cast<const char16_t *>(text.constData());
    const qsizetype n = text.size();
    qsizetype i = 0;
#ifdef __SSE2__
    const __m128i highBits = _mm_set1_epi16(short(0xFF80));
    const __m128i amp = _mm_set1_epi16('&'), lt = _mm_set1_epi16('<'), gt = _mm_set1_epi16('>');
    const __m128i zero = _mm_setzero_si128();
    const __m128i space = _mm_set1_epi16(' ');
#endif
    while (i < n) {
#ifdef __SSE2__
        // Eight units at a time while they are plain ASCII without mark-up.
        while (i + 8 <= n) {
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i *>(s + i));
            const __m128i ascii = _mm_cmpeq_epi16(_mm_and_si128(v, highBits), zero);
            // Mark-up and control characters (tab and line ends included) leave the fast path.
            const __m128i markup =
                _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi16(v, amp), _mm_cmpeq_epi16(v, lt)),
                             _mm_or_si128(_mm_cmpeq_epi16(v, gt), _mm_cmplt_epi16(v, space)));
            if (_mm_movemask_epi8(_mm_andnot_si128(markup, ascii)) != 0xFFFF)
                break;
            _mm_storel_epi64(reinterpret_cast<__m128i *>(d), _mm_packus_epi16(v, v));
            d += 8;
            i += 8;
        }
#endif
        // The units that stopped the fast path, one by one.
        for (const qsizetype stop = std::min(n, i + 8); i < stop; ++i) {
            const char16_t c = s[i];
            if (c > u'>' && c < 0x80) { // letters and most punctuation: the common case
                *d++ = char(c);
            } else if (c < 0x80) {
                switch (c) {
                case u'&':
                    std::memcpy(d, "&amp;", 5);
                    d += 5;
                    break;
                case u'<':
                    std::memcpy(d, "&lt;", 4);
                    d += 4;
                    break;
                case u'>':
                    std::memcpy(d, "&gt;", 4);
                    d += 4;
                    break;
                case u'\t':
                case u'\n':
                    *d++ = char(c);
                    break;
                case u'\r':
                    std::memcpy(d, "&#13;", 5);
                    d += 5;
                    break;
                default:
                    if (c < 0x20) {
                        std::memcpy(d, "\xEF\xBF\xBD", 3);
                        d += 3;
                        ++replaced;
                    } else {
                        *d++ = char(c);
                    }
                }
            } else if (c < 0x800) {
                *d++ = char(0xC0 | (c >> 6));
                *d++ = char(0x80 | (c & 0x3F));
            } else if (c >= 0xD800 && c < 0xDC00 && i + 1 < n && s[i + 1] >= 0xDC00 && s[i + 1] < 0xE000) {
                const char32_t cp = 0x10000 + ((char32_t(c) - 0xD800) << 10) + (char32_t(s[i + 1]) - 0xDC00);
                ++i;
                *d++ = char(0xF0 | (cp >> 18));
                *d++ = char(0x80 | ((cp >> 12) & 0x3F));
                *d++ = char(0x80 | ((cp >> 6) & 0x3F));
                *d++ = char(0x80 | (cp & 0x3F));
            } else {
                // A lone surrogate cannot be written as UTF-8, nor U+FFFE or U+FFFF
                // in XML: the replacement character stands in.
                const bool forbidden = (c >= 0xD800 && c < 0xE000) || c >= 0xFFFE;
                replaced += forbidden;
                const char32_t cp = forbidden ? 0xFFFD : c;
                *d++ = char(0xE0 | (cp >> 12));
                *d++ = char(0x80 | ((cp >> 6) & 0x3F));
                *d++ = char(0x80 | (cp & 0x3F));
            }
        }
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
