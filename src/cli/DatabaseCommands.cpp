#include "cli/CommandLine.h"
#include "cli/Commands.h"

#include "core/CliPlatform.h"
#include "core/DatabasePaths.h"
#include "core/Ledgerwick.h"
#include "core/lwDataSource.h"

#include <QFileInfo>

#include <cstdio>

namespace {

} // namespace

int checkCommand(const QStringList &args)
{
    CommandLine line(args, {QStringLiteral("--db")});
    if (!line.ok() || !line.positional().isEmpty()) {
        std::fprintf(stderr, "usage: ledgerwick-cli check [--db BUNDLE]\n%s\n", qPrintable(line.error()));
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
    ledgerwick.readDatabase(false);
    const struct
    {
        const char *label;
        lwDataSource *collection;
    } counts[] = {
        {"contacts", ledgerwick.getContactManager()}, {"orders", ledgerwick.getOrderManager()},
        {"items", ledgerwick.getItemManager()},       {"materials", ledgerwick.getBOMManager()},
        {"bills", ledgerwick.getBillManager()},       {"actions", ledgerwick.getActionManager()},
    };
    for (const auto &count : counts)
        std::printf("%s %d\n", count.label, count.collection->getCount());
    std::printf("read-only %s\n", ledgerwick.isReadOnly() ? "yes" : "no");
    return 0;
}

int saveCommand(const QStringList &args)
{
    CommandLine line(args, {QStringLiteral("--db")});
    if (!line.ok() || !line.positional().isEmpty()) {
        std::fprintf(stderr, "usage: ledgerwick-cli save [--db BUNDLE]\n%s\n", qPrintable(line.error()));
        return 2;
    }
    CliPlatform platform;
    Ledgerwick ledgerwick(&platform);
    ledgerwick.setDatabaseLocation(line.bundleFolder());
    ledgerwick.readDatabase(true);
    if (ledgerwick.isReadOnly()) {
        std::fprintf(stderr,
                     "ledgerwick-cli: the database at %s is open in another copy of Ledgerwick (locked %s); "
                     "nothing was written\n",
                     qPrintable(ledgerwick.originalDbLocation()),
                     ledgerwick.lockDateTime().isEmpty()
                         ? "at an unknown time"
                         : qPrintable(QStringLiteral("since ") + ledgerwick.lockDateTime()));
        return 3;
    }
    if (!ledgerwick.writeDatabase(&ledgerwick)) {
        std::fprintf(stderr, "ledgerwick-cli: some files of %s could not be written (run with --verbose for details)\n",
                     qPrintable(ledgerwick.originalDbLocation()));
        return 1;
    }
    std::printf("saved %s\n", qPrintable(ledgerwick.originalDbLocation()));
    return 0;
}
