// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Telegram.h"

#include <array>

/// The marks that rows are found and filtered by, in the order in which they are offered.
struct TrafficMark {
    Telegram::Mark mark;
    const char *caption;
};

inline constexpr std::array TrafficMarks = {
    TrafficMark{Telegram::Damaged, "Damaged bytes"},
    TrafficMark{Telegram::Break, "Break"},
    TrafficMark{Telegram::Overrun, "Overrun"},
    TrafficMark{Telegram::Lost, "Lost bytes"},
    TrafficMark{Telegram::Gap, "Gap before it"},
    TrafficMark{Telegram::LinesChanged, "Modem lines changed"},
    TrafficMark{Telegram::OrderUncertain, "Order uncertain"},
    TrafficMark{Telegram::Continued, "Continues the row before"},
    TrafficMark{Telegram::Unreadable, "Unreadable"},
};
