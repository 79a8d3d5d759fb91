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

    /// The next event; see CaptureReader::Next. The bytes of one packet can be several events. An
    /// event that is given again and again keeps its room for bytes.
    CaptureReader::Step Next(TrafficEvent &event);

    /// What the record of a packet says; the remarks on one without bytes may know better.
    static TrafficEvent::Kind KindOf(const CapturePacket &packet);
    /// What a packet tells, all at once, for whoever reads packets. To be asked for each that tells
    /// of something else than bytes, in order, because the clock may have been set.
    void Take(const CapturePacket &packet, TrafficEvent &event);

    bool TwoChannels() const { return m_reader.Ports().size() > 1; }

  private:
    void Fill(const CapturePacket &packet, TrafficEvent &event);
    static bool TakeBytes(const CapturePacket &packet, TrafficEvent &event);
    void ApplyRemarks(const CapturePacket &packet, TrafficEvent &event) const;
    void Queue(const CapturePacket &packet, const TrafficEvent &head);

    CaptureReader &m_reader;
    std::deque<TrafficEvent> m_waiting;
    /// Nanoseconds by which the clock has been set by now; a stranger's may be any, so it wraps.
    quint64 m_clockSet = 0;
};
