// The contact windows' wiring: the outline in the main window, the three
// editors' controls and buttons. The rules are tested on the managers.
#include "contacts/CompanyContactEditor.h"
#include "contacts/CompanyEditor.h"
#include "contacts/ContactManager.h"
#include "orders/Material.h"
#include "orders/Order.h"
#include "support/AppFixture.h"
#include "support/Widgets.h"
#include "ui/CompanyContactEditorWindow.h"
#include "ui/CompanyEditorWindow.h"
#include "ui/ContactEditor.h"
#include "ui/MainWindow.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTableView>
#include <QTest>
#include <QTreeView>

using namespace Qt::Literals::StringLiterals;

class tst_ContactWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Q_INIT_RESOURCE(icons); }
    void init();
    void cleanup();
    void theOutlineOpensEachKindInItsEditor();
    void contactEditorButtons();
    void companyWindows();
    void editorsRunTheOpenContactsReports();

private:
    std::unique_ptr<AppFixture> m_app;
    ContactManager *m_contacts = nullptr;
    std::unique_ptr<MainWindow> m_window;
    ContactEditor *m_editor = nullptr;
    CompanyEditorWindow *m_company = nullptr;
    CompanyContactEditorWindow *m_person = nullptr;
    std::shared_ptr<Contact> m_acme, m_ann;
};

void tst_ContactWindows::init()
{
    m_app = std::make_unique<AppFixture>();
    Ledgerwick &l = *m_app->ledgerwick;
    m_contacts = l.getContactManager();
    m_window = std::make_unique<MainWindow>(&l);
    m_editor = new ContactEditor(m_contacts, m_window.get());
    m_company = new CompanyEditorWindow(l.getCompanyEditor(), m_contacts, m_window.get());
    m_person = new CompanyContactEditorWindow(l.getCompanyContactEditor(), m_window.get());
    m_editor->setReports(l.makeReportManager(m_editor), l.makeReportManager(m_editor));
    m_person->setReports(l.makeReportManager(m_person), l.makeReportManager(m_person));
    m_acme = m_app->addContact(u"Acme"_s);
    m_acme->makeCompany();
    m_acme->setAdd1(u"1 Forge Lane"_s);
    m_ann = m_app->addContact(u"Ann"_s);
    m_ann->setKind(u"Company Contact"_s);
    m_ann->setCompany(m_acme->getID());
    m_app->addContact(u"Bea"_s);
    m_contacts->filter(nullptr);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void tst_ContactWindows::cleanup()
{
    m_window.reset();
    m_app.reset();
}

void tst_ContactWindows::theOutlineOpensEachKindInItsEditor()
{
    auto *outline = qobject_cast<QTreeView *>(m_window->viewFor(m_contacts));
    QVERIFY(outline);
    const QModelIndex acme = m_contacts->indexOf(m_acme.get());
    QVERIFY(m_contacts->hasChildren(acme));
    QVERIFY(!m_contacts->hasChildren(m_contacts->index(1, 0)));
    outline->expand(acme);
    QVERIFY(m_contacts->isExpanded(m_acme.get()));
    clickRow(outline, m_contacts->indexOf(m_ann.get()));
    QTRY_VERIFY(m_person->isVisible());
    QCOMPARE(control<QComboBox>(m_person, u"companyCombo"_s)->currentText(), u"Acme"_s);
    clickButton(m_person, u"cancelButton"_s);
    clickRow(outline, acme);
    QTRY_VERIFY(m_company->isVisible());
    QVERIFY(outline->isExpanded(acme)); // a double-click edits, it does not fold
    clickRow(outline, m_contacts->index(1, 0));
    QTRY_VERIFY(m_editor->isVisible());
    QCOMPARE(control<QLineEdit>(m_editor, u"nameEdit"_s)->text(), u"Bea"_s);
}

void tst_ContactWindows::contactEditorButtons()
{
    m_contacts->create(nullptr);
    QTRY_VERIFY(m_editor->isVisible());
    m_app->platform.pasteboard = u"jo bloggs\n1 high st\nleeds\nls1 1aa"_s;
    clickButton(m_editor, u"pasteButton"_s);
    clickButton(m_editor, u"capitaliseButton"_s);
    QCOMPARE(control<QLineEdit>(m_editor, u"nameEdit"_s)->text(), u"Jo Bloggs"_s); // pasted, then capitalised
    control<QLineEdit>(m_editor, u"emailEdit"_s)->setText(u"jo@example.org"_s);
    clickButton(m_editor, u"emailButton"_s);
    QCOMPARE(m_app->platform.openedUrls.value(0), QUrl(u"mailto:jo@example.org"_s));
    clickButton(m_editor, u"copyButton"_s);
    QVERIFY(m_app->platform.pasteboard.startsWith(u"Jo Bloggs\r1 High St\r"_s));
    clickButton(m_editor, u"makeCompanyButton"_s);
    QVERIFY(!m_editor->isVisible());
    QTRY_VERIFY(m_company->isVisible());
    QCOMPARE(control<QLineEdit>(m_company, u"nameEdit"_s)->text(), u"Jo Bloggs"_s);
}

void tst_ContactWindows::companyWindows()
{
    m_app->select(m_contacts, 0);
    m_contacts->edit(nullptr);
    QTRY_VERIFY(m_company->isVisible());
    QTableView *people = m_company->peopleTable();
    QCOMPARE(people->model()->rowCount(), 1);
    clickRow(people, people->model()->index(0, 0));
    QTRY_VERIFY(m_person->isVisible());
    auto *company = control<QComboBox>(m_person, u"companyCombo"_s);
    auto *add1 = control<QLineEdit>(m_person, u"add1Edit"_s);
    QCOMPARE(add1->text(), u"1 Forge Lane"_s);
    add1->clear();
    company->activated(company->currentIndex()); // choosing the company brings its address
    QCOMPARE(add1->text(), u"1 Forge Lane"_s);
    control<QLineEdit>(m_person, u"jobTitleEdit"_s)->setText(u"Buyer"_s);
    clickButton(m_person, u"okButton"_s);
    QCOMPARE(m_ann->getJobTitle(), u"Buyer"_s);
}

void tst_ContactWindows::editorsRunTheOpenContactsReports()
{
    Ledgerwick &l = *m_app->ledgerwick;
    l.getReportManager()->populateFilter();
    for (const auto &contact : {m_ann, m_ann, m_acme}) {
        auto order = std::make_shared<Order>();
        order->setValue(u"10.00"_s);
        order->setContact(contact);
        l.getOrderManager()->add(order);
        auto line = std::make_shared<Material>(order->getID());
        line->setContact(contact->getID());
        l.getBOMManager()->add(line);
    }
    // Each window shows the orders and lines of the contact it has open,
    // with the totals rows below.
    m_contacts->editThisContact(m_ann.get());
    QTRY_VERIFY(m_person->isVisible());
    QCOMPARE(m_person->orderTable()->model()->rowCount(), 2 + 2);
    QCOMPARE(m_person->itemTable()->model()->rowCount(), 2 + 2);
    QCOMPARE(m_person->orderTable()->model()->index(3, 3).data().toString(), u"20.00"_s);
    m_app->select(m_contacts, 1);
    m_contacts->edit(nullptr);
    QTRY_VERIFY(m_editor->isVisible());
    QCOMPARE(m_editor->orderTable()->model()->rowCount(), 0 + 2); // Bea has none
}

QTEST_MAIN(tst_ContactWindows)
#include "tst_contactwindows.moc"
