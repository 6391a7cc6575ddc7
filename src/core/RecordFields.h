#pragma once

#include <QString>

#include <initializer_list>
#include <iterator>

// Pieces every record's by-name table is built from.
namespace RecordFields {

// Text setters keep the old value when given none.
inline void assign(QString &field, const QString &value)
{
    if (!value.isNull())
        field = value;
}

// The entry of a by-name table whose name equals the name, or nullptr.
template<class Entry, std::size_t N> const Entry *find(const Entry (&table)[N], const QString &name)
{
    for (const Entry &entry : table)
        if (name == entry.name)
            return &entry;
    return nullptr;
}

// Whether the text occurs, ignoring case, in any of the fields. An empty
// search text matches nothing: the managers test for "" themselves.
inline bool containsIgnoringCase(const QString &text, std::initializer_list<const QString *> fields)
{
    if (text.isEmpty())
        return false;
    for (const QString *field : fields)
        if (field->contains(text, Qt::CaseInsensitive))
            return true;
    return false;
}

} // namespace RecordFields
