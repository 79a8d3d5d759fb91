// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// A line as a capture names it. Texts of a file come from strangers: see PlainText.
struct CapturePort {
    QString name;        ///< such as COM1
    QString description; ///< the device, and what it says of itself
    quint64 speed = 0;   ///< in bits a second; 0 if it is not known

    bool operator==(const CapturePort &) const = default;
};
