// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ClickLabel.h"

#include "ControlAccessible.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMetaMethod>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

/// A text given to the base would be told to assistive programs before this is more than a label.
ClickLabel::ClickLabel(const QString &text, QWidget *parent) : QLabel(parent)
{
    QAccessible::installFactory(ControlAccessible::Create);
    setText(text);
}

void ClickLabel::MakeLink()
{
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    QFont underlined = font();
    underlined.setUnderline(true);
    setFont(underlined);
    setForegroundRole(QPalette::Link);
}

bool ClickLabel::Acts() const
{
    return isSignalConnected(QMetaMethod::fromSignal(&ClickLabel::Clicked));
}

QSize ClickLabel::minimumSizeHint() const
{
    const QSize least = QLabel::minimumSizeHint();
    return pixmap().isNull() ? QSize(0, least.height()) : least;
}

void ClickLabel::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        Q_EMIT Clicked();
}

void ClickLabel::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
        event->key() == Qt::Key_Space)
        Q_EMIT Clicked();
    else
        QLabel::keyPressEvent(event);
}

void ClickLabel::paintEvent(QPaintEvent *event)
{
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
    if (!pixmap().isNull() || shown == text()) {
        QLabel::paintEvent(event);
    } else {
        QPainter painter(this);
        drawFrame(&painter);
        style()->drawItemText(&painter, contentsRect(), int(alignment()), palette(), isEnabled(),
                              shown, foregroundRole());
    }
    if (hasFocus()) {
        QPainter painter(this);
        QStyleOptionFocusRect option;
        option.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}
