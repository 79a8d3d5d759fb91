// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

/// How often a telegram is to be sent again, and how many times.
struct RepeatPlan {
    static constexpr qint64 ShortestMilliseconds = 1;
    static constexpr qint64 LongestMilliseconds = 60 * 60 * 1000;

    qint64 milliseconds = 1000; ///< from one to the next
    qint64 count = 0;           ///< of telegrams that are sent; 0: until it is ended
};

/// When each telegram of a repeat is due: the k-th, from 0, at start + k times the period, whenever
/// the ones before were sent, so that nothing adds up. A telegram whose time has passed is sent
/// late as long as the next one is not due; else it is left out, and none is sent in its place.
/// Times are nanoseconds of any one clock.
class RepeatSchedule final
{
  public:
    RepeatSchedule(const RepeatPlan &plan, qint64 start);

    qint64 Due() const { return m_start + m_next * m_period; }
    bool IsDue(qint64 now) const { return !Finished() && Due() <= now; }
    bool Finished() const { return m_plan.count > 0 && m_sent >= m_plan.count; }

    /// These two need one that is due. The latest one is sent, or it is left out as well.
    void Send(qint64 now);
    void LeaveOut(qint64 now);

    qint64 Sent() const { return m_sent; }
    qint64 LeftOut() const { return m_leftOut; }

  private:
    /// How many are due that have been neither sent nor left out.
    qint64 Pass(qint64 now);

    RepeatPlan m_plan;
    qint64 m_start;
    qint64 m_period;
    qint64 m_next = 0;
    qint64 m_sent = 0;
    qint64 m_leftOut = 0;
};
