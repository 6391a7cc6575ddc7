#pragma once

#include <QString>

class QPagedPaintDevice;
class QTextDocument;

// What the invoices and the notepad do with a rich-text document beyond
// reading and writing it: fill placeholders, insert an HTML table, print.
class RichTextTools
{
public:
    // Replaces every occurrence of find (case-sensitive) by replacement, in
    // the format of the occurrence's first character, searching on after
    // each inserted text; answers the number replaced. An empty find
    // replaces nothing.
    static int replaceAll(QTextDocument *document, const QString &find, const QString &replacement);

    // Replaces the first occurrence of find by the HTML (a table, say) as
    // styled text; false when find does not occur.
    static bool insertHtml(QTextDocument *document, const QString &find, const QString &html);

    // Prints the document on the device's pages (a QPrinter or a
    // QPdfWriter), scaled down when its content is wider than the page so
    // that it fits the page width. Answers the number of pages, 0 when the
    // device could not be painted on.
    static int print(const QTextDocument *document, QPagedPaintDevice *device);

    // Writes the document as a PDF file (A4, or Letter in the US and
    // Canada), atomically.
    static bool writePdf(const QTextDocument *document, const QString &path, QString *error = nullptr);
};
