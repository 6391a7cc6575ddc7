#include "contacts/ContactManager.h"

#include "contacts/CompanyContactEditor.h"
#include "contacts/CompanyEditor.h"
#include "core/Log.h"
#include "core/NumberText.h"
#include "core/Platform.h"
#include "core/lwController.h"
#include "prefs/PrefsController.h"

#include <QUrl>

namespace {

const QLatin1String kCompany("Company");
const QLatin1String kCompanyContact("Company Contact");

} // namespace

ContactManager::ContactManager(QObject *parent)
    : lwEditorManager({lwTr("Delete contact"), lwTr("Do you want to delete the selected item from the database?"),
                       QStringLiteral("contactmanager windowWillClose:"), CancelRule::DropNew},
                      {}, parent)
{
    setObjectName(QStringLiteral("contacts"));
    m_state.title = PopUp::withEntries(titleEntries());
    m_state.title.index = -1;
    m_state.type = PopUp::withEntries(typeEntries());
    m_state.filter = PopUp::withEntries(filterEntries());
    m_state.searchText = lwEmpty();
}

ContactManager::~ContactManager() = default;

void ContactManager::setEditors(CompanyEditor *companyEditor, CompanyContactEditor *companyContactEditor)
{
    m_companyEditor = companyEditor;
    m_companyContactEditor = companyContactEditor;
}

// --- the pop-ups -------------------------------------------------------------------

QStringList ContactManager::titleEntries() const
{
    return {lwEmpty(), lwTr("Mr"), lwTr("Mrs"), lwTr("Ms"), lwTr("Miss"), lwTr("Dr"), lwTr("Prof")};
}

QStringList ContactManager::typeEntries() const
{
    QStringList entries{QStringLiteral("Customer"), QStringLiteral("Supplier"), QStringLiteral("Other")};
    if (const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr)
        entries += prefs->contactTypeItems();
    return entries;
}

QStringList ContactManager::filterEntries() const
{
    QStringList entries{QStringLiteral("All"), QStringLiteral("Customer"), QStringLiteral("Supplier")};
    if (const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr)
        entries += prefs->contactFilterItems();
    return entries;
}

void ContactManager::populateLists()
{
    const QString type = m_state.type.selectedTitle();
    m_state.type.entries = typeEntries();
    m_state.type.selectTitle(type);
    const QString filterTitle = m_state.filter.selectedTitle();
    m_state.filter.entries = filterEntries();
    m_state.filter.selectTitle(filterTitle.isNull() ? QStringLiteral("All") : filterTitle);
    Q_EMIT editorStateChanged();
}

// --- queries -------------------------------------------------------------------------

bool ContactManager::isCompany(const Contact &contact)
{
    return contact.getKind() != kCompanyContact;
}

bool ContactManager::isSupplier(const Contact &contact)
{
    return contact.getType() == QLatin1String("Supplier");
}

const ContactManager::Outline &ContactManager::outline() const
{
    // Rebuilt only when the collection, a visibility, an id, or a contact's
    // name, kind, type or company has changed since: every cell of the
    // outline then costs constant time.
    if (m_outlineChanges == collectionChanges() && m_outlineVisibility == dataObject::visibilityGeneration() &&
        m_outlineLinks == Contact::linkGeneration() && m_outlineIds == dataObject::idGeneration())
        return m_outline;
    Outline o;
    for (const auto &record : records()) {
        auto *contact = static_cast<Contact *>(record.get());
        if (isCompany(*contact)) {
            o.companies.push_back(contact);
            if (contact->getVisible()) {
                o.visibleRow.emplace(contact, int(o.visibleCompanies.size()));
                o.visibleCompanies.push_back(contact);
            }
        } else {
            std::vector<Contact *> &people = o.people[contact->getCompany()];
            o.personRow.emplace(contact, int(people.size()));
            people.push_back(contact);
        }
        if (isSupplier(*contact))
            o.suppliers.push_back(contact);
        o.byName.try_emplace(contact->getName(), contact);
    }
    m_outline = std::move(o);
    ++m_outlineBuilds;
    m_outlineChanges = collectionChanges();
    m_outlineVisibility = dataObject::visibilityGeneration();
    m_outlineLinks = Contact::linkGeneration();
    m_outlineIds = dataObject::idGeneration();
    return m_outline;
}

