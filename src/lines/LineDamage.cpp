// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineDamage.h"

#include <limits>

namespace
{

constexpr std::array CountOf = {&DriverCounters::damaged, &DriverCounters::breaks,
                                &DriverCounters::overruns};
static_assert(CountOf.size() == LineConditionCount);

} // namespace

void LineDamage::Begin(bool marked, const DriverCounters &now)
{
    m_marked = marked;
    m_base = m_settled = now;
    m_told = {};
}

/// A driver that begins anew has counted nothing, not four thousand million.
quint32 LineDamage::Since(LineCondition condition, const DriverCounters &now) const
{
    const auto count = CountOf[size_t(condition)];
    const quint32 since = now.*count - m_base.*count;
    return since <= quint32(std::numeric_limits<qint32>::max()) ? since : 0;
}

bool LineDamage::IsBreak(const DriverCounters &now) const
{
    return !now.known || !Counted() ||
           Since(LineCondition::Break, now) > m_told[size_t(LineCondition::Break)];
}

quint32 LineDamage::Untold(LineCondition condition, const DriverCounters &now) const
{
    if (!now.known || !Counted())
        return 0;
    const bool later = m_marked && condition != LineCondition::Overrun;
    const quint32 counted = Since(condition, later ? m_settled : now);
    const quint32 told = m_told[size_t(condition)];
    return counted > told ? counted - told : 0;
}
