// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "OpenFiles.h"
#include "TelegramExport.h"
#include "WorkProgress.h"
#include "support/Cases.h"
#include "support/TelegramScript.h"

#include <QRandomGenerator>

namespace
{

using namespace TelegramScript;

QByteArrayList RowsOf(TelegramWalk &walk)
{
    QByteArrayList rows;
    Telegram telegram;
    while (walk.Next(telegram))
        rows << TextOf(telegram);
    return rows;
}

/// Numbered telegrams of two lines, "1:00042;" and so on, in reads of any length; the same in every
/// run. Where reads of one follow late, or the line stands still, only the end mark holds them
/// together.
QList<TrafficEvent> NumberedTelegrams(int count, bool areTorn)
{
    QRandomGenerator random(7);
    QList<TrafficEvent> events;
    qint64 time = Start;
    for (int i = 0; i < count; ++i) {
        TrafficEvent event;
        event.channel = int(random.bounded(2));
        QByteArray rest = QByteArray::number(event.channel) + ':' +
                          QByteArray::number(i).rightJustified(6, '0') + ';';
        time += (random.bounded(1000) == 0 ? 30'000 : 30) * Millisecond;
        while (!rest.isEmpty()) {
            event.bytes = rest.first(1 + random.bounded(rest.size()));
            rest = rest.sliced(event.bytes.size());
            event.time.wall = time;
            events << event;
            time += areTorn && random.bounded(10) == 0 ? 900 * Millisecond : Millisecond;
        }
    }
    return events;
}

TelegramView ViewOf(const QByteArray &capture, const TelegramRule &rule = {})
{
    TelegramView view{std::make_shared<TelegramIndex>(SourceOf(capture), rule), nullptr};
    const std::atomic<bool> wanted = true;
    return view.index->Advance(wanted) ? view : TelegramView();
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
            {"1 > ask 0 =Ask", "2 < answer 10.5-11 +10.5", "3 > ask 20"});
        row("an answer of its own, and something by hand", automatic,
            {"0 < ask", "1 > yes =Ask answer", "9 < more", "20 > hand"},
            {"1 < ask 0", "2 > yes 1 +1 =Ask", "3 < more 9 +8", "4 > hand 20"});
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
        row("no gap", none, {"0 < a", "5000 < b", "5001 > c"}, {"1 < ab 0-5000", "2 > c 5001"});
        row("an end mark, within reads and across them", {.automaticGap = false, .endMark = "abac"},
            {"0 < xabac", "1 < abab", "2 < acyabac", "3 < ab", "4 > ac", "5 < ac"},
            {"1 < xabac 0", "2 < ababac 1-2", "3 < yabac 2", "4 < ab 3", "5 > ac 4",
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
            {"1 < ab 0-1 =N+M", "2 > cd 2-3 =S+T"});
        row("what happens to bytes is said of them", automatic,
            {"0 damaged", "1 < ab", "2 damaged", "3 overrun", "3 < cd", "4 lines", "5 > e",
             "6 overrun"},
            {"1 damaged 0 Damaged", "2 < abcd 1-3 Damaged Overrun LinesChanged: CTS on", "3 > e 5",
             "4 overrun 6 Overrun"});
        row("silence lies between", automatic, {"0 < ab", "9 lines", "9.5 < cd"},
            {"1 < ab 0", "2 lines 9 LinesChanged: CTS on", "3 < cd 9.5"});
        row("everything else is a row", automatic,
            {"0 opened", "1 > ask", "2 break", "3 < ans", "4 lost 7", "5 < wer", "6 > ask",
             "7 not 2", "8 < x", "9 gone"},
            {"1 opened 0: opened", "2 > ask 1", "3 break 2 Break", "4 < ans 3 +2",
             "5 lost 4 Lost: not recorded: 7 bytes", "6 < wer 5", "7 > ask 6",
             "8 not 7: not sent: 2 bytes", "9 < x 8", "10 gone 9: went away"});
        row("a clock that is set moves no difference", automatic,
            {"0 > a", "1 clock 3600000000000", "2 < b", "3 clock -60000000000", "4 > c"},
            {"1 > a 0", "2 clock 1: clock set by +3600.000000 s", "3 < b 2 +2",
             "4 clock 3: clock set by -60.000000 s", "5 > c 4"});
        const QByteArray full(Telegram::MostBytes, 'x');
        row("a length that nothing passes", automatic,
            {"0 < " + full.first(60000), "1 < " + full.first(10000) + " =N",
             "2 > " + full + "y =S"},
            {"1 < " + full + " 0-1", "2 < " + full.first(4464) + " 1 =N Continued",
             "3 > " + full + " 2 =S", "4 > y 2 Continued"});
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

    /// In order, none missing, none glued, none torn; and the same from any place on.
    void ManyTelegrams_data()
    {
        const Cases<TelegramRule, bool> row("rule", "areTorn");
        row("silence", {}, false);
        row("an end mark, and pauses in the middle", {.automaticGap = false, .endMark = ";"}, true);
    }
    void ManyTelegrams()
    {
        QFETCH(TelegramRule, rule);
        QFETCH(bool, areTorn);
        constexpr int Count = 100'000;
        const QByteArray capture =
            CaptureOf(NumberedTelegrams(Count, areTorn), {{"A", {}, 9600}, {"B", {}, 9600}});
        const TelegramView view = ViewOf(capture, rule);
        QCOMPARE(view.Rows(), std::pair(qint64(0), qint64(Count)));
        TelegramWalk walk(view.index->Source(), rule);
        Telegram telegram;
        qint64 blocks = 0;
        for (auto block = view.BlockAt(0); block; block = view.BlockAt(++blocks)) {
            TelegramReading anew(view); // it knows nothing of what was before
            anew.Visit(*block, [&](qint64 row, const Telegram &there) {
                const bool isNext = walk.Next(telegram) && telegram.number == row + 1 &&
                                    telegram.bytes.sliced(2, 6).toInt() == row &&
                                    telegram.bytes.size() == 9 && TextOf(telegram) == TextOf(there);
                if (!isNext)
                    QTest::qFail(TextOf(telegram) + " is not " + TextOf(there), __FILE__, __LINE__);
                return isNext;
            });
        }
        QVERIFY(blocks > 100 && !walk.Next(telegram));
    }

    void Damage()
    {
        QByteArray capture = CaptureOf(EventsOf({"0 < a", "100 < b", "200 < c"}), {{"A", {}, 0}});
        capture.chop(10);
        TelegramWalk walk(SourceOf(capture), {});
        const QByteArrayList rows = RowsOf(walk);
        QCOMPARE(rows.size(), 3);
        QVERIFY2(rows[2].startsWith("3 lost 100 Lost Unreadable: The capture is damaged from byte"),
                 rows[2]);
    }

    void Checksums()
    {
        const QByteArray capture =
            CaptureOf(EventsOf({"0 > a\x61", "1 < ab", "2 lost 1"}), {{"A", {}, 0}});
        TelegramWalk walk(SourceOf(capture), {.checksum = Checksum::UsualRule(ChecksumKind::Sum)});
        Telegram telegram;
        QVERIFY(walk.Next(telegram) && telegram.marks == Telegram::ChecksumRight);
        QVERIFY(walk.Next(telegram) && telegram.marks == Telegram::ChecksumWrong);
        QCOMPARE(telegram.checksum, "Checksum wrong: 61 expected");
        QVERIFY(walk.Next(telegram) && telegram.checksum.isEmpty());
    }

    void Exports_data()
    {
        const Cases<TelegramWriter::Form, QByteArray> row("form", "text");
        row("text", TelegramWriter::Form::Text,
            "1  2023-11-14 22:13:20.000000  0.000000  =COM,1  sent  3  3D 31 09  =1\u2409  -Ask\n"
            "2  2023-11-14 22:13:20.010500  0.010500  =COM,1  received  2  2A 2F  */  after "
            "0.010500 s\n"
            "3  2023-11-14 22:13:20.011000  0.000500  =COM,1  break\n");
        row("cells that are no formulas", TelegramWriter::Form::Csv,
            "number,time,difference,port,event,length,hex,text,names,response,details\n"
            "1,2023-11-14 22:13:20.000000,0.000000,\"'=COM,1\",sent,3,3D 31 09,'=1\u2409,'-Ask,,\n"
            "2,2023-11-14 22:13:20.010500,0.010500,\"'=COM,1\",received,2,2A 2F,*/,,0.010500,\n"
            "3,2023-11-14 22:13:20.011000,0.000500,\"'=COM,1\",break,0,,,,,\n");
        row("arrays of C", TelegramWriter::Form::CArray,
            "/* 1: 2023-11-14 22:13:20.000000, =COM,1, sent, 3 bytes, -Ask */\n"
            "static const unsigned char telegram_1[3] = {\n    0x3D, 0x31, 0x09\n};\n"
            "/* 2: 2023-11-14 22:13:20.010500, =COM,1, received, 2 bytes, after 0.010500 s */\n"
            "static const unsigned char telegram_2[2] = {\n    0x2A, 0x2F\n};\n"
            "/* 3: 2023-11-14 22:13:20.011000, =COM,1, break */\n");
    }
    void Exports()
    {
        QFETCH(TelegramWriter::Form, form);
        QFETCH(QByteArray, text);
        qputenv("TZ", "UTC");
        const TelegramView view = ViewOf(CaptureOf(
            EventsOf({"0 > =1\t =-Ask", "10.5 < */", "11 break"}), {{"=COM,1", {}, 9600}}));
        ScriptedDisk disk;
        OpenFiles files(disk);
        const TelegramExport all = TelegramExport::All(view, form);
        WorkProgress progress;
        QVERIFY(!all.WriteTo(files, "/a", progress).Failed());
        QCOMPARE(disk.files["/a"], text);
        WorkProgress copying;
        QCOMPARE(all.Copy(text.size() - 1, copying).text,
                 text.first(text.chopped(1).lastIndexOf('\n') + 1));

        disk.Reset();
        disk.room = 10;
        WorkProgress full;
        QVERIFY(all.WriteTo(files, "/a", full).Failed());
        WorkProgress cancelled;
        cancelled.Cancel();
        QVERIFY(!all.WriteTo(files, "/a", cancelled).Failed());
        QCOMPARE(disk.files.size() + disk.unfinished, 0);
    }
};

QTEST_GUILESS_MAIN(tst_telegrams)
#include "tst_telegrams.moc"
