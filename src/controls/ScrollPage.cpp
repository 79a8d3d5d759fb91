// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ScrollPage.h"

#include <QEvent>
#include <QLayout>
#include <QScreen>
#include <QStyle>

namespace
{

/// What stands around the page: frame, tabs, margins and one row of buttons, in logical pixels.
constexpr QSize Surroundings = {40, 125};

} // namespace

ScrollPage::ScrollPage(QWidget *content, const QWidget *line) : m_line(line)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    setWidget(content);
    // The dialog's own background, as without the page.
    viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
}

QSize ScrollPage::sizeHint() const
{
    return Bounded(widget()->sizeHint());
}

QSize ScrollPage::minimumSizeHint() const
{
    QSize least = widget()->minimumSizeHint();
    if (widget()->hasHeightForWidth()) // texts that wrap
        least.setHeight(
            qMax(least.height(), widget()->heightForWidth(qMax(width(), least.width()))));
    return Bounded(least);
}

/// A page that is cut below needs room for its scroll bar as well.
QSize ScrollPage::Bounded(QSize wanted) const
{
    QSize room = screen()->availableSize() - Surroundings;
    if (m_line && !m_line->isHidden())
        room.rheight() -= m_line->sizeHint().height();
    wanted += QSize(1, 1); // at a broken scale the window may come out that much smaller
    if (wanted.height() > room.height())
        wanted.rwidth() += style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    return wanted.boundedTo(room);
}

bool ScrollPage::event(QEvent *event)
{
    // A layout knows what it wants once it is activated; the dialog's activates none in here.
    if (event->type() == QEvent::Polish && widget()->layout())
        widget()->layout()->activate();
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Polish)
        updateGeometry();
    return QScrollArea::event(event);
}
