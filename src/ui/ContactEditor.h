#pragma once

#include "ui/ContactWindowBase.h"

class ContactManager;
class QTableView;

// The main contact editor, for individuals: the contact's fields, copy,
// paste, capitalise and mail, turning the contact into a company or a
// company contact, and the lists of the contact's items and orders.
class ContactEditor : public ContactWindowBase
{
    Q_OBJECT
public:
    explicit ContactEditor(ContactManager *manager, QWidget *parent = nullptr);

    QTableView *itemTable() const { return m_items; }
    QTableView *orderTable() const { return m_orders; }

protected:
    QString editorTitle() const override;

private:
    ContactManager *m_manager; // not owned
    QTableView *m_items = nullptr;
    QTableView *m_orders = nullptr;
};
