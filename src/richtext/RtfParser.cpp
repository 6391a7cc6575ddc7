#include "richtext/RtfParser.h"

#include "richtext/RtfReader.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QTextDocument>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace {

constexpr qreal kTwipsPerPixel = 15.0;
constexpr int kMaxTwips = 100000;
constexpr int kMaxTabs = 64;
constexpr int kMaxTableEntries = 4096; // fonts, colours
constexpr int kMaxDestinationText = 4096;
constexpr qint64 kMaxPicturePixels = 16 * 1024 * 1024;
constexpr qint64 kPixelBudget = 64 * 1024 * 1024; // for all the pictures of a document
constexpr qreal kDefaultPictureSide = 16;
constexpr qint64 kMaxAttachmentSize = 64 * 1024 * 1024;

bool toggle(bool hasParameter, int parameter)
{
    return !hasParameter || parameter != 0;
}

qreal pixels(int twips)
{
    return std::clamp(twips, -kMaxTwips, kMaxTwips) / kTwipsPerPixel;
}

// Cocoa names fonts by their PostScript names ("Helvetica-Bold"); the
// family is what a QFont can find. Bold and italic come from \b and \i.
QString familyFromFontName(const QString &name)
{
    static const QStringList styles = {
        QStringLiteral("Regular"),     QStringLiteral("Roman"),    QStringLiteral("Bold"),
        QStringLiteral("Italic"),      QStringLiteral("Oblique"),  QStringLiteral("BoldItalic"),
        QStringLiteral("BoldOblique"), QStringLiteral("Light"),    QStringLiteral("LightItalic"),
        QStringLiteral("Medium"),      QStringLiteral("Semibold"), QStringLiteral("Book"),
    };
    const qsizetype dash = name.lastIndexOf(QLatin1Char('-'));
    if (dash > 0 && styles.contains(name.mid(dash + 1)))
        return name.left(dash);
    return name;
}

// The target of a HYPERLINK field instruction, or "".
QString hyperlinkTarget(const QString &instruction)
{
    const QString text = instruction.trimmed();
    if (!text.startsWith(QLatin1String("HYPERLINK"), Qt::CaseInsensitive))
        return {};
    const QString rest = text.mid(9).trimmed();
    if (rest.startsWith(QLatin1Char('"'))) {
        const qsizetype end = rest.indexOf(QLatin1Char('"'), 1);
        return end > 0 ? rest.mid(1, end - 1) : rest.mid(1);
    }
    return rest.section(QLatin1Char(' '), 0, 0);
}

bool isSafeAttachmentName(const QString &name)
{
    if (name.isEmpty() || QDir::isAbsolutePath(name) || name.contains(QLatin1Char('\\')))
        return false;
    const QString clean = QDir::cleanPath(name);
    return clean != QLatin1String("..") && !clean.startsWith(QLatin1String("../"));
}

// An empty picture: the image format gives it its size on the page.
QImage placeholderImage()
{
    QImage image(1, 1, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    return image;
}

} // namespace

RtfParser::RtfParser(QTextDocument *document, const QString &packageDir)
    : m_document(document), m_packageDir(packageDir), m_pixelBudget(kPixelBudget)
{
}

bool RtfParser::parse(QByteArrayView data)
{
    qsizetype start = 0;
    if (data.startsWith("\xEF\xBB\xBF"))
        start = 3;
    while (start < data.size() &&
           (data[start] == ' ' || data[start] == '\t' || data[start] == '\r' || data[start] == '\n'))
        ++start;
    if (!data.sliced(start).startsWith("{\\rtf"))
        return false;

    m_document->clear();
    m_cursor = QTextCursor(m_document);
    RtfTokenizer tokenizer(data.sliced(start));
    while (!m_done) {
        const RtfTokenizer::Token token = tokenizer.next();
        if (token.type == RtfTokenizer::Type::End)
            break;
        if (m_overflowDepth > 0 && token.type != RtfTokenizer::Type::GroupStart &&
            token.type != RtfTokenizer::Type::GroupEnd)
            continue;
        switch (token.type) {
        case RtfTokenizer::Type::End:
            break;
        case RtfTokenizer::Type::GroupStart:
            pushGroup();
            break;
        case RtfTokenizer::Type::GroupEnd:
            popGroup();
            break;
        case RtfTokenizer::Type::ControlWord:
            controlWord(token.word, token.hasParameter, token.parameter);
            break;
        case RtfTokenizer::Type::ControlSymbol:
            controlSymbol(token.symbol);
            break;
        case RtfTokenizer::Type::HexByte: {
            const char byte = char(token.byte);
            textBytes(QByteArrayView(&byte, 1));
            break;
        }
        case RtfTokenizer::Type::Text:
            textBytes(token.data);
            break;
        case RtfTokenizer::Type::Binary:
            if (m_skipCount > 0)
                --m_skipCount;
            else if (state().destination == Destination::Picture)
                m_picture.data += token.data;
            break;
        }
    }
    // A truncated file: close what is open and keep what was read.
    while (!m_done && !m_stack.isEmpty())
        popGroup();

    const auto font = m_fonts.constFind(m_defaultFont);
    if (font != m_fonts.constEnd() && !font->family.isEmpty()) {
        // Text added later (placeholders, inserted HTML) matches the document.
        QFont defaultFont = m_document->defaultFont();
        defaultFont.setFamilies({font->family});
        defaultFont.setPointSizeF(12);
        m_document->setDefaultFont(defaultFont);
    }
    return true;
}

