#include "reports/ReportManager.h"

#include "core/CalendarDate.h"
#include "core/DatabasePaths.h"
#include "core/EmptyText.h"
#include "core/Log.h"
#include "core/NumberText.h"
#include "reports/ReportItem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>
#include <QSignalBlocker>

// The built-in definitions are compiled into the model library, which is
// static: their resources must be registered by name before the first use.
static void initReportResources()
{
    Q_INIT_RESOURCE(reports);
}

namespace {

const QString kNone = QStringLiteral("field-1");

// The number of a "field<n>" column identifier, read once rather than per row.
qsizetype columnNumber(const QString &identifier)
{
    return identifier.size() < 6 ? 0 : NumberText::intValue(identifier.mid(5));
}

// The "selectfrom" names a definition may use; anything else has no source.
const QLatin1String kSources[] = {QLatin1String("contacts"), QLatin1String("itemspurchased"),
                                  QLatin1String("orders"),   QLatin1String("items"),
                                  QLatin1String("actions"),  QLatin1String("bills")};

// Copied whenever the folder is new; the two contact reports also when missing.
const char *const kFirstCopies[] = {"Outstanding Balances.xml", "Current Customers.xml", "Current Items Purchased.xml",
                                    "Top Sellers.xml",          "OrdersforOpenContact.xml", "ItemsforOpenContact.xml"};
const char *const kContactReports[] = {"OrdersforOpenContact.xml", "ItemsforOpenContact.xml"};
// Offered afresh on every start; the copy fails over a file already there.
const char *const kEveryStart[] = {"Stocktake.xml", "Reorder Quantities.xml"};
// Run by the accounts and contact screens, not offered in the pop-up.
const char *const kInternal[] = {"MoneyIn.xml", "OrdersforOpenContact.xml", "ItemsforOpenContact.xml"};

// A total's share of one cell: the number with every "," taken out.
float totalValue(QString text)
{
    if (text.contains(QLatin1Char(',')))
        text.remove(QLatin1Char(','));
    return NumberText::floatValue(text);
}

// Two numeric quantities added in single precision, as merged rows hold them.
QString mergedQuantity(const QString &a, const QString &b)
{
    const float sum = NumberText::floatValue(a) + NumberText::floatValue(b);
    return NumberText::format("%.2f", double(sum));
}

void logMergeFailure(const QString &a, const QString &b)
{
    lwLog(QStringLiteral("couldn't merge %1 and %2").arg(a, b));
}

// The comparison of every row with every later one, for the one case the
// single pass cannot follow: a merge that changes the match text itself.
void collatePairwise(std::vector<std::shared_ptr<ReportItem>> &rows, const QString &matchCol, const QString &qtyCol)
{
    for (size_t i = 0; i < rows.size(); ++i) {
        for (size_t j = i + 1; j < rows.size(); ++j) {
            if (rows[i]->getFieldByName(matchCol) != rows[j]->getFieldByName(matchCol))
                continue;
            if (ReportManager::merge(*rows[i], *rows[j], qtyCol)) {
                rows.erase(rows.begin() + qsizetype(j));
                --j;
            }
        }
    }
}

} // namespace

ReportManager::ReportManager(QObject *parent) : lwDataSource(parent)
{
}

ReportManager::~ReportManager() = default;

bool ReportManager::isNumeric(const QString &text)
{
    return ReportItem::isNumeric(text);
}

bool ReportManager::isDate(const QString &text)
{
    if (text.size() < 8 || text.at(2) != QLatin1Char('/') || text.at(5) != QLatin1Char('/'))
        return false;
    return isNumeric(text.mid(0, 2)) && isNumeric(text.mid(3, 2)) && isNumeric(text.mid(6, 2));
}

bool ReportManager::dateIsLaterThanDate(const QString &date, const QString &other) const
{
    const QString format = m_fromDateFormat.isEmpty() ? m_userDateFormat : m_fromDateFormat;
    return CalendarDate::fromString(date, format) >= CalendarDate::fromString(other, format);
}

