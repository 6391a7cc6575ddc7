#include "core/PropertyListWriter.h"

#include <QSaveFile>

#include <algorithm>

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
        case '&': out.append("&amp;"); break;
        case '<': out.append("&lt;"); break;
        case '>': out.append("&gt;"); break;
        default: out.append(c);
        }
    }
    out.append("</key>\n");
}

} // namespace

PropertyListWriter::PropertyListWriter(std::string_view collectionKey, qsizetype expectedBytes)
{
    m_out.reserve(expectedBytes + 512);
    m_out.append(kHeader);
    appendKey(m_out, "\t", collectionKey);
    m_out.append("\t<array>\n");
}

void PropertyListWriter::beginRecord()
{
    m_out.append("\t\t<dict>\n");
}

void PropertyListWriter::field(std::string_view key, const QString &value)
{
    appendKey(m_out, "\t\t\t", key);
    m_out.append("\t\t\t<string>");
    appendEscaped(m_out, value);
    m_out.append("</string>\n");
}

void PropertyListWriter::endRecord()
{
    m_out.append("\t\t</dict>\n");
}

void PropertyListWriter::finish()
{
    m_out.append("\t</array>\n");
    m_out.append(kFooter);
}

void PropertyListWriter::appendEscaped(QByteArray &out, const QString &text)
{
    const auto *s = reinterpret_cast<const char16_t *>(text.constData());
    const qsizetype n = text.size();
    // ASCII runs without markup characters are copied in one go.
    qsizetype i = 0;
    while (i < n) {
        qsizetype run = i;
        while (run < n && s[run] < 0x80 && s[run] != u'&' && s[run] != u'<' && s[run] != u'>')
            ++run;
        if (run > i) {
            const qsizetype start = out.size();
            out.resize(start + (run - i));
            char *dst = out.data() + start;
            for (qsizetype k = i; k < run; ++k)
                *dst++ = char(s[k]);
            i = run;
            if (i >= n)
                break;
        }
        const char16_t c = s[i];
        if (c == u'&') {
            out.append("&amp;");
            ++i;
        } else if (c == u'<') {
            out.append("&lt;");
            ++i;
        } else if (c == u'>') {
            out.append("&gt;");
            ++i;
        } else {
            // A run of non-ASCII text, converted as a whole.
            qsizetype end = i;
            while (end < n && s[end] >= 0x80)
                ++end;
            out.append(QStringView(s + i, end - i).toUtf8());
            i = end;
        }
    }
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
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        if (error)
            *error = file.errorString();
        return false;
    }
    if (file.write(bytes) != bytes.size()) {
        if (error)
            *error = file.errorString();
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        if (error)
            *error = file.errorString();
        return false;
    }
    return true;
}
