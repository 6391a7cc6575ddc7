#include "contacts/CompanyContactEditor.h"

#include "contacts/ContactManager.h"
#include "core/Platform.h"

namespace {
const QLatin1String kCompany("Company");
}

CompanyContactEditor::CompanyContactEditor(ContactManager *contacts, QObject *parent)
    : lwEditorManager({lwTr("Delete contact"), lwTr("Do you want to delete the selected item from the database?"),
                       QStringLiteral("companycontacteditor windowWillClose:"), CancelRule::DropNew},
                      {}, parent),
      m_contacts(contacts)
{
    setObjectName(QStringLiteral("companyContactEditor"));
    m_state.title = PopUp::withEntries(contacts->titleEntries());
    m_state.title.index = -1;
    m_state.type = PopUp::withEntries(contacts->typeEntries());
}

lwDataSource *CompanyContactEditor::recordList()
{
    return m_contacts;
}

void CompanyContactEditor::create(QObject *)
{
    readOnlyCheck();
}

void CompanyContactEditor::populateCompanyMenu()
{
    populateCompanyMenu(currentItem());
}

void CompanyContactEditor::populateCompanyMenu(const Contact *person)
{
    PopUp &menu = m_state.company;
    menu.entries.clear();
    menu.index = -1;
    for (const auto &record : m_contacts->records()) {
        const auto *contact = static_cast<const Contact *>(record.get());
        if (contact->getKind() != kCompany)
            continue;
        if (person && menu.index < 0 && contact->getID() == person->getCompany())
            menu.index = int(menu.entries.size());
        menu.entries << contact->getName();
    }
}

Contact *CompanyContactEditor::getCompanyByName(const QString &name) const
{
    for (const auto &record : m_contacts->records()) {
        auto *contact = static_cast<Contact *>(record.get());
        if (contact->getKind() == kCompany && contact->getName() == name)
            return contact;
    }
    return nullptr;
}

void CompanyContactEditor::populateCompanyFields()
{
    const Contact *company = getCompanyByName(m_state.company.selectedTitle());
    if (!company)
        return;
    m_state.add1 = company->getAdd1();
    m_state.add2 = company->getAdd2();
    m_state.add3 = company->getAdd3();
    m_state.postcode = company->getPostcode();
    m_state.phone = company->getPhone();
    Q_EMIT editorStateChanged();
}

void CompanyContactEditor::editCompanyButton(QObject *)
{
    m_contacts->editThisContact(getCompanyByName(m_state.company.selectedTitle()));
}

void CompanyContactEditor::fillState(const Contact &person)
{
    ContactEditorState &s = m_state;
    populateCompanyMenu(&person);
    // The company's address and phone when the pop-up finds the company;
    // else the person's own, rather than what the last edit left in the fields.
    const Contact *company = getCompanyByName(s.company.selectedTitle());
    s.add1 = company ? company->getAdd1() : person.getAdd1();
    s.add2 = company ? company->getAdd2() : person.getAdd2();
    s.add3 = company ? company->getAdd3() : person.getAdd3();
    s.postcode = company ? company->getPostcode() : person.getPostcode();
    s.phone = company ? company->getPhone() : person.getPhone();
    s.title.selectTitle(person.getTitle());
    s.jobTitle = person.getJobTitle();
    s.comments = person.getComments();
    s.name = person.getName();
    s.email = person.getEmail();
    s.extension = person.getExtension();
    s.fax = person.getFax();
    s.mobile = person.getMobile();
    s.website = person.getWebsite();
    s.type.entries = m_contacts->typeEntries();
    s.type.selectTitle(person.getType());
}

void CompanyContactEditor::finish(QObject *)
{
    Contact *person = currentItem();
    if (!readOnlyCheck() || !person) {
        hideEditor();
        return;
    }
    copyState(*person);
    hideEditor();
    m_contacts->reloadData();
}

void CompanyContactEditor::copyState(Contact &person)
{
    // The extension, website and type are shown but deliberately not stored.
    const ContactEditorState &s = m_state;
    if (s.company.index >= 0) {
        // A name that matches no company any more unlinks the person.
        const Contact *company = getCompanyByName(s.company.selectedTitle());
        person.setCompany(company ? company->getID() : 0);
    }
    person.setTitle(lwNonNull(s.title.selectedTitle()));
    person.setJobTitle(lwNonNull(s.jobTitle));
    person.setComments(lwNonNull(s.comments));
    person.setName(lwNonNull(s.name));
    person.setAdd1(lwNonNull(s.add1));
    person.setAdd2(lwNonNull(s.add2));
    person.setAdd3(lwNonNull(s.add3));
    person.setPostcode(lwNonNull(s.postcode));
    person.setEmail(lwNonNull(s.email));
    person.setFax(lwNonNull(s.fax));
    person.setMobile(lwNonNull(s.mobile));
    person.setPhone(lwNonNull(s.phone));
}

void CompanyContactEditor::copyContact(QObject *)
{
    ContactManager::copyToPasteboard(platform(), m_state);
}

void CompanyContactEditor::sendEmail(QObject *)
{
    ContactManager::mailTo(platform(), m_state.email);
}
