// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Telegram.h"

#include <array>
#include <limits>

/// Which telegrams are shown. All that is asked for must hold.
struct TelegramFilter {
    std::array<bool, 2> directions = {true, true}; ///< of the bytes that are shown, by StyleIndex
    bool events = true;        ///< whether what has no bytes is shown, if nothing is asked of bytes
    QList<QByteArray> names{}; ///< one of these sequences; empty for any
    qsizetype leastLength = 0;
    qsizetype mostLength = std::numeric_limits<qsizetype>::max();
    QByteArray contains{};   ///< bytes; empty for any
    Telegram::Marks marks{}; ///< one of these; none for any

    bool operator==(const TelegramFilter &) const = default;

    /// Whether it lets all through.
    bool IsEmpty() const { return *this == TelegramFilter(); }
    bool Passes(const Telegram &telegram) const;
};

/// What is looked for. All that is asked for must hold; one that asks for nothing finds nothing.
struct TelegramSearch {
    QByteArray bytes{};      ///< in its bytes; empty for any
    bool anyCase = false;    ///< for the letters of code page 1252 among them
    QByteArray name{};       ///< in a name of its sequences, in any case; empty for any
    Telegram::Marks marks{}; ///< one of these; none for any

    bool IsEmpty() const { return bytes.isEmpty() && name.isEmpty() && !marks; }
    bool Finds(const Telegram &telegram) const;
    /// Where the bytes are in others, from a place on; negative if they are not.
    qsizetype PlaceIn(QByteArrayView telegram, qsizetype from = 0) const;
};
