// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "support/Cases.h"
#include "support/CommunicationBench.h"

using State = MdCommunication::ToolbarState;

namespace
{

const Failure Busy = {QStringLiteral("in use by tester (process 1)")};

} // namespace

/// Opening and closing the ports of each mode, and what the user is told about it.
class tst_ports : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void PortsAreConfiguredInOrder()
    {
        CommunicationBench bench;
        bench.settings.comm.stored.CommPortA = 3;
        bench.settings.comm.stored.CommPortB = 200;
        bench.settings.comm.stored.CommStopBits = 1;
        bench.Open(CommMode::MonitorReceiveOnly);
        const QStringList behindTheNumber = {
            "Settings 9600,N,8,1.5", "RThreshold 1", "RTSEnable 1", "InputMode 0",
            "InBufferSize 512",      "InputLen 0",   "PortOpen 1"};
        QCOMPARE(bench.portA.calls, QStringList{"CommPort 3"} + behindTheNumber);
        QCOMPARE(bench.portB.calls, QStringList{"CommPort 200"} + behindTheNumber);
    }

    void OpeningAndClosing_data()
    {
        const Cases<int, bool, QStringList> row("mode", "two", "statusTexts");
        const QStringList plural = {"Communication ports are open",
                                    "Communication ports are closed"};
        row("mode 0", 0, false, {"Communication port is open", "Communication port is closed"});
        row("mode 1", 1, true, plural);
        row("mode 2", 2, true, plural);
    }

    void OpeningAndClosing()
    {
        QFETCH(int, mode);
        QFETCH(bool, two);
        CommunicationBench bench;
        const RichTextModel &view = bench.views.View(Representation::Binary);
        bench.communication.ClosePorts();
        QVERIFY(bench.portA.calls.isEmpty() && bench.log.calls.isEmpty());
        for (int twice = 0; twice < 2; ++twice) {
            bench.Open(CommMode(mode));
            QCOMPARE(bench.communication.CommStatus(), 0);
            QVERIFY(bench.portA.PortOpen());
            QCOMPARE(bench.portB.PortOpen(), two);
            QVERIFY(view.ReadOnly());
        }
        for (int twice = 0; twice < 2; ++twice) {
            bench.communication.ClosePorts();
            QCOMPARE(bench.communication.CommStatus(), 2);
            QVERIFY(!bench.portA.PortOpen() && !bench.portB.PortOpen());
            QVERIFY(!view.ReadOnly());
        }
        QCOMPARE(bench.toolbarStates, (QList{State::Closed, State::Open, State::Closed}));
        QTEST(bench.statusTexts, "statusTexts");
        QCOMPARE(bench.log.calls, (QStringList{"UpdateLogCommands", "StopLog"}));
        QVERIFY(bench.prompts.shown.isEmpty());

        // What is recorded of it.
        QStringList told;
        for (const TrafficEvent &event : bench.log.openings)
            told << QStringLiteral("%1 %2").arg(int(event.kind)).arg(event.channel);
        QStringList expected;
        for (const auto kind : {TrafficEvent::Kind::Opened, TrafficEvent::Kind::Closed}) {
            for (int channel = 0; channel <= int(two); ++channel)
                expected << QStringLiteral("%1 %2").arg(int(kind)).arg(channel);
        }
        QCOMPARE(told, expected);
        QCOMPARE(bench.log.sessions.size(), 1);
        const TrafficPort ports[] = {{"COM1", "/dev/scripted", 9600},
                                     {"COM2", "/dev/scripted", 9600}};
        QCOMPARE(bench.log.sessions[0].ports, QList<TrafficPort>(ports, ports + 1 + int(two)));
        QCOMPARE(bench.log.sessionsEnded, 1);
    }

    void AFailedOpenSaysWhyAndLeavesNothingOpen_data()
    {
        const Cases<int, bool, int, QString, QString> row("mode", "secondPort", "number", "says",
                                                          "status");
        const QString singular = "Error while configuring and opening the communication port";
        row("the one port of mode 0", 0, false, 0, "The port COM3 could not be opened. ", singular);
        row("refused line settings have a probable cause", 0, false, 8015,
            "The port COM3 could not be opened.  Probable cause: This COM port does not support "
            "the communication settings specified (baud rate, number of data bits, number of stop "
            "bits). ",
            singular);
        row("a missing device says how to assign one", 0, false, MissingDevice,
            "The port COM3 could not be opened. ", singular);
        row("a cancelled one says nothing more", 1, false, OpeningCancelled, "", singular + 's');
        row("the first of two", 1, false, 0, "The port COM3 could not be opened. ", singular + 's');
        row("the second of two", 2, true, 0, "The port COM4 could not be opened. ", singular + 's');
    }

    void AFailedOpenSaysWhyAndLeavesNothingOpen()
    {
        QFETCH(int, mode);
        QFETCH(bool, secondPort);
        QFETCH(int, number);
        QFETCH(QString, says);
        QFETCH(QString, status);
        CommunicationBench bench;
        bench.settings.comm.stored.CommPortA = 3;
        bench.settings.comm.stored.CommPortB = 4;
        (secondPort ? bench.portB : bench.portA).failOpen = Failure{Busy.cause, number};
        bench.Open(CommMode(mode));

        QCOMPARE(bench.communication.CommStatus(), 2);
        QVERIFY(!bench.portA.PortOpen() && !bench.portB.PortOpen());
        MessagePrompt told = CriticalMessage(
            says + "The system's original error message is: \"in use by tester (process 1)\"");
        if (number == MissingDevice)
            told.note = "To assign another device, choose \"Options...\" in the menu Tools, and "
                        "\"Devices...\" beside the COM number.";
        QCOMPARE(bench.prompts.shown, says.isEmpty() ? QList<MessagePrompt>() : QList{told});
        QCOMPARE(bench.statusTexts, QStringList{status});
        QCOMPARE(bench.toolbarStates, (QList{State::Closed, State::Closed}));
        QCOMPARE(bench.portB.calls.isEmpty(), !secondPort);
        QCOMPARE(bench.log.calls, QStringList{"UpdateLogCommands"});
        QVERIFY(!bench.views.View(Representation::Ascii).ReadOnly());
    }

    void AFailedCloseStaysOpenButStopsTheLog()
    {
        CommunicationBench bench;
        bench.settings.comm.stored.CommType = 2;
        for (ScriptedPort *failing : {&bench.portA, &bench.portB}) {
            bench.communication.OpenPorts();
            failing->failClose = Busy;
            bench.communication.ClosePorts();
            QCOMPARE(bench.communication.CommStatus(), 0);
            QCOMPARE(bench.statusTexts.last(), "Failure during closing the communication port");
            QCOMPARE(bench.log.calls.last(), "StopLog");
            QCOMPARE(bench.toolbarStates.last(), State::Open);
            QVERIFY(failing->PortOpen());
            QVERIFY(bench.portA.PortOpen() != bench.portB.PortOpen());
            failing->failClose = {};
            bench.communication.ClosePorts();
            QCOMPARE(bench.communication.CommStatus(), 2);
        }
        QVERIFY(bench.prompts.shown.isEmpty());
    }

    void LastWordsAreShownBeforeAStop()
    {
        CommunicationBench bench;
        bench.Open(CommMode::SendReceive);
        bench.portA.Receive("late");
        QObject::connect(&bench.communication, &MdCommunication::PortStatusChanged,
                         &bench.communication, [&](const QString &) {
                             QCOMPARE(bench.Runs(bench.views.View(Representation::Ascii)),
                                      "1:late");
                         });
        bench.communication.ClosePorts();
        QCOMPARE(bench.Staged(Representation::Hex), "");
    }

    void WhatAFailedCloseLeavesOpenIsReadOn()
    {
        CommunicationBench bench;
        bench.portA.failClose = Busy;
        bench.Open(CommMode::SendReceive);
        bench.communication.ClosePorts();
        bench.portA.Receive("still here");
        QCOMPARE(bench.StagedAscii(), "1:still here");
    }

    void WhatAStopThrowsAwayIsTold()
    {
        CommunicationBench bench;
        bench.portA.thrownAway = 17;
        bench.portA.line.failWrite = Failure{"COM1 takes no data"};
        bench.communication.Transmit("hi");
        QTRY_COMPARE(bench.prompts.notices.size(), 1);
        bench.communication.ClosePorts();
        QCOMPARE(bench.prompts.notices.size(), 2);
        QCOMPARE(bench.prompts.notices.last(),
                 ExclamationMessage("COM1 was closed while 17 bytes were still waiting to be "
                                    "sent"));
        QCOMPARE(bench.log.events.last().count, 17);
    }

    void AnUnpluggedDeviceIsReportedOnceAndClosed()
    {
        CommunicationBench bench;
        bench.settings.comm.stored.CommPortB = 9;
        bench.Open(CommMode::MonitorReceiveOnly);
        bench.portB.Unplug("/dev/ttyUSB0 is gone");
        QTRY_COMPARE(bench.communication.CommStatus(), 2);
        QVERIFY(!bench.portA.PortOpen());
        QTRY_COMPARE(
            bench.prompts.shown,
            QList{CriticalMessage("The port COM9 was disconnected. /dev/ttyUSB0 is gone")});
        bench.communication.OpenPorts();
        QVERIFY(bench.communication.Running());
    }

    void ReportsPostedWhileOneStandsFollowIt()
    {
        ScriptedPrompts prompts;
        ReportQueue reports(prompts);
        QList<MessagePrompt> posted = {CriticalMessage("first")};
        prompts.whileStanding = [&] {
            while (posted.size() < 50) { // the list of those that wait is moved in memory
                posted << CriticalMessage(QString::number(posted.size()));
                reports.Post(posted.last());
            }
        };
        reports.Post(posted.first());
        reports.ShowWaiting();
        QCOMPARE(prompts.shown, posted);
    }
};

QTEST_GUILESS_MAIN(tst_ports)
#include "tst_ports.moc"
