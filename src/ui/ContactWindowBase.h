#pragma once

#include "ui/lwEditorWindow.h"

#include <QList>

#include <map>

class QBoxLayout;
class QPushButton;
class QTableView;
class QAbstractItemModel;
class ReportManager;
struct ContactEditorState;

// What the three contact editors share: a form of the contact fields each
// window shows, bound to the editor's state, a row of buttons with Cancel
// and OK on the right, and room for lists below the form.
class ContactWindowBase : public lwEditorWindow
{
    Q_OBJECT
public:
    enum class Field {
        Title, Name, JobTitle, Company, Add1, Add2, Add3, Postcode, Phone, Extension, Mobile, Fax, Email, Website,
        Type, Comments
    };

    ContactWindowBase(lwEditorManagerBase *manager, ContactEditorState &state, const QList<Field> &fields,
                      QWidget *parent = nullptr);

    // The control of a field; none when the window does not show it.
    QWidget *field(Field which) const;
    // The open contact's items and orders, run into the window's two lists
    // each time the editor opens.
    void setReports(ReportManager *items, ReportManager *orders);

protected:
    // A button left of Cancel and OK; its click writes the controls back first.
    QPushButton *addButton(const QString &text, const QString &objectName, const std::function<void()> &action);
    // A titled list below the form.
    QTableView *addList(const QString &title, const QString &objectName, QAbstractItemModel *model = nullptr);

private:
    std::map<Field, QWidget *> m_fields;
    QBoxLayout *m_lists = nullptr;
    QBoxLayout *m_buttons = nullptr;
};
