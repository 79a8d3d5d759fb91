// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramRule.h"

#include <memory>

class TelegramSource;

/// What is looked for.
struct ResponseLimits {
    static constexpr qint64 UsualAnswer = 1'000'000'000;
    static constexpr qint64 LongestAnswer = 3'600'000'000'000;

    qint64 answer = UsualAnswer; ///< what comes later is no answer, in ns
    /// What began at this time or before is not counted, in ns since 1970.
    qint64 since = 0;
};

/// What is counted, and where.
struct ResponseQuestion {
    std::shared_ptr<const TelegramSource> source; ///< null: nothing
    TelegramRule rule;
    ResponseLimits limits;
};
