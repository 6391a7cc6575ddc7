#include "support/ScriptedPlatform.h"

int ScriptedPlatform::alert(const Alert &alert)
{
    alerts.append(alert);
    return alertAnswers.isEmpty() ? 0 : alertAnswers.dequeue();
}

QString ScriptedPlatform::openPanel(const Panel &panel)
{
    panels.append(panel);
    return panelAnswers.isEmpty() ? QString() : panelAnswers.dequeue();
}

bool ScriptedPlatform::openUrl(const QUrl &url)
{
    openedUrls.append(url);
    return canOpenUrls;
}

bool ScriptedPlatform::openPath(const QString &path)
{
    openedPaths.append(path);
    return true;
}
