// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureRemarks.h"

#include "CodePage1252.h"

#include <array>

namespace
{

using Kind = TrafficEvent::Kind;

constexpr QByteArrayView OrderUncertainBytes = "order uncertain";
const QString OrderUncertain = QString::fromLatin1(OrderUncertainBytes);
const QString AnswerTo = QStringLiteral("answer to ");
const QString Times = QStringLiteral(" times");
constexpr std::array Channels = {"channel 1", "channel 2"};

/// How the remark on an event of a kind begins; a count and a cause may follow.
struct KindRow {
    Kind kind;
    const char *text;
    const char *unit; ///< of the count that follows; null for none
    bool ends = false;
};

constexpr std::array KindRows = {
    KindRow{Kind::Opened, "opened", nullptr},
    KindRow{Kind::Closed, "closed", nullptr},
    KindRow{Kind::Gone, "went away", nullptr},
    KindRow{Kind::Gone, "went away for good", nullptr, true},
    KindRow{Kind::Back, "is back", nullptr},
    KindRow{Kind::NotSent, "not sent: ", " bytes"},
    KindRow{Kind::Lost, "not recorded: ", " bytes"},
    KindRow{Kind::ClockSet, "clock set by ", " ns"},
};

bool HasBytes(const TrafficEvent &event)
{
    return event.kind == Kind::Received || event.kind == Kind::Sent;
}

QString RemarkOf(const KindRow &row, const TrafficEvent &event)
{
    QString text = QString::fromLatin1(row.text);
    if (row.unit)
        text += QString::number(event.count) + QString::fromLatin1(row.unit);
    if (!event.cause.isEmpty())
        text += QStringLiteral(": ") + event.cause;
    return text;
}

/// Whether the remark is that of the row; the event then has all of it.
bool ApplyRow(const KindRow &row, const QString &remark, TrafficEvent &event)
{
    if (!remark.startsWith(QLatin1String(row.text)))
        return false;
    QString rest = remark.sliced(qsizetype(qstrlen(row.text)));
    if (row.unit) {
        const qsizetype end = rest.indexOf(QLatin1String(row.unit));
        bool isNumber = false;
        const qint64 count = rest.left(end).toLongLong(&isNumber);
        if (end < 0 || !isNumber)
            return false;
        event.count = count;
        rest = rest.sliced(end + qsizetype(qstrlen(row.unit)));
    }
    if (!rest.isEmpty() && !rest.startsWith(QLatin1String(": ")))
        return false;
    event.kind = row.kind;
    event.ends = row.ends;
    event.cause = rest.sliced(qMin<qsizetype>(2, rest.size()));
    return true;
}

/// Up to the first character that names cannot hold.
QByteArray AsName(const QString &text)
{
    return CodePage1252::FromUnicode(text).bytes;
}

} // namespace

namespace CaptureRemarks
{

QStringList Of(const TrafficEvent &event)
{
    QStringList remarks;
    if (HasBytes(event)) {
        for (const QByteArray &name : event.names) {
            if (!name.isEmpty())
                remarks << (event.answer ? AnswerTo : QString()) + CodePage1252::ToUnicode(name);
        }
    }
    for (const KindRow &row : KindRows) {
        if (row.kind == event.kind && row.ends == event.ends)
            remarks << RemarkOf(row, event);
    }
    if (MayBeSeveral(event.kind) && event.count > 1)
        remarks << QString::number(event.count) + Times;
    if (event.orderUncertain)
        remarks << OrderUncertain;
    return remarks;
}

QString OfChannel(int channel)
{
    return QString::fromLatin1(Channels[size_t(channel)]);
}

int ChannelOf(const QString &remark)
{
    for (size_t channel = 0; channel < Channels.size(); ++channel) {
        if (remark == QLatin1String(Channels[channel]))
            return int(channel);
    }
    return -1;
}

bool IsOrderUncertain(QByteArrayView comment)
{
    return comment == OrderUncertainBytes;
}

void Apply(const QString &remark, TrafficEvent &event)
{
    if (remark == OrderUncertain) {
        event.orderUncertain = true;
    } else if (event.kind == Kind::Sent && remark.startsWith(AnswerTo)) {
        event.answer = true;
        event.names << AsName(remark.sliced(AnswerTo.size()));
    } else if (MayBeSeveral(event.kind) && remark.endsWith(Times)) {
        event.count = qMax<qint64>(1, remark.chopped(Times.size()).toLongLong());
    } else if (HasBytes(event)) {
        event.names << AsName(remark);
    } else {
        for (const KindRow &row : KindRows) {
            if (ApplyRow(row, remark, event))
                return;
        }
    }
}

} // namespace CaptureRemarks
