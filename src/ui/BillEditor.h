#pragma once

#include "ui/lwEditorWindow.h"

#include <memory>

class BillManager;

namespace Ui {
class BillEditor;
}

// The bill editor window: the bill manager's editor state in its controls,
// with the calculate button. OK commits, Cancel and Escape drop the edit,
// closing the window commits.
class BillEditor : public lwEditorWindow
{
    Q_OBJECT
public:
    explicit BillEditor(BillManager *manager, QWidget *parent = nullptr);
    ~BillEditor() override;

protected:
    void refreshExtras() override;

private:
    BillManager *m_manager; // not owned
    std::unique_ptr<Ui::BillEditor> m_ui;
};
