// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureRemarks.h"
#include "CaptureSource.h"
#include "TelegramIndex.h"
#include "TelegramView.h"
#include "support/Cases.h"
#include "support/ScriptedDisk.h"
#include "support/TestCapture.h"

#include <QRegularExpression>

namespace
{

using Kind = TrafficEvent::Kind;

constexpr qint64 Start = 1'700'000'000'000'000'000;
constexpr qint64 Millisecond = 1'000'000;

const QMap<QByteArray, Kind> Kinds = {
    {"<", Kind::Received},      {"2<", Kind::Received}, {">", Kind::Sent},
    {"opened", Kind::Opened},   {"gone", Kind::Gone},   {"break", Kind::Break},
    {"damaged", Kind::Damaged}, {"lost", Kind::Lost},   {"lines", Kind::ModemLines},
    {"clock", Kind::ClockSet},  {"not", Kind::NotSent}, {"overrun", Kind::Overrun}};

/// What happened as a text: "12 < abc =Name" is abc, received 12 ms after the start, which
/// completed the sequence Name; "2<" on channel 2, ">" sent. "12.5 break" and so on.
QList<TrafficEvent> EventsOf(const QByteArrayList &texts)
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
            if (words.size() > 3 && words[3].startsWith('='))
                event.names = words[3].sliced(1).split('+');
        }
        events << event;
    }
    return events;
}

std::shared_ptr<TelegramSource> SourceOf(const QByteArray &capture)
{
    return std::make_shared<CaptureSource>(std::make_shared<ScriptedDisk::Reader>(capture));
}

QByteArray MillisecondsOf(qint64 time)
{
    return QByteArray::number(double(time) / Millisecond);
}

/// A row as a text: "2 < abc 12-15 +3 =Name (2 reads) [Gap] remark".
QByteArray TextOf(const Telegram &telegram)
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

QByteArrayList RowsOf(TelegramWalk &walk)
{
    QByteArrayList rows;
    Telegram telegram;
    while (walk.Next(telegram))
        rows << TextOf(telegram);
    return rows;
}

} // namespace

