// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

namespace DialogPlace
{

/// What was found and the view that shows it, both in pixels of the screen.
struct Sight {
    QRect hit;
    QRect view;
};

/// Where a dialog goes so that it does not cover the hit. It stays where it is if it does not;
/// else it leaves as much of the view as it can, so that the next hit need not move it again.
QPoint Beside(const QRect &dialog, const Sight &sight, const QRect &screen);

} // namespace DialogPlace
