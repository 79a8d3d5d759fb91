// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RepeatSchedule.h"

namespace
{

constexpr qint64 NanosecondsOfAMillisecond = 1'000'000;

} // namespace

RepeatSchedule::RepeatSchedule(const RepeatPlan &plan, qint64 start)
    : m_plan(plan),
      m_start(start),
      m_period(qBound(RepeatPlan::ShortestMilliseconds, plan.milliseconds,
                      RepeatPlan::LongestMilliseconds) *
               NanosecondsOfAMillisecond)
{
}

qint64 RepeatSchedule::Pass(qint64 now)
{
    const qint64 due = (now - Due()) / m_period + 1;
    m_next += due;
    return due;
}

void RepeatSchedule::Send(qint64 now)
{
    m_leftOut += Pass(now) - 1;
    ++m_sent;
}

void RepeatSchedule::LeaveOut(qint64 now)
{
    m_leftOut += Pass(now);
}
