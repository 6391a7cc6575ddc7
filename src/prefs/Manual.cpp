#include "prefs/Manual.h"

#include "core/DatabasePaths.h"
#include "core/Log.h"
#include "core/Platform.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUrl>

// The model library is static: its resources are only linked in when
// something names their initialiser, which has to be called from the global
// namespace.
static void initManualResources()
{
    Q_INIT_RESOURCE(manual);
}

namespace {

const char kHomePage[] = "https://ledgerwick.example.org/";
const char kShippedFolder[] = ":/manual/v5Pro";

void ensureResources()
{
    static const bool done = [] {
        initManualResources();
        return true;
    }();
    Q_UNUSED(done);
}

QByteArray fileContents(const QString &path, bool *ok)
{
    QFile file(path);
    *ok = file.open(QIODevice::ReadOnly);
    return *ok ? file.readAll() : QByteArray();
}

// True when the file at path already holds exactly these bytes.
bool holds(const QString &path, const QByteArray &data)
{
    QFile file(path);
    if (file.size() != data.size() || !file.open(QIODevice::ReadOnly))
        return false;
    return file.readAll() == data;
}

bool writeFile(const QString &path, const QByteArray &data)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit();
}

} // namespace

Manual::Manual(Platform *platform, QObject *parent) : QObject(parent), m_platform(platform)
{
}

QString Manual::homePage()
{
    return QLatin1String(kHomePage);
}

QStringList Manual::pageNames()
{
    return {
        QStringLiteral("menu.html"),           QStringLiteral("quickstart.html"),
        QStringLiteral("orders1.html"),        QStringLiteral("orders2.html"),
        QStringLiteral("orders3.html"),        QStringLiteral("orders4.html"),
        QStringLiteral("contacts.html"),       QStringLiteral("items.html"),
        QStringLiteral("prefs.html"),          QStringLiteral("timemanagement.html"),
        QStringLiteral("datamanagement.html"), QStringLiteral("accountsmanagement.html"),
        QStringLiteral("usermanagement.html"),
    };
}

QString Manual::folder()
{
    QString root = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (root.isEmpty())
        root = DatabasePaths::applicationSupportFolder();
    return root + QStringLiteral("/manual/v5Pro");
}

QString Manual::baseAddress()
{
    // Fully encoded, so that a space, "#" or "?" in the user's folder cannot
    // cut the address short once a page name is appended.
    return QUrl::fromLocalFile(folder()).toString(QUrl::FullyEncoded) + QLatin1Char('/');
}

bool Manual::installPages()
{
    ensureResources();
    const QString target = folder();
    if (!QDir().mkpath(target)) {
        lwLog(QStringLiteral("manual folder %1 could not be made").arg(target));
        return false;
    }
    bool allWritten = true;
    int shipped = 0;
    QDirIterator it(QLatin1String(kShippedFolder), QDir::Files);
    while (it.hasNext()) {
        const QString source = it.next();
        ++shipped;
        bool ok = false;
        const QByteArray data = fileContents(source, &ok);
        const QString path = target + QLatin1Char('/') + it.fileName();
        // Pages left by an older version of the program are replaced; the
        // same ones are left alone so the folder is not rewritten on every click.
        if (ok && holds(path, data))
            continue;
        if (!ok || !writeFile(path, data)) {
            lwLog(QStringLiteral("manual page %1 not written successfully").arg(it.fileName()));
            allWritten = false;
        }
    }
    if (shipped == 0) {
        lwLog(QStringLiteral("manual pages missing from the program"));
        return false;
    }
    return allWritten;
}

const QList<Manual::Entry> &Manual::contents()
{
    static const QList<Entry> entries = {
        {"menu.html", "Contents", &Manual::menu1},
        {"quickstart.html", "Getting started", &Manual::quickstart},
        {"orders1.html", "Orders", &Manual::orders},
        {"orders2.html", "Order lines", &Manual::BOM},
        {"orders3.html", "Money and invoices", &Manual::financial},
        {"orders4.html", "Repeating orders", &Manual::recurrence},
        {"contacts.html", "Contacts and companies", &Manual::contacts},
        {"items.html", "Items and stock", &Manual::items},
        {"timemanagement.html", "Tasks and time", &Manual::protime},
        {"accountsmanagement.html", "Accounts", &Manual::proaccounts},
        {"datamanagement.html", "Exports, reports and documents", &Manual::prodata},
        {"usermanagement.html", "Your database", &Manual::prodatabase},
        {"prefs.html", "Preferences", &Manual::prefs},
    };
    return entries;
}

QString Manual::pageTitle(const QString &page)
{
    for (const Entry &entry : contents())
        if (page == QLatin1String(entry.page))
            return lwTr(entry.title);
    return {};
}

void Manual::display(const QString &page)
{
    // Unwritable pages are logged; the help window then says the page is missing.
    installPages();
    const QUrl address(baseAddress() + page);
    if (!m_platform || !m_platform->openUrl(address))
        Q_EMIT openInHelpWindow(address);
}

void Manual::updates(QObject *)
{
    const QUrl address(homePage());
    if (!m_platform || !m_platform->openUrl(address))
        Q_EMIT openInHelpWindow(address);
}

void Manual::menu1(QObject *)
{
    display(QStringLiteral("menu.html"));
}

void Manual::quickstart(QObject *)
{
    display(QStringLiteral("quickstart.html"));
}

void Manual::orders(QObject *)
{
    display(QStringLiteral("orders1.html"));
}

void Manual::BOM(QObject *)
{
    display(QStringLiteral("orders2.html"));
}

void Manual::financial(QObject *)
{
    display(QStringLiteral("orders3.html"));
}

void Manual::recurrence(QObject *)
{
    display(QStringLiteral("orders4.html"));
}

void Manual::contacts(QObject *)
{
    display(QStringLiteral("contacts.html"));
}

void Manual::items(QObject *)
{
    display(QStringLiteral("items.html"));
}

void Manual::prefs(QObject *)
{
    display(QStringLiteral("prefs.html"));
}

void Manual::protime(QObject *)
{
    display(QStringLiteral("timemanagement.html"));
}

void Manual::prodata(QObject *)
{
    display(QStringLiteral("datamanagement.html"));
}

void Manual::proaccounts(QObject *)
{
    display(QStringLiteral("accountsmanagement.html"));
}

void Manual::prodatabase(QObject *)
{
    display(QStringLiteral("usermanagement.html"));
}
