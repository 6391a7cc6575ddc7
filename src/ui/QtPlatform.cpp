#include "ui/QtPlatform.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>

namespace {

QString filterFor(const QStringList &fileTypes)
{
    if (fileTypes.isEmpty())
        return {};
    QStringList patterns;
    for (const QString &type : fileTypes)
        patterns << QStringLiteral("*.") + type;
    return lwTr("Files") + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) + QStringLiteral(")");
}

// Whether the desktop has a program to show web pages. On X11 desktops the
// opener is started detached and reports success even when it then finds no
// browser, so the browser is looked for first.
bool desktopCanBrowse()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    if (QStandardPaths::findExecutable(QStringLiteral("xdg-open")).isEmpty())
        return false;
    if (!qEnvironmentVariableIsEmpty("BROWSER"))
        return true;
    static const char *const browsers[] = {"x-www-browser", "firefox", "firefox-esr", "chromium", "chromium-browser",
                                           "google-chrome", "epiphany", "konqueror", "falkon", "opera", "brave-browser",
                                           "microsoft-edge", "vivaldi", "midori", "qutebrowser"};
    for (const char *browser : browsers)
        if (!QStandardPaths::findExecutable(QLatin1String(browser)).isEmpty())
            return true;
    return false;
#else
    return true;
#endif
}

} // namespace

QtPlatform::QtPlatform(QWidget *window) : m_window(window), m_browserCheck(desktopCanBrowse)
{
}

void QtPlatform::setWindow(QWidget *window)
{
    m_window = window;
}

int QtPlatform::alert(const Alert &alert)
{
    QMessageBox box(parentWindow());
    switch (alert.style) {
    case AlertStyle::Informational:
        box.setIcon(QMessageBox::Information);
        break;
    case AlertStyle::Warning:
        box.setIcon(QMessageBox::Warning);
        break;
    case AlertStyle::Critical:
        box.setIcon(QMessageBox::Critical);
        break;
    }
    box.setWindowTitle(QCoreApplication::applicationName());
    box.setText(alert.title);
    box.setInformativeText(alert.informativeText);
    if (box.parentWidget())
        box.setWindowModality(Qt::WindowModal);
    const QStringList buttons = alert.buttons.isEmpty() ? QStringList{lwTr("OK")} : alert.buttons;
    QList<QAbstractButton *> made;
    for (qsizetype i = 0; i < buttons.size(); ++i) {
        // The first button is the default, the second the one Escape presses.
        const auto role = i == 0   ? QMessageBox::AcceptRole
                          : i == 1 ? QMessageBox::RejectRole
                                   : QMessageBox::DestructiveRole;
        QPushButton *button = box.addButton(buttons.at(i), role);
        made << button;
        if (i == 0)
            box.setDefaultButton(button);
    }
    box.setEscapeButton(made.size() > 1 ? made.at(1) : made.at(0));
    // A short alert would be narrower than its title bar needs, and window
    // managers then cut the program's name short.
    if (auto *grid = qobject_cast<QGridLayout *>(box.layout())) {
        const int wanted = box.fontMetrics().horizontalAdvance(box.windowTitle()) + 220;
        grid->addItem(new QSpacerItem(wanted, 0, QSizePolicy::Minimum, QSizePolicy::Fixed), grid->rowCount(), 0, 1,
                      grid->columnCount());
    }
    box.exec();
    const qsizetype index = made.indexOf(box.clickedButton());
    return index < 0 ? (made.size() > 1 ? 1 : 0) : int(index);
}

QString QtPlatform::openPanel(const Panel &panel)
{
    // A folder panel shows every folder: the caller checks a bundle's type.
    QFileDialog dialog(parentWindow(), panel.title, panel.directory,
                       panel.chooseDirectories ? QString() : filterFor(panel.fileTypes));
    dialog.setFileMode(panel.chooseDirectories ? QFileDialog::Directory : QFileDialog::ExistingFile);
    if (panel.chooseDirectories)
        dialog.setOption(QFileDialog::ShowDirsOnly);
    return runPanel(dialog, panel);
}

QString QtPlatform::savePanel(const Panel &panel)
{
    QFileDialog dialog(parentWindow(), panel.title, panel.directory, filterFor(panel.fileTypes));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    if (!panel.fileTypes.isEmpty())
        dialog.setDefaultSuffix(panel.fileTypes.first());
    if (!panel.suggestedName.isEmpty())
        dialog.selectFile(panel.suggestedName);
    QString path = runPanel(dialog, panel);
    // The file type is required: add it when the user typed another one.
    if (!path.isEmpty() && !panel.fileTypes.isEmpty() &&
        !panel.fileTypes.contains(QFileInfo(path).suffix(), Qt::CaseInsensitive))
        path += QLatin1Char('.') + panel.fileTypes.first();
    return path;
}

QString QtPlatform::runPanel(QFileDialog &dialog, const Panel &panel)
{
    if (!panel.prompt.isEmpty() || !panel.nameLabel.isEmpty()) {
        // The desktop's own dialogs take no labels.
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        if (!panel.prompt.isEmpty())
            dialog.setLabelText(QFileDialog::Accept, panel.prompt);
        if (!panel.nameLabel.isEmpty())
            dialog.setLabelText(QFileDialog::FileName, panel.nameLabel);
    }
    if (dialog.parentWidget())
        dialog.setWindowModality(Qt::WindowModal);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return dialog.selectedFiles().constFirst();
}

QWidget *QtPlatform::parentWindow() const
{
    // Sheets belong on the window the user is working in (an editor's
    // folder chooser on the editor); the main window otherwise.
    if (QWidget *active = QApplication::activeWindow())
        return active;
    return m_window;
}

QString QtPlatform::pasteboardText()
{
    return QGuiApplication::clipboard()->text();
}

void QtPlatform::setPasteboardText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

bool QtPlatform::openUrl(const QUrl &url)
{
    const bool webPage = url.scheme().startsWith(QLatin1String("http")) ||
                         (url.isLocalFile() && url.path().endsWith(QLatin1String(".html")));
    if (webPage && !m_browserCheck())
        return false;
    return QDesktopServices::openUrl(url);
}

void QtPlatform::setBrowserCheck(std::function<bool()> check)
{
    m_browserCheck = check ? std::move(check) : desktopCanBrowse;
}

bool QtPlatform::openPath(const QString &path)
{
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

void QtPlatform::beep()
{
    QApplication::beep();
}
