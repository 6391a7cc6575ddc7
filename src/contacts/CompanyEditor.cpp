#include "contacts/CompanyEditor.h"

#include "contacts/ContactManager.h"
#include "core/Platform.h"

CompanyEditor::CompanyEditor(ContactManager *contacts, QObject *parent)
    : lwEditorManager({lwTr("Delete contact"), lwTr("Do you want to delete the selected item from the database?"),
                       QStringLiteral("companyeditor windowWillClose:"), CancelRule::DropNew, true},
                      {}, parent),
      m_contacts(contacts)
{
    setObjectName(QStringLiteral("companyPeople"));
    setColumns({{QStringLiteral("name"), lwTr("Name"), 180},
                {QStringLiteral("jobTitle"), lwTr("Job Title"), 140},
                {QStringLiteral("phone"), lwTr("Phone"), 110},
                {QStringLiteral("email"), lwTr("Email"), 180}});
    m_state.title = PopUp::withEntries(contacts->titleEntries());
    m_state.title.index = -1;
    m_state.type = PopUp::withEntries(typeEntries());
    // A new company's people list follows the contacts it is made of.
    connect(contacts, &QAbstractItemModel::modelReset, this, &lwDataSource::reloadData);
}

lwDataSource *CompanyEditor::recordList()
{
    return m_contacts;
}

QStringList CompanyEditor::typeEntries() const
{
    return m_contacts->typeEntries();
}

std::shared_ptr<dataObject> CompanyEditor::makeNewRecord()
{
    auto company = std::make_shared<Contact>();
    company->makeCompany();
    return company;
}

void CompanyEditor::create(QObject *)
{
    beginCreating(makeNewRecord());
    setItem(currentItem());
    reloadData();
    showEditor();
}

void CompanyEditor::editRecord(dataObject *record)
{
    if (!readOnlyCheck())
        return;
    lwEditorManager::editRecord(record);
    reloadData();
}

void CompanyEditor::finish(QObject *)
{
    Contact *company = currentItem();
    if (!readOnlyCheck() || !company) {
        hideEditor();
        return;
    }
    copyState(*company);
    setCreating(false);
    hideEditor();
    m_contacts->companyHasChanged();
    m_contacts->reloadData();
}

void CompanyEditor::fillState(const Contact &company)
{
    m_state.type.entries = typeEntries();
    m_state.showContact(company);
    m_state.website = company.getWebsite();
}

void CompanyEditor::copyState(Contact &company)
{
    // The title and mobile are shown but deliberately not stored.
    const ContactEditorState &s = m_state;
    company.setComments(lwNonNull(s.comments));
    company.setName(lwNonNull(s.name));
    company.setAdd1(lwNonNull(s.add1));
    company.setAdd2(lwNonNull(s.add2));
    company.setAdd3(lwNonNull(s.add3));
    company.setPostcode(lwNonNull(s.postcode));
    company.setEmail(lwNonNull(s.email));
    company.setFax(lwNonNull(s.fax));
    company.setPhone(lwNonNull(s.phone));
    company.setWebsite(lwNonNull(s.website));
    if (const QString type = s.type.selectedTitle(); !type.isEmpty())
        company.setType(type);
}

void CompanyEditor::copyContact(QObject *)
{
    ContactManager::copyToPasteboard(platform(), m_state);
}

void CompanyEditor::sendEmail(QObject *)
{
    ContactManager::mailTo(platform(), m_state.email);
}

int CompanyEditor::numberOfRowsInTableView() const
{
    const Contact *company = currentItem();
    return company ? m_contacts->countContactsforThisCompany(company->getID()) : 0;
}

QString CompanyEditor::objectValueForTableColumn(const QString &identifier, int row) const
{
    const Contact *company = currentItem();
    const Contact *person = company ? m_contacts->getnthContact(row, company->getID()) : nullptr;
    return person ? person->getFieldByName(identifier) : lwEmpty();
}
