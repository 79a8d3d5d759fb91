// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RecordSegments.h"

#include "CaptureBlocks.h"
#include "CaptureEncoder.h"
#include "CapturePages.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr qint64 SmallestSegment = 128 * 1024;
constexpr qint64 LargestSegment = 64 * 1024 * 1024;
constexpr qint64 SegmentsOfABound = 32;

/// Whole packets of at most so many bytes, one at least; all of them if they are damaged.
QByteArrayView FirstPackets(QByteArrayView packets, qint64 most)
{
    if (packets.size() <= most)
        return packets;
    qsizetype end = 0;
    for (;;) {
        const qsizetype length = CaptureBlocks::LengthOf(packets.sliced(end));
        if (length <= 0)
            return end == 0 ? packets : packets.first(end);
        if (end > 0 && end + length > most)
            return packets.first(end);
        end += length;
    }
}

qint64 TimeOfFirst(QByteArrayView blocks)
{
    qint64 time = 0;
    for (qsizetype length = CaptureBlocks::LengthOf(blocks); time == 0 && length > 0;
         length = CaptureBlocks::LengthOf(blocks)) {
        time = CaptureBlocks::PacketOf(blocks).time;
        blocks = blocks.sliced(length);
    }
    return time;
}

/// Adds by channel what the packets have.
void CountLost(QByteArrayView packets, std::array<qint64, 2> &lost)
{
    for (qsizetype length = CaptureBlocks::LengthOf(packets); length > 0;
         length = CaptureBlocks::LengthOf(packets)) {
        const CaptureBlocks::Packet packet = CaptureBlocks::PacketOf(packets);
        lost[packet.interface == 0 ? 0 : 1] += packet.lineBytes;
        packets = packets.sliced(length);
    }
}

} // namespace

QByteArray LostPackets(const std::array<qint64, 2> &lost, const LineTime &time)
{
    CaptureEncoder encoder({}, {});
    QByteArray packets;
    for (size_t channel = 0; channel < lost.size(); ++channel) {
        TrafficEvent event;
        event.kind = TrafficEvent::Kind::Lost;
        event.channel = int(channel);
        event.time = time;
        event.count = lost[channel];
        if (event.count > 0)
            encoder.Append(packets, event);
    }
    return packets;
}

RecordSegments::RecordSegments(std::shared_ptr<RecordFolder> folder, QString session,
                               std::function<void(const Result &)> ended)
    : m_folder(std::move(folder)), m_session(std::move(session)), m_ended(std::move(ended))
{
}

qint64 RecordSegments::SegmentSize(qint64 bound)
{
    return std::clamp(bound / SegmentsOfABound, SmallestSegment, LargestSegment);
}

/// After a failure it is tried again: there may be room by now.
Result RecordSegments::BeginSection(QByteArrayView head)
{
    const std::lock_guard work(m_work);
    const std::lock_guard guard(m_lock);
    if (head != m_head) { // what is missing must not be of a port that these are not
        m_otherPorts = true;
        m_state.lost = {m_state.lost[0] + m_state.lost[1], 0};
    }
    m_head = head.toByteArray();
    m_state.ended = {};
    return {};
}

Result RecordSegments::Write(QByteArrayView packets)
{
    const std::lock_guard work(m_work);
    const RecordState state = State();
    if (m_removed)
        return {};
    if (state.bound == 0) {
        Remember(packets);
        return {};
    }
    Result written = state.ended;
    if (!written.Failed() && state.lost != RecordState().lost)
        written = WriteLost(packets);
    while (!written.Failed() && !packets.isEmpty()) {
        const qint64 size = SizeToGoOn().value_or(m_head.size());
        // To fill pages up may need as much again.
        const QByteArrayView piece = FirstPackets(packets, (SegmentSize(state.bound) - size) / 2);
        written = WritePiece(piece);
        packets = packets.sliced(written.Failed() ? 0 : piece.size());
    }
    if (written.Failed())
        Fail(written, packets);
    m_told = written.Failed();
    return {};
}

/// What is missing stands before what follows it.
Result RecordSegments::WriteLost(QByteArrayView packets)
{
    const LineTime time = {0, CaptureBlocks::PacketOf(packets).time};
    Result written = WritePiece(LostPackets(State().lost, time));
    if (!written.Failed()) {
        const std::lock_guard guard(m_lock);
        m_state.lost = {};
    }
    return written;
}

/// A segment that was deleted is followed by another.
Result RecordSegments::WritePiece(QByteArrayView piece)
{
    if (const std::optional<qint64> size = SizeToGoOn()) {
        const QByteArray blocks = CapturePages::Fill(piece, *size);
        const bool fits = *size + blocks.size() <= SegmentSize(State().bound);
        Result written = fits ? Append(blocks) : Result();
        if (fits && written.Number() != FileMissing)
            return written;
    }
    const QByteArray blocks = CapturePages::Fill(piece, m_head.size());
    if (Result begun = BeginSegment(blocks.size()); begun.Failed())
        return begun;
    return Append(blocks);
}

Result RecordSegments::Append(QByteArrayView blocks)
{
    Result written = m_file->Append(blocks);
    if (!written.Failed())
        Note(blocks);
    return written;
}

