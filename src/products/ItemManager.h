#pragma once

#include "core/lwEditorManager.h"
#include "products/Item.h"
#include "products/ItemEditorState.h"

#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class Platform;

// The products list: its search and stock filter, and the item editor, whose
// controls live in editorState(). Every action takes the sender and ignores it.
// A cancelled new item leaves creating set: the next commit adds whatever
// item is then in the editor.
class ItemManager : public lwEditorManager<Item, ItemEditorState>
{
    Q_OBJECT
public:
    // Opens the picker on the source with the two fields shown and the type
    // word of its title; done is called with the record chosen.
    using PickerOpener = std::function<void(lwDataSource *source, const QString &field1, const QString &field2,
                                            const QString &type, std::function<void(dataObject *)> done)>;

    explicit ItemManager(QObject *parent = nullptr);
    ~ItemManager() override;

    // The entries the pop-ups offer.
    static QStringList conditionEntries();
    static QStringList statusEntries();
    static QStringList taxCodeEntries();
    static QStringList quantityMethodEntries();
    static QStringList stockFilterEntries();
    // What a tax code means for an order line, with the tax statement and
    // rate of the preferences: only "S" is taxed.
    QString taxCodeDescription(const QString &code) const;

    // --- hooks the application installs --------------------------------------
    void setPickerOpener(PickerOpener opener) { m_pickerOpener = std::move(opener); }
    // The list of supplier contacts offered by pickSupplier().
    void setSupplierSource(lwDataSource *source) { m_supplierSource = source; }

    // --- actions ------------------------------------------------------------------
    // Commits the editor, then puts a new item behind it: the editor keeps the
    // committed item's values and takes only the new code.
    void createSimilar(QObject *sender);
    // A new default item, added to the list (the import fills it).
    Item *createAndAddDataObject() override;
    // Empties the image well and removes the current item's picture file at
    // once, even if the edit is cancelled afterwards.
    void deleteImage(QObject *sender);
    // Puts the picture of an image file into the well; false, with nothing
    // changed, when the file holds no picture.
    bool setImageFromFile(const QString &path);
    // Asks for an image file and puts its picture into the well.
    void chooseImage(QObject *sender);
    // Asks for the website folder, starting beside the one in the editor.
    void selectWebsiteLocation(QObject *sender);
    // Writes the page object of every item marked for the website, then says so.
    void exportAsSitemossObjects(QObject *sender);
    // Opens the supplier picker; its answer goes to setSupplier().
    void pickSupplier(QObject *sender);
    // The picked contact's name goes into the supplier field.
    void setSupplier(dataObject *contact);
    // Shows the items holding the search text whose stock passes the filter.
    void filter(QObject *sender) override;

protected:
    // The next id, the item prefix and that id as its code, the stock warning as its warn level.
    std::shared_ptr<dataObject> makeNewRecord() override;
    void fillState(const Item &item) override;
    // Every control but the status, which changes only through the import or
    // the database; the supplier's id is looked up by its name.
    void copyState(Item &item) override;
    // The item's website object is written whatever its export flag says.
    void committed(dataObject &item) override;

private:
    PickerOpener m_pickerOpener;
    QPointer<lwDataSource> m_supplierSource;
};
