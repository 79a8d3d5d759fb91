// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CodePage1252.h"

#include <algorithm>
#include <array>

namespace
{

/// Codes 0x80 to 0x9F; all others are Latin-1. 0 marks the five empty codes.
constexpr std::array<char16_t, 32> HighControls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

constexpr char16_t CodePoint(unsigned byte)
{
    if (byte < 0x80 || byte > 0x9F)
        return char16_t(byte);
    const char16_t mapped = HighControls[byte - 0x80];
    return mapped ? mapped : char16_t(byte);
}

/// The byte of a code point, -1 if the code page lacks it.
int ByteOf(char16_t unit)
{
    if (unit < 0x100 && CodePoint(unit) == unit)
        return unit;
    const auto found = std::find(HighControls.begin(), HighControls.end(), unit);
    return found == HighControls.end() ? -1 : int(0x80 + (found - HighControls.begin()));
}

constexpr std::array<uchar, 256> MakeLowerCase()
{
    std::array<uchar, 256> lower{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        const bool letter =
            (byte >= 'A' && byte <= 'Z') || (byte >= 0xC0 && byte <= 0xDE && byte != 0xD7);
        lower[byte] = uchar(letter ? byte + 0x20 : byte);
    }
    lower[0x8A] = 0x9A; // S with caron
    lower[0x8C] = 0x9C; // OE
    lower[0x8E] = 0x9E; // Z with caron
    lower[0x9F] = 0xFF; // Y with diaeresis
    return lower;
}

constexpr std::array<uchar, 256> LowerCase = MakeLowerCase();

} // namespace

namespace CodePage1252
{

char16_t ToUnicode(uchar byte)
{
    return CodePoint(byte);
}

QString ToUnicode(QByteArrayView text)
{
    QString result(text.size(), Qt::Uninitialized);
    std::transform(text.begin(), text.end(), result.begin(),
                   [](char byte) { return QChar(CodePoint(uchar(byte))); });
    return result;
}

Encoded FromUnicode(QStringView text)
{
    Encoded result;
    result.bytes.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const int byte = ByteOf(text[i].unicode());
        if (byte < 0) {
            result.firstForeign = i;
            break;
        }
        result.bytes.append(char(byte));
    }
    return result;
}

QString RefusalOf(QStringView text, qsizetype firstForeign)
{
    const bool pair = firstForeign + 1 < text.size() && text[firstForeign].isHighSurrogate() &&
                      text[firstForeign + 1].isLowSurrogate();
    const QStringView character = text.sliced(firstForeign, pair ? 2 : 1);
    const char32_t code = pair ? QChar::surrogateToUcs4(character[0], character[1])
                               : char32_t(character[0].unicode());
    const QString number = QString::number(uint(code), 16).toUpper().rightJustified(4, u'0');
    return QStringLiteral("The character %1 (U+%2) is not in code page 1252.")
        .arg(character.toString(), number);
}

uchar ToLower(uchar byte)
{
    return LowerCase[byte];
}

} // namespace CodePage1252