namespace {
template<typename T> T *nth(const std::vector<T *> &list, int n)
{
    return n >= 0 && size_t(n) < list.size() ? list[size_t(n)] : nullptr;
}
} // namespace

int ContactManager::countCompanies() const
{
    return int(outline().companies.size());
}

int ContactManager::countVisibleCompanies() const
{
    return int(outline().visibleCompanies.size());
}

int ContactManager::countSuppliers() const
{
    return int(outline().suppliers.size());
}

int ContactManager::countContactsforThisCompany(int companyId) const
{
    const auto &people = outline().people;
    const auto it = people.find(companyId);
    return it == people.end() ? 0 : int(it->second.size());
}

Contact *ContactManager::getnthCompany(int n) const
{
    return nth(outline().companies, n);
}

Contact *ContactManager::getnthVisibleCompany(int n) const
{
    return nth(outline().visibleCompanies, n);
}

Contact *ContactManager::getnthSupplier(int n) const
{
    return nth(outline().suppliers, n);
}

Contact *ContactManager::getnthContact(int n, int companyId) const
{
    const auto &people = outline().people;
    const auto it = people.find(companyId);
    return it == people.end() ? nullptr : nth(it->second, n);
}

Contact *ContactManager::getContactbyId(const QString &id) const
{
    return static_cast<Contact *>(getItemById(NumberText::intValue(id)));
}

Contact *ContactManager::getContactbyName(const QString &name) const
{
    const auto &byName = outline().byName;
    const auto it = byName.find(name);
    return it == byName.end() ? nullptr : it->second;
}

// --- the editor cycle ---------------------------------------------------------------------

Contact *ContactManager::createAndAddDataObject()
{
    auto contact = std::make_shared<Contact>();
    add(contact);
    return contact.get();
}

void ContactEditorState::showContact(const Contact &contact)
{
    title.selectTitle(contact.getTitle());
    comments = contact.getComments();
    name = contact.getName();
    add1 = contact.getAdd1();
    add2 = contact.getAdd2();
    add3 = contact.getAdd3();
    postcode = contact.getPostcode();
    email = contact.getEmail();
    fax = contact.getFax();
    mobile = contact.getMobile();
    phone = contact.getPhone();
    type.selectTitle(contact.getType());
}

void ContactManager::fillState(const Contact &contact)
{
    // The website field is shown but deliberately neither filled nor stored here.
    m_state.showContact(contact);
}

void ContactManager::copyState(Contact &contact)
{
    const ContactEditorState &s = m_state;
    contact.setTitle(lwNonNull(s.title.selectedTitle()));
    contact.setComments(lwNonNull(s.comments));
    contact.setName(lwNonNull(s.name));
    contact.setAdd1(lwNonNull(s.add1));
    contact.setAdd2(lwNonNull(s.add2));
    contact.setAdd3(lwNonNull(s.add3));
    contact.setPostcode(lwNonNull(s.postcode));
    contact.setEmail(lwNonNull(s.email));
    contact.setFax(lwNonNull(s.fax));
    contact.setMobile(lwNonNull(s.mobile));
    contact.setPhone(lwNonNull(s.phone));
    if (const QString type = s.type.selectedTitle(); !type.isEmpty())
        contact.setType(type);
}

void ContactManager::committed(dataObject &contact)
{
    // A customer made for the order on screen is linked to it.
    if (m_creatingForOrder != 0 && ledgerwick())
        ledgerwick()->connectContact(std::static_pointer_cast<Contact>(sharedRecord(&contact)), m_creatingForOrder);
    m_creatingForOrder = 0;
}

