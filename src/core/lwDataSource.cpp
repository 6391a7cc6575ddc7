#include "core/lwDataSource.h"

#include "core/ColumnFile.h"
#include "core/lwController.h"
#include "core/Log.h"
#include "core/Platform.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <algorithm>
#include <numeric>
#include <optional>

lwDataSource::lwDataSource(QObject *parent) : QAbstractTableModel(parent)
{
}

lwDataSource::~lwDataSource() = default;

// --- indexes ---------------------------------------------------------------

void lwDataSource::invalidateIndexes()
{
    m_visibleValid = false;
    m_idValid = false;
}

void lwDataSource::ensureVisibleIndex() const
{
    const quint64 generation = dataObject::visibilityGeneration();
    if (m_visibleValid && m_visibleGeneration == generation)
        return;
    m_visiblePositions.clear();
    for (qsizetype i = 0; i < qsizetype(m_collection.size()); ++i)
        if (m_collection[size_t(i)]->getVisible())
            m_visiblePositions.push_back(i);
    m_visibleValid = true;
    m_visibleGeneration = generation;
}

void lwDataSource::ensureIdIndex() const
{
    const quint64 generation = dataObject::idGeneration();
    if (m_idValid && m_idGeneration == generation)
        return;
    m_idIndex.clear();
    m_idIndex.reserve(m_collection.size());
    for (qsizetype i = 0; i < qsizetype(m_collection.size()); ++i)
        m_idIndex.try_emplace(m_collection[size_t(i)]->getID(), i); // the earliest wins
    m_idValid = true;
    m_idGeneration = generation;
}

int lwDataSource::visibleRowOfPosition(qsizetype position) const
{
    ensureVisibleIndex();
    const auto it = std::lower_bound(m_visiblePositions.begin(), m_visiblePositions.end(), position);
    if (it == m_visiblePositions.end() || *it != position)
        return -1;
    return int(it - m_visiblePositions.begin());
}

qsizetype lwDataSource::positionOf(const dataObject *record) const
{
    if (!record)
        return -1;
    // Most lookups follow a walk or an id lookup: try those places first.
    if (m_walkHint >= 0 && m_walkHint < qsizetype(m_collection.size()) &&
        m_collection[size_t(m_walkHint)].get() == record)
        return m_walkHint;
    if (m_idValid && m_idGeneration == dataObject::idGeneration()) {
        const auto it = m_idIndex.find(record->getID());
        if (it != m_idIndex.end() && m_collection[size_t(it->second)].get() == record)
            return it->second;
    }
    for (qsizetype i = 0; i < qsizetype(m_collection.size()); ++i)
        if (m_collection[size_t(i)].get() == record)
            return i;
    return -1;
}

// --- the collection --------------------------------------------------------

void lwDataSource::add(std::shared_ptr<dataObject> record)
{
    if (!record)
        return;
    const bool visible = record->getVisible();
    const bool rowSignals = rowsAreVisibleRecords() && visible;
    int row = -1;
    if (rowSignals) {
        ensureVisibleIndex();
        row = int(m_visiblePositions.size());
        beginInsertRows(QModelIndex(), row, row);
    } else if (!rowsAreVisibleRecords()) {
        beginResetModel();
    }

    const bool visibleIndexWasValid = m_visibleValid && m_visibleGeneration == dataObject::visibilityGeneration();
    const bool idIndexWasValid = m_idValid && m_idGeneration == dataObject::idGeneration();
    m_collection.push_back(std::move(record));
    ++m_changes;
    dataObject *added = m_collection.back().get();
    const qsizetype position = qsizetype(m_collection.size()) - 1;
    if (added->getID() == 0) {
        ++m_highestId;
        added->setID(m_highestId);
    } else if (added->getID() > m_highestId) {
        m_highestId = added->getID();
    }
    // Keep the indexes current instead of rebuilding them per record: loading
    // adds hundreds of thousands of records in a row.
    if (visibleIndexWasValid && visible)
        m_visiblePositions.push_back(position);
    m_visibleValid = visibleIndexWasValid;
    if (idIndexWasValid) {
        m_idIndex.try_emplace(added->getID(), position);
        m_idGeneration = dataObject::idGeneration();
    } else {
        m_idValid = false;
    }

    if (rowSignals)
        endInsertRows();
    else if (!rowsAreVisibleRecords())
        endResetModel();
}

