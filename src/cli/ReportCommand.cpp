#include "cli/CliCommand.h"
#include "cli/Commands.h"

#include "app/Ledgerwick.h"
#include "core/CliPlatform.h"
#include "core/DatabasePaths.h"
#include "core/PropertyListWriter.h"
#include "prefs/PrefsController.h"
#include "reports/ReportManager.h"

#include <QFileInfo>
#include <QStringEncoder>

#include <cstdio>

int reportCommand(const QStringList &args)
{
    CliCommand line("report NAME (--csv|--html) [--contact ID] [--output FILE] [--db BUNDLE] | report --list",
                    "Runs a report as the reports tab does and writes what its export writes. --list prints the "
                    "reports the tab offers. No contact is open: \"currentcontact\" is -1 unless --contact is given.");
    line.parser().addPositionalArgument(QStringLiteral("NAME"), QStringLiteral("the report to run"));
    line.addFlag(QStringLiteral("list"), QStringLiteral("print the reports offered, one per line"));
    line.addFlag(QStringLiteral("csv"), QStringLiteral("spreadsheet text (UTF-8)"));
    line.addFlag(QStringLiteral("html"), QStringLiteral("an HTML page (UTF-16)"));
    line.addValueOption(QStringLiteral("contact"), QStringLiteral("ID"),
                        QStringLiteral("the id of the contact taken as open"));
    line.addValueOption(QStringLiteral("output"), QStringLiteral("FILE"),
                        QStringLiteral("where to write (default: standard output)"));
    line.addDbOption();
    if (const int status = line.parse(args, 0, 1); status >= 0)
        return status;
    const bool list = line.isSet(QStringLiteral("list"));
    const bool html = line.isSet(QStringLiteral("html"));
    if (list != line.positional().isEmpty())
        return line.usageError(QStringLiteral("give a report's NAME or --list"));
    if (!list && html == line.isSet(QStringLiteral("csv")))
        return line.usageError(QStringLiteral("give one of --csv and --html"));
    bool contactOk = true;
    const QString contact = line.value(QStringLiteral("contact"));
    if (line.isSet(QStringLiteral("contact")))
        contact.toInt(&contactOk);
    if (!contactOk)
        return line.usageError(QStringLiteral("--contact needs a contact's id"));

    CliPlatform platform;
    Ledgerwick ledgerwick(&platform);
    // As at start-up: the preferences (the date format), then the folder.
    ledgerwick.getPrefsController()->readDefaults(&ledgerwick);
    ReportManager *reports = ledgerwick.getReportManager();
    reports->populateFilter();
    if (list) {
        for (const QString &name : std::as_const(reports->filterPopUp().entries))
            std::printf("%s\n", qPrintable(name));
        return 0;
    }
    const QString name = line.positional().first();
    const QString definition = DatabasePaths::reportsFolder() + QLatin1Char('/') + name + QStringLiteral(".xml");
    if (!QFileInfo(definition).isFile()) {
        std::fprintf(stderr, "ledgerwick-cli: there is no report called \"%s\" (no file %s; see report --list)\n",
                     qPrintable(name), qPrintable(definition));
        return 2;
    }
    // Reading only: no lock is taken, so this runs beside an open app.
    if (const int status = openBundle(ledgerwick, line.bundleFolder(), BundleAccess::Look); status >= 0)
        return status;
    if (line.isSet(QStringLiteral("contact")))
        reports->setCurrentContactSource([contact] { return contact; });
    reports->doReport(name);

    // The same bytes as the app's export of the reports table.
    const QList<lwDataSource::Column> columns = reports->columns();
    QByteArray bytes;
    if (html) {
        const QString page = QStringLiteral("<html><head><title>Data Export from Ledgerwick</title><body>") +
                             reports->getDataAsHTMLusingTableView(columns) + QStringLiteral("</body></head></html>");
        bytes = QByteArray("\xFF\xFE", 2);
        QStringEncoder utf16(QStringConverter::Utf16LE);
        bytes.append(utf16(page));
    } else {
        bytes = reports->getDataAsCSVusingTableView(columns).toUtf8();
    }
    const QString output = line.value(QStringLiteral("output"));
    const bool written = output.isEmpty() ? std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout) ==
                                                    size_t(bytes.size()) && std::fflush(stdout) == 0
                                          : PropertyListWriter::writeFile(output, bytes);
    if (!written) {
        std::fprintf(stderr, "ledgerwick-cli: could not write %s\n",
                     output.isEmpty() ? "to standard output" : qPrintable(output));
        return 1;
    }
    return 0;
}
