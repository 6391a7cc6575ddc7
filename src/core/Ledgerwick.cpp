#include "core/Ledgerwick.h"

Ledgerwick::Ledgerwick(Platform *platform, QObject *parent)
    : QObject(parent), m_platform(platform)
{
}

Ledgerwick::~Ledgerwick() = default;

void Ledgerwick::setReadOnly(bool readOnly)
{
    if (m_readOnly == readOnly)
        return;
    m_readOnly = readOnly;
    Q_EMIT readOnlyChanged(readOnly);
}
