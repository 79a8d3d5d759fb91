// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ResponseKey.h"

#include <QList>

/// Some of many samples, spread evenly over them, in their order: of as many as follow each other
/// the shortest and the longest stay. Few stay all.
class SampleThinner final
{
  public:
    static constexpr qsizetype Most = 2048;

    void Add(const ResponseSample &sample);

    QList<ResponseSample> Samples() const;

  private:
    void Halve();

    QList<ResponseSample> m_samples; ///< of whole groups
    qint64 m_group = 2;              ///< samples that two are left of
    qint64 m_count = 0;              ///< of the group that is not whole
    ResponseSample m_least;
    ResponseSample m_greatest;
};
