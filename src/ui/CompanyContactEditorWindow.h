#pragma once

#include "ui/ContactWindowBase.h"

class CompanyContactEditor;
class QTableView;

// The company contact editor's window: the person's fields, the pop-up of
// companies whose choice fills in the company's address, and the lists of
// the person's items and orders.
class CompanyContactEditorWindow : public ContactWindowBase
{
    Q_OBJECT
public:
    explicit CompanyContactEditorWindow(CompanyContactEditor *editor, QWidget *parent = nullptr);

    QTableView *itemTable() const { return m_items; }
    QTableView *orderTable() const { return m_orders; }

protected:
    QString editorTitle() const override;

private:
    CompanyContactEditor *m_editor; // not owned
    QTableView *m_items = nullptr;
    QTableView *m_orders = nullptr;
};
