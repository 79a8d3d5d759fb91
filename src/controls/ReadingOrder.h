// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QWidget>

/// Assistive programs read widgets of one parent in the order in which they lie above each other:
/// puts them in the order given, the last one on top.
inline void ReadInOrder(const QList<QWidget *> &siblings)
{
    for (QWidget *widget : siblings)
        widget->raise();
}
