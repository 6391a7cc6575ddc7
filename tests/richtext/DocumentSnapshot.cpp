#include "DocumentSnapshot.h"

#include <QCryptographicHash>
#include <QImage>
#include <QPixmap>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <QUrl>

#include <cmath>

namespace {

QString num(qreal value)
{
    // Tenths: twips and pixels convert with small rounding.
    return QString::number(std::round(value * 10) / 10);
}

QImage pictureOf(const QTextDocument &document, const QString &name)
{
    const QVariant resource = document.resource(QTextDocument::ImageResource, QUrl(name));
    if (resource.typeId() == QMetaType::QImage)
        return resource.value<QImage>();
    if (resource.typeId() == QMetaType::QPixmap)
        return resource.value<QPixmap>().toImage();
    return QImage::fromData(resource.toByteArray());
}

QString colorOf(const QTextFormat &format, int property)
{
    if (!format.hasProperty(property) || format.brushProperty(property).style() == Qt::NoBrush)
        return QString();
    return format.brushProperty(property).color().name(QColor::HexArgb);
}

QString describeRun(const QTextDocument &document, const QTextCharFormat &format)
{
    QStringList parts;
    const QStringList families = format.fontFamilies().toStringList();
    parts << QStringLiteral("font=") + (families.isEmpty() ? document.defaultFont().family() : families.first());
    parts << QStringLiteral("size=") +
                 num(format.fontPointSize() > 0 ? format.fontPointSize() : document.defaultFont().pointSizeF());
    if (format.fontWeight() >= QFont::DemiBold)
        parts << QStringLiteral("bold");
    if (format.fontItalic())
        parts << QStringLiteral("italic");
    if (format.underlineStyle() != QTextCharFormat::NoUnderline)
        parts << QStringLiteral("underline=%1").arg(int(format.underlineStyle()));
    if (format.fontStrikeOut())
        parts << QStringLiteral("strike");
    if (const QString fg = colorOf(format, QTextFormat::ForegroundBrush); !fg.isEmpty())
        parts << QStringLiteral("fg=") + fg;
    if (const QString bg = colorOf(format, QTextFormat::BackgroundBrush); !bg.isEmpty())
        parts << QStringLiteral("bg=") + bg;
    if (format.verticalAlignment() != QTextCharFormat::AlignNormal)
        parts << QStringLiteral("valign=%1").arg(int(format.verticalAlignment()));
    if (format.isAnchor())
        parts << QStringLiteral("href=") + format.anchorHref();
    return parts.join(QLatin1Char(' '));
}

void describeBlock(const QTextDocument &document, const QTextBlock &block, const QString &indent, QStringList *lines)
{
    const QTextBlockFormat format = block.blockFormat();
    QStringList tabs;
    const QList<QTextOption::Tab> positions = format.tabPositions();
    for (const QTextOption::Tab &tab : positions)
        tabs << num(tab.position) + QLatin1Char(':') + QString::number(int(tab.type));
    lines->append(indent + QStringLiteral("block align=%1 left=%2 right=%3 first=%4 before=%5 after=%6 tabs=[%7]%8")
                               .arg(int(format.alignment() & Qt::AlignHorizontal_Mask))
                               .arg(num(format.leftMargin() + format.indent() * document.indentWidth()),
                                    num(format.rightMargin()), num(format.textIndent()), num(format.topMargin()),
                                    num(format.bottomMargin()), tabs.join(QLatin1Char(',')))
                               .arg(format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore
                                        ? QStringLiteral(" page")
                                        : QString()));
    QString pendingText;
    QString pendingFormat;
    auto flush = [&] {
        if (!pendingText.isEmpty())
            lines->append(indent + QStringLiteral("  run \"%1\" %2").arg(pendingText, pendingFormat));
        pendingText.clear();
    };
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const QTextCharFormat charFormat = fragment.charFormat();
        if (charFormat.isImageFormat()) {
            flush();
            const QTextImageFormat image = charFormat.toImageFormat();
            const QImage picture = pictureOf(document, image.name()).convertToFormat(QImage::Format_ARGB32);
            const QByteArray pixels = QCryptographicHash::hash(
                QByteArrayView(picture.constBits(), picture.sizeInBytes()), QCryptographicHash::Md5);
            for (qsizetype i = 0; i < fragment.length(); ++i)
                lines->append(indent + QStringLiteral("  image %1x%2 picture=%3x%4 %5")
                                           .arg(num(image.width() > 0 ? image.width() : picture.width()),
                                                num(image.height() > 0 ? image.height() : picture.height()))
                                           .arg(picture.width())
                                           .arg(picture.height())
                                           .arg(QString::fromLatin1(pixels.toHex().left(12))));
            continue;
        }
        // Runs split differently but shown alike are the same text.
        const QString description = describeRun(document, charFormat);
        if (description != pendingFormat)
            flush();
        pendingFormat = description;
        pendingText += fragment.text();
    }
    flush();
}

