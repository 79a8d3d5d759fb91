// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramCells.h"

#include "ByteLook.h"
#include "CodePage1252.h"
#include "PlainText.h"

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

/// What is said of an event behind the name of its port.
constexpr auto Events = std::to_array<std::pair<Kind, const char *>>({
    {Kind::NotSent, "not sent"},
    {Kind::Damaged, "damaged byte"},
    {Kind::Break, "break"},
    {Kind::Overrun, "overrun: the system lost bytes"},
    {Kind::ModemLines, "modem lines"},
    {Kind::Opened, "opened"},
    {Kind::Closed, "closed"},
    {Kind::Gone, "gone"},
    {Kind::Back, "back"},
    {Kind::Lost, "bytes lost"},
    {Kind::ClockSet, "the clock was set"},
});

QString PortName(const Telegram &telegram, const QStringList &ports)
{
    const QString name = telegram.port.isEmpty() ? ports.value(telegram.channel) : telegram.port;
    return name.isEmpty() ? QStringLiteral("channel %1").arg(telegram.channel + 1)
                          : PlainText(name);
}

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
    return QString::number(double(nanoseconds / Micro) / 1000, 'f', 3);
}

QString SpanText(qint64 nanoseconds)
{
    const qint64 size = qAbs(nanoseconds);
    if (size < Milli)
        return QString::number(nanoseconds / Micro) + QStringLiteral(" \u00B5s");
    if (size < Second)
        return Decimals(nanoseconds / Micro, " ms");
    if (size < Minute)
        return QString::number(double(nanoseconds / Micro) / 1e6, 'f', 6) + QStringLiteral(" s");
    const QString sign = nanoseconds < 0 ? QStringLiteral("-") : QString();
    return sign + QStringLiteral("%1:%2:%3")
                      .arg(size / (60 * Minute))
                      .arg(size / Minute % 60, 2, 10, QLatin1Char('0'))
                      .arg(QString::number(double(size % Minute / Micro) / 1e6, 'f', 6)
                               .rightJustified(9, u'0'));
}

QString PortText(const Telegram &telegram, const QStringList &ports)
{
    if (!telegram.HasBytes())
        return QStringLiteral("\u00B7 ") + PortName(telegram, ports);
    const QString arrow =
        telegram.kind == Kind::Sent ? QStringLiteral("\u2192 ") : QStringLiteral("\u2190 ");
    return arrow + PortName(telegram, ports);
}

QString NameText(const Telegram &telegram)
{
    QStringList names;
    for (const QByteArray &name : telegram.names)
        names += PlainText(CodePage1252::ToUnicode(name));
    const QString text = names.join(QStringLiteral(", "));
    return telegram.answer ? QStringLiteral("answer to ") + text : text;
}

QString EventText(const Telegram &telegram, const QStringList &ports)
{
    if (telegram.HasBytes())
        return {};
    QString text = PortName(telegram, ports);
    for (const auto &[kind, words] : Events) {
        if (kind == telegram.kind)
            text = kind == Kind::ClockSet ? QString::fromLatin1(words)
                                          : text + u' ' + QString::fromLatin1(words);
    }
    return telegram.remark.isEmpty() ? text
                                     : text + QStringLiteral(": ") + PlainText(telegram.remark);
}

QString MarksText(const Telegram &telegram, bool withGap)
{
    QStringList words;
    for (const auto &[mark, word] : Marks) {
        if (telegram.marks.testFlag(mark) && (withGap || mark != Telegram::Gap))
            words += QString::fromLatin1(word);
    }
    if (telegram.HasBytes() && !telegram.remark.isEmpty())
        words += PlainText(telegram.remark);
    return words.join(QStringLiteral(", "));
}

QString HexText(QByteArrayView bytes)
{
    return QString::fromLatin1(bytes.toByteArray().toHex(' ').toUpper());
}

QString AsciiText(QByteArrayView bytes)
{
    return ByteLook::ToPictures(bytes);
}

} // namespace TelegramCells
