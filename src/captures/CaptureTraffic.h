// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureReader.h"
#include "TrafficEvent.h"

#include <deque>

/// The events that a capture tells of, as a live line would have told them: chunks have at most
/// TrafficEvent::MostBytesOfAChunk bytes, and a clock that was set moves no difference.
class CaptureTraffic final
{
  public:
    /// The reader has begun, and lives longer.
    explicit CaptureTraffic(CaptureReader &reader) : m_reader(reader) {}

    /// The next event; see CaptureReader::Next. The bytes of one packet can be several events.
    CaptureReader::Step Next(TrafficEvent &event);

    bool TwoChannels() const { return m_reader.Ports().size() > 1; }

  private:
    TrafficEvent EventOf(const CapturePacket &packet);
    void Queue(TrafficEvent event, const CapturePacket &packet);

    CaptureReader &m_reader;
    std::deque<TrafficEvent> m_waiting;
    /// Nanoseconds by which the clock has been set by now; a stranger's may be any, so it wraps.
    quint64 m_clockSet = 0;
};
