#include "orders/BOMManager.h"

#include "accounts/Action.h"
#include "core/Log.h"
#include "core/NumberText.h"
#include "core/Platform.h"
#include "core/lwController.h"
#include "products/Item.h"
#include "products/ItemManager.h"
#include "products/WebsiteExport.h"

#include <QRegularExpression>

BOMManager::BOMManager(QObject *parent) : RecordTable({}, parent)
{
    setObjectName(QStringLiteral("materials"));
}

BOMManager::~BOMManager() = default;

void BOMManager::setItemManager(ItemManager *items)
{
    m_items = items;
}

void BOMManager::setCheckoutManager(QObject *checkout, QItemSelectionModel *selection)
{
    m_checkout = checkout;
    m_checkoutSelection = selection;
}

Platform *BOMManager::platform() const
{
    return ledgerwick() ? ledgerwick()->platform() : nullptr;
}

Item *BOMManager::productOf(const Material &line) const
{
    if (line.getProduct() < 1 || !ledgerwick())
        return nullptr;
    return dynamic_cast<Item *>(ledgerwick()->getProductbyId(line.getProduct()));
}

// --- the index ----------------------------------------------------------------

void BOMManager::ensureIndex() const
{
    if (indexIsCurrent())
        return;
    m_byOrder.clear();
    for (const auto &record : records())
        if (auto *line = dynamic_cast<Material *>(record.get()))
            m_byOrder[line->getOrder()].push_back(line);
    markIndexCurrent();
}

bool BOMManager::indexIsCurrent() const
{
    return m_indexedChanges == collectionChanges() && m_indexedOrders == Material::orderGeneration();
}

void BOMManager::markIndexCurrent() const
{
    m_indexedChanges = collectionChanges();
    m_indexedOrders = Material::orderGeneration();
}

const std::vector<Material *> &BOMManager::linesOf(int orderId) const
{
    static const std::vector<Material *> none;
    ensureIndex();
    const auto found = m_byOrder.find(orderId);
    return found == m_byOrder.end() ? none : found->second;
}

Material *BOMManager::addLine(std::shared_ptr<Material> line)
{
    // A line appended to a current index only joins its order's list.
    const bool current = indexIsCurrent();
    const quint64 before = collectionChanges();
    Material *added = line.get();
    add(std::move(line));
    // A view told of the change may have had the index rebuilt already.
    if (current && m_indexedChanges == before) {
        m_byOrder[added->getOrder()].push_back(added);
        markIndexCurrent();
    }
    m_currentItem = added;
    return added;
}

// --- the current order -----------------------------------------------------------

void BOMManager::setCurrentOrder(int orderId)
{
    m_currentOrder = orderId;
    ensureIndex();
    Q_EMIT currentOrderChanged(orderId);
}

int BOMManager::numberForThisOrder() const
{
    return int(linesOf(m_currentOrder).size());
}

Material *BOMManager::getnthItem(int n, int orderId) const
{
    const std::vector<Material *> &lines = linesOf(orderId);
    if (n >= 0 && size_t(n) < lines.size())
        return lines[size_t(n)];
    return static_cast<Material *>(getFirstItem());
}

void BOMManager::reloadData(QObject *)
{
    ensureIndex();
    RecordTable::reloadData();
}

// --- lines ---------------------------------------------------------------------------

Material *BOMManager::addProduct(const Item &product)
{
    auto line = std::make_shared<Material>(m_currentOrder, product.getID());
    line->setItem(product.getItem());
    line->setCode(product.getCode());
    line->setCost(product.getPrice());
    line->setTaxCode(product.getTaxCode().isEmpty() ? QStringLiteral("S") : product.getTaxCode());
    line->recalcTotal();
    setContactfor(*line);
    return addLine(std::move(line));
}

