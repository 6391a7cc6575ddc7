#include "cli/CliCommand.h"
#include "cli/Commands.h"

#include "app/BundleBackups.h"
#include "app/Ledgerwick.h"
#include "core/CliPlatform.h"
#include "core/lwDataSource.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

int checkCommand(const QStringList &args)
{
    CliCommand command("check [--db BUNDLE]",
                       "Loads the database as the app does, never writing, and counts its records.");
    command.addDbOption();
    if (const int status = command.parse(args, 0, 0); status >= 0)
        return status;
    CliPlatform platform;
    Ledgerwick ledgerwick(&platform);
    if (const int status = openBundle(ledgerwick, command.bundleFolder(), BundleAccess::Look); status >= 0)
        return status;
    for (const auto &file : DatabaseStore::files())
        std::printf("%s %d\n", file.name, ledgerwick.manager(file.kind)->getCount());
    std::printf("read-only %s\n", ledgerwick.isReadOnly() ? "yes" : "no");
    return 0;
}

int saveCommand(const QStringList &args)
{
    CliCommand command("save [--db BUNDLE]",
                       "Loads the database, takes its lock, saves every file and releases the lock.");
    command.addDbOption();
    command.addBreakStaleLockOption();
    if (const int status = command.parse(args, 0, 0); status >= 0)
        return status;
    CliPlatform platform;
    Ledgerwick ledgerwick(&platform);
    // Only the standard bundle may be made by a first save; a folder named
    // with --db must already be there (a mistyped path makes no new bundle).
    if (const int status = openBundle(ledgerwick, command.bundleFolder(), BundleAccess::Write, "nothing was written",
                                      !command.isSet(QStringLiteral("db")),
                                      command.isSet(QStringLiteral("break-stale-lock")));
        status >= 0)
        return status;
    if (!ledgerwick.writeDatabase(&ledgerwick) || reportSaveFailures(ledgerwick)) {
        reportSaveFailures(ledgerwick);
        return 1;
    }
    std::printf("saved %s\n", qPrintable(ledgerwick.originalDbLocation()));
    return 0;
}

int backupsCommand(const QStringList &args)
{
    CliCommand command("backups [--db BUNDLE]", "Lists the dated backups of the database with their record counts.");
    command.addDbOption();
    if (const int status = command.parse(args, 0, 0); status >= 0)
        return status;
    const QString folder = command.bundleFolder();
    if (!QFileInfo(folder).isDir()) {
        std::fprintf(stderr, "ledgerwick-cli: there is no database at %s\n", qPrintable(folder));
        return 1;
    }
    const QStringList stamps = BundleBackups::stamps(folder);
    for (const QString &stamp : stamps) {
        const QString set = QDir(BundleBackups::backupsFolder(folder)).filePath(stamp);
        QStringList counts;
        for (const auto &file : DatabaseStore::files()) {
            const DatabaseStore::Loaded loaded = DatabaseStore::read(file.kind, set);
            counts << QLatin1String(file.name) + QLatin1Char(' ') +
                          (loaded.status == PropertyListReader::Status::Unreadable
                               ? QStringLiteral("unreadable")
                               : QString::number(loaded.records.size()));
        }
        std::printf("%s  %s\n", qPrintable(stamp), qPrintable(counts.join(QStringLiteral(", "))));
    }
    if (stamps.isEmpty())
        std::printf("no backups in %s\n", qPrintable(folder));
    return 0;
}

int restoreCommand(const QStringList &args)
{
    CliCommand command("restore STAMP [--db BUNDLE]",
                       "Backs up the current files, then puts the backup STAMP (see 'backups') back.");
    command.parser().addPositionalArgument(QStringLiteral("STAMP"), QStringLiteral("the backup to put back"));
    command.addDbOption();
    command.addBreakStaleLockOption();
    if (const int status = command.parse(args, 1, 1); status >= 0)
        return status;
    CliPlatform platform;
    Ledgerwick ledgerwick(&platform);
    if (const int status = openBundle(ledgerwick, command.bundleFolder(), BundleAccess::Write, "nothing was restored",
                                      false, command.isSet(QStringLiteral("break-stale-lock")));
        status >= 0)
        return status;
    QString error;
    const bool restored = ledgerwick.restoreBackup(command.positional().first(), &error);
    // The lock taken to restore is given back as a save at quit would.
    QFile::remove(ledgerwick.lockLocation());
    if (!restored) {
        std::fprintf(stderr, "ledgerwick-cli: not restored: %s\n", qPrintable(error));
        return 1;
    }
    std::printf("restored %s from %s\n", qPrintable(ledgerwick.originalDbLocation()),
                qPrintable(command.positional().first()));
    return 0;
}
