// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureEncoder.h"
#include "CaptureJudge.h"
#include "JudgementText.h"
#include "MdSequenceEdition.h"
#include "PlaceTelegrams.h"
#include "ReceiveDetection.h"
#include "SystemFiles.h"
#include "WorkProgress.h"
#include "support/Cases.h"
#include "support/ScriptedDisk.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace
{

using Kind = TrafficEvent::Kind;

constexpr qint64 Start = 1'700'000'000'000'000'000;

/// Received by channel 0, unless the text says otherwise: "1:abc" channel 1, ">abc" sent, and in
/// brackets "<opened>" and so on.
QList<TrafficEvent> Events(const QByteArrayList &texts)
{
    static const QMap<QByteArray, Kind> others = {
        {"<opened>", Kind::Opened}, {"<gone>", Kind::Gone}, {"<lost>", Kind::Lost},
        {"<break>", Kind::Break},   {"<back>", Kind::Back}, {"<modem>", Kind::ModemLines}};
    QList<TrafficEvent> events;
    for (const QByteArray &text : texts) {
        TrafficEvent event;
        event.kind = others.value(text, text.startsWith('>') ? Kind::Sent : Kind::Received);
        event.channel = text.startsWith("1:") ? 1 : 0;
        event.time.wall = event.time.monotonic = Start + events.size() * 1'000'000;
        event.bytes = text.sliced(text.startsWith("1:") ? 2 : text.startsWith('>') ? 1 : 0);
        events << event;
    }
    return events;
}

QByteArray CaptureOf(const QByteArrayList &texts)
{
    CaptureEncoder encoder({{"COM1", {}, 9600}, {"COM2", {}, 9600}}, "Serimonde");
    QByteArray capture = encoder.Head();
    for (const TrafficEvent &event : Events(texts))
        encoder.Append(capture, event);
    return capture;
}

void AddSequences(MdSequenceEdition &tables, const QByteArrayList &sequences)
{
    tables.AddSend({.Name = "Reply", .Sequence = "\x06"});
    for (const QByteArray &sequence : sequences) {
        ReceiveSequence record;
        record.Name = "<" + sequence + ">";
        record.Sequence = sequence.endsWith('-') ? sequence.chopped(1) : sequence;
        record.Active = sequence.endsWith('-') ? 0 : 1;
        record.Answer = sequence.startsWith('a') ? 1 : 0;
        tables.AddReceive(record);
    }
    tables.RefreshAnswerNames();
}

CaptureJudge::Judged Judge(const QByteArrayList &sequences, const QByteArray &capture)
{
    MdSequenceEdition tables;
    AddSequences(tables, sequences);
    WorkProgress progress;
    return CaptureJudge(tables).Judge(ScriptedDisk::Reader(capture), progress);
}

/// Such as "fired abc 2.0-3.1": sequence, packet and byte of its first and last byte.
QByteArrayList Places(const Judgement &judgement)
{
    static const QByteArrayList kinds = {"fired", "other", "begun", "cut"};
    QByteArrayList places;
    for (const JudgedPlace &place : judgement.places) {
        const auto at = [](const JudgedSpot &spot) {
            return QByteArray::number(spot.packet) + '.' + QByteArray::number(spot.byte);
        };
        places << kinds[int(place.kind)] + ' ' + judgement.sequences[size_t(place.sequence)].bytes +
                      ' ' + at(place.first) + '-' + at(place.last) +
                      (place.found.isEmpty() ? QByteArray() : ' ' + place.found);
    }
    return places;
}

/// Near misses by their definition.
bool NearlyAt(const QByteArray &sequence, const QByteArray &text, qsizetype place)
{
    const QByteArray there = text.sliced(place).first(qMin(sequence.size(), text.size() - place));
    qsizetype begun = 0, others = 0;
    while (begun < there.size() && there[begun] == sequence[begun])
        ++begun;
    for (qsizetype i = 0; i < there.size(); ++i)
        others += there[i] != sequence[i] ? 1 : 0;
    return sequence.size() >= 4 &&
           (begun * 4 >= sequence.size() * 3 || (others == 1 && there.size() == sequence.size()));
}

} // namespace

