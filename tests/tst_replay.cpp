// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdReplay.h"
#include "support/Cases.h"
#include "support/CommunicationBench.h"
#include "support/ScriptedDisk.h"
#include "support/TestCapture.h"

#include <limits>

namespace
{

using Kind = TrafficEvent::Kind;
using State = MdReplay::State;

constexpr qint64 Second = 1'000'000'000;
constexpr qint64 Start = 1'700'000'000 * Second;
constexpr qint64 Day = ReplayPace::LongestSilence;

const QList<TrafficPort> OnePort = {{"COM1", "a device", 9600}};
const QList<TrafficPort> TwoPorts = OnePort + QList<TrafficPort>{{"COM2", {}, 0}};

TrafficEvent At(qint64 seconds, const QByteArray &bytes)
{
    TrafficEvent event;
    event.time = {0, Start + seconds * Second};
    event.bytes = bytes;
    return event;
}

QByteArray Telegrams(const QList<TrafficPort> &ports = OnePort)
{
    return CaptureOf({At(0, "one "), At(10, "two "), At(5, "back "), At(3600, "late ")}, ports);
}

/// What has happened, to be written as a capture.
class Recorder final : public TrafficConsumer
{
  public:
    QList<TrafficEvent> events;
    QList<TrafficPort> ports;

    void Begin(const TrafficSession &session) override { ports = session.ports; }
    void Take(const TrafficEvent &event) override { events << event; }
};

/// Communication with a replay in it, and a disk that holds the capture.
class ReplayBench : public CommunicationBench
{
  public:
    ScriptedDisk disk;
    QString folder;
    MdReplay replay{{communication, settings.comm, log, prompts, disk, folder}};

    explicit ReplayBench(const QByteArray &capture = Telegrams())
    {
        disk.files["/here/x.pcapng"] = capture;
    }

    void Start() { replay.Start("x.pcapng"); }
    void PlayToTheEnd()
    {
        replay.SetSpeed(ReplaySpeed::AtOnce);
        Start();
        QTRY_COMPARE(replay.Stands(), State::AtEnd);
    }
    QByteArray Shown(Representation r = Representation::Ascii)
    {
        return views.View(r).Bytes().toByteArray();
    }
};

/// A replay without its thread: the test passes, and says what time it is.
struct Stage {
    explicit Stage(const QByteArray &capture)
        : replay(std::make_unique<ScriptedDisk::Reader>(capture), [this] { return now; })
    {
        QVERIFY(!replay.Open().Failed());
        replay.Begin(bench.communication.Board(), bench.communication.Stream(),
                     [this] { return bench.log.hasRoom; });
    }
    QByteArray PassAt(double seconds)
    {
        now = qint64(seconds * Second);
        over = !replay.Pass().has_value();
        return bench.log.texts[size_t(Representation::Ascii)];
    }

    CommunicationBench bench;
    qint64 now = 0;
    bool over = false;
    CaptureReplay replay;
};

} // namespace

