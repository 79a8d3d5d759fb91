// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LongDelay.h"

#include <QDeadlineTimer>
#include <QTimer>

#include <algorithm>

namespace
{

/// One stretch of a long delay.
constexpr std::chrono::milliseconds Stretch = std::chrono::hours(24);

void CallAt(const QDeadlineTimer &due, QObject *context, const std::function<void()> &call)
{
    const auto left = std::chrono::milliseconds(due.remainingTime());
    if (left <= Stretch) {
        QTimer::singleShot(left, context, call);
        return;
    }
    QTimer::singleShot(Stretch, context, [due, context, call] { CallAt(due, context, call); });
}

} // namespace

void CallAfter(std::chrono::milliseconds delay, QObject *context, const std::function<void()> &call)
{
    CallAt(QDeadlineTimer(delay), context, call);
}
