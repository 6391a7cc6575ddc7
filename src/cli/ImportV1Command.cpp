#include "cli/CliCommand.h"
#include "cli/Commands.h"

#include "app/Ledgerwick.h"
#include "core/CliPlatform.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>

int importV1Command(const QStringList &args)
{
    CliCommand line("import-v1 FILE [--db BUNDLE]",
                    "Replaces the whole database with a version-1 database file, after backing up the bundle's "
                    "files, then saves as at quit. Prints what came in and whether the file ended early.");
    line.parser().addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("the version-1 database file"));
    line.addDbOption();
    if (const int status = line.parse(args, 1, 1); status >= 0)
        return status;
    const QString file = line.positional().first();
    if (!QFileInfo(file).isFile() || !QFileInfo(file).isReadable()) {
        std::fprintf(stderr, "ledgerwick-cli: cannot read %s\n", qPrintable(file));
        return 1;
    }
    CliPlatform platform;
    Ledgerwick ledgerwick(&platform);
    if (const int status =
            openBundle(ledgerwick, line.bundleFolder(), BundleAccess::Write, "nothing was imported", true);
        status >= 0)
        return status;
    const V1DatabaseImport::Result result = ledgerwick.importLedgerwickDatabase(QFileInfo(file).absoluteFilePath());
    if (!result.imported) {
        // Nothing changed: only the lock taken above is let go.
        QFile::remove(ledgerwick.lockLocation());
        return 1;
    }
    for (int kind = 0; kind < V1DatabaseImport::kKinds; ++kind)
        std::printf("%s %d\n", V1DatabaseImport::kParents[size_t(kind)], result.counts[size_t(kind)]);
    if (result.ending != V1DatabaseImport::Ending::Complete)
        std::printf("ended early: %s\n", qPrintable(V1DatabaseImport::endingText(result.ending)));
    std::printf("backup %s\n", qPrintable(result.backupFolder));
    if (!ledgerwick.writeDatabase(&ledgerwick)) {
        std::fprintf(stderr, "ledgerwick-cli: some files of %s could not be written (run with --verbose for details)\n",
                     qPrintable(ledgerwick.originalDbLocation()));
        return 1;
    }
    std::printf("saved %s\n", qPrintable(ledgerwick.originalDbLocation()));
    return 0;
}
