#pragma once

#include <QByteArray>
#include <QColor>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class QTextBlock;
class QTextCharFormat;
class QTextDocument;
class QTextFrame;
class QTextImageFormat;
class QTextTable;
class QImage;

// Writes a QTextDocument as RTF (pure ASCII, pictures embedded as PNG) or
// as an RTFD package (a folder holding "TXT.rtf" and one PNG file per
// picture), in the form RtfReader reads back unchanged.
class RtfWriter
{
public:
    struct Attachment
    {
        QString fileName;
        QByteArray data;
    };

    // RTF with pictures embedded.
    QByteArray toRtf(const QTextDocument *document);
    // RTF for a package: pictures are named attachments, listed in attachments().
    QByteArray toPackageRtf(const QTextDocument *document);
    QList<Attachment> attachments() const { return m_attachments; }

    // A path ending in ".rtfd" is written as a package, any other as RTF.
    // Each file is replaced atomically; on failure the old one stays.
    bool writeFile(const QTextDocument *document, const QString &path);

    QString errorString() const { return m_error; }

private:
    QByteArray generate(const QTextDocument *document, bool package);
    void collectFormats(const QTextCharFormat &format);
    void addFont(const QString &family);
    void addColor(const QColor &color);
    void writeFrame(const QTextFrame *frame, bool inTable);
    void writeBlock(const QTextBlock &block, bool inTable);
    void writeTable(const QTextTable *table);
    void writeCharFormat(const QTextCharFormat &format);
    void writeText(const QString &text);
    void writePicture(const QTextImageFormat &format);
    QImage pictureImage(const QString &name) const;
    // The package's file for a picture or kept file, made on first use.
    QString attachmentName(const QString &key, const QString &wanted, const std::function<QByteArray()> &data);
    int fontIndex(const QTextCharFormat &format) const;
    int colorIndex(const QColor &color) const;
    bool saveFile(const QString &path, const QByteArray &data);

    const QTextDocument *m_document = nullptr;
    bool m_package = false;
    QByteArray m_out;
    QStringList m_fonts;
    QHash<QString, int> m_fontIndexes;
    QList<QColor> m_colors;
    QHash<QRgb, int> m_colorIndexes;
    QList<Attachment> m_attachments;
    QHash<QString, QString> m_attachmentNames; // resource name or kept path -> file name
    QString m_error;
};
