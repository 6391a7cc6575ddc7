#include "orders/OrderMoney.h"

#include "core/NumberText.h"
#include "orders/Material.h"

#include <charconv>

namespace OrderMoney {

namespace {

bool isTaxable(const QString &taxCode)
{
    return taxCode == QLatin1String("S") || taxCode == QLatin1String("s");
}

// The share of a gross amount that is tax at the rate.
float taxShare(float gross, float rate)
{
    return gross / (rate + 100) * rate;
}

} // namespace

Line lineOf(const Material &material, std::optional<QString> productShipping)
{
    return Line{material.getQty(), material.getTotal(), material.getTaxCode(), std::move(productShipping)};
}

QString lineTotal(const QString &qty, const QString &cost)
{
    const float total = NumberText::floatValue(qty) * NumberText::floatValue(cost);
    return NumberText::format("%1.2f", double(total));
}

float totalOf(const QList<Line> &lines)
{
    float sum = 0;
    for (const Line &line : lines)
        sum += NumberText::floatValue(line.total);
    return sum;
}

float shippingOf(const QList<Line> &lines)
{
    float sum = 0;
    for (const Line &line : lines)
        if (line.productShipping)
            sum += NumberText::floatValue(*line.productShipping) * NumberText::floatValue(line.qty);
    return sum;
}

float lineTaxOf(const QList<Line> &lines, float rate)
{
    float sum = 0;
    for (const Line &line : lines)
        if (isTaxable(line.taxCode))
            sum += taxShare(NumberText::floatValue(line.total), rate);
    return sum;
}

Figures figures(const QList<Line> &lines, const QString &taxRate, const QString &deposit)
{
    const float rate = NumberText::floatValue(taxRate);
    const float value = totalOf(lines);
    const float shipping = shippingOf(lines);
    const float lineTax = lineTaxOf(lines, rate);
    const float tax = lineTax + taxShare(shipping, rate);
    const float net = value - lineTax;
    const float balance = value + shipping - NumberText::floatValue(deposit);

    Figures f;
    f.value = NumberText::format("%f", double(value));
    f.shipping = NumberText::format("%f", double(shipping));
    f.tax = NumberText::format("%f", double(tax));
    f.net = NumberText::format("%.2f", double(net));
    f.balance = plainNumber(balance);
    return f;
}

QString valueWithTax(const QString &value, const QString &tax, const QString &shipping)
{
    const float sum = NumberText::floatValue(value) + NumberText::floatValue(tax) + NumberText::floatValue(shipping);
    return NumberText::format("%.2f", double(sum));
}

QString plainNumber(float value)
{
    char buf[64];
    const auto result = std::to_chars(buf, buf + sizeof buf, value);
    return QString::fromLatin1(buf, result.ptr - buf);
}

QString taxRateText(float globalRate)
{
    return NumberText::format("%.2f", double(globalRate));
}

bool taxRateDiffers(const QString &orderRate, float globalRate)
{
    return NumberText::floatValue(orderRate) != globalRate;
}

bool showsTax(const QString &taxRate)
{
    return NumberText::floatValue(taxRate) != 0;
}

QString taxLabel(const QString &taxStatement, const QString &taxRate)
{
    return taxStatement + QStringLiteral(" @ ") + taxRate + QLatin1Char('%');
}

} // namespace OrderMoney
