#pragma once

#include <QList>
#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>

class QTextCursor;

// One paragraph as the reader collects it: its runs of text (a picture is a
// run of U+FFFC with an image format) and the formats in force at its end.
// Table cells keep their paragraphs like this until the table is complete.
struct RtfParagraph
{
    struct Run
    {
        QString text;
        QTextCharFormat format;
    };

    QTextBlockFormat format;
    QTextCharFormat markFormat; // the format of the paragraph mark itself
    QList<Run> runs;

    bool isEmpty() const { return runs.isEmpty(); }
    void append(const QString &text, const QTextCharFormat &charFormat);
    void append(const RtfParagraph &other);
    // Gives the cursor's block this paragraph's formats and content. The
    // first block of a table cell keeps its mark: it holds the cell's format.
    void fill(QTextCursor &cursor, bool withMarkFormat = true) const;
};
