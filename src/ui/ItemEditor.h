#pragma once

#include "ui/lwEditorWindow.h"

#include <memory>

class ItemManager;

namespace Ui {
class ItemEditor;
}

// The item editor window: the item manager's editor state in its controls.
// OK commits, Cancel and Escape drop the edit, closing the window commits.
class ItemEditor : public lwEditorWindow
{
    Q_OBJECT
public:
    explicit ItemEditor(ItemManager *manager, QWidget *parent = nullptr);
    ~ItemEditor() override;

    ItemManager *manager() const { return m_manager; }

protected:
    void refreshExtras() override;
    QString editorTitle() const override;

private:
    ItemManager *m_manager; // not owned
    std::unique_ptr<Ui::ItemEditor> m_ui;
};