void ContactManager::createForCurrentOrder(QObject *)
{
    m_creatingForOrder = ledgerwick() ? ledgerwick()->getCurrentOrder() : 0;
    beginCreating(makeNewRecord());
    setItem(currentItem());
    showEditor();
}

void ContactManager::cancel(QObject *sender)
{
    m_creatingForOrder = 0;
    lwEditorManager::cancel(sender);
}

void ContactManager::edit(QObject *)
{
    auto *contact = static_cast<Contact *>(getSelectedItem());
    if (!contact)
        return;
    // The contact becomes the current one whichever editor opens it.
    setCurrentRecord(sharedRecord(contact));
    editThisContact(contact);
}

void ContactManager::editThisContact(Contact *contact)
{
    if (!contact)
        return;
    if (contact->getKind() == kCompany && m_companyEditor)
        m_companyEditor->editRecord(contact);
    else if (contact->getKind() == kCompanyContact && m_companyContactEditor)
        m_companyContactEditor->editRecord(contact);
    else if (contact->getKind() != kCompany && contact->getKind() != kCompanyContact)
        editRecord(contact);
}

void ContactManager::companyContactDoubleClick(int row)
{
    const Contact *company = currentItem();
    if (!company || !m_companyContactEditor)
        return;
    if (Contact *person = getnthContact(row, company->getID()))
        m_companyContactEditor->editRecord(person);
}

void ContactManager::editCompanyForCurrentItem(QObject *)
{
    const Contact *contact = currentItem();
    Contact *company = contact ? static_cast<Contact *>(getItemById(contact->getCompany())) : nullptr;
    if (company && m_companyEditor)
        m_companyEditor->editRecord(company);
}

void ContactManager::companyHasChanged()
{
    if (m_companyContactEditor)
        m_companyContactEditor->populateCompanyFields();
}

void ContactManager::changeKind(const QString &kind)
{
    Contact *contact = currentItem();
    if (!contact)
        return;
    contact->setKind(kind);
    finish(this);
    lwEditorManagerBase *other = kind == kCompany ? static_cast<lwEditorManagerBase *>(m_companyEditor)
                                                  : static_cast<lwEditorManagerBase *>(m_companyContactEditor);
    if (!other)
        return;
    Q_EMIT handedOver(other);
    other->editRecord(contact);
    // Only when the commit was refused is the contact still new.
    if (isCreating())
        other->setCreating(true);
}

void ContactManager::makeCompany(QObject *)
{
    changeKind(kCompany);
}

void ContactManager::linkToCompany(QObject *)
{
    changeKind(kCompanyContact);
}

QString ContactManager::grabContactFields(const ContactEditorState &s)
{
    QString text;
    if (const QString title = s.title.selectedTitle(); !title.isEmpty())
        text += title + QLatin1Char(' ');
    for (const QString *field : {&s.name, &s.add1, &s.add2, &s.add3, &s.postcode})
        text += *field + QLatin1Char('\r');
    return text;
}

void ContactManager::copyToPasteboard(Platform *platform, const ContactEditorState &state)
{
    if (platform)
        platform->setPasteboardText(grabContactFields(state));
}

void ContactManager::mailTo(Platform *platform, const QString &address)
{
    if (platform)
        platform->openUrl(QUrl(QStringLiteral("mailto:") + address));
}

void ContactManager::copyContact(QObject *)
{
    copyToPasteboard(platform(), m_state);
}

