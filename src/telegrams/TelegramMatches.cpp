// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramMatches.h"

#include <algorithm>
#include <utility>

TelegramMatches::TelegramMatches(std::shared_ptr<const TelegramIndex> index, TelegramFilter filter)
    : m_index(std::move(index)),
      m_filter(std::move(filter)),
      m_walk(m_index->Source(), m_index->Rule()),
      m_gone(m_index->Blocks().first)
{
}

bool TelegramMatches::Advance(const std::atomic<bool> &wanted)
{
    const TelegramIndex::Extent known = m_index->Known();
    const bool hasChanged = known.bytes != m_bytes || known.end != m_rows;
    while (hasChanged) {
        const qint64 first = m_index->Blocks().first;
        qint64 number = 0;
        {
            const std::lock_guard guard(m_lock);
            for (; m_gone < first; ++m_gone) {
                if (m_before.size() > 1)
                    m_before.pop_front();
            }
            number = m_gone + qint64(m_before.size()) - 1;
        }
        const std::optional<TelegramIndex::Block> block = m_index->BlockAt(number);
        if (!block)
            break;
        if (!CountBlock(*block, wanted))
            return false;
        const std::lock_guard guard(m_lock);
        m_end = m_before.back() + m_count;
        if (block->isLast)
            break;
        m_before.push_back(m_end);
    }
    m_bytes = known.bytes;
    m_rows = known.end;
    const std::lock_guard guard(m_lock);
    m_isWhole = true;
    return true;
}

bool TelegramMatches::CountBlock(const TelegramIndex::Block &block, const std::atomic<bool> &wanted)
{
    m_count = 0;
    m_walk.GoTo(block.place);
    for (qint64 number = block.first; number < block.end && m_walk.Next(m_telegram); ++number) {
        m_count += m_filter.Passes(m_telegram) ? 1 : 0;
        if (!wanted)
            return false;
    }
    return true;
}

TelegramMatches::Extent TelegramMatches::Known() const
{
    const std::lock_guard guard(m_lock);
    return {m_before.front(), m_end, qint64(m_before.size()) - 1, m_isWhole};
}

std::optional<TelegramMatches::Block> TelegramMatches::BlockOf(qint64 row) const
{
    const std::lock_guard guard(m_lock);
    if (m_before.empty())
        return {};
    const auto behind = std::upper_bound(m_before.begin() + 1, m_before.end(), row);
    const qint64 place = behind - m_before.begin() - 1;
    return Block{m_gone + place, *(behind - 1), behind == m_before.end() ? m_end : *behind};
}

std::optional<TelegramMatches::Block> TelegramMatches::BlockAt(qint64 number) const
{
    const std::lock_guard guard(m_lock);
    const qint64 place = number - m_gone;
    if (place < 0 || place >= qint64(m_before.size()))
        return {};
    const bool isLast = place + 1 == qint64(m_before.size());
    return Block{number, m_before[size_t(place)], isLast ? m_end : m_before[size_t(place) + 1]};
}