void RtfParser::pushGroup()
{
    flushBytes();
    m_skipCount = 0;
    if (m_overflowDepth > 0 || m_stack.size() >= kMaxDepth) {
        ++m_overflowDepth;
        return;
    }
    if (m_stack.isEmpty()) {
        m_stack.append(GroupState());
        return;
    }
    GroupState group = state();
    group.ignorable = false;
    group.opensField = false;
    group.dropAttachmentChar = false;
    m_stack.append(group);
}

void RtfParser::popGroup()
{
    flushBytes();
    m_skipCount = 0;
    if (m_overflowDepth > 0) {
        --m_overflowDepth;
        return;
    }
    if (m_stack.size() <= 1) {
        // The document's own group closes: anything after it is not RTF.
        finish();
        m_done = true;
        return;
    }
    const GroupState closed = m_stack.takeLast();
    if (closed.opensField && !m_fields.isEmpty())
        m_fields.removeLast();
    endDestination(closed);
}

void RtfParser::endDestination(const GroupState &closed)
{
    const Destination parent = state().destination;
    switch (closed.destination) {
    case Destination::FontTable:
        // Entries may sit in groups of their own, ended by "}" rather than ";".
        if (m_fontIndex >= 0)
            commitFont();
        break;
    case Destination::Title:
        if (parent != Destination::Title)
            m_document->setMetaInformation(QTextDocument::DocumentTitle, m_destinationText.trimmed());
        break;
    case Destination::Picture:
        if (parent != Destination::Picture)
            finishPicture();
        break;
    case Destination::Attachment:
        if (parent != Destination::Attachment) {
            finishAttachment();
            // Cocoa follows an attachment with a stand-in character.
            state().dropAttachmentChar = true;
        }
        break;
    default:
        break;
    }
}

