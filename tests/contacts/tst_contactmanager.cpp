#include "contacts/CompanyContactEditor.h"
#include "contacts/CompanyEditor.h"
#include "contacts/ContactManager.h"
#include "orders/Order.h"
#include "prefs/PrefsController.h"
#include "support/AppFixture.h"
#include "support/TestRecord.h"

#include <QAbstractItemModelTester>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

// Every name a contact answers by name.
const QStringList kReadNames = {
    u"add1"_s,  u"add2"_s,      u"add3"_s,    u"address"_s,  u"comments"_s, u"companyname"_s, u"company"_s,
    u"email"_s, u"extension"_s, u"fax"_s,     u"jobTitle"_s, u"kind"_s,     u"mobile"_s,      u"name"_s,
    u"phone"_s, u"postcode"_s,  u"surname"_s, u"title"_s,    u"type"_s,     u"website"_s,
};

} // namespace

class tst_ContactManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_app.reset(); }

    void outlineAndQueriesFollowEveryChange();
    void filter_data();
    void filter();
    void outlineCellsAndItsOwnExport();
    void paste_data();
    void paste();
    void copyAndCapitalise();
    void finishStoresTheEditorAndLinksANewCustomer();
    void makeCompanyAndLinkToCompanyHandOver();
    void companyEditorQuirks();
    void companyContactEditorChoosesItsCompany();
    void writeByName_data();
    void writeByName();
    void surname_data();
    void surname();
    void addresses_data();
    void addresses();
    void contains_data();
    void contains();

private:
    std::shared_ptr<Contact> add(const QString &name, const QString &kind, const QString &type, int company = 0);
    QStringList shown() const;

    std::unique_ptr<AppFixture> m_app;
    ContactManager *m_contacts = nullptr;
};

void tst_ContactManager::init()
{
    m_app = std::make_unique<AppFixture>();
    m_contacts = m_app->ledgerwick->getContactManager();
    new QAbstractItemModelTester(m_contacts, m_contacts);
}

std::shared_ptr<Contact> tst_ContactManager::add(const QString &name, const QString &kind, const QString &type,
                                                 int company)
{
    auto contact = m_app->addContact(name);
    contact->setKind(kind);
    contact->setType(type);
    contact->setCompany(company);
    return contact;
}

// The outline as shown, people indented under their companies.
QStringList tst_ContactManager::shown() const
{
    QStringList names;
    for (const Contact *contact : m_contacts->displayedRows())
        names << (ContactManager::isCompany(*contact) ? QString() : u"  "_s) + contact->getName();
    return names;
}

