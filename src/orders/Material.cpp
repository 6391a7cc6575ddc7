#include "orders/Material.h"
#include "core/RecordFields.h"

#include "core/NumberText.h"

std::atomic<quint64> Material::s_orderGeneration{0};

namespace {

struct FieldAccess
{
    QLatin1String name;
    QString (*get)(const Material &);
    void (*set)(Material &, const QString &);
};

template<const QString &(Material::*Get)() const, void (Material::*Set)(const QString &)>
constexpr FieldAccess text(const char *name)
{
    return {QLatin1String(name), [](const Material &m) { return (m.*Get)(); },
            [](Material &m, const QString &v) { (m.*Set)(v); }};
}

QString contactId(const Material &m)
{
    return QString::number(m.getContact());
}

const FieldAccess kFields[] = {
    text<&Material::getItem, &Material::setItem>("item"),
    text<&Material::getQty, &Material::setQty>("qty"),
    text<&Material::getCost, &Material::setCost>("cost"),
    text<&Material::getCode, &Material::setCode>("code"),
    text<&Material::getUnit, &Material::setUnit>("unit"),
    text<&Material::getTotal, &Material::setTotal>("total"),
    text<&Material::getTaxCode, &Material::setTaxCode>("taxcode"),
    {QLatin1String("order:contact:id"), contactId, nullptr},
    // Answers the id as well: the column was always fed this way.
    {QLatin1String("order:contact:email"), contactId, nullptr},
    {QLatin1String("order"), nullptr, [](Material &m, const QString &v) { m.setOrder(NumberText::intValue(v)); }},
    {QLatin1String("product"), nullptr, [](Material &m, const QString &v) { m.setProduct(NumberText::intValue(v)); }},
};

const FieldAccess *findField(const QString &name)
{
    return RecordFields::find(kFields, name);
}

} // namespace

Material::Material() : m_item(QStringLiteral("New Item")), m_cost(QStringLiteral("0")), m_total(QStringLiteral("0"))
{
}

Material::Material(int orderId) : m_item(QStringLiteral("New Item")), m_order(orderId)
{
}

Material::Material(int orderId, int productId) : m_item(lwEmpty()), m_order(orderId), m_product(productId)
{
}

QString Material::getFieldByName(const QString &name) const
{
    const FieldAccess *field = findField(name);
    if (!field || !field->get)
        return lwEmpty();
    return field->get(*this);
}

bool Material::setFieldByName(const QString &name, const QString &value)
{
    const FieldAccess *field = findField(name);
    if (field && field->set)
        field->set(*this, value);
    return true;
}

void Material::recalcTotal()
{
    const float total = getQtyasFloat() * getCostasFloat();
    m_total = NumberText::format("%1.2f", double(total));
}

float Material::getQtyasFloat() const
{
    return NumberText::floatValue(m_qty);
}

float Material::getCostasFloat() const
{
    return NumberText::floatValue(m_cost);
}

float Material::getTotalasFloat() const
{
    return NumberText::floatValue(m_total);
}
