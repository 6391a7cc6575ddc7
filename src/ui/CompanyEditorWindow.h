#pragma once

#include "ui/ContactWindowBase.h"

class CompanyEditor;
class ContactManager;
class QTableView;

// The company editor's window: the company's fields and its people, a
// double-click on one opening the company contact editor.
class CompanyEditorWindow : public ContactWindowBase
{
    Q_OBJECT
public:
    CompanyEditorWindow(CompanyEditor *editor, ContactManager *contacts, QWidget *parent = nullptr);

    QTableView *peopleTable() const { return m_people; }

protected:
    QString editorTitle() const override;

private:
    CompanyEditor *m_editor; // not owned
    QTableView *m_people = nullptr;
};
