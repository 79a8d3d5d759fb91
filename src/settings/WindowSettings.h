// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <array>

/// Place of the main window and of its splitters, in twips.
struct WindowSettings {
    float MainLeft = 0;
    float MainTop = 0;
    float MainWidth = 0;  ///< until loaded or stored: three quarters of the screen
    float MainHeight = 0; ///< likewise
    float vSplitt = 6000;
    float hSplitt = 6000;
};

/// Widths of the columns of the two sequence lists, in logical pixels. A sequence column with the
/// width that stands here takes what the other columns leave free.
struct ListSettings {
    std::array<qint32, 3> sendWidths = {48, 140, 192};        ///< button, name, sequence
    std::array<qint32, 4> receiveWidths = {48, 140, 112, 80}; ///< box, name, sequence, answer
};