class tst_telegrams : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    /// At 9,600 bits a second, 10 bits a character: 1.0417 ms.
    void Rows_data()
    {
        const Cases<TelegramRule, QByteArrayList, QByteArrayList> row("rule", "events", "rows");
        const TelegramRule automatic;
        const TelegramRule none = {.automaticGap = false};
        row("question and answer", automatic,
            {"0 > ask =Ask", "10.5 < ans", "11 < wer", "20 > ask"},
            {"1 > ask 0 =Ask", "2 < answer 10.5-11 +10.5", "3 > ask 20 +9"});
        row("two lines", automatic, {"0 < ask", "7 2< answer", "8 < on", "9 < more ?"},
            {"1 < ask 0", "2 2< answer 7 +7", "3 < onmore 8-9 +1 Uncertain"});
        row("the last may be long ago", automatic,
            {"0 > ask", "3600000 < answer", "3600100 < more"},
            {"1 > ask 0", "2 < answer 3.6e+06 +3.6e+06", "3 < more 3.6001e+06 Gap"});
        row("5 ms and what a port holds back", automatic,
            {"0 < a", "6 < b", "12.1 < c", "30 < ddd", "38 < eee", "60 < ffffffffffffffffffff",
             "81.6 < gggggggggggggggggggg", "103.4 < hhhhhhhhhhhhhhhhhhhh"},
            {"1 < ab 0-6", "2 < c 12.1 Gap", "3 < dddeee 30-38 Gap",
             "4 < ffffffffffffffffffffgggggggggggggggggggg 60-81.6 Gap",
             "5 < hhhhhhhhhhhhhhhhhhhh 103.4 Gap"});
        row("a gap of so many ms", {.automaticGap = false, .gap = 20 * Millisecond},
            {"0 < a", "20 < b", "57 < c", "95 < d"},
            {"1 < ab 0-20", "2 < c 57 Gap", "3 < d 95 Gap"});
        row("no gap", none, {"0 < a", "5000 < b", "5001 > c"}, {"1 < ab 0-5000", "2 > c 5001 +1"});
        row("an end mark, within reads and across them", {.automaticGap = false, .endMark = "abac"},
            {"0 < xabac", "1 < abab", "2 < acyabac", "3 < ab", "4 > ac", "5 < ac"},
            {"1 < xabac 0", "2 < ababac 1-2", "3 < yabac 2", "4 < ab 3", "5 > ac 4 +1",
             "6 < ac 5 +1"});
        row("an end mark, or silence", {.endMark = ";"}, {"0 < a;b", "100 < c;", "200 < d;"},
            {"1 < a; 0", "2 < b 0", "3 < c; 100 Gap", "4 < d; 200"});
        row("a fixed length", {.automaticGap = false, .fixedLength = 3},
            {"0 < ab", "1 < cdefgh", "2 2< ijk", "3 2< lmn"},
            {"1 < abc 0-1", "2 < def 1", "3 < gh 1", "4 2< ijk 2 +1", "5 2< lmn 3"});
        row("a fixed length, but with a detection or a gap", {.fixedLength = 4},
            {"0 < ab =N", "1 < cd", "2 < ef =N", "900 < g"},
            {"1 < ab 0 =N", "2 < cdef 1-2 =N", "3 < g 900"});
        row("detections", automatic, {"0 < ab", "1 < cd =A+B", "2 < ef", "3 < gh ?"},
            {"1 < abcd 0-1 =A+B", "2 < efgh 2-3 Uncertain"});
        row("what is sent as a sequence is for itself", automatic,
            {"0 > a", "1 > b", "2 > cd =S", "3 > e", "4 > f =S"},
            {"1 > ab 0-1", "2 > cd 2 =S", "3 > e 3", "4 > f 4 =S"});
        row("detections do not end", {.automaticGap = false, .endsWithDetection = false},
            {"0 < a =N", "1 < b =M", "2 > c =S", "3 > d =T"},
            {"1 < ab 0-1 =N+M", "2 > cd 2-3 +1 =S+T"});
        row("what happens to bytes is said of them", automatic,
            {"0 damaged", "1 < ab", "2 damaged", "3 overrun", "3 < cd", "4 lines", "5 > e",
             "6 overrun"},
            {"1 damaged 0 Damaged", "2 < abcd 1-3 Damaged Overrun LinesChanged: CTS on",
             "3 > e 5 +2", "4 overrun 6 Overrun"});
        row("silence lies between", automatic, {"0 < ab", "9 lines", "9.5 < cd"},
            {"1 < ab 0", "2 lines 9 LinesChanged: CTS on", "3 < cd 9.5"});
        row("everything else is a row", automatic,
            {"0 opened", "1 > ask", "2 break", "3 < ans", "4 lost 7", "5 < wer", "6 > ask",
             "7 not 2", "8 < x", "9 gone"},
            {"1 opened 0: opened", "2 > ask 1", "3 break 2 Break", "4 < ans 3 +2",
             "5 lost 4 Lost: not recorded: 7 bytes", "6 < wer 5", "7 > ask 6 +1",
             "8 not 7: not sent: 2 bytes", "9 < x 8", "10 gone 9: went away"});
        row("a clock that is set moves no difference", automatic,
            {"0 > a", "1 clock 3600000000000", "2 < b", "3 clock -60000000000", "4 > c"},
            {"1 > a 0", "2 clock 1: clock set by +3600.000000 s", "3 < b 2 +2",
             "4 clock 3: clock set by -60.000000 s", "5 > c 4 +2"});
        const QByteArray full(Telegram::MostBytes, 'x');
        row("a length that nothing passes", automatic,
            {"0 < " + full.first(60000), "1 < " + full.first(10000) + " =N",
             "2 > " + full + "y =S"},
            {"1 < " + full + " 0-1", "2 < " + full.first(4464) + " 1 =N Continued",
             "3 > " + full + " 2 +1 =S", "4 > y 2 Continued"});
    }
    void Rows()
    {
        QFETCH(TelegramRule, rule);
        QFETCH(QByteArrayList, events);
        QFETCH(QByteArrayList, rows);
        const bool isDouble = events.join().contains("2<");
        const QList<TrafficPort> ports(isDouble ? 2 : 1, {"COM1", "/dev/ttyS0", 9600});
        TelegramWalk walk(SourceOf(CaptureOf(EventsOf(events), ports)), rule);
        QCOMPARE(RowsOf(walk), rows);
    }
};

QTEST_GUILESS_MAIN(tst_telegrams)
#include "tst_telegrams.moc"
