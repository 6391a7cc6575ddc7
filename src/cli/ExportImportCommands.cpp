#include "cli/CliCommand.h"
#include "cli/Commands.h"

#include "accounts/ActionManager.h"
#include "accounts/BillManager.h"
#include "products/ItemManager.h"
#include "core/CliPlatform.h"
#include "app/DefaultColumns.h"
#include "app/Ledgerwick.h"
#include "core/lwDataSource.h"
#include "core/PropertyListWriter.h"
#include "orders/OrderManager.h"

#include <QFileInfo>
#include <QStringEncoder>

#include <cstdio>
#include <optional>

namespace {

using Kind = DatabaseStore::Kind;

std::optional<Kind> kindNamed(const QString &name)
{
    for (const auto &file : DatabaseStore::files())
        if (name == QLatin1String(file.name))
            return file.kind;
    return std::nullopt;
}

// "id:Title,id:Title": a column without a title is headed by its identifier.
QList<lwDataSource::Column> parseColumns(const QString &text)
{
    QList<lwDataSource::Column> columns;
    const QStringList entries = text.split(QLatin1Char(','));
    for (const QString &entry : entries) {
        const qsizetype colon = entry.indexOf(QLatin1Char(':'));
        const QString identifier = colon < 0 ? entry : entry.left(colon);
        if (identifier.isEmpty())
            return {};
        columns.append({identifier, colon < 0 ? identifier : entry.mid(colon + 1), 100});
    }
    return columns;
}

// The lists have no search field or filter pop-up of their own yet, so there
// is nothing to apply the search text or title to; they are refused rather
// than silently ignored.
bool applySearchAndFilter(Ledgerwick &ledgerwick, lwDataSource &list, const QString &kindName,
                          const CliCommand &line)
{
    // The lists with a search field and a filter pop-up, and where their
    // manager keeps them; the other lists bring theirs with their managers.
    QString *search = nullptr;
    PopUp *filter = nullptr;
    lwDataSource *filtered = &list;
    // The accounts' money-in and statement tables follow the bills' period.
    const bool accountsTable = &list == ledgerwick.getMoneyInList() || &list == ledgerwick.getStatementList();
    if (&list == ledgerwick.getItemManager()) {
        search = &ledgerwick.getItemManager()->editorState().searchText;
        filter = &ledgerwick.getItemManager()->editorState().stockFilter;
    } else if (&list == ledgerwick.getOrderManager()) {
        // The customers are linked as the app's first repeat pass links them.
        ledgerwick.getOrderManager()->relinkContacts();
        search = &ledgerwick.getOrderManager()->editorState().searchText;
        filter = &ledgerwick.getOrderManager()->editorState().statusFilter;
    } else if (&list == ledgerwick.getContactManager()) {
        search = &ledgerwick.getContactManager()->editorState().searchText;
        filter = &ledgerwick.getContactManager()->editorState().filter;
    } else if (&list == ledgerwick.getActionManager()) {
        search = &ledgerwick.getActionManager()->editorState().searchText;
        filter = &ledgerwick.getActionManager()->editorState().filter;
    } else if (&list == ledgerwick.getBillManager() || accountsTable) {
        BillEditorState &bills = ledgerwick.getBillManager()->editorState();
        search = &bills.searchText;
        filter = &bills.period;
        filtered = ledgerwick.getBillManager();
        if (line.isSet(QStringLiteral("from")))
            bills.fromDate = line.value(QStringLiteral("from"));
    }
    if (filtered == &list && &list != ledgerwick.getBillManager() && line.isSet(QStringLiteral("from"))) {
        std::fprintf(stderr, "ledgerwick-cli: only bills, money-in and statement take --from\n");
        return false;
    }
    if (accountsTable && line.isSet(QStringLiteral("search"))) {
        std::fprintf(stderr, "ledgerwick-cli: the %s table has no search field; --search cannot be applied\n",
                     qPrintable(kindName));
        return false;
    }
    if (!search) {
        for (const char *option : {"search", "filter"}) {
            if (line.isSet(QLatin1String(option))) {
                std::fprintf(stderr, "ledgerwick-cli: the %s list has no %s yet; --%s cannot be applied\n",
                             qPrintable(kindName), option[0] == 's' ? "search field" : "filter pop-up", option);
                return false;
            }
        }
    } else {
        if (line.isSet(QStringLiteral("search")))
            *search = line.value(QStringLiteral("search"));
        if (line.isSet(QStringLiteral("filter"))) {
            const QString title = line.value(QStringLiteral("filter"));
            if (!filter->entries.contains(title)) {
                std::fprintf(stderr, "ledgerwick-cli: the %s filter has no entry \"%s\" (it has: %s)\n",
                             qPrintable(kindName), qPrintable(title),
                             qPrintable(filter->entries.join(QStringLiteral(", "))));
                return false;
            }
            filter->selectTitle(title);
        }
    }
    filtered->filter(nullptr);
    return true;
}

bool writeOut(const QByteArray &bytes, const QString &output)
{
    if (!output.isEmpty())
        return PropertyListWriter::writeFile(output, bytes);
    const size_t written = std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    return std::fflush(stdout) == 0 && written == size_t(bytes.size());
}

// Answers the panel with the file given on the command line and remembers
// whether the import ended with its success alert.
class ImportPlatform : public CliPlatform
{
public:
    explicit ImportPlatform(QString file) : m_file(std::move(file)) {}
    int alert(const Alert &alert) override
    {
        m_succeeded = alert.title == lwTr("Import successful");
        return CliPlatform::alert(alert);
    }
    QString openPanel(const Panel &) override { return m_file; }
    bool succeeded() const { return m_succeeded; }

private:
    QString m_file;
    bool m_succeeded = false;
};

} // namespace

