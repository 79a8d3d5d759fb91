// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QApplication>
#include <QWidget>

/// Does what an assistive program asks for, if mouse and keys could do it as well: not while the
/// widget is disabled, hidden or behind a modal dialog. It is done a moment later, so that whoever
/// asked need not wait for the dialog that may come of it.
template <typename Act> void PressLater(QWidget &widget, Act act)
{
    const auto press = [&widget, act] {
        const QWidget *modal = QApplication::activeModalWidget();
        if (widget.isEnabled() && widget.isVisible() && (!modal || modal == widget.window()))
            act();
    };
    QMetaObject::invokeMethod(&widget, press, Qt::QueuedConnection);
}
