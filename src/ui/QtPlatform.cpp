#include "ui/QtPlatform.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

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

} // namespace

QtPlatform::QtPlatform(QWidget *window) : m_window(window)
{
}

void QtPlatform::setWindow(QWidget *window)
{
    m_window = window;
}

int QtPlatform::alert(const Alert &alert)
{
    QMessageBox box(m_window);
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
    if (m_window)
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
    box.exec();
    const qsizetype index = made.indexOf(box.clickedButton());
    return index < 0 ? (made.size() > 1 ? 1 : 0) : int(index);
}

QString QtPlatform::openPanel(const Panel &panel)
{
    if (panel.chooseDirectories)
        return QFileDialog::getExistingDirectory(m_window, panel.title, panel.directory);
    return QFileDialog::getOpenFileName(m_window, panel.title, panel.directory, filterFor(panel.fileTypes));
}

QString QtPlatform::savePanel(const Panel &panel)
{
    QFileDialog dialog(m_window, panel.title, panel.directory, filterFor(panel.fileTypes));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    if (!panel.fileTypes.isEmpty())
        dialog.setDefaultSuffix(panel.fileTypes.first());
    if (!panel.suggestedName.isEmpty())
        dialog.selectFile(panel.suggestedName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    QString path = dialog.selectedFiles().constFirst();
    // The file type is required: add it when the user typed another one.
    if (!panel.fileTypes.isEmpty() && !panel.fileTypes.contains(QFileInfo(path).suffix(), Qt::CaseInsensitive))
        path += QLatin1Char('.') + panel.fileTypes.first();
    return path;
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
    return QDesktopServices::openUrl(url);
}

bool QtPlatform::openPath(const QString &path)
{
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

void QtPlatform::beep()
{
    QApplication::beep();
}
