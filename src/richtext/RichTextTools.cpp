#include "richtext/RichTextTools.h"

#include "core/Platform.h"

#include <QAbstractTextDocumentLayout>
#include <QLocale>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QTextCursor>
#include <QTextDocument>

#include <memory>

namespace {

constexpr qreal kPdfMarginMillimetres = 15;

} // namespace

int RichTextTools::replaceAll(QTextDocument *document, const QString &find, const QString &replacement)
{
    if (find.isEmpty())
        return 0;
    int count = 0;
    QTextCursor found = document->find(find, 0, QTextDocument::FindCaseSensitively);
    while (!found.isNull()) {
        QTextCursor first(document);
        first.setPosition(found.selectionStart() + 1);
        found.insertText(replacement, first.charFormat());
        ++count;
        // Searching on after the inserted text: a value holding its own
        // placeholder must not be replaced again and again.
        found = document->find(find, found.position(), QTextDocument::FindCaseSensitively);
    }
    return count;
}

bool RichTextTools::insertHtml(QTextDocument *document, const QString &find, const QString &html)
{
    if (find.isEmpty())
        return false;
    QTextCursor found = document->find(find, 0, QTextDocument::FindCaseSensitively);
    if (found.isNull())
        return false;
    found.insertHtml(html);
    return true;
}

int RichTextTools::print(const QTextDocument *document, QPagedPaintDevice *device)
{
    QPainter painter;
    if (!painter.begin(device))
        return 0;

    // Laid out for the device, so that fonts and fixed sizes come out right
    // at its resolution; the caller's document is left as it was.
    std::unique_ptr<QTextDocument> copy(document->clone());
    QAbstractTextDocumentLayout *layout = copy->documentLayout();
    layout->setPaintDevice(device);
    const QSizeF page(device->width(), device->height());
    qreal scale = 1;
    copy->setPageSize(page);
    for (int attempt = 0; attempt < 3; ++attempt) {
        const qreal width = layout->documentSize().width();
        if (width <= page.width() / scale + 0.5)
            break;
        // Wider than the page (a fixed-width table, a picture): shrink it
        // all until its width fits, like a print fitted to the page width.
        scale = page.width() / width;
        copy->setPageSize(page / scale);
    }

    const QSizeF body = copy->pageSize();
    const int pages = std::max(copy->pageCount(), 1);
    for (int i = 0; i < pages; ++i) {
        if (i > 0 && !device->newPage())
            return i;
        painter.save();
        painter.scale(scale, scale);
        painter.translate(0, -i * body.height());
        const QRectF view(0, i * body.height(), body.width(), body.height());
        painter.setClipRect(view);
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = view;
        context.palette.setColor(QPalette::Text, Qt::black);
        layout->draw(&painter, context);
        painter.restore();
    }
    painter.end();
    return pages;
}

bool RichTextTools::writePdf(const QTextDocument *document, const QString &path, QString *error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        if (error)
            *error = lwTr("The file \"%1\" could not be written: %2").arg(path, file.errorString());
        return false;
    }
    int pages = 0;
    {
        QPdfWriter writer(&file);
        const QLocale::Territory territory = QLocale().territory();
        const bool letter = territory == QLocale::UnitedStates || territory == QLocale::Canada;
        writer.setPageSize(QPageSize(letter ? QPageSize::Letter : QPageSize::A4));
        writer.setPageMargins(
            QMarginsF(kPdfMarginMillimetres, kPdfMarginMillimetres, kPdfMarginMillimetres, kPdfMarginMillimetres),
            QPageLayout::Millimeter);
        writer.setResolution(300);
        writer.setCreator(QStringLiteral("Ledgerwick"));
        writer.setTitle(document->metaInformation(QTextDocument::DocumentTitle));
        pages = print(document, &writer);
    }
    if (pages == 0 || !file.commit()) {
        if (error)
            *error = lwTr("The file \"%1\" could not be written: %2").arg(path, file.errorString());
        file.cancelWriting();
        return false;
    }
    return true;
}
