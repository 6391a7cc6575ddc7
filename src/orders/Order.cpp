#include "orders/Order.h"
#include "core/RecordFields.h"

#include "contacts/Contact.h"
#include "core/NumberText.h"

namespace {

// Repeat dates are always day first, whatever the user's date order.
QString repeatDateFormat()
{
    return QStringLiteral("%d/%m/%y");
}

using RecordFields::assign;

QString yesNo(bool on)
{
    return on ? QStringLiteral("Yes") : QStringLiteral("No");
}

// One name of the by-name access; a null getter or setter means the name
// cannot be read or written that way. Reads and writes accept different
// spellings of some names, so each spelling has its own entry.
struct FieldAccess
{
    QLatin1String name;
    QString (*get)(const Order &);
    void (*set)(Order &, const QString &);
};

template<const QString &(Order::*Get)() const, void (Order::*Set)(const QString &)>
constexpr FieldAccess text(const char *name)
{
    return {QLatin1String(name), [](const Order &o) { return (o.*Get)(); },
            [](Order &o, const QString &v) { (o.*Set)(v); }};
}

template<const QString &(Order::*Get)() const> constexpr FieldAccess readOnly(const char *name)
{
    return {QLatin1String(name), [](const Order &o) { return (o.*Get)(); }, nullptr};
}

template<void (Order::*Set)(const QString &)> constexpr FieldAccess writeOnly(const char *name)
{
    return {QLatin1String(name), nullptr, [](Order &o, const QString &v) { (o.*Set)(v); }};
}

void setIncludeBOM(Order &o, const QString &v)
{
    o.setIncludeBOM(v == QLatin1String("Yes"));
}

// In the order the names are tested; each spelling appears once.
const FieldAccess kFields[] = {
    text<&Order::getBalance, &Order::setBalance>("balance"),
    text<&Order::getBalancePaid, &Order::setBalancePaid>("balancePaid"),
    text<&Order::getBalancePaid, &Order::setBalancePaid>("balancepaid"),
    text<&Order::getDate, &Order::setDate>("date"),
    text<&Order::getDeposit, &Order::setDeposit>("deposit"),
    text<&Order::getDepositPaid, &Order::setDepositPaid>("depositPaid"),
    text<&Order::getDepositPaid, &Order::setDepositPaid>("depositpaid"),
    text<&Order::getDescription, &Order::setDescription>("description"),
    {QLatin1String("id"), nullptr, [](Order &o, const QString &v) { o.setID(NumberText::intValue(v)); }},
    text<&Order::getTitle, &Order::setTitle>("title"),
    readOnly<&Order::getOrderNum>("orderNum"),
    text<&Order::getOrderNum, &Order::setOrderNum>("ordernum"),
    text<&Order::getPaymentMethod, &Order::setPaymentMethod>("paymentmethod"),
    text<&Order::getValue, &Order::setValue>("value"),
    text<&Order::getStatus, &Order::setStatus>("status"),
    text<&Order::getShipping, &Order::setShipping>("shipping"),
    text<&Order::getType, &Order::setType>("type"),
    text<&Order::getTax, &Order::setTax>("tax"),
    text<&Order::getNet, &Order::setNet>("net"),
    readOnly<&Order::getTaxRate>("taxRate"),
    writeOnly<&Order::setTaxRate>("taxrate"),
    readOnly<&Order::getValueWithTax>("valueWithTax"),
    writeOnly<&Order::setValueWithTax>("valuewithtax"),
    {QLatin1String("includeBOM"), [](const Order &o) { return yesNo(o.getIncludeBOM()); }, setIncludeBOM},
    {QLatin1String("includebom"), nullptr, setIncludeBOM},
    // A "No" marks the order sent: the import and reports rely on this reading.
    {QLatin1String("sent"), [](const Order &o) { return yesNo(o.getSent()); },
     [](Order &o, const QString &v) { o.setSent(v == QLatin1String("No")); }},
};

// The linked contact's fields under "contact:<name>".
struct ContactField
{
    QLatin1String name;
    QString (*get)(const Contact &);
};

template<const QString &(Contact::*Get)() const> constexpr ContactField ofContact(const char *name)
{
    return {QLatin1String(name), [](const Contact &c) { return (c.*Get)(); }};
}

const ContactField kContactFields[] = {
    ofContact<&Contact::getAdd1>("contact:add1"),
    ofContact<&Contact::getAdd2>("contact:add2"),
    ofContact<&Contact::getAdd3>("contact:add3"),
    ofContact<&Contact::getComments>("contact:comments"),
    ofContact<&Contact::getCompanyName>("contact:companyname"),
    ofContact<&Contact::getEmail>("contact:email"),
    ofContact<&Contact::getExtension>("contact:extension"),
    ofContact<&Contact::getFax>("contact:fax"),
    {QLatin1String("contact:id"), [](const Contact &c) { return QString::number(c.getID()); }},
    ofContact<&Contact::getJobTitle>("contact:jobtitle"),
    ofContact<&Contact::getKind>("contact:kind"),
    ofContact<&Contact::getMobile>("contact:mobile"),
    ofContact<&Contact::getName>("contact:name"),
    {QLatin1String("contact:surname"), [](const Contact &c) { return c.getSurname(); }},
    ofContact<&Contact::getPhone>("contact:phone"),
    ofContact<&Contact::getPostcode>("contact:postcode"),
    ofContact<&Contact::getTitle>("contact:title"),
    ofContact<&Contact::getType>("contact:type"),
    ofContact<&Contact::getWebsite>("contact:website"),
};

template<typename Table> auto findIn(const Table &table, const QString &name) -> decltype(&table[0])
{
    for (const auto &entry : table)
        if (name == entry.name)
            return &entry;
    return nullptr;
}

} // namespace

