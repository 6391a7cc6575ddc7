#include "support/AppFixture.h"

#include "contacts/Contact.h"
#include "products/Item.h"

#include <QSettings>

AppFixture::AppFixture() : m_oldHome(qgetenv("HOME"))
{
    // Qt finds the settings folder once per process, so one temporary folder
    // serves every fixture of a test run; each fixture starts it empty.
    static QTemporaryDir settingsHome;
    qputenv("XDG_CONFIG_HOME", settingsHome.path().toLocal8Bit());
    QSettings(QStringLiteral("Ledgerwick"), QStringLiteral("Ledgerwick")).clear();
    qputenv("HOME", m_home.path().toLocal8Bit());
    ledgerwick = std::make_unique<Ledgerwick>(&platform);
    ledgerwick->setDatabaseLocation(home(QStringLiteral("db.lwkdb")));
}

AppFixture::~AppFixture()
{
    ledgerwick.reset();
    qputenv("HOME", m_oldHome);
}

QString AppFixture::home(const QString &relative) const
{
    return relative.isEmpty() ? m_home.path() : m_home.filePath(relative);
}

std::shared_ptr<Item> AppFixture::addItem(const QString &code, const QString &name, const QString &qty)
{
    auto item = std::make_shared<Item>();
    item->setCode(code);
    item->setItem(name);
    item->setQty(qty);
    ledgerwick->getItemManager()->add(item);
    return item;
}

std::shared_ptr<Contact> AppFixture::addContact(const QString &name, int id)
{
    auto contact = std::make_shared<Contact>();
    contact->setName(name);
    contact->setID(id);
    ledgerwick->getContactManager()->add(contact);
    return contact;
}

void AppFixture::select(lwDataSource *list, int row)
{
    QItemSelectionModel *selection = list->tableSelection();
    if (!selection) {
        selection = new QItemSelectionModel(list, list);
        list->setTableSelection(selection);
    }
    selection->select(list->index(row, 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

QString AppFixture::alertText(const Platform::Alert &alert)
{
    return alert.title + QStringLiteral(" | ") + alert.informativeText + QStringLiteral(" | ") +
           alert.buttons.join(QStringLiteral(", "));
}
