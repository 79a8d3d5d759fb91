// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Line.h"

#include <array>

/// What the driver of a line has counted since it was loaded; the counts run over.
struct DriverCounters {
    bool known = false; ///< not every driver counts
    quint32 damaged = 0;
    quint32 breaks = 0;
    quint32 overruns = 0;
    quint32 modemChanges = 0; ///< of all lines
};

/// Brings together what the marks in a line's bytes tell and what its driver counts. Marks are told
/// where they stand. What the driver counted is told when no mark of it can be under way any more:
/// overruns at once, for they have none, damaged bytes and breaks if they were counted before an
/// earlier look at a line that has been read since.
class LineDamage
{
  public:
    /// At the opening of a line.
    void Begin(bool marked, const DriverCounters &now);

    /// Whether the driver counts.
    bool Counted() const { return m_base.known; }

    /// Whether the mark that stands for a damaged 0 or a break is the latter: if the driver has
    /// counted one that was not told, or does not count.
    bool IsBreak(const DriverCounters &now) const;

    void Told(LineCondition condition, quint32 count) { m_told[size_t(condition)] += count; }

    /// How many of a kind are to be told because of the driver's counts alone.
    quint32 Untold(LineCondition condition, const DriverCounters &now) const;
    /// To be called now and then while the line is read: marks of what is counted by now will have
    /// been read when Untold is asked again for such.
    void Settle(const DriverCounters &now) { m_settled = now; }

  private:
    quint32 Since(LineCondition condition, const DriverCounters &now) const;

    bool m_marked = false;
    DriverCounters m_base;
    DriverCounters m_settled;
    std::array<quint32, LineConditionCount> m_told{}; ///< by condition
};
