#pragma once

#include "contacts/Contact.h"
#include "contacts/ContactEditorState.h"
#include "core/lwEditorManager.h"

#include <QSet>

#include <unordered_map>
#include <vector>

class CompanyContactEditor;
class Platform;
class CompanyEditor;

// The contacts: a two-level outline (every contact that is not a "Company
// Contact" at the top, the people of each "Company" under it), the main
// editor for individuals, the hand-over of companies and company contacts to
// their own editors, copying and pasting addresses, and e-mail.
//
// As a model it is the outline: the columns "1" (name), "2" (first address
// line) and "3" (type); only companies have children.
class ContactManager : public lwEditorManager<Contact, ContactEditorState>
{
    Q_OBJECT
public:
    explicit ContactManager(QObject *parent = nullptr);
    ~ContactManager() override;

    // The two other editors, which the manager opens and passes its
    // disconnection on to.
    void setEditors(CompanyEditor *companyEditor, CompanyContactEditor *companyContactEditor);
    CompanyEditor *companyEditor() const { return m_companyEditor; }
    CompanyContactEditor *companyContactEditor() const { return m_companyContactEditor; }

    // --- queries (each constant time once the outline's index is current) ---------
    // Every contact that is not a "Company Contact": the top-level entries.
    int countCompanies() const;
    int countVisibleCompanies() const;
    // Contacts whose type is "Supplier".
    int countSuppliers() const;
    // The "Company Contact"s whose company is that id.
    int countContactsforThisCompany(int companyId) const;
    // The n-th (from 0) of each; none past the last.
    Contact *getnthCompany(int n) const;
    Contact *getnthVisibleCompany(int n) const;
    Contact *getnthSupplier(int n) const;
    Contact *getnthContact(int n, int companyId) const;
    // The contact whose id is the integer read from the text; none when unknown.
    Contact *getContactbyId(const QString &id) const;
    // The first contact whose name is exactly the text; none when there is none.
    Contact *getContactbyName(const QString &name) const;
    // The contact being edited; none before the first edit.
    Contact *getCurrentItem() const { return currentItem(); }

    static bool isCompany(const Contact &contact);
    static bool isSupplier(const Contact &contact);

    // The entries of the pop-ups: the built-in ones, then the preferences' own
    // contact types as they have been added.
    QStringList titleEntries() const;
    QStringList typeEntries() const;
    QStringList filterEntries() const;
    // Refills the type and filter pop-ups after the preferences' lists change.
    void populateLists();

    // --- actions --------------------------------------------------------------------
    // As create, without the read-only check, for the order on screen: the
    // commit links the new contact to it.
    void createForCurrentOrder(QObject *sender);
    // Drops the edit; a new contact for an order links to nothing.
    void cancel(QObject *sender) override;
    // The selected outline row's contact, to its editor.
    void edit(QObject *sender) override;
    // Companies to the company editor, company contacts to theirs, anyone
    // else to the main editor.
    void editThisContact(Contact *contact);
    // The people list of the open company: the person at the row, in the
    // company contact editor.
    void companyContactDoubleClick(int row);
    // The company of the current contact, in the company editor.
    void editCompanyForCurrentItem(QObject *sender);
    // An open company contact editor shows the company's address anew.
    void companyHasChanged();
    // The current contact becomes a company or a company contact: committed,
    // then opened in the other editor.
    void makeCompany(QObject *sender);
    void linkToCompany(QObject *sender);
    // The current contact's title, name and address on the pasteboard.
    void copyContact(QObject *sender);
    // Name and address lines from the pasteboard into the editor; false, with
    // the fields set so far kept, when the text has fewer than three lines.
    bool pasteContact(QObject *sender);
    // Name and address lines capitalised word by word; the post code upper case.
    void capitalise(QObject *sender);
    // Opens a "mailto:" link with the e-mail field's text.
    void sendEmail(QObject *sender);
    void disconnectWindow(QObject *sender);
    // Shows the contacts holding the search text whose type passes the filter.
    void filter(QObject *sender) override;

    // The title, name and address lines, each followed by a carriage return.
    static QString grabContactFields(const ContactEditorState &state);
    static QString capitalised(const QString &text);
    // What copy and mail do in each of the three editors.
    static void copyToPasteboard(Platform *platform, const ContactEditorState &state);
    static void mailTo(Platform *platform, const QString &address);

    // --- the outline ---------------------------------------------------------------
    // The outline shows the people of expanded companies; its own export
    // follows what is shown.
    void setExpanded(const Contact *company, bool expanded);
    bool isExpanded(const Contact *company) const { return m_expanded.contains(company->getID()); }
    // The outline's cell for a column identifier.
    QString outlineValue(const Contact &contact, const QString &identifier) const;
    // The outline's rows as shown, from the top (the people of expanded companies included).
    const std::vector<const Contact *> &displayedRows() const;
    // The export's rows: those shown, then empty rows up to the number of
    // contacts in the collection.
    int numberOfRowsInTableView() const override;
    QString objectValueForTableColumn(const QString &identifier, int row) const override;
    dataObject *getSelectedItem() const override;
    Contact *contactAt(const QModelIndex &index) const;
    QModelIndex indexOf(const Contact *contact, int column = 0) const;

    // QAbstractItemModel: a two-level outline.
    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    QModelIndex sibling(int row, int column, const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    Contact *createAndAddDataObject() override;

Q_SIGNALS:
    // makeCompany or linkToCompany is about to open the contact in that editor.
    void handedOver(lwEditorManagerBase *editor);

protected:
    bool rowsAreVisibleRecords() const override { return false; }
    void fillState(const Contact &contact) override;
    void copyState(Contact &contact) override;
    void committed(dataObject &contact) override;

private:
    struct Outline
    {
        std::vector<Contact *> companies, visibleCompanies, suppliers;
        std::unordered_map<int, std::vector<Contact *>> people; // by company id
        std::unordered_map<const Contact *, int> visibleRow;     // of the top-level contacts
        std::unordered_map<const Contact *, int> personRow;      // under their company
        std::unordered_map<QString, Contact *> byName;           // the first of each name
    };
    const Outline &outline() const;
    void changeKind(const QString &kind);

    CompanyEditor *m_companyEditor = nullptr;
    CompanyContactEditor *m_companyContactEditor = nullptr;
    int m_creatingForOrder = 0;
    QSet<int> m_expanded;
    quint64 m_expansions = 0;
    mutable std::vector<const Contact *> m_displayed;
    mutable quint64 m_outlineBuilds = 0, m_displayedBuilds = ~quint64(0), m_displayedExpansions = 0;
    mutable Outline m_outline;
    mutable quint64 m_outlineChanges = ~quint64(0), m_outlineVisibility = 0, m_outlineLinks = 0, m_outlineIds = 0;
};
