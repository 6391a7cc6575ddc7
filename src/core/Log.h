#pragma once

#include <QLoggingCategory>
#include <QString>

// The system log: short plain lines on the "ledgerwick" category, never shown
// to the user. Tests capture them through a message handler.
Q_DECLARE_LOGGING_CATEGORY(lcLedgerwick)

void lwLog(const QString &line);
