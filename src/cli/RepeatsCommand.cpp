#include "cli/CliCommand.h"
#include "cli/Commands.h"

#include "app/Ledgerwick.h"
#include "core/CliPlatform.h"
#include "orders/OrderManager.h"

#include <cstdio>

int repeatsCommand(const QStringList &args)
{
    CliCommand line("repeats [--db BUNDLE]",
                    "Runs one pass of the check for repeating orders that have fallen due, as the app does, and "
                    "saves the copies. Prints \"<source order number> -> <new order number>\" for each copy.");
    line.addDbOption();
    if (const int status = line.parse(args, 0, 0); status >= 0)
        return status;
    CliPlatform platform; // the copies' alerts go to standard error
    Ledgerwick ledgerwick(&platform);
    if (const int status = openBundle(ledgerwick, line.bundleFolder(), BundleAccess::Write, "no order was repeated");
        status >= 0)
        return status;
    const auto copies = ledgerwick.getOrderManager()->checkForOverdueRepeats();
    for (const auto &[source, copy] : copies)
        std::printf("%s -> %s\n", qPrintable(source), qPrintable(copy));
    std::fflush(stdout);
    // Each copy saved itself; saving as at quit releases the lock taken above.
    if (!ledgerwick.writeDatabase(&ledgerwick)) {
        std::fprintf(stderr, "ledgerwick-cli: some files of %s could not be written (run with --verbose for details)\n",
                     qPrintable(ledgerwick.originalDbLocation()));
        return 1;
    }
    return 0;
}
