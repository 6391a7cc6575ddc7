#include "accounts/StatementManager.h"

#include "core/NumberText.h"
#include "core/Platform.h"

StatementManager::StatementManager(QObject *parent) : lwDataSource(parent)
{
    setObjectName(QStringLiteral("statement"));
}

void StatementManager::setInTable(lwDataSource *inTable)
{
    if (m_inTable)
        m_inTable->disconnect(this);
    m_inTable = inTable;
    follow(inTable);
}

void StatementManager::setOutTable(lwDataSource *outTable)
{
    if (m_outTable)
        m_outTable->disconnect(this);
    m_outTable = outTable;
    follow(outTable);
}

void StatementManager::follow(lwDataSource *table)
{
    if (table) {
        connect(table, &QAbstractItemModel::modelReset, this, &StatementManager::sourcesChanged);
        connect(table, &QAbstractItemModel::dataChanged, this, &StatementManager::sourcesChanged);
        connect(table, &QAbstractItemModel::rowsInserted, this, &StatementManager::sourcesChanged);
        connect(table, &QAbstractItemModel::rowsRemoved, this, &StatementManager::sourcesChanged);
        connect(table, &QAbstractItemModel::layoutChanged, this, &StatementManager::sourcesChanged);
    }
    sourcesChanged();
}

void StatementManager::sourcesChanged()
{
    if (columnCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(numberOfRowsInTableView() - 1, columnCount() - 1));
}

QString StatementManager::lastCell(const lwDataSource *table, const QString &identifier)
{
    const int rows = table ? table->numberOfRowsInTableView() : 0;
    return rows > 0 ? table->objectValueForTableColumn(identifier, rows - 1) : lwEmpty();
}

int StatementManager::numberOfRowsInTableView() const
{
    return 4;
}

QString StatementManager::objectValueForTableColumn(const QString &identifier, int row) const
{
    const bool name = identifier == QLatin1String("name");
    const QString moneyIn = lastCell(m_inTable, QStringLiteral("field2"));
    const QString moneyOut = lastCell(m_outTable, QStringLiteral("amount"));
    switch (row) {
    case 0:
        return name ? lwTr("Money In") : moneyIn;
    case 1:
        return name ? lwTr("Money Out") : moneyOut;
    case 2:
        return name ? lwEmpty() : QStringLiteral("_____");
    case 3:
        return name ? lwEmpty()
                    : NumberText::format("%1.2f",
                                         double(NumberText::floatValue(moneyIn) - NumberText::floatValue(moneyOut)));
    default:
        return lwEmpty();
    }
}

QString StatementManager::getDataAsHTMLusingTableView(const QList<Column> &columns) const
{
    QString html = lwDataSource::getDataAsHTMLusingTableView(columns);
    html.replace(QStringLiteral("<th style = background:#cccccc;font-family:sans-serif;text-align:left>"),
                 QStringLiteral("<th style = background:#cccccc;font-family:monospace>"));
    return html;
}

void StatementManager::sort(int, Qt::SortOrder)
{
}
