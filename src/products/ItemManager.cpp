#include "products/ItemManager.h"

#include "core/Ledgerwick.h"
#include "core/Log.h"
#include "core/NumberText.h"
#include "core/Platform.h"
#include "prefs/PrefsController.h"
#include "products/Item.h"
#include "products/WebsiteExport.h"

#include <QDir>
#include <QImageReader>

namespace {

// Item text setters keep the old value when given a null string; an emptied
// control must still empty the field.
QString text(const QString &value)
{
    return value.isNull() ? QString(QLatin1String("")) : value;
}

ItemEditorState::PopUp popUp(const QStringList &entries)
{
    // A pop-up button starts with its first entry selected.
    return {entries, entries.isEmpty() ? -1 : 0};
}

} // namespace

ItemManager::ItemManager(QObject *parent) : RecordTable({}, parent)
{
    setObjectName(QStringLiteral("items"));
    m_state.condition = popUp(conditionEntries());
    m_state.status = popUp(statusEntries());
    m_state.taxCode = popUp(taxCodeEntries());
    m_state.quantityMethod = popUp(quantityMethodEntries());
    m_state.stockFilter = popUp(stockFilterEntries());
    m_state.searchText = QString(QLatin1String(""));
}

ItemManager::~ItemManager() = default;

// --- the pop-ups' entries -----------------------------------------------------

QStringList ItemManager::conditionEntries()
{
    return {lwTr("New"), lwTr("Used"), lwTr("Refurbished"), lwTr("Damaged")};
}

QStringList ItemManager::statusEntries()
{
    return {lwTr("Available"), lwTr("On Order"), lwTr("Discontinued")};
}

QStringList ItemManager::taxCodeEntries()
{
    // Order lines tax only "S" (and "s"); the other codes say why an item is untaxed.
    return {QStringLiteral("S"), QStringLiteral("Z"), QStringLiteral("E")};
}

QStringList ItemManager::quantityMethodEntries()
{
    // The website export knows these three by their exact text.
    return {QStringLiteral("Just when out of stock"), QStringLiteral("Out of stock / in stock"),
            QStringLiteral("Show quantity")};
}

QStringList ItemManager::stockFilterEntries()
{
    return {QStringLiteral("All"), lwTr("In Stock")};
}

QString ItemManager::taxCodeDescription(const QString &code) const
{
    if (code.compare(QLatin1String("S"), Qt::CaseInsensitive) == 0) {
        const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr;
        const QString statement = prefs ? prefs->getTaxStatement() : PrefsControls().taxStatement;
        const float rate = prefs ? prefs->getGlobalTaxRate() : NumberText::floatValue(PrefsControls().taxRate);
        return lwTr("Standard: %1 at %2%").arg(statement, NumberText::twoDecimals(rate));
    }
    if (code == QLatin1String("Z"))
        return lwTr("Zero rated: no tax");
    if (code == QLatin1String("E"))
        return lwTr("Exempt: no tax");
    return lwTr("No tax");
}

// --- helpers -------------------------------------------------------------------

Platform *ItemManager::platform() const
{
    return ledgerwick() ? ledgerwick()->platform() : nullptr;
}

std::shared_ptr<Item> ItemManager::makeNewItem()
{
    const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr;
    auto item = std::make_shared<Item>();
    item->setID(getNextId());
    item->setCode((prefs ? prefs->getItemPrefix() : PrefsControls().itemPrefix) + QString::number(item->getID()));
    item->setWarnlevel(prefs ? prefs->getStockWarn() : PrefsControls().stockWarn);
    return item;
}

void ItemManager::showEditor()
{
    m_editorShown = true;
    Q_EMIT editorShown();
}

void ItemManager::hideEditor()
{
    m_editorShown = false;
    Q_EMIT editorHidden();
}

// --- actions ---------------------------------------------------------------------

void ItemManager::create(QObject *)
{
    if (!readOnlyCheck())
        return;
    m_creating = true;
    m_currentItem = makeNewItem();
    setItem(m_currentItem.get());
    showEditor();
}

