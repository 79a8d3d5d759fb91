// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

class QWidget;

/// Where a window of its own stands, in logical pixels, from one run of the program to the next.
namespace WindowPlace
{

/// Its place, or the one that it has when it is neither minimised nor maximised.
QRect Of(const QWidget &window);
/// Without a width it was never stored: the window then has its usual size, as far as the screen
/// has room. A place that no screen shows is not taken.
void Restore(QWidget &window, const QRect &stored, const QSize &usual);

} // namespace WindowPlace
