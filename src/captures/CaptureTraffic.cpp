// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureTraffic.h"

#include "CaptureEncoder.h"
#include "CaptureFormat.h"
#include "CaptureLines.h"
#include "CaptureRemarks.h"
#include "TextStyle.h"

#include <utility>

namespace
{

using namespace CaptureFormat;
using Kind = TrafficEvent::Kind;

/// What the record says, unless a remark knows better.
Kind KindOf(const CapturePacket &packet)
{
    switch (packet.record) {
    case SentStart:
    case SentEnd:
        return Kind::Sent;
    case DataLost:
        return Kind::Lost;
    case FramingError:
    case ParityError:
        return Kind::Damaged;
    case BreakCondition:
        return Kind::Break;
    case Overflow:
        return Kind::Overrun;
    case StatusChange:
        return Kind::ModemLines;
    default:
        return Kind::Received;
    }
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

CaptureReader::Step CaptureTraffic::Next(TrafficEvent &event)
{
    while (m_waiting.empty() || (m_waiting.size() == 1 && MayGoOn(m_waiting.front()))) {
        CapturePacket packet;
        const CaptureReader::Step step = m_reader.Next(packet);
        if (step == CaptureReader::Step::Packet)
            Queue(EventOf(packet), packet);
        else if (m_waiting.empty())
            return step;
        else
            break;
    }
    event = std::move(m_waiting.front());
    m_waiting.pop_front();
    return CaptureReader::Step::Packet;
}

TrafficEvent CaptureTraffic::EventOf(const CapturePacket &packet)
{
    TrafficEvent event;
    event.kind = KindOf(packet);
    event.channel = packet.port;
    event.count = CaptureRemarks::MayBeSeveral(event.kind) ? 1 : 0;
    event.modem = CaptureLines::From(packet.lines);
    for (const QString &remark : m_reader.CommentsOf(packet))
        CaptureRemarks::Apply(remark, event);
    if (event.kind == Kind::ClockSet)
        m_clockSet += quint64(event.count);
    event.time = {qint64(quint64(packet.time) - m_clockSet), packet.time};
    const bool sent = event.kind == Kind::Sent || event.kind == Kind::NotSent;
    if (TwoChannels())
        event.direction = sent ? StyleIndex::Direction1 : packet.port;
    else
        event.direction = sent ? StyleIndex::Direction1 : StyleIndex::Direction2;
    return event;
}

/// The names belong to the last chunk of what was received, which completed them.
void CaptureTraffic::Queue(TrafficEvent event, const CapturePacket &packet)
{
    const bool hasBytes = event.kind == Kind::Sent || event.kind == Kind::Received;
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