void ItemManager::createSimilar(QObject *sender)
{
    if (!m_currentItem)
        return;
    finish(sender);
    // The editor keeps every value just committed; only the code is the new item's.
    m_creating = true;
    m_currentItem = makeNewItem();
    m_state.code = m_currentItem->getCode();
    Q_EMIT editorStateChanged();
    showEditor();
}

Item *ItemManager::createAndAddDataObject()
{
    auto item = std::make_shared<Item>();
    add(item);
    return item.get();
}

void ItemManager::edit(QObject *)
{
    auto item = std::dynamic_pointer_cast<Item>(sharedRecord(getSelectedItem()));
    if (!item)
        return;
    m_currentItem = std::move(item);
    setItem(m_currentItem.get());
    showEditor();
}

void ItemManager::deleteKey(QObject *)
{
    const int row = selectedRow();
    if (row == -1)
        return;
    Platform *desktop = platform();
    const int answer = desktop ? desktop->alert({lwTr("Delete Item"),
                                                 lwTr("Do you want to delete the selected item from the database?"),
                                                 {lwTr("OK"), lwTr("Cancel")},
                                                 Platform::AlertStyle::Warning})
                               : 1; // nobody to ask: nothing is deleted
    if (answer == 0)
        remove(getnthVisibleItem(row));
    if (ledgerwick())
        ledgerwick()->setChangeFlag();
}

void ItemManager::remove(dataObject *item)
{
    if (!readOnlyCheck())
        return;
    deleteItem(item);
    reloadData();
}

void ItemManager::deleteImage(QObject *)
{
    m_state.image = QImage();
    if (m_currentItem)
        m_currentItem->setImage(QImage());
    Q_EMIT editorStateChanged();
}

bool ItemManager::setImageFromFile(const QString &path)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull())
        return false;
    m_state.image = image;
    Q_EMIT editorStateChanged();
    return true;
}

void ItemManager::chooseImage(QObject *)
{
    Platform *desktop = platform();
    if (!desktop)
        return;
    QStringList types;
    const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    for (const QByteArray &format : formats)
        types << QString::fromLatin1(format).toLower();
    const QString path = desktop->openPanel({lwTr("Choose a Picture"), types, QDir::homePath()});
    if (!path.isEmpty() && !setImageFromFile(path))
        desktop->beep();
}

void ItemManager::selectWebsiteLocation(QObject *)
{
    m_state.websiteFolder = WebsiteExport::selectWebsiteLocation(platform(), m_state.websiteFolder);
    Q_EMIT editorStateChanged();
}

void ItemManager::pickSupplier(QObject *)
{
    if (!m_pickerOpener || !m_supplierSource)
        return;
    QPointer<ItemManager> self(this);
    m_pickerOpener(m_supplierSource, QStringLiteral("name"), QStringLiteral("address"), QStringLiteral("Supplier"),
                   [self](dataObject *contact) {
                       if (self)
                           self->setSupplier(contact);
                   });
}

void ItemManager::setSupplier(dataObject *contact)
{
    m_state.supplierName = contact ? contact->getFieldByName(QStringLiteral("name")) : QString(QLatin1String(""));
    Q_EMIT editorStateChanged();
}

