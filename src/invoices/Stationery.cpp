#include "invoices/Stationery.h"

#include "core/Log.h"
#include "core/Platform.h"
#include "richtext/RtfReader.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QUrl>

#include <algorithm>

// The defaults are compiled into the static model library: their resources
// must be registered by name before the first use.
static void initStationeryResources()
{
    Q_INIT_RESOURCE(stationery);
}

namespace {

bool entryExists(const QString &path)
{
    // A dangling symbolic link still occupies the name: never write through it.
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

bool copyFile(const QString &from, const QString &to, QString *error)
{
    QFile in(from);
    if (!in.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot read \"%1\": %2").arg(from, in.errorString());
        return false;
    }
    const QByteArray bytes = in.readAll();
    QSaveFile out(to);
    if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size() || !out.commit()) {
        *error = QStringLiteral("cannot write \"%1\": %2").arg(to, out.errorString());
        return false;
    }
    return true;
}

bool copyTree(const QString &from, const QString &to, QString *error)
{
    if (!QFileInfo(from).isDir())
        return copyFile(from, to, error);
    if (!QDir().mkpath(to)) {
        *error = QStringLiteral("cannot create \"%1\"").arg(to);
        return false;
    }
    const QStringList names = QDir(from).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString &name : names)
        if (!copyTree(from + QLatin1Char('/') + name, to + QLatin1Char('/') + name, error))
            return false;
    return true;
}

int suffixRank(const QString &suffix)
{
    static const QStringList preferred = {QStringLiteral("rtfd"), QStringLiteral("rtf"), QStringLiteral("html"),
                                          QStringLiteral("htm")};
    const qsizetype rank = preferred.indexOf(suffix.toLower());
    return rank < 0 ? int(preferred.size()) : int(rank);
}

QString titleOf(const QString &entry)
{
    const QFileInfo info(entry);
    return info.suffix().isEmpty() ? entry : info.completeBaseName();
}

QStringList folderEntries()
{
    QStringList entries = QDir(Stationery::folder())
                              .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    // By title, so that "Invoice" comes before "Invoice with tax" (by whole
    // name the blank would sort before the dot) and every desktop lists alike.
    std::stable_sort(entries.begin(), entries.end(), [](const QString &a, const QString &b) {
        return titleOf(a).compare(titleOf(b), Qt::CaseInsensitive) < 0;
    });
    return entries;
}

} // namespace

QString Stationery::supportFolder()
{
    return QDir::homePath() + QStringLiteral("/Library/Application Support/Ledgerwick");
}

QString Stationery::folder()
{
    return supportFolder() + QStringLiteral("/stationary");
}

QStringList Stationery::defaultNames()
{
    return {QStringLiteral("Invoice"), QStringLiteral("Invoice with tax"), QStringLiteral("Reminder")};
}

QString Stationery::resourcePackage(const QString &name)
{
    if (!defaultNames().contains(name))
        return {};
    initStationeryResources();
    return QStringLiteral(":/stationery/") + name + QStringLiteral(".rtfd");
}

bool Stationery::copyIntoPlace(const QString &from, const QString &to, QString *error)
{
    QString reason;
    const QFileInfo target(to);
    QTemporaryDir staging(target.absolutePath() + QStringLiteral("/.staging-XXXXXX"));
    if (!staging.isValid()) {
        reason = QStringLiteral("cannot write in \"%1\"").arg(target.absolutePath());
    } else {
        const QString staged = staging.filePath(target.fileName());
        if (copyTree(from, staged, &reason)) {
            if (entryExists(to) || !QFile::rename(staged, to))
                reason = QStringLiteral("cannot move \"%1\" into place").arg(to);
            else
                return true;
        }
    }
    if (error)
        *error = reason;
    return false;
}

bool Stationery::installStationary(QString *error)
{
    QString reason;
    const QString stationery = folder();
    if (!QDir().mkpath(stationery)) {
        reason = QStringLiteral("cannot create \"%1\"").arg(stationery);
        lwLog(QStringLiteral("stationery folder not created"));
        if (error)
            *error = reason;
        return false;
    }
    bool ok = true;
    for (const QString &name : defaultNames()) {
        const QString target = stationery + QLatin1Char('/') + name + QStringLiteral(".rtfd");
        if (entryExists(target))
            continue;
        QString source = resourcePackage(name);
        // A template edited in an earlier version becomes the plain invoice.
        const QString earlier = supportFolder() + QStringLiteral("/customInvoice.rtfd");
        if (name == QLatin1String("Invoice") && QFileInfo::exists(earlier))
            source = earlier;
        QString why;
        if (!copyIntoPlace(source, target, &why)) {
            lwLog(QStringLiteral("stationery not copied: ") + why);
            if (reason.isEmpty())
                reason = why;
            ok = false;
        }
    }
    if (error)
        *error = reason;
    return ok;
}

QStringList Stationery::titles()
{
    QStringList titles;
    for (const QString &entry : folderEntries()) {
        if (entry.startsWith(QLatin1Char('.')))
            continue;
        const QString title = titleOf(entry);
        if (!titles.contains(title))
            titles.append(title);
    }
    return titles;
}

QString Stationery::templatePath(const QString &title)
{
    QString best;
    int bestRank = 0;
    for (const QString &entry : folderEntries()) {
        if (entry.startsWith(QLatin1Char('.')) || titleOf(entry) != title)
            continue;
        const int rank = suffixRank(QFileInfo(entry).suffix());
        if (best.isEmpty() || rank < bestRank) {
            best = entry;
            bestRank = rank;
        }
    }
    return best.isEmpty() ? QString() : folder() + QLatin1Char('/') + best;
}

bool Stationery::readDocument(const QString &path, QTextDocument *document)
{
    document->clear();
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("html") || suffix == QLatin1String("htm")) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return false;
        // Pictures named relative to the page are found beside it.
        document->setBaseUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath() + QLatin1Char('/')));
        document->setHtml(QString::fromUtf8(file.readAll()));
        return true;
    }
    RtfReader reader;
    if (reader.readFile(path, document))
        return true;
    lwLog(QStringLiteral("template not read: ") + reader.errorString());
    document->clear();
    return false;
}

bool Stationery::editInvoiceTemplate(Platform *platform)
{
    const QString stationery = folder();
    if (!QFileInfo(stationery).isDir() || !platform)
        return false;
    return platform->openPath(stationery);
}
