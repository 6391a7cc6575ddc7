#pragma once

#include "core/Platform.h"

#include <QPointer>

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
    bool openUrl(const QUrl &url) override;
    bool openPath(const QString &path) override;
    void beep() override;

private:
    QPointer<QWidget> m_window;
};