bool ContactManager::pasteContact(QObject *)
{
    Platform *desktop = platform();
    if (!desktop)
        return false;
    const QString text = desktop->pasteboardText();
    QStringList parts = text.split(QLatin1Char('\n'));
    if (parts.size() < 2)
        parts = text.split(QLatin1Char('\r'));
    QString *const fields[] = {&m_state.name, &m_state.add1, &m_state.add2};
    for (qsizetype i = 0; i < 3; ++i) {
        if (i >= parts.size()) {
            // The fields set so far keep their new values.
            Q_EMIT editorStateChanged();
            desktop->alert({lwTr("Paste Contact"),
                            lwTr("The pasteboard holds fewer than three lines: a name and at least two address "
                                 "lines are needed."),
                            {lwTr("OK")},
                            Platform::AlertStyle::Warning});
            return false;
        }
        *fields[i] = parts.at(i);
    }
    if (parts.size() > 4) {
        m_state.add3 = parts.at(3);
        m_state.postcode = parts.at(4);
    } else {
        m_state.postcode = parts.last();
    }
    Q_EMIT editorStateChanged();
    return true;
}

QString ContactManager::capitalised(const QString &text)
{
    QString result = text.toLower();
    bool wordStart = true;
    for (QChar &c : result) {
        if (c.isLetterOrNumber()) {
            if (wordStart)
                c = c.toUpper();
            wordStart = false;
        } else {
            wordStart = true;
        }
    }
    return result;
}

void ContactManager::capitalise(QObject *)
{
    for (QString *field : {&m_state.name, &m_state.add1, &m_state.add2, &m_state.add3})
        *field = capitalised(*field);
    m_state.postcode = m_state.postcode.toUpper();
    Q_EMIT editorStateChanged();
}

void ContactManager::sendEmail(QObject *)
{
    mailTo(platform(), m_state.email);
}

void ContactManager::disconnectWindow(QObject *sender)
{
    lwEditorManagerBase::disconnectWindow(sender);
    if (m_companyEditor)
        m_companyEditor->disconnectWindow(sender);
    if (m_companyContactEditor)
        m_companyContactEditor->disconnectWindow(sender);
}

void ContactManager::filter(QObject *)
{
    const QString &search = m_state.searchText;
    const QString mode = m_state.filter.selectedTitle();
    const bool allTypes = mode.isEmpty() || mode == QLatin1String("All");
    for (const auto &record : records()) {
        const auto *contact = static_cast<const Contact *>(record.get());
        bool visible = search.isEmpty() || contact->contains(search);
        if (!allTypes && contact->getType() != mode)
            visible = false;
        record->setVisible(visible);
    }
    reloadData();
}

// --- the outline --------------------------------------------------------------------------

void ContactManager::setExpanded(const Contact *company, bool expanded)
{
    if (!company)
        return;
    if (expanded)
        m_expanded.insert(company->getID());
    else
        m_expanded.remove(company->getID());
    ++m_expansions;
}

QString ContactManager::outlineValue(const Contact &contact, const QString &identifier) const
{
    const bool topLevel = isCompany(contact);
    if (identifier == QLatin1String("1"))
        return contact.getName();
    if (identifier == QLatin1String("2")) {
        // The second line is given to the format too, but never shown.
        if (!topLevel)
            return lwEmpty();
        return contact.getAdd1().isEmpty() ? contact.getAdd1() : QLatin1Char(' ') + contact.getAdd1();
    }
    if (identifier == QLatin1String("3")) {
        if (!topLevel || contact.getType() == QLatin1String("Other"))
            return lwEmpty();
        return contact.getType();
    }
    return lwEmpty();
}

const std::vector<const Contact *> &ContactManager::displayedRows() const
{
    const Outline &o = outline();
    if (m_displayedBuilds == m_outlineBuilds && m_displayedExpansions == m_expansions)
        return m_displayed;
    std::vector<const Contact *> &rows = m_displayed;
    rows.clear();
    for (const Contact *company : o.visibleCompanies) {
        rows.push_back(company);
        if (company->getKind() != kCompany || !m_expanded.contains(company->getID()))
            continue;
        for (int i = 0, n = countContactsforThisCompany(company->getID()); i < n; ++i)
            rows.push_back(getnthContact(i, company->getID()));
    }
    m_displayedBuilds = m_outlineBuilds;
    m_displayedExpansions = m_expansions;
    return rows;
}

