#pragma once

#include "core/RecordTable.h"
#include "products/Item.h"
#include "products/ItemEditorState.h"

#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class Platform;

// The products list: its search and stock filter, and the item editor, whose
// controls live in editorState(). Every action takes the sender and ignores
// it. An editor window shows the state, writes the user's input back into it
// before calling an action, and follows editorShown(), editorHidden() and
// editorStateChanged().
class ItemManager : public RecordTable
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

    // --- the editor's state -----------------------------------------------------
    ItemEditorState &editorState() { return m_state; }
    const ItemEditorState &editorState() const { return m_state; }
    // The item in the editor; none until the editor is first opened.
    Item *currentItem() const { return m_currentItem.get(); }
    // The item in the editor is new: a commit adds it to the list. Deliberately
    // left set by cancel() and edit().
    bool isCreating() const { return m_creating; }
    bool isEditorShown() const { return m_editorShown; }

    // --- actions ------------------------------------------------------------------
    // A new item with the next id, the item prefix and that id as its code and
    // the stock warning as its warn level, in the editor. Refused while read-only.
    void create(QObject *sender) override;
    // Commits the editor, then puts a new item behind it: the editor keeps the
    // committed item's values and takes only the new code.
    void createSimilar(QObject *sender);
    // A new default item, added to the list (the import fills it).
    Item *createAndAddDataObject() override;
    // The selected item in the editor; nothing without a selection.
    void edit(QObject *sender) override;
    // The delete key: asks, then removes the selected item.
    void deleteKey(QObject *sender) override;
    // Removes the item from the list (its picture file stays). Refused while read-only.
    void remove(dataObject *item);
    using RecordTable::remove;
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
    // Opens the supplier picker; its answer goes to setSupplier().
    void pickSupplier(QObject *sender);
    // The picked contact's name goes into the supplier field.
    void setSupplier(dataObject *contact);
    // The editor's OK: copies the controls into the item (never its status),
    // adds a new item, stores the picture in the well, filters, hides the
    // editor, writes the item's website object and saves the items.
    void finish(QObject *sender);
    // Hides the editor without storing anything.
    void cancel(QObject *sender);
    void hide(QObject *sender);
    void show(QObject *sender);
    // The editor window is closing: a current item is committed.
    void windowWillClose(QObject *sender);
    // Detaches the editor window: its closing no longer commits.
    void disconnectWindow(QObject *sender);
    // Shows the items holding the search text whose stock passes the filter.
    void filter(QObject *sender) override;
    // Fills the editor from an item; anything else is ignored.
    void setItem(dataObject *record);

Q_SIGNALS:
    void editorShown();
    void editorHidden();
    // The manager changed the editor's state itself.
    void editorStateChanged();

private:
    Platform *platform() const;
    std::shared_ptr<Item> makeNewItem();
    void showEditor();
    void hideEditor();

    ItemEditorState m_state;
    std::shared_ptr<Item> m_currentItem;
    bool m_creating = false;
    bool m_editorShown = false;
    bool m_windowConnected = true;
    PickerOpener m_pickerOpener;
    QPointer<lwDataSource> m_supplierSource;
};
