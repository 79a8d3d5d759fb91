// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MainLoop.h"
#include "RunState.h"
#include "SystemClock.h"
#include "support/Cases.h"
#include "support/CommunicationBench.h"

#include <QTimer>

/// From a port's event to the staging boxes, the log and the answer.
class tst_receivepath : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ReadsAreCutIntoChunks()
    {
        CommunicationBench bench;
        bench.Open(CommMode::SendReceive);
        bench.portA.Receive(QByteArray(1100, 'x'));
        QList<qsizetype> chunks;
        for (const TrafficEvent &event : std::as_const(bench.log.events))
            chunks << event.bytes.size();
        QCOMPARE(chunks, (QList<qsizetype>{511, 511, 78}));
        QCOMPARE(bench.Staged(Representation::Ascii).size(), 1100);
    }

    void AnEditIsWatchedForFromTheNextReadOn()
    {
        CommunicationBench bench;
        bench.Open(CommMode::SendReceive);
        bench.Watch("b", "seen", "YES");
        bench.portA.Receive("ab");
        bench.tables.ChangeReceive(0, [](ReceiveSequence &record) { record.Active = 0; });
        bench.portA.Receive("b");
        bench.tables.ChangeReceive(0, [](ReceiveSequence &record) { record.Active = 1; });
        bench.tables.ClearProject();
        bench.portA.Receive("b");
        QCOMPARE(bench.StagedAscii(), "1:ab|c: seen |0:YES|1:bb");
    }

    void EventsKeepWhatTheyLedTo()
    {
        CommunicationBench bench;
        bench.tables.AddSend({"reply", "YES", {}});
        bench.tables.AddReceive({.Name = "ask", .Sequence = "?", .Answer = 1, .Comment = "asked"});
        bench.tables.RefreshAnswerNames();
        bench.Open(CommMode::SendReceive);
        const LineTime time = {77, bench.portA.line.now.wall + 77};
        bench.portA.line.now = time;
        bench.portA.Receive("who?");
        bench.tables.ClearProject();
        const TrafficEvent &said = bench.log.events[0];
        const TrafficEvent &sent = bench.log.events[1];
        QCOMPARE(said.names, QList<QByteArray>{"ask"});
        QCOMPARE(said.time.monotonic, time.monotonic);
        QCOMPARE(said.time.wall, time.wall);
        QVERIFY(sent.kind == TrafficEvent::Kind::Sent && sent.answer);
        QCOMPARE(sent.names + QList<QByteArray>{sent.bytes}, (QList<QByteArray>{"ask", "YES"}));
    }

    /// A window that stands still loses what its staging boxes would have trimmed, and no more.
    void AStalledWindowFindsWhatItsBoxesWouldHold()
    {
        for (const int chunk : {1, 300, 511}) {
            CommunicationBench stalled;
            stalled.settings.stamp = {true, false, true};
            stalled.Watch("xyz", "comment");
            stalled.Open(CommMode::MonitorReceiveOnly);
            std::array<RichTextModel, RepresentationCount> plain;
            const auto append = [&](const QByteArray &text, Representation r, int style) {
                if (!text.isEmpty())
                    plain[size_t(r)].AppendStyled(text,
                                                  stalled.settings.display.styles[size_t(style)]);
            };
            for (int round = 0; round < 200000 / chunk; ++round) {
                const qsizetype before = stalled.log.events.size();
                (round % 7 == 0 ? stalled.portB : stalled.portA)
                    .Receive(QByteArray::number(round).rightJustified(chunk, 'x', true) +
                             (round % 50 == 0 ? "xyz" : ""));
                for (const TrafficEvent &event : stalled.log.events.sliced(before)) {
                    for (const Representation r : AllRepresentations) {
                        append(event.stamp, r, StyleIndex::Comment);
                        append(ViewText(r, event.bytes), r, event.direction);
                        append(event.comment, r, StyleIndex::Comment);
                    }
                }
                stalled.log.events.clear();
            }
            for (const Representation r : AllRepresentations) {
                QCOMPARE(stalled.Staged(r), plain[size_t(r)].Bytes().toByteArray());
                QCOMPARE(stalled.Runs(stalled.views.StagingBox(r)), stalled.Runs(plain[size_t(r)]));
            }
        }
    }

    void WhatIsDamagedIsToldInItsPlaceAndNotShown()
    {
        CommunicationBench bench;
        bench.Watch("ask", "asked", "YES");
        bench.Open(CommMode::SendReceive);
        LineListener &ear = *bench.portA.line.listener;
        const LineTime now = bench.portA.line.now;
        ear.OnRead({"as", now});
        ear.OnCondition(LineCondition::DamagedByte, 1, now);
        ear.OnModemLines({true, false, false, false}, now);
        ear.OnCondition(LineCondition::Break, 2, now);
        ear.OnRead({"k", now});
        ear.OnCondition(LineCondition::Overrun, 3, now);
        QList<std::pair<TrafficEvent::Kind, qint64>> events;
        for (const TrafficEvent &event : std::as_const(bench.log.events))
            events.append({event.kind, event.count});
        using Kind = TrafficEvent::Kind;
        QCOMPARE(events, (QList<std::pair<Kind, qint64>>{{Kind::Received, 0},
                                                         {Kind::Damaged, 1},
                                                         {Kind::ModemLines, 0},
                                                         {Kind::Break, 2},
                                                         {Kind::Received, 0},
                                                         {Kind::Sent, 0},
                                                         {Kind::Overrun, 3}}));
        QCOMPARE(bench.StagedAscii(), "1:ask|c: asked |0:YES");
        QCOMPARE(bench.log.texts[size_t(Representation::Ascii)], "ask asked YES");
    }

    void AFullLogHoldsTheLinesBackAndNothingElse()
    {
        CommunicationBench bench;
        bench.Open(CommMode::SendReceive);
        bench.log.hasRoom = false;
        bench.portA.Receive("held");
        QCOMPARE(bench.StagedAscii(), "");
        bench.log.hasRoom = true;
        bench.communication.Resume();
        QCOMPARE(bench.StagedAscii(), "1:held");
    }

    void ADetectionEndsItsChunk_data()
    {
        const Cases<int, QByteArray, QByteArray> row("mode", "staged", "sent");
        row("mode 0 answers in the other colour and hears channel 1 alone", 0,
            "1:1ask|c: asked |0:YES|1:567890", "YES");
        row("mode 1 comments but never answers", 1, "0:1ask|c: asked |0:567890|1:b", "");
        row("mode 2 answers on channel 1", 2, "0:1ask|c: asked |0:YES567890|1:b", "YES");
    }

    void ADetectionEndsItsChunk()
    {
        QFETCH(int, mode);
        CommunicationBench bench;
        bench.Watch("ask", "asked", "YES");
        bench.Open(CommMode(mode));
        bench.portA.Receive("1ask567890");
        bench.portB.Receive("b");
        QTEST(bench.StagedAscii(), "staged");
        QTEST(bench.portA.line.sent, "sent");
        QCOMPARE(bench.portB.line.sent, "");
    }

    void AllFormsReachBoxesAndLogs()
    {
        CommunicationBench bench;
        bench.Watch(QByteArray("\0", 1), "nil");
        bench.Open(CommMode::SendReceive);
        bench.portA.Receive(QByteArray("A\0", 2));
        for (const RepresentationRow &row : RepresentationRows) {
            const QByteArray expected = ViewText(row.representation, {"A\0", 2}) + " nil ";
            QCOMPARE(bench.Staged(row.representation), expected);
            QCOMPARE(bench.log.texts[size_t(row.representation)], expected);
            const RichTextModel &box = bench.views.StagingBox(row.representation);
            QCOMPARE(box.StandsForZero(box.Begin() + 1),
                     row.representation == Representation::Ascii);
        }
    }

    void Stamps_data()
    {
        const Cases<bool, bool, bool, QByteArray> row("newLine", "date", "time", "stamp");
        row("a line break alone has no effect", true, false, false, "");
        row("all three", true, true, true, "\r\n5/11/06 07:13:49  - ");
        row("the date", false, true, false, "5/11/06  - ");
        row("the time", true, false, true, "\r\n07:13:49  - ");
    }

    void Stamps()
    {
        QFETCH(QByteArray, stamp);
        QFETCH(bool, newLine);
        QFETCH(bool, date);
        QFETCH(bool, time);
        CommunicationBench bench;
        bench.clock.now.setDate({2006, 11, 5});
        bench.settings.stamp = {newLine, date, time};
        bench.Open(CommMode::SendReceive);
        bench.portA.Receive("a");
        bench.portA.Receive("b"); // the same direction again: no stamp
        bench.communication.Transmit("C");
        bench.communication.Transmit("D"); // each sent chunk has its own
        bench.portA.Receive("e");
        const QByteArray c = stamp.isEmpty() ? QByteArray() : "c:" + stamp + '|';
        const QByteArray between = stamp.isEmpty() ? QByteArray("0:CD|") : "0:C|" + c + "0:D|";
        QCOMPARE(bench.StagedAscii(), c + "1:ab|" + c + between + c + "1:e");
        QVERIFY(bench.log.texts[3].startsWith(stamp));
    }

    void AStampKnowsItsDirectionAcrossARestart()
    {
        CommunicationBench bench;
        bench.settings.stamp = {false, false, true};
        bench.Open(CommMode::MonitorReceiveOnly);
        bench.portA.Receive("a");
        bench.communication.ClosePorts();
        bench.communication.OpenPorts();
        bench.portA.Receive("b");
        bench.portB.Receive("c");
        QCOMPARE(bench.StagedAscii(), "0:b|c:07:13:49  - |1:c");
    }

    void DateSeparators()
    {
        const std::pair<QString, QString> formats[] = {
            {"d/M/yy", "/"}, {"dd.MM.yyyy", "."},        {"d. M. yyyy", "."},
            {"ddMMyy", "/"}, {"d\u200F/\u200FM/y", "/"}, // what no view can show
            {"", "/"}};
        for (const auto &[format, separator] : formats)
            QCOMPARE(SystemClock::SeparatorOf(format), separator);
    }

    void AFailedSendIsTold()
    {
        CommunicationBench bench;
        bench.portA.failOpen = Failure{"no"};
        bench.communication.Transmit("hi");
        QVERIFY(!bench.communication.Running());
        QCOMPARE(bench.StagedAscii() + bench.portA.line.sent, "");
        QCOMPARE(bench.prompts.shown.size(), 1);

        bench.portA.failOpen = {};
        bench.portA.line.failWrite = Failure{"COM1 takes no data"};
        for (int twice = 0; twice < 2; ++twice) // the cause lasts: told once
            bench.communication.Transmit("hi");
        QTRY_COMPARE(bench.prompts.notices, QList{ExclamationMessage("COM1 takes no data")});
        QVERIFY(bench.communication.Running());
        QCOMPARE(bench.StagedAscii(), "0:hihi"); // shown all the same

        bench.portA.line.failWrite = {};
        bench.communication.Transmit("ok");
        bench.portA.line.failWrite = Failure{"COM1 takes no data"};
        QCoreApplication::processEvents();
        bench.prompts.standing.clear();
        bench.communication.Transmit("hi");
        QTRY_COMPARE(bench.prompts.notices.size(), 2);
    }

    /// With the second channel going on, whose question is for the first one to be answered.
    void ADeviceThatIsAwayIsWaitedFor()
    {
        CommunicationBench bench;
        bench.settings.stamp = {false, false, true};
        bench.settings.comm.stored.CommReopen = true;
        bench.Watch("abcd", "seen");
        bench.Watch("?", "asked", "YES");
        bench.Open(CommMode::MonitorReceiveAndModify);
        QVERIFY(bench.portA.reopens && bench.portB.reopens);
        bench.portA.Receive("ab");
        bench.portA.GoAway(17);
        bench.portB.Receive("?");
        bench.portB.Receive("?"); // told once
        QTRY_COMPARE(bench.statusTexts.last(), "Waiting for COM1 (/dev/scripted)");
        QTRY_COMPARE(bench.prompts.notices,
                     (QList{ExclamationMessage("COM1 went away while 17 bytes were still waiting "
                                               "to be sent"),
                            ExclamationMessage("away")}));
        bench.prompts.standing.clear();
        bench.communication.Transmit("by hand");
        QTRY_COMPARE(bench.prompts.notices.size(), 3); // whenever a hand tries it
        bench.portB.GoAway(0);
        QTRY_COMPARE(bench.statusTexts.last(),
                     "Waiting for COM1 (/dev/scripted) and COM2 (/dev/scripted)");
        bench.portB.ComeBack();
        bench.portA.ComeBack();
        bench.portA.Receive("cd"); // the first half is forgotten
        bench.communication.Transmit("again");
        const QByteArray stamp = "07:13:49  - ";
        QCOMPARE(bench.StagedAscii(), "c:" + stamp + "|0:ab|c: COM1 went away " + stamp +
                                          "|1:?|c: asked |1:?|c: asked  COM2 went away  COM2 is "
                                          "back  COM1 is back " +
                                          stamp + "|0:cdagain");
        QCOMPARE(bench.log.events[2].count, 17);
        QTRY_COMPARE(bench.statusTexts.last(), "Communication ports are open");
        QVERIFY(bench.log.calls == QStringList("UpdateLogCommands") &&
                bench.prompts.shown.isEmpty());

        bench.portA.line.listener->OnRefused("in use");
        bench.portA.GoAway(0);
        bench.communication.ClosePorts();
        QTRY_COMPARE(bench.prompts.notices.last(),
                     ExclamationMessage("COM1 is back, but cannot be opened; this is tried again "
                                        "and again. in use"));
        QCOMPARE(bench.statusTexts.last(), "Communication ports are closed");
    }

    /// The window may not have heard of it yet.
    void NobodyAnswersADeviceThatHasGone()
    {
        CommunicationBench bench;
        bench.Watch("?", "asked", "YES");
        bench.Open(CommMode::MonitorReceiveAndModify);
        bench.portA.Unplug("unplugged");
        bench.portB.Receive("?");
        QCOMPARE(bench.StagedAscii(), "1:?|c: asked ");
        QCOMPARE(bench.portA.line.sent, "");
        QTRY_VERIFY(!bench.communication.Running());
        bench.Open(CommMode::MonitorReceiveAndModify);
        bench.portB.Receive("?");
        QCOMPARE(bench.portA.line.sent, "YES");
    }

    void OnlyARunningLoopMovesText()
    {
        CommunicationBench bench;
        RunState run;
        MainLoop loop(run, bench.communication);
        RichTextModel &view = bench.views.View(Representation::Ascii);
        bench.views.StagingBox(Representation::Ascii).AppendStyled("staged", {});
        QCOMPARE(loop.Pass(), 100);
        QCOMPARE(view.Length(), 0);
        bench.Open(CommMode::SendReceive);
        bench.portA.Receive("live");
        QCOMPARE(loop.Pass(), 10);
        QCOMPARE(view.Bytes().toByteArray(), "stagedlive");

        QTimer::singleShot(0, &bench.communication, [&] { run.QuitRequested = true; });
        loop.Run();
    }

    void WhoRestsUntilThereIsTrafficIsCalledOnce()
    {
        CommunicationBench bench;
        bench.Open(CommMode::SendReceive);
        int calls = 0;
        bench.communication.CallOnceFed([&] { ++calls; });
        QCOMPARE(calls, 0);
        bench.portA.Receive("first");
        bench.portA.Receive("second");
        QCOMPARE(calls, 1);
        bench.communication.CallOnceFed([&] { ++calls; });
        QCOMPARE(calls, 2);
        bench.communication.ShowTraffic();
        bench.communication.CallOnceFed([&] { ++calls; });
        bench.communication.CallOnceFed({});
        bench.portA.Receive("third");
        QCOMPARE(calls, 2);
    }
};

QTEST_GUILESS_MAIN(tst_receivepath)
#include "tst_receivepath.moc"
