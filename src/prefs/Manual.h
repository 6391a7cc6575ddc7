#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>

class Platform;

// Target of the help menu and the windows' help buttons: each action opens
// one page of the manual in the user's browser, or, where the desktop has
// none, asks for the program's own help window. The pages ship inside the
// program and are unpacked into a folder of the user's, so the manual works
// without a network and always matches the program that shows it.
class Manual : public QObject
{
    Q_OBJECT
public:
    explicit Manual(Platform *platform, QObject *parent = nullptr);
    void setPlatform(Platform *platform) { m_platform = platform; }

    // The project's home page, opened by updates().
    static QString homePage();
    // The page files of the manual in the order of its contents.
    static QStringList pageNames();
    // The folder the pages are unpacked into; ends in "manual/v5Pro".
    static QString folder();
    // That folder as a file URL, with the trailing "/" the page names are
    // appended to.
    static QString baseAddress();
    // Writes each shipped file (pages and stylesheet) that is missing from
    // folder() or differs from the shipped one. False when one of them could
    // not be written; the others are still written.
    static bool installPages();
    // The title a page is listed under in the manual's contents.
    static QString pageTitle(const QString &page);
    // The pages in the order of the manual's contents, each with its action.
    struct Entry
    {
        const char *page;
        const char *title;
        void (Manual::*action)(QObject *);
    };
    static const QList<Entry> &contents();

Q_SIGNALS:
    // The desktop could not open the address: the program shows it itself.
    void openInHelpWindow(const QUrl &address);

public Q_SLOTS:
    // Opens the base address followed by the page name, e.g. "items.html".
    void display(const QString &page);
    void updates(QObject *sender = nullptr);

    // The page actions; the sender is accepted for the menus and ignored.
    void menu1(QObject *sender = nullptr);
    void quickstart(QObject *sender = nullptr);
    void orders(QObject *sender = nullptr);
    void BOM(QObject *sender = nullptr);
    void financial(QObject *sender = nullptr);
    void recurrence(QObject *sender = nullptr);
    void contacts(QObject *sender = nullptr);
    void items(QObject *sender = nullptr);
    void prefs(QObject *sender = nullptr);
    void protime(QObject *sender = nullptr);
    void prodata(QObject *sender = nullptr);
    void proaccounts(QObject *sender = nullptr);
    void prodatabase(QObject *sender = nullptr);

private:
    Platform *m_platform = nullptr; // not owned
};
