// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Clock.h"

/// A clock that the test sets.
class FixedClock final : public Clock
{
  public:
    QDateTime now = QDateTime(QDate(2026, 11, 5), QTime(7, 13, 49));
    QString separator = QStringLiteral("/");

    QDateTime Now() const override { return now; }
    QString DateSeparator() const override { return separator; }
    QString ShortDate(QDate date) const override { return date.toString("d.M.yy"); }
};
