// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureThread.h"
#include "RecordFolder.h"
#include "RecordMemory.h"

#include <QByteArray>
#include <QList>

#include <array>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

/// A part of the record that is there.
struct RecordSegment {
    qint64 number = 0;
    qint64 size = 0;   ///< bytes that are with the system
    qint64 begins = 0; ///< time of its first packet, in nanoseconds since 1970
};

/// What there is to say of the record.
struct RecordState {
    qint64 since = 0; ///< time of its first packet, in nanoseconds since 1970; 0 if it is empty
    qint64 size = 0;  ///< in bytes
    qint64 taken = 0; ///< bytes that it had and that are gone
    qint64 bound = 0; ///< of all records of the user together, in bytes
    Result ended;     ///< failed: why it does not go on
    std::array<qint64, 2> lost{}; ///< by channel: bytes that it has not taken for that reason
};

/// For a capture: what it has not taken, by channel.
QByteArray LostPackets(const std::array<qint64, 2> &lost, const LineTime &time);

/// The record of one run, in segments that are captures of their own. With each new one the oldest
/// of all sessions go, as far as the bound wants it; one that is held stays. What writes, waits for
/// a disk; what asks, does not. May be used from any thread.
///
/// The first write that fails ends the record until ports are opened again. What it has not taken
/// since is counted here, where it is known which part was taken: no write is said to fail.
class RecordSegments final : public CaptureSink
{
  public:
    /// Ended is called when a write fails after one that did not, on the writing thread.
    RecordSegments(std::shared_ptr<RecordFolder> folder, QString session,
                   std::function<void(const Result &)> ended);

    Result BeginSection(QByteArrayView head) override;
    Result Write(QByteArrayView packets) override;
    void Finish() override {}

    /// In force at once; with 0 nothing is kept, and what is there goes.
    void SetBound(qint64 bytes);
    /// Notes what others have taken away.
    void Look();
    /// Takes the record away; nothing is written any more.
    void Remove();

    // What follows does not wait.
    RecordState State() const;
    /// In their order; the numbers go up, and segments go from the front.
    QList<RecordSegment> Segments() const;
    /// One that may have gone meanwhile.
    FileSystem::Opened Open(qint64 number) const;
    const RecordFolder &Folder() const { return *m_folder; }
    /// What it has not taken: it was switched off, or could not be written.
    const RecordMemory &Memory() const { return m_memory; }

    /// Segments of this size make up a record of that bound, in bytes.
    static qint64 SegmentSize(qint64 bound);

  private:
    Result WritePiece(QByteArrayView piece);
    std::optional<qint64> SizeToGoOn() const;
    Result BeginSegment(qint64 expected);
    Result WriteLost(QByteArrayView packets);
    void Remember(QByteArrayView packets);
    void Fail(const Result &result, QByteArrayView packets);
    Result Append(QByteArrayView blocks);
    void Note(QByteArrayView blocks);
    void Trim(qint64 expected);
    void RemoveAll();
    void KeepOnly(const QList<RecordFolder::Segment> &there);
    bool IsOurs(const RecordFolder::Segment &segment) const;

    const std::shared_ptr<RecordFolder> m_folder;
    const QString m_session;
    const std::function<void(const Result &)> m_ended;
    RecordMemory m_memory;

    std::mutex m_work; ///< guards what follows, while a disk may be waited for
    QByteArray m_head;
    bool m_otherPorts = false;
    bool m_wasInterrupted = false; ///< what follows the last segment is in memory
    bool m_told = false;
    bool m_removed = false;
    std::unique_ptr<RecordFolder::File> m_file; ///< of the last segment

    mutable std::mutex m_lock; ///< guards what follows
    QList<RecordSegment> m_segments;
    qint64 m_number = 0; ///< of the last segment that was made
    qint64 m_written = 0;
    RecordState m_state; ///< but for what the segments tell
};
