// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Checksum.h"

#include <QByteArray>
#include <QtGlobal>

#include <optional>

/// Where telegrams end, other than with the direction.
struct TelegramRule {
    static constexpr qint64 HighestGap = 3'600'000'000'000; ///< in ns
    static constexpr qsizetype LongestEndMark = 64;

    /// A silence of 3.5 characters, or what TelegramGaps says more of.
    bool automaticGap = true;
    qint64 gap = 0;                ///< otherwise, in ns; 0 for none
    QByteArray endMark{};          ///< the bytes that telegrams end with; empty for none
    int fixedLength = 0;           ///< in bytes; 0 for none
    bool endsWithDetection = true; ///< with what a sequence of the project has told of itself
    /// What rows are checked for; it cuts nothing.
    std::optional<ChecksumRule> checksum{};

    bool operator==(const TelegramRule &) const = default;
};