void lwDataSource::clear()
{
    beginResetModel();
    m_collection.clear();
    ++m_changes;
    m_highestId = 0;
    invalidateIndexes();
    m_walkHint = 0;
    endResetModel();
}

void lwDataSource::deleteItem(const dataObject *record)
{
    const qsizetype position = positionOf(record);
    if (position < 0)
        return;
    const int row = rowsAreVisibleRecords() ? visibleRowOfPosition(position) : -1;
    if (row >= 0)
        beginRemoveRows(QModelIndex(), row, row);
    else if (!rowsAreVisibleRecords())
        beginResetModel();
    m_collection.erase(m_collection.begin() + position);
    ++m_changes;
    invalidateIndexes();
    if (row >= 0)
        endRemoveRows();
    else if (!rowsAreVisibleRecords())
        endResetModel();
}

void lwDataSource::swop(const dataObject *a, const dataObject *b)
{
    const qsizetype pa = positionOf(a);
    const qsizetype pb = positionOf(b);
    if (pa < 0 || pb < 0 || pa == pb)
        return;
    std::vector<qsizetype> order(m_collection.size());
    std::iota(order.begin(), order.end(), 0);
    std::swap(order[size_t(pa)], order[size_t(pb)]);
    applyOrder(order);
}

void lwDataSource::applyOrder(const std::vector<qsizetype> &order)
{
    // Views keep their selection: persistent indexes follow their records.
    auto reorder = [&] {
        std::vector<std::shared_ptr<dataObject>> reordered;
        reordered.reserve(m_collection.size());
        for (qsizetype from : order)
            reordered.push_back(std::move(m_collection[size_t(from)]));
        m_collection = std::move(reordered);
        ++m_changes;
        invalidateIndexes();
    };
    const bool plainRows = rowsAreVisibleRecords();
    if (!plainRows) {
        // Rows that are not the visible records (an outline) cannot follow
        // their records through a layout change: the views start afresh.
        beginResetModel();
        reorder();
        endResetModel();
        return;
    }
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList persistent = persistentIndexList();
    std::vector<const dataObject *> persistentRecords;
    persistentRecords.reserve(size_t(persistent.size()));
    for (const QModelIndex &index : persistent)
        persistentRecords.push_back(plainRows ? getnthVisibleItem(index.row()) : nullptr);

    reorder();

    if (plainRows && !persistent.isEmpty()) {
        QModelIndexList to;
        to.reserve(persistent.size());
        for (qsizetype i = 0; i < persistent.size(); ++i) {
            const int row = visibleRowOfPosition(positionOf(persistentRecords[size_t(i)]));
            to.append(row < 0 ? QModelIndex() : index(row, persistent[i].column()));
        }
        changePersistentIndexList(persistent, to);
    }
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

int lwDataSource::getCount() const
{
    return int(m_collection.size());
}

dataObject *lwDataSource::getFirstItem() const
{
    return m_collection.empty() ? nullptr : m_collection.front().get();
}

dataObject *lwDataSource::getItemById(int id) const
{
    ensureIdIndex();
    const auto it = m_idIndex.find(id);
    return it == m_idIndex.end() ? nullptr : m_collection[size_t(it->second)].get();
}

dataObject *lwDataSource::getNextItem(const dataObject *record) const
{
    const qsizetype position = positionOf(record);
    if (position < 0 || position + 1 >= qsizetype(m_collection.size()))
        return nullptr;
    m_walkHint = position + 1;
    return m_collection[size_t(position + 1)].get();
}

dataObject *lwDataSource::getnthItem(qsizetype n) const
{
    if (n < 0 || n >= qsizetype(m_collection.size()))
        return nullptr;
    m_walkHint = n;
    return m_collection[size_t(n)].get();
}

dataObject *lwDataSource::getnthVisibleItem(int n) const
{
    if (n == -1) {
        // Counting starts at -1, so a request for -1 is answered by the first
        // record when that one is hidden.
        if (!m_collection.empty() && !m_collection.front()->getVisible())
            return m_collection.front().get();
        return nullptr;
    }
    if (n < 0)
        return nullptr;
    ensureVisibleIndex();
    if (size_t(n) >= m_visiblePositions.size())
        return nullptr;
    return m_collection[size_t(m_visiblePositions[size_t(n)])].get();
}

int lwDataSource::selectedRow() const
{
    if (!m_selection || m_selection->model() != this)
        return -1;
    const QModelIndex current = m_selection->currentIndex();
    if (current.isValid() && m_selection->isRowSelected(current.row(), QModelIndex()))
        return current.row();
    const QModelIndexList rows = m_selection->selectedRows();
    int last = -1;
    for (const QModelIndex &index : rows)
        last = std::max(last, index.row());
    if (last < 0) {
        // Selection by cells (no whole row selected) still names a row.
        const QModelIndexList cells = m_selection->selectedIndexes();
        for (const QModelIndex &index : cells)
            last = std::max(last, index.row());
    }
    return last;
}

dataObject *lwDataSource::getSelectedItem() const
{
    const int row = selectedRow();
    return row == -1 ? nullptr : getnthVisibleItem(row);
}

int lwDataSource::getNextId()
{
    return ++m_highestId;
}

std::shared_ptr<dataObject> lwDataSource::sharedRecord(const dataObject *record) const
{
    const qsizetype position = positionOf(record);
    return position < 0 ? nullptr : m_collection[size_t(position)];
}

// --- sorting ---------------------------------------------------------------

void lwDataSource::sortByColumn(const QString &column, bool ascending)
{
    sortByColumn(column, ascending, 0);
}

void lwDataSource::sortByColumn(const QString &column, bool ascending, int options)
{
    if (options < 0 || options > 2)
        return;
    const QString key = column == QLatin1String("name") ? QStringLiteral("surname") : column;
    const size_t count = m_collection.size();
    // The order is that of repeated passes of neighbour exchanges: a pair is
    // exchanged only when strictly out of order, so the result is the stable
    // sort, largest first when ascending is true. A stable merge sort gives
    // the same order in O(n log n).
    std::vector<qsizetype> order(count);
    std::iota(order.begin(), order.end(), 0);

    if (options == 2) {
        if (count < 2)
            return; // no pair is ever compared, so no date is cached
        std::vector<CalendarDate> dates(count);
        for (size_t i = 0; i < count; ++i) {
            dataObject *record = m_collection[i].get();
            if (!record->getNSDate().isValid()) {
                const CalendarDate parsed =
                    CalendarDate::fromString(record->getFieldByName(key), QStringLiteral("%d/%m/%y"));
                if (parsed.isValid())
                    record->setNSDate(parsed);
            }
            dates[i] = record->getNSDate();
        }
        // A record without a date is never exchanged with its neighbour, so it
        // stays where it is and the dated runs between such records are
        // sorted each on their own.
        auto before = [&](qsizetype a, qsizetype b) {
            return ascending ? dates[size_t(b)] < dates[size_t(a)] : dates[size_t(a)] < dates[size_t(b)];
        };
        size_t start = 0;
        while (start < count) {
            if (!dates[start].isValid()) {
                ++start;
                continue;
            }
            size_t end = start;
            while (end < count && dates[end].isValid())
                ++end;
            std::stable_sort(order.begin() + qsizetype(start), order.begin() + qsizetype(end), before);
            start = end;
        }
    } else {
        std::vector<QString> keys(count);
        for (size_t i = 0; i < count; ++i)
            keys[i] = m_collection[i]->getFieldByName(key);
        auto before = [&](qsizetype a, qsizetype b) {
            const int c = QString::compare(keys[size_t(a)], keys[size_t(b)], Qt::CaseInsensitive);
            return ascending ? c > 0 : c < 0;
        };
        std::stable_sort(order.begin(), order.end(), before);
    }

    bool unchanged = true;
    for (size_t i = 0; i < count && unchanged; ++i)
        unchanged = order[i] == qsizetype(i);
    if (!unchanged)
        applyOrder(order);
}

// --- checks and hooks -------------------------------------------------------

bool lwDataSource::readOnlyCheck()
{
    if (!m_ledgerwick || !m_ledgerwick->isReadOnly())
        return true;
    if (Platform *platform = m_ledgerwick->platform())
        platform->alert({lwTr("Read-only mode"),
                         lwTr("Database is in read-only mode."),
                         {lwTr("OK")},
                         Platform::AlertStyle::Warning});
    return false;
}

void lwDataSource::deleteKey(QObject *)
{
}

void lwDataSource::create(QObject *)
{
}

void lwDataSource::edit(QObject *)
{
}

void lwDataSource::requestResign(QObject *)
{
}

void lwDataSource::getWindowTitle(QObject *)
{
}

void lwDataSource::remove(QObject *)
{
}

void lwDataSource::sort(QObject *)
{
}

void lwDataSource::filter(QObject *)
{
    for (const auto &record : m_collection)
        record->setVisible(true);
    reloadData();
}

void lwDataSource::reloadData()
{
    beginResetModel();
    invalidateIndexes();
    endResetModel();
}

void lwDataSource::recordChanged(const dataObject *record)
{
    ensureIdIndex();
    const qsizetype position = positionOf(record);
    if (position < 0)
        return;
    if (!rowsAreVisibleRecords()) {
        reloadData();
        return;
    }
    const int row = visibleRowOfPosition(position);
    if (row >= 0 && columnCount() > 0)
        Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

// --- import ------------------------------------------------------------------

namespace {

const QLatin1String kImportContext("Import Data");

// White space and line breaks off both ends, then double quotes, then white
// space again: quotes are only ever stripped at the ends.
QString cleanImportField(const QString &field)
{
    const QString trimmed = field.trimmed();
    qsizetype from = 0;
    qsizetype to = trimmed.size();
    while (from < to && trimmed.at(from) == QLatin1Char('"'))
        ++from;
    while (to > from && trimmed.at(to - 1) == QLatin1Char('"'))
        --to;
    return trimmed.mid(from, to - from).trimmed();
}

// Removes the characters an XML file cannot hold; answers how many.
qsizetype dropUnstorable(QString &field)
{
    const qsizetype before = field.size();
    for (qsizetype i = 0; i < field.size();) {
        const char16_t c = field.at(i).unicode();
        const bool pair = QChar::isHighSurrogate(c) && i + 1 < field.size() && field.at(i + 1).isLowSurrogate();
        if (pair) {
            i += 2;
        } else if ((c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r') || c == 0xFFFE || c == 0xFFFF ||
                   QChar::isSurrogate(c)) {
            field.remove(i, 1);
        } else {
            ++i;
        }
    }
    return before - field.size();
}

// The file's text, decoded by its byte-order mark or else as UTF-8; null when
// the file cannot be read or is not valid in that encoding.
QString readImportFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    const std::optional<QStringConverter::Encoding> bom = QStringConverter::encodingForData(bytes);
    QStringDecoder decoder(bom.value_or(QStringConverter::Utf8));
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return {};
    if (text.isNull())
        text = lwEmpty(); // an empty file is still a file read
    return text;
}

} // namespace

void lwDataSource::importData(QObject *)
{
    Platform *platform = m_ledgerwick ? m_ledgerwick->platform() : nullptr;
    if (!platform)
        return;
    const QString path =
        platform->openPanel({lwTr("Import Data"), {QStringLiteral("csv"), QStringLiteral("tdl")}, QString()});
    openPanelDidEnd(path, path.isEmpty() ? 0 : 1, kImportContext);
}

void lwDataSource::openPanelDidEnd(const QString &path, int returnCode, const QString &contextInfo)
{
    if (returnCode != 1 || contextInfo != kImportContext)
        return;
    lwLog(QStringLiteral("Importing Data"));
    const QString text = readImportFile(path);
    if (text.isNull()) {
        lwLog(QStringLiteral("can't open"));
        if (Platform *platform = m_ledgerwick ? m_ledgerwick->platform() : nullptr)
            platform->alert({lwTr("Cannot Read File"),
                             lwTr("%1 could not be read as UTF-8 or UTF-16 text.").arg(QFileInfo(path).fileName()),
                             {lwTr("OK")}});
    }
    importText(text);
}

int lwDataSource::importText(const QString &text)
{
    Platform *platform = m_ledgerwick ? m_ledgerwick->platform() : nullptr;
    auto tell = [platform](const QString &title, const QString &message) {
        if (platform)
            platform->alert({title, message, {lwTr("OK")}, Platform::AlertStyle::Warning});
    };

    // Unreadable text has no lines at all, so it ends with "0 records imported".
    QStringList lines;
    if (!text.isNull()) {
        lines = text.split(QLatin1Char('\r'));
        if (lines.size() == 1)
            lines = text.split(QLatin1Char('\n'));
    }
    if (lines.size() == 1) {
        tell(lwTr("No Data"), lwTr("Only one row found in csv file"));
        return 0;
    }

    QStringList headings;
    if (!lines.isEmpty()) {
        const QStringList raw = lines.first().split(QLatin1Char('\t'));
        for (const QString &heading : raw) {
            headings << cleanImportField(heading);
            lwLog(QStringLiteral("Header: ") + headings.last());
        }
    }

    struct Row
    {
        int line;
        QStringList values;
    };
    std::vector<Row> rows;
    qsizetype dropped = 0;
    for (int i = 1; i < lines.size(); ++i) {
        lwLog(QStringLiteral("row: %1").arg(i));
        const QStringList fields = lines.at(i).split(QLatin1Char('\t'));
        if (fields.size() <= 1 || headings.size() <= 1)
            continue;
        if (fields.size() != headings.size())
            tell(lwTr("Bad Data"), lwTr("Row %1 has a different number of fields (%2) than there are headers (%3)")
                                       .arg(i)
                                       .arg(fields.size())
                                       .arg(headings.size()));
        Row row{i, {}};
        for (qsizetype h = 0; h < headings.size(); ++h) {
            // A short row ends the whole import: nothing from the file is kept.
            if (h >= fields.size())
                return 0;
            row.values << cleanImportField(fields.at(h));
            dropped += dropUnstorable(row.values.last());
            lwLog(headings.at(h) + QStringLiteral(": ") + row.values.last());
        }
        rows.push_back(std::move(row));
    }

    int added = 0;
    for (const Row &row : rows) {
        dataObject *record = createAndAddDataObject();
        if (!record) {
            tell(lwTr("Import stopped"), lwTr("This list cannot import records."));
            return added;
        }
        ++added;
        QString refused;
        for (qsizetype h = 0; h < headings.size() && refused.isEmpty(); ++h)
            if (!record->setFieldByName(headings.at(h), row.values.at(h)))
                refused = headings.at(h);
        const QString comments = QStringLiteral("comments");
        if (refused.isEmpty() &&
            !record->setFieldByName(comments, QStringLiteral("Imported using Ledgerwick import routine\n") +
                                                  record->getFieldByName(comments)))
            refused = comments;
        if (!refused.isEmpty()) {
            // The record made so far and those before it stay in the list.
            tell(lwTr("Import stopped"),
                 lwTr("The import stopped at row %1: the field \"%2\" cannot be set by an import. %3 records, "
                      "this row's included, were added to the list.")
                     .arg(QString::number(row.line), refused, QString::number(added)));
            return added;
        }
    }

    reloadData();
    if (dropped > 0) {
        lwLog(QStringLiteral("import dropped %1 characters a database file cannot hold").arg(dropped));
        tell(lwTr("Characters Removed"),
             lwTr("%1 characters that a database file cannot hold (control characters) were removed from the "
                  "imported fields.")
                 .arg(dropped));
    }
    if (platform)
        platform->alert({lwTr("Import successful"),
                         lwTr("%1 records imported").arg(qsizetype(rows.size())),
                         {lwTr("OK")},
                         Platform::AlertStyle::Informational});
    return added;
}

dataObject *lwDataSource::createAndAddDataObject()
{
    return nullptr;
}

// --- the table ---------------------------------------------------------------

void lwDataSource::setColumns(const QList<Column> &columns)
{
    beginResetModel();
    m_columns = columns;
    endResetModel();
}

bool lwDataSource::configureTable(const QString &path)
{
    QString reason;
    const std::optional<ColumnFile::Layout> layout = ColumnFile::read(path, &reason);
    if (!layout) {
        lwLog(QStringLiteral("column file %1 refused: %2").arg(path, reason));
        return false;
    }
    setColumns(layout->columns);
    setSortRules(layout->sortRules);
    return true;
}

int lwDataSource::columnForIdentifier(const QString &identifier) const
{
    for (int i = 0; i < m_columns.size(); ++i)
        if (m_columns.at(i).identifier == identifier)
            return i;
    return -1;
}

QString lwDataSource::getDataAsCSVusingTableView(const QList<Column> &columns) const
{
    QString out;
    for (qsizetype c = 0; c < columns.size(); ++c) {
        if (c > 0)
            out += QLatin1Char(',');
        out += QLatin1Char('"') + columns.at(c).title + QLatin1Char('"');
    }
    out += QLatin1Char('\r');
    const int rows = numberOfRowsInTableView();
    for (int row = 0; row < rows; ++row) {
        for (qsizetype c = 0; c < columns.size(); ++c) {
            if (c > 0)
                out += QLatin1Char(',');
            out += QLatin1Char('"') + objectValueForTableColumn(columns.at(c).identifier, row) + QLatin1Char('"');
        }
        out += QLatin1Char('\r');
    }
    return out;
}

QString lwDataSource::getDataAsHTMLusingTableView(const QList<Column> &columns) const
{
    QString out = QStringLiteral("<table cellpadding=2 cellspacing=2 border=0><tr>");
    for (const Column &column : columns)
        out += QStringLiteral("<th style = background:#cccccc;font-family:sans-serif;text-align:left>") + column.title +
               QStringLiteral("</th>");
    out += QStringLiteral("</tr>");
    const int rows = numberOfRowsInTableView();
    for (int row = 0; row < rows; ++row) {
        out += QStringLiteral("<tr>");
        for (const Column &column : columns) {
            out += QStringLiteral("<td ");
            // Every second row is shaded; its cell tag then carries two style
            // attributes, which is how the mark-up has always been written.
            if (row % 2 == 1)
                out += QStringLiteral("style = background:#f0f0ff;font-family:monospace");
            out += QStringLiteral(" style = font-family:monospace>") +
                   objectValueForTableColumn(column.identifier, row) + QStringLiteral("</td>");
        }
        out += QStringLiteral("</tr>");
    }
    out += QStringLiteral("</table><br />");
    return out;
}

int lwDataSource::numberOfRowsInTableView() const
{
    ensureVisibleIndex();
    return int(m_visiblePositions.size());
}

QString lwDataSource::objectValueForTableColumn(const QString &, int) const
{
    return lwEmpty();
}

bool lwDataSource::setObjectValueForTableColumn(const QString &, const QString &, int)
{
    return false;
}

QColor lwDataSource::labelColorForRow(int) const
{
    return QColor(); // no tint
}

bool lwDataSource::isDateColumn(const QString &) const
{
    return false;
}

bool lwDataSource::isColumnEditable(const QString &) const
{
    return false;
}

int lwDataSource::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : numberOfRowsInTableView();
}

int lwDataSource::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant lwDataSource::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.column() >= m_columns.size())
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
    case Qt::ToolTipRole:
        return objectValueForTableColumn(m_columns.at(index.column()).identifier, index.row());
    case LabelColorRole: {
        const QColor colour = labelColorForRow(index.row());
        return colour.isValid() && colour.alpha() > 0 ? QVariant(colour) : QVariant();
    }
    case RecordRole:
        return QVariant::fromValue(static_cast<void *>(getnthVisibleItem(index.row())));
    default:
        return {};
    }
}

bool lwDataSource::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::EditRole || index.column() >= m_columns.size())
        return false;
    if (!setObjectValueForTableColumn(value.toString(), m_columns.at(index.column()).identifier, index.row()))
        return false;
    Q_EMIT dataChanged(this->index(index.row(), 0), this->index(index.row(), columnCount() - 1));
    return true;
}

QVariant lwDataSource::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columns.size())
        return {};
    if (role == Qt::DisplayRole)
        return m_columns.at(section).title;
    return {};
}

Qt::ItemFlags lwDataSource::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.column() < m_columns.size() && isColumnEditable(m_columns.at(index.column()).identifier))
        f |= Qt::ItemIsEditable;
    return f;
}

void lwDataSource::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= m_columns.size())
        return;
    const QString identifier = m_columns.at(column).identifier;
    sortByColumn(identifier, order == Qt::AscendingOrder, isDateColumn(identifier) ? 2 : 0);
}
