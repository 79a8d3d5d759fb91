// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <string>

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
        char words[200] = {};
        std::snprintf(words, sizeof words, "%s%s %.3g, %s %.3g: %.2f times, limit %.2f%s",
                      m_words.empty() ? "" : "; ", name, figure, m_reference, reference,
                      figure / reference, limit.Of(reference) / reference,
                      figure <= limit.Of(reference) ? "" : ", MISSED");
        m_words += words;
    }

  private:
    benchmark::State &m_state;
    const char *m_reference;
    std::string m_words;
};
