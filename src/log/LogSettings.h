// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Which log files are written.
struct LogSettings {
    bool ASCII = true;
    bool Decimal = false;
    bool HEX = false;
    bool Binary = false;
    qint16 Format = 0; ///< kept for the user; log files are plain text in either case
    QString Folder;    ///< of the last log, with trailing separator; empty before the first one
};
