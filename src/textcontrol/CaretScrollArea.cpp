// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaretScrollArea.h"

#include <QApplication>
#include <QKeyEvent>

CaretScrollArea::CaretScrollArea(QWidget *parent) : QAbstractScrollArea(parent)
{
    connect(&m_blinking, &QTimer::timeout, this, &CaretScrollArea::ToggleCaret);
}

void CaretScrollArea::RestartBlinking()
{
    m_caretVisible = hasFocus();
    const int flashTime = QApplication::cursorFlashTime();
    if (m_caretVisible && flashTime > 1)
        m_blinking.start(flashTime / 2);
    else
        m_blinking.stop();
    updateMicroFocus();
}

void CaretScrollArea::ToggleCaret()
{
    m_caretVisible = !m_caretVisible;
    viewport()->update(CaretRect().toAlignedRect());
}

bool CaretScrollArea::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // A key that means something here is not a shortcut of the window.
        const auto &key = *static_cast<QKeyEvent *>(event);
        if (HandleKey(key, false)) {
            event->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

void CaretScrollArea::keyPressEvent(QKeyEvent *event)
{
    event->setAccepted(HandleKey(*event, true));
}

void CaretScrollArea::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    RestartBlinking();
    viewport()->update();
}

void CaretScrollArea::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    RestartBlinking();
    viewport()->update();
}
