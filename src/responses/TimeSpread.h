// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <array>
#include <functional>
#include <map>

/// How many of many times were how long, in a bounded room. Times within a 512th of each other may
/// count as their mean; what is told of few times is exact.
class TimeSpread final
{
  public:
    void Add(qint64 time); ///< in ns, not negative

    qint64 Count() const { return m_count; }
    qint64 Least() const { return m_least; } ///< -1 without any
    qint64 Greatest() const { return m_greatest; }
    /// The shortest that so many hundredths of all times do not exceed, 1 to 100; -1 without any.
    qint64 Percentile(int hundredths) const;

    /// Times that are as good as one, the shortest first.
    void Visit(const std::function<void(qint64 time, qint64 count)> &visitor) const;

  private:
    /// Each is as wide as the 512th of the shortest in it, or 1 ns.
    static constexpr int BucketsOfAnOctave = 512;
    struct Bucket {
        qint64 count = 0;
        qint64 sum = 0;
    };
    using Octave = std::array<Bucket, BucketsOfAnOctave>;

    std::map<int, Octave> m_octaves;
    qint64 m_count = 0;
    qint64 m_least = -1;
    qint64 m_greatest = -1;
};