void tst_ContactManager::outlineAndQueriesFollowEveryChange()
{
    auto acme = add(u"Acme"_s, u"Company"_s, u"Supplier"_s);
    auto ann = add(u"Ann"_s, u"Company Contact"_s, u"Customer"_s, acme->getID());
    add(u"Carl"_s, u"Individual"_s, u"Supplier"_s);
    add(u"Orphan"_s, u"Company Contact"_s, u"Supplier"_s, 99); // their company was deleted
    m_contacts->setExpanded(acme.get(), true);

    QCOMPARE(m_contacts->countCompanies(), 2);
    QCOMPARE(m_contacts->countSuppliers(), 3);
    QCOMPARE(m_contacts->countContactsforThisCompany(acme->getID()), 1);
    QCOMPARE(m_contacts->countContactsforThisCompany(99), 1); // still a contact
    QCOMPARE(m_contacts->getnthSupplier(1)->getName(), u"Carl"_s);
    QCOMPARE(m_contacts->getnthSupplier(2)->getName(), u"Orphan"_s); // a company contact can supply
    QCOMPARE(m_contacts->getnthSupplier(-1), nullptr);
    QCOMPARE(m_contacts->getnthCompany(2), nullptr);
    QCOMPARE(m_contacts->getContactbyName(u"Ann"_s), ann.get());
    QCOMPARE(m_contacts->getContactbyName(u"ann"_s), nullptr);
    QCOMPARE(m_contacts->getContactbyId(QString::number(ann->getID()) + u"abc"_s), ann.get());
    QCOMPARE(m_contacts->getContactbyId(u"99"_s), nullptr);
    QCOMPARE(shown(), (QStringList{u"Acme"_s, u"  Ann"_s, u"Carl"_s}));
    QCOMPARE(m_contacts->rowCount(m_contacts->indexOf(acme.get())), 1);
    QCOMPARE(m_contacts->parent(m_contacts->indexOf(ann.get())), m_contacts->indexOf(acme.get()));

    // Each change shows at once: a kind, a company, a name, a deletion.
    ann->setCompany(0);
    QCOMPARE(m_contacts->countContactsforThisCompany(acme->getID()), 0);
    ann->setKind(u"Individual"_s);
    QCOMPARE(m_contacts->countCompanies(), 3);
    ann->setName(u"Anne"_s);
    QCOMPARE(m_contacts->getContactbyName(u"Ann"_s), nullptr);
    QCOMPARE(m_contacts->getContactbyName(u"Anne"_s), ann.get());
    m_contacts->deleteItem(acme.get());
    QCOMPARE(m_contacts->countSuppliers(), 2);
    QCOMPARE(m_contacts->getnthVisibleCompany(0), ann.get());
    ann->setVisible(false);
    QCOMPARE(m_contacts->countVisibleCompanies(), 1);
    add(u"Anne"_s, u"Individual"_s, u"Other"_s);
    QCOMPARE(m_contacts->getContactbyName(u"Anne"_s), ann.get()); // the first of two
}

void tst_ContactManager::filter_data()
{
    QTest::addColumn<QString>("search");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QStringList>("shown");
    QTest::addRow("all") << u""_s << u"All"_s << QStringList{u"Acme"_s, u"  Ann"_s, u"Bea"_s, u"Cy"_s};
    // People are listed under a visible supplier company whatever their own type.
    QTest::addRow("suppliers") << u""_s << u"Supplier"_s << QStringList{u"Acme"_s, u"  Ann"_s};
    QTest::addRow("customers") << u""_s << u"Customer"_s << QStringList{u"Bea"_s};
    QTest::addRow("own type") << u""_s << u"Trade"_s << QStringList{u"Cy"_s};
    QTest::addRow("search") << u"LEEDS"_s << u"All"_s << QStringList{u"Bea"_s};
    QTest::addRow("search and type") << u"leeds"_s << u"Supplier"_s << QStringList{};
}

void tst_ContactManager::filter()
{
    QFETCH(QString, search);
    QFETCH(QString, filter);
    m_app->ledgerwick->getPrefsController()->controls().contactTypes = u"Trade"_s;
    m_app->ledgerwick->getPrefsController()->populateLists();
    QCOMPARE(m_contacts->editorState().filter.entries,
             (QStringList{u"All"_s, u"Customer"_s, u"Supplier"_s, u"Trade"_s}));
    auto acme = add(u"Acme"_s, u"Company"_s, u"Supplier"_s);
    add(u"Ann"_s, u"Company Contact"_s, u"Customer"_s, acme->getID());
    add(u"Bea"_s, u"Individual"_s, u"Customer"_s)->setAdd3(u"Leeds"_s);
    add(u"Cy"_s, u"Individual"_s, u"Trade"_s);
    m_contacts->setExpanded(acme.get(), true);
    m_contacts->editorState().searchText = search;
    m_contacts->editorState().filter.selectTitle(filter);
    m_contacts->filter(nullptr);
    QTEST(shown(), "shown");
}

