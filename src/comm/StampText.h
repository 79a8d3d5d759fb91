// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

class Clock;
struct StampSettings;

/// The stamp for the present moment, such as "\r\n5/11/26 07:13:49  - ". Empty if neither date
/// nor time is wanted.
QByteArray StampText(const StampSettings &settings, const Clock &clock);
