#include "app/Ledgerwick.h"
#include "core/lwDataSource.h"
#include "support/ScriptedPlatform.h"
#include "support/TestRecord.h"

#include <QAbstractItemModelTester>
#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QTest>

namespace {

std::shared_ptr<TestRecord> rec(const QString &name, int id = 0)
{
    return std::make_shared<TestRecord>(name, id);
}

// A record added to the list, with one field set when a field is named.
std::shared_ptr<TestRecord> add(lwDataSource &source, const QString &name, const QString &field = {},
                                const QString &value = {}, int id = 0)
{
    auto record = rec(name, id);
    if (!field.isEmpty())
        record->fields.insert(field, value);
    source.add(record);
    return record;
}

// A table that shows each record's fields, as the managers do.
class FieldTable : public lwDataSource
{
public:
    QString objectValueForTableColumn(const QString &identifier, int row) const override
    {
        const dataObject *record = getnthVisibleItem(row);
        return record ? record->getFieldByName(identifier) : QString();
    }
    bool isDateColumn(const QString &identifier) const override { return identifier == QLatin1String("date"); }
};

QStringList namesInOrder(const lwDataSource &source)
{
    QStringList names;
    for (const auto &record : source.records())
        names << static_cast<TestRecord *>(record.get())->name();
    return names;
}

} // namespace

class TestLwDataSource : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void idsFollowTheAddRule();
    void clearStartsIdsAgainAndNextIdCounts();
    void visibleRowsCountOnlyVisibleRecords();
    void itemByIdFindsTheEarliestAndFollowsIdChanges();
    void swopAndDelete();
    void sortsText_data();
    void sortsText();
    void sortsDatesAndKeepsTheCache();
    void modelAnnouncesChanges();
    void headerClickSortsAndSelectionFollows();
    void readOnlyCheckAlertsAndRefuses();
};

void TestLwDataSource::idsFollowTheAddRule()
{
    lwDataSource source;
    QList<int> ids;
    for (int given : {0, 0, 0, 10, 0, 5, 2})
        ids << add(source, QString::number(given), {}, {}, given)->getID();
    // A given id is kept, even a duplicate; the others follow the highest so far.
    QCOMPARE(ids, (QList<int>{1, 2, 3, 10, 11, 5, 2}));
    QCOMPARE(source.highestId(), 11);
    QCOMPARE(source.getCount(), 7);
    source.add(nullptr);
    QCOMPARE(source.getCount(), 7);
}

void TestLwDataSource::clearStartsIdsAgainAndNextIdCounts()
{
    lwDataSource fresh;
    QCOMPARE(fresh.getNextId(), 1);
    QCOMPARE(fresh.getNextId(), 2);
    // An id handed out by getNextId is not reused by add.
    QCOMPARE(add(fresh, QStringLiteral("r"))->getID(), 3);
    fresh.clear();
    QCOMPARE(fresh.getCount(), 0);
    QCOMPARE(add(fresh, QStringLiteral("again"))->getID(), 1);
}

void TestLwDataSource::visibleRowsCountOnlyVisibleRecords()
{
    lwDataSource source;
    auto a = rec(QStringLiteral("A"));
    a->setVisible(false);
    source.add(a);
    auto b = add(source, QStringLiteral("B")), c = add(source, QStringLiteral("C"));
    QCOMPARE(source.numberOfRowsInTableView(), 2);
    QCOMPARE(source.rowCount(), 2);
    QCOMPARE(source.getnthVisibleItem(0), b.get());
    QCOMPARE(source.getnthVisibleItem(1), c.get());
    QCOMPARE(source.getnthVisibleItem(2), nullptr);
    // Counting starts at -1: a hidden first record answers row -1.
    QCOMPARE(source.getnthVisibleItem(-1), a.get());
    QCOMPARE(source.getnthVisibleItem(-2), nullptr);

    // Visibility changed on the records themselves is seen at once.
    c->setVisible(false);
    a->setVisible(true);
    QCOMPARE(source.numberOfRowsInTableView(), 2);
    QCOMPARE(source.getnthVisibleItem(0), a.get());
    QCOMPARE(source.getnthVisibleItem(1), b.get());
    QCOMPARE(source.getnthVisibleItem(-1), nullptr);
    // Adding after the index is built keeps it right.
    QCOMPARE(source.getnthVisibleItem(2), add(source, QStringLiteral("D")).get());
}

