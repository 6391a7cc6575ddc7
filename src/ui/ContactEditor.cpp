#include "ui/ContactEditor.h"

#include "contacts/ContactManager.h"
#include "core/Platform.h"

#include <QTableView>

ContactEditor::ContactEditor(ContactManager *manager, QWidget *parent)
    : ContactWindowBase(manager, manager->editorState(),
                        {Field::Title, Field::Name, Field::Add1, Field::Add2, Field::Add3, Field::Postcode,
                         Field::Phone, Field::Mobile, Field::Fax, Field::Email, Field::Website, Field::Type,
                         Field::Comments},
                        parent),
      m_manager(manager)
{
    setObjectName(QStringLiteral("contactEditorWindow"));
    addButton(lwTr("Copy"), QStringLiteral("copyButton"), [this] { m_manager->copyContact(this); });
    addButton(lwTr("Paste"), QStringLiteral("pasteButton"), [this] { m_manager->pasteContact(this); });
    addButton(lwTr("Capitalise"), QStringLiteral("capitaliseButton"), [this] { m_manager->capitalise(this); });
    addButton(lwTr("Email"), QStringLiteral("emailButton"), [this] { m_manager->sendEmail(this); });
    addButton(lwTr("Make Company"), QStringLiteral("makeCompanyButton"), [this] { m_manager->makeCompany(this); });
    addButton(lwTr("Link to Company"), QStringLiteral("linkToCompanyButton"),
              [this] { m_manager->linkToCompany(this); });
    m_items = addList(lwTr("Items bought"), QStringLiteral("itemTableView"));
    m_orders = addList(lwTr("Orders"), QStringLiteral("orderTableView"));
    refresh();
}

QString ContactEditor::editorTitle() const
{
    const QString name = m_manager->editorState().name;
    return name.isEmpty() ? lwTr("Contact") : name;
}
