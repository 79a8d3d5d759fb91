// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Common_Function.h"

#include "Representation.h"

#include <array>
#include <string_view>

namespace
{

constexpr std::string_view ListSeparator = " | ";
constexpr std::string_view SearchSeparator = " ";

/// One item and a trailing blank for every byte value.
template <Representation R> constexpr auto MakeItems()
{
    constexpr ItemForm Form = RowOf(R).item;
    std::array<std::array<char, size_t(Form.width) + 1>, 256> items{};
    for (unsigned value = 0; value < 256; ++value) {
        unsigned rest = value;
        for (size_t place = size_t(Form.width); place-- > 0; rest /= unsigned(Form.base))
            items[value][place] = "0123456789ABCDEF"[rest % unsigned(Form.base)];
        items[value].back() = ' ';
    }
    return items;
}

template <Representation R> constexpr auto Items = MakeItems<R>();

template <Representation R> QByteArray ViewText(QByteArrayView seq)
{
    constexpr size_t Width = Items<R>[0].size();
    QByteArray text(seq.size() * qsizetype(Width), Qt::Uninitialized);
    char *out = text.data();
    for (const char byte : seq)
        out = std::copy_n(Items<R>[uchar(byte)].data(), Width, out);
    return text;
}

template <Representation R> QByteArray JoinedText(QByteArrayView seq, std::string_view separator)
{
    constexpr size_t Width = Items<R>[0].size() - 1;
    QByteArray text;
    text.reserve(seq.size() * qsizetype(Width + separator.size()));
    for (const char byte : seq) {
        if (!text.isEmpty())
            text.append(separator.data(), qsizetype(separator.size()));
        text.append(Items<R>[uchar(byte)].data(), qsizetype(Width));
    }
    return text;
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
    return JoinedText<Representation::Hex>(seq, ListSeparator);
}

QByteArray SeqToDecimalList(QByteArrayView seq)
{
    return JoinedText<Representation::Decimal>(seq, ListSeparator);
}

QByteArray SeqToBinaryList(QByteArrayView seq)
{
    return JoinedText<Representation::Binary>(seq, ListSeparator);
}

QByteArray SeqAsItIs(QByteArrayView seq)
{
    return seq.toByteArray();
}

QByteArray SeqToHexText(QByteArrayView seq)
{
    return JoinedText<Representation::Hex>(seq, SearchSeparator);
}

QByteArray SeqToDecimalText(QByteArrayView seq)
{
    return JoinedText<Representation::Decimal>(seq, SearchSeparator);
}

QByteArray SeqToBinaryText(QByteArrayView seq)
{
    return JoinedText<Representation::Binary>(seq, SearchSeparator);
}

QByteArray SeqToAsciiView(QByteArrayView seq)
{
    return seq.toByteArray().replace('\0', HiddenByteMark);
}

QByteArray SeqToHexView(QByteArrayView seq)
{
    return ViewText<Representation::Hex>(seq);
}

QByteArray SeqToDecimalView(QByteArrayView seq)
{
    return ViewText<Representation::Decimal>(seq);
}

QByteArray SeqToBinaryView(QByteArrayView seq)
{
    return ViewText<Representation::Binary>(seq);
}

} // namespace Common_Function
