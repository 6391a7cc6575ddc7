#pragma once

#include <QImage>
#include <QString>
#include <QStringList>

// What the item editor's controls and the items list's search field and
// stock filter hold. The item manager fills it and reads it; the editor
// window shows it and writes the user's input back before it calls one of
// the manager's actions, so the rules run the same with or without a window.
struct ItemEditorState
{
    // A pop-up list: its entries and the selected one.
    struct PopUp
    {
        QStringList entries;
        int index = -1; // -1: nothing selected

        // The selected entry's title; a null string when nothing is selected.
        QString selectedTitle() const { return index >= 0 && index < entries.size() ? entries.at(index) : QString(); }
        // Selects the entry of that title; a title the list lacks leaves
        // nothing selected, as a pop-up button does.
        void selectTitle(const QString &title) { index = int(entries.indexOf(title)); }

        friend bool operator==(const PopUp &, const PopUp &) = default;
    };

    // --- the editor ---------------------------------------------------------
    QString code;
    QString description; // multi-line
    QString name;
    QString price;
    QString qty;
    QString optimumQty;
    QString bought;
    QString shipping;
    QString variation;
    QString warnLevel;
    QString supplierName; // the supplier's name; its id is looked up on commit
    QString websiteFolder;
    QString buttonCode; // multi-line
    bool decreaseQty = false;
    bool exportSitemoss = false;
    bool hideButtonCode = true;
    PopUp condition;
    PopUp status; // shown only: a commit never copies it back
    PopUp taxCode;
    PopUp quantityMethod;
    QImage image; // the image well; null when empty

    // --- the items list -----------------------------------------------------
    QString searchText;
    PopUp stockFilter; // "All" shows every item; any other entry only those in stock
};
