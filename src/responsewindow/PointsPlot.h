// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ResponsePlot.h"

/// How long each took, over the time of day.
class PointsPlot final : public ResponsePlot
{
    Q_OBJECT

  protected:
    Axes AxesOf(const ResponsePicture &picture) const override;
    QList<Mark> MarksOf(const ResponsePicture &picture) const override;
    void PaintMarks(QPainter &painter, const QList<Mark> &marks) const override;
    void PaintLines(QPainter &painter, const ResponsePicture &picture) const override;
    QString Title(const ResponsePicture &picture) const override;
    QString Summary(const ResponsePicture &picture) const override;
    int RightMargin(const ResponsePicture &picture) const override;
    int MarkAt(const QList<Mark> &marks, const QPointF &point) const override;
};
