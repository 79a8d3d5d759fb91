// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Clock.h"

/// The computer's clock and the user's locale.
class SystemClock final : public Clock
{
  public:
    SystemClock();

    QDateTime Now() const override { return QDateTime::currentDateTime(); }
    QString DateSeparator() const override { return m_dateSeparator; }
    QString ShortDate(QDate date) const override;

    /// What stands between the numbers of a date format such as "dd.MM.yy"; "/" if that is
    /// nothing that a view could show.
    static QString SeparatorOf(const QString &dateFormat);

  private:
    QString m_dateSeparator;
};