void TestLwDataSource::itemByIdFindsTheEarliestAndFollowsIdChanges()
{
    lwDataSource source;
    auto first = add(source, QStringLiteral("first"), {}, {}, 4);
    auto second = add(source, QStringLiteral("second"), {}, {}, 4);
    auto other = add(source, QStringLiteral("other"), {}, {}, 9);
    QCOMPARE(source.getItemById(4), first.get());
    QCOMPARE(source.getItemById(9), other.get());
    QCOMPARE(source.getItemById(5), nullptr);
    QCOMPARE(add(source, QStringLiteral("late"))->getID(), 10); // added after a lookup: the index takes it in
    QCOMPARE(source.getItemById(10)->getFieldByName(QStringLiteral("name")), QStringLiteral("late"));

    // Ids overwritten after adding (as loading does) are found under the new id.
    first->setID(12);
    QCOMPARE(source.getItemById(4), second.get());
    QCOMPARE(source.getItemById(12), first.get());
    source.deleteItem(second.get());
    QCOMPARE(source.getItemById(4), nullptr);
    // Visibility plays no part.
    other->setVisible(false);
    QCOMPARE(source.getItemById(9), other.get());
}

void TestLwDataSource::swopAndDelete()
{
    lwDataSource source;
    auto a = add(source, QStringLiteral("a")), b = add(source, QStringLiteral("b")),
         c = add(source, QStringLiteral("c"));
    TestRecord stranger(QStringLiteral("x"));
    source.swop(a.get(), &stranger);
    QCOMPARE(namesInOrder(source), QStringList({"a", "b", "c"}));
    source.swop(a.get(), c.get());
    QCOMPARE(namesInOrder(source), QStringList({"c", "b", "a"}));

    source.deleteItem(&stranger);
    QCOMPARE(source.getCount(), 3);
    source.deleteItem(c.get());
    QCOMPARE(namesInOrder(source), QStringList({"b", "a"}));
    QCOMPARE(source.highestId(), 3);
    QCOMPARE(add(source, QStringLiteral("d"))->getID(), 4);
    QCOMPARE(source.getFirstItem(), b.get());
}

void TestLwDataSource::sortsText_data()
{
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<bool>("ascending");
    QTest::addColumn<int>("options");
    QTest::addColumn<QStringList>("expected");
    QTest::addRow("flag YES ends descending") << QStringList{"b", "A", "c"} << true << 0 << QStringList{"c", "b", "A"};
    QTest::addRow("flag NO ends ascending") << QStringList{"b", "A", "c"} << false << 0 << QStringList{"A", "b", "c"};
    QTest::addRow("numbers compare as text") << QStringList{"9", "10"} << false << 0 << QStringList{"10", "9"};
    QTest::addRow("options 1 like 0") << QStringList{"b", "a"} << false << 1 << QStringList{"a", "b"};
    QTest::addRow("other options change nothing")
        << QStringList{"b", "a", "c"} << false << 3 << QStringList{"b", "a", "c"};
}

void TestLwDataSource::sortsText()
{
    QFETCH(QStringList, values);
    QFETCH(bool, ascending);
    QFETCH(int, options);
    lwDataSource source;
    for (const QString &v : values)
        add(source, v, QStringLiteral("title"), v);
    source.sortByColumn(QStringLiteral("title"), ascending, options);
    QTEST(namesInOrder(source), "expected");
}

void TestLwDataSource::sortsDatesAndKeepsTheCache()
{
    const QString date = QStringLiteral("date");
    lwDataSource source;
    add(source, QStringLiteral("feb"), date, QStringLiteral("01/02/07"));
    auto jan = add(source, QStringLiteral("jan"), date, QStringLiteral("15/01/07"));
    source.sortByColumn(QStringLiteral("date"), false, 2);
    QCOMPARE(namesInOrder(source), QStringList({"jan", "feb"}));
    QCOMPARE(jan->getNSDate(), CalendarDate(QDate(2007, 1, 15)));

    // The cache wins over a later change of the text.
    jan->fields.insert(date, QStringLiteral("01/12/07"));
    source.sortByColumn(QStringLiteral("date"), false, 2);
    QCOMPARE(namesInOrder(source), QStringList({"jan", "feb"}));

    // An undated record stays in place: records do not move across it.
    lwDataSource mixed;
    add(mixed, QStringLiteral("late"), date, QStringLiteral("01/01/09"));
    auto bad = add(mixed, QStringLiteral("bad"), date, QStringLiteral("someday"));
    add(mixed, QStringLiteral("early"), date, QStringLiteral("01/01/08"));
    mixed.sortByColumn(QStringLiteral("date"), false, 2);
    QCOMPARE(namesInOrder(mixed), QStringList({"late", "bad", "early"}));
    QVERIFY(!bad->getNSDate().isValid());

    // A single record is never compared, so nothing is cached.
    lwDataSource single;
    auto only = add(single, QStringLiteral("only"), date, QStringLiteral("03/03/03"));
    single.sortByColumn(QStringLiteral("date"), false, 2);
    QVERIFY(!only->getNSDate().isValid());

    // "name" sorts by surname.
    lwDataSource people;
    add(people, QStringLiteral("Amy"), QStringLiteral("surname"), QStringLiteral("Young"));
    add(people, QStringLiteral("Zed"), QStringLiteral("surname"), QStringLiteral("Adams"));
    people.sortByColumn(QStringLiteral("name"), false);
    QCOMPARE(namesInOrder(people), QStringList({"Zed", "Amy"}));
}

