// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

#include <QByteArrayView>
#include <QList>

#include <deque>
#include <memory>
#include <mutex>

/// The end of what a record has not taken: captures in memory, of which the oldest goes when there
/// is too much. One thread writes, any may read meanwhile.
class RecordMemory final
{
  public:
    static constexpr qint64 MostBytes = 64 * 1024 * 1024;

    /// Whole packets of a capture that begins with the head, and the number of the record's last
    /// segment before them.
    void Write(QByteArrayView head, QByteArrayView packets, qint64 segment);

    struct Part {
        qint64 segment = 0; ///< of the record, before it
        qint64 number = 0;  ///< among those that follow the segment, from 1
        qint64 size = 0;
    };
    QList<Part> Parts() const;
    /// Whether the first part is not the first that ever was.
    bool HasForgotten() const;
    /// One that may have gone meanwhile; what has been opened stays.
    FileSystem::Opened Open(qint64 segment, qint64 number) const;

  private:
    struct Chunk;
    class ChunkFile;

    bool Takes(const Chunk &chunk, QByteArrayView head, qsizetype size, qint64 segment) const;

    mutable std::mutex m_lock; ///< guards what follows
    std::deque<std::shared_ptr<Chunk>> m_chunks;
    qint64 m_room = 0; ///< bytes that all of them have
    bool m_hasForgotten = false;
};
