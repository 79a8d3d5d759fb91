// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <deque>

/// How many a second, over the last second or so of a count that is looked at several times a
/// second.
class ByteRate
{
  public:
    /// The count, and the time in milliseconds. A count that has become less begins anew.
    void Note(qint64 count, qint64 time);
    qint64 PerSecond() const;

  private:
    struct Look {
        qint64 count;
        qint64 time;
    };
    std::deque<Look> m_looks;
};
