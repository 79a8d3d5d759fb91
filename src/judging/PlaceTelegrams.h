// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Judgement.h"

#include <QList>

/// A telegram of a capture as it is shown next to others: plain text of one line each.
struct PlaceTelegram {
    qint64 number = 0; ///< of the packet, from 1
    qint64 time = 0;   ///< in nanoseconds since 1970
    int channel = 0;
    bool isHere = false; ///< it has bytes of the place, which are in brackets
    QString what;        ///< "received", "sent", "break" and so on
    QString hex;
    QString text;
};

/// What stands in a capture around a place.
struct PlaceTelegrams {
    QList<PlaceTelegram> telegrams;
    Result result; ///< fails if the file is not any more what it was when it was judged

    /// Reads a few telegrams before the place and behind it. On any thread.
    static PlaceTelegrams Around(const JudgedPlace &place, const InputDevice &file);
};
