#pragma once

#include <QByteArrayView>
#include <QString>
#include <QTextFormat>

class QTextDocument;

// Reads RTF, and RTFD packages (a folder holding "TXT.rtf" and the files it
// shows), into a QTextDocument.
class RtfReader
{
public:
    // Refuses larger files rather than trying to hold them.
    static constexpr qint64 kMaxFileSize = 256 * 1024 * 1024;
    // An attachment that is not a picture (a PDF, say) shows as an empty
    // placeholder; its image format keeps the file's path under this
    // property so that saving the package again keeps the file.
    static constexpr int kAttachmentPathProperty = QTextFormat::UserProperty + 0x5254;

    // Replaces the document's content with the RTF. Attachments are read
    // from packageDir when given. False, with errorString(), when the data
    // is not RTF; damaged RTF gives what could be read.
    bool read(QByteArrayView data, QTextDocument *document, const QString &packageDir = QString());
    // An ".rtfd" package folder or an RTF file.
    bool readFile(const QString &path, QTextDocument *document);

    QString errorString() const { return m_error; }

private:
    QString m_error;
};
