// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

/// What a settings text such as "9600,N,8,1" asks of a line.
struct LineSettings {
    enum class StopBits { One, OneAndHalf, Two };

    qint32 baud = 9600; ///< 1 and up
    char parity = 'N';  ///< one of E, M, N, O, S
    int dataBits = 8;   ///< 4 to 8
    StopBits stopBits = StopBits::One;

    bool operator==(const LineSettings &) const = default;
};

/// Reads the four fields baud, parity letter (either case), data bits and stop bits. Nothing else
/// may stand in the text, blanks included. Empty if the text does not have that form.
std::optional<LineSettings> ParseLineSettings(QStringView text);

/// Names of the fields as status panels show them: "None", "8", "1.5".
QString ParityName(char letter);
QString StopBitsName(LineSettings::StopBits stopBits);

/// The settings text again: "9600,N,8,1".
QString LineSettingsText(const LineSettings &settings);
