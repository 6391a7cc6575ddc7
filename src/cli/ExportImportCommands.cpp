#include "cli/CommandLine.h"
#include "cli/Commands.h"

#include "products/ItemManager.h"
#include "core/CliPlatform.h"
#include "core/DatabasePaths.h"
#include "core/DefaultColumns.h"
#include "core/Ledgerwick.h"
#include "core/lwDataSource.h"
#include "core/PropertyListWriter.h"
#include "orders/Material.h"

#include <QFileInfo>
#include <QStringEncoder>

#include <cstdio>
#include <optional>

namespace {

using Kind = DatabaseStore::Kind;

const char kExportUsage[] = "usage: ledgerwick-cli export KIND (--csv|--html) [--columns id:Title,id:Title,...] "
                            "[--search TEXT] [--filter TITLE] [--order ID] [--output FILE] [--db BUNDLE]\n"
                            "KIND is contacts, orders, items, materials, bills or actions\n";
const char kImportUsage[] = "usage: ledgerwick-cli import KIND FILE [--db BUNDLE]\n"
                            "KIND is contacts, orders, items, materials, bills or actions\n";

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
bool applySearchAndFilter(lwDataSource &list, const QString &kindName, const CommandLine &line)
{
    // The items list has a search field and a stock filter; the other lists
    // bring theirs with their own managers.
    if (auto *items = dynamic_cast<ItemManager *>(&list)) {
        ItemEditorState &state = items->editorState();
        if (line.has(QStringLiteral("--search")))
            state.searchText = line.option(QStringLiteral("--search"));
        if (line.has(QStringLiteral("--filter"))) {
            const QString title = line.option(QStringLiteral("--filter"));
            if (!state.stockFilter.entries.contains(title)) {
                std::fprintf(stderr, "ledgerwick-cli: the items filter has no entry \"%s\" (it has: %s)\n",
                             qPrintable(title), qPrintable(state.stockFilter.entries.join(QStringLiteral(", "))));
                return false;
            }
            state.stockFilter.selectTitle(title);
        }
        list.filter(nullptr);
        return true;
    }
    for (const char *option : {"--search", "--filter"}) {
        if (line.has(QLatin1String(option))) {
            std::fprintf(stderr, "ledgerwick-cli: the %s list has no %s yet; %s cannot be applied\n",
                         qPrintable(kindName), option[2] == 's' ? "search field" : "filter pop-up", option);
            return false;
        }
    }
    list.filter(nullptr);
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
    const CommandLine line(args,
                           {QStringLiteral("--columns"), QStringLiteral("--search"), QStringLiteral("--filter"),
                            QStringLiteral("--order"), QStringLiteral("--output"), QStringLiteral("--db")},
                           {QStringLiteral("--csv"), QStringLiteral("--html")});
    const std::optional<Kind> kind =
        line.positional().size() == 1 ? kindNamed(line.positional().first()) : std::nullopt;
    const bool html = line.has(QStringLiteral("--html"));
    if (!line.ok() || !kind || html == line.has(QStringLiteral("--csv"))) {
        std::fprintf(stderr, "%s%s\n", kExportUsage, qPrintable(line.error()));
        return 2;
    }
    const QString kindName = line.positional().first();
    const bool materials = *kind == Kind::Materials;
    bool orderOk = false;
    const int orderId = line.option(QStringLiteral("--order")).toInt(&orderOk);
    if (materials != line.has(QStringLiteral("--order")) || (materials && !orderOk)) {
        std::fprintf(stderr, "%s--order ID is required for materials and only for them\n", kExportUsage);
        return 2;
    }
    QList<lwDataSource::Column> columns = DefaultColumns::forKind(*kind);
    if (line.has(QStringLiteral("--columns")))
        columns = parseColumns(line.option(QStringLiteral("--columns")));
    if (columns.isEmpty()) {
        std::fprintf(stderr, "%s%s\n", kExportUsage,
                     line.has(QStringLiteral("--columns")) ? "--columns needs id:Title entries separated by commas"
                                                           : "this list has no default columns: give --columns");
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
    // Reading only: no lock is taken, so this runs beside an open app.
    ledgerwick.readDatabase(false);
    lwDataSource &list = *ledgerwick.manager(*kind);
    list.setColumns(columns);
    if (!applySearchAndFilter(list, kindName, line))
        return 2;
    if (materials) {
        // The order editor's table shows the lines of the current order only.
        ledgerwick.setCurrentOrder(orderId);
        for (const auto &record : list.records())
            if (const auto *lineOfOrder = dynamic_cast<const Material *>(record.get()))
                record->setVisible(lineOfOrder->getOrder() == orderId);
        list.reloadData();
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
    const QString output = line.option(QStringLiteral("--output"));
    if (!writeOut(bytes, output)) {
        std::fprintf(stderr, "ledgerwick-cli: could not write %s\n",
                     output.isEmpty() ? "to standard output" : qPrintable(output));
        return 1;
    }
    return 0;
}

int importCommand(const QStringList &args)
{
    const CommandLine line(args, {QStringLiteral("--db")});
    const std::optional<Kind> kind =
        line.positional().size() == 2 ? kindNamed(line.positional().first()) : std::nullopt;
    if (!line.ok() || !kind) {
        std::fprintf(stderr, "%s%s\n", kImportUsage, qPrintable(line.error()));
        return 2;
    }
    const QString file = line.positional().at(1);
    if (!QFileInfo(file).isFile() || !QFileInfo(file).isReadable()) {
        std::fprintf(stderr, "ledgerwick-cli: cannot read %s\n", qPrintable(file));
        return 1;
    }
    const QString folder = line.bundleFolder();
    if (!QFileInfo(folder).isDir()) {
        std::fprintf(stderr, "ledgerwick-cli: there is no database at %s\n", qPrintable(folder));
        return 1;
    }
    ImportPlatform platform(QFileInfo(file).absoluteFilePath());
    Ledgerwick ledgerwick(&platform);
    ledgerwick.setDatabaseLocation(folder);
    ledgerwick.readDatabase(true);
    if (ledgerwick.isReadOnly()) {
        std::fprintf(stderr,
                     "ledgerwick-cli: the database at %s is open in another copy of Ledgerwick (locked %s); "
                     "nothing was imported\n",
                     qPrintable(ledgerwick.originalDbLocation()),
                     ledgerwick.lockDateTime().isEmpty()
                         ? "at an unknown time"
                         : qPrintable(QStringLiteral("since ") + ledgerwick.lockDateTime()));
        return 3;
    }
    lwDataSource &list = *ledgerwick.manager(*kind);
    list.importData(nullptr);
    // Saved as at quit, whatever the import made (records before a stop stay),
    // which also releases the lock taken above.
    if (!ledgerwick.writeDatabase(&ledgerwick)) {
        std::fprintf(stderr, "ledgerwick-cli: some files of %s could not be written (run with --verbose for details)\n",
                     qPrintable(ledgerwick.originalDbLocation()));
        return 1;
    }
    if (!platform.succeeded())
        return 1;
    std::printf("saved %s\n", qPrintable(ledgerwick.originalDbLocation()));
    return 0;
}
