#pragma once

#include "core/Platform.h"

#include <QList>
#include <QQueue>

// A platform for tests: records every alert and panel, answers alerts and
// panels from queues (the default button, or a cancelled panel, when empty).
class ScriptedPlatform : public Platform
{
public:
    int alert(const Alert &alert) override;
    QString openPanel(const Panel &panel) override;
    QString savePanel(const Panel &panel) override { return openPanel(panel); } // one queue for both
    QString pasteboardText() override { return pasteboard; }
    void setPasteboardText(const QString &text) override { pasteboard = text; }
    bool openUrl(const QUrl &url) override;
    bool openPath(const QString &path) override;
    void beep() override { ++beeps; }

    QList<Alert> alerts;
    QQueue<int> alertAnswers;
    QList<Panel> panels;
    QQueue<QString> panelAnswers;
    QList<QUrl> openedUrls;
    bool canOpenUrls = true; // false: as on a desktop without a browser
    QStringList openedPaths;
    QString pasteboard;
    int beeps = 0;
};