void RtfParser::controlWord(const QByteArray &word, bool hasParameter, int parameter)
{
    flushBytes();
    if (m_skipCount > 0) {
        // A fallback for the \u before: a control word counts as one character.
        --m_skipCount;
        return;
    }
    GroupState &group = state();
    const bool ignorable = std::exchange(group.ignorable, false);
    if (group.destination == Destination::Skip)
        return;

    if (word == "u") {
        if (hasParameter) {
            // Sixteen-bit signed values: -4064 is U+F020.
            const int value = parameter < 0 ? parameter + 65536 : parameter;
            if (value >= 0 && value <= 0xFFFF)
                unicodeCharacter(char32_t(value));
            m_skipCount = state().unicodeSkip;
        }
        return;
    }
    if (word == "uc") {
        group.unicodeSkip = std::clamp(hasParameter ? parameter : 1, 0, 16);
        return;
    }
    if (destinationWord(word))
        return;
    if (ignorable) {
        group.destination = Destination::Skip;
        return;
    }

    switch (group.destination) {
    case Destination::FontTable:
        if (word == "f" && hasParameter) {
            if (m_fontIndex >= 0)
                commitFont();
            m_fontIndex = parameter;
        } else if (word == "fcharset") {
            m_fontCharset = parameter;
        } else if (word == "cpg") {
            m_fontCodepage = parameter;
        }
        return;
    case Destination::ColorTable:
        if (word == "red")
            m_red = parameter;
        else if (word == "green")
            m_green = parameter;
        else if (word == "blue")
            m_blue = parameter;
        return;
    case Destination::Picture:
        if (word == "pngblip" || word == "jpegblip" || word == "wmetafile" || word == "emfblip" || word == "macpict" ||
            word == "dibitmap" || word == "wbitmap" || word == "pmmetafile")
            m_picture.kind = word;
        else if (word == "picw")
            m_picture.width = parameter;
        else if (word == "pich")
            m_picture.height = parameter;
        else if (word == "picwgoal")
            m_picture.goalWidth = parameter;
        else if (word == "pichgoal")
            m_picture.goalHeight = parameter;
        else if (word == "picscalex")
            m_picture.scaleX = std::clamp(parameter, 1, 1000);
        else if (word == "picscaley")
            m_picture.scaleY = std::clamp(parameter, 1, 1000);
        return;
    case Destination::Attachment:
        if (word == "width")
            m_attachmentWidth = parameter;
        else if (word == "height")
            m_attachmentHeight = parameter;
        return;
    case Destination::Text:
        break;
    default:
        return;
    }

    if (word == "ansi") {
        m_documentCodepage = TextCodepage::kWindowsLatin1;
    } else if (word == "mac") {
        m_documentCodepage = TextCodepage::kMacRoman;
    } else if (word == "pc") {
        m_documentCodepage = 437;
    } else if (word == "pca") {
        m_documentCodepage = 850;
    } else if (word == "ansicpg") {
        if (!TextCodepage::codecName(parameter).isEmpty())
            m_documentCodepage = parameter;
    } else if (word == "deff") {
        m_defaultFont = parameter;
    } else if (characterWord(word, hasParameter, parameter) || paragraphWord(word, hasParameter, parameter) ||
               tableWord(word, hasParameter, parameter)) {
        return;
    } else if (word == "par" || word == "sect") {
        endParagraph(false);
    } else if (word == "page") {
        endParagraph(false);
        m_pageBreakNext = true;
    } else {
        static const QHash<QByteArray, char16_t> characters = {
            {"line", 0x2028},      {"tab", 0x09},       {"emdash", 0x2014},  {"endash", 0x2013},
            {"bullet", 0x2022},    {"lquote", 0x2018},  {"rquote", 0x2019},  {"ldblquote", 0x201C},
            {"rdblquote", 0x201D}, {"emspace", 0x2003}, {"enspace", 0x2002}, {"qmspace", 0x2005},
            {"zwj", 0x200D},       {"zwnj", 0x200C},    {"ltrmark", 0x200E}, {"rtlmark", 0x200F},
        };
        const auto it = characters.constFind(word);
        if (it != characters.constEnd())
            appendDecoded(QString(QChar(*it)));
    }
}

bool RtfParser::destinationWord(const QByteArray &word)
{
    GroupState &group = state();
    if (group.destination == Destination::Info) {
        if (word != "title")
            return false;
        group.destination = Destination::Title;
        m_destinationText.clear();
        return true;
    }
    if (group.destination != Destination::Text)
        return false;

    static const QSet<QByteArray> skipped = {
        "stylesheet",
        "header",
        "headerl",
        "headerr",
        "headerf",
        "footer",
        "footerl",
        "footerr",
        "footerf",
        "footnote",
        "annotation",
        "atnid",
        "atnauthor",
        "pn",
        "xe",
        "tc",
        "txe",
        "rxe",
        "nonshppict",
        "objdata",
        "objclass",
        "themedata",
        "colorschememapping",
        "datastore",
        "latentstyles",
        "listtable",
        "listoverridetable",
        "revtbl",
        "rsidtbl",
        "generator",
        "filetbl",
        "pgdsctbl",
        "docvar",
        "private",
        "userprops",
        "xmlnstbl",
        "bkmkstart",
        "bkmkend",
        "ftnsep",
        "ftnsepc",
        "aftnsep",
        "aftnsepc",
        "comment",
        "template",
        "mmathPr",
        "expandedcolortbl",
        "shpinst",
        "fldtype",
        "pgptbl",
        "title",
        "author",
    };
    // Groups that hold ordinary text: a list's bullet, a shape's rendering.
    static const QSet<QByteArray> transparent = {"shppict", "result", "shprslt", "listtext", "pntext"};

    if (word == "fonttbl") {
        group.destination = Destination::FontTable;
        m_fontIndex = -1;
        m_fontName.clear();
    } else if (word == "colortbl") {
        group.destination = Destination::ColorTable;
        m_colors.clear();
        m_red = m_green = m_blue = -1;
    } else if (word == "info") {
        group.destination = Destination::Info;
    } else if (word == "pict") {
        group.destination = Destination::Picture;
        m_picture = Picture();
    } else if (word == "NeXTGraphic") {
        group.destination = Destination::Attachment;
        m_destinationText.clear();
        m_attachmentWidth = m_attachmentHeight = 0;
    } else if (word == "field") {
        group.opensField = true;
        m_fields.append(QString());
    } else if (word == "fldinst") {
        group.destination = Destination::FieldInstruction;
    } else if (word == "fldrslt") {
        if (!m_fields.isEmpty()) {
            const QString target = hyperlinkTarget(m_fields.last());
            if (!target.isEmpty())
                group.href = target;
        }
    } else if (skipped.contains(word)) {
        group.destination = Destination::Skip;
    } else {
        return transparent.contains(word);
    }
    return true;
}

