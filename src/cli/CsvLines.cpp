// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CsvLines.h"

#include "ByteLook.h"
#include "CodePage1252.h"
#include "CsvCell.h"
#include "JsonLines.h"

#include <QDateTime>
#include <QStringList>

#include <array>

namespace
{

using Kind = TrafficEvent::Kind;

constexpr qint64 Second = 1'000'000'000;

QString NamesOf(const TrafficEvent &event)
{
    QStringList names;
    for (const QByteArray &name : event.names) {
        if (!name.isEmpty())
            names << CodePage1252::ToUnicode(name);
    }
    return names.join(QStringLiteral("; "));
}

QString LinesOf(const ModemLines &lines)
{
    const std::array all = {std::pair{"CTS", lines.CTS}, std::pair{"DSR", lines.DSR},
                            std::pair{"DCD", lines.DCD}, std::pair{"RI", lines.RI}};
    QStringList texts;
    for (const auto &[name, on] : all)
        texts << QStringLiteral("%1 %2").arg(QLatin1String(name),
                                             on ? QLatin1String("on") : QLatin1String("off"));
    return texts.join(u' ');
}

/// What the other columns leave to be said.
QString DetailsOf(const TrafficEvent &event)
{
    QStringList details;
    if (event.answer)
        details << QStringLiteral("answer");
    if (event.kind == Kind::ModemLines)
        details << LinesOf(event.modem);
    if (event.kind == Kind::ClockSet)
        details << QStringLiteral("by %1 us").arg(event.count / 1000);
    else if (event.kind == Kind::NotSent || event.kind == Kind::Lost)
        details << QStringLiteral("%1 bytes").arg(event.count);
    else if (event.count > 1)
        details << QStringLiteral("%1 times").arg(event.count);
    if (!event.cause.isEmpty())
        details << event.cause;
    if (event.orderUncertain)
        details << QStringLiteral("order uncertain");
    return details.join(QStringLiteral("; "));
}

QByteArray DirectionOf(Kind kind)
{
    if (kind == Kind::Received)
        return "in";
    return kind == Kind::Sent ? "out" : "";
}

} // namespace

QByteArray CsvLines::Head()
{
    return "time,channel,port,event,direction,hex,text,names,details\n";
}

/// Local time with its offset, so that no hour is there twice.
QByteArray CsvLines::TimeOf(qint64 wall)
{
    const qint64 second = wall / Second - (wall % Second < 0 ? 1 : 0);
    if (m_before.isEmpty() || second != m_second) {
        m_second = second;
        const QDateTime local = QDateTime::fromSecsSinceEpoch(second);
        const int minutes = local.offsetFromUtc() / 60;
        m_before = local.toString(u"yyyy-MM-ddTHH:mm:ss").toLatin1();
        m_behind = QStringLiteral("%1%2:%3")
                       .arg(QChar(minutes < 0 ? u'-' : u'+'))
                       .arg(std::abs(minutes) / 60, 2, 10, QChar(u'0'))
                       .arg(std::abs(minutes) % 60, 2, 10, QChar(u'0'))
                       .toLatin1();
    }
    const qint64 microseconds = (wall - second * Second) / 1000;
    return m_before + '.' + QByteArray::number(microseconds).rightJustified(6, '0') + m_behind;
}

/// The names belong to the last byte, and so to the last row.
void CsvLines::Append(QByteArray &rows, const TrafficEvent &event, const QString &port)
{
    const QByteArray head = TimeOf(event.time.wall) + ',' + QByteArray::number(event.channel + 1) +
                            ',' + CsvCell(port) + ',' + JsonLines::NameOf(event.kind).toLatin1() +
                            ',' + DirectionOf(event.kind) + ',';
    QByteArrayView rest = event.bytes;
    for (bool last = false; !last;) {
        last = rest.size() <= MostBytesOfARow;
        const QByteArrayView bytes = rest.first(std::min(rest.size(), MostBytesOfARow));
        rest = rest.sliced(bytes.size());
        rows += head + bytes.toByteArray().toHex(' ').toUpper() + ',' +
                CsvCell(ByteLook::ToPictures(bytes)) + ',' +
                (last ? CsvCell(NamesOf(event)) : QByteArray()) + ',' + CsvCell(DetailsOf(event)) +
                '\n';
    }
}
