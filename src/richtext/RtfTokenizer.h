#pragma once

#include <QByteArray>
#include <QByteArrayView>

// Splits RTF bytes into tokens: braces, control words with their optional
// signed parameter, control symbols, \'hh bytes, plain text runs and \binN
// data. Never reads past the input, whatever the input holds.
class RtfTokenizer
{
public:
    enum class Type {
        End,
        GroupStart,
        GroupEnd,
        ControlWord,   // word, hasParameter, parameter
        ControlSymbol, // symbol; a backslash-newline is the symbol '\n'
        HexByte,       // byte
        Text,          // data: a run of text bytes, without CR and LF
        Binary,        // data: the raw bytes that follow \binN
    };

    struct Token
    {
        Type type = Type::End;
        QByteArray word;
        bool hasParameter = false;
        int parameter = 0;
        char symbol = 0;
        unsigned char byte = 0;
        QByteArrayView data;
    };

    explicit RtfTokenizer(QByteArrayView input);

    Token next();
    qsizetype position() const { return m_pos; }

private:
    Token readControl();

    QByteArrayView m_input;
    qsizetype m_pos = 0;
};
