#pragma once

#include "core/lwDataSource.h"

#include <QPointer>

// The statement on the accounts screen: money in against money out for the
// period shown, and the balance. It holds no records: each cell is read, when
// asked, from the last row of the money-in table ("field2", the received
// total) and of the bill table ("amount", the bills total), so it follows
// whatever those two tables show. A collection only so that its table is
// shown, printed and exported like every other.
class StatementManager : public lwDataSource
{
    Q_OBJECT
public:
    explicit StatementManager(QObject *parent = nullptr);

    // The two tables read; either may be none, and then reads as empty.
    void setInTable(lwDataSource *inTable);
    void setOutTable(lwDataSource *outTable);

    // Always four rows: money in, money out, a rule, the balance.
    int numberOfRowsInTableView() const override;
    // The column "name" holds the labels, any other column the values.
    QString objectValueForTableColumn(const QString &identifier, int row) const override;
    // The header cells are monospaced, unlike the other lists'.
    QString getDataAsHTMLusingTableView(const QList<Column> &columns) const override;
    // Header clicks do nothing.
    void sort(int column, Qt::SortOrder order) override;

protected:
    bool rowsAreVisibleRecords() const override { return false; }

private:
    void follow(lwDataSource *table);
    void sourcesChanged();
    static QString lastCell(const lwDataSource *table, const QString &identifier);

    QPointer<lwDataSource> m_inTable;
    QPointer<lwDataSource> m_outTable;
};
