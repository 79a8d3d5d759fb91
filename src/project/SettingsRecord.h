// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "comm/CommConfiguration.h"
#include "comm/TextStyle.h"
#include "repr/Representation.h"

#include <QString>

#include <array>

/// Colours and text attributes of the communication window.
struct DisplaySettings {
    qint32 DispBack = 0xFFFFFF; ///< background, 0x00BBGGRR
    /// By StyleIndex: blue, red and green.
    std::array<TextStyle, StyleIndex::Count> styles = {TextStyle{0xFF0000}, TextStyle{0x0000FF},
                                                       TextStyle{0x008000}};

    bool operator==(const DisplaySettings &) const = default;
};

/// What is put in front of a chunk when the direction changes.
struct StampSettings {
    bool NewLine = true; ///< a line break first; has no effect without Date or Time
    bool Date = false;
    bool Time = false;
};

/// Which log files are written.
struct LogSettings {
    bool ASCII = true;
    bool Decimal = false;
    bool HEX = false;
    bool Binary = false;
    qint16 Format = 0; ///< kept for the user; log files are plain text in either case
    QString Folder;    ///< of the last log, with trailing separator; empty before the first one
};

/// Place of the main window and of its splitters, in twips.
struct WindowSettings {
    float MainLeft = 0;
    float MainTop = 0;
    float MainWidth = 0;  ///< until loaded or stored: three quarters of the screen
    float MainHeight = 0; ///< likewise
    float vSplitt = 6000;
    float hSplitt = 6000;
};

/// Widths of the columns of the two sequence lists, in logical pixels.
struct ListSettings {
    std::array<qint32, 3> sendWidths = {48, 140, 192};        ///< button, name, sequence
    std::array<qint32, 4> receiveWidths = {48, 140, 112, 80}; ///< box, name, sequence, answer
};

/// The state that all parts of the program share; one instance, as long as the program lives.
struct SettingsRecord {
    CommConfiguration comm;
    WindowSettings window;
    ListSettings lists;
    DisplaySettings display;     ///< in force
    DisplaySettings displayNext; ///< for the next start; this copy is saved
    StampSettings stamp;
    LogSettings log;
    qint16 Display = 0; ///< Representation of the sequence lists; other values act as ASCII

    QString ProgramTitle = QStringLiteral("Serimonde");
    QString ProjectDirectory; ///< with trailing separator
    QString ProjectFileName;  ///< without folder and extension, empty for an unnamed project
    Representation DisplayedRepresentation = Representation::Ascii;
    /// Where the next search in the shown view begins, as the view's model counts: it stays with
    /// its character when older ones are cut. Before the first character means there, so 0 does.
    qint64 CaretPosition = 0;
    bool QuitRequested = false;
};
