// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "StampText.h"

#include "Clock.h"
#include "CodePage1252.h"

QByteArray StampText(const StampSettings &settings, const Clock &clock, qint64 wallTime)
{
    if (!settings.Date && !settings.Time)
        return {};
    const QDateTime now = QDateTime::fromMSecsSinceEpoch(wallTime / 1'000'000);
    QString text = settings.NewLine ? QStringLiteral("\r\n") : QString();
    if (settings.Date) {
        const QDate date = now.date();
        text += QString::number(date.day()) + clock.DateSeparator();
        text += QStringLiteral("%1").arg(date.month(), 2, 10, QLatin1Char('0'));
        text += clock.DateSeparator();
        text += QStringLiteral("%1 ").arg(date.year() % 100, 2, 10, QLatin1Char('0'));
    }
    if (settings.Time)
        text += now.time().toString(QStringLiteral("HH:mm:ss "));
    text += QStringLiteral(" - ");
    return CodePage1252::FromUnicode(text).bytes;
}
