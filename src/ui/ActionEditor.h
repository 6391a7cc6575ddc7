#pragma once

#include "ui/lwEditorWindow.h"

#include <memory>

class ActionManager;

namespace Ui {
class ActionEditor;
}

// The task editor window: the action manager's editor state in its controls,
// with the two calculate buttons. OK commits, Cancel and Escape drop the
// edit, closing the window commits.
class ActionEditor : public lwEditorWindow
{
    Q_OBJECT
public:
    explicit ActionEditor(ActionManager *manager, QWidget *parent = nullptr);
    ~ActionEditor() override;

protected:
    // The date fields show the user's date format.
    void refreshExtras() override;

private:
    ActionManager *m_manager; // not owned
    std::unique_ptr<Ui::ActionEditor> m_ui;
};
