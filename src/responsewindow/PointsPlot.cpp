// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PointsPlot.h"

#include "ResponseText.h"
#include "TelegramCells.h"
#include "TelegramText.h"

#include <QPainter>

#include <algorithm>

namespace
{

constexpr double Radius = 2.5;
constexpr double Reach = 12; ///< pixels at which a point is pointed at

/// Of the day.
QString ClockOf(qint64 wall)
{
    return TelegramText::Time(wall).section(u' ', 1);
}

bool IsPeriod(const ResponsePicture &picture)
{
    return picture.row.key.kind == ResponseKey::Kind::Detection;
}

} // namespace

QString PointsPlot::Title(const ResponsePicture &picture) const
{
    return ResponseText::Name(picture.row.key) +
           (IsPeriod(picture) ? QStringLiteral(": time since the one before")
                              : QStringLiteral(": time to the answer"));
}

int PointsPlot::RightMargin(const ResponsePicture &) const
{
    return int(4 * Radius) + 6;
}

ResponsePlot::Axes PointsPlot::AxesOf(const ResponsePicture &picture) const
{
    QList<ResponseSample> all = picture.samples + picture.misses;
    if (all.isEmpty())
        return {};
    const auto [first, last] =
        std::minmax_element(all.cbegin(), all.cend(), [](const auto &one, const auto &other) {
            return one.wall < other.wall;
        });
    return {PlotScale::OfMoments(first->wall, last->wall),
            PlotScale::OfTimes(picture.row.least, picture.row.greatest + picture.row.greatest / 20,
                               IsLogarithmic())}; // no point is where misses are
}

/// What nothing answered stands at the upper edge.
QList<ResponsePlot::Mark> PointsPlot::MarksOf(const ResponsePicture &picture) const
{
    QList<Mark> marks;
    for (const QList<ResponseSample> &samples : {picture.samples, picture.misses}) {
        for (const ResponseSample &sample : samples) {
            const double up = sample.IsAnswered() ? Scales().up.ShareOf(double(sample.time)) : 1;
            const QPointF at(Field().left() +
                                 Scales().across.ShareOf(double(sample.wall)) * Field().width(),
                             Field().bottom() - up * Field().height());
            const QString what = sample.IsAnswered() ? TelegramCells::SpanText(sample.time)
                                                     : QStringLiteral("no answer");
            marks << Mark{sample.number,
                          QRectF(at.x() - Radius, at.y() - Radius, 2 * Radius, 2 * Radius),
                          {sample.number},
                          !sample.IsAnswered(),
                          QStringLiteral("%1 at %2, row %3")
                              .arg(what, ClockOf(sample.wall))
                              .arg(sample.number)};
        }
    }
    std::stable_sort(marks.begin(), marks.end(),
                     [](const Mark &one, const Mark &other) { return one.id < other.id; });
    return marks;
}

void PointsPlot::PaintMarks(QPainter &painter, const QList<Mark> &marks) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Mark &mark : marks) {
        if (mark.isMiss) {
            painter.setPen(QPen(MissColour(), 2));
            const QRectF cross = mark.area.adjusted(-1, -1, 1, 1);
            painter.drawLine(cross.topLeft(), cross.bottomRight());
            painter.drawLine(cross.bottomLeft(), cross.topRight());
        } else {
            painter.setPen(Qt::NoPen);
            painter.setBrush(MarkColour());
            painter.drawEllipse(mark.area);
        }
    }
    painter.restore();
}

/// The limit, if it is near enough to be seen, and the median.
void PointsPlot::PaintLines(QPainter &painter, const ResponsePicture &picture) const
{
    const auto paint = [&](qint64 time, const QString &name, const QPen &pen) {
        const double y = Field().bottom() - Scales().up.ShareOf(double(time)) * Field().height();
        painter.setPen(pen);
        painter.drawLine(QPointF(Field().left(), y), QPointF(Field().right(), y));
        painter.drawText(QRectF(Field().left() + 4, y - fontMetrics().height(), Field().width() - 8,
                                fontMetrics().height()),
                         Qt::AlignRight | Qt::AlignBottom, name);
    };
    if (picture.row.median >= 0)
        paint(picture.row.median, QStringLiteral("median"),
              QPen(palette().color(QPalette::Text), 1, Qt::DotLine));
    if (!IsPeriod(picture) && double(Limit()) <= Scales().up.Greatest())
        paint(Limit(), QStringLiteral("limit"), QPen(MissColour(), 1, Qt::DashLine));
}

QString PointsPlot::Summary(const ResponsePicture &picture) const
{
    if (picture.samples.isEmpty() && picture.misses.isEmpty())
        return QStringLiteral("No time is known yet.");
    const ResponseRow &row = picture.row;
    QString text;
    if (row.least >= 0)
        text = QStringLiteral("From %1 to %2, the last %3.")
                   .arg(TelegramCells::SpanText(row.least), TelegramCells::SpanText(row.greatest),
                        TelegramCells::SpanText(row.last));
    if (row.unanswered > 0)
        text += (text.isEmpty() ? QString() : QStringLiteral(" ")) +
                QStringLiteral("Without an answer: %1.").arg(row.unanswered);
    return text;
}

int PointsPlot::MarkAt(const QList<Mark> &marks, const QPointF &point) const
{
    int nearest = -1;
    double least = Reach * Reach;
    for (int i = 0; i < marks.size(); ++i) {
        const QPointF apart = marks[i].area.center() - point;
        const double square = QPointF::dotProduct(apart, apart);
        if (square <= least) {
            least = square;
            nearest = i;
        }
    }
    return nearest;
}
