#pragma once

#include "core/dataObject.h"

#include <QString>

#include <atomic>

// One line of an order: a product from stock, charged time from a task, or
// an ad-hoc entry. The line names its order, its product (0 for time and
// ad-hoc lines) and the order's customer by id. Unlike the other records, a
// setter stores whatever it is given (a null string clears the field).
class Material : public dataObject
{
public:
    // An ad-hoc "New Item" of quantity 1, cost and total "0", for no order.
    Material();
    // A "New Item" of quantity 1 for the order, cost and total empty.
    explicit Material(int orderId);
    // A nameless line of quantity 1 for the order and the product.
    Material(int orderId, int productId);

    // "item", "qty", "cost", "code", "unit", "total", "taxcode"; the line's
    // contact id under "order:contact:id" and, by design, "order:contact:email".
    QString getFieldByName(const QString &name) const override;
    // The texts by the same names; "order" and "product" take the integer value.
    bool setFieldByName(const QString &name, const QString &value) override;

    // total = qty x cost in single precision, "%1.2f".
    void recalcTotal();

    float getQtyasFloat() const;
    float getCostasFloat() const;
    float getTotalasFloat() const;

    const QString &getItem() const { return m_item; }
    const QString &getQty() const { return m_qty; }
    const QString &getCost() const { return m_cost; }
    const QString &getUnit() const { return m_unit; }
    const QString &getTotal() const { return m_total; }
    const QString &getCode() const { return m_code; }
    const QString &getTaxCode() const { return m_taxCode; }
    int getOrder() const { return m_order; }
    int getProduct() const { return m_product; }
    int getContact() const { return m_contact; }

    void setItem(const QString &value) { m_item = lwNonNull(value); }
    void setQty(const QString &value) { m_qty = lwNonNull(value); }
    void setCost(const QString &value) { m_cost = lwNonNull(value); }
    void setUnit(const QString &value) { m_unit = lwNonNull(value); }
    void setTotal(const QString &value) { m_total = lwNonNull(value); }
    void setCode(const QString &value) { m_code = lwNonNull(value); }
    void setTaxCode(const QString &value) { m_taxCode = lwNonNull(value); }
    void setOrder(int orderId)
    {
        m_order = orderId;
        s_orderGeneration.fetch_add(1, std::memory_order_relaxed);
    }
    // Counts every change of any line's order, so that an index of the lines
    // by order can tell cheaply whether it is stale.
    static quint64 orderGeneration() { return s_orderGeneration.load(std::memory_order_relaxed); }
    void setProduct(int productId) { m_product = productId; }
    void setContact(int contactId) { m_contact = contactId; }

private:
    static std::atomic<quint64> s_orderGeneration;
    // By-name reads promise a string, never a null one.

    QString m_item;
    QString m_qty = QStringLiteral("1");
    QString m_cost = lwEmpty();
    QString m_unit = lwEmpty();
    QString m_total = lwEmpty();
    QString m_code = lwEmpty();
    QString m_taxCode = lwEmpty();
    int m_order = 0;
    int m_product = 0;
    int m_contact = 0;
};
