// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "OpenFiles.h"
#include "ResponseBook.h"
#include "ResponseExport.h"
#include "ResponseScan.h"
#include "ResponseText.h"
#include "WorkProgress.h"
#include "support/Cases.h"
#include "support/TelegramScript.h"

#include <QRandomGenerator>
#include <QSignalSpy>

#include <algorithm>

namespace
{

using namespace TelegramScript;

constexpr qint64 Longest = ResponseLimits::LongestAnswer;

std::shared_ptr<TelegramSource> SourceOf(const QByteArrayList &events)
{
    const bool isDouble = events.join().contains("2<");
    const QList<TrafficPort> ports(isDouble ? 2 : 1, {"COM1", "/dev/ttyS0", 9600});
    return TelegramScript::SourceOf(CaptureOf(EventsOf(events), ports));
}

/// A row as a text: "Ask sent by hand: 3, 2 answered, 1 not; 10.5 last, 9 10.5 10.5 10.5".
QByteArray TextOf(const ResponseRow &row)
{
    QByteArray text = (ResponseText::Name(row.key) + u' ' + ResponseText::Event(row.key.kind) +
                       QStringLiteral(": ") + QString::number(row.count))
                          .toUtf8();
    if (row.key.kind != ResponseKey::Kind::Detection)
        text += ", " + QByteArray::number(row.answered) + " answered, " +
                QByteArray::number(row.unanswered) + " not";
    if (row.last >= 0)
        text += "; " + MillisecondsOf(row.last) + " last,";
    for (const qint64 time : {row.least, row.median, row.percentile95, row.greatest})
        text += time >= 0 ? ' ' + MillisecondsOf(time) : QByteArray();
    return text;
}

} // namespace

