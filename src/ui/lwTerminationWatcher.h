#pragma once

#include <QObject>

class QSocketNotifier;

// Turns the system's polite requests to end the program (SIGTERM at logout
// or shutdown, SIGHUP, SIGINT) into a signal on the main thread, so that the
// program quits as from its menu and saves what is only in memory. A second
// request of the same kind ends the program at once, as it did before.
class lwTerminationWatcher : public QObject
{
    Q_OBJECT
public:
    explicit lwTerminationWatcher(QObject *parent = nullptr);
    ~lwTerminationWatcher() override;

Q_SIGNALS:
    void terminationRequested();

private:
    void readSignal();

    QSocketNotifier *m_notifier = nullptr;
};
