#include "core/NumberText.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

namespace {

// Copies the leading number of the text (after white space) as ASCII, so that
// from_chars, which never looks at the locale, can read it.
std::string leadingNumber(const QString &text)
{
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && text.at(i).isSpace())
        ++i;
    std::string s;
    auto ch = [&](qsizetype k) -> char16_t { return k < n ? text.at(k).unicode() : u'\0'; };
    if (ch(i) == u'+' || ch(i) == u'-')
        s += char(ch(i++));
    bool digits = false;
    while (ch(i) >= u'0' && ch(i) <= u'9') {
        s += char(ch(i++));
        digits = true;
    }
    if (ch(i) == u'.') {
        s += '.';
        ++i;
        while (ch(i) >= u'0' && ch(i) <= u'9') {
            s += char(ch(i++));
            digits = true;
        }
    }
    if (!digits)
        return {};
    if (ch(i) == u'e' || ch(i) == u'E') {
        qsizetype k = i + 1;
        std::string exp = "e";
        if (ch(k) == u'+' || ch(k) == u'-')
            exp += char(ch(k++));
        bool expDigits = false;
        while (ch(k) >= u'0' && ch(k) <= u'9') {
            exp += char(ch(k++));
            expDigits = true;
        }
        if (expDigits)
            s += exp;
    }
    return s;
}

struct Conversion
{
    std::string prefix, suffix, flags;
    int width = 0;
    int precision = -1;
    char conversion = 0;
};

Conversion parse(const char *pattern)
{
    Conversion conv;
    const std::string p = pattern ? pattern : "";
    std::size_t i = 0;
    while (i < p.size()) {
        if (p[i] == '%' && i + 1 < p.size() && p[i + 1] == '%') {
            conv.prefix += '%';
            i += 2;
            continue;
        }
        if (p[i] == '%')
            break;
        conv.prefix += p[i++];
    }
    if (i >= p.size())
        return conv;
    ++i;
    while (i < p.size() && std::string_view("-+ 0#").find(p[i]) != std::string_view::npos)
        conv.flags += p[i++];
    while (i < p.size() && p[i] >= '0' && p[i] <= '9')
        conv.width = conv.width * 10 + (p[i++] - '0');
    if (i < p.size() && p[i] == '.') {
        ++i;
        conv.precision = 0;
        while (i < p.size() && p[i] >= '0' && p[i] <= '9')
            conv.precision = conv.precision * 10 + (p[i++] - '0');
    }
    while (i < p.size() && (p[i] == 'l' || p[i] == 'h'))
        ++i;
    if (i < p.size())
        conv.conversion = p[i++];
    for (; i < p.size(); ++i) {
        if (p[i] == '%' && i + 1 < p.size() && p[i + 1] == '%')
            ++i;
        conv.suffix += p[i];
    }
    return conv;
}

// Applies sign flags and the field width to the digits of a number.
std::string pad(std::string body, const Conversion &conv, bool numeric)
{
    const bool negative = !body.empty() && body[0] == '-';
    if (!negative) {
        if (conv.flags.find('+') != std::string::npos)
            body.insert(0, "+");
        else if (conv.flags.find(' ') != std::string::npos)
            body.insert(0, " ");
    }
    if (int(body.size()) >= conv.width)
        return body;
    const std::size_t fill = std::size_t(conv.width) - body.size();
    if (conv.flags.find('-') != std::string::npos)
        return body + std::string(fill, ' ');
    if (numeric && conv.flags.find('0') != std::string::npos) {
        const std::size_t signLen = (!body.empty() && (body[0] == '-' || body[0] == '+' || body[0] == ' ')) ? 1 : 0;
        return body.substr(0, signLen) + std::string(fill, '0') + body.substr(signLen);
    }
    return std::string(fill, ' ') + body;
}

