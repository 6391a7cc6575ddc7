#include "cli/CliCommand.h"

#include "app/Ledgerwick.h"
#include "core/DatabasePaths.h"

#include <QFileInfo>

#include <cstdio>

CliCommand::CliCommand(const char *synopsis, const char *description)
    : m_synopsis(QString::fromUtf8(synopsis))
{
    m_parser.setApplicationDescription(QString::fromUtf8(description));
    m_parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    m_parser.addHelpOption();
}

void CliCommand::addValueOption(const QString &name, const QString &valueName, const QString &description)
{
    m_parser.addOption(QCommandLineOption(name, description, valueName));
}

void CliCommand::addFlag(const QString &name, const QString &description)
{
    m_parser.addOption(QCommandLineOption(name, description));
}

void CliCommand::addDbOption()
{
    addValueOption(QStringLiteral("db"), QStringLiteral("BUNDLE"),
                   QStringLiteral("the database bundle (default: the one the preferences name)"));
}

int CliCommand::parse(const QStringList &args, qsizetype minPositional, qsizetype maxPositional)
{
    // The parser expects the program's name first. Asking for help wins
    // over any other mistake on the line.
    const bool parsed = m_parser.parse(QStringList{QStringLiteral("ledgerwick-cli")} + args);
    const bool help = args.contains(QStringLiteral("--help")) || args.contains(QStringLiteral("-h"));
    if (!parsed && !help)
        return usageError(m_parser.errorText());
    if (help) {
        // Qt's own first line names the program file; ours names the command.
        QString help = m_parser.helpText();
        help = help.mid(help.indexOf(QLatin1Char('\n')) + 1);
        std::printf("usage: ledgerwick-cli %s\n%s", qPrintable(m_synopsis), qPrintable(help));
        return 0;
    }
    const qsizetype count = m_parser.positionalArguments().size();
    if (count < minPositional || count > maxPositional)
        return usageError(count < minPositional ? QStringLiteral("missing arguments")
                                                : QStringLiteral("too many arguments"));
    return -1;
}

int CliCommand::usageError(const QString &message) const
{
    if (!message.isEmpty())
        std::fprintf(stderr, "ledgerwick-cli: %s\n", qPrintable(message));
    const QString command = m_synopsis.section(QLatin1Char(' '), 0, 0);
    std::fprintf(stderr, "usage: ledgerwick-cli %s\nRun 'ledgerwick-cli %s --help' for its options.\n",
                 qPrintable(m_synopsis), qPrintable(command));
    return 2;
}

QString CliCommand::bundleFolder() const
{
    const QString db = value(QStringLiteral("db"));
    return db.isEmpty() ? DatabasePaths::databaseLocation() : DatabasePaths::expandTilde(db);
}

void CliCommand::addBreakStaleLockOption()
{
    addFlag(QStringLiteral("break-stale-lock"),
            QStringLiteral("take over a lock left by a copy that is no longer running"));
}

bool reportSaveFailures(const Ledgerwick &ledgerwick)
{
    for (const QString &failure : ledgerwick.lastSaveFailures())
        std::fprintf(stderr, "ledgerwick-cli: not written: %s\n", qPrintable(failure));
    return !ledgerwick.lastSaveFailures().isEmpty();
}

int openBundle(Ledgerwick &ledgerwick, const QString &folder, BundleAccess access, const char *notDone, bool mayCreate,
               bool breakStaleLock)
{
    if (!mayCreate && !QFileInfo(folder).isDir()) {
        std::fprintf(stderr, "ledgerwick-cli: there is no database at %s\n", qPrintable(folder));
        return 1;
    }
    ledgerwick.setDatabaseLocation(folder);
    ledgerwick.readDatabase(access == BundleAccess::Write);
    if (access == BundleAccess::Write && ledgerwick.isReadOnly() && ledgerwick.lockIsStale()) {
        if (!breakStaleLock || !ledgerwick.openAnyway()) {
            std::fprintf(stderr,
                         "ledgerwick-cli: the copy that opened the database at %s%s is no longer running; "
                         "run again with --break-stale-lock to open it anyway; %s\n",
                         qPrintable(ledgerwick.originalDbLocation()),
                         ledgerwick.lockDateTime().isEmpty()
                             ? ""
                             : qPrintable(QStringLiteral(" on ") + ledgerwick.lockDateTime()),
                         notDone);
            return 3;
        }
        std::fprintf(stderr, "ledgerwick-cli: took over the lock left by a copy that is no longer running\n");
    }
    if (access == BundleAccess::Write && ledgerwick.isReadOnly()) {
        std::fprintf(stderr, "ledgerwick-cli: the database at %s is open in another copy of Ledgerwick (locked %s); %s\n",
                     qPrintable(ledgerwick.originalDbLocation()),
                     ledgerwick.lockDateTime().isEmpty()
                         ? "at an unknown time"
                         : qPrintable(QStringLiteral("since ") + ledgerwick.lockDateTime()),
                     notDone);
        return 3;
    }
    return -1;
}
