#include "cli/CommandLine.h"
#include "cli/Commands.h"

#include "core/CliPlatform.h"
#include "core/DatabasePaths.h"
#include "core/Ledgerwick.h"
#include "products/WebsiteExport.h"

#include <QFileInfo>

#include <cstdio>

int websiteExportCommand(const QStringList &args)
{
    CommandLine line(args, {QStringLiteral("--db")});
    if (!line.ok() || !line.positional().isEmpty()) {
        std::fprintf(stderr, "usage: ledgerwick-cli website-export [--db BUNDLE]\n%s\n", qPrintable(line.error()));
        return 2;
    }
    const QString folder = line.bundleFolder();
    if (!QFileInfo(folder).isDir()) {
        std::fprintf(stderr, "ledgerwick-cli: there is no database at %s\n", qPrintable(folder));
        return 1;
    }
    CliPlatform platform;
    Ledgerwick ledgerwick(&platform);
    ledgerwick.setDatabaseLocation(folder);
    // Only the website folders are written: the database is read without
    // taking its lock, so this runs beside an open copy of the app too.
    ledgerwick.readDatabase(false);
    // Objects that cannot be written are only logged, as in the app; the
    // finishing alert goes to standard error.
    WebsiteExport::exportAsSitemossObjects(*ledgerwick.getItemManager(), &platform);
    return 0;
}