class tst_responses : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void Rows_data()
    {
        const Cases<ResponseLimits, QByteArrayList, QByteArrayList> row("limits", "events", "rows");
        row("questions and answers", {},
            {"0 > ask =Ask", "10.5 < ans", "11 < wer", "20 > ask =Ask", "29 < answer",
             "40 > other =Other", "42 < x"},
            {"Ask sent by hand: 2, 2 answered, 0 not; 9 last, 9 9 10.5 10.5",
             "Other sent by hand: 1, 1 answered, 0 not; 2 last, 2 2 2 2"});
        row("a question follows before the answer", {}, {"0 > ask =Ask", "5 > ask =Ask", "6 < x"},
            {"Ask sent by hand: 2, 1 answered, 1 not; 1 last, 1 1 1 1"});
        row("too late is no answer", {.answer = 10 * Millisecond},
            {"0 > ask =Ask", "10.1 < x", "20 > ask =Ask", "30 < x", "40 > ask =Ask", "51 break"},
            {"Ask sent by hand: 3, 1 answered, 2 not; 10 last, 10 10 10 10"});
        row("nobody can tell", {.answer = 10 * Millisecond},
            {"0 > ask =Ask", "1 lost 7", "2 < x", "3 > ask =Ask", "4 gone", "5 > ask =Ask",
             "6 not 3", "7 < x", "8 > ask =Ask"},
            {"Ask sent by hand: 4, 0 answered, 0 not"});
        row("no sequence: as far as the row goes", {},
            {"0 > he", "1 > llo", "3 < x", "5 > ask =Ask", "6 > more", "7 < x"},
            {"no sequence sent by hand: 2, 2 answered, 0 not; 1 last, 1 1 2 2",
             "Ask sent by hand: 1, 0 answered, 1 not"});
        row("answers of its own are questions as well", {},
            {"0 < poll =Poll", "1 > yes =Poll answer", "4 < thanks", "10 < poll =Poll",
             "12 < poll =Poll", "13 > yes =Poll+Two answer"},
            {"answer to Poll sent as answer: 1, 1 answered, 0 not; 3 last, 3 3 3 3",
             "answer to Poll; Two sent as answer: 1, 0 answered, 0 not",
             "Poll received: 3; 2 last, 2 2 10 10"});
        row("two lines", {},
            {"0 < ask", "1 < ing", "7 2< yes", "8 2< ing =A", "20 < ask", "23 2< yes =A"},
            {"channel 1 speaks, channel 2 answers said: 2, 2 answered, 0 not; 3 last, 3 3 6 6",
             "channel 2 speaks, channel 1 answers said: 2, 1 answered, 0 not; 12 last, 12 12 12 12",
             "A received: 2; 15 last, 15 15 15 15"});
        row("silence makes two of what is said", {}, {"0 < a", "100 < b", "103 2< c"},
            {"channel 1 speaks, channel 2 answers said: 2, 1 answered, 1 not; 3 last, 3 3 3 3",
             "channel 2 speaks, channel 1 answers said: 1, 0 answered, 0 not"});
        row("from a time on", {.since = Start + 20 * Millisecond},
            {"0 > ask =Ask", "20 > ask =Ask", "21 < x =X", "22 > ask =Ask", "24 < x =X",
             "29 < x =X"},
            {"Ask sent by hand: 1, 1 answered, 0 not; 2 last, 2 2 2 2",
             "X received: 3; 5 last, 3 3 5 5"});
        row("a clock that is set", {},
            {"0 > ask =Ask", "1 clock 3600000000000", "2 < x", "3 > ask =Ask",
             "4 clock -7200000000000", "7 < x"},
            {"Ask sent by hand: 2, 2 answered, 0 not; 4 last, 2 2 4 4"});
    }
    void Rows()
    {
        QFETCH(ResponseLimits, limits);
        QFETCH(QByteArrayList, events);
        QFETCH(QByteArrayList, rows);
        for (const qint64 atOnce : {Longest, qint64(1)}) {
            ResponseScan scan(SourceOf(events), {}, limits);
            ResponseStatistics statistics;
            while (!scan.Advance(statistics, atOnce)) {
            }
            QByteArrayList found;
            for (const ResponseRow &row : statistics.Rows())
                found << TextOf(row);
            QCOMPARE(found, rows);
        }
    }

    void NamesWithoutNumber()
    {
        QList<TrafficEvent> events = EventsOf({"0 < x =Again"});
        for (int i = 0; i < 6000; ++i) {
            events << EventsOf({"1 < x =N" + QByteArray::number(i)});
            events.last().time.wall += i * Millisecond;
        }
        events << EventsOf({"9000 < x =Again"});
        ResponseScan scan(TelegramScript::SourceOf(CaptureOf(events, {{"A", {}, 0}})), {}, {});
        ResponseStatistics statistics;
        QVERIFY(scan.Advance(statistics, Longest));
        const QList<ResponseRow> rows = statistics.Rows();
        QCOMPARE(rows.size(), qsizetype(ResponseScan::MostKeys) + 1);
        QCOMPARE(TextOf(rows.first()), "Again received: 2; 9000 last, 9000 9000 9000 9000");
        QVERIFY(TextOf(rows.last()).startsWith("all others received: 1905; 1 last"));
    }

    void Overdue()
    {
        ResponseScan scan(SourceOf({"0 > ask =Ask", "1 < x", "2 > ask =Ask"}), {}, {});
        ResponseStatistics statistics;
        QVERIFY(scan.Advance(statistics, Longest));
        const qint64 due = Start + 2 * Millisecond + ResponseLimits::UsualAnswer;
        QVERIFY(scan.Overdue(due).isEmpty());
        QCOMPARE(scan.Overdue(due + 1), QList<ResponseKey>{statistics.Rows().first().key});
    }

    /// Against all times in their order.
    void Spreads_data()
    {
        const Cases<int, qint64> row("count", "longest");
        row("none", 0, 1);
        row("one", 1, 1'000'000);
        row("few are exact", 40, Longest);
        row("short ones are exact", 100'000, 511);
        row("many", 200'000, Longest);
    }
    void Spreads()
    {
        QFETCH(int, count);
        QFETCH(qint64, longest);
        QRandomGenerator random(11);
        TimeSpread spread;
        QList<qint64> times;
        for (int i = 0; i < count; ++i) {
            times << qint64(double(longest) * std::pow(random.generateDouble(), 5));
            spread.Add(times.last());
        }
        std::sort(times.begin(), times.end());
        const bool isExact = count < 100 || longest < 512;
        for (const int hundredths : {1, 50, 95, 100}) {
            const qint64 right =
                times.isEmpty() ? -1 : times[std::max(0, (count * hundredths + 99) / 100 - 1)];
            const qint64 found = spread.Percentile(hundredths);
            QVERIFY2(std::abs(found - right) <= (isExact ? 0 : right / 512),
                     QByteArray::number(found) + " is not " + QByteArray::number(right));
        }
        QCOMPARE(spread.Least(), times.isEmpty() ? -1 : times.first());
        QCOMPARE(spread.Greatest(), times.isEmpty() ? -1 : times.last());
    }

    /// Outliers stay, and the others are spread over all of the time.
    void Thinning()
    {
        SampleThinner thinner;
        QList<ResponseSample> all;
        QRandomGenerator random(5);
        for (int i = 0; i < 300'000; ++i) {
            const qint64 time = i % 99'999 == 0 ? 1'000'000 + i : random.bounded(1000);
            all << ResponseSample{i, Start + i, time};
            thinner.Add(all.last());
            if (i == SampleThinner::Most - 2)
                QCOMPARE(thinner.Samples(), all);
        }
        const QList<ResponseSample> left = thinner.Samples();
        QVERIFY(left.size() > SampleThinner::Most / 4 && left.size() <= SampleThinner::Most);
        qint64 before = -1;
        qint64 outliers = 0;
        for (const ResponseSample &sample : left) {
            QVERIFY(sample.number > before && sample.number - before < 2'000);
            QCOMPARE(sample, all[sample.number]);
            before = sample.number;
            outliers += sample.time >= 1'000'000 ? 1 : 0;
        }
        QCOMPARE(outliers, 4);
        QVERIFY(before > 299'000);
    }

    void Books()
    {
        const auto source = SourceOf({"0 > a =Ask", "10 < x", "20 > a =Ask", "35 < x"});
        ResponseBook book;
        book.Show({source, {}, {}});
        book.Follow(true);
        QTRY_VERIFY(book.Told().isWhole);
        QCOMPARE(TextOf(book.Told().rows.first()),
                 "Ask sent by hand: 2, 2 answered, 0 not; 15 last, 10 10 15 15");
        QCOMPARE(book.Told().read, book.Told().whole);
        QVERIFY(!book.Told().picture);

        book.Choose(book.Told().rows.first().key);
        QTRY_VERIFY(book.Told().picture);
        QCOMPARE(book.Told().picture->samples.last(),
                 (ResponseSample{4, Start + 35 * Millisecond, 15 * Millisecond}));

        book.Show({source, {}, {.answer = 12 * Millisecond}});
        QTRY_VERIFY(book.Told().isWhole && book.Told().picture);
        QCOMPARE(book.Told().picture->misses,
                 QList{(ResponseSample{3, Start + 20 * Millisecond, -1})});
        book.Show({});
        QVERIFY(book.Told().rows.isEmpty());
    }

    void Exports()
    {
        qputenv("TZ", "UTC");
        const ResponseQuestion question = {
            SourceOf({"0 > a ==Ask,1", "10.5 < x", "20 > a ==Ask,1", "21 > b", "30 < x"}), {}, {}};
        const QByteArray values =
            "number,time,sequence,event,channel,outcome,seconds\n"
            "2,2023-11-14 22:13:20.010500,\"'=Ask,1\",sent by hand,1,answered,0.010500\n"
            "3,2023-11-14 22:13:20.020000,\"'=Ask,1\",sent by hand,1,unanswered,\n"
            "5,2023-11-14 22:13:20.030000,no sequence,sent by hand,1,answered,0.009000\n";
        ScriptedDisk disk;
        OpenFiles files(disk);
        const ResponseExport all = {question};
        WorkProgress progress;
        QVERIFY(!all.WriteTo(files, "/a", progress).Failed());
        QCOMPARE(disk.files["/a"], values);
        disk.room = 10;
        WorkProgress full;
        QVERIFY(all.WriteTo(files, "/a", full).Failed());
        WorkProgress cancelled;
        cancelled.Cancel();
        QVERIFY(!all.WriteTo(files, "/a", cancelled).Failed());
        QCOMPARE(disk.files["/a"], values);

        ResponseScan scan(question.source, {}, {});
        ResponseStatistics statistics;
        QVERIFY(scan.Advance(statistics, Longest));
        QCOMPARE(ResponseText::Csv(statistics.Rows()),
                 "sequence,event,channel,count,answered,unanswered,last,least,median,95 percent,"
                 "greatest\n"
                 "no sequence,sent by hand,1,1,1,0,0.009000,0.009000,0.009000,0.009000,0.009000\n"
                 "\"'=Ask,1\",sent by hand,1,2,1,1,0.010500,0.010500,0.010500,0.010500,0.010500\n");
    }
};

QTEST_GUILESS_MAIN(tst_responses)
#include "tst_responses.moc"
