#include "support/LogCapture.h"

#include <QMutex>
#include <QtGlobal>

#include <cstring>

namespace {

QMutex g_mutex;
QStringList g_lines;
QtMessageHandler g_previous = nullptr;
int g_active = 0;

void handler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (context.category && std::strcmp(context.category, "ledgerwick") == 0) {
        QMutexLocker lock(&g_mutex);
        g_lines.append(message);
        return;
    }
    if (g_previous)
        g_previous(type, context, message);
}

} // namespace

LogCapture::LogCapture()
{
    QMutexLocker lock(&g_mutex);
    if (g_active++ == 0) {
        g_lines.clear();
        g_previous = qInstallMessageHandler(handler);
    }
}

LogCapture::~LogCapture()
{
    QMutexLocker lock(&g_mutex);
    if (--g_active == 0)
        qInstallMessageHandler(g_previous);
}

QStringList LogCapture::lines() const
{
    QMutexLocker lock(&g_mutex);
    return g_lines;
}

void LogCapture::clear()
{
    QMutexLocker lock(&g_mutex);
    g_lines.clear();
}
