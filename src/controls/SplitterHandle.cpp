// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SplitterHandle.h"

#include "Twips.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

namespace
{

/// What one press of an arrow key moves.
constexpr int KeyStepTwips = 10 * TwipsPerPixel;
/// The picture is this much less high than the handle, in pixels (20 twips, rounded up).
constexpr int PictureLess = 2;

} // namespace

SplitterHandle::SplitterHandle(Qt::Orientation movement, int dragLimit, QWidget *parent)
    : QWidget(parent),
      m_movement(movement),
      m_dragLimit(dragLimit),
      m_picture(new QWidget(parent)),
      m_hold(*this)
{
    setCursor(Horizontal() ? Qt::SplitHCursor : Qt::SplitVCursor);
    setFocusPolicy(Qt::TabFocus);
    m_picture->setAutoFillBackground(true);
    m_picture->setBackgroundRole(QPalette::Highlight); // seen on light and dark
    m_picture->hide();
    connect(&m_hold, &MouseHold::Lost, m_picture, &QWidget::hide);
}

int SplitterHandle::PlaceOf(const QWidget &widget) const
{
    return TwipsPerPixel * (Horizontal() ? widget.x() : widget.y());
}

void SplitterHandle::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_picture->setGeometry(x(), y(), width(), height() - PictureLess);
    m_picture->raise();
    m_picture->show();
    m_hold.Begin();
}

void SplitterHandle::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_hold.Holds())
        return;
    const QPoint inParent = mapToParent(event->position().toPoint());
    const int pointer = Horizontal() ? inParent.x() : inParent.y();
    const int length = Horizontal() ? parentWidget()->width() : parentWidget()->height();
    const int place =
        DragPosition(pointer * TwipsPerPixel, m_dragLimit, length * TwipsPerPixel) / TwipsPerPixel;
    m_picture->move(Horizontal() ? QPoint(place, y()) : QPoint(x(), place));
}

void SplitterHandle::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_hold.End())
        return;
    m_picture->hide();
    Q_EMIT Moved(PlaceOf(*m_picture));
}

void SplitterHandle::keyPressEvent(QKeyEvent *event)
{
    const int back = Horizontal() ? Qt::Key_Left : Qt::Key_Up;
    const int forth = Horizontal() ? Qt::Key_Right : Qt::Key_Down;
    if (event->key() == back)
        Q_EMIT Moved(PlaceOf(*this) - KeyStepTwips);
    else if (event->key() == forth)
        Q_EMIT Moved(PlaceOf(*this) + KeyStepTwips);
    else
        QWidget::keyPressEvent(event);
}

void SplitterHandle::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    if (Horizontal())
        option.state |= QStyle::State_Horizontal;
    style()->drawControl(QStyle::CE_Splitter, &option, &painter, this);
    if (hasFocus())
        painter.fillRect(rect(), palette().color(QPalette::Highlight));
}