std::string floatBody(double value, const Conversion &conv)
{
    if (value != value)
        return std::signbit(value) ? "-nan" : "nan";
    if (value == std::numeric_limits<double>::infinity())
        return "inf";
    if (value == -std::numeric_limits<double>::infinity())
        return "-inf";
    const int precision = conv.precision < 0 ? 6 : conv.precision;
    char buf[400];
    std::to_chars_result r{};
    switch (conv.conversion) {
    case 'e':
    case 'E':
        r = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::scientific, precision);
        break;
    case 'g':
    case 'G':
        // %g's rules for trailing zeros differ from to_chars; snprintf in the
        // C locale is only used for this rare format.
        {
            char fmt[16];
            std::snprintf(fmt, sizeof fmt, "%%.%d%c", precision, conv.conversion);
            std::string s(64, '\0');
            const int len = std::snprintf(s.data(), s.size(), fmt, value);
            s.resize(std::size_t(len > 0 ? len : 0));
            for (char &c : s)
                if (c == ',')
                    c = '.';
            return s;
        }
    default:
        r = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed, precision);
    }
    std::string s(buf, r.ptr);
    if (conv.conversion == 'E')
        for (char &c : s)
            if (c == 'e')
                c = 'E';
    if (conv.conversion == 'e' || conv.conversion == 'E') {
        // printf writes at least two exponent digits.
        const auto epos = s.find_first_of("eE");
        if (epos != std::string::npos && s.size() - epos == 3)
            s.insert(epos + 2, "0");
    }
    return s;
}

} // namespace

namespace NumberText {

float floatValue(const QString &text)
{
    const std::string s = leadingNumber(text);
    if (s.empty())
        return 0.0f;
    const char *begin = s.data() + (s[0] == '+' ? 1 : 0);
    float value = 0.0f;
    const auto r = std::from_chars(begin, s.data() + s.size(), value);
    if (r.ec == std::errc::result_out_of_range)
        return s[0] == '-' ? -std::numeric_limits<float>::infinity() : std::numeric_limits<float>::infinity();
    return r.ec == std::errc() ? value : 0.0f;
}

double doubleValue(const QString &text)
{
    const std::string s = leadingNumber(text);
    if (s.empty())
        return 0.0;
    const char *begin = s.data() + (s[0] == '+' ? 1 : 0);
    double value = 0.0;
    const auto r = std::from_chars(begin, s.data() + s.size(), value);
    return r.ec == std::errc() ? value : 0.0;
}

int intValue(const QString &text)
{
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && text.at(i).isSpace())
        ++i;
    bool negative = false;
    if (i < n && (text.at(i) == QLatin1Char('+') || text.at(i) == QLatin1Char('-'))) {
        negative = text.at(i) == QLatin1Char('-');
        ++i;
    }
    long long value = 0;
    while (i < n && text.at(i).unicode() >= '0' && text.at(i).unicode() <= '9') {
        value = value * 10 + (text.at(i).unicode() - '0');
        if (value > 1LL + INT_MAX)
            value = 1LL + INT_MAX;
        ++i;
    }
    if (negative)
        value = -value;
    if (value > INT_MAX)
        return INT_MAX;
    if (value < INT_MIN)
        return INT_MIN;
    return int(value);
}

QString format(const char *pattern, double value)
{
    const Conversion conv = parse(pattern);
    std::string body;
    switch (conv.conversion) {
    case 'd':
    case 'i':
        // Truncated like a cast, but saturated where a cast would be undefined.
        if (!(value == value))
            return format(pattern, 0);
        if (value >= 2147483647.0)
            return format(pattern, INT_MAX);
        if (value <= -2147483648.0)
            return format(pattern, INT_MIN);
        return format(pattern, int(value));
    case 0:
        return QString::fromLatin1(conv.prefix);
    default:
        body = pad(floatBody(value, conv), conv, value == value && value - value == 0);
    }
    return QString::fromLatin1(conv.prefix + body + conv.suffix);
}

QString format(const char *pattern, int value)
{
    const Conversion conv = parse(pattern);
    switch (conv.conversion) {
    case 'd':
    case 'i':
    case 'u':
        break;
    case 0:
        return QString::fromLatin1(conv.prefix);
    default:
        return format(pattern, double(value));
    }
    std::string digits = std::to_string(value);
    if (conv.precision >= 0) {
        const bool negative = value < 0;
        std::string magnitude = negative ? digits.substr(1) : digits;
        if (conv.precision == 0 && value == 0)
            magnitude.clear();
        if (int(magnitude.size()) < conv.precision)
            magnitude.insert(0, std::size_t(conv.precision) - magnitude.size(), '0');
        digits = (negative ? "-" : "") + magnitude;
    }
    Conversion s = conv;
    if (conv.precision >= 0)
        s.flags.erase(std::remove(s.flags.begin(), s.flags.end(), '0'), s.flags.end());
    return QString::fromLatin1(conv.prefix + pad(digits, s, true) + conv.suffix);
}

} // namespace NumberText
