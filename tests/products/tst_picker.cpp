#include "contacts/Contact.h"
#include "contacts/ContactManager.h"
#include "core/RecordTable.h"
#include "products/Picker.h"
#include "products/SupplierDataSource.h"
#include "reports/ReportItem.h"
#include "support/ScriptedPlatform.h"
#include "support/TestRecord.h"

#include <QAbstractItemModelTester>
#include <QFile>
#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QTemporaryFile>
#include <QTest>

#include <cstdio>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

std::shared_ptr<Contact> contact(int id, const QString &name, const QString &kind, const QString &type, int company = 0)
{
    auto c = std::make_shared<Contact>();
    c->setID(id);
    c->setName(name);
    c->setKind(kind);
    c->setType(type);
    c->setCompany(company);
    return c;
}

// Suppliers in collection order: Acme Tools, Bob Ray (a company contact),
// Cid Moss, Eve Hart (id 12, whose texts hold no "12").
void fillContacts(ContactManager &manager)
{
    manager.add(contact(1, u"Ann Lee"_s, u"Individual"_s, u"Customer"_s));
    manager.add(contact(2, u"Acme Tools"_s, u"Company"_s, u"Supplier"_s));
    manager.add(contact(3, u"Bob Ray"_s, u"Company Contact"_s, u"Supplier"_s, 2));
    manager.add(contact(4, u"Cid Moss"_s, u"Individual"_s, u"Supplier"_s));
    manager.add(contact(5, u"Dee Fox"_s, u"Company Contact"_s, u"Customer"_s, 2));
    auto eve = contact(12, u"Eve Hart"_s, u"Company"_s, u"Supplier"_s);
    eve->setAdd1(u"High St"_s);
    manager.add(eve);
}

QString nameOf(const Contact *c)
{
    return c ? c->getName() : u"(none)"_s;
}

QStringList column(const lwDataSource &model, const QString &identifier)
{
    QStringList values;
    for (int row = 0; row < model.numberOfRowsInTableView(); ++row)
        values << model.objectValueForTableColumn(identifier, row);
    return values;
}

// Field 3 (the id text) of every row record, hidden ones included.
QStringList idsInOrder(const lwDataSource &model)
{
    QStringList ids;
    for (const auto &record : model.records())
        ids << static_cast<const ReportItem *>(record.get())->getnthField(3);
    return ids;
}

// What a function writes on standard output while it runs.
template<typename F> QByteArray captureStdout(F run)
{
    QTemporaryFile file;
    if (!file.open())
        qFatal("no temporary file");
    std::fflush(stdout);
    const int saved = ::dup(STDOUT_FILENO);
    ::dup2(file.handle(), STDOUT_FILENO);
    run();
    std::fflush(stdout);
    ::dup2(saved, STDOUT_FILENO);
    ::close(saved);
    QFile reader(file.fileName());
    reader.open(QIODevice::ReadOnly);
    return reader.readAll();
}

} // namespace

class tst_Picker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m = std::make_unique<Fixture>(); }
    void cleanup() { m.reset(); }

    void supplierListAnswersFromTheContacts();

    void emptySourceAlertsAndOpensNothing();
    void openingFillsOneRowPerRecord();
    void filter_data();
    void filter();
    void finishCallsBackWithTheSelectedRecordOnly();
    void sort_data();
    void sort();

private:
    // The picker on the suppliers of the sample contacts.
    struct Fixture
    {
        Fixture()
        {
            fillContacts(contacts);
            suppliers.setContactManager(&contacts);
            picker.setPlatform(&platform);
            picker.setTableSelection(&selection);
        }
        ContactManager contacts;
        SupplierDataSource suppliers;
        ScriptedPlatform platform;
        Picker picker;
        QAbstractItemModelTester tester{&picker, QAbstractItemModelTester::FailureReportingMode::QtTest};
        QItemSelectionModel selection{&picker};
        QList<dataObject *> picked;
    };
    void open()
    {
        m->picker.beginfor([this](dataObject *record) { m->picked << record; }, &m->suppliers, u"name"_s, u"add1"_s,
                           u"Supplier"_s);
    }
    std::unique_ptr<Fixture> m;
};

void tst_Picker::supplierListAnswersFromTheContacts()
{
    auto contacts = std::make_unique<ContactManager>();
    fillContacts(*contacts);
    SupplierDataSource list;
    list.setColumns({{u"name"_s, u"Name"_s}, {u"add1"_s, u"Address"_s}});
    QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::QtTest);
    list.setContactManager(contacts.get());
    QCOMPARE(list.rowCount(), 4);
    QCOMPARE(nameOf(static_cast<Contact *>(list.getnthItem(2))), u"Cid Moss"_s);
    // Ids are looked up among all contacts, customers included.
    QCOMPARE(nameOf(static_cast<Contact *>(list.getItemById(1))), u"Ann Lee"_s);

    QString address, missing;
    const QByteArray out = captureStdout([&] {
        address = list.data(list.index(3, 1)).toString();
        missing = list.objectValueForTableColumn(u"name"_s, 9);
    });
    QCOMPARE(out, "request for item 3\nrequest for item 9\n");
    QCOMPARE(address, u"High St"_s);
    QCOMPARE(missing, u""_s);

    // Changes to the contacts reach the list's views.
    contacts->add(contact(30, u"Fay Dunn"_s, u"Individual"_s, u"Supplier"_s));
    QCOMPARE(list.rowCount(), 5);
    contacts->deleteItem(contacts->getItemById(2));
    QCOMPARE(list.rowCount(), 4);
    contacts.reset();
    QCOMPARE(list.rowCount(), 0);
}

