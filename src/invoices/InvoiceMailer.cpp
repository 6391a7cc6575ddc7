#include "invoices/InvoiceMailer.h"

#include "core/Platform.h"
#include "richtext/RichTextTools.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <QUrlQuery>

namespace {

QString fileNameFor(QString title)
{
    title.replace(QLatin1Char('/'), QLatin1Char('-'));
    return (title.trimmed().isEmpty() ? QStringLiteral("Invoice") : title.trimmed()) + QStringLiteral(".pdf");
}

} // namespace

InvoiceMailer::InvoiceMailer(Platform *platform)
    : m_platform(platform),
      m_finder([](const QString &program) { return QStandardPaths::findExecutable(program); }),
      m_launcher([](const QString &program, const QStringList &arguments) {
          return QProcess::startDetached(program, arguments);
      }),
      m_attachmentFolder(QDir::tempPath() + QStringLiteral("/ledgerwick-invoices"))
{
}

bool InvoiceMailer::writePdf(const QTextDocument *invoice, const QString &path)
{
    QString error;
    if (RichTextTools::writePdf(invoice, path, &error))
        return true;
    if (m_platform)
        m_platform->inform(lwTr("The PDF could not be written"), error);
    return false;
}

bool InvoiceMailer::saveAsPdf(const QTextDocument *invoice, const QString &title, QString *savedPath)
{
    if (!m_platform)
        return false;
    const QString path = m_platform->savePanel(
        Platform::Panel(lwTr("Save as PDF"), {QStringLiteral("pdf")}, QString(), fileNameFor(title)));
    if (path.isEmpty() || !writePdf(invoice, path))
        return false;
    if (savedPath)
        *savedPath = path;
    return true;
}

bool InvoiceMailer::email(const QTextDocument *invoice, const QString &title, const QString &address)
{
    const QString xdgEmail = m_finder(QStringLiteral("xdg-email"));
    if (!xdgEmail.isEmpty()) {
        // The mail program reads the attachment after we return: it must outlive this call.
        QDir().mkpath(m_attachmentFolder);
        const QString path = QDir(m_attachmentFolder).filePath(fileNameFor(title));
        if (!writePdf(invoice, path))
            return false;
        QStringList arguments = {QStringLiteral("--subject"), title, QStringLiteral("--attach"), path};
        if (!address.isEmpty())
            arguments.append(address);
        if (m_launcher(xdgEmail, arguments))
            return true;
        if (m_platform)
            m_platform->inform(lwTr("The mail program could not be started"),
                               lwTr("The invoice was saved as %1.").arg(path));
        return false;
    }
    if (!saveAsPdf(invoice, title))
        return false;
    QUrl mail(QStringLiteral("mailto:") + address);
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("subject"), title);
    mail.setQuery(query);
    return m_platform->openUrl(mail);
}
