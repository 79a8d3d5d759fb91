// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TimeSpread.h"

#include <algorithm>
#include <bit>

void TimeSpread::Add(qint64 time)
{
    // The first octave has the times from 0 on that are less than BucketsOfAnOctave.
    const int octave = int(std::bit_width(quint64(time) / BucketsOfAnOctave));
    const quint64 place = quint64(time) >> std::max(0, octave - 1);
    Bucket &bucket = m_octaves[octave][size_t(place % BucketsOfAnOctave)];
    ++bucket.count;
    bucket.sum += time;
    ++m_count;
    m_least = m_least < 0 ? time : std::min(m_least, time);
    m_greatest = std::max(m_greatest, time);
}

qint64 TimeSpread::Percentile(int hundredths) const
{
    const qint64 wanted = std::max<qint64>(1, (m_count * hundredths + 99) / 100);
    qint64 found = -1;
    qint64 before = 0;
    Visit([&](qint64 time, qint64 count) {
        if (before < wanted)
            found = time;
        before += count;
    });
    return found;
}

void TimeSpread::Visit(const std::function<void(qint64, qint64)> &visitor) const
{
    for (const auto &[octave, buckets] : m_octaves) {
        for (const Bucket &bucket : buckets) {
            if (bucket.count > 0)
                visitor(bucket.sum / bucket.count, bucket.count);
        }
    }
}
