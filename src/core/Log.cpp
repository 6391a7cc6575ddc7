#include "core/Log.h"

Q_LOGGING_CATEGORY(lcLedgerwick, "ledgerwick", QtInfoMsg)

void lwLog(const QString &line)
{
    qCInfo(lcLedgerwick).noquote() << line;
}
