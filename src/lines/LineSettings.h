// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineVocabulary.h"

#include <QString>

#include <optional>

/// What a settings text such as "9600,N,8,1" asks of a line.
struct LineSettings {
    qint32 baud = 9600; ///< 1 and up
    LineParity parity = LineParity::None;
    int dataBits = 8; ///< 4 to 8
    LineStopBits stopBits = LineStopBits::One;

    bool operator==(const LineSettings &) const = default;
};

/// Reads the four fields baud, parity letter (either case), data bits and stop bits. Nothing else
/// may stand in the text, blanks included. Empty if the text does not have that form.
std::optional<LineSettings> ParseLineSettings(QStringView text);

/// The settings text again: "9600,N,8,1".
QString LineSettingsText(const LineSettings &settings);