/// Of the last segment; none if another has to be begun.
std::optional<qint64> RecordSegments::SizeToGoOn() const
{
    const QList<RecordSegment> segments = Segments();
    if (!m_file || m_otherPorts || m_wasInterrupted || segments.isEmpty() ||
        segments.last().number != m_number)
        return {};
    return segments.last().size;
}

/// The one before is let go when the new one is held: others know by that who lives.
Result RecordSegments::BeginSegment(qint64 expected)
{
    Trim(m_head.size() + expected);
    auto made = m_folder->Make({m_session, m_number + 1}, m_head);
    if (made.result.Failed())
        return made.result;
    m_file = std::move(made.file);
    m_otherPorts = m_wasInterrupted = false;
    const std::lock_guard guard(m_lock);
    ++m_number;
    m_written += m_head.size();
    m_segments.append({m_number, m_head.size(), 0});
    return {};
}

void RecordSegments::Note(QByteArrayView blocks)
{
    const std::lock_guard guard(m_lock);
    RecordSegment &segment = m_segments.last();
    if (segment.begins == 0)
        segment.begins = TimeOfFirst(blocks);
    segment.size += blocks.size();
    m_written += blocks.size();
}

void RecordSegments::Remember(QByteArrayView packets)
{
    qint64 number = 0;
    {
        const std::lock_guard guard(m_lock);
        number = m_number;
    }
    m_memory.Write(m_head, packets, number);
    m_wasInterrupted = true;
}

void RecordSegments::Fail(const Result &result, QByteArrayView packets)
{
    Remember(packets);
    {
        const std::lock_guard guard(m_lock);
        m_state.ended = result;
        std::array<qint64, 2> lost{};
        CountLost(packets, lost);
        m_state.lost[0] += m_otherPorts ? lost[0] + lost[1] : lost[0];
        m_state.lost[1] += m_otherPorts ? 0 : lost[1];
    }
    if (!m_told)
        m_ended(result);
}

/// A segment that somebody else writes may grow until it is full.
void RecordSegments::Trim(qint64 expected)
{
    const auto turn = m_folder->TakeTurn();
    QList<RecordFolder::Segment> segments = m_folder->Segments();
    const qint64 bound = State().bound;
    const qint64 full = SegmentSize(bound);
    qint64 total = std::max(expected, full);
    for (const RecordFolder::Segment &each : std::as_const(segments))
        total += each.held && !IsOurs(each) ? std::max(each.size, full) : each.size;
    const auto goes = [this, &total, bound](const RecordFolder::Segment &each) {
        if (total <= bound || each.held)
            return false;
        const auto file = m_folder->Take(each.name);
        if (!file)
            return false;
        file->Remove();
        total -= each.size;
        return true;
    };
    segments.erase(std::remove_if(segments.begin(), segments.end(), goes), segments.end());
    KeepOnly(segments);
}

bool RecordSegments::IsOurs(const RecordFolder::Segment &segment) const
{
    return segment.name.session == m_session;
}

void RecordSegments::KeepOnly(const QList<RecordFolder::Segment> &there)
{
    const std::lock_guard guard(m_lock);
    const auto gone = [this, &there](const RecordSegment &ours) {
        return std::none_of(there.begin(), there.end(), [&](const RecordFolder::Segment &each) {
            return IsOurs(each) && each.name.number == ours.number;
        });
    };
    m_segments.erase(std::remove_if(m_segments.begin(), m_segments.end(), gone), m_segments.end());
}

void RecordSegments::SetBound(qint64 bytes)
{
    const std::lock_guard work(m_work);
    {
        const std::lock_guard guard(m_lock);
        m_state.bound = bytes;
    }
    if (bytes == 0) {
        RemoveAll();
    } else if (m_file) {
        if (SizeToGoOn().value_or(0) > SegmentSize(bytes))
            BeginSegment(0).Ignore(); // the next write tells
        Trim(0);
    }
}

void RecordSegments::Look()
{
    const std::lock_guard work(m_work);
    const auto turn = m_folder->TakeTurn();
    KeepOnly(m_folder->Segments());
}

void RecordSegments::Remove()
{
    const std::lock_guard work(m_work);
    m_removed = true;
    RemoveAll();
}

/// The last one last: what is interrupted here leaves the end of a session.
void RecordSegments::RemoveAll()
{
    for (const RecordSegment &each : Segments()) {
        if (const auto file = m_folder->Take({m_session, each.number}))
            file->Remove();
    }
    if (m_file)
        m_file->Remove();
    m_file.reset();
    const std::lock_guard guard(m_lock);
    m_segments.clear();
    m_written = 0;
    m_state.lost = {};
}

RecordState RecordSegments::State() const
{
    const std::lock_guard guard(m_lock);
    RecordState state = m_state;
    for (const RecordSegment &each : m_segments)
        state.size += each.size;
    state.taken = m_written - state.size;
    state.since = m_segments.isEmpty() ? 0 : m_segments.first().begins;
    return state;
}

QList<RecordSegment> RecordSegments::Segments() const
{
    const std::lock_guard guard(m_lock);
    return m_segments;
}

FileSystem::Opened RecordSegments::Open(qint64 number) const
{
    return m_folder->Open({m_session, number});
}
