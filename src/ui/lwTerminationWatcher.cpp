#include "ui/lwTerminationWatcher.h"

#include "core/Log.h"

#include <QSocketNotifier>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// The write end is all a signal handler may touch: one byte, no allocation.
int g_pipe[2] = {-1, -1};
const int kSignals[] = {SIGTERM, SIGHUP, SIGINT};

extern "C" void onTerminationSignal(int number)
{
    // The next one of its kind is not asked twice: it ends the program.
    std::signal(number, SIG_DFL);
    const char byte = char(number);
    [[maybe_unused]] const ssize_t written = ::write(g_pipe[0], &byte, 1);
}

} // namespace
#endif

lwTerminationWatcher::lwTerminationWatcher(QObject *parent) : QObject(parent)
{
#ifdef Q_OS_UNIX
    if (g_pipe[0] >= 0 || ::socketpair(AF_UNIX, SOCK_STREAM, 0, g_pipe) != 0) {
        lwLog(QStringLiteral("termination requests not watched"));
        return;
    }
    m_notifier = new QSocketNotifier(g_pipe[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &lwTerminationWatcher::readSignal);
    struct sigaction action = {};
    action.sa_handler = onTerminationSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int number : kSignals)
        ::sigaction(number, &action, nullptr);
#endif
}

lwTerminationWatcher::~lwTerminationWatcher()
{
#ifdef Q_OS_UNIX
    if (!m_notifier)
        return;
    for (int number : kSignals)
        std::signal(number, SIG_DFL);
    delete m_notifier;
    m_notifier = nullptr;
    ::close(g_pipe[0]);
    ::close(g_pipe[1]);
    g_pipe[0] = g_pipe[1] = -1;
#endif
}

void lwTerminationWatcher::readSignal()
{
#ifdef Q_OS_UNIX
    char byte = 0;
    if (::read(g_pipe[1], &byte, 1) != 1)
        return;
    lwLog(QStringLiteral("quitting on signal %1").arg(int(byte)));
#endif
    Q_EMIT terminationRequested();
}
