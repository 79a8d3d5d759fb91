// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ReturnPlan.h"

#include <algorithm>
#include <utility>

bool ReturnPlan::IsDue(const QByteArray &sight, qint64 now)
{
    const QByteArray before = std::exchange(m_sight, sight);
    if (sight.isEmpty())
        return false;
    if (before.isEmpty()) {
        m_backSince = now;
        m_told = false;
    }
    if (before != sight) {
        m_nextTry = now;
        m_pause = FirstPause;
    }
    return now >= m_nextTry;
}

bool ReturnPlan::NoteFailure(qint64 now)
{
    const qint64 patienceEnds = m_backSince + Patience;
    const bool tells = !m_told && now >= patienceEnds;
    m_told = m_told || tells;
    m_nextTry = now + (m_told ? PauseAfterwards : m_pause);
    if (!m_told)
        m_nextTry = std::min(m_nextTry, patienceEnds);
    m_pause = std::min(2 * m_pause, LongestPause);
    return tells;
}

qint64 ReturnPlan::PauseFrom(qint64 now) const
{
    return m_sight.isEmpty() ? LookPause : std::clamp<qint64>(m_nextTry - now, 0, LookPause);
}
