// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Common_Function.h"

#include <array>
#include <string_view>

namespace
{

constexpr std::string_view ListSeparator = " | ";
constexpr std::string_view SearchSeparator = " ";

template <size_t Width> using ItemTable = std::array<std::array<char, Width>, 256>;

/// One item of Width digits and a trailing blank for every byte value.
template <size_t Width> constexpr ItemTable<Width + 1> MakeItems(unsigned base)
{
    ItemTable<Width + 1> items{};
    for (unsigned value = 0; value < 256; ++value) {
        unsigned rest = value;
        for (size_t place = Width; place-- > 0; rest /= base)
            items[value][place] = "0123456789ABCDEF"[rest % base];
        items[value][Width] = ' ';
    }
    return items;
}

constexpr auto HexItems = MakeItems<2>(16);
constexpr auto DecimalItems = MakeItems<3>(10);
constexpr auto BinaryItems = MakeItems<8>(2);

template <size_t Width> QByteArray ViewText(const ItemTable<Width> &items, QByteArrayView seq)
{
    QByteArray text(seq.size() * qsizetype(Width), Qt::Uninitialized);
    char *out = text.data();
    for (const char byte : seq)
        out = std::copy_n(items[uchar(byte)].data(), Width, out);
    return text;
}

template <size_t Width>
QByteArray JoinedText(const ItemTable<Width> &items, QByteArrayView seq, std::string_view separator)
{
    QByteArray text;
    text.reserve(seq.size() * qsizetype(Width + separator.size()));
    for (const char byte : seq) {
        if (!text.isEmpty())
            text.append(separator.data(), qsizetype(separator.size()));
        text.append(items[uchar(byte)].data(), qsizetype(Width - 1));
    }
    return text;
}

QByteArray AsciiViewText(QByteArrayView seq)
{
    return seq.toByteArray().replace('\0', Common_Function::HiddenByteMark);
}

} // namespace

namespace Common_Function
{

QByteArray ByteToBinary(char byte)
{
    return SeqToBinaryText(QByteArrayView(&byte, 1));
}

QByteArray SeqToAsciiList(QByteArrayView seq)
{
    QByteArray text;
    for (const char byte : seq) {
        if (!text.isEmpty())
            text.append(ListSeparator.data(), qsizetype(ListSeparator.size()));
        text.append(uchar(byte) > 31 ? byte : HiddenByteMark);
    }
    return text;
}

QByteArray SeqToHexList(QByteArrayView seq)
{
    return JoinedText(HexItems, seq, ListSeparator);
}

QByteArray SeqToDecimalList(QByteArrayView seq)
{
    return JoinedText(DecimalItems, seq, ListSeparator);
}

QByteArray SeqToBinaryList(QByteArrayView seq)
{
    return JoinedText(BinaryItems, seq, ListSeparator);
}

QByteArray SeqToHexText(QByteArrayView seq)
{
    return JoinedText(HexItems, seq, SearchSeparator);
}

QByteArray SeqToDecimalText(QByteArrayView seq)
{
    return JoinedText(DecimalItems, seq, SearchSeparator);
}

QByteArray SeqToBinaryText(QByteArrayView seq)
{
    return JoinedText(BinaryItems, seq, SearchSeparator);
}

QByteArray SeqToViewText(Representation representation, QByteArrayView seq)
{
    switch (representation) {
    case Representation::Ascii:
        return AsciiViewText(seq);
    case Representation::Hex:
        return ViewText(HexItems, seq);
    case Representation::Decimal:
        return ViewText(DecimalItems, seq);
    case Representation::Binary:
        return ViewText(BinaryItems, seq);
    }
    return {};
}

} // namespace Common_Function
