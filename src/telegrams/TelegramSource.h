// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

#include <QList>

/// Where telegrams come from: captures that follow each other, its parts. The first may go at any
/// time, the last may grow, and others may follow. May be used from any thread, and does not wait
/// but in Open.
class TelegramSource
{
  public:
    virtual ~TelegramSource() = default;

    struct Part {
        qint64 number = 0; ///< goes up
        qint64 size = 0;   ///< bytes of it that are there, whole blocks
    };
    virtual QList<Part> Parts() const = 0;

    struct Progress {
        qint64 read = 0; ///< bytes of all parts
        qint64 whole = 0;
    };
    /// Where somebody has read so many bytes of a part, and those before it.
    static Progress ProgressAt(const QList<Part> &parts, qint64 number, qint64 read)
    {
        Progress progress;
        for (const Part &part : parts) {
            progress.whole += part.size;
            if (part.number <= number)
                progress.read += part.number == number ? read : part.size;
        }
        return progress;
    }
    /// One that may have gone meanwhile.
    virtual FileSystem::Opened Open(qint64 number) const = 0;

    /// Whether nothing can have been between two parts.
    virtual bool Follows(qint64 part, qint64 next) const { return next == part + 1; }

    /// Whether more may come.
    virtual bool Grows() const = 0;
    /// Whether what comes now is kept in memory alone, of which the last 64 MiB stay.
    virtual bool IsInMemory() const { return false; }
};
