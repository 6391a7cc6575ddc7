#include "core/DatabasePaths.h"

#include <QDir>
#include <QSettings>

QString DatabasePaths::applicationSupportFolder()
{
    return QDir::homePath() + QStringLiteral("/Library/Application Support/Ledgerwick");
}

QString DatabasePaths::standardBundleFolder()
{
    return applicationSupportFolder() + QStringLiteral("/ledgerwickdatabase.lwkdb");
}

QString DatabasePaths::databaseLocation(const QString &locationPreference)
{
    if (locationPreference.isEmpty())
        return standardBundleFolder();
    return expandTilde(locationPreference);
}

QString DatabasePaths::databaseLocation()
{
    return databaseLocation(locationPreference());
}

QString DatabasePaths::locationPreference()
{
    // The app and the command-line tool share the one preferences store.
    const QSettings settings(QStringLiteral("Ledgerwick"), QStringLiteral("Ledgerwick"));
    return settings.value(QStringLiteral("LedgerwickDbLocation")).toString();
}

QString DatabasePaths::expandTilde(const QString &path)
{
    if (path == QLatin1String("~"))
        return QDir::homePath();
    if (path.startsWith(QLatin1String("~/")))
        return QDir::homePath() + path.mid(1);
    return path;
}

QString DatabasePaths::itemImagesFolder()
{
    return standardBundleFolder() + QStringLiteral("/ItemImages");
}

QString DatabasePaths::itemImageFile(int itemId)
{
    return itemImagesFolder() + QLatin1Char('/') + QString::number(itemId) + QStringLiteral(".tiff");
}

QString DatabasePaths::reportsFolder()
{
    return applicationSupportFolder() + QStringLiteral("/reports");
}
