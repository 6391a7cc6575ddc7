#pragma once

#include <QDialog>

#include <memory>

class ItemManager;
class QCloseEvent;

namespace Ui {
class ItemEditor;
}

// The item editor window. It shows the item manager's editor state and,
// before each of the manager's actions, writes every control back into it.
// OK commits, Cancel and Escape drop the edit, closing the window commits.
class ItemEditor : public QDialog
{
    Q_OBJECT
public:
    explicit ItemEditor(ItemManager *manager, QWidget *parent = nullptr);
    ~ItemEditor() override;

    ItemManager *manager() const { return m_manager; }

    // Shows the manager's state in the controls.
    void refresh();
    // Copies the controls into the manager's state.
    void writeBack();

    // Escape and Cancel: the manager drops the edit.
    void reject() override;

protected:
    // The window's close button commits the edit.
    void closeEvent(QCloseEvent *event) override;

private:
    // Writes the controls back, then runs the manager's action.
    void run(void (ItemManager::*action)(QObject *));
    void bringToFront();

    ItemManager *m_manager; // not owned
    std::unique_ptr<Ui::ItemEditor> m_ui;
};
