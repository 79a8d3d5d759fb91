// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TextStyle.h"

#include <array>

/// Colours and text attributes of the communication window.
struct DisplaySettings {
    qint32 DispBack = 0xFFFFFF; ///< background, 0x00BBGGRR
    /// By StyleIndex: blue, red and green.
    std::array<TextStyle, StyleIndex::Count> styles = {
        TextStyle{0xFF0000}, TextStyle{0x0000FF}, TextStyle{.colour = 0x008000, .aside = true}};

    bool operator==(const DisplaySettings &) const = default;
};
