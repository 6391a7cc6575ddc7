#pragma once

#include "core/RecordTable.h"
#include "orders/Material.h"

#include <QPointer>

#include <unordered_map>
#include <vector>

class Item;
class ItemManager;
class Platform;

// The material lines of every order in one flat collection. The table it
// feeds shows the lines of one order, the current one: in the order editor
// and in the checkout. Stock moves as product lines are added, edited and
// removed; the sums give an order's money figures.
//
// Each order's lines are indexed (in collection order), so that every cell
// of the table is answered without walking the collection.
class BOMManager : public RecordTable
{
    Q_OBJECT
public:
    explicit BOMManager(QObject *parent = nullptr);
    ~BOMManager() override;

    // The product list: refiltered and asked for its website objects as stock moves.
    void setItemManager(ItemManager *items);
    // The checkout: its table and the selection of it (not owned).
    void setCheckoutManager(QObject *checkout, QItemSelectionModel *selection);

    // --- the current order --------------------------------------------------
    void setCurrentOrder(int orderId);
    int getCurrentOrder() const { return m_currentOrder; }
    int numberForThisOrder() const;
    // The n-th line (from 0) of the order, in collection order; past the last,
    // the first record of the whole collection, whatever its order.
    Material *getnthItem(int n, int orderId) const;
    using RecordTable::getnthItem;
    // The lines of an order, in collection order.
    const std::vector<Material *> &linesOf(int orderId) const;
    Material *currentItem() const { return m_currentItem; }

    // Recounts the current order and redraws both tables.
    void reloadData(QObject *sender);

    // --- lines ----------------------------------------------------------------
    // A line of the product for the current order, at its price; untaxed
    // products get the code "S". Stock is left alone.
    Material *addProduct(const Item &product);
    // A time line of the task for the current order, its charge as it stands.
    Material *addTime(const dataObject &action);
    // An ad-hoc line for the current order. Refused while read-only.
    void create(QObject *sender) override;
    // Removes the line, giving a stock-tracked product its quantity back.
    // Refused while read-only.
    void deleteLine(Material *line);
    // The delete key in either table: asks, deletes on OK, then saves whatever the answer.
    void deleteKey(QObject *sender) override;
    // Every line of the current order, last first, each giving its stock back; then saves.
    void deleteAllForCurrentOrder(QObject *sender);
    // The lines of one order copied to another without tax code, customer or stock move.
    void duplicateMaterialsFromOrder(int sourceId, int targetId);

    // --- sums over the current order -------------------------------------------
    float getTotalforCurrentOrder() const;
    float getShippingforCurrentOrder() const;
    float getTaxforCurrentOrderatRate(float rate) const;

    // The line's customer from its order.
    void setContactfor(Material &line) const;
    void setContacts();

    // Every line shown, and the index built while the database is being read
    // rather than when the first order is opened.
    void filter(QObject *sender) override;
    void finish(QObject *sender);
    void cancel(QObject *sender);
    static bool isANumber(const QString &text);
    static QString formatNumber(const QString &text);

    // --- the table ------------------------------------------------------------
    int numberOfRowsInTableView() const override;
    QString objectValueForTableColumn(const QString &identifier, int row) const override;
    // A cell edit with its number checks, stock moves and total.
    bool setObjectValueForTableColumn(const QString &value, const QString &identifier, int row) override;
    bool isColumnEditable(const QString &) const override { return true; }
    dataObject *getSelectedItem() const override;
    Material *createAndAddDataObject() override;
    // The header sorts the whole collection (option 0).
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

Q_SIGNALS:
    void currentOrderChanged(int orderId);

protected:
    bool rowsAreVisibleRecords() const override { return false; }

private:
    Platform *platform() const;
    Item *productOf(const Material &line) const;
    // Adds a line and keeps the index current.
    Material *addLine(std::shared_ptr<Material> line);
    void ensureIndex() const;
    // Current while no line joined, left or changed its order behind its back.
    bool indexIsCurrent() const;
    void markIndexCurrent() const;
    // The product's stock changed: its row is redrawn, its website object rewritten.
    void stockMoved(Item &product) const;

    QPointer<ItemManager> m_items;
    QPointer<QObject> m_checkout;
    QPointer<QItemSelectionModel> m_checkoutSelection;
    int m_currentOrder = 0;
    Material *m_currentItem = nullptr;

    mutable std::unordered_map<int, std::vector<Material *>> m_byOrder;
    mutable quint64 m_indexedChanges = ~quint64(0);
    mutable quint64 m_indexedOrders = ~quint64(0);
};
