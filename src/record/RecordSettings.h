// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

/// How much of what happens on the lines is kept.
struct RecordSettings {
    static constexpr qint32 HighestMegabytes = 1024 * 1024;

    /// All records of the user together, in MiB; 0 keeps nothing.
    qint32 MostMegabytes = 1024;
};