void tst_ContactManager::outlineCellsAndItsOwnExport()
{
    auto acme = add(u"Acme"_s, u"Company"_s, u"Other"_s);
    acme->setAdd1(u"1 Forge Lane"_s);
    acme->setAdd2(u"Unit 4"_s);
    add(u"Ann"_s, u"Company Contact"_s, u"Customer"_s, acme->getID())->setAdd1(u"ignored"_s);
    add(u"Bea"_s, u"Individual"_s, u"Customer"_s);
    const QList<lwDataSource::Column> columns = m_contacts->columns();
    QCOMPARE(m_contacts->outlineValue(*acme, u"2"_s), u" 1 Forge Lane"_s); // a leading blank, never add2
    QCOMPARE(m_contacts->outlineValue(*acme, u"3"_s), u""_s);              // "Other" is not shown
    // Collapsed: the rows shown, then empty rows up to the number of contacts.
    QCOMPARE(m_contacts->getDataAsCSVusingTableView(columns),
             u"\"Name\",\"Address\",\"Type\"\r\"Acme\",\" 1 Forge Lane\",\"\"\r\"Bea\",\"\",\"Customer\"\r"
             "\"\",\"\",\"\"\r"_s);
    m_contacts->setExpanded(acme.get(), true);
    QVERIFY(m_contacts->getDataAsCSVusingTableView(columns).contains(u"\"Ann\",\"\",\"\"\r\"Bea\""_s));
    QVERIFY(m_contacts->getDataAsHTMLusingTableView(columns).contains(u">Ann</td>"_s));
}

void tst_ContactManager::paste_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("fields"); // name, add1, add2, add3, postcode
    QTest::addColumn<bool>("pasted");
    QTest::addRow("four lines by CR") << u"Jo Bloggs\r1 High St\rLeeds\rLS1 1AA"_s
                                      << QStringList{u"Jo Bloggs"_s, u"1 High St"_s, u"Leeds"_s, u"old"_s, u"LS1 1AA"_s}
                                      << true;
    QTest::addRow("five or more by LF") << u"Jo\nA1\nA2\nA3\nPC\nextra"_s
                                        << QStringList{u"Jo"_s, u"A1"_s, u"A2"_s, u"A3"_s, u"PC"_s} << true;
    QTest::addRow("three: the last is both") << u"Jo\nA1\nLeeds"_s
                                             << QStringList{u"Jo"_s, u"A1"_s, u"Leeds"_s, u"old"_s, u"Leeds"_s}
                                             << true;
    QTest::addRow("two fail half way") << u"Jo\nA1"_s
                                       << QStringList{u"Jo"_s, u"A1"_s, u"old"_s, u"old"_s, u"old"_s} << false;
}

void tst_ContactManager::paste()
{
    QFETCH(QString, text);
    QFETCH(bool, pasted);
    ContactEditorState &s = m_contacts->editorState();
    s.name = s.add1 = s.add2 = s.add3 = s.postcode = u"old"_s;
    m_app->platform.pasteboard = text;
    QCOMPARE(m_contacts->pasteContact(nullptr), pasted);
    QTEST((QStringList{s.name, s.add1, s.add2, s.add3, s.postcode}), "fields");
    QCOMPARE(m_app->platform.alerts.size(), pasted ? 0 : 1);
}

void tst_ContactManager::copyAndCapitalise()
{
    ContactEditorState &s = m_contacts->editorState();
    s.title.selectTitle(u"Dr"_s);
    s.name = u"jo O'BRIEN-smith"_s;
    s.add1 = u"1 high st"_s;
    s.postcode = u"ls1 1aa"_s;
    m_contacts->capitalise(nullptr);
    QCOMPARE(s.name, u"Jo O'Brien-Smith"_s);
    QCOMPARE(s.postcode, u"LS1 1AA"_s);
    m_contacts->copyContact(nullptr);
    QCOMPARE(m_app->platform.pasteboard, u"Dr Jo O'Brien-Smith\r1 High St\r\r\rLS1 1AA\r"_s);
}

