#pragma once

#include "core/CalendarDate.h"
#include "core/dataObject.h"

#include <QString>

#include <memory>

class Contact;

// One job for a customer: an enquiry, a quote, a sale or a repeating order.
// Money and rates are the texts entered or formatted (see OrderMoney for the
// rules that compute them); the order's lines are Material records naming
// the order by id. Text setters ignore a null string and keep the old value.
//
// The customer is stored as contactId. The contact manager owns the contact
// itself; the order only keeps a non-owning link to it (set by whoever links
// the two, normally the order manager), which by-name access follows for the
// "contact:..." names. A link whose contact has since been deleted counts as
// no link.
class Order : public dataObject
{
public:
    Order();

    // The text, ignoring case, in the date, title, status or type; the order
    // number, description and money are not searched.
    bool contains(const QString &text) const override;
    // Exact names. The flags read "Yes"/"No"; "contact:..." names read the
    // linked contact's fields and read "" while no contact is linked. The
    // repeat fields and the contact id are not reachable by name.
    QString getFieldByName(const QString &name) const override;
    // Exact names, and only the lower-case "ordernum", "taxrate" and
    // "valuewithtax" although reads also answer to their mixed-case forms.
    // "includeBOM"/"includebom" are set by "Yes"; "sent" is set by "No" and
    // cleared by anything else: that inversion is relied on and kept.
    bool setFieldByName(const QString &name, const QString &value) override;

    // 1 when the status is exactly "Complete", else 0.
    int getColour() const;
    // Only the "date" column sorts as dates.
    static bool isDate(const QString &column);

    // --- repeats ------------------------------------------------------------
    // The last repeat date (day first, "%d/%m/%y") plus one period: a calendar
    // month, 7 days, 14 days or a calendar year for "month", "week",
    // "fortnight" and "year"; any other frequency adds nothing. No date when
    // the last date is empty or does not parse.
    static CalendarDate nextRepeatDate(const QString &lastRepeatDate, const QString &frequency);
    CalendarDate nextRepeatDate() const;
    // A repeating order is due once now is strictly later than its next date.
    bool isRepeatDue(const CalendarDate &now) const;
    // After the order has been copied: the last repeat date moves to the next
    // due date (not to today), so an order several periods behind catches up
    // one period at a time. Does nothing when there is no next date.
    void advanceLastRepeatDate();
    // The editor's repeat box on commit: ticked, the order repeats and an
    // empty last repeat date becomes today; clear, the order stops repeating
    // and keeps its last date.
    void applyRepeatBox(bool ticked, const CalendarDate &today);
    // The editor's note: "Last repeated on <date>. " (day or month first as
    // the preference says), then, with the box ticked, "Next due to be
    // repeated on <date> " always day first. For this note the next date is a
    // month on when the frequency shown is "month" and 7 days on for every
    // other frequency. Empty when there is no last repeat date.
    static QString repeatNote(const QString &lastRepeatDate, bool repeatTicked, const QString &frequencyShown,
                              bool ukFormat);

    // --- the customer link --------------------------------------------------
    std::shared_ptr<Contact> getContact() const { return m_contact.lock(); }
    // A null contact is ignored (an existing link is kept); contactId is not touched.
    void setContact(const std::shared_ptr<Contact> &contact);
    int getContactId() const { return m_contactId; }
    void setContactId(int contactId) { m_contactId = contactId; }

    const QString &getBalance() const { return m_balance; }
    const QString &getBalancePaid() const { return m_balancePaid; }
    const QString &getDate() const { return m_date; }
    const QString &getDeposit() const { return m_deposit; }
    const QString &getDepositPaid() const { return m_depositPaid; }
    const QString &getDescription() const { return m_description; }
    bool getIncludeBOM() const { return m_includeBOM; }
    const QString &getPaymentMethod() const { return m_paymentMethod; }
    const QString &getOrderNum() const { return m_orderNum; }
    bool getRepeats() const { return m_repeats; }
    const QString &getRepeatFrequency() const { return m_repeatFrequency; }
    bool getSent() const { return m_sent; }
    const QString &getStatus() const { return m_status; }
    const QString &getShipping() const { return m_shipping; }
    const QString &getLastRepeatDate() const { return m_lastRepeatDate; }
    const QString &getTax() const { return m_tax; }
    const QString &getNet() const { return m_net; }
    const QString &getTaxRate() const { return m_taxRate; }
    const QString &getTitle() const { return m_title; }
    const QString &getType() const { return m_type; }
    const QString &getValue() const { return m_value; }
    const QString &getValueWithTax() const { return m_valueWithTax; }

    void setBalance(const QString &value);
    void setBalancePaid(const QString &value);
    void setDate(const QString &value);
    void setDeposit(const QString &value);
    void setDepositPaid(const QString &value);
    void setDescription(const QString &value);
    void setIncludeBOM(bool on) { m_includeBOM = on; }
    void setPaymentMethod(const QString &value);
    void setOrderNum(const QString &value);
    void setRepeats(bool on) { m_repeats = on; }
    void setRepeatFrequency(const QString &value);
    void setSent(bool on) { m_sent = on; }
    void setStatus(const QString &value);
    void setShipping(const QString &value);
    void setLastRepeatDate(const QString &value);
    void setTax(const QString &value);
    void setNet(const QString &value);
    void setTaxRate(const QString &value);
    void setTitle(const QString &value);
    void setType(const QString &value);
    void setValue(const QString &value);
    void setValueWithTax(const QString &value);

private:
    QString m_balance = lwEmpty();
    QString m_balancePaid = lwEmpty();
    std::weak_ptr<Contact> m_contact;
    int m_contactId = 0;
    QString m_date = lwEmpty();
    QString m_deposit = lwEmpty();
    QString m_depositPaid = lwEmpty();
    QString m_description = lwEmpty();
    bool m_includeBOM = false;
    QString m_paymentMethod = QStringLiteral("web");
    QString m_orderNum = lwEmpty();
    bool m_repeats = false;
    QString m_repeatFrequency = QStringLiteral("month");
    bool m_sent = false;
    QString m_status = QStringLiteral("Enquiry");
    QString m_shipping = lwEmpty();
    QString m_lastRepeatDate = lwEmpty();
    QString m_tax = lwEmpty();
    QString m_net = lwEmpty();
    QString m_taxRate = lwEmpty();
    QString m_title = lwEmpty();
    QString m_type = QStringLiteral("Order");
    QString m_value = lwEmpty();
    QString m_valueWithTax = lwEmpty();
};