QString ReportManager::conditionValue(const QString &value) const
{
    if (value != QLatin1String("currentcontact"))
        return value;
    return m_currentContact ? m_currentContact() : QStringLiteral("-1");
}

bool ReportManager::meets(const QString &v, const QString &op, const QString &value) const
{
    const bool greater = op == QLatin1String(">");
    const bool less = op == QLatin1String("<");
    const bool differs = op == QLatin1String("!");
    const bool equals = op == QLatin1String("=");
    // The kind of comparison follows the record's value alone.
    if (isDate(v)) {
        if (greater || less)
            return dateIsLaterThanDate(v, value) == greater;
    } else if (isNumeric(v)) {
        const float a = NumberText::floatValue(v);
        const float b = NumberText::floatValue(value);
        if (greater)
            return a > b;
        if (less)
            return a < b;
        if (differs)
            return a != b;
        if (equals)
            return isNumeric(value) && a == b;
        return true;
    } else if (greater || less) {
        return true; // order means nothing for text
    }
    if (differs)
        return v != value;
    if (equals)
        return v == value;
    return true;
}

bool ReportManager::meetsCriteria(const dataObject &record, const QList<Condition> &where) const
{
    for (const Condition &condition : where)
        if (!meets(record.getFieldByName(condition.field), condition.op, conditionValue(condition.value)))
            return false;
    return true;
}

bool ReportManager::merge(ReportItem &i, const ReportItem &j, const QString &qtyCol)
{
    const QString a = i.getFieldByName(qtyCol);
    const QString b = j.getFieldByName(qtyCol);
    if (!isNumeric(a) || !isNumeric(b)) {
        logMergeFailure(a, b);
        return false;
    }
    i.setFieldByName(qtyCol, mergedQuantity(a, b));
    return true;
}

void ReportManager::collate(std::vector<std::shared_ptr<ReportItem>> &rows, const QString &matchCol,
                            const QString &qtyCol)
{
    if (matchCol == qtyCol) {
        collatePairwise(rows, matchCol, qtyCol);
        return;
    }
    // Rows only ever meet rows of the same match text, so each group of equal
    // texts is worked through on its own. Within a group, the first row with a
    // numeric quantity takes in every later numeric one (its sum stays
    // numeric); a row that is not numeric merges with nothing. Every failed
    // merge the pairwise comparison would meet is logged, in its order.
    const size_t n = rows.size();
    struct Group
    {
        std::vector<size_t> members;    // rows, in order
        std::vector<size_t> nonNumeric; // positions in members of the rows that are not numeric
        qsizetype firstNumeric = -1;    // position in members
    };
    std::vector<Group> groups;
    QHash<QString, size_t> groupOfText;
    std::vector<size_t> groupOf(n), position(n), nonNumericIndex(n);
    std::vector<char> numeric(n);
    std::vector<QString> quantities(n);
    const qsizetype match = columnNumber(matchCol);
    const qsizetype qty = columnNumber(qtyCol);
    groupOfText.reserve(qsizetype(n));
    for (size_t r = 0; r < n; ++r) {
        const QString key = rows[r]->getnthField(match);
        auto found = groupOfText.find(key);
        if (found == groupOfText.end()) {
            found = groupOfText.insert(key, groups.size());
            groups.emplace_back();
        }
        const size_t g = *found;
        Group &group = groups[g];
        groupOf[r] = g;
        position[r] = group.members.size();
        quantities[r] = rows[r]->getnthField(qty);
        numeric[r] = isNumeric(quantities[r]);
        if (numeric[r] && group.firstNumeric < 0)
            group.firstNumeric = qsizetype(position[r]);
        if (!numeric[r]) {
            nonNumericIndex[r] = group.nonNumeric.size();
            group.nonNumeric.push_back(position[r]);
        }
        group.members.push_back(r);
    }

    // The merges below are merge() with the quantities read once, in pass one.
    std::vector<char> gone(n);
    for (size_t r = 0; r < n; ++r) {
        if (gone[r])
            continue;
        const Group &group = groups[groupOf[r]];
        const size_t p = position[r];
        if (numeric[r]) {
            // The group's first numeric row: every later row is still there.
            QString sum = quantities[r];
            for (size_t q = p + 1; q < group.members.size(); ++q) {
                const size_t j = group.members[q];
                if (numeric[j]) {
                    sum = mergedQuantity(sum, quantities[j]);
                    gone[j] = 1;
                } else {
                    logMergeFailure(sum, quantities[j]);
                }
            }
            if (sum != quantities[r])
                rows[r]->setFieldByName(qtyCol, sum);
        } else if (group.firstNumeric < 0 || qsizetype(p) < group.firstNumeric) {
            // Before the first numeric row nothing has been taken in yet.
            for (size_t q = p + 1; q < group.members.size(); ++q)
                logMergeFailure(quantities[r], quantities[group.members[q]]);
        } else {
            // After it, only the rows that are not numeric are left.
            for (size_t k = nonNumericIndex[r] + 1; k < group.nonNumeric.size(); ++k)
                logMergeFailure(quantities[r], quantities[group.members[group.nonNumeric[k]]]);
        }
    }
    size_t kept = 0;
    for (size_t r = 0; r < n; ++r)
        if (!gone[r])
            rows[kept++] = std::move(rows[r]);
    rows.resize(kept);
}