void tst_Picker::emptySourceAlertsAndOpensNothing()
{
    ContactManager none;
    m->suppliers.setContactManager(&none);
    QSignalSpy shown(&m->picker, &Picker::pickerShown);
    open();
    QCOMPARE(shown.count(), 0);
    QCOMPARE(m->platform.alerts.size(), 1);
    const Platform::Alert &alert = m->platform.alerts.first();
    QCOMPARE(alert.title, u"None in database"_s);
    QCOMPARE(alert.informativeText, u"There are no Suppliers in the datbase. First create some by going to File > "
                                    u"New.... or the appropriate toolbar button"_s);
    QCOMPARE(alert.buttons, QStringList{u"OK"_s});
}

void tst_Picker::openingFillsOneRowPerRecord()
{
    QSignalSpy shown(&m->picker, &Picker::pickerShown);
    open();
    QCOMPARE(shown.count(), 1);
    QCOMPARE(m->picker.windowTitle(), u"Select Supplier"_s);
    QCOMPARE(column(m->picker, u"1"_s), (QStringList{u"Acme Tools"_s, u"Bob Ray"_s, u"Cid Moss"_s, u"Eve Hart"_s}));
    QCOMPARE(column(m->picker, u"2"_s), (QStringList{u""_s, u""_s, u""_s, u"High St"_s}));
    QCOMPARE(idsInOrder(m->picker), (QStringList{u"2"_s, u"3"_s, u"4"_s, u"12"_s}));

    // Opening again clears the search and offers the new source's records.
    m->picker.filter(u"acme"_s);
    ContactManager one;
    one.add(contact(40, u"Gus Pike"_s, u"Individual"_s, u"Supplier"_s));
    m->suppliers.setContactManager(&one);
    open();
    QCOMPARE(m->picker.searchText(), u""_s);
    QCOMPARE(column(m->picker, u"1"_s), QStringList{u"Gus Pike"_s});
}

void tst_Picker::filter_data()
{
    QTest::addColumn<QString>("search");
    QTest::addColumn<QStringList>("expected");

    QTest::addRow("ignores case") << u"ACME"_s << QStringList{u"Acme Tools"_s};
    QTest::addRow("two blanks between words") << u"acme  tools"_s << QStringList{u"Acme Tools"_s};
    QTest::addRow("the id matches") << u"12"_s << QStringList{u"Eve Hart"_s};
    QTest::addRow("words across fields") << u"eve st"_s << QStringList{u"Eve Hart"_s};
    QTest::addRow("every word must match") << u"acme ray"_s << QStringList{};
}

void tst_Picker::filter()
{
    QFETCH(QString, search);
    open();
    m->picker.filter(u"zzz"_s); // the new search starts from every row
    m->picker.filter(search);
    QTEST(column(m->picker, u"1"_s), "expected");
}

void tst_Picker::finishCallsBackWithTheSelectedRecordOnly()
{
    open();
    QSignalSpy hidden(&m->picker, &Picker::pickerHidden);
    m->picker.finish();
    QCOMPARE(hidden.count(), 1);
    QVERIFY(m->picked.isEmpty());

    const auto selectRow = [this](int row) {
        m->selection.setCurrentIndex(m->picker.index(row, 0),
                                     QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    };
    m->picker.filter(u"moss"_s);
    selectRow(0);
    m->picker.finish();
    QCOMPARE(m->picked, QList<dataObject *>{m->contacts.getItemById(4)});

    // A record gone from the source since the picker opened comes back as none.
    m->picker.filter(u""_s);
    selectRow(1); // Bob Ray, id 3
    m->contacts.deleteItem(m->contacts.getItemById(3));
    m->picker.finish();
    QCOMPARE(m->picked.size(), 2);
    QCOMPARE(m->picked.last(), nullptr);
    QCOMPARE(hidden.count(), 3);
}

void tst_Picker::sort_data()
{
    QTest::addColumn<QString>("column");
    QTest::addColumn<bool>("ascending");
    QTest::addColumn<int>("options");
    QTest::addColumn<QStringList>("expectedIds");

    // Rows (id: field1/field2): 1: b/A  2: A/b  3: c/a  4: a/B
    QTest::addRow("flag set puts b before A") << u"2"_s << true << 0 << QStringList{u"2"_s, u"4"_s, u"1"_s, u"3"_s};
    QTest::addRow("flag clear, smallest first") << u"1"_s << false << 1 << QStringList{u"2"_s, u"4"_s, u"1"_s, u"3"_s};
    QTest::addRow("option 2 sorts as text") << u"1"_s << true << 2 << QStringList{u"3"_s, u"1"_s, u"2"_s, u"4"_s};
    QTest::addRow("option 3 leaves the order") << u"1"_s << true << 3 << QStringList{u"1"_s, u"2"_s, u"3"_s, u"4"_s};
}

void tst_Picker::sort()
{
    QFETCH(QString, column);
    QFETCH(bool, ascending);
    QFETCH(int, options);

    RecordTable source;
    const std::pair<const char16_t *, const char16_t *> rows[] = {
        {u"b", u"A"}, {u"A", u"b"}, {u"c", u"a"}, {u"a", u"B"}};
    for (const auto &[name, code] : rows) {
        auto record = std::make_shared<TestRecord>(QString::fromUtf16(name));
        record->fields.insert(u"code"_s, QString::fromUtf16(code));
        source.add(record);
    }
    m->picker.beginfor([](dataObject *) {}, &source, u"name"_s, u"code"_s, u"Thing"_s);
    m->picker.sortByColumn(column, ascending, options);
    QTEST(idsInOrder(m->picker), "expectedIds");
}

QTEST_GUILESS_MAIN(tst_Picker)
#include "tst_picker.moc"
