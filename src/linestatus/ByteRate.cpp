// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ByteRate.h"

namespace
{

constexpr qint64 Second = 1000;

} // namespace

void ByteRate::Note(qint64 count, qint64 time)
{
    if (!m_looks.empty() && count < m_looks.back().count)
        m_looks.clear();
    while (m_looks.size() > 1 && time - m_looks[1].time >= Second)
        m_looks.pop_front();
    m_looks.push_back({count, time});
}

qint64 ByteRate::PerSecond() const
{
    if (m_looks.size() < 2)
        return 0;
    const qint64 elapsed = m_looks.back().time - m_looks.front().time;
    return elapsed > 0 ? (m_looks.back().count - m_looks.front().count) * Second / elapsed : 0;
}
