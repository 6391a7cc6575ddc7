#pragma once

#include <QString>

// One tag as the XML reader met it: its text (everything between "<" and ">"
// except the slashes) and whether it contained a "/". A self-closing tag is a
// closing one. A null text means none was given.
class XmlTag
{
public:
    XmlTag() = default;

    QString getData() const { return m_data; }
    bool isClosing() const { return m_isClosing; }

    void setClosing(bool closing);
    // Stores its own copy; a null string leaves the tag without text.
    void setData(const QString &data);

    bool operator==(const XmlTag &other) const = default;

private:
    QString m_data;
    bool m_isClosing = false;
};
