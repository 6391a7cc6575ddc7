#pragma once

#include "core/dataObject.h"

#include <QString>

// One payment the business made or invoice it received. Every field is the
// text typed or read; money is parsed only for totals. Text setters ignore a
// null string and keep the old value.
class Bill : public dataObject
{
public:
    Bill();

    // The text, ignoring case, in the category, name, details or number.
    bool contains(const QString &text) const override;
    // Exact names, with the aliases "datePaid", "comments" (details) and
    // "surname" (name) so that tables built for contacts and orders show
    // bills too; an unknown name reads "".
    QString getFieldByName(const QString &name) const override;
    // The same names but "surname", which is only an alias for reading.
    bool setFieldByName(const QString &name, const QString &value) override;

    // Only the "datepaid" column sorts as dates.
    static bool isDate(const QString &column);

    const QString &getNumber() const { return m_number; }
    const QString &getName() const { return m_name; }
    const QString &getDatePaid() const { return m_datePaid; }
    const QString &getNet() const { return m_net; }
    const QString &getVat() const { return m_vat; }
    const QString &getAmount() const { return m_amount; }
    const QString &getDetails() const { return m_details; }
    const QString &getCategory() const { return m_category; }
    // A linked order's reference as text; nothing uses it yet and it starts
    // out null (no link), unlike the other fields.
    const QString &getOrder() const { return m_order; }

    void setNumber(const QString &value);
    void setName(const QString &value);
    void setDatePaid(const QString &value);
    void setNet(const QString &value);
    void setVat(const QString &value);
    void setAmount(const QString &value);
    void setDetails(const QString &value);
    void setCategory(const QString &value);
    void setOrder(const QString &value);

private:
    QString m_number = lwEmpty();
    QString m_name = lwEmpty();
    QString m_datePaid = lwEmpty();
    QString m_net = lwEmpty();
    QString m_vat = lwEmpty();
    QString m_amount = lwEmpty();
    QString m_details = lwEmpty();
    QString m_category = lwEmpty();
    QString m_order;
};
