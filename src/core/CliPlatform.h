#pragma once

#include "core/Platform.h"

// The command-line tool's platform: alerts go to standard error and are
// answered with their default button, panels are cancelled, the pasteboard is
// kept in memory, nothing is opened.
class CliPlatform : public Platform
{
public:
    int alert(const Alert &alert) override;
    QString openPanel(const Panel &panel) override;
    QString savePanel(const Panel &panel) override;
    QString pasteboardText() override;
    void setPasteboardText(const QString &text) override;
    bool openUrl(const QUrl &url) override;
    bool openPath(const QString &path) override;
    void beep() override;

private:
    QString m_pasteboard;
};