void tst_ContactManager::finishStoresTheEditorAndLinksANewCustomer()
{
    auto order = std::make_shared<Order>();
    m_app->ledgerwick->getOrderManager()->add(order);
    m_app->ledgerwick->setCurrentOrder(order->getID());
    m_contacts->createForCurrentOrder(nullptr);
    ContactEditorState &s = m_contacts->editorState();
    s.name = u"New Customer"_s;
    s.website = u"ignored.example"_s;
    s.type.index = -1; // no type chosen: the default stays
    m_contacts->finish(nullptr);
    Contact *contact = m_contacts->currentItem();
    QCOMPARE(m_contacts->getCount(), 1);
    QCOMPARE(contact->getType(), u"Customer"_s);
    QCOMPARE(contact->getWebsite(), u""_s); // shown, never stored by this editor
    QCOMPARE(order->getContactId(), contact->getID());

    // A cancelled one is dropped and links nothing.
    auto second = std::make_shared<Order>();
    m_app->ledgerwick->getOrderManager()->add(second);
    m_app->ledgerwick->setCurrentOrder(second->getID());
    m_contacts->createForCurrentOrder(nullptr);
    m_contacts->cancel(nullptr);
    QVERIFY(!m_contacts->isCreating());
    m_app->select(m_contacts, 0);
    m_contacts->edit(nullptr);
    m_contacts->finish(nullptr);
    QCOMPARE(m_contacts->getCount(), 1);
    QCOMPARE(second->getContactId(), 0);
}

void tst_ContactManager::makeCompanyAndLinkToCompanyHandOver()
{
    QSignalSpy handedOver(m_contacts, &ContactManager::handedOver);
    m_contacts->editThisContact(nullptr); // nothing to open
    m_contacts->create(nullptr);
    m_contacts->editorState().name = u"Growing Ltd"_s;
    m_contacts->makeCompany(nullptr);
    Contact *company = m_contacts->currentItem();
    QCOMPARE(company->getKind(), u"Company"_s);
    QCOMPARE(m_contacts->getCount(), 1); // committed first
    QCOMPARE(handedOver.count(), 1);
    QCOMPARE(m_app->ledgerwick->getCompanyEditor()->currentItem(), company);

    m_contacts->create(nullptr);
    m_contacts->editorState().name = u"Jo"_s;
    m_contacts->linkToCompany(nullptr);
    QCOMPARE(m_contacts->currentItem()->getKind(), u"Company Contact"_s);
    QCOMPARE(m_app->ledgerwick->getCompanyContactEditor()->currentItem(), m_contacts->currentItem());
    QCOMPARE(handedOver.last().at(0).value<lwEditorManagerBase *>(), m_app->ledgerwick->getCompanyContactEditor());
}

void tst_ContactManager::companyEditorQuirks()
{
    CompanyEditor *editor = m_app->ledgerwick->getCompanyEditor();
    m_app->ledgerwick->setReadOnly(true);
    editor->create(nullptr); // added at once, even read-only
    QCOMPARE(m_contacts->getCount(), 1);
    QVERIFY(editor->isEditorShown());
    editor->cancel(nullptr);
    QCOMPARE(m_contacts->getCount(), 1); // an empty company stays
    m_app->select(m_contacts, 0);
    m_contacts->edit(nullptr); // refused while read-only
    QVERIFY(!editor->isEditorShown());
    m_app->ledgerwick->setReadOnly(false);

    m_contacts->edit(nullptr);
    Contact *company = editor->currentItem();
    auto ann = add(u"Ann"_s, u"Company Contact"_s, u"Customer"_s, company->getID());
    QCOMPARE(editor->objectValueForTableColumn(u"name"_s, 0), u"Ann"_s); // its people table
    CompanyContactEditor *people = m_app->ledgerwick->getCompanyContactEditor();
    ContactEditorState &s = editor->editorState();
    s.name = u"Acme"_s;
    s.add1 = u"2 New Road"_s;
    s.mobile = u"07700"_s;
    s.title.selectTitle(u"Dr"_s);
    editor->finish(nullptr);
    people->editRecord(ann.get());
    QCOMPARE(people->editorState().add1, u"2 New Road"_s);
    s.add1 = u"3 Moved Again"_s;
    editor->editRecord(company);
    editor->editorState().add1 = u"3 Moved Again"_s;
    editor->finish(nullptr);
    // An open company contact editor shows the new address; the person's
    // stored copy changes only when that editor is committed.
    QCOMPARE(people->editorState().add1, u"3 Moved Again"_s);
    QCOMPARE(ann->getAdd1(), u""_s);
    QCOMPARE(company->getMobile(), u""_s);
    QCOMPARE(company->getTitle(), u""_s);
    QVERIFY(!QFile::exists(m_app->bundleFile(u"contacts.xml"_s))); // nothing saved here
}

