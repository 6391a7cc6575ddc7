#pragma once

#include "core/Platform.h"

#include <QPointer>

#include <functional>

class QFileDialog;
class QWidget;

// The desktop's own services: message boxes, file dialogs, the clipboard,
// opening URLs and files, the beep. Alerts and panels are modal to the window
// given (the main window), or to the application when there is none.
class QtPlatform : public Platform
{
public:
    explicit QtPlatform(QWidget *window = nullptr);

    void setWindow(QWidget *window);

    int alert(const Alert &alert) override;
    QString openPanel(const Panel &panel) override;
    QString savePanel(const Panel &panel) override;
    QString pasteboardText() override;
    void setPasteboardText(const QString &text) override;
    // Web pages (the manual's included) answer false without trying when
    // the desktop has no browser, so that the program shows them itself.
    bool openUrl(const QUrl &url) override;
    // How a browser is found; the tests pretend there is none.
    void setBrowserCheck(std::function<bool()> check);
    bool openPath(const QString &path) override;
    void beep() override;

private:
    QWidget *parentWindow() const;
    QString runPanel(QFileDialog &dialog, const Panel &panel);

    QPointer<QWidget> m_window;
    std::function<bool()> m_browserCheck;
};