/// Captures that happen again.
class tst_replay : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ItsTurnComes_data()
    {
        using Times = QList<qint64>;
        const Cases<ReplaySpeed, Times, Times> row("speed", "captured", "due");
        row("at its own pace", ReplaySpeed::Own, {5, 15, 15, 40}, {0, 10, 10, 35});
        row("ten times as fast", ReplaySpeed::TenTimes, {5, 15, 15, 45}, {0, 1, 1, 4});
        row("at once", ReplaySpeed::AtOnce, {5, 15, 1000000}, {0, 0, 0});
        row("a step back counts as none", ReplaySpeed::Own, {100, 110, 3, 7}, {0, 10, 10, 14});
        row("years are a day", ReplaySpeed::Own, {0, 1700000000, 1700000001},
            {0, Day / Second, Day / Second + 1});
        row("the ends of time", ReplaySpeed::Own, {-9223372036, 9223372036, -9223372036, 0},
            {0, Day / Second, Day / Second, 2 * Day / Second});
    }

    void ItsTurnComes()
    {
        QFETCH(ReplaySpeed, speed);
        QFETCH(QList<qint64>, captured);
        QFETCH(QList<qint64>, due);
        qint64 now = 77;
        ReplayPace pace(now);
        pace.SetSpeed(speed, now);
        QList<qint64> came;
        for (const qint64 time : captured) {
            pace.Expect(time * Second);
            now += *pace.UntilDue(now);
            QCOMPARE(pace.UntilDue(now), 0);
            pace.Reach(now);
            came << (now - 77) / Second;
        }
        QCOMPARE(came, due);
    }

    void HandsOnThePace()
    {
        Stage stage(Telegrams());
        QCOMPARE(stage.PassAt(0), "one ");
        QCOMPARE(stage.PassAt(9.9), "one ");
        stage.replay.SetPaused(true);
        QCOMPARE(stage.PassAt(20), "one ");
        stage.replay.Skip(); // during a pause, one at a time
        QCOMPARE(stage.PassAt(21), "one two ");
        stage.replay.SetPaused(false);
        QCOMPARE(stage.PassAt(21), "one two back ");
        stage.replay.SetSpeed(ReplaySpeed::TenTimes);
        QCOMPARE(stage.replay.Where().silence, 3595 * Second / 10);
        QCOMPARE(stage.PassAt(300), "one two back ");
        QCOMPARE(stage.replay.Where().played, (10 + 2790) * Second);
        stage.replay.Skip();
        QCOMPARE(stage.PassAt(301), "one two back late ");
        QVERIFY(stage.over);
        QCOMPARE(stage.replay.Where().place, stage.replay.Size());
    }

    void AFullLogHoldsItBackAndItDoesNotHurryAfterwards()
    {
        Stage stage(CaptureOf({At(0, "a"), At(1, "b"), At(2, "c"), At(3, "d")}, OnePort));
        QCOMPARE(stage.PassAt(0), "a");
        stage.bench.log.hasRoom = false;
        QCOMPARE(stage.PassAt(100), "a");
        stage.bench.log.hasRoom = true;
        QCOMPARE(stage.PassAt(200), "ab");
        QCOMPARE(stage.PassAt(201), "abc");
        stage.replay.Stop();
        QCOMPARE(stage.PassAt(300), "abc");
        QVERIFY(stage.over);
    }

    void ASessionIsAsItWas_data()
    {
        const Cases<int> row("mode");
        row("mode 0", 0);
        row("mode 1", 1);
        row("mode 2", 2);
    }

    void ASessionIsAsItWas()
    {
        QFETCH(int, mode);
        Recorder recorder;
        CommunicationBench live;
        live.communication.Stream().Feed(recorder);
        const auto prepare = [](CommunicationBench &bench) {
            bench.settings.stamp = {true, true, true};
            bench.Watch("ask", "asked", "YES");
            bench.Watch("k?", "again");
        };
        prepare(live);
        live.Open(CommMode(mode));
        live.communication.Transmit("hello\r\n", "Greeting");
        live.communication.Transmit(QByteArray(150000, 's'), "Long one");
        live.portA.line.now.wall += 61 * Second;
        live.portA.Receive("x" + QByteArray(1000, '.') + "as");
        live.portA.Receive("k?ask");
        live.portA.GoAway(3);
        live.communication.Transmit("unseen");
        live.portA.line.now.wall -= 3600 * Second;
        live.portA.ComeBack();
        live.portA.Receive("?");
        if (mode != 0)
            live.portB.Receive("ask");
        live.portA.line.listener->OnCondition(LineCondition::DamagedByte, 2, live.portA.line.now);
        live.portA.Receive("as");
        live.communication.ClosePorts();
        live.Open(CommMode(mode));
        live.portA.Receive("k");
        live.portA.Unplug("for good");
        live.communication.ClosePorts();

        ReplayBench again(CaptureOf(recorder.events, recorder.ports));
        prepare(again);
        again.PlayToTheEnd();
        QVERIFY(again.log.texts[0].contains(mode == 1 ? " asked " : "YES"));
        for (const Representation r : AllRepresentations) {
            QCOMPARE(again.log.texts[size_t(r)], live.log.texts[size_t(r)]);
            QCOMPARE(again.Runs(again.views.View(r)), live.Runs(live.views.View(r)));
        }
        QCOMPARE(again.portA.line.sent + again.portB.line.sent, "");
        QVERIFY(again.portA.calls.isEmpty());
        QVERIFY(again.log.sessions.first().replay && again.log.sessionsEnded == 1);
    }

    void ItRunsInTheModeOfTheCapture_data()
    {
        const Cases<CommMode, QList<TrafficPort>, CommMode> row("own", "ports", "mode");
        row("one interface", CommMode::MonitorReceiveOnly, OnePort, CommMode::SendReceive);
        row("two interfaces", CommMode::SendReceive, TwoPorts, CommMode::MonitorReceiveOnly);
    }

    void ItRunsInTheModeOfTheCapture()
    {
        QFETCH(CommMode, own);
        QFETCH(QList<TrafficPort>, ports);
        QFETCH(CommMode, mode);
        ReplayBench bench(Telegrams(ports));
        bench.settings.comm.stored.CommType = qint32(own);
        bench.Start();
        QTRY_VERIFY(bench.communication.Running());
        QVERIFY(!bench.communication.OnPorts());
        QCOMPARE(bench.settings.comm.Mode(), mode);
        QCOMPARE(bench.settings.comm.ModeOfPorts(), own);
        QCOMPARE(bench.statusTexts, QStringList{"Replaying x.pcapng"});
        QCOMPARE(bench.toolbarStates.last(), MdCommunication::ToolbarState::Open);
        QTRY_VERIFY(bench.log.hasEvents);

        bench.communication.Transmit("unseen");
        bench.communication.Transmit("unseen");
        bench.communication.OpenPorts();
        bench.replay.SetSpeed(ReplaySpeed::AtOnce);
        QTRY_COMPARE(bench.replay.Stands(), State::AtEnd);
        QCOMPARE(bench.Shown(), "one two back late ");
        QCOMPARE(bench.prompts.notices.size(), mode == CommMode::SendReceive ? 1 : 0);
        QCOMPARE(bench.settings.comm.Mode(), own);
        QCOMPARE(bench.communication.CommStatus(), MdCommunication::StatusClosed);
        QCOMPARE(bench.toolbarStates.last(), MdCommunication::ToolbarState::Closed);
        QCOMPARE(bench.log.calls.last(), "StopLog");

        bench.Open(own);
        bench.Start();
        QCOMPARE(bench.prompts.notices.last().text,
                 "x.pcapng is not replayed, because communication runs.");
        QVERIFY(bench.communication.OnPorts());
    }

    void StopEndsItAnywhere()
    {
        ReplayBench bench;
        bench.Start();
        bench.replay.Stop(); // before it was open
        QCOMPARE(bench.replay.Stands(), State::Stopped);
        bench.Start();
        QTRY_VERIFY(bench.log.hasEvents);
        bench.communication.ClosePorts();
        QCOMPARE(bench.replay.Stands(), State::Stopped);
        QCOMPARE(bench.Shown(), "one ");
        QCoreApplication::processEvents();
        QVERIFY(!bench.communication.Running());
    }

    void WhatCannotBeReadIsTold_data()
    {
        const Cases<QByteArray, QString, QString> row("file", "shown", "told");
        const QByteArray whole = Telegrams();
        QByteArray ethernet = whole;
        ethernet[ethernet.indexOf('\xFA')] = 1;
        row("nothing", {}, {}, "x.pcapng cannot be replayed. The file is empty");
        row("no capture", "a project", {}, "x.pcapng cannot be replayed. The file is neither");
        row("Ethernet", ethernet, {},
            "x.pcapng cannot be replayed. It is a capture of link type 1 (Ethernet), not");
        row("cut", whole.chopped(3), "one two back ",
            "x.pcapng was replayed as far as it can be read. The capture is damaged from byte ");
        row("no packet", CaptureOf({}, OnePort), {}, {});
    }

    void WhatCannotBeReadIsTold()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, shown);
        QFETCH(QString, told);
        ReplayBench bench(file);
        bench.replay.SetSpeed(ReplaySpeed::AtOnce);
        bench.Start();
        QTRY_VERIFY(bench.replay.Stands() >= State::AtEnd);
        QCOMPARE(bench.Shown(), shown);
        QCOMPARE(bench.prompts.notices.size(), told.isEmpty() ? 0 : 1);
        if (!told.isEmpty())
            QVERIFY2(bench.prompts.notices[0].text.startsWith(told),
                     qPrintable(bench.prompts.notices[0].text));
        QVERIFY(!bench.communication.Running());
    }

    void AMissingFileIsTold()
    {
        ReplayBench bench;
        bench.replay.Start("y.pcapng");
        QCOMPARE(bench.prompts.notices[0].text,
                 "The capture y.pcapng cannot be opened. cannot be read");
        QVERIFY(bench.replay.Knows("x.pcapng") && !bench.replay.Knows("y.pcapng"));
    }
};

QTEST_GUILESS_MAIN(tst_replay)
#include "tst_replay.moc"
