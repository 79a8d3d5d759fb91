// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <limits>
#include <optional>

/// Waits for bytes to leave, as long as any do.
class SendWatch final
{
  public:
    /// A replay hands over more while no more than so many bytes wait.
    static constexpr qint64 Ahead = 2048;
    /// Nanoseconds: between two looks, and without any that left before it is given up.
    static constexpr qint64 Interval = 2'000'000;
    static constexpr qint64 LongestStandstill = 10'000'000'000;

    /// How long until the next look, if more than the most are waiting now.
    std::optional<qint64> Until(qint64 waiting, qint64 most, qint64 now)
    {
        if (waiting != m_waiting || waiting <= most)
            m_since = now;
        m_waiting = waiting;
        if (waiting <= most || StandsStill(now))
            return {};
        return Interval;
    }

    /// What waits does not leave.
    bool StandsStill(qint64 now) const { return now - m_since > LongestStandstill; }
    qint64 Waiting() const { return m_waiting; }

  private:
    qint64 m_waiting = 0;
    qint64 m_since = std::numeric_limits<qint64>::max();
};
