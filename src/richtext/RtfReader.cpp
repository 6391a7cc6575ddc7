#include "richtext/RtfReader.h"

#include "core/Platform.h"
#include "richtext/RtfParser.h"

#include <QFile>
#include <QFileInfo>

bool RtfReader::read(QByteArrayView data, QTextDocument *document, const QString &packageDir)
{
    m_error.clear();
    RtfParser parser(document, packageDir);
    if (!parser.parse(data)) {
        m_error = lwTr("The document is not in RTF format.");
        return false;
    }
    return true;
}

bool RtfReader::readFile(const QString &path, QTextDocument *document)
{
    m_error.clear();
    const QFileInfo info(path);
    const bool package = info.isDir() || path.endsWith(QLatin1String(".rtfd"), Qt::CaseInsensitive) ||
                         path.endsWith(QLatin1String(".rtfd/"), Qt::CaseInsensitive);
    const QString textPath = package ? path + QStringLiteral("/TXT.rtf") : path;
    QFile file(textPath);
    if (!file.open(QIODevice::ReadOnly)) {
        m_error = lwTr("The file \"%1\" could not be read: %2").arg(textPath, file.errorString());
        return false;
    }
    if (file.size() > kMaxFileSize) {
        m_error = lwTr("The file \"%1\" is too large.").arg(textPath);
        return false;
    }
    const QByteArray data = file.readAll();
    return read(data, document, package ? info.absoluteFilePath() : QString());
}