int exportCommand(const QStringList &args)
{
    CliCommand line("export KIND (--csv|--html) [--columns id:Title,...|--columns-file FILE] [--search TEXT] "
                    "[--filter TITLE] [--from DATE] [--order ID] [--output FILE] [--db BUNDLE]",
                    "Writes a list as the app's export does. KIND is contacts, orders, items, materials, bills, "
                    "actions, money-in or statement; the last two after the bills' --filter period and --from "
                    "date (in the user's date format).");
    line.parser().addPositionalArgument(QStringLiteral("KIND"), QStringLiteral("the list to export"));
    line.addFlag(QStringLiteral("csv"), QStringLiteral("spreadsheet text (UTF-8)"));
    line.addFlag(QStringLiteral("html"), QStringLiteral("an HTML page (UTF-16)"));
    line.addValueOption(QStringLiteral("columns"), QStringLiteral("id:Title,..."),
                        QStringLiteral("the columns, instead of the list's own"));
    line.addValueOption(QStringLiteral("columns-file"), QStringLiteral("FILE"),
                        QStringLiteral("the columns, from a column file"));
    line.addValueOption(QStringLiteral("search"), QStringLiteral("TEXT"), QStringLiteral("the list's search text"));
    line.addValueOption(QStringLiteral("filter"), QStringLiteral("TITLE"), QStringLiteral("the list's filter entry"));
    line.addValueOption(QStringLiteral("from"), QStringLiteral("DATE"), QStringLiteral("the bills' period start"));
    line.addValueOption(QStringLiteral("order"), QStringLiteral("ID"), QStringLiteral("the order whose lines to export"));
    line.addValueOption(QStringLiteral("output"), QStringLiteral("FILE"),
                        QStringLiteral("where to write (default: standard output)"));
    line.addDbOption();
    if (const int status = line.parse(args, 1, 1); status >= 0)
        return status;
    const QString kindName = line.positional().first();
    const bool moneyIn = kindName == QLatin1String("money-in");
    const bool statement = kindName == QLatin1String("statement");
    const std::optional<Kind> kind = moneyIn || statement ? std::optional<Kind>(Kind::Bills) : kindNamed(kindName);
    const bool html = line.isSet(QStringLiteral("html"));
    if (!kind)
        return line.usageError(QStringLiteral("there is no list called ") + line.positional().first());
    if (html == line.isSet(QStringLiteral("csv")))
        return line.usageError(QStringLiteral("give one of --csv and --html"));
    const bool materials = *kind == Kind::Materials;
    bool orderOk = false;
    const int orderId = line.value(QStringLiteral("order")).toInt(&orderOk);
    if (materials != line.isSet(QStringLiteral("order")) || (materials && !orderOk))
        return line.usageError(QStringLiteral("--order ID is required for materials and only for them"));
    QList<lwDataSource::Column> columns = moneyIn     ? DefaultColumns::moneyIn()
                                          : statement ? DefaultColumns::statement()
                                                      : DefaultColumns::forKind(*kind);
    if (line.isSet(QStringLiteral("columns")))
        columns = parseColumns(line.value(QStringLiteral("columns")));
    if (columns.isEmpty())
        return line.usageError(line.isSet(QStringLiteral("columns"))
                                   ? QStringLiteral("--columns needs id:Title entries separated by commas")
                                   : QStringLiteral("this list has no default columns: give --columns"));

    CliPlatform platform;
    Ledgerwick ledgerwick(&platform);
    // Reading only: no lock is taken, so this runs beside an open app.
    if (const int status = openBundle(ledgerwick, line.bundleFolder(), BundleAccess::Look); status >= 0)
        return status;
    lwDataSource &list = moneyIn     ? *ledgerwick.getMoneyInList()
                         : statement ? *ledgerwick.getStatementList()
                                     : *ledgerwick.manager(*kind);
    list.setColumns(columns);
    if (line.isSet(QStringLiteral("columns-file"))) {
        if (!list.configureTable(line.value(QStringLiteral("columns-file")))) {
            std::fprintf(stderr, "ledgerwick-cli: the column file was refused (run with --verbose for the reason)\n");
            return 2;
        }
        columns = list.columns();
    }
    if (!applySearchAndFilter(ledgerwick, list, kindName, line))
        return 2;
    if (materials) {
        // The order editor's table shows the lines of the current order only.
        ledgerwick.setCurrentOrder(orderId);
    }

    // The same bytes as the app's export menu items write.
    QByteArray bytes;
    if (html) {
        const QString page = QStringLiteral("<html><head><title>Data Export from Ledgerwick</title><body>") +
                             list.getDataAsHTMLusingTableView(columns) + QStringLiteral("</body></head></html>");
        bytes = QByteArray("\xFF\xFE", 2);
        QStringEncoder utf16(QStringConverter::Utf16LE);
        bytes.append(utf16(page));
    } else {
        bytes = list.getDataAsCSVusingTableView(columns).toUtf8();
    }
    const QString output = line.value(QStringLiteral("output"));
    if (!writeOut(bytes, output)) {
        std::fprintf(stderr, "ledgerwick-cli: could not write %s\n",
                     output.isEmpty() ? "to standard output" : qPrintable(output));
        return 1;
    }
    return 0;
}