void ReportManager::doReport(const QString &name)
{
    m_current = name;
    m_totalcol = kNone;
    m_total2col = kNone;
    m_sum = 0;
    m_sum2 = 0;
    std::vector<std::shared_ptr<ReportItem>> rows;
    {
        // The views hear of the new report once, when it is complete.
        const QSignalBlocker quiet(this);
        clear();
        setColumns({});

        const QString path = DatabasePaths::reportsFolder() + QLatin1Char('/') + name + QStringLiteral(".xml");
        ReportDefinition definition;
        if (!QFileInfo(path).isFile() || !definition.read(path)) {
            lwLog(QStringLiteral("couldn't open file: %1").arg(path));
            definition = ReportDefinition();
        }
        m_totalcol = definition.totalcol;
        m_total2col = definition.total2col;

        QList<Column> columns;
        for (qsizetype i = 0; i < definition.colheadings.size(); ++i) {
            const QString width = definition.colwidths.value(i);
            columns.append({QStringLiteral("field%1").arg(i + 1), definition.colheadings.at(i),
                            width.isEmpty() ? 100 : NumberText::intValue(width)});
        }
        setColumns(columns);

        lwDataSource *source = nullptr;
        for (const QLatin1String known : kSources)
            if (definition.selectfrom == known && m_sources)
                source = m_sources(definition.selectfrom);
        if (!source) {
            lwLog(QStringLiteral("no datasource"));
        } else {
            // The open contact is asked once for the whole run.
            for (QList<Condition> *where : {&definition.where, &definition.where2})
                for (Condition &condition : *where)
                    condition.value = conditionValue(condition.value);
            const bool secondRows = definition.hasWhere2 && definition.hasFields2;
            const qsizetype fieldCount = definition.fields.size();
            // Each row's totals are added as it is made, in the order of the rows.
            const qsizetype totalAt = m_totalcol == kNone ? -1 : columnNumber(m_totalcol) - 1;
            const qsizetype total2At = m_total2col == kNone ? -1 : columnNumber(m_total2col) - 1;
            auto addRow = [&](const dataObject &record, const QStringList &fields) {
                auto row = std::make_shared<ReportItem>();
                row->reserve(fieldCount);
                for (qsizetype f = 0; f < fieldCount; ++f) {
                    const QString text = record.getFieldByName(fields.value(f));
                    row->addField(text);
                    if (f == totalAt)
                        m_sum += totalValue(text);
                    if (f == total2At)
                        m_sum2 += totalValue(text);
                }
                rows.push_back(std::move(row));
            };
            const int count = source->getCount();
            for (int n = 0; n < count; ++n) {
                const dataObject *record = source->getnthItem(n);
                if (!record)
                    continue;
                if (meetsCriteria(*record, definition.where))
                    addRow(*record, definition.fields);
                // As many fields as the first layout has.
                if (secondRows && meetsCriteria(*record, definition.where2))
                    addRow(*record, definition.fields2);
            }
        }

        // The totals were taken before the collation, so that both give the same totals.
        if (definition.collationmatchcol != kNone && definition.collationqtycol != kNone)
            collate(rows, definition.collationmatchcol, definition.collationqtycol);
        for (auto &row : rows)
            add(std::move(row));
    }
    reloadData();
    Q_EMIT reportRun();
}

