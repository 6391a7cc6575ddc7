#pragma once

#include "richtext/RtfParagraph.h"
#include "richtext/RtfTableBuilder.h"
#include "richtext/RtfTokenizer.h"
#include "richtext/TextCodepage.h"

#include <QByteArray>
#include <QColor>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QTextCursor>
#include <QTextOption>

class QImage;
class QTextDocument;

// Turns RTF into the content of a QTextDocument: the group state stack,
// destinations (font and colour tables, fields, pictures, RTFD attachments),
// character and paragraph formatting, and tables. Used once per document.
class RtfParser
{
public:
    // Beyond this nesting, groups are skipped whole.
    static constexpr int kMaxDepth = 256;

    // Attachments named by \NeXTGraphic are read from packageDir when given.
    RtfParser(QTextDocument *document, const QString &packageDir);

    // False only when the data does not start as RTF; damaged RTF gives
    // what could be read.
    bool parse(QByteArrayView data);

private:
    enum class Destination {
        Text,
        Skip,
        FontTable,
        ColorTable,
        Info,
        Title,
        Picture,
        Attachment,
        FieldInstruction,
    };

    struct CharState
    {
        int font = -1;
        int halfPoints = 24;
        bool bold = false;
        bool italic = false;
        bool strike = false;
        int underline = 0; // QTextCharFormat::UnderlineStyle
        int foreground = -1;
        int background = -1;
        int verticalAlignment = 0; // QTextCharFormat::VerticalAlignment
    };

    struct ParaState
    {
        Qt::Alignment alignment = Qt::AlignLeft;
        int leftIndent = 0; // all in twips
        int rightIndent = 0;
        int firstIndent = 0;
        int spaceBefore = 0;
        int spaceAfter = 0;
        QList<QTextOption::Tab> tabs;
        QTextOption::TabType nextTabType = QTextOption::LeftTab;
        bool inTable = false;
        bool pageBreakBefore = false;
    };

    struct GroupState
    {
        Destination destination = Destination::Text;
        CharState chars;
        ParaState para;
        QString href; // inside a hyperlink field's result
        int unicodeSkip = 1;
        bool ignorable = false;  // the group began with \*
        bool opensField = false; // this group is a \field
        bool dropAttachmentChar = false;
    };

    struct Font
    {
        QString family;
        int codepage = 0; // 0: the document's
    };

    struct Picture
    {
        QByteArray kind;
        QByteArray data;
        int highNibble = -1;
        int width = 0; // \picw, \pich: pixels for bitmaps
        int height = 0;
        int goalWidth = 0; // twips
        int goalHeight = 0;
        int scaleX = 100;
        int scaleY = 100;
    };

    GroupState &state() { return m_stack.last(); }
    void pushGroup();
    void popGroup();
    void endDestination(const GroupState &closed);

    void controlWord(const QByteArray &word, bool hasParameter, int parameter);
    bool destinationWord(const QByteArray &word);
    bool characterWord(const QByteArray &word, bool hasParameter, int parameter);
    bool paragraphWord(const QByteArray &word, bool hasParameter, int parameter);
    bool tableWord(const QByteArray &word, bool hasParameter, int parameter);
    void controlSymbol(char symbol);

    void textBytes(QByteArrayView bytes);
    void unicodeCharacter(char32_t character);
    void appendDecoded(const QString &text);
    void flushBytes();
    int currentCodepage() const;

    QTextCharFormat charFormat(const GroupState &group) const;
    QTextBlockFormat blockFormat(const ParaState &para) const;
    void endParagraph(bool endsCell);
    void emitParagraph(const RtfParagraph &paragraph);
    void flushTable();
    void finish();

    void commitFont();
    void commitColor();
    void finishPicture();
    void finishAttachment();
    QImage decodeImage(const QByteArray &data);
    void appendImage(const QString &name, const QImage &image, qreal width, qreal height,
                     const QString &keptFile = QString());
    QString uniqueResourceName(const QString &wanted);

    QTextDocument *m_document;
    QString m_packageDir;
    QTextCursor m_cursor;
    bool m_blockPending = true; // the cursor's block is empty and awaits a paragraph

    QList<GroupState> m_stack;
    int m_overflowDepth = 0;
    int m_skipCount = 0; // \uc fallback characters still to skip
    bool m_done = false;

    TextCodepage m_codepages;
    int m_documentCodepage = TextCodepage::kWindowsLatin1;
    int m_defaultFont = 0;
    QHash<int, Font> m_fonts;
    int m_fontIndex = -1;
    int m_fontCharset = 0;
    int m_fontCodepage = 0;
    QString m_fontName;
    QList<QColor> m_colors;
    int m_red = -1;
    int m_green = -1;
    int m_blue = -1;

    QByteArray m_pendingBytes;
    char16_t m_highSurrogate = 0;
    QString m_destinationText; // font name, title, attachment name
    QList<QString> m_fields;   // instructions of the open fields

    RtfParagraph m_paragraph;
    RtfTableBuilder m_table;
    bool m_pendingBorder = false;
    bool m_pageBreakNext = false;

    Picture m_picture;
    int m_attachmentWidth = 0;
    int m_attachmentHeight = 0;
    qint64 m_pixelBudget;
    QSet<QString> m_resourceNames;
    QHash<QString, QString> m_attachments; // file name in the package -> resource name
};
