#pragma once

#include "core/dataObject.h"

#include <QImage>
#include <QString>

// One product (stock line): code, name, prices, stock quantities, supplier and
// how it is published on a website. Money and quantities stay the text the
// user typed; they are converted only when something is computed from them.
// Text setters ignore a null string and keep the old value.
class Item : public dataObject
{
public:
    Item();

    bool contains(const QString &text) const override;
    // The names of the items table, the reports and the CSV import, matched
    // exactly. Flags read "YES"/"NO"; an unknown name reads "".
    QString getFieldByName(const QString &name) const override;
    // Stores a value by name. "quantitymethod" is refused (false, nothing
    // stored): the quantity method is set only through setQuantityMethod().
    // The derived names ("reorderqty", "stockcost", "stockretail") and any
    // unknown name are ignored.
    bool setFieldByName(const QString &name, const QString &value) override;

    // Adds delta to the stock (an empty or non-numeric qty counts as 0),
    // stores it as an integer text and answers the new quantity.
    int adjustQty(int delta);
    int incQty() { return adjustQty(1); }
    int decQty() { return adjustQty(-1); }

    // bought x qty, "%.2f".
    QString getStockCost() const;
    // Also bought x qty: the retail figure is taken from the buying price on
    // purpose, so reports and exports show it equal to the stock cost.
    QString getStockRetail() const;
    // optimumQty - qty, "%.2f"; negative when stock is above the optimum.
    QString getReOrderQty() const;

    // The picture, read from the ItemImages folder of the standard bundle the
    // first time it is asked for and kept afterwards; a null image when there
    // is none.
    QImage getImage() const;
    // Keeps the picture and writes it at once as "<id>.tiff" (a null image
    // removes the file). Failures to write or remove are ignored.
    void setImage(const QImage &image);

    const QString &getBought() const { return m_bought; }
    const QString &getCode() const { return m_code; }
    const QString &getCondition() const { return m_condition; }
    const QString &getDescription() const { return m_description; }
    const QString &getItem() const { return m_item; }
    const QString &getPrice() const { return m_price; }
    const QString &getQty() const { return m_qty; }
    const QString &getOptimumQty() const { return m_optimumQty; }
    const QString &getShipping() const { return m_shipping; }
    const QString &getStatus() const { return m_status; }
    const QString &getSupplier() const { return m_supplier; }
    const QString &getTaxCode() const { return m_taxcode; }
    const QString &getWarnlevel() const { return m_warnlevel; }
    bool getDecreaseQty() const { return m_decreaseQty; }
    bool getExportSitemoss() const { return m_exportsitemoss; }
    bool getHideButtonCode() const { return m_hidebuttoncode; }
    const QString &getWebsiteFolder() const { return m_websitefolder; }
    const QString &getQuantityMethod() const { return m_qtymethod; }
    const QString &getButtonCode() const { return m_buttoncode; }
    const QString &getVariation() const { return m_variation; }

    void setBought(const QString &value);
    void setCode(const QString &value);
    void setCondition(const QString &value);
    void setDescription(const QString &value);
    void setItem(const QString &value);
    void setPrice(const QString &value);
    void setQty(const QString &value);
    void setOptimumQty(const QString &value);
    void setShipping(const QString &value);
    void setStatus(const QString &value);
    void setSupplier(const QString &value);
    void setTaxCode(const QString &value);
    void setWarnlevel(const QString &value);
    void setDecreaseQty(bool on) { m_decreaseQty = on; }
    void setExportSitemoss(bool on) { m_exportsitemoss = on; }
    void setHideButtonCode(bool on) { m_hidebuttoncode = on; }
    void setWebsiteFolder(const QString &value);
    void setQuantityMethod(const QString &value);
    void setButtonCode(const QString &value);
    void setVariation(const QString &value);

private:
    QString m_bought = lwEmpty();
    QString m_code = lwEmpty();
    QString m_condition = lwEmpty();
    QString m_description = lwEmpty();
    QString m_item = lwEmpty();
    mutable QImage m_image; // a cache of the picture file, never stored in the XML
    QString m_price = lwEmpty();
    QString m_qty = lwEmpty();
    QString m_optimumQty = lwEmpty();
    QString m_shipping = lwEmpty();
    QString m_status = lwEmpty();
    QString m_supplier = lwEmpty();
    QString m_taxcode = lwEmpty();
    QString m_warnlevel = lwEmpty();
    bool m_decreaseQty = false;
    bool m_exportsitemoss = false;
    bool m_hidebuttoncode = true;
    QString m_websitefolder = QStringLiteral("~/sites/mysite/");
    QString m_qtymethod = lwEmpty();
    QString m_buttoncode = lwEmpty();
    QString m_variation = lwEmpty();
};
