// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureRemarks.h"
#include "CaptureSource.h"
#include "Telegram.h"
#include "support/ScriptedDisk.h"
#include "support/TestCapture.h"

/// What happened on lines, and the rows that become of it, as texts.
namespace TelegramScript
{

using Kind = TrafficEvent::Kind;

constexpr qint64 Start = 1'700'000'000'000'000'000;
constexpr qint64 Millisecond = 1'000'000;

inline const QMap<QByteArray, Kind> Kinds = {
    {"<", Kind::Received},      {"2<", Kind::Received}, {">", Kind::Sent},
    {"opened", Kind::Opened},   {"gone", Kind::Gone},   {"break", Kind::Break},
    {"damaged", Kind::Damaged}, {"lost", Kind::Lost},   {"lines", Kind::ModemLines},
    {"clock", Kind::ClockSet},  {"not", Kind::NotSent}, {"overrun", Kind::Overrun}};

/// What happened as a text: "12 < abc =Name" is abc, received 12 ms after the start, which
/// completed the sequence Name; "2<" on channel 2, ">" sent. "12.5 break" and so on.
inline QList<TrafficEvent> EventsOf(const QByteArrayList &texts)
{
    QList<TrafficEvent> events;
    qint64 clock = 0;
    for (const QByteArray &text : texts) {
        const QByteArrayList words = text.split(' ');
        TrafficEvent event;
        event.kind = Kinds.value(words[1]);
        event.channel = words[1].startsWith('2') ? 1 : 0;
        event.modem.CTS = event.kind == Kind::ModemLines;
        event.count = CaptureRemarks::MayBeSeveral(event.kind) ? 1 : words.value(2).toLongLong();
        clock += event.kind == Kind::ClockSet ? event.count : 0;
        event.time.wall = Start + qint64(words[0].toDouble() * Millisecond) + clock;
        if (event.kind == Kind::Received || event.kind == Kind::Sent) {
            event.bytes = words[2];
            event.orderUncertain = words.contains("?");
            event.answer = words.contains("answer");
            if (words.size() > 3 && words[3].startsWith('='))
                event.names = words[3].sliced(1).split('+');
        }
        events << event;
    }
    return events;
}

inline std::shared_ptr<TelegramSource> SourceOf(const QByteArray &capture)
{
    return std::make_shared<CaptureSource>(std::make_shared<ScriptedDisk::Reader>(capture));
}

inline QByteArray MillisecondsOf(qint64 time)
{
    return QByteArray::number(double(time) / Millisecond);
}

/// A row as a text: "2 < abc 12-15 +3 =Name (2 reads) [Gap] remark".
inline QByteArray TextOf(const Telegram &telegram)
{
    static const std::array marks = {"Gap",       "Damaged",   "Break",        "Overrun",   "Lost",
                                     "Uncertain", "Continued", "LinesChanged", "Unreadable"};
    const QByteArray road = telegram.channel == 1 ? "2<" : "<";
    QByteArray text = QByteArray::number(telegram.number) + ' ' +
                      (telegram.kind == Kind::Received ? road : Kinds.key(telegram.kind));
    if (telegram.HasBytes())
        text += ' ' + telegram.bytes;
    text += ' ' + MillisecondsOf(telegram.time - Start);
    if (telegram.end != telegram.time)
        text += '-' + MillisecondsOf(telegram.end - Start);
    if (telegram.response >= 0)
        text += " +" + MillisecondsOf(telegram.response);
    if (!telegram.names.isEmpty())
        text += " =" + telegram.names.join('+');
    for (size_t i = 0; i < marks.size(); ++i)
        text += telegram.marks & Telegram::Mark(1 << i) ? QByteArray(" ") + marks[i] : "";
    if (!telegram.remark.isEmpty())
        text += ": " + telegram.remark.toUtf8();
    return text;
}

} // namespace TelegramScript
