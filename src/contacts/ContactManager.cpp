#include "contacts/ContactManager.h"

#include "contacts/Contact.h"
#include "core/NumberText.h"

namespace {

// The n-th (from 0) contact of the collection that passes the test.
template<typename Test> Contact *nthMatching(const lwDataSource &source, int n, Test test)
{
    if (n < 0)
        return nullptr;
    int count = 0;
    for (const auto &record : source.records()) {
        auto *contact = dynamic_cast<Contact *>(record.get());
        if (contact && test(*contact) && count++ == n)
            return contact;
    }
    return nullptr;
}

template<typename Test> int countMatching(const lwDataSource &source, Test test)
{
    int count = 0;
    for (const auto &record : source.records()) {
        const auto *contact = dynamic_cast<const Contact *>(record.get());
        if (contact && test(*contact))
            ++count;
    }
    return count;
}

} // namespace

ContactManager::ContactManager(QObject *parent) : RecordTable({}, parent)
{
    // The import makes new contacts through this.
    setFactory([] { return std::make_shared<Contact>(); });
    setObjectName(QStringLiteral("contacts"));
}

bool ContactManager::isCompany(const Contact &contact)
{
    return contact.getKind() != QLatin1String("Company Contact");
}

bool ContactManager::isSupplier(const Contact &contact)
{
    return contact.getType() == QLatin1String("Supplier");
}

int ContactManager::countCompanies() const
{
    return countMatching(*this, isCompany);
}

int ContactManager::countSuppliers() const
{
    return countMatching(*this, isSupplier);
}

Contact *ContactManager::getnthCompany(int n) const
{
    return nthMatching(*this, n, isCompany);
}

Contact *ContactManager::getnthSupplier(int n) const
{
    return nthMatching(*this, n, isSupplier);
}

Contact *ContactManager::getContactbyId(const QString &id) const
{
    return dynamic_cast<Contact *>(getItemById(NumberText::intValue(id)));
}

Contact *ContactManager::getContactbyName(const QString &name) const
{
    for (const auto &record : records()) {
        auto *contact = dynamic_cast<Contact *>(record.get());
        if (contact && contact->getName() == name)
            return contact;
    }
    return nullptr;
}
