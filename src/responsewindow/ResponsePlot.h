// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PlotScale.h"
#include "ResponseStatistics.h"

#include <QWidget>

#include <memory>

/// A plot of what was counted of one key: its axes, what stands on them, and the mark that is in
/// hand. A click on a mark, or Enter, leads to its telegram; the arrow keys go from mark to mark.
class ResponsePlot : public QWidget
{
    Q_OBJECT

  public:
    /// Of the picture; null for none.
    void Show(std::shared_ptr<const ResponsePicture> picture, bool isLogarithmic, qint64 limit);

    /// What is said of the mark in hand or under the mouse; empty without one.
    QString Readout() const;

  Q_SIGNALS:
    /// A telegram is to be gone to, by its number.
    void Chosen(qint64 number);

  protected:
    ResponsePlot();

    /// Something that can be pointed at.
    struct Mark {
        qint64 id = 0; ///< the same mark in another picture has the same
        QRectF area;
        QList<qint64> numbers; ///< of its telegrams, the one to go to first
        bool isMiss = false;
        QString text;
    };
    struct Axes {
        PlotScale across;
        PlotScale up;
    };
    /// The two axes, for what is shown.
    virtual Axes AxesOf(const ResponsePicture &picture) const = 0;
    /// All marks within the field, the first one to the left.
    virtual QList<Mark> MarksOf(const ResponsePicture &picture) const = 0;
    virtual void PaintMarks(QPainter &painter, const QList<Mark> &marks) const = 0;
    /// What stands over the marks.
    virtual void PaintLines(QPainter &painter, const ResponsePicture &picture) const = 0;
    virtual QString Title(const ResponsePicture &picture) const = 0;
    /// In words, for who cannot see it.
    virtual QString Summary(const ResponsePicture &picture) const = 0;
    /// What it leaves free beside the field, in logical pixels.
    virtual int RightMargin(const ResponsePicture &picture) const = 0;
    /// The mark that a point belongs to, negative for none.
    virtual int MarkAt(const QList<Mark> &marks, const QPointF &point) const = 0;

    const Axes &Scales() const { return m_axes; }
    const QRectF &Field() const { return m_field; }
    bool IsLogarithmic() const { return m_isLogarithmic; }
    qint64 Limit() const { return m_limit; }
    QColor MarkColour() const;
    QColor MissColour() const;
    QColor FaintColour() const; ///< of lines behind the marks

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

  private:
    void Arrange();
    void Describe();
    void Take(int mark);
    void Choose();
    const Mark *InSight() const;
    void PaintAxes(QPainter &painter) const;
    void PaintHead(QPainter &painter) const;
    int AcrossTicks() const;
    int UpTicks() const;

    std::shared_ptr<const ResponsePicture> m_picture;
    bool m_isLogarithmic = false;
    qint64 m_limit = 0;
    QRectF m_field; ///< between the axes
    Axes m_axes;
    QList<Mark> m_marks;
    int m_inHand = -1;
    int m_underMouse = -1;
    qsizetype m_turn = 0; ///< which of the telegrams of the mark in hand comes next
};
