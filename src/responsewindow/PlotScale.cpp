// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PlotScale.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr double Micro = 1e3; ///< ns
constexpr double Milli = 1e6;
constexpr double Second = 1e9;
constexpr double Minute = 60 * Second;
constexpr double Hour = 60 * Minute;
constexpr double Day = 24 * Hour;

/// Between ticks of a clock that are a second apart or more.
constexpr std::array ClockSteps = {1 * Second,  2 * Second,  5 * Second, 10 * Second, 15 * Second,
                                   30 * Second, 1 * Minute,  2 * Minute, 5 * Minute,  10 * Minute,
                                   15 * Minute, 30 * Minute, 1 * Hour,   2 * Hour,    3 * Hour,
                                   6 * Hour,    12 * Hour,   1 * Day,    2 * Day,     7 * Day};

struct Unit {
    double size;
    const char *name;
};
constexpr std::array Units = {Unit{Second, "s"}, Unit{Milli, "ms"}, Unit{Micro, "\u00B5s"}};

/// The greatest of which there is at least one.
const Unit &UnitOf(double time)
{
    const auto fits = [time](const Unit &unit) { return time >= unit.size * (1 - 1e-9); };
    const auto unit = std::find_if(Units.begin(), Units.end(), fits);
    return unit == Units.end() ? Units.back() : *unit;
}

/// 1, 2 or 5 of some power of ten: the least that leaves so many steps at most.
double StepOf(double span, int most)
{
    const double least = span / std::max(1, most);
    const double decade = std::pow(10, std::floor(std::log10(least)));
    for (const int times : {1, 2, 5}) {
        if (decade * times >= least * (1 - 1e-9))
            return decade * times;
    }
    return decade * 10;
}

QString Number(double number)
{
    constexpr int MostDigits = 12; // of a count
    return QLocale(QLocale::English).toString(number, 'g', MostDigits);
}

double ClockStepOf(double span, int most)
{
    const double least = span / std::max(1, most);
    if (least < Second)
        return std::max(Micro, StepOf(span, most));
    const auto step = std::lower_bound(ClockSteps.begin(), ClockSteps.end(), least);
    return step == ClockSteps.end() ? std::ceil(least / Day) * Day : *step;
}

QString ClockLabel(qint64 ns, double step, double span)
{
    constexpr qint64 OfMs = 1'000'000;
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(ns / OfMs);
    if (step >= Day)
        return time.toString(u"MM-dd");
    if (step >= Minute)
        return time.toString(span >= Day ? u"MM-dd HH:mm" : u"HH:mm");
    if (step >= Second)
        return time.toString(u"HH:mm:ss");
    if (step >= Milli)
        return time.toString(u"HH:mm:ss.zzz");
    return time.toString(u"ss.zzz") +
           QString::number(ns % OfMs / 1'000).rightJustified(3, QLatin1Char('0'));
}

} // namespace

PlotScale PlotScale::OfTimes(qint64 least, qint64 greatest, bool isLogarithmic)
{
    PlotScale scale;
    const double longest = std::max(Micro, double(greatest));
    if (!isLogarithmic) {
        scale.m_kind = Kind::Times;
        const double step = StepOf(longest, 10);
        scale.m_greatest = std::ceil(longest / step * (1 - 1e-9)) * step;
        return scale;
    }
    scale.m_kind = Kind::Decades;
    scale.m_least = std::pow(10, std::floor(std::log10(std::max(Micro, double(least)))));
    scale.m_greatest =
        std::max(scale.m_least * 10, std::pow(10, std::ceil(std::log10(longest) - 1e-9)));
    return scale;
}

PlotScale PlotScale::OfCounts(qint64 greatest)
{
    PlotScale scale;
    scale.m_greatest = 1.15 * double(std::max<qint64>(1, greatest));
    return scale;
}

PlotScale PlotScale::OfMoments(qint64 first, qint64 last)
{
    PlotScale scale;
    scale.m_kind = Kind::Moments;
    constexpr double Margin = 0.02; // so that no mark stands on the edge
    const double span = double(last - first);
    const double beside = std::max(Milli / 2, span * Margin);
    scale.m_least = double(first) - beside;
    scale.m_greatest = double(last) + beside;
    return scale;
}

double PlotScale::ShareOf(double value) const
{
    const double share = m_kind == Kind::Decades ? std::log(std::max(value, 1.0) / m_least) /
                                                       std::log(m_greatest / m_least)
                                                 : (value - m_least) / (m_greatest - m_least);
    return std::clamp(share, 0.0, 1.0);
}

double PlotScale::ValueAt(double share) const
{
    return m_kind == Kind::Decades ? m_least * std::pow(m_greatest / m_least, share)
                                   : m_least + share * (m_greatest - m_least);
}

QString PlotScale::Unit() const
{
    return m_kind == Kind::Times ? QString::fromUtf8(UnitOf(m_greatest).name) : QString();
}

QList<PlotScale::Tick> PlotScale::Ticks(int most) const
{
    switch (m_kind) {
    case Kind::Times:
        return EvenTicks(StepOf(m_greatest, most));
    case Kind::Counts:
        return EvenTicks(std::max(1.0, StepOf(m_greatest, most)));
    case Kind::Decades:
        return DecadeTicks(most);
    case Kind::Moments:
        break;
    }
    return MomentTicks(most);
}

QList<PlotScale::Tick> PlotScale::EvenTicks(double step) const
{
    QList<Tick> ticks;
    const double unit = m_kind == Kind::Times ? UnitOf(m_greatest).size : 1;
    const int count = int(m_greatest / step * (1 + 1e-9));
    for (int i = 0; i <= count; ++i)
        ticks << Tick{ShareOf(i * step), Number(i * step / unit)};
    return ticks;
}

QList<PlotScale::Tick> PlotScale::DecadeTicks(int most) const
{
    const int decades = int(std::lround(std::log10(m_greatest / m_least)));
    const int apart = std::max(1, (decades + most - 1) / std::max(1, most));
    const bool isFine = decades * 3 <= most;
    QList<Tick> ticks;
    for (int decade = 0; decade <= decades; decade += apart) {
        for (const int times : {1, 2, 5}) {
            const double value = m_least * std::pow(10, decade) * times;
            if (value > m_greatest * (1 + 1e-9) || (times > 1 && !isFine))
                break;
            const ::Unit &unit = UnitOf(value);
            ticks << Tick{ShareOf(value),
                          Number(value / unit.size) + u' ' + QString::fromUtf8(unit.name)};
        }
    }
    return ticks;
}

/// At round local times.
QList<PlotScale::Tick> PlotScale::MomentTicks(int most) const
{
    QList<Tick> ticks;
    const double span = m_greatest - m_least;
    const double step = ClockStepOf(span, most);
    const QDateTime begin = QDateTime::fromMSecsSinceEpoch(qint64(m_least / Milli));
    const qint64 midnight = begin.date().startOfDay().toMSecsSinceEpoch() * qint64(Milli);
    const double first = std::ceil((m_least - double(midnight)) / step);
    for (int i = 0; i <= most; ++i) {
        // Since midnight a double tells nanoseconds apart, since 1970 it does not.
        const qint64 at = midnight + std::llround((first + i) * step);
        if (double(at) <= m_greatest)
            ticks << Tick{ShareOf(double(at)), ClockLabel(at, step, span)};
    }
    return ticks;
}
