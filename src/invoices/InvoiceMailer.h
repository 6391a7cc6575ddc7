#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class Platform;
class QTextDocument;

// Sends a filled invoice as a PDF with the desktop's mail program: through
// "xdg-email --attach" where that exists; otherwise the user saves the PDF
// and the mail program opens addressed to the customer, to attach it by hand.
class InvoiceMailer
{
public:
    // Finds a program on the PATH ("" when none) and starts one detached.
    using Finder = std::function<QString(const QString &program)>;
    using Launcher = std::function<bool(const QString &program, const QStringList &arguments)>;

    explicit InvoiceMailer(Platform *platform);
    void setFinder(Finder finder) { m_finder = std::move(finder); }
    void setLauncher(Launcher launcher) { m_launcher = std::move(launcher); }
    // Where the attachment is written (default: a folder under the system's temporary folder).
    void setAttachmentFolder(const QString &folder) { m_attachmentFolder = folder; }

    // The PDF is named after the title ("Invoice 1001.pdf"). False when the
    // user cancelled or a file could not be written (the user was told).
    bool email(const QTextDocument *invoice, const QString &title, const QString &address);
    // Asks where to save, then writes the PDF; false when cancelled or it failed (told).
    bool saveAsPdf(const QTextDocument *invoice, const QString &title, QString *savedPath = nullptr);

private:
    bool writePdf(const QTextDocument *invoice, const QString &path);

    Platform *m_platform;
    Finder m_finder;
    Launcher m_launcher;
    QString m_attachmentFolder;
};
