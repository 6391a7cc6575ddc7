#include "app/BundleBackups.h"

#include "app/DatabaseStore.h"
#include "core/CalendarDate.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace {

QString recordPath(const QString &folder, const DatabaseStore::FileSpec &file)
{
    return QDir(folder).filePath(QString::fromLatin1(file.fileName));
}

// A hard link where possible, else a copy.
bool linkOrCopy(const QString &from, const QString &to, QString *error)
{
    if (::link(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0)
        return true;
    if (QFile::copy(from, to))
        return true;
    if (error)
        *error = QFileInfo(to).fileName() + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno));
    return false;
}

} // namespace

QString BundleBackups::backupsFolder(const QString &bundle)
{
    return QDir(bundle).filePath(QStringLiteral("Backups"));
}

QString BundleBackups::create(const QString &bundle, QString *error)
{
    const QString stamp = CalendarDate::currentDate().toString(QStringLiteral("%Y%m%d-%H%M%S"));
    const QDir backups(backupsFolder(bundle));
    // A second set in the same second takes the next number after the
    // highest one there, so that the names keep their order after pruning.
    int last = 0;
    for (const QString &existing : stamps(bundle))
        if (existing.left(15) == stamp)
            last = std::max(last, existing.size() > 16 ? existing.mid(16).toInt() : 1);
    const QString name = last == 0 ? stamp : stamp + QLatin1Char('-') + QString::number(last + 1);
    const QString set = backups.filePath(name);
    if (!QDir().mkpath(set)) {
        if (error)
            *error = QStringLiteral("cannot create ") + set;
        return {};
    }
    for (const auto &file : DatabaseStore::files()) {
        const QString from = recordPath(bundle, file);
        if (QFileInfo::exists(from) && !linkOrCopy(from, recordPath(set, file), error)) {
            QDir(set).removeRecursively();
            return {};
        }
    }
    QStringList all = stamps(bundle);
    while (all.size() > kKept)
        QDir(backups.filePath(all.takeFirst())).removeRecursively();
    return name;
}

QStringList BundleBackups::stamps(const QString &bundle)
{
    static const QRegularExpression stampName(QStringLiteral("^\\d{8}-\\d{6}(-\\d+)?$"));
    QStringList names = QDir(backupsFolder(bundle)).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    names.removeIf([](const QString &name) { return !stampName.match(name).hasMatch(); });
    // Same-second sets ("-2", "-3") sort after their first by number.
    std::sort(names.begin(), names.end(), [](const QString &a, const QString &b) {
        const QString baseA = a.left(15), baseB = b.left(15);
        if (baseA != baseB)
            return baseA < baseB;
        return a.mid(16).toInt() < b.mid(16).toInt();
    });
    return names;
}

bool BundleBackups::restore(const QString &bundle, const QString &stamp, QString *error)
{
    const QString set = QDir(backupsFolder(bundle)).filePath(stamp);
    if (stamp.isEmpty() || stamp.contains(QLatin1Char('/')) || !stamps(bundle).contains(stamp)) {
        if (error)
            *error = QStringLiteral("there is no backup ") + stamp;
        return false;
    }
    // The chosen set is linked beside the files first: the backup made next
    // may prune the oldest sets, the chosen one among them.
    const QString staging = QStringLiteral(".restore");
    for (const auto &file : DatabaseStore::files()) {
        const QString from = recordPath(set, file);
        const QString staged = recordPath(bundle, file) + staging;
        QFile::remove(staged);
        if (QFileInfo::exists(from) && !linkOrCopy(from, staged, error))
            return false;
    }
    if (create(bundle, error).isEmpty())
        return false;
    for (const auto &file : DatabaseStore::files()) {
        const QString to = recordPath(bundle, file);
        const QString staged = to + staging;
        if (!QFileInfo::exists(staged)) {
            QFile::remove(to); // the set had no such file
            continue;
        }
        // Renamed over its place: whole or not at all.
        if (std::rename(QFile::encodeName(staged).constData(), QFile::encodeName(to).constData()) != 0) {
            if (error)
                *error = QLatin1String(file.fileName) + QStringLiteral(": ") +
                         QString::fromLocal8Bit(std::strerror(errno));
            QFile::remove(staged);
            return false;
        }
    }
    return true;
}
