#include "cli/Commands.h"

#include <QCommandLineParser>
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
    {"backups", "backups [--db BUNDLE]      list the dated backups with their record counts", backupsCommand},
    {"restore", "restore STAMP [--db BUNDLE] back up the current files, then put the backup STAMP back",
     restoreCommand},
    {"convert", "convert IN OUT            convert a document between .rtf, .rtfd, .html, .txt and .pdf",
     convertCommand},
    {"website-export", "website-export [--db BUNDLE] export the page objects of the items marked for the website",
     websiteExportCommand},
    {"export",
     "export KIND (--csv|--html) [--columns id:Title,...|--columns-file FILE] [--search TEXT] [--filter TITLE] [--from DATE]\n"
     "         [--order ID] [--output FILE] [--db BUNDLE]  write a list as the app's export does",
     exportCommand},
    {"import", "import KIND FILE [--db BUNDLE] import a tab-separated file into a list, then save", importCommand},
    {"import-v1", "import-v1 FILE [--db BUNDLE]  replace the database with a version-1 database file, then save",
     importV1Command},
    {"report",
     "report NAME (--csv|--html) [--contact ID] [--output FILE] [--db BUNDLE]\n"
     "         run a report and write what the reports tab's export writes; report --list names the reports",
     reportCommand},
    {"repeats", "repeats [--db BUNDLE]      copy the repeating orders that have fallen due, then save", repeatsCommand},
    {"invoice", "invoice ORDER_ID [--template NAME] --output FILE [--db BUNDLE]\n"
                "         fill an invoice template for an order and write it as .pdf, .rtf, .rtfd, .html or .txt",
     invoiceCommand},
};

void printHelp(FILE *out)
{
    std::fprintf(out, "Usage: ledgerwick-cli COMMAND [ARGUMENTS]\n"
                      "Works on a Ledgerwick database and its documents from the command line.\n\n"
                      "Commands:\n");
    for (const Command &command : kCommands)
        std::fprintf(out, "  %s\n", command.synopsis);
    std::fprintf(out, "\nOptions:\n"
                      "  COMMAND --help            the command's own options\n"
                      "  --verbose                 print the system log on standard error\n"
                      "  --break-stale-lock        (save, import, restore) take over a lock left by a copy that\n"
                      "                            is no longer running\n"
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

    QStringList args = QCoreApplication::arguments();
    // The system log stays quiet unless asked for, wherever --verbose stands:
    // standard error is for the command's own messages.
    if (args.removeAll(QStringLiteral("--verbose")) == 0)
        QLoggingCategory::setFilterRules(QStringLiteral("ledgerwick.info=false"));

    // The options before the command are the tool's; everything after its
    // name belongs to the command.
    QCommandLineParser parser;
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("show this help"));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("show the version"));
    parser.addOption(help);
    parser.addOption(version);
    if (!parser.parse(args)) {
        std::fprintf(stderr, "ledgerwick-cli: %s\n\n", qPrintable(parser.errorText()));
        printHelp(stderr);
        return 2;
    }
    if (parser.isSet(version)) {
        std::printf("ledgerwick-cli %s\n", LW_VERSION);
        return 0;
    }
    QStringList rest = parser.positionalArguments();
    if (parser.isSet(help) || rest.isEmpty() || rest.first() == QLatin1String("help")) {
        printHelp(stdout);
        return 0;
    }
    const QString name = rest.takeFirst();
    for (const Command &command : kCommands)
        if (name == QLatin1String(command.name))
            return command.run(rest);
    std::fprintf(stderr, "ledgerwick-cli: unknown command '%s'\n\n", qPrintable(name));
    printHelp(stderr);
    return 2;
}
