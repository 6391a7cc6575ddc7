#pragma once

#include <QObject>

class Platform;

// The application controller: the hub every manager asks about the state of
// the database and through which it reaches the desktop.
class Ledgerwick : public QObject
{
    Q_OBJECT
public:
    explicit Ledgerwick(Platform *platform, QObject *parent = nullptr);
    ~Ledgerwick() override;

    Platform *platform() const { return m_platform; }
    void setPlatform(Platform *platform) { m_platform = platform; }

    // True while another copy of the program holds the database's lock.
    bool isReadOnly() const { return m_readOnly; }
    void setReadOnly(bool readOnly);

Q_SIGNALS:
    void readOnlyChanged(bool readOnly);

private:
    Platform *m_platform = nullptr; // not owned: the app, CLI or test installs it
    bool m_readOnly = false;
};
