// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficStream.h"

#include "TextStyle.h"

#include <chrono>
#include <utility>

namespace
{

/// Less than that the clock on the wall is steered, not set.
constexpr qint64 SmallestClockStep = std::chrono::nanoseconds(std::chrono::seconds(1)).count();

} // namespace

void TrafficStream::Feed(TrafficConsumer &consumer)
{
    const std::lock_guard guard(m_lock);
    m_consumers.push_back(&consumer);
}

void TrafficStream::Begin(const TrafficSession &session, const StampSettings &stamps)
{
    const std::lock_guard guard(m_lock);
    m_stamps = stamps;
    m_sentAlways = session.ports.size() == 1;
    m_clockOffset.reset();
    for (TrafficConsumer *consumer : m_consumers)
        consumer->Begin(session);
}

void TrafficStream::Append(TrafficEvent event)
{
    const std::lock_guard guard(m_lock);
    NoteClock(event);
    event.stamp = StampDue(event);
    Pass(event);
}

void TrafficStream::End()
{
    const std::lock_guard guard(m_lock);
    for (TrafficConsumer *consumer : m_consumers)
        consumer->End();
}

void TrafficStream::NoteClock(const TrafficEvent &event)
{
    const qint64 offset = event.time.wall - event.time.monotonic;
    const qint64 step = m_clockOffset ? offset - *m_clockOffset : 0;
    const bool isTold = event.kind == TrafficEvent::Kind::ClockSet || !m_clockOffset;
    if (!isTold && qAbs(step) <= SmallestClockStep)
        return;
    m_clockOffset = offset;
    if (isTold)
        return;
    TrafficEvent set;
    set.kind = TrafficEvent::Kind::ClockSet;
    set.channel = event.channel;
    set.time = event.time;
    set.count = step;
    Pass(set);
}

void TrafficStream::Pass(const TrafficEvent &event)
{
    for (TrafficConsumer *consumer : m_consumers)
        consumer->Take(event);
}

QByteArray TrafficStream::StampDue(const TrafficEvent &event)
{
    using Kind = TrafficEvent::Kind;
    if (event.kind != Kind::Received && event.kind != Kind::Sent)
        return {};
    const bool sent = event.direction == StyleIndex::Direction1 && m_sentAlways;
    const bool due =
        (m_stamps.Date || m_stamps.Time) && (sent || event.direction != m_lastStampDirection);
    if (!due)
        return {};
    m_lastStampDirection = event.direction;
    return StampText(m_stamps, m_clock, event.time.wall);
}
