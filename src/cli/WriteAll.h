// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>
#include <QFile>

/// Writes to a file that is not buffered. A disk that fills up takes a part, and tells why it takes
/// no more when the rest follows.
inline bool WriteAll(QFile &file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const qint64 taken = file.write(bytes.data(), bytes.size());
        if (taken <= 0)
            return false;
        bytes = bytes.sliced(taken);
    }
    return true;
}
