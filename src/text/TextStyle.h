// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

/// How a piece of traffic is shown. One value, because its parts always travel together.
struct TextStyle {
    qint32 colour = 0; ///< 0x00BBGGRR
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool aside = false; ///< no traffic: written beside it by the program or the user

    bool operator==(const TextStyle &) const = default;
};

/// Direction index of a chunk and index of its style. In mode 0 index 0 is what is sent and 1
/// what is received; in the monitoring modes 0 is channel 1 and 1 is channel 2.
namespace StyleIndex
{
constexpr int Direction1 = 0;
constexpr int Direction2 = 1;
constexpr int Comment = 2;
constexpr int Count = 3;
} // namespace StyleIndex
