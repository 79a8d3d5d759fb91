// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramFilter.h"

#include "CodePage1252.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace
{

char Small(char c)
{
    static const std::array<char, 256> table = [] {
        std::array<char, 256> small{};
        for (size_t i = 0; i < small.size(); ++i)
            small[i] = char(CodePage1252::ToLower(uchar(i)));
        return small;
    }();
    return table[uchar(c)];
}

qsizetype FindInAnyCase(QByteArrayView in, QByteArrayView what, qsizetype from)
{
    const auto found = std::search(in.begin() + std::min(from, in.size()), in.end(), what.begin(),
                                   what.end(), [](char a, char b) { return Small(a) == Small(b); });
    return found == in.end() ? -1 : found - in.begin();
}

/// The system's search is several times as fast as the toolkit's.
qsizetype FindExactly(QByteArrayView in, QByteArrayView what, qsizetype from)
{
    if (from > in.size())
        return -1;
    const void *const found =
        ::memmem(in.data() + from, size_t(in.size() - from), what.data(), size_t(what.size()));
    return found ? static_cast<const char *>(found) - in.data() : -1;
}

} // namespace

bool TelegramFilter::Passes(const Telegram &telegram) const
{
    if (marks && !(marks & telegram.marks))
        return false;
    if (!telegram.HasBytes()) {
        const TelegramFilter none;
        return events && names.isEmpty() && contains.isEmpty() && leastLength == none.leastLength &&
               mostLength == none.mostLength;
    }
    const qsizetype length = telegram.bytes.size();
    if (!directions[telegram.direction == 0 ? 0 : 1] || length < leastLength || length > mostLength)
        return false;
    if (!names.isEmpty() && std::none_of(names.begin(), names.end(), [&](const QByteArray &name) {
            return telegram.names.contains(name);
        }))
        return false;
    return contains.isEmpty() || FindExactly(telegram.bytes, contains, 0) >= 0;
}

bool TelegramSearch::Finds(const Telegram &telegram) const
{
    if (IsEmpty() || (marks && !(marks & telegram.marks)))
        return false;
    const auto isNamed = [this](const QByteArray &each) {
        return FindInAnyCase(each, name, 0) >= 0;
    };
    if (!name.isEmpty() && std::none_of(telegram.names.begin(), telegram.names.end(), isNamed))
        return false;
    return bytes.isEmpty() || PlaceIn(telegram.bytes) >= 0;
}

qsizetype TelegramSearch::PlaceIn(QByteArrayView telegram, qsizetype from) const
{
    return anyCase ? FindInAnyCase(telegram, bytes, from) : FindExactly(telegram, bytes, from);
}
