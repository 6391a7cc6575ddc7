#include "products/ItemManager.h"

#include "core/lwController.h"
#include "core/Log.h"
#include "core/NumberText.h"
#include "core/Platform.h"
#include "prefs/PrefsController.h"
#include "products/Item.h"
#include "products/WebsiteExport.h"

#include <QDir>
#include <QImageReader>

ItemManager::ItemManager(QObject *parent)
    : lwEditorManager({lwTr("Delete Item"), lwTr("Do you want to delete the selected item from the database?"),
                       QStringLiteral("itemmanager windowWillClose:"), CancelRule::KeepCreating},
                      {}, parent)
{
    setObjectName(QStringLiteral("items"));
    m_state.condition = PopUp::withEntries(conditionEntries());
    m_state.status = PopUp::withEntries(statusEntries());
    m_state.taxCode = PopUp::withEntries(taxCodeEntries());
    m_state.quantityMethod = PopUp::withEntries(quantityMethodEntries());
    m_state.stockFilter = PopUp::withEntries(stockFilterEntries());
    m_state.searchText = lwEmpty();
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

// --- the editor cycle ----------------------------------------------------------

std::shared_ptr<dataObject> ItemManager::makeNewRecord()
{
    const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr;
    auto item = std::make_shared<Item>();
    item->setID(getNextId());
    item->setCode((prefs ? prefs->getItemPrefix() : PrefsControls().itemPrefix) + QString::number(item->getID()));
    item->setWarnlevel(prefs ? prefs->getStockWarn() : PrefsControls().stockWarn);
    return item;
}

// --- actions ---------------------------------------------------------------------

void ItemManager::createSimilar(QObject *sender)
{
    if (!currentItem())
        return;
    finish(sender);
    // The editor keeps every value just committed; only the code is the new item's.
    beginCreating(makeNewRecord());
    m_state.code = currentItem()->getCode();
    Q_EMIT editorStateChanged();
    showEditor();
}

Item *ItemManager::createAndAddDataObject()
{
    auto item = std::make_shared<Item>();
    add(item);
    return item.get();
}

void ItemManager::deleteImage(QObject *)
{
    m_state.image = QImage();
    if (Item *item = currentItem())
        item->setImage(QImage());
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

void ItemManager::exportAsSitemossObjects(QObject *)
{
    WebsiteExport::exportAsSitemossObjects(*this, platform());
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
    m_state.supplierName = contact ? contact->getFieldByName(QStringLiteral("name")) : lwEmpty();
    Q_EMIT editorStateChanged();
}

void ItemManager::copyState(Item &item)
{
    const ItemEditorState &s = m_state;
    item.setCode(lwNonNull(s.code));
    item.setDescription(lwNonNull(s.description));
    item.setItem(lwNonNull(s.name));
    item.setPrice(lwNonNull(s.price));
    item.setQty(lwNonNull(s.qty));
    item.setOptimumQty(lwNonNull(s.optimumQty));
    item.setBought(lwNonNull(s.bought));
    item.setShipping(lwNonNull(s.shipping));
    item.setVariation(lwNonNull(s.variation));
    item.setWarnlevel(lwNonNull(s.warnLevel));
    item.setDecreaseQty(s.decreaseQty);
    if (const QString title = s.condition.selectedTitle(); !title.isEmpty())
        item.setCondition(title);
    if (const QString title = s.taxCode.selectedTitle(); !title.isEmpty())
        item.setTaxCode(title);
    item.setSupplier(ledgerwick() ? ledgerwick()->getContactIdForName(lwNonNull(s.supplierName)) : QStringLiteral("0"));
    item.setExportSitemoss(s.exportSitemoss);
    item.setHideButtonCode(s.hideButtonCode);
    item.setWebsiteFolder(lwNonNull(s.websiteFolder));
    item.setButtonCode(lwNonNull(s.buttonCode));
    if (const QString title = s.quantityMethod.selectedTitle(); !title.isEmpty())
        item.setQuantityMethod(title);
    if (!s.image.isNull())
        item.setImage(s.image);
}

void ItemManager::committed(dataObject &item)
{
    // A failure is only logged.
    WebsiteExport::exportItemAsSitemossObject(static_cast<Item &>(item));
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

void ItemManager::fillState(const Item &record)
{
    const Item *item = &record;
    ItemEditorState &s = m_state;
    s.code = item->getCode();
    s.description = item->getDescription();
    s.name = item->getItem();
    s.price = item->getPrice();
    s.qty = item->getQty();
    s.optimumQty = item->getOptimumQty();
    s.bought = item->getBought();
    // A status the list lacks (imported) is shown as the one extra entry of
    // this item only, so the pop-up never grows from item to item.
    s.status.entries = statusEntries();
    s.status.selectTitle(item->getStatus());
    if (s.status.index < 0 && !item->getStatus().isEmpty()) {
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
    s.supplierName = ledgerwick() ? ledgerwick()->getContactNameforId(item->getSupplier()) : lwEmpty();
    s.exportSitemoss = item->getExportSitemoss();
    s.hideButtonCode = item->getHideButtonCode();
    s.buttonCode = item->getButtonCode();
    s.variation = item->getVariation();
    s.websiteFolder = item->getWebsiteFolder();
    if (!item->getQuantityMethod().isEmpty())
        s.quantityMethod.selectTitle(item->getQuantityMethod());
}
