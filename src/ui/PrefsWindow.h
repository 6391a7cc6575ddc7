#pragma once

#include <QDialog>

#include <memory>

class PrefsController;

namespace Ui {
class PrefsWindow;
}

// The preferences window. It shows the controller's controls and writes
// every edit straight back to them, so the getters see what is typed even
// before OK. OK asks the controller to store everything; Cancel or closing
// the window stores nothing.
class PrefsWindow : public QDialog
{
    Q_OBJECT
public:
    explicit PrefsWindow(PrefsController *controller, QWidget *parent = nullptr);
    ~PrefsWindow() override;

    // Shows the controller's state: every control, the pop-up and the well.
    void refresh();

Q_SIGNALS:
    // The Help button or F1: the preferences' page of the manual.
    void helpRequested();

private:
    void connectEdits();
    void applyTerms();
    void refreshColourAssignment();
    void showWellColour();
    void chooseColour();
    void bringToFront();

    PrefsController *m_controller; // not owned
    std::unique_ptr<Ui::PrefsWindow> m_ui;
    bool m_refreshing = false; // the controls are being set from the model
};
