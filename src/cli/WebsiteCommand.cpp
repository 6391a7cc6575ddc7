#include "cli/CliCommand.h"
#include "cli/Commands.h"

#include "app/Ledgerwick.h"
#include "core/CliPlatform.h"
#include "products/ItemManager.h"
#include "products/WebsiteExport.h"

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
    // Objects that cannot be written are only logged, as in the app; the
    // finishing alert goes to standard error.
    WebsiteExport::exportAsSitemossObjects(*ledgerwick.getItemManager(), &platform);
    return 0;
}
