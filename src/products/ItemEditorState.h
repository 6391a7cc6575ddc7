#pragma once

#include "core/PopUp.h"

#include <QImage>
#include <QString>
#include <QStringList>

// What the item editor's controls and the items list's search field and
// stock filter hold. The item manager fills it and reads it; the editor
// window shows it and writes the user's input back before it calls one of
// the manager's actions, so the rules run the same with or without a window.
struct ItemEditorState
{
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