void describeFrame(const QTextDocument &document, QTextFrame::iterator it, const QString &indent, QStringList *lines)
{
    for (; !it.atEnd(); ++it) {
        if (QTextTable *table = qobject_cast<QTextTable *>(it.currentFrame())) {
            const QTextTableFormat format = table->format();
            QStringList widths;
            const QList<QTextLength> constraints = format.columnWidthConstraints();
            for (const QTextLength &length : constraints)
                widths << num(length.rawValue());
            lines->append(indent +
                          QStringLiteral("table %1x%2 border=%3 padding=%4 widths=[%5]")
                              .arg(table->rows())
                              .arg(table->columns())
                              .arg(num(format.border()), num(format.cellPadding()), widths.join(QLatin1Char(','))));
            for (int r = 0; r < table->rows(); ++r)
                for (int c = 0; c < table->columns(); ++c) {
                    const QTextTableCell cell = table->cellAt(r, c);
                    if (cell.row() != r || cell.column() != c)
                        continue;
                    lines->append(indent + QStringLiteral("  cell %1,%2 span %3x%4 bg=%5")
                                               .arg(r)
                                               .arg(c)
                                               .arg(cell.rowSpan())
                                               .arg(cell.columnSpan())
                                               .arg(colorOf(cell.format(), QTextFormat::BackgroundBrush)));
                    describeFrame(document, cell.begin(), indent + QStringLiteral("    "), lines);
                }
        } else if (it.currentFrame()) {
            describeFrame(document, it.currentFrame()->begin(), indent + QStringLiteral("  "), lines);
        } else {
            describeBlock(document, it.currentBlock(), indent, lines);
        }
    }
}

void outlineFrame(QTextFrame::iterator it, QStringList *blocks)
{
    for (; !it.atEnd(); ++it) {
        if (QTextTable *table = qobject_cast<QTextTable *>(it.currentFrame())) {
            QStringList rows;
            for (int r = 0; r < table->rows(); ++r) {
                QStringList cells;
                for (int c = 0; c < table->columns(); ++c) {
                    const QTextTableCell cell = table->cellAt(r, c);
                    if (cell.row() != r || cell.column() != c)
                        continue;
                    QStringList content;
                    outlineFrame(cell.begin(), &content);
                    cells << content.join(QLatin1Char('\n'));
                }
                rows << cells.join(QLatin1Char('|'));
            }
            blocks->append(QLatin1Char('<') + rows.join(QLatin1Char('/')) + QLatin1Char('>'));
        } else if (it.currentFrame()) {
            outlineFrame(it.currentFrame()->begin(), blocks);
        } else {
            QString text = it.currentBlock().text();
            text.replace(QChar::ObjectReplacementCharacter, QStringLiteral("[img]"));
            text.replace(QChar::LineSeparator, QStringLiteral("[br]"));
            blocks->append(text);
        }
    }
}

} // namespace

QStringList DocumentSnapshot::describe(const QTextDocument &document)
{
    QStringList lines;
    describeFrame(document, document.rootFrame()->begin(), QString(), &lines);
    return lines;
}

QString DocumentSnapshot::outline(const QTextDocument &document)
{
    QStringList blocks;
    outlineFrame(document.rootFrame()->begin(), &blocks);
    return blocks.join(QLatin1Char('\n'));
}

QTextCharFormat DocumentSnapshot::formatOf(const QTextDocument &document, const QString &text)
{
    const QTextCursor found = document.find(text, 0, QTextDocument::FindCaseSensitively);
    if (found.isNull())
        return QTextCharFormat();
    QTextCursor cursor(found);
    cursor.setPosition(found.selectionStart() + 1);
    return cursor.charFormat();
}

QTextTable *DocumentSnapshot::firstTable(const QTextDocument &document)
{
    const QList<QTextFrame *> frames = document.rootFrame()->childFrames();
    for (QTextFrame *frame : frames)
        if (QTextTable *table = qobject_cast<QTextTable *>(frame))
            return table;
    return nullptr;
}
