// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RecordCopy.h"
#include "RecordFolder.h"

#include <QList>

#include <memory>

/// The record of a session that ended without taking it away. Who has one holds its last segment,
/// and with it all of it: no other program offers it. All of it may wait for a disk.
class LeftRecord final
{
  public:
    /// All that nobody holds; what is in none of them has no packet and goes.
    static QList<std::shared_ptr<LeftRecord>> TakeAll(const std::shared_ptr<RecordFolder> &folder);

    LeftRecord(std::shared_ptr<RecordFolder> folder, QList<RecordFolder::Segment> segments,
               std::unique_ptr<RecordFolder::File> last);

    qint64 Size() const; ///< in bytes
    /// Times of the first packet and of the last write, in nanoseconds since 1970; the first is 0
    /// if there is no packet.
    qint64 Begins() const { return m_begins; }
    qint64 Ends() const { return m_segments.last().written; }

    /// Of the segments that are still there.
    RecordCopy Copy() const;
    void Remove();

  private:
    const std::shared_ptr<RecordFolder> m_folder;
    const QList<RecordFolder::Segment> m_segments; ///< by number
    const std::unique_ptr<RecordFolder::File> m_last;
    const qint64 m_begins;
};