void tst_ContactManager::companyContactEditorChoosesItsCompany()
{
    auto first = add(u"Twin"_s, u"Company"_s, u"Customer"_s);
    first->setPhone(u"111"_s);
    add(u"Twin"_s, u"Company"_s, u"Customer"_s)->setPhone(u"222"_s);
    add(u"Solo"_s, u"Company"_s, u"Customer"_s);
    auto jo = add(u"Jo"_s, u"Company Contact"_s, u"Customer"_s, 3);
    CompanyContactEditor *editor = m_app->ledgerwick->getCompanyContactEditor();
    editor->editRecord(jo.get());
    ContactEditorState &s = editor->editorState();
    QCOMPARE(s.company.entries, (QStringList{u"Twin"_s, u"Twin"_s, u"Solo"_s}));
    QCOMPARE(s.company.selectedTitle(), u"Solo"_s);
    s.company.index = 1; // the second "Twin": the first of that name wins
    editor->populateCompanyFields();
    QCOMPARE(s.phone, u"111"_s);
    s.extension = u"42"_s;
    s.website = u"jo.example"_s;
    editor->finish(nullptr);
    QCOMPARE(jo->getCompany(), first->getID());
    QCOMPARE(jo->getPhone(), u"111"_s);
    QCOMPARE(jo->getExtension(), u""_s); // shown, not stored
    QCOMPARE(jo->getWebsite(), u""_s);

    // A company renamed meanwhile unlinks the person at the next commit.
    editor->editRecord(jo.get());
    s.company.index = 2;
    m_contacts->getContactbyName(u"Solo"_s)->setName(u"Renamed"_s);
    editor->finish(nullptr);
    QCOMPARE(jo->getCompany(), 0);
}

void tst_ContactManager::writeByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("changed"); // in read order

    QTest::addRow("jobTitle") << u"jobTitle"_s << u"Zed Q"_s << QStringList{u"jobTitle"_s};
    QTest::addRow("add1") << u"add1"_s << u"Zed Q"_s << QStringList{u"add1"_s, u"address"_s};
    QTest::addRow("postcode") << u"postcode"_s << u"Zed Q"_s << QStringList{u"address"_s, u"postcode"_s};
    QTest::addRow("name") << u"name"_s << u"Zed Q"_s << QStringList{u"name"_s, u"surname"_s};
    QTest::addRow("company takes the integer") << u"company"_s << u"42x"_s << QStringList{u"company"_s};
    QTest::addRow("company non-numeric is 0") << u"company"_s << u"acme"_s << QStringList{};
    QTest::addRow("companyname is read-only") << u"companyname"_s << u"Acme"_s << QStringList{};
    QTest::addRow("address is read-only") << u"address"_s << u"1 Road"_s << QStringList{};
    QTest::addRow("surname is read-only") << u"surname"_s << u"Smith"_s << QStringList{};
    QTest::addRow("jobtitle lower case is unknown") << u"jobtitle"_s << u"Boss"_s << QStringList{};
    QTest::addRow("a null value is ignored") << u"kind"_s << QString() << QStringList{};
}

