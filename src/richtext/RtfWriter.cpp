#include "richtext/RtfWriter.h"

#include "core/Platform.h"
#include "richtext/RtfReader.h"
#include "richtext/TextCodepage.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPixmap>
#include <QSaveFile>
#include <QSet>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <QUrl>

#include <cmath>

namespace {

constexpr qreal kTwipsPerPixel = 15.0;
constexpr int kDefaultTableWidth = 9360; // twips: a page of 8.5 in less two 1 in margins
constexpr qsizetype kLineLength = 200;
constexpr int kHexBytesPerLine = 64;

int twips(qreal pixels)
{
    return qRound(std::clamp(pixels, -100000.0, 100000.0) * kTwipsPerPixel);
}

QByteArray number(qint64 value)
{
    return QByteArray::number(value);
}

// Text as RTF: ASCII as it stands, Windows-1252 as \'hh, the rest as \uN
// with a "?" for readers that know no Unicode.
QByteArray escapeText(QStringView text)
{
    QByteArray out;
    out.reserve(text.size());
    qsizetype lineStart = 0;
    for (QChar ch : text) {
        if (out.size() - lineStart > kLineLength) {
            out += '\n'; // readers ignore line ends in RTF text
            lineStart = out.size();
        }
        const char16_t u = ch.unicode();
        switch (u) {
        case '\\':
            out += "\\\\";
            continue;
        case '{':
            out += "\\{";
            continue;
        case '}':
            out += "\\}";
            continue;
        case '\t':
            out += "\\tab ";
            continue;
        case 0x2028:
            out += "\\line ";
            continue;
        case 0x00A0:
            out += "\\~";
            continue;
        case 0x00AD:
            out += "\\-";
            continue;
        case 0x2011:
            out += "\\_";
            continue;
        default:
            break;
        }
        if (u >= 0x20 && u < 0x7F) {
            out += char(u);
        } else if (u < 0x20 || u == 0x7F || u == QChar::ObjectReplacementCharacter) {
            continue;
        } else if (const int byte = TextCodepage::windows1252Byte(u); byte >= 0) {
            out += "\\'" + QByteArray::number(byte, 16).rightJustified(2, '0');
        } else {
            out += "\\u" + number(qint16(u)) + '?';
        }
    }
    return out;
}

qreal pointSize(const QTextCharFormat &format, const QTextDocument *document)
{
    if (format.hasProperty(QTextFormat::FontPointSize) && format.fontPointSize() > 0)
        return format.fontPointSize();
    if (format.hasProperty(QTextFormat::FontPixelSize) && format.intProperty(QTextFormat::FontPixelSize) > 0)
        return format.intProperty(QTextFormat::FontPixelSize) * 72.0 / 96.0;
    qreal size = document->defaultFont().pointSizeF();
    if (size <= 0)
        size = 12;
    // HTML headings and "font-size: large" scale the default size.
    if (format.hasProperty(QTextFormat::FontSizeAdjustment))
        size *= std::pow(1.2, std::clamp(format.intProperty(QTextFormat::FontSizeAdjustment), -4, 6));
    return size;
}

QString familyOf(const QTextCharFormat &format)
{
    const QStringList families = format.property(QTextFormat::FontFamilies).toStringList();
    if (!families.isEmpty() && !families.first().isEmpty())
        return families.first();
    return format.property(QTextFormat::FontFamily).toString();
}

QColor brushColor(const QTextFormat &format, int property)
{
    if (!format.hasProperty(property))
        return {};
    const QBrush brush = format.brushProperty(property);
    return brush.style() == Qt::NoBrush ? QColor() : brush.color();
}

QByteArray pngData(const QImage &image)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return data;
}

// A name for a file in a package: plain characters, never hidden.
QString packageFileName(const QString &base, const QString &suffix)
{
    auto plain = [](QString text) {
        for (QChar &ch : text)
            if (!(ch.isLetterOrNumber() && ch.unicode() < 0x80) && ch != QLatin1Char(' ') && ch != QLatin1Char('-') &&
                ch != QLatin1Char('_') && ch != QLatin1Char('.'))
                ch = QLatin1Char('_');
        return text.trimmed();
    };
    QString name = plain(base).left(60);
    if (name.isEmpty() || name.startsWith(QLatin1Char('.')))
        name.prepend(QStringLiteral("image"));
    const QString extension = plain(suffix).left(10);
    return extension.isEmpty() ? name : name + QLatin1Char('.') + extension;
}

} // namespace