bool RtfParser::characterWord(const QByteArray &word, bool hasParameter, int parameter)
{
    CharState &chars = state().chars;
    const bool on = toggle(hasParameter, parameter);
    if (word == "plain") {
        chars = CharState();
    } else if (word == "f") {
        chars.font = parameter;
    } else if (word == "fs") {
        if (hasParameter && parameter > 0)
            chars.halfPoints = std::clamp(parameter, 2, 3276);
    } else if (word == "b") {
        chars.bold = on;
    } else if (word == "i") {
        chars.italic = on;
    } else if (word == "strike" || word == "striked") {
        chars.strike = on;
    } else if (word == "ul" || word == "uldb" || word == "ulw" || word == "ulth" || word == "ulthd") {
        chars.underline = on ? QTextCharFormat::SingleUnderline : QTextCharFormat::NoUnderline;
    } else if (word == "ulnone") {
        chars.underline = QTextCharFormat::NoUnderline;
    } else if (word == "uld") {
        chars.underline = on ? QTextCharFormat::DotLine : QTextCharFormat::NoUnderline;
    } else if (word == "uldash") {
        chars.underline = on ? QTextCharFormat::DashUnderline : QTextCharFormat::NoUnderline;
    } else if (word == "uldashd") {
        chars.underline = on ? QTextCharFormat::DashDotLine : QTextCharFormat::NoUnderline;
    } else if (word == "uldashdd") {
        chars.underline = on ? QTextCharFormat::DashDotDotLine : QTextCharFormat::NoUnderline;
    } else if (word == "ulwave") {
        chars.underline = on ? QTextCharFormat::WaveUnderline : QTextCharFormat::NoUnderline;
    } else if (word == "cf") {
        chars.foreground = parameter;
    } else if (word == "cb" || word == "highlight" || word == "chcbpat") {
        chars.background = parameter;
    } else if (word == "super") {
        chars.verticalAlignment = on ? QTextCharFormat::AlignSuperScript : QTextCharFormat::AlignNormal;
    } else if (word == "sub") {
        chars.verticalAlignment = on ? QTextCharFormat::AlignSubScript : QTextCharFormat::AlignNormal;
    } else if (word == "nosupersub") {
        chars.verticalAlignment = QTextCharFormat::AlignNormal;
    } else if (word == "up") {
        chars.verticalAlignment = parameter > 0 ? QTextCharFormat::AlignSuperScript : QTextCharFormat::AlignNormal;
    } else if (word == "dn") {
        chars.verticalAlignment = parameter > 0 ? QTextCharFormat::AlignSubScript : QTextCharFormat::AlignNormal;
    } else {
        return false;
    }
    return true;
}

