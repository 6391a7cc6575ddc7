#pragma once

#include "contacts/Contact.h"
#include "contacts/ContactEditorState.h"
#include "core/lwEditorManager.h"

class ContactManager;

// The editor of a "Company Contact": a person at a company, whose address and
// telephone are copied from the company chosen in the pop-up. It never adds
// records (people become company contacts through the contact manager), and a
// commit saves nothing. The extension, website and type are shown but
// deliberately not stored.
class CompanyContactEditor : public lwEditorManager<Contact, ContactEditorState>
{
    Q_OBJECT
public:
    explicit CompanyContactEditor(ContactManager *contacts, QObject *parent = nullptr);

    ContactManager *contactManager() const { return m_contacts; }
    lwDataSource *recordList() override;

    // Only the read-only check: new company contacts come from the contact manager.
    void create(QObject *sender) override;
    void finish(QObject *sender) override;
    // The names of the companies in collection order, the current contact's selected.
    void populateCompanyMenu();
    void populateCompanyMenu(const Contact *person);
    // The address lines, post code and phone of the company chosen in the pop-up.
    void populateCompanyFields();
    // The first "Company" of that exact name, from the start of the collection.
    Contact *getCompanyByName(const QString &name) const;
    // The company chosen in the pop-up, in the company editor.
    void editCompanyButton(QObject *sender);
    void copyContact(QObject *sender);
    void sendEmail(QObject *sender);

protected:
    void fillState(const Contact &person) override;
    void copyState(Contact &person) override;

private:
    ContactManager *m_contacts;
};
