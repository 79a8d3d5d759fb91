// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "HistogramPlot.h"

#include "TelegramCells.h"

#include <QLocale>
#include <QPainter>

#include <algorithm>

namespace
{

constexpr int WidthOfABar = 10; ///< pixels, at least
constexpr int LeastBars = 10;
constexpr int MostBars = 60;
const QString NoAnswer = QStringLiteral("no answer");

/// How many times fall into each of so many equal parts of a scale.
QList<qint64> CountsOf(const TimeSpread &spread, const PlotScale &scale, int bars)
{
    QList<qint64> counts(bars);
    spread.Visit([&](qint64 time, qint64 count) {
        counts[std::min(bars - 1, int(scale.ShareOf(double(time)) * bars))] += count;
    });
    return counts;
}

int BarsOf(double width)
{
    return std::clamp(int(width) / WidthOfABar, LeastBars, MostBars);
}

QString Percent(qint64 count, qint64 all)
{
    return QLocale(QLocale::English).toString(100.0 * double(count) / double(all), 'f', 1) +
           QStringLiteral(" %");
}

} // namespace

QString HistogramPlot::Title(const ResponsePicture &) const
{
    return QStringLiteral("How many took how long");
}

int HistogramPlot::RightMargin(const ResponsePicture &picture) const
{
    return picture.row.unanswered > 0 ? fontMetrics().horizontalAdvance(NoAnswer) + 20 : 16;
}

ResponsePlot::Axes HistogramPlot::AxesOf(const ResponsePicture &picture) const
{
    const PlotScale across =
        PlotScale::OfTimes(picture.row.least, picture.row.greatest, IsLogarithmic());
    const QList<qint64> counts = CountsOf(picture.spread, across, BarsOf(width()));
    return {across, PlotScale::OfCounts(std::max(picture.row.unanswered,
                                                 *std::max_element(counts.begin(), counts.end())))};
}

QList<ResponsePlot::Mark> HistogramPlot::MarksOf(const ResponsePicture &picture) const
{
    const int bars = BarsOf(width());
    const PlotScale &across = Scales().across;
    const QList<qint64> counts = CountsOf(picture.spread, across, bars);
    QList<QList<qint64>> numbers(bars); // the latest first
    for (const ResponseSample &sample : picture.samples)
        numbers[std::min(bars - 1, int(across.ShareOf(double(sample.time)) * bars))].prepend(
            sample.number);
    const qint64 all = picture.spread.Count() + picture.row.unanswered;
    const double bar = Field().width() / bars;
    const auto areaOf = [&](double left, double width, qint64 count) {
        const double height = std::max(1.0, Scales().up.ShareOf(double(count)) * Field().height());
        return QRectF(left, Field().bottom() - height, width, height);
    };
    QList<Mark> marks;
    for (int i = 0; i < bars; ++i) {
        if (counts[i] == 0)
            continue;
        const auto edge = [&](int place) {
            return TelegramCells::SpanText(qint64(across.ValueAt(double(place) / bars)));
        };
        marks << Mark{i, areaOf(Field().left() + i * bar + 1, bar - 1, counts[i]), numbers[i],
                      false,
                      QStringLiteral("%1 to %2: %3, %4")
                          .arg(edge(i), edge(i + 1))
                          .arg(counts[i])
                          .arg(Percent(counts[i], all))};
    }
    if (picture.row.unanswered > 0) {
        QList<qint64> misses;
        for (const ResponseSample &miss : picture.misses)
            misses.prepend(miss.number);
        marks << Mark{bars,
                      areaOf((Field().right() + width()) / 2 - WidthOfABar, 2 * WidthOfABar,
                             picture.row.unanswered),
                      misses, true,
                      QStringLiteral("%1: %2, %3")
                          .arg(NoAnswer)
                          .arg(picture.row.unanswered)
                          .arg(Percent(picture.row.unanswered, all))};
    }
    return marks;
}

void HistogramPlot::PaintMarks(QPainter &painter, const QList<Mark> &marks) const
{
    for (const Mark &mark : marks) {
        painter.fillRect(mark.area, mark.isMiss ? MissColour() : MarkColour());
        if (!mark.isMiss)
            continue;
        painter.setPen(MissColour());
        painter.drawText(QRectF(Field().right(), Field().bottom() + 4, width() - Field().right(),
                                fontMetrics().height()),
                         Qt::AlignCenter, NoAnswer);
    }
}

/// Names stand below each other where the lines are too near.
void HistogramPlot::PaintLines(QPainter &painter, const ResponsePicture &picture) const
{
    const ResponseRow &row = picture.row;
    if (row.median < 0)
        return;
    const int line = fontMetrics().height();
    painter.setPen(QPen(palette().color(QPalette::Text), 1, Qt::DotLine));
    int place = 0;
    for (const auto &[time, name] : {std::pair{row.median, QStringLiteral("median")},
                                     std::pair{row.percentile95, QStringLiteral("95 %")}}) {
        const double x = Field().left() + Scales().across.ShareOf(double(time)) * Field().width();
        painter.drawLine(QPointF(x, Field().top()), QPointF(x, Field().bottom()));
        const double width = fontMetrics().horizontalAdvance(name) + 8;
        const double left = x + width > Field().right() ? x - width : x;
        painter.drawText(QRectF(left + 4, Field().top() + place++ * line, width, line),
                         Qt::AlignLeft, name);
    }
}

QString HistogramPlot::Summary(const ResponsePicture &picture) const
{
    const ResponseRow &row = picture.row;
    if (row.median < 0)
        return row.unanswered > 0 ? QStringLiteral("Nothing was answered in time.")
                                  : QStringLiteral("No time is known yet.");
    return QStringLiteral("Half of them took %1 at most, 95 % took %2 at most.")
        .arg(TelegramCells::SpanText(row.median), TelegramCells::SpanText(row.percentile95));
}

/// All that stands above and below the bar belongs to it.
int HistogramPlot::MarkAt(const QList<Mark> &marks, const QPointF &point) const
{
    if (point.y() < Field().top() || point.y() > Field().bottom())
        return -1;
    const auto found = std::find_if(marks.cbegin(), marks.cend(), [&](const Mark &mark) {
        return point.x() >= mark.area.left() - 1 && point.x() < mark.area.right();
    });
    return found == marks.cend() ? -1 : int(found - marks.cbegin());
}