bool RtfParser::paragraphWord(const QByteArray &word, bool hasParameter, int parameter)
{
    ParaState &para = state().para;
    if (word == "pard") {
        para = ParaState();
    } else if (word == "ql") {
        para.alignment = Qt::AlignLeft;
    } else if (word == "qc") {
        para.alignment = Qt::AlignHCenter;
    } else if (word == "qr") {
        para.alignment = Qt::AlignRight;
    } else if (word == "qj") {
        para.alignment = Qt::AlignJustify;
    } else if (word == "li") {
        para.leftIndent = parameter;
    } else if (word == "ri") {
        para.rightIndent = parameter;
    } else if (word == "fi") {
        para.firstIndent = parameter;
    } else if (word == "sb") {
        para.spaceBefore = parameter;
    } else if (word == "sa") {
        para.spaceAfter = parameter;
    } else if (word == "tqr") {
        para.nextTabType = QTextOption::RightTab;
    } else if (word == "tqc") {
        para.nextTabType = QTextOption::CenterTab;
    } else if (word == "tqdec") {
        para.nextTabType = QTextOption::DelimiterTab;
    } else if (word == "tx" || word == "tb") {
        if (word == "tx" && para.tabs.size() < kMaxTabs) {
            const QChar delimiter = para.nextTabType == QTextOption::DelimiterTab ? QLatin1Char('.') : QChar();
            para.tabs.append(QTextOption::Tab(pixels(parameter), para.nextTabType, delimiter));
        }
        para.nextTabType = QTextOption::LeftTab;
    } else if (word == "intbl") {
        para.inTable = toggle(hasParameter, parameter);
    } else if (word == "pagebb") {
        para.pageBreakBefore = toggle(hasParameter, parameter);
    } else {
        return false;
    }
    return true;
}

bool RtfParser::tableWord(const QByteArray &word, bool hasParameter, int parameter)
{
    if (word == "trowd") {
        m_table.resetRowDefinition();
        m_pendingBorder = false;
    } else if (word == "cellx") {
        m_table.endCellDefinition(parameter);
        m_pendingBorder = false;
    } else if (word == "cell") {
        endParagraph(true);
    } else if (word == "row") {
        if (!m_paragraph.isEmpty())
            endParagraph(true);
        m_table.endRow();
    } else if (word == "nestcell") {
        appendDecoded(QStringLiteral("\t"));
    } else if (word == "nestrow") {
        // Nested tables are flattened into their outer cell.
        endParagraph(false);
    } else if (word == "clcbpat") {
        if (parameter >= 0 && parameter < m_colors.size())
            m_table.pendingCell().background = m_colors.at(parameter);
    } else if (word == "clmrg") {
        m_table.pendingCell().mergedLeft = true;
    } else if (word == "clvmrg") {
        m_table.pendingCell().mergedAbove = true;
    } else if (word == "trgaph") {
        m_table.setCellPadding(parameter);
    } else if (word == "trql") {
        m_table.setAlignment(Qt::AlignLeft);
    } else if (word == "trqc") {
        m_table.setAlignment(Qt::AlignHCenter);
    } else if (word == "trqr") {
        m_table.setAlignment(Qt::AlignRight);
    } else if (word.startsWith("clbrdr") || word.startsWith("trbrdr")) {
        m_pendingBorder = true;
    } else if (word == "brdrnone" || word == "brdrnil") {
        m_pendingBorder = false;
    } else if (word == "brdrw") {
        if (m_pendingBorder)
            m_table.noteBorder(hasParameter ? std::clamp(parameter, 1, 1440) : 1);
    } else if (word.startsWith("brdr")) {
        if (m_pendingBorder && word != "brdrcf" && word != "brdrsp")
            m_table.noteBorder(1);
    } else {
        return false;
    }
    return true;
}

void RtfParser::controlSymbol(char symbol)
{
    if (symbol == '*') {
        state().ignorable = true;
        return;
    }
    if (symbol == '\\' || symbol == '{' || symbol == '}') {
        textBytes(QByteArrayView(&symbol, 1));
        return;
    }
    flushBytes();
    if (m_skipCount > 0) {
        --m_skipCount;
        return;
    }
    if (state().destination != Destination::Text)
        return;
    switch (symbol) {
    case '~':
        appendDecoded(QString(QChar(0x00A0)));
        break;
    case '-':
        appendDecoded(QString(QChar(0x00AD)));
        break;
    case '_':
        appendDecoded(QString(QChar(0x2011)));
        break;
    case '\t':
        appendDecoded(QStringLiteral("\t"));
        break;
    case '\n':
        endParagraph(false);
        break; // Cocoa ends paragraphs with a backslash-newline
    default:
        break;
    }
}

