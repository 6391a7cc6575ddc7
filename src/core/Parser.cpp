#include "core/Parser.h"

#include "core/Log.h"
#include "core/lwToolBox.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <limits>

using namespace Qt::Literals::StringLiterals;

void Parser::initWithFilePath(const QString &path)
{
    QString expanded = path;
    if (expanded == "~"_L1 || expanded.startsWith("~/"_L1))
        expanded = QDir::homePath() % QStringView(expanded).sliced(1);

    QByteArray bytes;
    QFile file(expanded);
    if (file.open(QIODevice::ReadOnly))
        bytes = file.readAll();
    initWithData(bytes);
    // Standard output belongs to the command-line tool's results.
    lwLog(QStringLiteral("%1 bytes read").arg(m_l));
}

void Parser::initWithData(const QByteArray &data)
{
    m_data = data;
    // counter is a signed 32-bit position: never let it run past what it can hold.
    const qsizetype readable = std::min<qsizetype>(m_data.size(), std::numeric_limits<qint32>::max());
    m_l = static_cast<quint32>(readable);
    m_indent = 0;
}

int Parser::getNextByte()
{
    // ">=" rather than "==": a second, shorter input must not be read past its end.
    if (static_cast<quint32>(m_counter) >= m_l)
        return 0;
    m_aBuffer = static_cast<uchar>(m_data.at(m_counter));
    ++m_counter;
    return 1;
}

std::unique_ptr<XmlTag> Parser::getTag(bool alreadyAtOpeningBracket)
{
    if (m_stopped)
        return nullptr;
    auto tag = std::make_unique<XmlTag>();

    if (!alreadyAtOpeningBracket) {
        while (m_aBuffer != '<') {
            if (!getNextByte())
                return nullptr;
        }
    }

    std::array<char, kMaxTagBytes> buffer;
    int used = 0;
    while (m_aBuffer != '>') {
        if (!getNextByte())
            return nullptr;
        if (m_aBuffer == '/') {
            tag->setClosing(true);
        } else if (m_aBuffer != '>') {
            if (used == kMaxTagBytes) {
                m_stopped = true;
                return nullptr;
            }
            buffer[used++] = static_cast<char>(m_aBuffer);
        }
    }
    tag->setData(QString::fromLatin1(buffer.data(), used));
    return tag;
}

QString Parser::getData()
{
    if (m_stopped)
        return QString();

    std::array<char, kMaxValueBytes> buffer;
    int used = 0;
    for (;;) {
        if (!getNextByte())
            return QString();
        if (m_aBuffer == '<')
            break;
        if (used == kMaxValueBytes) {
            m_stopped = true;
            return QString();
        }
        buffer[used++] = static_cast<char>(m_aBuffer);
    }

    // 7-bit ASCII only: any other byte makes the value undecodable.
    if (std::any_of(buffer.begin(), buffer.begin() + used, [](char c) { return static_cast<uchar>(c) >= 0x80; }))
        return QString();

    // Trim line feeds and carriage returns only; spaces and tabs stay.
    auto isLineBreak = [](char c) { return c == '\n' || c == '\r'; };
    int first = 0;
    int last = used;
    while (first < last && isLineBreak(buffer[first]))
        ++first;
    while (last > first && isLineBreak(buffer[last - 1]))
        --last;
    // buffer.data() is never null, so an empty value is "" and not none.
    QString text = QString::fromLatin1(buffer.data() + first, last - first);

    // One replacement each, &amp; first: "&amp;lt;" comes out as "<".
    text = lwToolBox::replaceSubstring(u"&amp;"_s, u"&"_s, text);
    text = lwToolBox::replaceSubstring(u"&lt;"_s, u"<"_s, text);
    text = lwToolBox::replaceSubstring(u"&gt;"_s, u">"_s, text);
    return text;
}

std::unique_ptr<DbItem> Parser::getItem()
{
    if (m_stopped)
        return nullptr;
    auto item = std::make_unique<DbItem>();
    bool newRecord = false;

    std::unique_ptr<XmlTag> tag;
    while (m_indent <= 3) {
        tag = getTag(false);
        if (!tag)
            return nullptr;
        if (!tag->isClosing()) {
            ++m_indent;
            if (m_indent == 2)
                m_grandParent = tag->getData();
            if (m_indent == 3) {
                m_parent = tag->getData();
                newRecord = true;
            }
        } else {
            --m_indent;
        }
        if (m_indent == 0)
            return nullptr;
    }

    // Depth 4: tag is a leaf's opening tag. (The loop always runs: the depth
    // is at most 3 between items.)
    if (!tag)
        return nullptr;
    m_content = getData();
    if (m_content.isNull())
        return nullptr;

    item->setData(m_content);
    item->setName(tag->getData());
    item->setParentName(m_parent);
    item->setGrandParentName(m_grandParent);
    item->setNewParent(newRecord);

    // The leaf's closing tag (the current byte is its "<"); it is not checked,
    // and the item is handed out even when that tag cannot be read.
    getTag(true);
    --m_indent;
    return item;
}
