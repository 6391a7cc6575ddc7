#include "cli/CliCommand.h"
#include "cli/Commands.h"

#include "app/Ledgerwick.h"
#include "core/CliPlatform.h"
#include "products/ItemManager.h"
#include "products/WebsiteExport.h"

#include <cstdio>

int websiteExportCommand(const QStringList &args)
{
    CliCommand command("website-export [--db BUNDLE]", "Writes the page objects of the items marked for the website.");
    command.addDbOption();
    if (const int status = command.parse(args, 0, 0); status >= 0)
        return status;
    CliPlatform platform;
    Ledgerwick ledgerwick(&platform);
    // Only the website folders are written: the database is read without
    // taking its lock, so this runs beside an open copy of the app too.
    if (const int status = openBundle(ledgerwick, command.bundleFolder(), BundleAccess::Look); status >= 0)
        return status;
    // The finishing alert goes to standard error, and so does every object
    // that could not be written.
    const QStringList failed = WebsiteExport::exportAsSitemossObjects(*ledgerwick.getItemManager(), &platform);
    for (const QString &path : failed)
        std::fprintf(stderr, "ledgerwick-cli: not written: %s\n", qPrintable(path));
    return failed.isEmpty() ? 0 : 1;
}
