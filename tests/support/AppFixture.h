#pragma once

#include "app/Ledgerwick.h"
#include "support/ScriptedPlatform.h"

#include <QItemSelectionModel>
#include <QString>
#include <QTemporaryDir>

#include <memory>

class Contact;
class Item;

// The application as a test meets it: a temporary home folder (so the
// settings, the standard bundle and the pictures live there), the scripted
// platform, and the controller on a bundle "db.lwkdb" in that home.
class AppFixture
{
public:
    AppFixture();
    ~AppFixture();

    bool isValid() const { return m_home.isValid(); }
    QString home(const QString &relative = {}) const;
    // A file of the bundle, "items.xml" and so on.
    QString bundleFile(const QString &name) const { return home(QStringLiteral("db.lwkdb/") + name); }

    ScriptedPlatform platform;
    std::unique_ptr<Ledgerwick> ledgerwick;

    // Sample records, added to their lists.
    std::shared_ptr<Item> addItem(const QString &code, const QString &name, const QString &qty = {});
    std::shared_ptr<Contact> addContact(const QString &name, int id = 0);

    // Selects a row of a list as its table would (one selection per list).
    void select(lwDataSource *list, int row);
    // The alert as "title | informative text | buttons".
    static QString alertText(const Platform::Alert &alert);

private:
    QTemporaryDir m_home;
    QByteArray m_oldHome;
};
