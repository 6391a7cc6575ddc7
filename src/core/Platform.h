#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <utility>

// A user-facing text looked up in the "Ledgerwick" translation context, with
// the English text as its key.
inline QString lwTr(const char *english)
{
    return QCoreApplication::translate("Ledgerwick", english);
}

// What the system asks of its desktop: alerts and questions, file panels, the
// pasteboard, opening URLs and files, a beep. The model only ever talks to
// this interface; the app, the command-line tool and the tests each install
// their own implementation.
class Platform
{
public:
    enum class AlertStyle { Informational, Warning, Critical };

    struct Alert
    {
        Alert(QString title = {}, QString informativeText = {}, QStringList buttons = {},
              AlertStyle style = AlertStyle::Warning)
            : title(std::move(title)), informativeText(std::move(informativeText)), buttons(std::move(buttons)),
              style(style)
        {
        }
        QString title;
        QString informativeText;
        QStringList buttons; // the first is the default; empty means just "OK"
        AlertStyle style = AlertStyle::Warning;
    };

    struct Panel
    {
        Panel(QString title = {}, QStringList fileTypes = {}, QString directory = {}, QString suggestedName = {},
              bool chooseDirectories = false)
            : title(std::move(title)), fileTypes(std::move(fileTypes)), directory(std::move(directory)),
              suggestedName(std::move(suggestedName)), chooseDirectories(chooseDirectories)
        {
        }
        QString title;
        QStringList fileTypes;          // extensions without the dot; empty accepts all
        QString directory;              // where the panel starts; empty: its own choice
        QString suggestedName;          // save panels only
        bool chooseDirectories = false; // open panels only
        QString prompt;                 // the confirming button's text; empty: the panel's own
        QString nameLabel;              // the label of the name field; empty: the panel's own
    };

    virtual ~Platform();

    // Shows a modal alert and answers the index of the button pressed
    // (0 = the first, default button).
    virtual int alert(const Alert &alert) = 0;
    // Convenience for the common one-button alert.
    void inform(const QString &title, const QString &text);

    // The chosen path, or "" when the user cancelled.
    virtual QString openPanel(const Panel &panel) = 0;
    virtual QString savePanel(const Panel &panel) = 0;

    virtual QString pasteboardText() = 0;
    virtual void setPasteboardText(const QString &text) = 0;

    virtual bool openUrl(const QUrl &url) = 0;
    // Opens a file or folder with the desktop's default application.
    virtual bool openPath(const QString &path) = 0;

    virtual void beep() = 0;
};
