#include "accounts/Bill.h"
#include "core/RecordFields.h"

namespace {

using RecordFields::assign;

struct FieldAccess
{
    QLatin1String name;
    QString (*get)(const Bill &);
    void (*set)(Bill &, const QString &);
};

template<const QString &(Bill::*Get)() const, void (Bill::*Set)(const QString &)>
constexpr FieldAccess text(const char *name)
{
    return {QLatin1String(name), [](const Bill &b) { return (b.*Get)(); },
            [](Bill &b, const QString &v) { (b.*Set)(v); }};
}

const FieldAccess kFields[] = {
    text<&Bill::getAmount, &Bill::setAmount>("amount"),
    text<&Bill::getNet, &Bill::setNet>("net"),
    text<&Bill::getVat, &Bill::setVat>("vat"),
    text<&Bill::getCategory, &Bill::setCategory>("category"),
    text<&Bill::getDatePaid, &Bill::setDatePaid>("datePaid"),
    text<&Bill::getDatePaid, &Bill::setDatePaid>("datepaid"),
    text<&Bill::getDetails, &Bill::setDetails>("details"),
    text<&Bill::getDetails, &Bill::setDetails>("comments"),
    text<&Bill::getNumber, &Bill::setNumber>("number"),
    text<&Bill::getName, &Bill::setName>("name"),
    // Read as the name for contact-shaped tables, but never written.
    {QLatin1String("surname"), [](const Bill &b) { return b.getName(); }, nullptr},
};

const FieldAccess *findField(const QString &name)
{
    return RecordFields::find(kFields, name);
}

} // namespace

Bill::Bill() = default;

bool Bill::contains(const QString &text) const
{
    return RecordFields::containsIgnoringCase(text, {&m_category, &m_name, &m_details, &m_number});
}

QString Bill::getFieldByName(const QString &name) const
{
    const FieldAccess *field = findField(name);
    if (!field || !field->get)
        return lwEmpty();
    return field->get(*this);
}

bool Bill::setFieldByName(const QString &name, const QString &value)
{
    const FieldAccess *field = findField(name);
    if (field && field->set)
        field->set(*this, value);
    return true;
}

bool Bill::isDate(const QString &column)
{
    return column == QLatin1String("datepaid");
}

void Bill::setNumber(const QString &value)
{
    assign(m_number, value);
}
void Bill::setName(const QString &value)
{
    assign(m_name, value);
}
void Bill::setDatePaid(const QString &value)
{
    assign(m_datePaid, value);
}
void Bill::setNet(const QString &value)
{
    assign(m_net, value);
}
void Bill::setVat(const QString &value)
{
    assign(m_vat, value);
}
void Bill::setAmount(const QString &value)
{
    assign(m_amount, value);
}
void Bill::setDetails(const QString &value)
{
    assign(m_details, value);
}
void Bill::setCategory(const QString &value)
{
    assign(m_category, value);
}
void Bill::setOrder(const QString &value)
{
    assign(m_order, value);
}
