#include "richtext/TextCodepage.h"

namespace {

// 0x80..0x9F of Windows-1252, for the unlikely platform without a converter
// for it; the rest of the code page is Latin-1.
const char16_t kCp1252High[32] = {
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178,
};

QString decodeCp1252(QByteArrayView bytes)
{
    QString text;
    text.reserve(bytes.size());
    for (char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        text.append(b >= 0x80 && b < 0xA0 ? QChar(kCp1252High[b - 0x80]) : QChar(b));
    }
    return text;
}

} // namespace

int TextCodepage::codepageForCharset(int charset)
{
    switch (charset) {
    case 77:
        return kMacRoman;
    case 128:
        return 932; // Shift-JIS
    case 129:
        return 949; // Hangul
    case 134:
        return 936; // GBK
    case 136:
        return 950; // Big5
    case 161:
        return 1253; // Greek
    case 162:
        return 1254; // Turkish
    case 163:
        return 1258; // Vietnamese
    case 177:
        return 1255; // Hebrew
    case 178:
        return 1256; // Arabic
    case 186:
        return 1257; // Baltic
    case 204:
        return 1251; // Cyrillic
    case 222:
        return 874; // Thai
    case 238:
        return 1250; // Central European
    case 254:
        return 437;
    case 255:
        return 850; // OEM
    default:
        return 0;
    }
}

QByteArray TextCodepage::codecName(int codepage)
{
    if (codepage >= 1250 && codepage <= 1258)
        return "windows-" + QByteArray::number(codepage);
    switch (codepage) {
    case 437:
        return "IBM437";
    case 850:
        return "IBM850";
    case 866:
        return "IBM866";
    case 874:
        return "windows-874";
    case 932:
        return "windows-31j"; // Microsoft's Shift-JIS, with its extensions
    case 936:
        return "GBK";
    case 949:
        return "windows-949";
    case 950:
        return "Big5";
    case 10000:
        return "macintosh";
    case 10006:
        return "x-mac-greek";
    case 10007:
        return "x-mac-cyrillic";
    case 10029:
        return "x-mac-centraleurroman";
    case 20866:
        return "KOI8-R";
    case 28591:
        return "ISO-8859-1";
    case 65001:
        return "UTF-8";
    default:
        return {};
    }
}

bool TextCodepage::isSupported(int codepage)
{
    const QByteArray name = codecName(codepage);
    return !name.isEmpty() && QStringDecoder(name.constData()).isValid();
}

int TextCodepage::windows1252Byte(char16_t character)
{
    if (character >= 0xA0 && character <= 0xFF)
        return character;
    for (int i = 0; i < 32; ++i)
        if (kCp1252High[i] == character && character != 0xFFFD)
            return 0x80 + i;
    return -1;
}

QStringDecoder *TextCodepage::decoder(int codepage)
{
    auto it = m_decoders.find(codepage);
    if (it == m_decoders.end()) {
        const QByteArray name = codecName(codepage);
        auto created = std::make_shared<QStringDecoder>(name.isEmpty() ? "" : name.constData());
        if (!created->isValid())
            created.reset();
        it = m_decoders.insert(codepage, created);
    }
    return it->get();
}

QString TextCodepage::decode(int codepage, QByteArrayView bytes)
{
    QStringDecoder *codec = decoder(codepage);
    if (!codec && codepage != kWindowsLatin1)
        codec = decoder(kWindowsLatin1);
    if (!codec)
        return decodeCp1252(bytes);
    codec->resetState();
    QString text = codec->decode(bytes);
    codec->resetState();
    return text;
}
