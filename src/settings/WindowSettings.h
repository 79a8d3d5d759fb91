// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

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

/// The window "Traffic", in logical pixels.
struct TrafficWindowSettings {
    qint32 Left = 0;
    qint32 Top = 0;
    qint32 Width = 0; ///< 0 until it was stored
    qint32 Height = 0;
    qint32 DetailsHeight = 0; ///< likewise
    qint32 CountsFrom = 0;    ///< what the differences of times count from: TelegramBase
    /// Where telegrams end; see TelegramRule.
    qint32 GapMicroseconds = -1; ///< -1 for one that suits the speed, 0 for none
    QString EndMark;             ///< as HEX; empty for none
    qint32 FixedLength = 0;      ///< in bytes; 0 for none
    bool EndsWithDetection = true;
    QString Checksum; ///< see Checksum::Stored; empty for none
    /// By TelegramColumn: -1 for a width that suits, 0 for a column that is not shown.
    std::array<qint32, 10> widths = {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
};

/// The window "Response Times"; its place in logical pixels.
struct ResponseWindowSettings {
    qint32 Left = 0;
    qint32 Top = 0;
    qint32 Width = 0; ///< 0 until it was stored
    qint32 Height = 0;
    qint32 LimitMilliseconds = 1000; ///< what comes later is no answer
    bool Logarithmic = false;        ///< the axes of times
};