int ContactManager::numberOfRowsInTableView() const
{
    // The outline's own export runs over as many rows as there are contacts
    // in the whole collection: past the displayed ones they come out empty,
    // deliberately.
    return getCount();
}

QString ContactManager::objectValueForTableColumn(const QString &identifier, int row) const
{
    const std::vector<const Contact *> &rows = displayedRows();
    return row >= 0 && size_t(row) < rows.size() ? outlineValue(*rows[size_t(row)], identifier) : lwEmpty();
}

Contact *ContactManager::contactAt(const QModelIndex &index) const
{
    return index.isValid() && index.model() == this ? static_cast<Contact *>(index.internalPointer()) : nullptr;
}

QModelIndex ContactManager::indexOf(const Contact *contact, int column) const
{
    if (!contact)
        return {};
    const Outline &o = outline();
    if (isCompany(*contact)) {
        const auto it = o.visibleRow.find(contact);
        return it == o.visibleRow.end() ? QModelIndex()
                                        : createIndex(it->second, column, const_cast<Contact *>(contact));
    }
    const auto it = o.personRow.find(contact);
    return it == o.personRow.end() ? QModelIndex() : createIndex(it->second, column, const_cast<Contact *>(contact));
}

dataObject *ContactManager::getSelectedItem() const
{
    const QItemSelectionModel *selection = tableSelection();
    if (!selection || selection->model() != this)
        return nullptr;
    const QModelIndex current = selection->currentIndex();
    if (current.isValid() && selection->isSelected(current))
        return contactAt(current);
    const QModelIndexList rows = selection->selectedRows();
    return rows.isEmpty() ? nullptr : contactAt(rows.constLast());
}

QModelIndex ContactManager::index(int row, int column, const QModelIndex &parent) const
{
    if (column < 0 || column >= columnCount() || row < 0)
        return {};
    if (!parent.isValid()) {
        Contact *company = getnthVisibleCompany(row);
        return company ? createIndex(row, column, company) : QModelIndex();
    }
    const Contact *company = contactAt(parent);
    if (!company || company->getKind() != kCompany)
        return {};
    Contact *person = getnthContact(row, company->getID());
    return person ? createIndex(row, column, person) : QModelIndex();
}

QModelIndex ContactManager::parent(const QModelIndex &child) const
{
    const Contact *contact = contactAt(child);
    if (!contact || isCompany(*contact))
        return {};
    // A person is under the visible company of their company id.
    const auto *company = static_cast<const Contact *>(getItemById(contact->getCompany()));
    return company && company->getKind() == kCompany ? indexOf(company) : QModelIndex();
}

QModelIndex ContactManager::sibling(int row, int column, const QModelIndex &index) const
{
    return this->index(row, column, parent(index));
}

int ContactManager::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return countVisibleCompanies();
    if (parent.column() > 0)
        return 0;
    const Contact *contact = contactAt(parent);
    return contact && contact->getKind() == kCompany ? countContactsforThisCompany(contact->getID()) : 0;
}

int ContactManager::columnCount(const QModelIndex &) const
{
    return int(columns().size());
}

bool ContactManager::hasChildren(const QModelIndex &parent) const
{
    return rowCount(parent) > 0;
}

QVariant ContactManager::data(const QModelIndex &index, int role) const
{
    const Contact *contact = contactAt(index);
    if (!contact || index.column() >= columns().size())
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return outlineValue(*contact, columns().at(index.column()).identifier);
    case RecordRole:
        return QVariant::fromValue(static_cast<void *>(const_cast<Contact *>(contact)));
    default:
        return {};
    }
}

void ContactManager::sort(int column, Qt::SortOrder order)
{
    static const char *const keys[] = {"name", "add1", "type"};
    if (column < 0 || column >= 3)
        return;
    sortByColumn(QLatin1String(keys[column]), order == Qt::AscendingOrder, 0);
    reloadData();
}
