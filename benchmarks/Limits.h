// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

/// What a figure may be: a multiple of what a plain program needs in the same run, or so much more
/// than that, whichever is larger.
struct Limit {
    double times = 1;
    double orMore = 0;

    double Of(double reference) const { return std::max(reference * times, reference + orMore); }
};

/// Puts figure, reference and limit of a row side by side, as words at the end of its line such as
/// "p50 0.041 ms, echo 0.034: 1.21 times, limit 1.50".
class Comparison
{
  public:
    /// The reference as a reader knows it.
    Comparison(benchmark::State &state, const char *reference)
        : m_state(state), m_reference(reference)
    {
    }
    ~Comparison() { m_state.SetLabel(m_words); }
    Comparison(const Comparison &) = delete;
    Comparison &operator=(const Comparison &) = delete;

    void Add(const char *name, double figure, double reference, const Limit &limit)
    {
        char words[100] = {};
        std::snprintf(words, sizeof words, ": %.2f times, limit %.2f", figure / reference,
                      limit.Of(reference) / reference);
        AddWords(name, figure, reference, words, figure <= limit.Of(reference));
    }

    /// One whose limit does not depend on the reference.
    void AddWithin(const char *name, double figure, double reference, double most)
    {
        char words[100] = {};
        std::snprintf(words, sizeof words, ", limit %.3g", most);
        AddWords(name, figure, reference, words, figure <= most);
    }

  private:
    void AddWords(const char *name, double figure, double reference, const char *limit, bool met)
    {
        char words[200] = {};
        std::snprintf(words, sizeof words, "%s%s %.3g, %s %.3g%s%s", m_words.empty() ? "" : "; ",
                      name, figure, m_reference, reference, limit, met ? "" : ", MISSED");
        m_words += words;
    }

    benchmark::State &m_state;
    const char *m_reference;
    std::string m_words;
};

/// The value that the given share of all values does not exceed.
inline double Percentile(std::vector<double> values, double share)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, size_t(share * double(values.size())))];
}
