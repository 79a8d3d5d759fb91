// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramMoment.h"

#include <QDateTime>
#include <QRegularExpression>

namespace
{

constexpr qint64 Milli = 1'000'000;
constexpr int FractionDigits = 9;

const QRegularExpression &DayForm()
{
    static const QRegularExpression form(QStringLiteral("^(\\d{4})-(\\d{1,2})-(\\d{1,2})"));
    return form;
}

const QRegularExpression &TimeForm()
{
    static const QRegularExpression form(
        QStringLiteral("^(\\d{1,2}):(\\d{2})(?::(\\d{2})(?:[.,](\\d{1,9}))?)?$"));
    return form;
}

qint64 NanosecondsOf(const QDateTime &time)
{
    return time.toMSecsSinceEpoch() * Milli;
}

/// What stands behind the point.
qint64 FractionOf(const QString &digits)
{
    return digits.leftJustified(FractionDigits, u'0').toLongLong();
}

} // namespace

namespace TelegramMoment
{

std::optional<qint64> Of(QStringView text, qint64 latest)
{
    QString rest = text.trimmed().toString();
    QDate day;
    const QRegularExpressionMatch dayMatch = DayForm().match(rest);
    if (dayMatch.hasMatch()) {
        day = QDate(dayMatch.captured(1).toInt(), dayMatch.captured(2).toInt(),
                    dayMatch.captured(3).toInt());
        if (!day.isValid())
            return std::nullopt;
        rest = rest.sliced(dayMatch.capturedEnd());
        if (rest.isEmpty())
            return NanosecondsOf(day.startOfDay());
        if (!rest.startsWith(u' ') && !rest.startsWith(u'T'))
            return std::nullopt;
        rest = rest.sliced(1).trimmed();
    }
    const QRegularExpressionMatch match = TimeForm().match(rest);
    const QTime time(match.captured(1).toInt(), match.captured(2).toInt(),
                     match.captured(3).toInt());
    if (!match.hasMatch() || !time.isValid())
        return std::nullopt;
    const qint64 fraction = FractionOf(match.captured(4));
    if (day.isValid())
        return NanosecondsOf(QDateTime(day, time)) + fraction;
    day = QDateTime::fromMSecsSinceEpoch(latest / Milli).date();
    const qint64 moment = NanosecondsOf(QDateTime(day, time)) + fraction;
    return moment <= latest ? moment : NanosecondsOf(QDateTime(day.addDays(-1), time)) + fraction;
}

} // namespace TelegramMoment