class tst_judging : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void Places_data()
    {
        const Cases<QByteArrayList, QByteArrayList, QByteArrayList> row("sequences", "capture",
                                                                        "places");
        row("across packets, and in the middle of one", {"abc"}, {"xa", ">z", "bcab", "c"},
            {"fired abc 1.1-3.1", "fired abc 3.2-4.0"});
        row("each channel for itself, sent bytes not at all", {"abc"},
            {"ab", "1:c", ">c", "1:ab", ">abc", "1:c"}, {"fired abc 4.0-6.0"});
        row("several at one byte, in list order", {"bc", "abc", "d-"}, {"abcd"},
            {"fired bc 1.1-1.2", "fired abc 1.0-1.2"});
        row("a detection forgets", {"aa"}, {"aaa"}, {"fired aa 1.0-1.1"});
        for (const char *other : {"<opened>", "<gone>", "<lost>"})
            row(other, {"abcd"}, {"ab", other, "cdab", "cd"}, {"fired abcd 3.2-4.1"});
        row("a break between forgets nothing", {"abcd"}, {"ab", "<break>", "<modem>", "cd"},
            {"fired abcd 1.0-4.1"});
        row("one byte another, wherever", {"abcd"}, {"xbcd ab", "xd abcx"},
            {"other abcd 1.0-1.3 xbcd", "other abcd 1.5-2.1 abxd", "other abcd 2.3-2.6 abcx"});
        row("a beginning, at the end too", {"abcdefgh"}, {"abcdef--", "abcde---", "abcdefg"},
            {"begun abcdefgh 1.0-1.5 abcdef--", "begun abcdefgh 3.0-3.6 abcdefg"});
        row("a beginning that is cut by what is forgotten", {"abcdefgh"},
            {"abcdef", "<lost>", "gh"}, {"begun abcdefgh 1.0-1.5 abcdef"});
        row("too short, too different", {"abc", "wxyz"}, {"abx wx-- --yz"}, {});
        row("not where it fires, and once where it lies over itself", {"aaab"}, {"aaaab", "-aaaa-"},
            {"fired aaab 1.1-1.4", "other aaab 2.1-2.4 aaaa"});
        row("not where another one fires", {"REPLY 01", "REPLY 02"}, {"REPLY 02", "REPLY 12"},
            {"fired REPLY 02 1.0-1.7", "begun REPLY 01 2.0-2.5 REPLY 12",
             "other REPLY 02 2.0-2.7 REPLY 12"});
        row("whole, but cut by another one", {"OK", "OK\r\n"}, {"OK\r\n"},
            {"cut OK\r\n 1.0-1.3 OK\r\n", "fired OK 1.0-1.1"});
    }
    void Places()
    {
        QFETCH(const QByteArrayList, sequences);
        QFETCH(const QByteArrayList, capture);
        QFETCH(const QByteArrayList, places);
        const CaptureJudge::Judged judged = Judge(sequences, CaptureOf(capture));
        QVERIFY(!judged.result.Failed());
        QCOMPARE(::Places(judged.judgement), places);
    }

    /// Against the line's own detection, and against what near misses are.
    void LongCapturesOfFewLetters()
    {
        QRandomGenerator random(7);
        const QByteArrayList sequences = {"abca",     "bb",       "caabc",
                                          "cccccccc", "abacabad", "aabbaabbaabb"};
        QByteArrayList packets;
        QByteArray text;
        while (text.size() < 20000) {
            QByteArray packet(1 + random.bounded(40), 'a');
            for (char &byte : packet)
                byte = char('a' + random.bounded(3));
            packets << packet;
            text += packet;
        }
        MdSequenceEdition tables;
        AddSequences(tables, sequences);
        const WatchSnapshot watch(tables);
        ReceiveDetection line;
        QMap<QByteArray, QList<qsizetype>> fired; // where they begin
        std::vector<int> found;
        for (qsizetype place = 0; place < text.size();) {
            place += line.Find(0, QByteArrayView(text).sliced(place), watch, found);
            for (const int i : found)
                fired[sequences[i]] << place - sequences[i].size();
        }

        const CaptureJudge::Judged judged = Judge(sequences, CaptureOf(packets));
        QList<qsizetype> begins = {0};
        for (const QByteArray &packet : packets)
            begins << begins.last() + packet.size();
        QMap<QByteArray, QList<qsizetype>> toldFired, toldNear;
        for (const JudgedPlace &place : judged.judgement.places) {
            const qsizetype begin = begins[place.first.packet - 1] + place.first.byte;
            (place.kind == JudgedPlace::Kind::Fired ? toldFired
                                                    : toldNear)[sequences[place.sequence]]
                << begin;
        }
        const QList<qsizetype> all =
            std::accumulate(fired.begin(), fired.end(), QList<qsizetype>());
        for (const QByteArray &sequence : sequences) {
            const qint64 most = judged.judgement.mostPlaces;
            QVERIFY(fired[sequence].size() < most && toldNear[sequence].size() < most);
            QCOMPARE(toldFired[sequence], fired[sequence]);
            QList<qsizetype> known = fired[sequence] + toldNear[sequence];
            for (const qsizetype place : toldNear[sequence])
                QVERIFY(NearlyAt(sequence, text, place));
            std::sort(known.begin(), known.end());
            for (qsizetype i = 1; i < known.size(); ++i)
                QVERIFY(known[i] - known[i - 1] >= sequence.size());
            for (qsizetype place = 0; place < text.size(); ++place) {
                const auto near =
                    std::lower_bound(known.begin(), known.end(), place - sequence.size() + 1);
                const bool isTold = near != known.end() && *near < place + sequence.size();
                QVERIFY(isTold || !NearlyAt(sequence, text, place) || all.contains(place));
            }
        }
    }

    void CountsGoOnWhereListsEnd()
    {
        const CaptureJudge::Judged judged =
            Judge({"a", "bcde"},
                  CaptureOf({QByteArray(50'000, 'a'), QByteArray("bcd-").repeated(30'000)}));
        const Judgement &j = judged.judgement;
        QCOMPARE(j.sequences[0].fired, 50'000);
        QCOMPARE(j.sequences[1].nearMisses, 30'000);
        QVERIFY(j.sequences[1].NeverFired());
        QCOMPARE(qint64(j.places.size()), 2 * j.mostPlaces);
        QCOMPARE(j.answers, 50'000);
        QVERIFY(JudgementText::Of(j, {}).contains("Of each sequence only the first 10000 places "
                                                  "and the first 10000 near misses are listed"));
    }

    void DamageTakesNothingThatIsBeforeIt()
    {
        QByteArrayList packets;
        for (int i = 0; i < 40; ++i)
            packets << "abc-";
        const QByteArray whole = CaptureOf(packets);
        QVERIFY(whole.size() > 2000);
        const qsizetype head = CaptureOf({}).size();
        const qsizetype packet = CaptureOf({"abc-"}).size() - head;
        for (qsizetype size = 0; size < 2000; ++size) {
            const CaptureJudge::Judged judged = Judge({"abc"}, whole.first(size));
            if (size < head) {
                QVERIFY(judged.judgement.packets == 0);
                continue;
            }
            const qsizetype read = (size - head) / packet;
            QCOMPARE(judged.judgement.sequences[0].fired, read);
            const QString from = QString("damaged from byte %1 on").arg(head + read * packet);
            QCOMPARE(judged.judgement.damage.contains(from), head + read * packet != size);
        }
    }

    void FilesThatAreNoCaptures_data()
    {
        const Cases<QString, QString> row("kind", "cause");
        row("nothing", "empty", "The file is empty");
        row("50 GB of zeros", "sparse", "neither a pcapng nor a pcap");
        row("50 GB behind a capture", "tail", "damaged from byte ");
        row("a folder", "folder", "");
        row("a FIFO", "fifo", "");
    }
    void FilesThatAreNoCaptures()
    {
        QFETCH(const QString, kind);
        QFETCH(const QString, cause);
        const QTemporaryDir folder;
        const QString path = folder.filePath(kind);
        QFile file(path);
        if (kind == "folder")
            QVERIFY(QDir().mkdir(path));
        else if (kind == "fifo")
            QCOMPARE(::mkfifo(qPrintable(path), 0600), 0);
        else
            QVERIFY(file.open(QIODevice::WriteOnly));
        if (kind == "tail")
            file.write(CaptureOf({"abc"}));
        if (kind == "tail" || kind == "sparse")
            QVERIFY(file.flush() && file.resize(qint64(50) << 30));
        const FileSystem::Opened opened = SystemFiles().Open(path);
        QCOMPARE(opened.result.Failed(), cause.isEmpty());
        if (!opened.device)
            return;
        MdSequenceEdition tables;
        AddSequences(tables, {"abc"});
        WorkProgress progress;
        const CaptureJudge::Judged judged = CaptureJudge(tables).Judge(*opened.device, progress);
        const QString told =
            judged.result.Failed() ? judged.result.Cause() : judged.judgement.damage;
        QVERIFY2(told.contains(cause), qPrintable(told));
        QCOMPARE(judged.judgement.packets, kind == "tail" ? 1 : 0);
    }

    void ACancelledJudgementSaysSo()
    {
        MdSequenceEdition tables;
        AddSequences(tables, {"a"});
        WorkProgress progress;
        progress.Cancel();
        QByteArrayList packets;
        for (int i = 0; i < 1000; ++i)
            packets << "a";
        const Judgement j = CaptureJudge(tables)
                                .Judge(ScriptedDisk::Reader(CaptureOf(packets)), progress)
                                .judgement;
        QVERIFY(!j.complete);
        QVERIFY(j.packets < 1000);
        QCOMPARE(j.sequences[0].fired, j.packets);
    }

    void ThePlaceAmongItsTelegrams()
    {
        QByteArrayList packets;
        for (int i = 0; i < 20; ++i)
            packets << "....";
        packets << ">\r"
                << "x" + QByteArray(40, 'y') + "ab"
                << "1:cd"
                << "c\nef"
                << "<break>";
        QByteArray capture = CaptureOf(packets);
        const Judgement j = Judge({"abcdef"}, capture).judgement;
        QCOMPARE(j.places.size(), 1U);
        const PlaceTelegrams around =
            PlaceTelegrams::Around(j.places[0], ScriptedDisk::Reader(capture));
        QVERIFY(!around.result.Failed());
        QStringList shown;
        for (const PlaceTelegram &t : around.telegrams)
            shown << QString("%1 %2 %3 %4 %5")
                         .arg(t.number)
                         .arg(t.channel)
                         .arg(t.isHere)
                         .arg(t.what, t.text);
        QCOMPARE(shown.sliced(around.telegrams.size() - 5),
                 QStringList({"21 0 0 sent <CR>", "22 0 1 received ... yyyyyyyyyyyyyyyy[ab]",
                              "23 1 0 received cd", "24 0 1 received [c<LF>ef]", "25 0 0 break "}));
        QCOMPARE(around.telegrams.first().number, 14);

        capture.truncate(capture.size() / 2);
        QVERIFY(PlaceTelegrams::Around(j.places[0], ScriptedDisk::Reader(capture)).result.Failed());
    }

    void TheReport()
    {
        qputenv("TZ", "UTC");
        const QByteArrayList packets = {"a\x1B", "1:wxyy"};
        const QByteArray capture = CaptureOf(packets + QByteArrayList{"x"}).chopped(1);
        const Judgement j = Judge({"a\x1B", "never", "wxyz", "off-", ""}, capture).judgement;
        const QString report =
            "Capture: /tmp/a\u240Ab.pcapng\n"
            "Project: (without a name)\n"
            "2 packets with 6 bytes received, from 2023-11-14 22:13:20.000000 to "
            "2023-11-14 22:13:20.001000\n"
            "Fired: 1; near misses: 1; sequences that never fired: 2; would have been answered: "
            "1 times, with 1 bytes\n"
            "The capture is damaged from byte %3 on: it ends in the middle of a block\n"
            "\n"
            "Receive sequence  Fired       Near misses  Would answer\n"
            "<a\u241B>              1           0            Reply (06)\n"
            "<never>           never       0\n"
            "<wxyz>            never       1\n"
            "<off->            not active  0\n"
            "<>                empty       0\n"
            "\n"
            "Time                        Packet  At byte  Channel  Receive sequence  What\n"
            "2023-11-14 22:13:20.000000  1       %1      COM1     <a\u241B>              fired\n"
            "2023-11-14 22:13:20.001000  2       %2      COM2     <wxyz>            near miss: one "
            "byte is another; expected 77 78 79 7A; found 77 78 79 [79]\n";
        const auto begin = [&](qsizetype count) { return CaptureOf(packets.first(count)).size(); };
        QCOMPARE(JudgementText::Of(j, {"/tmp/a\nb.pcapng", {}}),
                 report.arg(begin(0)).arg(begin(1)).arg(begin(2)));
    }
};

QTEST_GUILESS_MAIN(tst_judging)
#include "tst_judging.moc"
