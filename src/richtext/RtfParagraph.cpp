#include "richtext/RtfParagraph.h"

#include <QTextCursor>

void RtfParagraph::append(const QString &text, const QTextCharFormat &charFormat)
{
    if (text.isEmpty())
        return;
    if (!runs.isEmpty() && runs.last().format == charFormat)
        runs.last().text += text;
    else
        runs.append({text, charFormat});
}

void RtfParagraph::append(const RtfParagraph &other)
{
    for (const Run &run : other.runs)
        append(run.text, run.format);
}

void RtfParagraph::fill(QTextCursor &cursor, bool withMarkFormat) const
{
    cursor.setBlockFormat(format);
    if (withMarkFormat)
        cursor.setBlockCharFormat(markFormat);
    for (const Run &run : runs)
        cursor.insertText(run.text, run.format);
}