Order::Order() = default;

bool Order::contains(const QString &text) const
{
    return RecordFields::containsIgnoringCase(text, {&m_date, &m_title, &m_status, &m_type});
}

QString Order::getFieldByName(const QString &name) const
{
    if (name.startsWith(QLatin1String("contact:"))) {
        if (const std::shared_ptr<Contact> contact = getContact())
            if (const ContactField *field = findIn(kContactFields, name))
                return field->get(*contact);
        return lwEmpty();
    }
    const FieldAccess *field = findIn(kFields, name);
    if (!field || !field->get)
        return lwEmpty();
    return field->get(*this);
}

bool Order::setFieldByName(const QString &name, const QString &value)
{
    const FieldAccess *field = findIn(kFields, name);
    if (field && field->set)
        field->set(*this, value);
    return true;
}

int Order::getColour() const
{
    return m_status == QLatin1String("Complete") ? 1 : 0;
}

bool Order::isDate(const QString &column)
{
    return column == QLatin1String("date");
}

CalendarDate Order::nextRepeatDate(const QString &lastRepeatDate, const QString &frequency)
{
    const CalendarDate last = CalendarDate::fromString(lastRepeatDate, repeatDateFormat());
    if (!last.isValid())
        return {};
    if (frequency == QLatin1String("month"))
        return last.addYearsMonthsDays(0, 1, 0);
    if (frequency == QLatin1String("week"))
        return last.addYearsMonthsDays(0, 0, 7);
    if (frequency == QLatin1String("fortnight"))
        return last.addYearsMonthsDays(0, 0, 14);
    if (frequency == QLatin1String("year"))
        return last.addYearsMonthsDays(1, 0, 0);
    return last;
}

CalendarDate Order::nextRepeatDate() const
{
    return nextRepeatDate(m_lastRepeatDate, m_repeatFrequency);
}

bool Order::isRepeatDue(const CalendarDate &now) const
{
    if (!m_repeats)
        return false;
    const CalendarDate next = nextRepeatDate();
    return next.isValid() && now.isValid() && now > next;
}

void Order::advanceLastRepeatDate()
{
    const CalendarDate next = nextRepeatDate();
    if (next.isValid())
        m_lastRepeatDate = next.toString(repeatDateFormat());
}

void Order::applyRepeatBox(bool ticked, const CalendarDate &today)
{
    if (!ticked) {
        m_repeats = false;
        return;
    }
    m_repeats = true;
    if (m_lastRepeatDate.isEmpty())
        m_lastRepeatDate = today.toString(repeatDateFormat());
}

QString Order::repeatNote(const QString &lastRepeatDate, bool repeatTicked, const QString &frequencyShown,
                          bool ukFormat)
{
    if (lastRepeatDate.isEmpty())
        return lwEmpty();
    const CalendarDate last = CalendarDate::fromString(lastRepeatDate, repeatDateFormat());
    // A last date that does not parse is shown as it stands, with no next date.
    const QString lastText =
        last.isValid() ? last.toString(ukFormat ? repeatDateFormat() : QStringLiteral("%m/%d/%y")) : lastRepeatDate;
    QString note = QStringLiteral("Last repeated on ") + lastText + QStringLiteral(". ");
    if (repeatTicked && last.isValid()) {
        // The note's own shortcut: every frequency but "month" shows a week on.
        const CalendarDate next = frequencyShown == QLatin1String("month") ? last.addYearsMonthsDays(0, 1, 0)
                                                                           : last.addYearsMonthsDays(0, 0, 7);
        note += QStringLiteral("Next due to be repeated on ") + next.toString(repeatDateFormat()) + QLatin1Char(' ');
    }
    return note;
}

void Order::setContact(const std::shared_ptr<Contact> &contact)
{
    if (contact)
        m_contact = contact;
}

void Order::setBalance(const QString &value)
{
    assign(m_balance, value);
}
void Order::setBalancePaid(const QString &value)
{
    assign(m_balancePaid, value);
}
void Order::setDate(const QString &value)
{
    assign(m_date, value);
}
void Order::setDeposit(const QString &value)
{
    assign(m_deposit, value);
}
void Order::setDepositPaid(const QString &value)
{
    assign(m_depositPaid, value);
}
void Order::setDescription(const QString &value)
{
    assign(m_description, value);
}
void Order::setPaymentMethod(const QString &value)
{
    assign(m_paymentMethod, value);
}
void Order::setOrderNum(const QString &value)
{
    assign(m_orderNum, value);
}
void Order::setRepeatFrequency(const QString &value)
{
    assign(m_repeatFrequency, value);
}
void Order::setStatus(const QString &value)
{
    assign(m_status, value);
}
void Order::setShipping(const QString &value)
{
    assign(m_shipping, value);
}
void Order::setLastRepeatDate(const QString &value)
{
    assign(m_lastRepeatDate, value);
}
void Order::setTax(const QString &value)
{
    assign(m_tax, value);
}
void Order::setNet(const QString &value)
{
    assign(m_net, value);
}
void Order::setTaxRate(const QString &value)
{
    assign(m_taxRate, value);
}
void Order::setTitle(const QString &value)
{
    assign(m_title, value);
}
void Order::setType(const QString &value)
{
    assign(m_type, value);
}
void Order::setValue(const QString &value)
{
    assign(m_value, value);
}
void Order::setValueWithTax(const QString &value)
{
    assign(m_valueWithTax, value);
}