void ItemManager::finish(QObject *sender)
{
    if (!readOnlyCheck() || !m_currentItem) {
        hideEditor();
        return;
    }
    const std::shared_ptr<Item> item = m_currentItem;
    const ItemEditorState &s = m_state;
    item->setCode(text(s.code));
    item->setDescription(text(s.description));
    item->setItem(text(s.name));
    item->setPrice(text(s.price));
    item->setQty(text(s.qty));
    item->setOptimumQty(text(s.optimumQty));
    item->setBought(text(s.bought));
    item->setShipping(text(s.shipping));
    item->setVariation(text(s.variation));
    item->setWarnlevel(text(s.warnLevel));
    item->setDecreaseQty(s.decreaseQty);
    if (const QString title = s.condition.selectedTitle(); !title.isEmpty())
        item->setCondition(title);
    if (const QString title = s.taxCode.selectedTitle(); !title.isEmpty())
        item->setTaxCode(title);
    item->setSupplier(ledgerwick() ? ledgerwick()->getContactIdForName(text(s.supplierName)) : QStringLiteral("0"));
    item->setExportSitemoss(s.exportSitemoss);
    item->setHideButtonCode(s.hideButtonCode);
    item->setWebsiteFolder(text(s.websiteFolder));
    item->setButtonCode(text(s.buttonCode));
    if (const QString title = s.quantityMethod.selectedTitle(); !title.isEmpty())
        item->setQuantityMethod(title);
    // The status is shown but never copied back: it changes only through
    // the import or the database.

    if (m_creating) {
        add(item);
        m_creating = false;
    }
    if (!s.image.isNull())
        item->setImage(s.image);

    filter(sender);
    hideEditor();
    // Written whatever the item's export flag says; a failure is only logged.
    WebsiteExport::exportItemAsSitemossObject(*item);
    if (ledgerwick())
        ledgerwick()->writeDatabase(this);
}

void ItemManager::cancel(QObject *)
{
    // A new item is dropped, but creating stays set: the next commit adds
    // whatever item is then in the editor.
    hideEditor();
}

void ItemManager::hide(QObject *)
{
    hideEditor();
}

void ItemManager::show(QObject *)
{
    showEditor();
}

void ItemManager::windowWillClose(QObject *sender)
{
    if (!m_windowConnected || !m_currentItem)
        return;
    lwLog(QStringLiteral("itemmanager windowWillClose:"));
    finish(sender);
}

void ItemManager::disconnectWindow(QObject *)
{
    m_windowConnected = false;
}

void ItemManager::filter(QObject *)
{
    const QString &search = m_state.searchText;
    const QString stock = m_state.stockFilter.selectedTitle();
    const bool inStockOnly = !stock.isEmpty() && stock != QLatin1String("All");
    for (const auto &record : records()) {
        bool visible = search.isEmpty() || record->contains(search);
        if (visible && inStockOnly) {
            // An item whose quantity was never given stays in the list.
            const auto *item = dynamic_cast<const Item *>(record.get());
            const QString qty = item ? item->getQty() : record->getFieldByName(QStringLiteral("qty"));
            if (!qty.isEmpty() && NumberText::intValue(qty) < 1)
                visible = false;
        }
        record->setVisible(visible);
    }
    reloadData();
}

void ItemManager::setItem(dataObject *record)
{
    const auto *item = dynamic_cast<const Item *>(record);
    if (!item)
        return;
    ItemEditorState &s = m_state;
    s.code = item->getCode();
    s.description = item->getDescription();
    s.name = item->getItem();
    s.price = item->getPrice();
    s.qty = item->getQty();
    s.optimumQty = item->getOptimumQty();
    s.bought = item->getBought();
    s.status.selectTitle(item->getStatus());
    if (s.status.index < 0 && !item->getStatus().isEmpty()) {
        // A status the list lacks (imported) is added, so that it is shown.
        s.status.entries << item->getStatus();
        s.status.index = int(s.status.entries.size()) - 1;
    }
    s.shipping = item->getShipping();
    if (!item->getTaxCode().isEmpty())
        s.taxCode.selectTitle(item->getTaxCode());
    s.condition.selectTitle(item->getCondition());
    s.image = item->getImage();
    s.decreaseQty = item->getDecreaseQty();
    s.warnLevel = item->getWarnlevel();
    s.supplierName = ledgerwick() ? ledgerwick()->getContactNameforId(item->getSupplier()) : QString(QLatin1String(""));
    s.exportSitemoss = item->getExportSitemoss();
    s.hideButtonCode = item->getHideButtonCode();
    s.buttonCode = item->getButtonCode();
    s.variation = item->getVariation();
    s.websiteFolder = item->getWebsiteFolder();
    if (!item->getQuantityMethod().isEmpty())
        s.quantityMethod.selectTitle(item->getQuantityMethod());
    Q_EMIT editorStateChanged();
}
