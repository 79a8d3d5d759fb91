// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "support/CommunicationBench.h"

#include <QTest>

using State = MdCommunication::ToolbarState;

namespace
{

const PortFailure Busy = {0, QStringLiteral("in use by tester (process 1)")};

} // namespace

/// Opening and closing the ports of each mode, and what the user is told about it.
class tst_ports : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void PortsAreConfiguredInOrder();
    void OpeningAndClosing_data();
    void OpeningAndClosing();
    void AFailedOpenSaysWhyAndLeavesNothingOpen_data();
    void AFailedOpenSaysWhyAndLeavesNothingOpen();
    void AFailedCloseStaysOpenButStopsTheLog_data();
    void AFailedCloseStaysOpenButStopsTheLog();
    void OpeningTwiceOrClosingTwiceDoesNothing();
    void StagedTextSurvivesAStop();
    void AnUnpluggedDeviceIsReportedOnceAndClosed();
};

void tst_ports::PortsAreConfiguredInOrder()
{
    CommunicationBench bench;
    bench.settings.comm.stored.CommPortA = 3;
    bench.settings.comm.stored.CommPortB = 200;
    bench.settings.comm.stored.CommStopBits = 1;
    bench.Open(CommMode::MonitorReceiveOnly);
    const auto expected = [](const char *port) {
        return QStringList{port,          "Settings 9600,N,8,1.5", "RThreshold 1", "RTSEnable 1",
                           "InputMode 0", "InBufferSize 512",      "InputLen 0",   "PortOpen 1"};
    };
    QCOMPARE(bench.portA.calls, expected("CommPort 3"));
    QCOMPARE(bench.portB.calls, expected("CommPort 200"));
}

void tst_ports::OpeningAndClosing_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("two");
    QTest::addColumn<QStringList>("statusTexts");
    QTest::newRow("mode 0 has one port")
        << 0 << false << QStringList{"Communication port is open", "Communication port is closed"};
    for (const int mode : {1, 2}) {
        QTest::addRow("mode %d has two ports", mode)
            << mode << true
            << QStringList{"Communication ports are open", "Communication ports are closed"};
    }
}

void tst_ports::OpeningAndClosing()
{
    QFETCH(int, mode);
    QFETCH(bool, two);
    CommunicationBench bench;
    QCOMPARE(bench.communication.CommStatus(), 2);
    bench.Open(CommMode(mode));
    QCOMPARE(bench.communication.CommStatus(), 0);
    QVERIFY(bench.portA.PortOpen());
    QCOMPARE(bench.portB.PortOpen(), two);
    QVERIFY(bench.views.View(Representation::Binary).ReadOnly());
    QCOMPARE(bench.toolbarStates, (QList{State::Closed, State::Open}));

    bench.communication.ClosePorts();
    QCOMPARE(bench.communication.CommStatus(), 2);
    QVERIFY(!bench.portA.PortOpen() && !bench.portB.PortOpen());
    QVERIFY(!bench.views.View(Representation::Binary).ReadOnly());
    QCOMPARE(bench.toolbarStates, (QList{State::Closed, State::Open, State::Closed}));
    QTEST(bench.statusTexts, "statusTexts");
    QCOMPARE(bench.log.calls, (QStringList{"UpdateLogCommands", "StopLog"}));
    QVERIFY(bench.prompts.shown.isEmpty());
}

void tst_ports::AFailedOpenSaysWhyAndLeavesNothingOpen_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("secondPort");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("status");

    const QString busy = "The system's original error message is: \"in use by tester (process 1)\"";
    const QString plural = "Error while configuring and opening the communication ports";
    QTest::newRow("the one port of mode 0")
        << 0 << false << 0 << "The port COM3 could not be opened. " + busy
        << "Error while configuring and opening the communication port";
    QTest::newRow("refused line settings have a probable cause")
        << 0 << false << 8015
        << "The port COM3 could not be opened.  Probable cause: This COM port does not support the "
           "communication settings specified (baud rate, number of data bits, number of stop "
           "bits). " +
               busy
        << "Error while configuring and opening the communication port";
    QTest::newRow("the first of two")
        << 1 << false << 0 << "The port COM3 could not be opened. " + busy << plural;
    QTest::newRow("the second of two")
        << 2 << true << 0 << "The port COM4 could not be opened. " + busy << plural;
}

