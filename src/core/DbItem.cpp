#include "core/DbItem.h"

void DbItem::setData(const QString &data)
{
    m_data = data;
}

void DbItem::setGrandParentClosed(bool closed)
{
    m_grandParentClosed = closed;
}

void DbItem::setGrandParentName(const QString &name)
{
    m_grandParentName = name;
}

void DbItem::setName(const QString &name)
{
    m_name = name;
}

void DbItem::setNewParent(bool newParent)
{
    m_newParent = newParent;
}

void DbItem::setParentClosed(bool closed)
{
    m_parentClosed = closed;
}

void DbItem::setParentName(const QString &name)
{
    m_parentName = name;
}