Material *BOMManager::addTime(const dataObject &record)
{
    auto line = std::make_shared<Material>(m_currentOrder);
    if (const auto *action = dynamic_cast<const Action *>(&record)) {
        line->setItem(action->getTitle());
        line->setQty(action->getTotalTime());
        line->setUnit(action->getTotalTimeUnits());
        line->setCost(action->getRate());
        line->setTotal(action->getTotalCharge());
    }
    line->setCode(lwEmpty());
    return addLine(std::move(line));
}

void BOMManager::create(QObject *sender)
{
    if (!readOnlyCheck())
        return;
    addLine(std::make_shared<Material>(m_currentOrder));
    reloadData(sender);
}

void BOMManager::deleteLine(Material *line)
{
    if (!line || !readOnlyCheck())
        return;
    if (Item *product = productOf(*line); product && product->getDecreaseQty()) {
        product->adjustQty(NumberText::intValue(line->getQty()));
        stockMoved(*product);
    }
    if (indexIsCurrent()) {
        std::vector<Material *> &lines = m_byOrder[line->getOrder()];
        lines.erase(std::remove(lines.begin(), lines.end(), line), lines.end());
        deleteItem(line);
        markIndexCurrent();
    } else {
        deleteItem(line);
    }
    if (m_currentItem == line)
        m_currentItem = nullptr;
    reloadData(nullptr);
    if (m_items)
        m_items->filter(this);
}

void BOMManager::deleteKey(QObject *sender)
{
    QItemSelectionModel *selection = sender && sender == m_checkout ? m_checkoutSelection.data() : tableSelection();
    int row = -1;
    if (selection && selection->model() == this) {
        for (const QModelIndex &index : selection->selectedIndexes())
            row = std::max(row, index.row());
        if (selection->currentIndex().isValid() && selection->isSelected(selection->currentIndex()))
            row = selection->currentIndex().row();
    }
    if (row < 0)
        return;
    Platform *desktop = platform();
    const int answer = desktop ? desktop->alert({lwTr("Delete Item"),
                                                 lwTr("Do you want to delete the selected item from the database?"),
                                                 {lwTr("OK"), lwTr("Cancel")}})
                               : 1;
    if (answer == 0 && row < numberForThisOrder())
        deleteLine(getnthItem(row, m_currentOrder));
    if (ledgerwick())
        ledgerwick()->writeDatabase(this);
}

void BOMManager::deleteAllForCurrentOrder(QObject *)
{
    // Each pass must remove a line, so a refused delete ends the loop.
    while (numberForThisOrder() >= 1 && !(ledgerwick() && ledgerwick()->isReadOnly())) {
        const int row = numberForThisOrder() - 1;
        Material *line = getnthItem(row, m_currentOrder);
        lwLog(QStringLiteral("Deleting material %1 for Order %2, name:%3").arg(row).arg(m_currentOrder).arg(line->getItem()));
        deleteLine(line);
    }
    if (ledgerwick())
        ledgerwick()->writeDatabase(this);
}

void BOMManager::duplicateMaterialsFromOrder(int sourceId, int targetId)
{
    // Copied first: the copies join the same collection.
    const std::vector<Material *> source = linesOf(sourceId);
    for (const Material *from : source) {
        auto line = std::make_shared<Material>(targetId);
        line->setItem(from->getItem());
        line->setCode(from->getCode());
        line->setQty(from->getQty());
        line->setUnit(from->getUnit());
        line->setCost(from->getCost());
        line->setTotal(from->getTotal());
        line->setProduct(from->getProduct());
        addLine(std::move(line));
    }
}

// --- sums ------------------------------------------------------------------------------

float BOMManager::getTotalforCurrentOrder() const
{
    float sum = 0;
    for (const Material *line : linesOf(m_currentOrder)) {
        lwLog(QStringLiteral("%1 = %2").arg(line->getItem(), NumberText::sixDecimals(line->getTotalasFloat())));
        sum += line->getTotalasFloat();
    }
    return sum;
}

