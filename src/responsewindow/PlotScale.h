// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

/// What an axis of a plot reaches over, and where its ticks are.
class PlotScale final
{
  public:
    PlotScale() = default;
    /// Of times in ns, from 0 on; logarithmic from the decade of the least on.
    static PlotScale OfTimes(qint64 least, qint64 greatest, bool isLogarithmic);
    /// Of counts, from 0 on, with some room above.
    static PlotScale OfCounts(qint64 greatest);
    /// Of moments in ns since 1970, shown in local time.
    static PlotScale OfMoments(qint64 first, qint64 last);

    double Greatest() const { return m_greatest; }
    /// 0 for the least, 1 for the greatest; what is beyond is at the end.
    double ShareOf(double value) const;
    double ValueAt(double share) const;

    struct Tick {
        double share = 0;
        QString label;
    };
    /// So many at most, evenly as to what they say.
    QList<Tick> Ticks(int most) const;
    /// What the labels count: "ms"; empty if they say it themselves.
    QString Unit() const;

  private:
    enum class Kind { Times, Decades, Counts, Moments };

    QList<Tick> EvenTicks(double step) const;
    QList<Tick> DecadeTicks(int most) const;
    QList<Tick> MomentTicks(int most) const;

    Kind m_kind = Kind::Counts;
    double m_least = 0;
    double m_greatest = 1;
};
