// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RunFeed.h"

#include <utility>

namespace
{

qint64 SizeOf(const TrafficEvent &event)
{
    return qint64(sizeof event) + event.bytes.size();
}

} // namespace

void RunFeed::Take(const TrafficEvent &event)
{
    bool first = false;
    {
        const std::lock_guard guard(m_lock);
        first = m_events.empty();
        m_events.push_back(event);
        m_bytes += SizeOf(event);
    }
    if (first)
        m_wake();
}

bool RunFeed::HasRoom() const
{
    const std::lock_guard guard(m_lock);
    return m_bytes < MostBytes;
}

RunFeed::Taken RunFeed::TakeAll()
{
    const std::lock_guard guard(m_lock);
    Taken taken{std::move(m_events), m_bytes >= MostBytes};
    m_events.clear();
    m_bytes = 0;
    return taken;
}