void tst_ports::AFailedOpenSaysWhyAndLeavesNothingOpen()
{
    QFETCH(int, mode);
    QFETCH(bool, secondPort);
    QFETCH(int, number);
    QFETCH(QString, message);
    QFETCH(QString, status);
    CommunicationBench bench;
    bench.settings.comm.stored.CommPortA = 3;
    bench.settings.comm.stored.CommPortB = 4;
    (secondPort ? bench.portB : bench.portA).failOpen = PortFailure{number, Busy.description};
    bench.Open(CommMode(mode));

    QCOMPARE(bench.communication.CommStatus(), 2);
    QVERIFY(!bench.portA.PortOpen() && !bench.portB.PortOpen());
    QCOMPARE(bench.prompts.shown, QList{CriticalMessage(message)});
    QCOMPARE(bench.statusTexts, QStringList{status});
    QCOMPARE(bench.toolbarStates, (QList{State::Closed, State::Closed}));
    QCOMPARE(bench.portB.calls.isEmpty(), !secondPort);
    QCOMPARE(bench.log.calls, QStringList{"UpdateLogCommands"});
    QVERIFY(!bench.views.View(Representation::Ascii).ReadOnly());
}

void tst_ports::AFailedCloseStaysOpenButStopsTheLog_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("secondPort");
    QTest::newRow("mode 0") << 0 << false;
    QTest::newRow("mode 1, the first port") << 1 << false;
    QTest::newRow("mode 2, the second port") << 2 << true;
}

void tst_ports::AFailedCloseStaysOpenButStopsTheLog()
{
    QFETCH(int, mode);
    QFETCH(bool, secondPort);
    CommunicationBench bench;
    bench.Open(CommMode(mode));
    ScriptedPort &failing = secondPort ? bench.portB : bench.portA;
    ScriptedPort &other = secondPort ? bench.portA : bench.portB;
    failing.failClose = Busy;
    bench.communication.ClosePorts();

    QCOMPARE(bench.communication.CommStatus(), 0);
    QCOMPARE(bench.statusTexts.last(),
             QStringLiteral("Failure during closing the communication port"));
    QCOMPARE(bench.log.calls.last(), QStringLiteral("StopLog"));
    QCOMPARE(bench.toolbarStates.last(), State::Open);
    QVERIFY(!other.PortOpen());
    QVERIFY(bench.prompts.shown.isEmpty());

    failing.failClose.reset();
    bench.communication.ClosePorts();
    QCOMPARE(bench.communication.CommStatus(), 2);
}

void tst_ports::OpeningTwiceOrClosingTwiceDoesNothing()
{
    CommunicationBench bench;
    bench.communication.ClosePorts();
    QVERIFY(bench.portA.calls.isEmpty() && bench.log.calls.isEmpty());
    bench.Open(CommMode::SendReceive);
    const qsizetype calls = bench.portA.calls.size();
    bench.Open(CommMode::SendReceive);
    QCOMPARE(bench.portA.calls.size(), calls);
    QCOMPARE(bench.statusTexts.size(), 1);
}

void tst_ports::StagedTextSurvivesAStop()
{
    CommunicationBench bench;
    bench.Open(CommMode::SendReceive);
    bench.portA.Receive("late");
    bench.communication.ClosePorts();
    QCOMPARE(bench.Staged(Representation::Ascii), QByteArray("late"));
    QCOMPARE(bench.views.View(Representation::Ascii).Length(), 0);

    bench.portA.failOpen = Busy;
    bench.communication.OpenPorts();
    QCOMPARE(bench.Staged(Representation::Ascii), QByteArray("late"));
    bench.portA.failOpen.reset();
    bench.communication.OpenPorts();
    QCOMPARE(bench.Staged(Representation::Hex), QByteArray());
    QCOMPARE(bench.Runs(bench.views.View(Representation::Ascii)), QByteArray("1:late"));
}

void tst_ports::AnUnpluggedDeviceIsReportedOnceAndClosed()
{
    CommunicationBench bench;
    bench.settings.comm.stored.CommPortB = 9;
    bench.Open(CommMode::MonitorReceiveOnly);
    bench.portB.Unplug("/dev/ttyUSB0 is gone");
    QCOMPARE(bench.communication.CommStatus(), 2);
    QVERIFY(!bench.portA.PortOpen());
    QCOMPARE(bench.statusTexts.last(), QStringLiteral("Communication ports are closed"));
    QTRY_COMPARE(bench.prompts.shown.size(), 1);
    QCOMPARE(bench.prompts.shown.first(),
             CriticalMessage("The port COM9 was disconnected. /dev/ttyUSB0 is gone"));
    bench.communication.OpenPorts();
    QVERIFY(bench.communication.Running());
}

QTEST_GUILESS_MAIN(tst_ports)
#include "tst_ports.moc"
