// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DialogPlace.h"

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

/// The places beside what is to be seen, corners included.
QList<QRect> PlacesBeside(const QRect &seen, const QRect &dialog, const QRect &screen)
{
    QList<QRect> places;
    for (const int x : {dialog.x(), seen.left() - Gap - dialog.width(), seen.right() + 1 + Gap}) {
        for (const int y :
             {dialog.y(), seen.top() - Gap - dialog.height(), seen.bottom() + 1 + Gap})
            places << OnScreen(QRect(QPoint(x, y), dialog.size()), screen);
    }
    return places;
}

} // namespace

QPoint DialogPlace::Beside(const QRect &dialog, const Sight &sight, const QRect &screen)
{
    if (!dialog.intersects(sight.hit))
        return dialog.topLeft();
    const auto cost = [&](const QRect &place) {
        return std::tuple(Area(place & sight.hit), Area(place & sight.view),
                          (place.topLeft() - dialog.topLeft()).manhattanLength());
    };
    const QList<QRect> places =
        PlacesBeside(sight.hit, dialog, screen) + PlacesBeside(sight.view, dialog, screen);
    return std::min_element(places.begin(), places.end(),
                            [&](const QRect &a, const QRect &b) { return cost(a) < cost(b); })
        ->topLeft();
}