void RtfParser::textBytes(QByteArrayView bytes)
{
    switch (state().destination) {
    case Destination::Skip:
    case Destination::Info:
        return;
    case Destination::Picture:
        for (char c : bytes) {
            int value = -1;
            if (c >= '0' && c <= '9')
                value = c - '0';
            else if (c >= 'a' && c <= 'f')
                value = c - 'a' + 10;
            else if (c >= 'A' && c <= 'F')
                value = c - 'A' + 10;
            if (value < 0)
                continue;
            if (m_picture.highNibble < 0) {
                m_picture.highNibble = value;
            } else {
                m_picture.data.append(char(m_picture.highNibble * 16 + value));
                m_picture.highNibble = -1;
            }
        }
        return;
    case Destination::ColorTable:
        for (char c : bytes)
            if (c == ';')
                commitColor();
        return;
    default:
        break;
    }
    for (char c : bytes) {
        if (m_skipCount > 0) {
            --m_skipCount;
            continue;
        }
        m_pendingBytes.append(c);
    }
}

void RtfParser::unicodeCharacter(char32_t character)
{
    flushBytes();
    if (character >= 0xD800 && character <= 0xDBFF) {
        m_highSurrogate = char16_t(character);
        return;
    }
    if (character >= 0xDC00 && character <= 0xDFFF) {
        if (m_highSurrogate) {
            const QChar pair[2] = {QChar(m_highSurrogate), QChar(char16_t(character))};
            m_highSurrogate = 0;
            appendDecoded(QString(pair, 2));
        }
        return;
    }
    m_highSurrogate = 0;
    appendDecoded(QString(QChar(char16_t(character))));
}

int RtfParser::currentCodepage() const
{
    if (m_stack.last().destination == Destination::FontTable) {
        if (m_fontCodepage > 0)
            return m_fontCodepage;
        const int codepage = TextCodepage::codepageForCharset(m_fontCharset);
        return codepage ? codepage : m_documentCodepage;
    }
    const int index = m_stack.last().chars.font >= 0 ? m_stack.last().chars.font : m_defaultFont;
    const auto font = m_fonts.constFind(index);
    if (font != m_fonts.constEnd() && font->codepage)
        return font->codepage;
    return m_documentCodepage;
}

void RtfParser::flushBytes()
{
    if (m_pendingBytes.isEmpty())
        return;
    m_highSurrogate = 0;
    const QString text = m_codepages.decode(currentCodepage(), m_pendingBytes);
    m_pendingBytes.clear();
    appendDecoded(text);
}

void RtfParser::appendDecoded(const QString &decoded)
{
    GroupState &group = state();
    switch (group.destination) {
    case Destination::Text: {
        QString text = decoded;
        if (group.dropAttachmentChar && !text.isEmpty()) {
            group.dropAttachmentChar = false;
            if (text.front() == QChar(0x00AC) || text.front() == QChar::ObjectReplacementCharacter)
                text.remove(0, 1);
        }
        QString clean;
        clean.reserve(text.size());
        for (QChar ch : std::as_const(text)) {
            const char16_t u = ch.unicode();
            // Characters QTextDocument gives a meaning of its own are dropped.
            if ((u < 0x20 && u != '\t') || u == 0xFFFC || u == 0xFDD0 || u == 0xFDD1 || u == 0xFFFE || u == 0xFFFF)
                continue;
            clean.append(u == 0x2029 ? QChar(QChar::LineSeparator) : ch);
        }
        m_paragraph.append(clean, charFormat(group));
        break;
    }
    case Destination::FontTable:
        for (QChar ch : decoded) {
            if (ch == QLatin1Char(';'))
                commitFont();
            else if (m_fontName.size() < kMaxDestinationText)
                m_fontName.append(ch);
        }
        break;
    case Destination::Title:
    case Destination::Attachment:
        if (m_destinationText.size() < kMaxDestinationText)
            m_destinationText += decoded;
        break;
    case Destination::FieldInstruction:
        if (!m_fields.isEmpty() && m_fields.last().size() < kMaxDestinationText)
            m_fields.last() += decoded;
        break;
    default:
        break;
    }
}

