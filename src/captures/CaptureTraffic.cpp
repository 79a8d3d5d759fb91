// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureTraffic.h"

#include "CaptureEncoder.h"
#include "CaptureFormat.h"
#include "CaptureLines.h"
#include "CaptureRemarks.h"
#include "TextStyle.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace CaptureFormat;
using Kind = TrafficEvent::Kind;

namespace
{

/// By RecordEvent; all others are bytes that were received.
constexpr std::array KindsOfRecords = {Kind::ModemLines, Kind::Sent,  Kind::Received, Kind::Sent,
                                       Kind::Received,   Kind::Lost,  Kind::Received, Kind::Damaged,
                                       Kind::Damaged,    Kind::Break, Kind::Overrun};
static_assert(KindsOfRecords.size() == size_t(Overflow) + 1);

bool HasBytes(Kind kind)
{
    return kind == Kind::Sent || kind == Kind::Received;
}

/// A longer send comes in pieces.
constexpr qsizetype MostBytesOfASend = 16 * 1024 * 1024;

/// Whether the next packet may have more of what was sent at once: ours are cut at one length.
bool MayGoOn(const TrafficEvent &event)
{
    return event.kind == Kind::Sent && event.bytes.size() < MostBytesOfASend &&
           !event.bytes.isEmpty() && event.bytes.size() % CaptureEncoder::MostBytesOfAPacket == 0;
}

/// A send of its own would have its own time or name.
bool GoesOn(const TrafficEvent &sent, const TrafficEvent &next)
{
    return MayGoOn(sent) && next.kind == Kind::Sent && next.channel == sent.channel &&
           next.time.wall == sent.time.wall && next.names.join().isEmpty();
}

} // namespace

Kind CaptureTraffic::KindOf(const CapturePacket &packet)
{
    return packet.record < KindsOfRecords.size() ? KindsOfRecords[packet.record] : Kind::Received;
}

/// Nearly every packet is one event, which is made where it is wanted.
CaptureReader::Step CaptureTraffic::Next(TrafficEvent &event)
{
    while (m_waiting.empty() || (m_waiting.size() == 1 && MayGoOn(m_waiting.front()))) {
        CapturePacket packet;
        const CaptureReader::Step step = m_reader.Next(packet);
        if (step != CaptureReader::Step::Packet) {
            if (m_waiting.empty())
                return step;
            break;
        }
        Fill(packet, event);
        if (m_waiting.empty() && TakeBytes(packet, event))
            return step;
        Queue(packet, event);
    }
    event = std::move(m_waiting.front());
    m_waiting.pop_front();
    return CaptureReader::Step::Packet;
}

/// False if the packet is not this one event, or may not be all of it.
bool CaptureTraffic::TakeBytes(const CapturePacket &packet, TrafficEvent &event)
{
    const bool hasBytes = HasBytes(event.kind);
    const QByteArrayView bytes = hasBytes ? packet.bytes : QByteArrayView();
    const qsizetype most = event.kind == Kind::Sent ? CaptureEncoder::MostBytesOfAPacket - 1
                                                    : TrafficEvent::MostBytesOfAChunk;
    if (packet.missing > 0 || bytes.size() > most || (hasBytes && bytes.isEmpty()))
        return false;
    if (event.bytes.size() != bytes.size())
        event.bytes.resize(bytes.size()); // keeps its room
    std::copy(bytes.begin(), bytes.end(), event.bytes.data());
    return true;
}

void CaptureTraffic::Take(const CapturePacket &packet, TrafficEvent &event)
{
    Fill(packet, event);
    event.bytes = HasBytes(event.kind) ? packet.bytes.toByteArray() : QByteArray();
}

/// All but the bytes.
void CaptureTraffic::Fill(const CapturePacket &packet, TrafficEvent &event)
{
    Kind kind = KindOf(packet);
    event.kind = kind;
    event.channel = packet.port;
    event.orderUncertain = false;
    if (!event.stamp.isEmpty())
        event.stamp.clear();
    if (!event.comment.isEmpty())
        event.comment.clear();
    event.answer = false;
    event.names.clear();
    event.cause.clear();
    event.count = CaptureRemarks::MayBeSeveral(kind) ? 1 : 0;
    event.modem = CaptureLines::From(packet.lines);
    if (!packet.options.isEmpty()) {
        ApplyRemarks(packet, event);
        kind = event.kind;
    }
    if (kind == Kind::ClockSet)
        m_clockSet += quint64(event.count);
    event.time = {qint64(quint64(packet.time) - m_clockSet), packet.time};
    const bool sent = kind == Kind::Sent || kind == Kind::NotSent;
    if (TwoChannels())
        event.direction = sent ? StyleIndex::Direction1 : packet.port;
    else
        event.direction = sent ? StyleIndex::Direction1 : StyleIndex::Direction2;
}

void CaptureTraffic::ApplyRemarks(const CapturePacket &packet, TrafficEvent &event) const
{
    if (!m_reader.HasComments(packet))
        return;
    for (const QString &remark : m_reader.CommentsOf(packet))
        CaptureRemarks::Apply(remark, event);
}

/// The names belong to the last chunk of what was received, which completed them.
void CaptureTraffic::Queue(const CapturePacket &packet, const TrafficEvent &head)
{
    TrafficEvent event = head;
    const bool hasBytes = HasBytes(event.kind);
    QByteArrayView rest = hasBytes ? packet.bytes : QByteArrayView();
    if (!m_waiting.empty() && GoesOn(m_waiting.back(), event)) {
        m_waiting.back().bytes.append(rest);
        return;
    }
    const QList<QByteArray> names = event.names;
    while (event.kind == Kind::Received && rest.size() > TrafficEvent::MostBytesOfAChunk) {
        event.names.clear();
        event.bytes = rest.first(TrafficEvent::MostBytesOfAChunk).toByteArray();
        rest = rest.sliced(TrafficEvent::MostBytesOfAChunk);
        m_waiting.push_back(event);
    }
    event.names = names;
    event.bytes = rest.toByteArray();
    if (!hasBytes || !rest.isEmpty())
        m_waiting.push_back(event);
    if (packet.missing > 0) {
        TrafficEvent lost;
        lost.kind = Kind::Lost;
        lost.channel = event.channel;
        lost.direction = event.direction;
        lost.time = event.time;
        lost.count = packet.missing;
        m_waiting.push_back(lost);
    }
}
