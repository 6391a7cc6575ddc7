#include "ui/CompanyEditorWindow.h"

#include "contacts/CompanyEditor.h"
#include "contacts/ContactManager.h"
#include "core/Platform.h"

#include <QTableView>

CompanyEditorWindow::CompanyEditorWindow(CompanyEditor *editor, ContactManager *contacts, QWidget *parent)
    : ContactWindowBase(editor, editor->editorState(),
                        {Field::Title, Field::Name, Field::Add1, Field::Add2, Field::Add3, Field::Postcode,
                         Field::Phone, Field::Mobile, Field::Fax, Field::Email, Field::Website, Field::Type,
                         Field::Comments},
                        parent),
      m_editor(editor)
{
    setObjectName(QStringLiteral("companyEditorWindow"));
    addButton(lwTr("Copy"), QStringLiteral("copyButton"), [this] { m_editor->copyContact(this); });
    addButton(lwTr("Email"), QStringLiteral("emailButton"), [this] { m_editor->sendEmail(this); });
    m_people = addList(lwTr("People"), QStringLiteral("peopleTableView"), editor);
    editor->setTableSelection(m_people->selectionModel());
    connect(m_people, &QTableView::doubleClicked, this,
            [this, contacts](const QModelIndex &index) { run([contacts, index] { contacts->companyContactDoubleClick(index.row()); }); });
    refresh();
}

QString CompanyEditorWindow::editorTitle() const
{
    const QString name = m_editor->editorState().name;
    return name.isEmpty() ? lwTr("Company") : name;
}
