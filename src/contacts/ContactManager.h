#pragma once

#include "core/RecordTable.h"

class Contact;

// The collection of contacts. For now it answers the questions the rest of
// the program asks of it (by id, by name, the n-th company or supplier); the
// outline and editors come later.
class ContactManager : public RecordTable
{
    Q_OBJECT
public:
    explicit ContactManager(QObject *parent = nullptr);

    // Every contact that is not a "Company Contact": the top-level entries.
    int countCompanies() const;
    // Contacts whose type is "Supplier".
    int countSuppliers() const;
    // The contact that makes the count above reach n + 1 (n from 0), walking
    // the collection in its order; none past the last one.
    Contact *getnthCompany(int n) const;
    Contact *getnthSupplier(int n) const;

    // The contact whose id is the integer read from the text; none when unknown.
    Contact *getContactbyId(const QString &id) const;
    // The first contact whose name is exactly the text; none when there is none.
    Contact *getContactbyName(const QString &name) const;

    static bool isCompany(const Contact &contact);
    static bool isSupplier(const Contact &contact);
};