QTextCharFormat RtfParser::charFormat(const GroupState &group) const
{
    const CharState &chars = group.chars;
    QTextCharFormat format;
    const auto font = m_fonts.constFind(chars.font >= 0 ? chars.font : m_defaultFont);
    if (font != m_fonts.constEnd() && !font->family.isEmpty())
        format.setFontFamilies({font->family});
    format.setFontPointSize(chars.halfPoints / 2.0);
    if (chars.bold)
        format.setFontWeight(QFont::Bold);
    if (chars.italic)
        format.setFontItalic(true);
    if (chars.underline != QTextCharFormat::NoUnderline)
        format.setUnderlineStyle(QTextCharFormat::UnderlineStyle(chars.underline));
    if (chars.strike)
        format.setFontStrikeOut(true);
    if (chars.foreground >= 0 && chars.foreground < m_colors.size() && m_colors.at(chars.foreground).isValid())
        format.setForeground(m_colors.at(chars.foreground));
    if (chars.background >= 0 && chars.background < m_colors.size() && m_colors.at(chars.background).isValid())
        format.setBackground(m_colors.at(chars.background));
    if (chars.verticalAlignment != QTextCharFormat::AlignNormal)
        format.setVerticalAlignment(QTextCharFormat::VerticalAlignment(chars.verticalAlignment));
    if (!group.href.isEmpty()) {
        format.setAnchor(true);
        format.setAnchorHref(group.href);
    }
    return format;
}

QTextBlockFormat RtfParser::blockFormat(const ParaState &para) const
{
    QTextBlockFormat format;
    if (para.alignment != Qt::AlignLeft)
        format.setAlignment(para.alignment);
    if (para.leftIndent)
        format.setLeftMargin(pixels(para.leftIndent));
    if (para.rightIndent)
        format.setRightMargin(pixels(para.rightIndent));
    if (para.firstIndent)
        format.setTextIndent(pixels(para.firstIndent));
    if (para.spaceBefore)
        format.setTopMargin(pixels(para.spaceBefore));
    if (para.spaceAfter)
        format.setBottomMargin(pixels(para.spaceAfter));
    if (!para.tabs.isEmpty())
        format.setTabPositions(para.tabs);
    if (para.pageBreakBefore)
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    return format;
}

void RtfParser::endParagraph(bool endsCell)
{
    flushBytes();
    const GroupState &group = state();
    m_paragraph.format = blockFormat(group.para);
    if (std::exchange(m_pageBreakNext, false))
        m_paragraph.format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    m_paragraph.markFormat = charFormat(group);
    if (endsCell) {
        m_table.endCell(m_paragraph);
    } else if (group.para.inTable) {
        m_table.addParagraph(m_paragraph);
    } else {
        flushTable();
        emitParagraph(m_paragraph);
    }
    m_paragraph = RtfParagraph();
}

void RtfParser::emitParagraph(const RtfParagraph &paragraph)
{
    // The mark of the block after a table is the table's end: its format
    // belongs to the table.
    const bool afterTable = m_blockPending && m_cursor.block().previous().isValid();
    if (!m_blockPending)
        m_cursor.insertBlock();
    m_blockPending = false;
    paragraph.fill(m_cursor, !afterTable);
}

void RtfParser::flushTable()
{
    if (m_table.isEmpty())
        return;
    // After a paragraph the table follows its text; at the start, or after
    // another table, it takes the empty block QTextDocument keeps before it.
    if (QTextTable *table = m_table.insert(m_cursor)) {
        m_cursor = table->lastCursorPosition();
        m_cursor.movePosition(QTextCursor::NextBlock);
        m_blockPending = true;
    }
}

void RtfParser::finish()
{
    flushBytes();
    if (!m_paragraph.isEmpty() && state().para.inTable)
        endParagraph(true);
    flushTable();
    // An empty last paragraph is what follows the final \par: no block.
    if (!m_paragraph.isEmpty()) {
        m_paragraph.format = blockFormat(state().para);
        m_paragraph.markFormat = charFormat(state());
        emitParagraph(m_paragraph);
        m_paragraph = RtfParagraph();
    }
}

void RtfParser::commitFont()
{
    if (m_fontIndex >= 0 && (m_fonts.size() < kMaxTableEntries || m_fonts.contains(m_fontIndex))) {
        Font font;
        font.family = familyFromFontName(m_fontName.trimmed());
        font.codepage = m_fontCodepage > 0 ? m_fontCodepage : TextCodepage::codepageForCharset(m_fontCharset);
        m_fonts.insert(m_fontIndex, font);
    }
    m_fontIndex = -1;
    m_fontCharset = 0;
    m_fontCodepage = 0;
    m_fontName.clear();
}

void RtfParser::commitColor()
{
    if (m_colors.size() < kMaxTableEntries) {
        if (m_red < 0 && m_green < 0 && m_blue < 0)
            m_colors.append(QColor()); // "auto": no colour of its own
        else
            m_colors.append(QColor(std::clamp(m_red, 0, 255), std::clamp(m_green, 0, 255), std::clamp(m_blue, 0, 255)));
    }
    m_red = m_green = m_blue = -1;
}

