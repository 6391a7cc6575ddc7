#pragma once

#include "core/dataObject.h"

#include <QAbstractTableModel>
#include <QColor>
#include <QItemSelectionModel>
#include <QList>
#include <QPointer>

#include <memory>
#include <unordered_map>
#include <vector>

class lwController;

// One ordered collection of records that is at the same time the model of the
// table showing it. Rows are the visible records only; positions passed to
// getnthItem() count every record. Every manager derives from it.
class lwDataSource : public QAbstractTableModel
{
    Q_OBJECT
public:
    struct Column
    {
        QString identifier; // the field name asked of each record
        QString title;
        int width = 100;
    };
    // How the table's rows are ordered by a key (the table's sort descriptors).
    struct SortRule
    {
        QString key;
        bool ascending = true;
    };

    // The colour a row's label area is painted with (invalid = no tint).
    static constexpr int LabelColorRole = Qt::UserRole + 1;
    // The record shown in a row, as a pointer in a QVariant (dataObject*).
    static constexpr int RecordRole = Qt::UserRole + 2;

    explicit lwDataSource(QObject *parent = nullptr);
    ~lwDataSource() override;

    void setLedgerwick(lwController *ledgerwick) { m_ledgerwick = ledgerwick; }
    lwController *ledgerwick() const { return m_ledgerwick; }

    // --- the collection -------------------------------------------------
    // Appends the record. A record without an id (0) is given the next one;
    // a larger id than any seen raises the highest id; a smaller or equal id
    // is kept as it is (nothing checks for duplicates).
    void add(std::shared_ptr<dataObject> record);
    void clear();
    // Removes the record; the highest id is not lowered.
    void deleteItem(const dataObject *record);
    // Exchanges the positions of two records when both are in the collection.
    void swop(const dataObject *a, const dataObject *b);

    virtual int getCount() const;
    virtual dataObject *getFirstItem() const;
    virtual dataObject *getItemById(int id) const;
    virtual dataObject *getNextItem(const dataObject *record) const;
    virtual dataObject *getnthItem(qsizetype n) const;
    dataObject *getnthVisibleItem(int n) const;
    // The record of the selected row; none without a selection.
    virtual dataObject *getSelectedItem() const;
    int getNextId();
    int highestId() const { return m_highestId; }

    // The owning pointer of a record in this collection (empty when it is not).
    std::shared_ptr<dataObject> sharedRecord(const dataObject *record) const;
    const std::vector<std::shared_ptr<dataObject>> &records() const { return m_collection; }
    qsizetype positionOf(const dataObject *record) const;
    // Counts every change of the collection's membership or order, so that
    // a manager's own indexes can tell cheaply whether they are stale.
    quint64 collectionChanges() const { return m_changes; }

    // --- sorting ----------------------------------------------------------
    void sortByColumn(const QString &column, bool ascending);
    // The table sort. Deliberately reversed: ascending true leaves the largest
    // first. Options 0 and 1 compare the texts ignoring case, 2 compares them
    // as "%d/%m/%y" dates through each record's date cache, anything else
    // leaves the order alone. The column "name" sorts by "surname". Equal
    // records keep their order.
    virtual void sortByColumn(const QString &column, bool ascending, int options);

    // --- checks and hooks ---------------------------------------------------
    // False, after the "Read-only mode" alert, while the database is read-only.
    bool readOnlyCheck();
    virtual void deleteKey(QObject *sender);
    // Open the manager's editor on a new record, or on the selected one.
    // Plain collections have no editor and do nothing.
    virtual void create(QObject *sender);
    virtual void edit(QObject *sender);
    // Asked when another editor of the same records comes to the front: the
    // manager commits or drops its unfinished edit. Plain collections have none.
    virtual void requestResign(QObject *sender);
    virtual void getWindowTitle(QObject *sender);
    virtual void remove(QObject *sender);
    virtual void sort(QObject *sender);
    // Applies the manager's current search and filter to every record's
    // visibility, then reloads the views. The base shows every record.
    virtual void filter(QObject *sender);
    // Tells every view that the rows may all have changed (after filtering).
    void reloadData();
    // A record of this collection changed in place (a stock change made by an
    // order): its row is redrawn without a reset of the views.
    void recordChanged(const dataObject *record);

