// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "support/Cases.h"
#include "support/CommunicationBench.h"

#include <QSignalSpy>

namespace
{

constexpr qint64 Millisecond = 1'000'000;

/// Open ports, and a clock that is set by hand.
class RepeatBench : public CommunicationBench
{
  public:
    explicit RepeatBench(CommMode mode = CommMode::SendReceive) { Open(mode); }

    int Repeat(const QByteArray &bytes, qint64 milliseconds, qint64 count = 0)
    {
        return communication.Repeat({bytes, "name", {milliseconds, count}});
    }
    /// The clock is looked at at that time, in milliseconds; returns what is sent then.
    QByteArray At(double milliseconds)
    {
        portA.line.sent.clear();
        portA.line.now.monotonic = qint64(milliseconds * double(Millisecond));
        lines.Pass(portA.line.now.monotonic);
        return portA.line.sent;
    }
};

} // namespace

class tst_repeats : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void KeepTheirTimes_data()
    {
        const Cases<RepeatPlan, QList<qint64>, QList<qint64>, qint64> row("plan", "looks", "sent",
                                                                          "leftOut");
        // Milliseconds, and how many have been sent by then.
        row("each in its time", {10, 0}, {0, 9, 10, 20, 30}, {1, 1, 2, 3, 4}, 0);
        row("lateness does not add up", {10, 0}, {4, 13, 19, 20, 29, 30}, {1, 2, 2, 3, 3, 4}, 0);
        row("what is missed is not made up for", {10, 0}, {0, 35, 36, 40}, {1, 2, 2, 3}, 2);
        row("a count is of what is sent", {10, 3}, {0, 35, 40, 50, 90}, {1, 2, 3, 3, 3}, 2);
        row("once", {1, 1}, {0, 1, 2}, {1, 1, 1}, 0);
        row("no shorter than a millisecond", {0, 0}, {0, 1, 2}, {1, 2, 3}, 0);
        row("an hour", {3'600'000, 0}, {0, 3'599'999, 3'600'000}, {1, 1, 2}, 0);
    }

    void KeepTheirTimes()
    {
        QFETCH(RepeatPlan, plan);
        QFETCH(QList<qint64>, looks);
        constexpr qint64 Start = 77'000'123;
        RepeatSchedule schedule(plan, Start);
        QList<qint64> sent;
        for (const qint64 look : looks) {
            if (schedule.IsDue(Start + look * Millisecond))
                schedule.Send(Start + look * Millisecond);
            sent << schedule.Sent();
        }
        QTEST(sent, "sent");
        QTEST(schedule.LeftOut(), "leftOut");
    }

    void SeveralGoOnBesideEachOther()
    {
        RepeatBench bench;
        const QSignalSpy changed(&bench.communication, &MdCommunication::RepeatsChanged);
        const int a = bench.Repeat("a", 10);
        bench.Repeat("b", 25, 2);
        QCOMPARE(bench.At(0), "ab");
        QCOMPARE(bench.At(20), "a");
        QCOMPARE(bench.At(25), "b"); // its last one
        QCoreApplication::processEvents();
        QCOMPARE(changed.size(), 3);
        const QList<RepeatState> states = bench.communication.Repeats();
        QCOMPARE(states.size(), 1);
        QCOMPARE(states[0].sent, 2);
        QCOMPARE(states[0].leftOut, 1);
        QCOMPARE(bench.StagedAscii(), "0:abab"); // the ordinary way: shown, logged, recorded
        bench.communication.EndRepeat(a);
        QCOMPARE(bench.At(100), "");
    }

    void EndWithWhatEndsThem_data()
    {
        const Cases<std::function<void(RepeatBench &)>> row("end");
        row("a stop", [](RepeatBench &bench) { bench.communication.ClosePorts(); });
        row("a stop and another start", [](RepeatBench &bench) {
            bench.communication.ClosePorts();
            bench.communication.OpenPorts();
        });
        row("one that the line refuses", [](RepeatBench &bench) {
            bench.portA.line.failWrite = Failure{"full"};
            bench.At(10);
            bench.portA.line.failWrite = {};
        });
        row("the device goes away", [](RepeatBench &bench) {
            bench.portA.GoAway(0);
            bench.At(10);
            bench.portA.ComeBack();
        });
        row("the device goes for good", [](RepeatBench &bench) { bench.portA.Unplug("pulled"); });
        row("the end of all", [](RepeatBench &bench) { bench.communication.EndRepeats(); });
    }

    void EndWithWhatEndsThem()
    {
        QFETCH(std::function<void(RepeatBench &)>, end);
        RepeatBench bench;
        bench.Repeat("a", 10);
        bench.Repeat("b", 10);
        QCOMPARE(bench.At(0), "ab");
        end(bench);
        QCOMPARE(bench.At(20), "");
        QCOMPARE(bench.communication.Repeats().size(), 0);
    }

    void ASlowLineIsNotFlooded()
    {
        RepeatBench bench;
        bench.Repeat("abcd", 10);
        QCOMPARE(bench.At(0), "abcd");
        bench.portA.line.counts.waiting = 4; // none of it has left
        QCOMPARE(bench.At(10), "");
        bench.portA.line.counts.waiting = 3;
        QCOMPARE(bench.At(20), "abcd");
        QCOMPARE(bench.communication.Repeats()[0].leftOut, 1);
    }

    void NothingIsRepeatedWhereNothingIsSent()
    {
        RepeatBench bench(CommMode::MonitorReceiveOnly);
        QCOMPARE(bench.Repeat("a", 10), 0);
        QCOMPARE(bench.At(100), "");
    }
};

QTEST_GUILESS_MAIN(tst_repeats)
#include "tst_repeats.moc"
