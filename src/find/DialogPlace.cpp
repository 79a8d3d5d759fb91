// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "find/DialogPlace.h"

#include <QList>

#include <algorithm>
#include <tuple>

namespace
{

constexpr int Gap = 8; ///< pixels left between the two

QRect OnScreen(QRect dialog, const QRect &screen)
{
    dialog.moveRight(std::min(dialog.right(), screen.right()));
    dialog.moveBottom(std::min(dialog.bottom(), screen.bottom()));
    dialog.moveLeft(std::max(dialog.left(), screen.left()));
    dialog.moveTop(std::max(dialog.top(), screen.top()));
    return dialog;
}

int Area(const QRect &rect)
{
    return rect.isValid() ? rect.width() * rect.height() : 0;
}

} // namespace

QPoint DialogPlace::Beside(const QRect &dialog, const QRect &seen, const QRect &screen)
{
    if (!dialog.intersects(seen))
        return dialog.topLeft();
    const int above = seen.top() - Gap - dialog.height();
    const int below = seen.bottom() + 1 + Gap;
    const int before = seen.left() - Gap - dialog.width();
    const int behind = seen.right() + 1 + Gap;
    QList<QRect> places;
    for (const QPoint &corner :
         {QPoint(dialog.x(), above), QPoint(dialog.x(), below), QPoint(before, dialog.y()),
          QPoint(behind, dialog.y()), QPoint(before, above), QPoint(behind, above),
          QPoint(before, below), QPoint(behind, below)})
        places << OnScreen(QRect(corner, dialog.size()), screen);
    const auto cost = [&](const QRect &place) {
        return std::tuple(Area(place & seen),
                          (place.topLeft() - dialog.topLeft()).manhattanLength());
    };
    return std::min_element(places.begin(), places.end(),
                            [&](const QRect &a, const QRect &b) { return cost(a) < cost(b); })
        ->topLeft();
}
