// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"

#include <QString>

#include <array>

/// Which log files are written.
struct LogSettings {
    std::array<bool, RepresentationCount> files = {true}; ///< by representation; ASCII alone
    qint16 Format = 0; ///< kept for the user; log files are plain text in either case
    QString Folder;    ///< of the last log, with trailing separator; empty before the first one
};
