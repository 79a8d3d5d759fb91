// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ArrivalQueue.h"

#include <numeric>
#include <utility>

void ArrivalQueue::Attach(ArrivalPort *port, qsizetype mostBytesAtOnce)
{
    const std::lock_guard guard(m_lock);
    PortState &state = m_ports[port];
    state.mostBytesAtOnce = mostBytesAtOnce;
    state.paused = false;
    state.departure.reset();
}

void ArrivalQueue::Detach(ArrivalPort *port)
{
    const std::lock_guard guard(m_lock);
    std::erase_if(m_blocks, [&](const Block &block) { return block.port == port; });
    m_ports.remove(port);
}

bool ArrivalQueue::Push(ArrivalPort *port, Clock::time_point arrival, const QByteArray &bytes)
{
    bool hasRoom = false;
    {
        const std::lock_guard guard(m_lock);
        PortState &state = m_ports[port];
        state.waiting += bytes.size();
        hasRoom = state.waiting <= LimitPerPort - MostBytesOfARead;
        state.paused = !hasRoom;
        Append({port, arrival, bytes});
    }
    WakeUp();
    return hasRoom;
}

void ArrivalQueue::PushDeparture(ArrivalPort *port, const QString &description)
{
    {
        const std::lock_guard guard(m_lock);
        m_ports[port].departure = description;
    }
    WakeUp();
}

/// Two threads may come to the lock in another order than their bytes came to them.
void ArrivalQueue::Append(Block block)
{
    auto place = m_blocks.end();
    while (place != m_blocks.begin() && std::prev(place)->arrival > block.arrival &&
           std::prev(place)->taken == 0 && std::prev(place)->port != block.port)
        --place;

    // Blocks stay small, so that the space of a front that has been taken is soon given back, and
    // short, so that bytes of another port whose thread was late still find their place.
    if (place != m_blocks.begin() && std::prev(place)->port == block.port &&
        std::prev(place)->bytes.size() + block.bytes.size() <= MostBytesOfARead &&
        block.arrival - std::prev(place)->arrival <= LongestBlock)
        std::prev(place)->bytes += block.bytes;
    else
        m_blocks.insert(place, std::move(block));
}

void ArrivalQueue::WakeUp()
{
    if (!m_woken.exchange(true))
        m_wakeUp();
}

std::optional<ArrivalQueue::Arrival> ArrivalQueue::TakeOldest()
{
    const std::lock_guard guard(m_lock);
    if (m_blocks.empty())
        return std::nullopt;

    Block &block = m_blocks.front();
    PortState &state = m_ports[block.port];
    Arrival oldest{block.port, block.bytes.mid(block.taken, state.mostBytesAtOnce), false};
    block.taken += oldest.bytes.size();
    state.waiting -= oldest.bytes.size();
    if (block.taken == block.bytes.size())
        m_blocks.pop_front();

    oldest.resume = state.paused && state.waiting <= LimitPerPort / 2;
    if (oldest.resume)
        state.paused = false;
    return oldest;
}

std::optional<ArrivalQueue::Departure> ArrivalQueue::TakeDeparture()
{
    const std::lock_guard guard(m_lock);
    for (auto entry = m_ports.begin(); entry != m_ports.end(); ++entry) {
        if (!entry->departure || entry->waiting > 0)
            continue;
        Departure departure{entry.key(), *entry->departure};
        entry->departure.reset();
        return departure;
    }
    return std::nullopt;
}

void ArrivalQueue::DropDeparture(ArrivalPort *port)
{
    const std::lock_guard guard(m_lock);
    m_ports[port].departure.reset();
}

qsizetype ArrivalQueue::Waiting(ArrivalPort *port) const
{
    const std::lock_guard guard(m_lock);
    return m_ports.value(port).waiting;
}

qsizetype ArrivalQueue::WaitingOnAllPorts() const
{
    const std::lock_guard guard(m_lock);
    return std::accumulate(
        m_ports.begin(), m_ports.end(), qsizetype(0),
        [](qsizetype sum, const PortState &state) { return sum + state.waiting; });
}