void ReportManager::runReport()
{
    const QString title = m_filter.selectedTitle();
    if (!title.isNull())
        doReport(title);
}

void ReportManager::copyBuiltIn(const QString &fileName) const
{
    const QString from = QStringLiteral(":/reports/") + fileName;
    const QString to = DatabasePaths::reportsFolder() + QLatin1Char('/') + fileName;
    bool copied = false;
    // Never over a file (or a link) already there: that is the user's copy.
    const QFileInfo target(to);
    QFile source(from);
    if (!target.exists() && !target.isSymLink() && source.open(QIODevice::ReadOnly)) {
        QSaveFile out(to);
        copied = out.open(QIODevice::WriteOnly) && out.write(source.readAll()) == source.size() && out.commit();
    }
    lwLog((copied ? QStringLiteral("copied %1 to %2") : QStringLiteral("failed to copy %1 to %2")).arg(from, to));
}

void ReportManager::populateFilter()
{
    initReportResources();
    const QString folder = DatabasePaths::reportsFolder();
    if (!QFileInfo(folder).isDir()) {
        lwLog(QStringLiteral("reports folder doesn't exist, creating it and copying reports."));
        QDir().mkpath(folder);
        for (const char *name : kFirstCopies)
            copyBuiltIn(QLatin1String(name));
    }
    for (const char *name : kContactReports)
        if (!QFileInfo::exists(folder + QLatin1Char('/') + QLatin1String(name)))
            copyBuiltIn(QLatin1String(name));
    for (const char *name : kEveryStart)
        copyBuiltIn(QLatin1String(name));

    QStringList titles;
    const QFileInfoList entries =
        QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                   QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo &entry : entries) {
        const QString fileName = entry.fileName();
        bool internal = fileName.startsWith(QLatin1Char('.'));
        for (const char *name : kInternal)
            internal = internal || fileName == QLatin1String(name);
        if (!internal)
            titles.append(entry.completeSuffix().isEmpty() ? fileName : fileName.section(QLatin1Char('.'), 0, -2));
    }
    m_filter = PopUp::withEntries(titles);
    Q_EMIT filterPopulated();
}

int ReportManager::numberOfRowsInTableView() const
{
    return lwDataSource::numberOfRowsInTableView() + (m_totalcol != kNone ? 2 : 0);
}

QString ReportManager::objectValueForTableColumn(const QString &identifier, int row) const
{
    if (m_totalcol != kNone) {
        const int rows = lwDataSource::numberOfRowsInTableView();
        for (const auto &[column, total] : {std::pair{&m_totalcol, m_sum}, std::pair{&m_total2col, m_sum2}}) {
            if (identifier != *column || row < rows)
                continue;
            return row == rows ? QStringLiteral("_____") : NumberText::format("%0.2f", double(total));
        }
    }
    const dataObject *record = getnthVisibleItem(row);
    return record ? record->getFieldByName(identifier) : lwEmpty();
}

void ReportManager::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= columns().size())
        return;
    sortByColumn(columns().at(column).identifier, order == Qt::AscendingOrder, 0);
}