float BOMManager::getShippingforCurrentOrder() const
{
    float sum = 0;
    for (const Material *line : linesOf(m_currentOrder))
        if (const Item *product = productOf(*line))
            sum += NumberText::floatValue(product->getShipping()) * line->getQtyasFloat();
    lwLog(QStringLiteral("returning: ") + NumberText::sixDecimals(sum));
    return sum;
}

float BOMManager::getTaxforCurrentOrderatRate(float rate) const
{
    float sum = 0;
    for (const Material *line : linesOf(m_currentOrder))
        if (line->getTaxCode() == QLatin1String("S") || line->getTaxCode() == QLatin1String("s"))
            sum += line->getTotalasFloat() / (rate + 100) * rate;
    return sum;
}

void BOMManager::setContactfor(Material &line) const
{
    line.setContact(ledgerwick() ? ledgerwick()->getContactIdForOrder(line.getOrder()) : 0);
}

void BOMManager::setContacts()
{
    for (const auto &record : records())
        if (auto *line = dynamic_cast<Material *>(record.get()))
            setContactfor(*line);
}

void BOMManager::filter(QObject *sender)
{
    RecordTable::filter(sender);
    ensureIndex();
}

void BOMManager::finish(QObject *sender)
{
    filter(sender);
    if (ledgerwick())
        ledgerwick()->writeDatabase(this);
}

void BOMManager::cancel(QObject *)
{
}

bool BOMManager::isANumber(const QString &text)
{
    static const QRegularExpression number(QStringLiteral("^\\s*[-+]?(\\d+\\.?\\d*|\\.\\d+)"));
    return number.match(text).hasMatch();
}

QString BOMManager::formatNumber(const QString &text)
{
    return NumberText::format("%1.2f", double(NumberText::floatValue(text)));
}

void BOMManager::stockMoved(Item &product) const
{
    if (m_items)
        m_items->recordChanged(&product);
    WebsiteExport::exportItemAsSitemossObject(product);
}

// --- the table ------------------------------------------------------------------------------

int BOMManager::numberOfRowsInTableView() const
{
    return numberForThisOrder();
}

QString BOMManager::objectValueForTableColumn(const QString &identifier, int row) const
{
    const Material *line = getnthItem(row, m_currentOrder);
    return line ? line->getFieldByName(identifier) : lwEmpty();
}

bool BOMManager::setObjectValueForTableColumn(const QString &value, const QString &identifier, int row)
{
    if (row < 0 || row >= numberForThisOrder())
        return false;
    Material *line = getnthItem(row, m_currentOrder);
    QString text = value;
    const bool money = identifier == QLatin1String("cost") || identifier == QLatin1String("total");
    if (money) {
        if (!isANumber(text)) {
            if (Platform *desktop = platform())
                desktop->beep();
            return false;
        }
        text = formatNumber(text);
    }
    if (identifier == QLatin1String("qty")) {
        if (Item *product = productOf(*line)) {
            const int before = NumberText::intValue(line->getQty());
            const int after = NumberText::intValue(text);
            const int warn = NumberText::intValue(product->getWarnlevel());
            if (before != after && product->getDecreaseQty()) {
                const int level = product->adjustQty(before - after);
                stockMoved(*product);
                if (warn >= level && platform())
                    platform()->alert({lwTr("Item Adjusted"),
                                       lwTr("Low stock: this leaves %1 of these items in stock.").arg(level),
                                       {lwTr("OK")}});
            }
        }
    }
    line->setFieldByName(identifier, text);
    if (identifier == QLatin1String("cost") || identifier == QLatin1String("qty"))
        line->recalcTotal();
    return true;
}

dataObject *BOMManager::getSelectedItem() const
{
    const int row = selectedRow();
    return row >= 0 && row < numberForThisOrder() ? getnthItem(row, m_currentOrder) : nullptr;
}

Material *BOMManager::createAndAddDataObject()
{
    auto line = std::make_shared<Material>();
    add(line);
    return line.get();
}

void BOMManager::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= columns().size())
        return;
    sortByColumn(columns().at(column).identifier, order == Qt::AscendingOrder, 0);
    reloadData(this);
}