QByteArray RtfWriter::toRtf(const QTextDocument *document)
{
    return generate(document, false);
}

QByteArray RtfWriter::toPackageRtf(const QTextDocument *document)
{
    return generate(document, true);
}

QByteArray RtfWriter::generate(const QTextDocument *document, bool package)
{
    m_document = document;
    m_package = package;
    m_out.clear();
    m_fonts.clear();
    m_fontIndexes.clear();
    m_colors.clear();
    m_colorIndexes.clear();
    m_attachments.clear();
    m_attachmentNames.clear();

    QString defaultFamily = document->defaultFont().family();
    if (defaultFamily.isEmpty())
        defaultFamily = QStringLiteral("Helvetica");
    addFont(defaultFamily);
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        if (block.length() <= 1 && block.charFormat().objectType() != QTextFormat::TableCellObject)
            collectFormats(block.charFormat()); // written for empty blocks only
        for (auto it = block.begin(); !it.atEnd(); ++it)
            collectFormats(it.fragment().charFormat());
        if (QTextTable *table = qobject_cast<QTextTable *>(QTextCursor(block).currentFrame())) {
            addColor(brushColor(table->cellAt(block.position()).format(), QTextFormat::BackgroundBrush));
        }
    }

    m_out = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n{\\fonttbl";
    for (qsizetype i = 0; i < m_fonts.size(); ++i) {
        QString name = m_fonts.at(i);
        name.remove(QLatin1Char(';'));
        m_out += "{\\f" + number(i) + "\\fnil\\fcharset0 " + escapeText(name) + ";}";
    }
    m_out += "}\n{\\colortbl;";
    for (const QColor &color : std::as_const(m_colors))
        m_out +=
            "\\red" + number(color.red()) + "\\green" + number(color.green()) + "\\blue" + number(color.blue()) + ';';
    m_out += "}\n";
    const QString title = document->metaInformation(QTextDocument::DocumentTitle);
    if (!title.isEmpty())
        m_out += "{\\info{\\title " + escapeText(title) + "}}\n";
    writeFrame(document->rootFrame(), false);
    m_out += "}\n";
    return m_out;
}

void RtfWriter::collectFormats(const QTextCharFormat &format)
{
    if (format.isImageFormat())
        return;
    addFont(familyOf(format));
    addColor(brushColor(format, QTextFormat::ForegroundBrush));
    addColor(brushColor(format, QTextFormat::BackgroundBrush));
}

void RtfWriter::addFont(const QString &family)
{
    if (!family.isEmpty() && !m_fontIndexes.contains(family)) {
        m_fontIndexes.insert(family, int(m_fonts.size()));
        m_fonts.append(family);
    }
}

void RtfWriter::addColor(const QColor &color)
{
    if (color.isValid() && !m_colorIndexes.contains(color.rgb())) {
        m_colors.append(color);
        m_colorIndexes.insert(color.rgb(), int(m_colors.size())); // 0 is "auto"
    }
}

int RtfWriter::fontIndex(const QTextCharFormat &format) const
{
    return m_fontIndexes.value(familyOf(format), 0);
}

int RtfWriter::colorIndex(const QColor &color) const
{
    return m_colorIndexes.value(color.rgb(), 0);
}

void RtfWriter::writeFrame(const QTextFrame *frame, bool inTable)
{
    struct Item
    {
        QTextBlock block;
        QTextFrame *frame = nullptr;
    };
    QList<Item> items;
    for (auto it = frame->begin(); !it.atEnd(); ++it)
        items.append({it.currentBlock(), it.currentFrame()});

    for (qsizetype k = 0; k < items.size(); ++k) {
        const Item &item = items.at(k);
        const bool last = k + 1 == items.size();
        if (item.frame) {
            QTextTable *table = qobject_cast<QTextTable *>(item.frame);
            if (table && !inTable) {
                writeTable(table);
            } else if (table) {
                // A table inside a cell: its cells become paragraphs of the outer one.
                for (int r = 0; r < table->rows(); ++r)
                    for (int c = 0; c < table->columns(); ++c) {
                        const QTextTableCell cell = table->cellAt(r, c);
                        if (cell.row() != r || cell.column() != c)
                            continue;
                        for (auto it = cell.begin(); !it.atEnd(); ++it)
                            if (it.currentBlock().isValid()) {
                                writeBlock(it.currentBlock(), true);
                                m_out += "\\par\n";
                            }
                    }
            } else {
                writeFrame(item.frame, inTable);
                if (!last)
                    m_out += "\\par\n";
            }
            continue;
        }
        const bool empty = item.block.length() <= 1;
        const bool tableBefore = k > 0 && qobject_cast<QTextTable *>(items.at(k - 1).frame);
        const bool tableAfter = !last && qobject_cast<QTextTable *>(items.at(k + 1).frame);
        // QTextDocument keeps an empty block before a table that opens the
        // document and after one that ends it; the reader makes them again.
        if (!inTable && empty && ((k == 0 && tableAfter) || (last && tableBefore)))
            continue;
        writeBlock(item.block, inTable);
        if (inTable ? !last : !(last && !empty))
            m_out += "\\par\n";
    }
}

