#include "core/XmlTag.h"

void XmlTag::setClosing(bool closing)
{
    m_isClosing = closing;
}

void XmlTag::setData(const QString &data)
{
    m_data = data;
}
