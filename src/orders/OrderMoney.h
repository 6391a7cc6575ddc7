#pragma once

#include <QList>
#include <QString>

#include <optional>

class Material;

// The money rules of an order, over texts, so that the order editor, the
// checkout and the command-line tool all compute the same figures. All
// arithmetic is single-precision on the leading number of each text (empty
// or non-numeric text counts as 0), summed in line order; results are
// written back with the printf formats the stored data has always used.
namespace OrderMoney {

// What the money rules need to know of one order line.
struct Line
{
    QString qty;
    QString total;   // gross: tax is included
    QString taxCode; // "S" or "s" is taxable at the order's rate
    // The shipping charge of the line's product; none for time and ad-hoc
    // lines, and for a line whose product no longer exists.
    std::optional<QString> productShipping;
};

// The line as the rules see it; productShipping is the shipping charge of
// the line's product when that product exists.
Line lineOf(const Material &material, std::optional<QString> productShipping = std::nullopt);

// quantity x unit cost, "%1.2f".
QString lineTotal(const QString &qty, const QString &cost);

// The sums over the lines, unformatted.
float totalOf(const QList<Line> &lines);
float shippingOf(const QList<Line> &lines);
// The tax contained in the taxable lines' totals at the rate (in percent).
float lineTaxOf(const QList<Line> &lines, float rate);

// The figures the editor shows after its lines change.
struct Figures
{
    QString value;    // sum of the line totals, "%f"
    QString shipping; // sum of product shipping x quantity, "%f"
    QString tax;      // line tax plus the tax share of the shipping, "%f"
    QString net;      // value less the line tax (the shipping's tax stays in), "%.2f"
    QString balance;  // value + shipping - deposit, as a plain number
    bool operator==(const Figures &) const = default;
};
Figures figures(const QList<Line> &lines, const QString &taxRate, const QString &deposit);

// value + tax + shipping, "%.2f": the tax is added on top of the gross value,
// which is the figure printed as the full value with tax.
QString valueWithTax(const QString &value, const QString &tax, const QString &shipping);

// A plain number as a field shows it without a formatter: the shortest text
// that reads back as the same single-precision value.
QString plainNumber(float value);

// The tax rate a new or repeated order takes from the global rate, "%.2f".
QString taxRateText(float globalRate);
// Whether an opened order's rate differs from the global rate (so the user
// is asked whether to change it).
bool taxRateDiffers(const QString &orderRate, float globalRate);
// Whether the editor shows the tax figures: the rate reads as anything but 0.
bool showsTax(const QString &taxRate);
// The tax label of the editor: "<statement> @ <rate>%".
QString taxLabel(const QString &taxStatement, const QString &taxRate);

} // namespace OrderMoney
