#pragma once

#include <QByteArrayView>
#include <QHash>
#include <QString>
#include <QStringDecoder>

#include <memory>

// Windows code pages as RTF names them (\ansicpgN, \cpgN, \fcharsetN),
// decoded and encoded through Qt's converters. A code page the platform
// does not know falls back to Windows-1252.
class TextCodepage
{
public:
    static constexpr int kWindowsLatin1 = 1252;
    static constexpr int kMacRoman = 10000;

    // The code page of an RTF font charset, or 0 when the charset means
    // "the document's code page" (ANSI, default, unknown).
    static int codepageForCharset(int charset);
    // The codec name Qt knows a code page by, or "" when there is none.
    static QByteArray codecName(int codepage);
    static bool isSupported(int codepage);
    // The Windows-1252 byte for a character above ASCII, or -1 when that
    // code page cannot hold it.
    static int windows1252Byte(char16_t character);

    // Decodes a whole run, so that multi-byte characters split over several
    // \'hh escapes come out whole.
    QString decode(int codepage, QByteArrayView bytes);

private:
    QStringDecoder *decoder(int codepage);

    QHash<int, std::shared_ptr<QStringDecoder>> m_decoders;
};
