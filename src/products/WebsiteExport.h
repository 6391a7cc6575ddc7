#pragma once

#include <QString>
#include <QStringList>

class Item;
class Platform;
class lwDataSource;

// The page objects of items for a website built with the Sitemoss site tool:
// one small HTML fragment per item, in the "objects" folder of the item's
// website folder. The item manager calls these after an edit is committed,
// after stock changes and for the bulk export.
class WebsiteExport
{
public:
    // The item's fragment: variation and price (every ".00" of that part
    // removed), the stock indication of its quantity method, the buy button.
    static QString fragment(const Item &item);

    // "<website folder>/objects/LwkItem<code>", the folder exactly as stored
    // (a leading "~" is not expanded).
    static QString objectPath(const Item &item);

    // Writes the fragment as UTF-8 over any earlier file. The "objects"
    // folder must exist already; a failure is logged and not reported to the
    // user. A code that could lead out of the folder (holding "/", "\\" or
    // NUL) is refused and logged, and so is a symbolic link in the object's
    // place. Answers whether the file was written.
    static bool exportItemAsSitemossObject(const Item &item);

    // Answers the paths of the objects not written.
    // Exports every item whose website flag is on, shown or filtered out, in
    // collection order, then tells the user it has finished.
    static QStringList exportAsSitemossObjects(const lwDataSource &items, Platform *platform);

    // Asks for a website folder, starting in the parent of the current one.
    // Answers the chosen folder, or currentFolder when the user cancelled.
    static QString selectWebsiteLocation(Platform *platform, const QString &currentFolder);
};