void RtfWriter::writeBlock(const QTextBlock &block, bool inTable)
{
    const QTextBlockFormat format = block.blockFormat();
    m_out += "\\pard";
    if (inTable)
        m_out += "\\intbl";
    const Qt::Alignment alignment = format.alignment() & Qt::AlignHorizontal_Mask;
    if (alignment & Qt::AlignHCenter)
        m_out += "\\qc";
    else if (alignment & (Qt::AlignRight | Qt::AlignTrailing))
        m_out += "\\qr";
    else if (alignment & Qt::AlignJustify)
        m_out += "\\qj";
    const qreal left = format.leftMargin() + format.indent() * m_document->indentWidth();
    const std::pair<const char *, qreal> indents[] = {
        {"\\li", left},
        {"\\ri", format.rightMargin()},
        {"\\fi", format.textIndent()},
        {"\\sb", format.topMargin()},
        {"\\sa", format.bottomMargin()},
    };
    for (const auto &[word, pixels] : indents)
        if (twips(pixels) != 0)
            m_out += word + number(twips(pixels));
    const QList<QTextOption::Tab> tabs = format.tabPositions();
    for (const QTextOption::Tab &tab : tabs) {
        if (tab.type == QTextOption::RightTab)
            m_out += "\\tqr";
        else if (tab.type == QTextOption::CenterTab)
            m_out += "\\tqc";
        else if (tab.type == QTextOption::DelimiterTab)
            m_out += "\\tqdec";
        m_out += "\\tx" + number(twips(tab.position));
    }
    if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore)
        m_out += "\\pagebb";

    if (block.length() <= 1) {
        // The mark's format gives an empty line its height; a cell's first
        // mark holds the cell's own format instead.
        const QTextCharFormat mark = block.charFormat();
        if (mark.objectType() != QTextFormat::TableCellObject)
            writeCharFormat(mark);
        return;
    }
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const QTextCharFormat charFormat = fragment.charFormat();
        if (charFormat.isImageFormat()) {
            for (qsizetype i = 0; i < fragment.text().size(); ++i)
                writePicture(charFormat.toImageFormat());
            continue;
        }
        QString href = charFormat.isAnchor() ? charFormat.anchorHref() : QString();
        href.replace(QLatin1Char('"'), QLatin1String("%22")); // the instruction quotes it
        if (!href.isEmpty())
            m_out += "{\\field{\\*\\fldinst{HYPERLINK \"" + escapeText(href) + "\"}}{\\fldrslt{";
        writeCharFormat(charFormat);
        m_out += escapeText(fragment.text());
        if (!href.isEmpty())
            m_out += "}}}";
    }
}

void RtfWriter::writeCharFormat(const QTextCharFormat &format)
{
    m_out += "\\plain\\f" + number(fontIndex(format)) + "\\fs" + number(qRound(pointSize(format, m_document) * 2));
    if (format.fontWeight() >= QFont::DemiBold)
        m_out += "\\b";
    if (format.fontItalic())
        m_out += "\\i";
    const auto underline = format.hasProperty(QTextFormat::TextUnderlineStyle)
                               ? format.underlineStyle()
                               : (format.boolProperty(QTextFormat::FontUnderline) ? QTextCharFormat::SingleUnderline
                                                                                  : QTextCharFormat::NoUnderline);
    switch (underline) {
    case QTextCharFormat::SingleUnderline:
        m_out += "\\ul";
        break;
    case QTextCharFormat::DashUnderline:
        m_out += "\\uldash";
        break;
    case QTextCharFormat::DotLine:
        m_out += "\\uld";
        break;
    case QTextCharFormat::DashDotLine:
        m_out += "\\uldashd";
        break;
    case QTextCharFormat::DashDotDotLine:
        m_out += "\\uldashdd";
        break;
    case QTextCharFormat::WaveUnderline:
        m_out += "\\ulwave";
        break;
    default:
        break;
    }
    if (format.fontStrikeOut())
        m_out += "\\strike";
    if (const QColor color = brushColor(format, QTextFormat::ForegroundBrush); color.isValid())
        m_out += "\\cf" + number(colorIndex(color));
    if (const QColor color = brushColor(format, QTextFormat::BackgroundBrush); color.isValid())
        m_out += "\\cb" + number(colorIndex(color));
    if (format.verticalAlignment() == QTextCharFormat::AlignSuperScript)
        m_out += "\\super";
    else if (format.verticalAlignment() == QTextCharFormat::AlignSubScript)
        m_out += "\\sub";
    m_out += ' ';
}