int importCommand(const QStringList &args)
{
    CliCommand line("import KIND FILE [--db BUNDLE]",
                    "Imports a tab-separated file into a list, then saves as at quit. KIND is contacts, orders, "
                    "items, materials, bills or actions.");
    line.parser().addPositionalArgument(QStringLiteral("KIND"), QStringLiteral("the list to import into"));
    line.parser().addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("the tab-separated file"));
    line.addDbOption();
    line.addBreakStaleLockOption();
    if (const int status = line.parse(args, 2, 2); status >= 0)
        return status;
    const std::optional<Kind> kind = kindNamed(line.positional().first());
    if (!kind)
        return line.usageError(QStringLiteral("there is no list called ") + line.positional().first());
    const QString file = line.positional().at(1);
    if (!QFileInfo(file).isFile() || !QFileInfo(file).isReadable()) {
        std::fprintf(stderr, "ledgerwick-cli: cannot read %s\n", qPrintable(file));
        return 1;
    }
    ImportPlatform platform(QFileInfo(file).absoluteFilePath());
    Ledgerwick ledgerwick(&platform);
    if (const int status = openBundle(ledgerwick, line.bundleFolder(), BundleAccess::Write, "nothing was imported",
                                      false, line.isSet(QStringLiteral("break-stale-lock")));
        status >= 0)
        return status;
    lwDataSource &list = *ledgerwick.manager(*kind);
    const int before = list.getCount();
    list.importData(nullptr);
    // Saved as at quit, whatever the import made (records before a stop stay),
    // which also releases the lock taken above.
    if (!ledgerwick.writeDatabase(&ledgerwick) || reportSaveFailures(ledgerwick)) {
        reportSaveFailures(ledgerwick);
        return 1;
    }
    // A stop was said by its alert; a file that gave no record is said here.
    if (!platform.succeeded())
        return 1;
    if (list.getCount() == before) {
        std::fprintf(stderr, "ledgerwick-cli: nothing was imported from %s\n", qPrintable(file));
        return 1;
    }
    std::printf("saved %s\n", qPrintable(ledgerwick.originalDbLocation()));
    return 0;
}
