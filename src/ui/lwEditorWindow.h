#pragma once

#include <initializer_list>

#include "core/PopUp.h"

#include <QAbstractButton>
#include <QDialog>
#include <QPointer>

#include <functional>
#include <vector>

class QCheckBox;
class QCloseEvent;
class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class lwEditorManagerBase;

// The window of one manager's editor. It shows the manager's editor state
// through a table of bindings (control <-> state field) and, before each of
// the manager's actions, writes every bound control back. Escape and Cancel
// drop the edit, the window's close box commits it, and each time the editor
// opens the keyboard focus is in its first field.
class lwEditorWindow : public QDialog
{
    Q_OBJECT
public:
    explicit lwEditorWindow(lwEditorManagerBase *manager, QWidget *parent = nullptr);
    ~lwEditorWindow() override;

    lwEditorManagerBase *editorManager() const { return m_manager; }

    // Shows the manager's state in the controls.
    void refresh();
    // Copies the controls into the manager's state.
    void writeBack();

    // Escape and Cancel: the manager drops the edit.
    void reject() override;

Q_SIGNALS:
    // The Help button or F1: the window's page of the manual is asked for.
    void helpRequested();

protected:
    // The window's close box commits the edit.
    void closeEvent(QCloseEvent *event) override;

    // The bindings, made once in the subclass's constructor. The state lives
    // in the manager for the window's whole life.
    void bind(QLineEdit *edit, QString &field);
    void bind(QPlainTextEdit *edit, QString &field);
    void bind(QCheckBox *box, bool &field);
    // The entries are shown; only the selection is written back.
    void bind(QComboBox *combo, PopUp &field);
    // Where the focus goes each time the editor opens.
    void setFirstField(QWidget *field) { m_firstField = field; }
    // Connects a button to a manager action, the controls written back first.
    template <class Manager> void connectAction(QAbstractButton *button, Manager *manager, void (Manager::*action)(QObject *));
    // A Help button for the window's button row; it asks for the window's page.
    QPushButton *makeHelpButton();
    // A lines group: the table above a row of its buttons.
    static void layOutLines(QWidget *box, QWidget *table, std::initializer_list<QPushButton *> buttons);
    // Writes the controls back, then runs the action.
    void run(const std::function<void()> &action);

    // What the bindings do not cover (pictures, tooltips), after each refresh.
    virtual void refreshExtras() {}
    // The window's title each time it opens.
    virtual QString editorTitle() const { return windowTitle(); }

private:
    struct Binding
    {
        std::function<void()> show;
        std::function<void()> store;
    };
    void bringToFront();

    lwEditorManagerBase *m_manager; // not owned
    std::vector<Binding> m_bindings;
    QPointer<QWidget> m_firstField;
};

template <class Manager>
void lwEditorWindow::connectAction(QAbstractButton *button, Manager *manager, void (Manager::*action)(QObject *))
{
    connect(button, &QAbstractButton::clicked, this,
            [this, manager, action] { run([this, manager, action] { (manager->*action)(this); }); });
}
