// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

class Clock;

/// What is put in front of a chunk when the direction changes.
struct StampSettings {
    bool NewLine = true; ///< a line break first; has no effect without Date or Time
    bool Date = false;
    bool Time = false;
};

/// The stamp for a moment (nanoseconds since 1970 in UTC), such as "\r\n5/11/26 07:13:49  - ".
/// Empty if neither date nor time is wanted.
QByteArray StampText(const StampSettings &settings, const Clock &clock, qint64 wallTime);
