#pragma once

#include <QStringList>

// Collects the lines logged on the "ledgerwick" category while it lives;
// other messages go on to the previous handler.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    QStringList lines() const;
    void clear();
};
