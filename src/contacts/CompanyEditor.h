#pragma once

#include "contacts/Contact.h"
#include "contacts/ContactEditorState.h"
#include "core/lwEditorManager.h"

class ContactManager;

// The editor of a "Company" record, whose records are the contact manager's.
// As a model it is the company's people list. Deliberately: a new company is
// added at once (an empty one stays if the edit is cancelled), the title and
// mobile are shown but not stored, and a commit saves nothing: the next save
// of the contacts writes it.
class CompanyEditor : public lwEditorManager<Contact, ContactEditorState>
{
    Q_OBJECT
public:
    explicit CompanyEditor(ContactManager *contacts, QObject *parent = nullptr);

    ContactManager *contactManager() const { return m_contacts; }
    lwDataSource *recordList() override;
    QStringList typeEntries() const;

    // A new company, added to the contacts at once, without the read-only check.
    void create(QObject *sender) override;
    // Refused while read-only.
    void editRecord(dataObject *record) override;
    void finish(QObject *sender) override;
    void copyContact(QObject *sender);
    void sendEmail(QObject *sender);

    // The people list: the company contacts of the company in the editor.
    int numberOfRowsInTableView() const override;
    QString objectValueForTableColumn(const QString &identifier, int row) const override;

protected:
    bool rowsAreVisibleRecords() const override { return false; }
    std::shared_ptr<dataObject> makeNewRecord() override;
    void fillState(const Contact &company) override;
    void copyState(Contact &company) override;

private:
    ContactManager *m_contacts;
};
