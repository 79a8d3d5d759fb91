// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MouseHold.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

#include <utility>

void MouseHold::Begin()
{
    m_holds = true;
    qApp->installEventFilter(this);
}

bool MouseHold::End()
{
    qApp->removeEventFilter(this);
    return std::exchange(m_holds, false);
}

bool MouseHold::eventFilter(QObject *watched, QEvent *event)
{
    if (Loses(*watched, *event) && End())
        Q_EMIT Lost();
    return false;
}

bool MouseHold::Loses(const QObject &watched, const QEvent &event) const
{
    const bool here = &watched == &m_widget;
    switch (event.type()) {
    case QEvent::MouseButtonRelease: // windows get it before their widgets
        return !here && watched.isWidgetType() &&
               static_cast<const QMouseEvent &>(event).button() == Qt::LeftButton;
    case QEvent::MouseMove:
        return here && !static_cast<const QMouseEvent &>(event).buttons().testFlag(Qt::LeftButton);
    case QEvent::Show: // a menu takes the mouse
        return watched.isWidgetType() &&
               static_cast<const QWidget &>(watched).windowType() == Qt::Popup;
    case QEvent::WindowBlocked:
    case QEvent::WindowDeactivate:
        return &watched == m_widget.window();
    case QEvent::EnabledChange:
    case QEvent::Hide:
    case QEvent::UngrabMouse:
        return here;
    default:
        return false;
    }
}
