// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramSelection.h"

#include <algorithm>

bool TelegramSelection::Contains(qint64 row) const
{
    const auto behind =
        std::upper_bound(m_ranges.begin(), m_ranges.end(), row,
                         [](qint64 wanted, const Range &range) { return wanted < range.first; });
    return behind != m_ranges.begin() && row <= std::prev(behind)->last;
}

qint64 TelegramSelection::Count() const
{
    qint64 count = 0;
    for (const Range &range : m_ranges)
        count += range.last - range.first + 1;
    return count;
}

void TelegramSelection::Set(qint64 from, qint64 to)
{
    m_ranges = {{std::min(from, to), std::max(from, to)}};
}

void TelegramSelection::Add(qint64 from, qint64 to)
{
    Range added = {std::min(from, to), std::max(from, to)};
    QList<Range> ranges;
    for (const Range &range : std::as_const(m_ranges)) {
        if (range.last + 1 >= added.first && added.last + 1 >= range.first)
            added = {std::min(added.first, range.first), std::max(added.last, range.last)};
        else
            ranges.append(range);
    }
    const auto place = std::find_if(ranges.begin(), ranges.end(), [&added](const Range &range) {
        return range.first > added.last;
    });
    ranges.insert(place, added);
    m_ranges = ranges;
}

void TelegramSelection::Toggle(qint64 row)
{
    if (Contains(row))
        Remove({row, row});
    else
        Add(row, row);
}

void TelegramSelection::DropBefore(qint64 row)
{
    if (!m_ranges.isEmpty() && m_ranges.first().first < row)
        Remove({m_ranges.first().first, row - 1});
}

void TelegramSelection::Remove(const Range &range)
{
    QList<Range> ranges;
    for (const Range &each : std::as_const(m_ranges)) {
        if (each.first < range.first)
            ranges.append({each.first, std::min(each.last, range.first - 1)});
        if (each.last > range.last)
            ranges.append({std::max(each.first, range.last + 1), each.last});
    }
    m_ranges = ranges;
}
