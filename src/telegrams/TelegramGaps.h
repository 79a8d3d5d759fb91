// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TrafficEvent.h"

#include <algorithm>

/// How long a silence ends a telegram where the user does not say it. Times are those of reads, so
/// none of it can be finer than what hands the bytes over.
namespace TelegramGaps
{

constexpr qint64 Millisecond = 1'000'000;

/// Shorter ones are not told from the pauses that the system makes between two reads.
constexpr qint64 Least = 5 * Millisecond;
/// The same of adapters that keep bytes for up to 16 ms.
constexpr qint64 LeastOfAdapters = 18 * Millisecond;
/// So many characters may wait in a port until they are handed over: that long before a read its
/// first byte may have come, and the silence ended.
constexpr qsizetype HeldBack = 16;

constexpr qint64 BitsOfACharacter = 10;

/// Time of a character in ns; 0 if the speed is not known.
inline qint64 Character(const TrafficPort &port)
{
    constexpr quint64 Second = 1'000'000'000;
    return port.speed > 0 ? qint64(Second * BitsOfACharacter / port.speed) : 0;
}

/// In ns: 3.5 characters, if that can be told.
inline qint64 Automatic(const TrafficPort &port)
{
    const bool isAdapter = port.description.contains(QLatin1String("ttyUSB"));
    return std::max(isAdapter ? LeastOfAdapters : Least, Character(port) * 7 / 2);
}

} // namespace TelegramGaps
