#include "core/CliPlatform.h"

#include <cstdio>

int CliPlatform::alert(const Alert &alert)
{
    QString line = alert.title;
    if (!alert.informativeText.isEmpty())
        line += QStringLiteral(": ") + alert.informativeText;
    std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
    std::fflush(stderr);
    return 0;
}

QString CliPlatform::openPanel(const Panel &)
{
    return {};
}

QString CliPlatform::savePanel(const Panel &)
{
    return {};
}

QString CliPlatform::pasteboardText()
{
    return m_pasteboard;
}

void CliPlatform::setPasteboardText(const QString &text)
{
    m_pasteboard = text;
}

bool CliPlatform::openUrl(const QUrl &)
{
    return false;
}

bool CliPlatform::openPath(const QString &)
{
    return false;
}

void CliPlatform::beep()
{
}
