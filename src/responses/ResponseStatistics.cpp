// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ResponseStatistics.h"

void ResponseStatistics::Count(const ResponseKey &key)
{
    ++m_entries[key].count;
}

void ResponseStatistics::Take(const ResponseKey &key, const ResponseSample &sample)
{
    Entry &entry = m_entries[key];
    if (!sample.IsAnswered()) {
        ++entry.unanswered;
        entry.misses.Add(sample);
        return;
    }
    entry.answered += key.kind == ResponseKey::Kind::Detection ? 0 : 1;
    entry.last = sample.time;
    entry.spread.Add(sample.time);
    entry.samples.Add(sample);
}

ResponseRow ResponseStatistics::RowOf(const ResponseKey &key, const Entry &entry)
{
    return {.key = key,
            .count = entry.count,
            .answered = entry.answered,
            .unanswered = entry.unanswered,
            .last = entry.last,
            .least = entry.spread.Least(),
            .median = entry.spread.Percentile(50),
            .percentile95 = entry.spread.Percentile(95),
            .greatest = entry.spread.Greatest()};
}

QList<ResponseRow> ResponseStatistics::Rows() const
{
    QList<ResponseRow> rows;
    for (const auto &[key, entry] : m_entries)
        rows << RowOf(key, entry);
    return rows;
}

ResponsePicture ResponseStatistics::Picture(const ResponseKey &key) const
{
    const auto found = m_entries.find(key);
    if (found == m_entries.end())
        return {.row = {.key = key}};
    const Entry &entry = found->second;
    return {entry.spread, entry.samples.Samples(), entry.misses.Samples(), RowOf(key, entry)};
}
