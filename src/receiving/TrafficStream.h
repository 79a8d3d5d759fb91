// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "StampText.h"
#include "TrafficEvent.h"

#include <mutex>
#include <optional>
#include <vector>

class Clock;

/// What happens on the lines, in one order. Whoever has something to tell appends it; it is then
/// complete: whether a stamp is due is decided here. The consumers get each event at once. May be
/// used from any thread.
class TrafficStream
{
  public:
    /// The clock lives longer than the stream.
    explicit TrafficStream(const Clock &clock) : m_clock(clock) {}

    /// Before the first event. The consumer lives as long as the stream.
    void Feed(TrafficConsumer &consumer);

    /// A session begins, and how stamps are made in it. With one port, where direction 0 is what
    /// is sent, each sent chunk gets its own.
    void Begin(const TrafficSession &session, const StampSettings &stamps);
    /// If the clock on the wall has been set meanwhile, an event about that comes first.
    void Append(TrafficEvent event);
    void End();

  private:
    void NoteClock(const TrafficEvent &event);
    void Pass(const TrafficEvent &event);
    QByteArray StampDue(const TrafficEvent &event);

    const Clock &m_clock;
    std::mutex m_lock; ///< guards what follows
    std::vector<TrafficConsumer *> m_consumers;
    StampSettings m_stamps;
    bool m_sentAlways = true;
    int m_lastStampDirection = -1; ///< as long as the program runs
    /// Wall less monotonic, in nanoseconds, as it was last told; empty before the first event.
    std::optional<qint64> m_clockOffset;
};
