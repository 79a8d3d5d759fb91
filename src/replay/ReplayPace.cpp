// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ReplayPace.h"

#include <algorithm>
#include <limits>

namespace
{

/// Far beyond any capture; sums of it fit.
constexpr qint64 Never = std::numeric_limits<qint64>::max() / 32;

/// From one moment to a later one; 0 if it is not later.
qint64 Between(qint64 from, qint64 to)
{
    if (to <= from)
        return 0;
    return qint64(std::min(quint64(to) - quint64(from), quint64(ReplayPace::LongestSilence)));
}

} // namespace

void ReplayPace::SetSpeed(ReplaySpeed speed, qint64 now)
{
    Hold(now);
    m_speed = speed;
}

void ReplayPace::SetPaused(bool paused, qint64 now)
{
    Hold(now);
    m_paused = paused;
}

/// What follows counts from here.
void ReplayPace::Hold(qint64 now)
{
    m_place = Played(now);
    m_since = now;
}

void ReplayPace::Expect(qint64 captured)
{
    m_due = std::min(m_due + Between(m_captured.value_or(captured), captured), Never);
    m_captured = captured;
}

qint64 ReplayPace::Played(qint64 now) const
{
    if (m_paused)
        return m_place;
    return std::min(m_due, m_place + (now - m_since) * Factor());
}

std::optional<qint64> ReplayPace::UntilDue(qint64 now) const
{
    if (m_paused)
        return {};
    if (m_speed == ReplaySpeed::AtOnce)
        return 0;
    const qint64 left = m_due - Played(now);
    return (left + Factor() - 1) / Factor();
}

void ReplayPace::Reach(qint64 now)
{
    const qint64 late = m_paused ? 0 : (m_place + (now - m_since) * Factor() - m_due) / Factor();
    const bool inTime = late >= 0 && late <= MostToCatchUp;
    if (inTime && !m_paused && m_speed != ReplaySpeed::AtOnce)
        return;
    m_place = m_due;
    m_since = now;
}
