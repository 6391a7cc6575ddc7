#include "richtext/RtfTokenizer.h"

#include <algorithm>
#include <limits>

namespace {

constexpr qsizetype kMaxWordLength = 32;
constexpr qint64 kParameterLimit = std::numeric_limits<int>::max();

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

RtfTokenizer::RtfTokenizer(QByteArrayView input) : m_input(input)
{
}

RtfTokenizer::Token RtfTokenizer::next()
{
    Token token;
    const qsizetype size = m_input.size();
    while (m_pos < size) {
        const char c = m_input[m_pos];
        if (c == '\r' || c == '\n') {
            // Line ends in RTF source carry no meaning.
            ++m_pos;
            continue;
        }
        if (c == '{') {
            ++m_pos;
            token.type = Type::GroupStart;
            return token;
        }
        if (c == '}') {
            ++m_pos;
            token.type = Type::GroupEnd;
            return token;
        }
        if (c == '\\')
            return readControl();
        const qsizetype start = m_pos;
        while (m_pos < size) {
            const char t = m_input[m_pos];
            if (t == '\\' || t == '{' || t == '}' || t == '\r' || t == '\n')
                break;
            ++m_pos;
        }
        token.type = Type::Text;
        token.data = m_input.sliced(start, m_pos - start);
        return token;
    }
    return token;
}

RtfTokenizer::Token RtfTokenizer::readControl()
{
    Token token;
    const qsizetype size = m_input.size();
    ++m_pos; // the backslash
    if (m_pos >= size)
        return token; // a lone backslash at the end: nothing more to read

    const char c = m_input[m_pos];
    if (!isLetter(c)) {
        ++m_pos;
        if (c == '\'') {
            const int high = m_pos < size ? hexValue(m_input[m_pos]) : -1;
            const int low = m_pos + 1 < size ? hexValue(m_input[m_pos + 1]) : -1;
            if (high >= 0 && low >= 0) {
                m_pos += 2;
                token.type = Type::HexByte;
                token.byte = static_cast<unsigned char>(high * 16 + low);
                return token;
            }
        }
        token.type = Type::ControlSymbol;
        token.symbol = (c == '\r') ? '\n' : c;
        return token;
    }

    const qsizetype start = m_pos;
    while (m_pos < size && isLetter(m_input[m_pos]))
        ++m_pos;
    token.type = Type::ControlWord;
    token.word = m_input.sliced(start, std::min(m_pos - start, kMaxWordLength)).toByteArray();

    bool negative = false;
    if (m_pos < size && m_input[m_pos] == '-' && m_pos + 1 < size && isDigit(m_input[m_pos + 1])) {
        negative = true;
        ++m_pos;
    }
    if (m_pos < size && isDigit(m_input[m_pos])) {
        qint64 value = 0;
        while (m_pos < size && isDigit(m_input[m_pos])) {
            // Keep consuming digits but stop growing: huge parameters clamp.
            value = std::min(value * 10 + (m_input[m_pos] - '0'), kParameterLimit);
            ++m_pos;
        }
        token.hasParameter = true;
        token.parameter = static_cast<int>(negative ? -value : value);
    }
    if (m_pos < size && m_input[m_pos] == ' ')
        ++m_pos; // the delimiter belongs to the control word

    if (token.word == "bin") {
        const qsizetype count = std::clamp<qsizetype>(token.hasParameter ? token.parameter : 0, 0, size - m_pos);
        token.type = Type::Binary;
        token.data = m_input.sliced(m_pos, count);
        m_pos += count;
    }
    return token;
}