void RtfParser::finishPicture()
{
    const Picture &picture = m_picture;
    QImage image;
    if (picture.kind == "pngblip" || picture.kind == "jpegblip")
        image = decodeImage(picture.data);

    qreal width = 0;
    qreal height = 0;
    if (picture.goalWidth > 0 && picture.goalHeight > 0) {
        width = pixels(picture.goalWidth) * picture.scaleX / 100.0;
        height = pixels(picture.goalHeight) * picture.scaleY / 100.0;
    } else if (!image.isNull()) {
        width = image.width() * picture.scaleX / 100.0;
        height = image.height() * picture.scaleY / 100.0;
    } else if (picture.width > 0 && picture.height > 0) {
        width = std::min(picture.width, kMaxTwips) * picture.scaleX / 100.0;
        height = std::min(picture.height, kMaxTwips) * picture.scaleY / 100.0;
    }
    // Metafiles and other kinds cannot be drawn here: keep their place.
    if (image.isNull())
        image = placeholderImage();
    if (width <= 0 || height <= 0)
        width = height = kDefaultPictureSide;
    const QString suffix = picture.kind == "jpegblip" ? QStringLiteral(".jpg") : QStringLiteral(".png");
    appendImage(uniqueResourceName(QStringLiteral("picture") + suffix), image, width, height);
    m_picture = Picture();
}

void RtfParser::finishAttachment()
{
    const QString name = m_destinationText.trimmed();
    qreal width = m_attachmentWidth > 0 ? pixels(m_attachmentWidth) : 0;
    qreal height = m_attachmentHeight > 0 ? pixels(m_attachmentHeight) : 0;
    const auto known = m_attachments.constFind(name);
    if (known != m_attachments.constEnd()) {
        // The same file shown twice: one resource.
        appendImage(*known, QImage(), width, height);
        return;
    }
    QImage image;
    QString keptFile;
    if (!m_packageDir.isEmpty() && isSafeAttachmentName(name)) {
        QFile file(m_packageDir + QLatin1Char('/') + name);
        if (file.open(QIODevice::ReadOnly))
            image = decodeImage(file.read(kMaxAttachmentSize));
        if (image.isNull() && file.isOpen())
            keptFile = QFileInfo(file).absoluteFilePath();
    }
    if (!image.isNull()) {
        if (width <= 0 || height <= 0) {
            width = image.width();
            height = image.height();
        }
    } else {
        image = placeholderImage();
        if (width <= 0 || height <= 0)
            width = height = kDefaultPictureSide;
    }
    const QString resource = uniqueResourceName(name.isEmpty() ? QStringLiteral("attachment.png") : name);
    m_attachments.insert(name, resource);
    appendImage(resource, image, width, height, keptFile);
}

QImage RtfParser::decodeImage(const QByteArray &data)
{
    // The header tells the size: a tiny file may claim a huge picture.
    QBuffer buffer;
    buffer.setData(data);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    const qint64 pixels = qint64(size.width()) * size.height();
    if (!size.isValid() || pixels > kMaxPicturePixels || pixels > m_pixelBudget)
        return QImage();
    m_pixelBudget -= pixels;
    return reader.read();
}

void RtfParser::appendImage(const QString &name, const QImage &image, qreal width, qreal height,
                            const QString &keptFile)
{
    if (!m_resourceNames.contains(name)) {
        m_document->addResource(QTextDocument::ImageResource, QUrl(name), image);
        m_resourceNames.insert(name);
    }
    QTextImageFormat format;
    format.setName(name);
    if (width > 0 && height > 0) {
        format.setWidth(width);
        format.setHeight(height);
    }
    if (!keptFile.isEmpty())
        format.setProperty(RtfReader::kAttachmentPathProperty, keptFile);
    m_paragraph.append(QString(QChar::ObjectReplacementCharacter), format);
}

QString RtfParser::uniqueResourceName(const QString &wanted)
{
    const qsizetype dot = wanted.lastIndexOf(QLatin1Char('.'));
    const QString base = dot > 0 ? wanted.left(dot) : wanted;
    const QString suffix = dot > 0 ? wanted.mid(dot) : QString();
    QString name = wanted;
    for (int i = 2; m_resourceNames.contains(name); ++i)
        name = base % QString::number(i) % suffix;
    return name;
}
