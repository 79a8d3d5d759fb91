// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "WindowPlace.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace
{

/// A window that would show less of its top edge than this is brought back.
constexpr int LeastVisible = 40;

} // namespace

namespace WindowPlace
{

QRect Of(const QWidget &window)
{
    return window.isMaximized() || window.isMinimized() ? window.normalGeometry()
                                                        : QRect(window.pos(), window.size());
}

void Restore(QWidget &window, const QRect &stored, const QSize &usual)
{
    const QRect free = QGuiApplication::primaryScreen()->availableGeometry();
    window.resize(
        (stored.width() > 0 ? stored.size() : usual).boundedTo(free.size() - QSize(20, 40)));
    if (stored.width() <= 0)
        return;
    const QRect topEdge(stored.topLeft(), QSize(window.width(), LeastVisible));
    const QList<QScreen *> screens = QGuiApplication::screens();
    const bool shows = std::any_of(screens.begin(), screens.end(), [&](const QScreen *each) {
        const QRect seen = each->availableGeometry() & topEdge;
        return seen.width() >= LeastVisible && seen.height() >= LeastVisible / 2;
    });
    if (shows)
        window.move(stored.topLeft());
}

} // namespace WindowPlace
