// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficStream.h"

#include "TextStyle.h"

#include <utility>

void TrafficStream::Feed(TrafficConsumer &consumer)
{
    const std::lock_guard guard(m_lock);
    m_consumers.push_back(&consumer);
}

void TrafficStream::SetStamps(const StampSettings &stamps, bool sentAlways)
{
    const std::lock_guard guard(m_lock);
    m_stamps = stamps;
    m_sentAlways = sentAlways;
}

void TrafficStream::Append(TrafficEvent event)
{
    const std::lock_guard guard(m_lock);
    event.stamp = StampDue(event);
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