void RtfWriter::writeTable(const QTextTable *table)
{
    const QTextTableFormat format = table->format();
    const int rows = table->rows();
    const int columns = table->columns();
    if (rows <= 0 || columns <= 0)
        return;

    // Right edges of the columns, in twips from the table's left edge.
    const QList<QTextLength> constraints = format.columnWidthConstraints();
    QList<int> widths(columns, 0);
    int used = 0;
    int variable = 0;
    for (int c = 0; c < columns; ++c) {
        const QTextLength length = constraints.value(c);
        if (length.type() == QTextLength::FixedLength)
            widths[c] = std::max(15, twips(length.rawValue()));
        else if (length.type() == QTextLength::PercentageLength)
            widths[c] = std::max(15, qRound(length.rawValue() * kDefaultTableWidth / 100));
        else
            ++variable;
        used += widths[c];
    }
    for (int c = 0; c < columns; ++c)
        if (widths[c] == 0)
            widths[c] = std::max(720, (kDefaultTableWidth - used) / std::max(variable, 1));
    QList<int> rights;
    int edge = 0;
    for (int width : std::as_const(widths))
        rights.append(edge += width);

    QByteArray rowStart = "\\trowd\\trgaph" + number(twips(format.cellPadding())) + "\\trleft0";
    if (format.alignment() & Qt::AlignHCenter)
        rowStart += "\\trqc";
    else if (format.alignment() & Qt::AlignRight)
        rowStart += "\\trqr";
    QByteArray borders;
    if (format.border() > 0 && format.borderStyle() != QTextFrameFormat::BorderStyle_None) {
        const QByteArray width = number(std::max(1, twips(format.border())));
        for (const char *side : {"t", "l", "b", "r"})
            borders += QByteArray("\\clbrdr") + side + "\\brdrs\\brdrw" + width;
    }

    for (int r = 0; r < rows; ++r) {
        m_out += rowStart;
        QList<std::pair<QTextTableCell, bool>> cells; // the cell, covered from above
        for (int c = 0; c < columns;) {
            const QTextTableCell cell = table->cellAt(r, c);
            if (!cell.isValid() || cell.column() != c) {
                ++c;
                continue;
            }
            const bool covered = cell.row() != r;
            if (covered)
                m_out += "\\clvmrg";
            else if (cell.rowSpan() > 1)
                m_out += "\\clvmgf";
            const QColor background = brushColor(cell.format(), QTextFormat::BackgroundBrush);
            if (background.isValid() && !covered)
                m_out += "\\clcbpat" + number(colorIndex(background));
            m_out += borders + "\\cellx" + number(rights.at(std::min(c + cell.columnSpan(), columns) - 1));
            cells.append({cell, covered});
            c += std::max(cell.columnSpan(), 1);
        }
        m_out += '\n';
        for (const auto &[cell, covered] : std::as_const(cells)) {
            if (covered) {
                m_out += "\\pard\\intbl\\cell\n";
                continue;
            }
            QTextFrame::iterator it = cell.begin();
            bool first = true;
            for (; !it.atEnd(); ++it) {
                if (!it.currentBlock().isValid())
                    continue;
                if (!first)
                    m_out += "\\par\n";
                writeBlock(it.currentBlock(), true);
                first = false;
            }
            m_out += "\\cell\n";
        }
        m_out += "\\row\n";
    }
}

