#pragma once

#include <QString>

// Fields, exports and the files tell an empty text from none (a null
// QString), so the empty text is always spelled through these two.

// The empty text that is not null.
inline QString lwEmpty()
{
    return QStringLiteral("");
}

// A null text reads as empty: setters and controls hand over QString() for
// "nothing", and an emptied field must still be stored as empty.
inline QString lwNonNull(const QString &text)
{
    return text.isNull() ? lwEmpty() : text;
}
