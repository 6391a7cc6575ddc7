#pragma once

#include <QString>
#include <QStringList>

// Dated sets of the six record files in "Backups/<YYYYMMDD-HHMMSS>" inside
// the bundle. A set is made of hard links where the file system allows
// (nothing is copied: a save renames new files over the old ones, so the
// linked bytes never change), else of copies. The 10 latest sets are kept.
class BundleBackups
{
public:
    static constexpr int kKept = 10;
    static QString backupsFolder(const QString &bundle);
    // Links the record files that exist into a new set; answers its stamp,
    // or "" with the reason when none could be made.
    static QString create(const QString &bundle, QString *error = nullptr);
    // The stamps of the sets, oldest first.
    static QStringList stamps(const QString &bundle);
    // Backs up the current files, then puts the set's files back in their
    // place (each renamed into place whole); a record file the set lacks is
    // removed. False, with the reason, when the set does not exist or a file
    // could not be put back.
    static bool restore(const QString &bundle, const QString &stamp, QString *error = nullptr);
};
