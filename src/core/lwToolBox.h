#pragma once

#include <QString>

class QObject;

// Small reusable helpers.
class lwToolBox
{
public:
    // Replaces the FIRST occurrence of target in text with replacement, and
    // only that one: "a &amp; b &amp; c" with "&amp;" -> "&" gives
    // "a & b &amp; c". The XML reader's unescaping relies on this.
    // A null text gives a null string; a text without the target (or an empty
    // or null target) comes back unchanged; a null replacement counts as "".
    // The search is exact (case-sensitive, no normalisation).
    static QString replaceSubstring(const QString &target, const QString &replacement, const QString &text);

    // Does nothing.
    void myAction(QObject *sender);
};
