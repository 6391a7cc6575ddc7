#pragma once

#include <QString>

// One leaf element handed out by the XML reader (Parser): its tag text, its
// unescaped text, and the names of its parent (the record, depth 3) and
// grandparent (depth 2). A name the reader never met is a null string.
// parentClosed and grandParentClosed are never set by the reader.
class DbItem
{
public:
    DbItem() = default;

    QString getData() const { return m_data; }
    QString getGrandParentName() const { return m_grandParentName; }
    QString getName() const { return m_name; }
    QString getParentName() const { return m_parentName; }
    bool isGrandParentClosed() const { return m_grandParentClosed; }
    // True for the first field of a new record (a depth-3 opening tag was met
    // while this item was being fetched).
    bool isNewParent() const { return m_newParent; }
    bool isParentClosed() const { return m_parentClosed; }

    // The string setters store a copy of what they are given, a null string included.
    void setData(const QString &data);
    void setGrandParentClosed(bool closed);
    void setGrandParentName(const QString &name);
    void setName(const QString &name);
    void setNewParent(bool newParent);
    void setParentClosed(bool closed);
    void setParentName(const QString &name);

    bool operator==(const DbItem &other) const = default;

private:
    // In the declaration order of the description.
    QString m_data;
    bool m_grandParentClosed = false;
    QString m_grandParentName;
    QString m_name;
    bool m_newParent = false;
    bool m_parentClosed = false;
    QString m_parentName;
};
