#pragma once

#include <QString>
#include <QStringList>

// A pop-up button's state: its entries and the selected one.
struct PopUp
{
    QStringList entries;
    int index = -1; // -1: nothing selected

    // A pop-up button starts with its first entry selected.
    static PopUp withEntries(const QStringList &entries) { return {entries, entries.isEmpty() ? -1 : 0}; }

    // The selected entry's title; a null string when nothing is selected.
    QString selectedTitle() const { return index >= 0 && index < entries.size() ? entries.at(index) : QString(); }
    // Selects the entry of that title; a title the list lacks leaves
    // nothing selected, as a pop-up button does.
    void selectTitle(const QString &title) { index = int(entries.indexOf(title)); }

    friend bool operator==(const PopUp &, const PopUp &) = default;
};