    // --- import -------------------------------------------------------------
    // Asks for a tab-separated file ("csv" or "tdl") and imports it into this
    // collection. Not refused while read-only: the records wait for a save.
    void importData(QObject *sender);
    // The open panel's answer: imports the file when the code is 1 and the
    // context is "Import Data". The text is decoded by its byte-order mark,
    // else as strict UTF-8; a file that is neither imports nothing.
    void openPanelDidEnd(const QString &path, int returnCode, const QString &contextInfo);
    // Imports tab-separated text, the first line holding the field names, with
    // every alert and log line of the import; nothing is saved. A null text
    // stands for a file that could not be read. Answers the number of records
    // added to the collection.
    int importText(const QString &text);
    // A new record with its defaults, already added (so it has its id); none
    // when this list cannot import.
    virtual dataObject *createAndAddDataObject();

    // --- the table --------------------------------------------------------
    void setColumns(const QList<Column> &columns);
    // Rebuilds the columns and sort rules from a column file (see ColumnFile).
    // A file it cannot take is logged and leaves the table as it was.
    bool configureTable(const QString &path);
    void setSortRules(const QList<SortRule> &rules) { m_sortRules = rules; }
    const QList<SortRule> &sortRules() const { return m_sortRules; }
    const QList<Column> &columns() const { return m_columns; }
    int columnForIdentifier(const QString &identifier) const;
    // The selection of the table this collection feeds (not owned).
    void setTableSelection(QItemSelectionModel *selection) { m_selection = selection; }
    QItemSelectionModel *tableSelection() const { return m_selection; }
    // The selected row, -1 when none.
    int selectedRow() const;

    // The table as spreadsheet text and as an HTML table fragment, over the
    // columns given (the view's, in their visual order) and the rows shown.
    // Values are written as they stand, without escaping.
    virtual QString getDataAsCSVusingTableView(const QList<Column> &columns) const;
    virtual QString getDataAsHTMLusingTableView(const QList<Column> &columns) const;

    virtual int numberOfRowsInTableView() const;
    virtual QString objectValueForTableColumn(const QString &identifier, int row) const;
    virtual bool setObjectValueForTableColumn(const QString &value, const QString &identifier, int row);
    virtual QColor labelColorForRow(int row) const;
    // Columns whose values sort as dates (option 2) when their header is clicked.
    virtual bool isDateColumn(const QString &identifier) const;
    virtual bool isColumnEditable(const QString &identifier) const;

    // QAbstractItemModel
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    // A header click: ascending order is passed as the flag YES.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

protected:
    // Subclasses whose rows are not simply the visible records (outlines,
    // totals rows) answer false, and every change then resets the views.
    virtual bool rowsAreVisibleRecords() const { return true; }
    // Reorders the collection to the given permutation (new position i holds
    // the record that was at order[i]) and tells the views.
    void applyOrder(const std::vector<qsizetype> &order);

private:
    void ensureVisibleIndex() const;
    void ensureIdIndex() const;
    void invalidateIndexes();
    // The visible row of the record at a position, -1 when hidden.
    int visibleRowOfPosition(qsizetype position) const;

    std::vector<std::shared_ptr<dataObject>> m_collection;
    int m_highestId = 0;
    quint64 m_changes = 0;
    lwController *m_ledgerwick = nullptr;
    QPointer<QItemSelectionModel> m_selection;
    QList<Column> m_columns;
    QList<SortRule> m_sortRules;

    // Positions of the visible records, rebuilt lazily when visibility or the
    // collection changes.
    mutable std::vector<qsizetype> m_visiblePositions;
    mutable bool m_visibleValid = false;
    mutable quint64 m_visibleGeneration = 0;
    // Earliest position of each id, rebuilt lazily when an id or the
    // collection changes.
    mutable std::unordered_map<int, qsizetype> m_idIndex;
    mutable bool m_idValid = false;
    mutable quint64 m_idGeneration = 0;
    // Where the last getNextItem() walk stood, so walks cost O(1) per step.
    mutable qsizetype m_walkHint = 0;
};