void TestLwDataSource::modelAnnouncesChanges()
{
    FieldTable table;
    QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
    table.setColumns(
        {{QStringLiteral("name"), QStringLiteral("Name"), 120}, {QStringLiteral("qty"), QStringLiteral("Qty"), 40}});
    QCOMPARE(table.columnCount(), 2);
    QCOMPARE(table.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Qty"));
    QCOMPARE(table.columnForIdentifier(QStringLiteral("qty")), 1);

    QSignalSpy inserted(&table, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&table, &QAbstractItemModel::rowsRemoved);
    auto hidden = rec(QStringLiteral("hidden"));
    hidden->setVisible(false);
    table.add(hidden);
    QCOMPARE(inserted.count(), 0); // a hidden record adds no row
    auto shown = add(table, QStringLiteral("shown"), QStringLiteral("qty"), QStringLiteral("3"));
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(inserted.at(0).at(1).toInt(), 0);
    QCOMPARE(table.rowCount(), 1);
    QCOMPARE(table.data(table.index(0, 1)).toString(), QStringLiteral("3"));
    QCOMPARE(table.data(table.index(0, 0), lwDataSource::RecordRole).value<void *>(), static_cast<void *>(shown.get()));
    QItemSelectionModel selection(&table);
    table.setTableSelection(&selection);
    QCOMPARE(table.getSelectedItem(), nullptr); // no selection never answers the hidden first record

    // Filtering changes visibility on the records, then reloads the views.
    QSignalSpy reset(&table, &QAbstractItemModel::modelReset);
    hidden->setVisible(true);
    table.reloadData();
    QCOMPARE(reset.count(), 1);
    QCOMPARE(table.rowCount(), 2);
    QCOMPARE(table.data(table.index(0, 0)).toString(), QStringLiteral("hidden"));

    table.deleteItem(hidden.get());
    QCOMPARE(removed.count(), 1);
    QCOMPARE(table.rowCount(), 1);
    table.clear();
    QCOMPARE(table.rowCount(), 0);
    QVERIFY(!(table.flags(table.index(0, 0)) & Qt::ItemIsEditable));
}

void TestLwDataSource::headerClickSortsAndSelectionFollows()
{
    FieldTable table;
    QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
    table.setColumns(
        {{QStringLiteral("name"), QStringLiteral("Name"), 100}, {QStringLiteral("date"), QStringLiteral("Date"), 80}});
    for (const auto &[name, date] : {std::pair{"b", "01/02/07"}, {"c", "15/01/07"}, {"a", "02/03/07"}})
        add(table, QLatin1String(name), QStringLiteral("date"), QLatin1String(date))
            ->fields.insert(QStringLiteral("surname"), QLatin1String(name));
    QItemSelectionModel selection(&table);
    table.setTableSelection(&selection);
    selection.select(table.index(0, 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    selection.setCurrentIndex(table.index(0, 0), QItemSelectionModel::NoUpdate);
    dataObject *selected = table.getSelectedItem();
    QCOMPARE(static_cast<TestRecord *>(selected)->name(), QStringLiteral("b"));

    table.sort(1, Qt::DescendingOrder); // the flag NO: earliest date first
    QCOMPARE(namesInOrder(table), QStringList({"c", "b", "a"}));
    QCOMPARE(table.getSelectedItem(), selected);
    QVERIFY(selected->getNSDate().isValid()); // sorted as dates, so the cache is filled

    table.sort(0, Qt::AscendingOrder); // the flag YES: largest text first
    QCOMPARE(namesInOrder(table), QStringList({"c", "b", "a"}));
    table.sort(0, Qt::DescendingOrder);
    QCOMPARE(namesInOrder(table), QStringList({"a", "b", "c"}));
    QCOMPARE(table.getSelectedItem(), selected);
    table.sort(7, Qt::AscendingOrder); // no such column: nothing happens
    QCOMPARE(namesInOrder(table), QStringList({"a", "b", "c"}));
}

void TestLwDataSource::readOnlyCheckAlertsAndRefuses()
{
    ScriptedPlatform platform;
    Ledgerwick ledgerwick(&platform);
    lwDataSource source;
    QVERIFY(source.readOnlyCheck()); // no controller: nothing to refuse
    source.setLedgerwick(&ledgerwick);
    QVERIFY(source.readOnlyCheck());
    QVERIFY(platform.alerts.isEmpty());

    ledgerwick.setReadOnly(true);
    QVERIFY(!source.readOnlyCheck());
    QCOMPARE(platform.alerts.size(), 1); // its text is checked by the managers' contract
}

QTEST_GUILESS_MAIN(TestLwDataSource)
#include "tst_lwdatasource.moc"
