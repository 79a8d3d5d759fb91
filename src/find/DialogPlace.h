// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

namespace DialogPlace
{

/// Where a dialog goes so that it does not cover what is to be seen: its own place if it does not
/// lie over it, else the nearest place beside it on the screen. Where there is no such place it
/// covers as little as possible.
QPoint Beside(const QRect &dialog, const QRect &seen, const QRect &screen);

} // namespace DialogPlace
