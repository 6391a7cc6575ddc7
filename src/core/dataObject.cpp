#include "core/dataObject.h"

std::atomic<quint64> dataObject::s_idGeneration{0};
std::atomic<quint64> dataObject::s_visibilityGeneration{0};

dataObject::dataObject() = default;
dataObject::~dataObject() = default;

bool dataObject::contains(const QString &) const
{
    return true;
}

QString dataObject::getFieldByName(const QString &) const
{
    return lwEmpty();
}

bool dataObject::setFieldByName(const QString &, const QString &)
{
    return true;
}

void dataObject::setID(int id)
{
    if (m_id == id)
        return;
    m_id = id;
    s_idGeneration.fetch_add(1, std::memory_order_relaxed);
}

void dataObject::setVisible(bool visible)
{
    if (m_visible == visible)
        return;
    m_visible = visible;
    s_visibilityGeneration.fetch_add(1, std::memory_order_relaxed);
}

void dataObject::setNSDate(const CalendarDate &date)
{
    if (date.isValid())
        m_nsdate = date;
}