void RtfWriter::writePicture(const QTextImageFormat &format)
{
    QImage image = pictureImage(format.name());
    qreal width = format.width() > 0 ? format.width() : image.width();
    qreal height = format.height() > 0 ? format.height() : image.height();
    if (width <= 0 || height <= 0)
        width = height = 16;
    if (image.isNull()) {
        // A picture whose data is gone still keeps its place, empty.
        image = QImage(1, 1, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
    }
    if (m_package) {
        QString file;
        const QString kept = format.stringProperty(RtfReader::kAttachmentPathProperty);
        QFile original(kept);
        if (!kept.isEmpty() && original.size() <= RtfReader::kMaxFileSize && original.open(QIODevice::ReadOnly)) {
            // A file that is no picture goes into the package as it came.
            const QFileInfo info(kept);
            file = attachmentName(kept, packageFileName(info.completeBaseName(), info.suffix()),
                                  [&] { return original.readAll(); });
        } else {
            const QString base = QFileInfo(QUrl(format.name()).path()).completeBaseName();
            file = attachmentName(format.name(), packageFileName(base, QStringLiteral("png")),
                                  [&] { return pngData(image); });
        }
        m_out += "{{\\NeXTGraphic " + escapeText(file) + " \\width" + number(twips(width)) + " \\height" +
                 number(twips(height)) + " \\appleattachmentpadding0 \\appleembedtype0 \\appleaqc\n}\\'ac}";
        return;
    }
    const QByteArray png = pngData(image);
    m_out += "{\\pict\\pngblip\\picw" + number(image.width()) + "\\pich" + number(image.height()) + "\\picwgoal" +
             number(twips(width)) + "\\pichgoal" + number(twips(height)) + '\n';
    for (qsizetype i = 0; i < png.size(); i += kHexBytesPerLine)
        m_out += png.mid(i, kHexBytesPerLine).toHex() + '\n';
    m_out += '}';
}

QImage RtfWriter::pictureImage(const QString &name) const
{
    const QVariant resource = m_document->resource(QTextDocument::ImageResource, QUrl(name));
    switch (resource.typeId()) {
    case QMetaType::QImage:
        return resource.value<QImage>();
    case QMetaType::QPixmap:
        return resource.value<QPixmap>().toImage();
    case QMetaType::QByteArray:
        return QImage::fromData(resource.toByteArray());
    default:
        return {};
    }
}

QString RtfWriter::attachmentName(const QString &key, const QString &wanted, const std::function<QByteArray()> &data)
{
    const auto known = m_attachmentNames.constFind(key);
    if (known != m_attachmentNames.constEnd())
        return *known;
    // Unique whatever the case: packages travel to case-insensitive disks.
    QSet<QString> taken = {QStringLiteral("txt.rtf")};
    for (const Attachment &attachment : std::as_const(m_attachments))
        taken.insert(attachment.fileName.toLower());
    const qsizetype dot = wanted.lastIndexOf(QLatin1Char('.'));
    const QString base = dot > 0 ? wanted.left(dot) : wanted;
    const QString suffix = dot > 0 ? wanted.mid(dot) : QString();
    QString file = wanted;
    for (int i = 2; taken.contains(file.toLower()); ++i)
        file = base + QLatin1Char('-') + QString::number(i) + suffix;
    m_attachments.append({file, data()});
    m_attachmentNames.insert(key, file);
    return file;
}

bool RtfWriter::saveFile(const QString &path, const QByteArray &data)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit()) {
        m_error = lwTr("The file \"%1\" could not be written: %2").arg(path, file.errorString());
        file.cancelWriting();
        return false;
    }
    return true;
}

bool RtfWriter::writeFile(const QTextDocument *document, const QString &path)
{
    m_error.clear();
    if (!path.endsWith(QLatin1String(".rtfd"), Qt::CaseInsensitive))
        return saveFile(path, toRtf(document));

    const QFileInfo info(path);
    if (info.exists() && !info.isDir()) {
        m_error = lwTr("The file \"%1\" is in the way of the document folder.").arg(path);
        return false;
    }
    if (!QDir().mkpath(path)) {
        m_error = lwTr("The folder \"%1\" could not be created.").arg(path);
        return false;
    }
    const QByteArray rtf = toPackageRtf(document);
    // Pictures first, the text last: the text never names a missing file.
    QSet<QString> written = {QStringLiteral("TXT.rtf")};
    for (const Attachment &attachment : std::as_const(m_attachments)) {
        if (!saveFile(path + QLatin1Char('/') + attachment.fileName, attachment.data))
            return false;
        written.insert(attachment.fileName);
    }
    if (!saveFile(path + QStringLiteral("/TXT.rtf"), rtf))
        return false;
    // Pictures the document no longer shows.
    QDir dir(path);
    const QStringList files = dir.entryList(QDir::Files | QDir::NoDotAndDotDot);
    for (const QString &file : files)
        if (!written.contains(file))
            dir.remove(file);
    return true;
}