void tst_ContactManager::writeByName()
{
    QFETCH(QString, name);
    QFETCH(QString, value);

    Contact contact;
    QTEST(namesChangedByWriting(contact, kReadNames, name, value), "changed");

    QVERIFY(contact.setFieldByName(u"id"_s, u"17"_s));
    QCOMPARE(contact.getID(), 17);
    QCOMPARE(contact.getFieldByName(u"id"_s), u""_s); // written by name, never read
}

void tst_ContactManager::surname_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("surname");

    QTest::addRow("last of three words") << u"Individual"_s << u"Anna Maria Smith"_s << u"Smith"_s;
    QTest::addRow("single word") << u"Individual"_s << u"Stoglo"_s << u"Stoglo"_s;
    QTest::addRow("company keeps its whole name") << u"Company"_s << u"Acme Tools Ltd"_s << u"Acme Tools Ltd"_s;
    QTest::addRow("company contact is a person") << u"Company Contact"_s << u"Jo Bloggs"_s << u"Bloggs"_s;
    QTest::addRow("trailing blank leaves nothing") << u"Individual"_s << u"Jo "_s << u""_s;
}

void tst_ContactManager::surname()
{
    QFETCH(QString, kind);
    QFETCH(QString, name);

    Contact contact;
    contact.setKind(kind);
    contact.setName(name);
    QTEST(contact.getFieldByName(u"surname"_s), "surname");

    contact.makeCompany();
    QCOMPARE(contact.getKind(), u"Company"_s);
    QCOMPARE(contact.getSurname(), name);
}

void tst_ContactManager::addresses_data()
{
    QTest::addColumn<QStringList>("lines"); // add1, add2, add3, postcode
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("shortAddress");

    QTest::addRow("all lines") << QStringList{u"1 High St"_s, u"Upton"_s, u"Bath"_s, u"AB1 2CD"_s}
                               << u"1 High St Upton Bath AB1 2CD"_s << u"1 High St ... AB1 2CD"_s;
    QTest::addRow("no first line") << QStringList{u""_s, u"Upton"_s, u""_s, u"AB1 2CD"_s} << u" Upton  AB1 2CD"_s
                                   << u"AB1 2CD"_s;
    QTest::addRow("first line only") << QStringList{u"1 High St"_s, u""_s, u""_s, u""_s} << u"1 High St   "_s
                                     << u"1 High St ... "_s;
}

void tst_ContactManager::addresses()
{
    QFETCH(QStringList, lines);

    Contact contact;
    contact.setAdd1(lines.at(0));
    contact.setAdd2(lines.at(1));
    contact.setAdd3(lines.at(2));
    contact.setPostcode(lines.at(3));
    QTEST(contact.getFieldByName(u"address"_s), "address");
    QTEST(contact.getShortAddress(), "shortAddress");
}

void tst_ContactManager::contains_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<bool>("found");

    for (const char *name : {"add1", "add2", "add3", "postcode", "comments", "email", "extension", "fax", "jobTitle",
                             "kind", "mobile", "name", "phone", "title", "type", "website"})
        QTest::addRow("%s", name) << QString::fromLatin1(name) << true;
    QTest::addRow("not the company name") << u"companyname"_s << false;
}

void tst_ContactManager::contains()
{
    QFETCH(QString, field);

    Contact contact;
    contact.setType(u"-"_s); // "Customer" would match the search below
    if (field == u"companyname"_s)
        contact.setCompanyName(u"xCustomx"_s);
    else
        QVERIFY(contact.setFieldByName(field, u"xCustomx"_s));
    QTEST(contact.contains(u"CUSTOM"_s), "found");
    QVERIFY(!contact.contains(u""_s));
}

QTEST_GUILESS_MAIN(tst_ContactManager)
#include "tst_contactmanager.moc"
