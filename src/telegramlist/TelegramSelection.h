// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>

/// Rows that are chosen, as ranges: any number of rows takes the room of a few.
class TelegramSelection
{
  public:
    /// Both rows included.
    struct Range {
        qint64 first = 0;
        qint64 last = 0;

        bool operator==(const Range &) const = default;
    };

    bool IsEmpty() const { return m_ranges.isEmpty(); }
    bool Contains(qint64 row) const;
    qint64 Count() const;
    /// Ascending; no two touch.
    const QList<Range> &Ranges() const { return m_ranges; }
    /// Of one that is not empty.
    qint64 First() const { return m_ranges.first().first; }
    qint64 Last() const { return m_ranges.last().last; }

    void Clear() { m_ranges.clear(); }
    /// From one row to the other, whichever comes first.
    void Set(qint64 from, qint64 to);
    void Add(qint64 from, qint64 to);
    void Toggle(qint64 row);
    /// Rows before this one are gone.
    void DropBefore(qint64 row);

    bool operator==(const TelegramSelection &) const = default;

  private:
    void Remove(const Range &range);

    QList<Range> m_ranges;
};
