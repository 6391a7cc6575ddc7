#include "cli/CliCommand.h"
#include "cli/Commands.h"

#include "richtext/RichTextTools.h"
#include "richtext/RtfReader.h"
#include "richtext/RtfWriter.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPixmap>
#include <QSaveFile>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QUrl>

#include <cstdio>
#include <memory>

namespace {

enum class Format { Unknown, Rtf, Rtfd, Html, Text, Pdf };

Format formatOf(QString path)
{
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1); // "notes.rtfd/" as a shell completes a folder
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("rtf"))
        return Format::Rtf;
    if (suffix == QLatin1String("rtfd"))
        return Format::Rtfd;
    if (suffix == QLatin1String("html") || suffix == QLatin1String("htm"))
        return Format::Html;
    if (suffix == QLatin1String("txt") || suffix == QLatin1String("text"))
        return Format::Text;
    if (suffix == QLatin1String("pdf"))
        return Format::Pdf;
    return Format::Unknown;
}

int fail(const QString &message)
{
    std::fprintf(stderr, "ledgerwick-cli convert: %s\n", qPrintable(message));
    return 1;
}

bool readUtf8(const QString &path, QString *text, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot read \"%1\": %2").arg(path, file.errorString());
        return false;
    }
    *text = QString::fromUtf8(file.readAll());
    return true;
}

bool writeBytes(const QString &path, const QByteArray &data, QString *error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit()) {
        *error = QStringLiteral("cannot write \"%1\": %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

QImage resourceImage(const QTextDocument &document, const QString &name)
{
    const QVariant resource = document.resource(QTextDocument::ImageResource, QUrl(name));
    if (resource.typeId() == QMetaType::QImage)
        return resource.value<QImage>();
    if (resource.typeId() == QMetaType::QPixmap)
        return resource.value<QPixmap>().toImage();
    return QImage::fromData(resource.toByteArray());
}

} // namespace

// HTML written on its own: pictures go inside it as data URLs.
QString selfContainedHtml(const QTextDocument &document)
{
    std::unique_ptr<QTextDocument> copy(document.clone());
    struct Picture
    {
        int position;
        int length;
        QTextImageFormat format;
    };
    QList<Picture> pictures;
    for (QTextBlock block = copy->begin(); block.isValid(); block = block.next())
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextImageFormat format = it.fragment().charFormat().toImageFormat();
            if (format.isValid() && !format.name().startsWith(QLatin1String("data:")))
                pictures.append({it.fragment().position(), it.fragment().length(), format});
        }
    for (Picture &picture : pictures) {
        const QImage image = resourceImage(*copy, picture.format.name());
        if (image.isNull())
            continue;
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        picture.format.setName(QStringLiteral("data:image/png;base64,") + QString::fromLatin1(png.toBase64()));
        QTextCursor cursor(copy.get());
        cursor.setPosition(picture.position);
        cursor.setPosition(picture.position + picture.length, QTextCursor::KeepAnchor);
        cursor.setCharFormat(picture.format);
    }
    return copy->toHtml();
}

int convertCommand(const QStringList &args)
{
    CliCommand command("convert IN OUT", "Converts a document between .rtf, .rtfd, .html, .htm and .txt, or "
                                         "to .pdf.");
    command.parser().addPositionalArgument(QStringLiteral("IN"), QStringLiteral("the document to read"));
    command.parser().addPositionalArgument(QStringLiteral("OUT"), QStringLiteral("the document to write"));
    if (const int status = command.parse(args, 2, 2); status >= 0)
        return status;
    const QString inPath = command.positional().at(0);
    const QString outPath = command.positional().at(1);
    const Format in = formatOf(inPath);
    const Format out = formatOf(outPath);
    if (in == Format::Unknown || in == Format::Pdf)
        return command.usageError(QStringLiteral("IN must end in .rtf, .rtfd, .html, .htm or .txt"));
    if (out == Format::Unknown)
        return command.usageError(QStringLiteral("OUT must end in .rtf, .rtfd, .html, .htm, .txt or .pdf"));

    QTextDocument document;
    QString error;
    if (in == Format::Rtf || in == Format::Rtfd) {
        RtfReader reader;
        if (!reader.readFile(inPath, &document))
            return fail(reader.errorString());
    } else {
        QString text;
        if (!readUtf8(inPath, &text, &error))
            return fail(error);
        if (in == Format::Html) {
            // Pictures named relative to the page are found beside it.
            document.setBaseUrl(QUrl::fromLocalFile(QFileInfo(inPath).absolutePath() + QLatin1Char('/')));
            document.setHtml(text);
        } else {
            document.setPlainText(text);
        }
    }

    switch (out) {
    case Format::Rtf:
    case Format::Rtfd: {
        RtfWriter writer;
        if (!writer.writeFile(&document, outPath))
            return fail(writer.errorString());
        break;
    }
    case Format::Html:
        if (!writeBytes(outPath, selfContainedHtml(document).toUtf8(), &error))
            return fail(error);
        break;
    case Format::Text: {
        QString text = document.toPlainText();
        text.remove(QChar::ObjectReplacementCharacter);
        if (!text.isEmpty() && !text.endsWith(QLatin1Char('\n')))
            text += QLatin1Char('\n');
        if (!writeBytes(outPath, text.toUtf8(), &error))
            return fail(error);
        break;
    }
    case Format::Pdf:
        if (!RichTextTools::writePdf(&document, outPath, &error))
            return fail(error);
        break;
    case Format::Unknown:
        break;
    }
    return 0;
}
