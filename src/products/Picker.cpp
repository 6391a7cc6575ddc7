#include "products/Picker.h"

#include "core/lwController.h"
#include "core/NumberText.h"
#include "core/Platform.h"
#include "reports/ReportItem.h"

#include <algorithm>
#include <numeric>

Picker::Picker(QObject *parent) : lwDataSource(parent)
{
    setObjectName(QStringLiteral("picker"));
    setColumns({{QStringLiteral("1"), QString(), 200}, {QStringLiteral("2"), QString(), 200}});
}

Platform *Picker::platform() const
{
    if (m_platform)
        return m_platform;
    return ledgerwick() ? ledgerwick()->platform() : nullptr;
}

void Picker::beginfor(Callback callback, lwDataSource *source, const QString &field1, const QString &field2,
                      const QString &type)
{
    if (!source || source->getCount() == 0) {
        if (Platform *alerts = platform())
            alerts->alert({lwTr("None in database"),
                           lwTr("There are no %1s in the datbase. First create some by going to File > New.... or "
                                "the appropriate toolbar button")
                               .arg(type),
                           {lwTr("OK")}});
        return;
    }

    clear();
    m_field1 = field1;
    m_field2 = field2;
    m_callback = std::move(callback);
    m_searchText = lwEmpty();
    m_windowTitle = QStringLiteral("Select ") + type;
    m_currentDataSource = source;
    // The headers name the fields shown: "name" is titled "Name".
    const auto title = [](const QString &field) -> QString { return field.left(1).toUpper() + field.mid(1); };
    setColumns({{QStringLiteral("1"), title(field1), columns().at(0).width},
                {QStringLiteral("2"), title(field2), columns().at(1).width}});

    const int count = source->getCount();
    for (int n = 0; n < count; ++n) {
        const dataObject *record = source->getnthItem(n);
        if (!record)
            continue;
        auto row = std::make_shared<ReportItem>();
        row->addField(record->getFieldByName(field1));
        row->addField(record->getFieldByName(field2));
        row->addField(NumberText::integer(record->getID()));
        add(std::move(row));
    }
    reloadData();
    Q_EMIT pickerShown();
}

void Picker::filter(const QString &searchText)
{
    m_searchText = searchText.isNull() ? lwEmpty() : searchText;
    // Split at single blanks: two blanks in a row leave an empty word, which
    // matches everything and is skipped.
    const QStringList words = m_searchText.split(QLatin1Char(' '));
    for (const auto &record : records()) {
        bool visible = true;
        for (const QString &word : words) {
            if (!word.isEmpty() && !record->contains(word)) {
                visible = false;
                break;
            }
        }
        record->setVisible(visible);
    }
    reloadData();
}

void Picker::filter(QObject *)
{
    filter(m_searchText);
}

ReportItem *Picker::rowAt(int row) const
{
    return dynamic_cast<ReportItem *>(getnthVisibleItem(row));
}

void Picker::finish(QObject *)
{
    Q_EMIT pickerHidden();
    const int row = selectedRow();
    if (row < 0)
        return;
    const ReportItem *picked = rowAt(row);
    if (!picked)
        return;
    dataObject *record =
        m_currentDataSource ? m_currentDataSource->getItemById(NumberText::intValue(picked->getnthField(3))) : nullptr;
    if (m_callback)
        m_callback(record);
}

void Picker::cancel(QObject *)
{
    Q_EMIT pickerHidden();
}

void Picker::hide(QObject *)
{
    Q_EMIT pickerHidden();
}

void Picker::show(QObject *)
{
    Q_EMIT pickerShown();
}

QString Picker::objectValueForTableColumn(const QString &identifier, int row) const
{
    const ReportItem *item = rowAt(row);
    if (item && identifier == QLatin1String("1"))
        return item->getnthField(1);
    if (item && identifier == QLatin1String("2"))
        return item->getnthField(2);
    return lwEmpty();
}

void Picker::sortByColumn(const QString &column, bool ascending, int options)
{
    if (options < 0 || options > 2)
        return;
    const qsizetype field = NumberText::intValue(column);
    const auto &rows = records();
    std::vector<QString> keys(rows.size());
    for (size_t i = 0; i < rows.size(); ++i) {
        const auto *item = dynamic_cast<const ReportItem *>(rows[i].get());
        keys[i] = item ? item->getnthField(field) : lwEmpty();
    }
    // Neighbours are exchanged only when strictly out of order, so passes of
    // exchanges end in the stable sort of the same order; this gets there in
    // O(n log n).
    std::vector<qsizetype> order(rows.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) {
        const int c = QString::compare(keys[size_t(a)], keys[size_t(b)], Qt::CaseInsensitive);
        return ascending ? c > 0 : c < 0;
    });
    bool unchanged = true;
    for (size_t i = 0; i < order.size() && unchanged; ++i)
        unchanged = order[i] == qsizetype(i);
    if (!unchanged)
        applyOrder(order);
}
