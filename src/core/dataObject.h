#pragma once

#include "core/CalendarDate.h"
#include "core/EmptyText.h"

#include <QString>

#include <atomic>

// Base of every record: an id (0 until one is given), the visible flag set by
// filtering, a cached date filled by date sorts, and access to fields by name.
// Records hold all their values as text; only ids and links are integers.
class dataObject
{
public:
    dataObject();
    virtual ~dataObject();

    // Every record matches every search text unless its kind says otherwise.
    virtual bool contains(const QString &text) const;

    // The value for a column or field name; "" for a name the record does not know.
    virtual QString getFieldByName(const QString &name) const;
    // Stores a value given as text under a field name. Answers false only when
    // the record refuses that name as an error the caller must report (an
    // unknown name is ignored and answers true).
    virtual bool setFieldByName(const QString &name, const QString &value);

    int getID() const { return m_id; }
    void setID(int id);
    bool getVisible() const { return m_visible; }
    void setVisible(bool visible);

    // The cached date; an invalid date means none. Setting none keeps the old one.
    const CalendarDate &getNSDate() const { return m_nsdate; }
    void setNSDate(const CalendarDate &date);

    // Bumped whenever any record's id or visibility changes, so that
    // collections can tell cheaply whether their lookup indexes are stale.
    static quint64 idGeneration() { return s_idGeneration.load(std::memory_order_relaxed); }
    static quint64 visibilityGeneration() { return s_visibilityGeneration.load(std::memory_order_relaxed); }

protected:
    dataObject(const dataObject &) = default;
    dataObject &operator=(const dataObject &) = default;

private:
    bool m_visible = true;
    int m_id = 0;
    CalendarDate m_nsdate;

    static std::atomic<quint64> s_idGeneration;
    static std::atomic<quint64> s_visibilityGeneration;
};
