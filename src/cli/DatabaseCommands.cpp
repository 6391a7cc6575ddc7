#include "cli/CliCommand.h"
#include "cli/Commands.h"

#include "app/Ledgerwick.h"
#include "core/CliPlatform.h"
#include "core/lwDataSource.h"

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
    if (const int status = command.parse(args, 0, 0); status >= 0)
        return status;
    CliPlatform platform;
    Ledgerwick ledgerwick(&platform);
    if (const int status = openBundle(ledgerwick, command.bundleFolder(), BundleAccess::Write,
                                      "nothing was written", true);
        status >= 0)
        return status;
    if (!ledgerwick.writeDatabase(&ledgerwick)) {
        std::fprintf(stderr, "ledgerwick-cli: some files of %s could not be written (run with --verbose for details)\n",
                     qPrintable(ledgerwick.originalDbLocation()));
        return 1;
    }
    std::printf("saved %s\n", qPrintable(ledgerwick.originalDbLocation()));
    return 0;
}
