// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SampleThinner.h"

#include <algorithm>

namespace
{

void AddPair(QList<ResponseSample> &samples, const ResponseSample &one, const ResponseSample &two)
{
    samples << (one.number <= two.number ? one : two);
    if (one != two)
        samples << (one.number <= two.number ? two : one);
}

bool IsShorter(const ResponseSample &one, const ResponseSample &two)
{
    return one.time < two.time;
}

} // namespace

void SampleThinner::Add(const ResponseSample &sample)
{
    if (m_count == 0 || sample.time < m_least.time)
        m_least = sample;
    if (m_count == 0 || sample.time >= m_greatest.time)
        m_greatest = sample;
    if (++m_count < m_group)
        return;
    AddPair(m_samples, m_least, m_greatest);
    m_count = 0;
    if (m_samples.size() >= Most)
        Halve();
}

void SampleThinner::Halve()
{
    QList<ResponseSample> left;
    for (qsizetype first = 0; first < m_samples.size(); first += 4) {
        const auto begin = m_samples.cbegin() + first;
        const auto end = m_samples.cbegin() + std::min(first + 4, m_samples.size());
        AddPair(left, *std::min_element(begin, end, IsShorter),
                *std::max_element(begin, end, IsShorter));
    }
    m_samples = std::move(left);
    m_group *= 2;
}

QList<ResponseSample> SampleThinner::Samples() const
{
    QList<ResponseSample> samples = m_samples;
    if (m_count > 0)
        AddPair(samples, m_least, m_greatest);
    return samples;
}
