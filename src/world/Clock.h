// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>

/// The time and its place: what a stamp needs to know of the world.
class Clock
{
  public:
    virtual ~Clock() = default;

    virtual QDateTime Now() const = 0;
    /// What the locale puts between the numbers of a date, such as "/" or ".".
    virtual QString DateSeparator() const = 0;
    /// A date in the short form of the locale.
    virtual QString ShortDate(QDate date) const = 0;
};
