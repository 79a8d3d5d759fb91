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
    void OtherEventsChangeNothing()
    {
        CommunicationBench bench;
        bench.Open(CommMode::SendReceive);
        bench.portA.waiting = "waits";
        for (const int event : {1001, 1004, 1006, 1008, 1009, 1010, 1011, 3, 4, 5, 6, 7, 1, 0, -1})
            bench.portA.Raise(event);
        QCOMPARE(bench.StagedAscii(), "");
        for (int i = 0; i < 2; ++i) { // the second time with nothing waiting
            bench.portA.Raise(2);
            QCOMPARE(bench.StagedAscii(), "1:waits");
        }
    }

    void AFullBufferIsThrownAway()
    {
        for (const auto &[waiting, shown] : {std::pair(511, 511), {512, 0}, {600, 0}}) {
            CommunicationBench bench;
            bench.Open(CommMode::SendReceive);
            bench.portA.Receive(QByteArray(waiting, 'x'));
            QCOMPARE(bench.Staged(Representation::Ascii).size(), shown);
            QCOMPARE(bench.portA.waiting, "");
            QVERIFY(bench.prompts.shown.isEmpty());
        }
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
        QTEST(bench.portA.sent, "sent");
        QCOMPARE(bench.portB.sent, "");
    }

    void AllFormsReachBoxesAndLogs()
    {
        CommunicationBench bench;
        bench.Watch(QByteArray("\0", 1), "nil");
        bench.Open(CommMode::SendReceive);
        bench.portA.Receive(QByteArray("A\0", 2));
        for (const RepresentationRow &row : RepresentationRows) {
            const QByteArray expected = row.toView({"A\0", 2}) + " nil ";
            QCOMPARE(bench.Staged(row.representation), expected);
            QCOMPARE(bench.log.texts[size_t(row.representation)], expected);
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
        QCOMPARE(bench.StagedAscii(), "0:b");
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
        QCOMPARE(bench.StagedAscii() + bench.portA.sent, "");
        QCOMPARE(bench.prompts.shown.size(), 1);

        bench.portA.failOpen = {};
        bench.portA.failOutput = Failure{"COM1 takes no data"};
        bench.communication.Transmit("hi");
        QCOMPARE(bench.prompts.shown.last(), ExclamationMessage("COM1 takes no data"));
        QVERIFY(bench.communication.Running());
    }

    void AFailedAnswerIsToldAfterTheEvent()
    {
        CommunicationBench bench;
        bench.Watch("?", "asked", "YES");
        bench.Open(CommMode::SendReceive);
        bench.portA.failOutput = Failure{"COM1 takes no data"};
        // While the box stands, more of the same comes in: it must neither nest nor pile up boxes.
        bench.prompts.whileStanding = [&] { bench.portA.Receive("again?"); };
        bench.portA.Receive("ready?");
        QVERIFY(bench.prompts.shown.isEmpty());
        QTRY_COMPARE(bench.prompts.shown, QList{ExclamationMessage("COM1 takes no data")});
        QCOMPARE(bench.StagedAscii(), "1:ready?|c: asked |0:YES|1:again?|c: asked |0:YES");

        bench.prompts.whileStanding = [] {};
        bench.portA.Receive("and again?"); // a new failure after the answered box is told again
        QTRY_COMPARE(bench.prompts.shown.size(), 2);
    }

    void OnlyARunningLoopMovesText()
    {
        CommunicationBench bench;
        RunState run;
        MainLoop loop(run, bench.communication, bench.views);
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
};

QTEST_GUILESS_MAIN(tst_receivepath)
#include "tst_receivepath.moc"
