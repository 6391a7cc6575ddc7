#include "ui/CompanyContactEditorWindow.h"

#include "contacts/CompanyContactEditor.h"
#include "core/Platform.h"

#include <QComboBox>
#include <QTableView>

CompanyContactEditorWindow::CompanyContactEditorWindow(CompanyContactEditor *editor, QWidget *parent)
    : ContactWindowBase(editor, editor->editorState(),
                        {Field::Title, Field::Name, Field::JobTitle, Field::Company, Field::Add1, Field::Add2,
                         Field::Add3, Field::Postcode, Field::Phone, Field::Extension, Field::Mobile, Field::Fax,
                         Field::Email, Field::Website, Field::Type, Field::Comments},
                        parent),
      m_editor(editor)
{
    setObjectName(QStringLiteral("companyContactEditorWindow"));
    auto *company = static_cast<QComboBox *>(field(Field::Company));
    // A company chosen by the user brings its address and phone.
    connect(company, &QComboBox::activated, this, [this] { run([this] { m_editor->populateCompanyFields(); }); });
    addButton(lwTr("Edit Company"), QStringLiteral("editCompanyButton"),
              [this] { m_editor->editCompanyButton(this); });
    addButton(lwTr("Copy"), QStringLiteral("copyButton"), [this] { m_editor->copyContact(this); });
    addButton(lwTr("Email"), QStringLiteral("emailButton"), [this] { m_editor->sendEmail(this); });
    m_items = addList(lwTr("Items bought"), QStringLiteral("itemTableView"));
    m_orders = addList(lwTr("Orders"), QStringLiteral("orderTableView"));
    refresh();
}

QString CompanyContactEditorWindow::editorTitle() const
{
    const QString name = m_editor->editorState().name;
    return name.isEmpty() ? lwTr("Company Contact") : name;
}
