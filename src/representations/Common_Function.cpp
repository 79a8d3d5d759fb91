// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Common_Function.h"

#include "Representation.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string_view>

namespace
{

constexpr std::string_view ListSeparator = " | ";
constexpr std::string_view SearchSeparator = " ";

/// One item and a trailing blank for every byte value, with room up to a size that is copied at
/// one stroke.
template <Representation R> constexpr auto MakeItems()
{
    constexpr ItemForm Form = RowOf(R).item;
    constexpr size_t Width = size_t(Form.width);
    std::array<std::array<char, std::bit_ceil(Width + 1)>, 256> items{};
    for (unsigned value = 0; value < 256; ++value) {
        unsigned rest = value;
        for (size_t place = Width; place-- > 0; rest /= unsigned(Form.base))
            items[value][place] = "0123456789ABCDEF"[rest % unsigned(Form.base)];
        items[value][Width] = ' ';
    }
    return items;
}

template <Representation R> constexpr auto Items = MakeItems<R>();

/// Appends an item for every byte. Each is copied with its room, over which the next one goes: of
/// one constant size, which is what makes it fast.
template <Representation R> void AppendItems(QByteArray &text, QByteArrayView seq)
{
    constexpr qsizetype Width = ViewWidth(R);
    constexpr size_t Copied = Items<R>[0].size();
    const qsizetype after = text.size() + seq.size() * Width;
    text.resize(after + qsizetype(Copied) - Width);
    char *out = text.data() + after - seq.size() * Width;
    for (const char byte : seq) {
        std::memcpy(out, Items<R>[uchar(byte)].data(), Copied);
        out += Width;
    }
    text.resize(after);
}

template <Representation R> QByteArray JoinedText(QByteArrayView seq, std::string_view separator)
{
    constexpr qsizetype Width = RowOf(R).item.width;
    QByteArray text;
    text.reserve(seq.size() * (Width + qsizetype(separator.size())));
    for (const char byte : seq) {
        if (!text.isEmpty())
            text.append(separator.data(), qsizetype(separator.size()));
        text.append(Items<R>[uchar(byte)].data(), Width);
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

void AppendAsciiView(QByteArray &text, QByteArrayView seq)
{
    const qsizetype before = text.size();
    text.append(seq);
    // Most text has none, which is found out many bytes at a time.
    if (const qsizetype zero = text.indexOf('\0', before); zero >= 0)
        std::replace(text.begin() + zero, text.end(), '\0', HiddenByteMark);
}

void AppendHexView(QByteArray &text, QByteArrayView seq)
{
    AppendItems<Representation::Hex>(text, seq);
}

void AppendDecimalView(QByteArray &text, QByteArrayView seq)
{
    AppendItems<Representation::Decimal>(text, seq);
}

void AppendBinaryView(QByteArray &text, QByteArrayView seq)
{
    AppendItems<Representation::Binary>(text, seq);
}

} // namespace Common_Function
