#pragma once

#include <QString>

// Every amount, quantity and rate is stored as text. These read the leading
// number of a text the way the stored data has always been read, and write
// numbers back with the printf formats the records use ("%.2f", "%1.2f",
// "%f", "%i"), independent of the user's locale.
namespace NumberText {

// The leading decimal number of the text as a single-precision float:
// leading white space skipped, anything after the number ignored, no number
// at all gives 0. "1,250.00" reads 1; " 3.5kg" reads 3.5.
float floatValue(const QString &text);
double doubleValue(const QString &text);

// The leading integer of the text (optional sign, digits); past the range of
// a 32-bit integer it saturates. "12abc" reads 12, "1.9" reads 1.
int intValue(const QString &text);

// printf-style formatting of one number: "%[flags][width][.precision]X" with
// X one of f, F, e, E, g, G (floating point) or d, i (integer, the value is
// truncated). Text before and after the conversion is kept. The result equals
// C's snprintf in the "C" locale for the same value.
QString format(const char *pattern, double value);
QString format(const char *pattern, int value);

// Shorthands for the formats the records use.
inline QString twoDecimals(double value)
{
    return format("%.2f", value);
} // "%.2f"
inline QString sixDecimals(double value)
{
    return format("%f", value);
} // "%f"
inline QString integer(int value)
{
    return QString::number(value);
} // "%i"

} // namespace NumberText
