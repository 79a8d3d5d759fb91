// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramCells.h"

#include "PlainText.h"
#include "TelegramText.h"

#include <QDateTime>

#include <array>
#include <utility>

namespace
{

using Kind = TrafficEvent::Kind;

constexpr qint64 Micro = 1'000;
constexpr qint64 Milli = 1'000'000;
constexpr qint64 Second = 1'000'000'000;
constexpr qint64 Minute = 60 * Second;

constexpr auto Marks = std::to_array<std::pair<Telegram::Mark, const char *>>({
    {Telegram::Damaged, "damaged"},
    {Telegram::Break, "break"},
    {Telegram::Overrun, "overrun"},
    {Telegram::Lost, "bytes lost"},
    {Telegram::Unreadable, "capture damaged"},
    {Telegram::Continued, "continued"},
    {Telegram::Gap, "after a gap"},
    {Telegram::OrderUncertain, "order uncertain"},
});

QString Decimals(qint64 thousandths, const char *unit)
{
    return QString::number(double(thousandths) / 1000, 'f', 3) + QString::fromUtf8(unit);
}

} // namespace

namespace TelegramCells
{

QString TimeText(qint64 wall, bool withDate)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(wall / Milli);
    const QString micro = QString::number(wall % Milli / Micro).rightJustified(3, u'0');
    return time.toString(withDate ? QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")
                                  : QStringLiteral("HH:mm:ss.zzz")) +
           micro;
}

QString MillisecondsText(qint64 nanoseconds)
{
    // In whole microseconds, as the times beside it are shown.
    const qint64 micro = nanoseconds / Micro;
    return QString::number(double(micro) / 1000, 'f', 3);
}

QString SpanText(qint64 nanoseconds)
{
    const qint64 size = qAbs(nanoseconds);
    const qint64 micro = nanoseconds / Micro;
    const qint64 ofMinute = size % Minute / Micro;
    if (size < Milli)
        return QString::number(micro) + QStringLiteral(" \u00B5s");
    if (size < Second)
        return Decimals(micro, " ms");
    if (size < Minute)
        return QString::number(double(micro) / 1e6, 'f', 6) + QStringLiteral(" s");
    const QString sign = nanoseconds < 0 ? QStringLiteral("-") : QString();
    return sign + QStringLiteral("%1:%2:%3")
                      .arg(size / (60 * Minute))
                      .arg(size / Minute % 60, 2, 10, QLatin1Char('0'))
                      .arg(QString::number(double(ofMinute) / 1e6, 'f', 6).rightJustified(9, u'0'));
}

QString PortText(const Telegram &telegram)
{
    const QString arrow = !telegram.HasBytes()          ? QStringLiteral("\u00B7 ")
                          : telegram.kind == Kind::Sent ? QStringLiteral("\u2192 ")
                                                        : QStringLiteral("\u2190 ");
    return arrow + TelegramText::Port(telegram);
}

/// Some remarks begin with what the kind is called.
QString EventText(const Telegram &telegram)
{
    if (telegram.HasBytes())
        return {};
    const QString kind = TelegramText::Kind(telegram);
    QString details = TelegramText::Details(telegram);
    if (details.startsWith(kind))
        return details;
    return details.isEmpty() ? kind : kind + QStringLiteral(": ") + details;
}

QString MarksText(const Telegram &telegram, bool withGap)
{
    QStringList words;
    for (const auto &[mark, word] : Marks) {
        if (telegram.marks.testFlag(mark) && (withGap || mark != Telegram::Gap))
            words += QString::fromLatin1(word);
    }
    if (telegram.HasBytes()) {
        for (const QString &text : {telegram.checksum, telegram.remark})
            words += PlainText(text);
    }
    words.removeAll(QString());
    return words.join(QStringLiteral(", "));
}

} // namespace TelegramCells
