#include "cli/Commands.h"

#include <QGuiApplication>
#include <QLoggingCategory>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

struct Command
{
    const char *name;
    const char *synopsis;
    int (*run)(const QStringList &args);
};

const Command kCommands[] = {
    {"check", "check [--db BUNDLE]        load the database as the app does (never writing) and count its records",
     checkCommand},
    {"save", "save [--db BUNDLE]         load the database, take its lock, save every file, release the lock",
     saveCommand},
    {"convert", "convert IN OUT            convert a document between .rtf, .rtfd, .html, .txt and .pdf",
     convertCommand},
    {"website-export", "website-export [--db BUNDLE] export the page objects of the items marked for the website",
     websiteExportCommand},
    {"export",
     "export KIND (--csv|--html) [--columns id:Title,...] [--search TEXT] [--filter TITLE] [--order ID]\n"
     "         [--output FILE] [--db BUNDLE]  write a list as the app's export does",
     exportCommand},
    {"import", "import KIND FILE [--db BUNDLE] import a tab-separated file into a list, then save", importCommand},
};

void printHelp(FILE *out)
{
    std::fprintf(out, "Usage: ledgerwick-cli COMMAND [ARGUMENTS]\n"
                      "Works on a Ledgerwick database and its documents from the command line.\n\n"
                      "Commands:\n");
    for (const Command &command : kCommands)
        std::fprintf(out, "  %s\n", command.synopsis);
    std::fprintf(out, "\nOptions:\n"
                      "  --verbose                 print the system log on standard error\n"
                      "  -h, --help                show this help\n"
                      "  -v, --version             show the version\n");
}

} // namespace

int main(int argc, char *argv[])
{
    // Documents are laid out and printed with fonts, which need a GUI
    // application; no window is ever shown.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ledgerwick-cli"));
    QCoreApplication::setOrganizationName(QStringLiteral("Ledgerwick"));
    QCoreApplication::setApplicationVersion(QStringLiteral(LW_VERSION));

    QStringList args = QCoreApplication::arguments().mid(1);
    // The system log stays quiet unless asked for: standard error is for
    // the command's own messages.
    if (args.removeAll(QStringLiteral("--verbose")) == 0)
        QLoggingCategory::setFilterRules(QStringLiteral("ledgerwick.info=false"));
    if (args.isEmpty() || args.first() == QLatin1String("-h") || args.first() == QLatin1String("--help") ||
        args.first() == QLatin1String("help")) {
        printHelp(stdout);
        return 0;
    }
    if (args.first() == QLatin1String("-v") || args.first() == QLatin1String("--version")) {
        std::printf("ledgerwick-cli %s\n", LW_VERSION);
        return 0;
    }
    const QString name = args.takeFirst();
    for (const Command &command : kCommands)
        if (name == QLatin1String(command.name))
            return command.run(args);
    std::fprintf(stderr, "ledgerwick-cli: unknown command '%s'\n\n", qPrintable(name));
    printHelp(stderr);
    return 2;
}
