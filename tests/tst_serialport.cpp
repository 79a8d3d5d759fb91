// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "support/Cases.h"
#include "support/SerialStation.h"
#include "support/UnprivilegedOpener.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <ctime>
#include <future>

#include <sys/ioctl.h>
#include <sys/stat.h>

namespace
{

constexpr int Kibi = 1024;

QByteArray RandomBytes(qsizetype count)
{
    QByteArray bytes(count, '\0');
    QRandomGenerator random(4711);
    std::generate(bytes.begin(), bytes.end(), [&] { return char(random.bounded(256)); });
    return bytes;
}

} // namespace

class TestSerialPort : public QObject
{
    Q_OBJECT

  public:
    explicit TestSerialPort(const UnprivilegedOpener &opener) : m_opener(opener) {}

  private:
    const UnprivilegedOpener &m_opener;

  private Q_SLOTS:
    void AFullQueueHoldsTheSenderBack()
    {
        World world;
        Station station(world, 1);
        const QByteArray flood = RandomBytes(6 * Kibi * Kibi);
        auto sender = std::async(std::launch::async, [&] { return station.pty.Write(flood); });

        QVERIFY(WaitStalled([&] { return world.Waiting() > 4 * Kibi * Kibi - 64 * Kibi; }));
        QCOMPARE(sender.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
        QVERIFY(world.Waiting() <= 4 * Kibi * Kibi);
        QVERIFY(world.events.isEmpty());

        QTRY_COMPARE_WITH_TIMEOUT(station.received.size(), flood.size(), 30000);
        QVERIFY(sender.get());
        QVERIFY(station.received == flood);
        for (const QByteArray &event : std::as_const(world.events))
            QVERIFY(!event.isEmpty() && event.size() <= 511);
    }

    void NoEventIsRaisedInsideAnother()
    {
        World world;
        Station a(world, 1), b(world, 2);
        int depth = 0;
        int deepest = 0;
        const auto linger = [&] {
            deepest = std::max(deepest, ++depth);
            if (world.events.size() == 1) {
                QVERIFY(a.pty.Write("second") && b.pty.Write("third"));
                QTRY_COMPARE(world.Waiting(), 11); // a dialog's event loop, as it were
                QCoreApplication::processEvents();
            } else if (a.received.size() > 11) {
                QVERIFY(!a.port.SetPortOpen(false).Failed());
            }
            --depth;
        };
        for (Station *station : {&a, &b})
            connect(&station->port, &SerialPortControl::CommEventRaised, this, linger);
        QVERIFY(a.pty.Write("first"));
        QTRY_VERIFY(a.received == "firstsecond" && b.received == "third");
        QVERIFY(a.pty.Write(RandomBytes(2000))); // several events: the first of them closes
        QVERIFY(WaitStalled([&] { return world.Waiting() == 2000; }));
        QTRY_COMPARE(a.received.size(), 2011);
        QCOMPARE(deepest, 1);
        QVERIFY(!a.port.PortOpen());
    }

    void AnUnpluggedDeviceIsReportedOnce_data()
    {
        const Cases<int, int, int> row("sent", "waiting", "arriving");
        row("events waiting", 0, 100 * Kibi, 0);
        row("everything at once", 200 * Kibi, 5000, 4000);
        row("idle", 0, 0, 0);
    }
    void AnUnpluggedDeviceIsReportedOnce()
    {
        QFETCH(int, sent);
        QFETCH(int, waiting);
        QFETCH(int, arriving);
        World world;
        const auto descriptors = [] { return QDir("/proc/self/fd").count(); };
        const uint before = descriptors();
        for (int round = 0; round < 20; ++round) {
            Station station(world, 1);
            QVERIFY(!station.port.Output(QByteArray(sent, 's')).Failed());
            QVERIFY(station.pty.Write(QByteArray(waiting, 'w')));
            QVERIFY(WaitStalled([&] { return world.Waiting() == waiting; }));
            station.pty.WriteSome(QByteArray(arriving, 'a'));
            station.pty.Unplug();
            QVERIFY(!station.port.Output("into the void").Failed());

            QTRY_COMPARE(station.departures.size(), 1);
            QVERIFY(station.received.size() >= waiting);
            QCOMPARE(station.departures.first(), station.pty.DeviceName() + " was unplugged");
            if (round > 0)
                continue;
            QSignalSpy another(&station.port, &SerialPortControl::Disconnected);
            const std::clock_t start = std::clock();
            QVERIFY(!another.wait(50));
            QVERIFY(std::clock() - start < CLOCKS_PER_SEC * 3 / 100); // a busy loop would fill it
            QVERIFY(station.port.PortOpen());
            QVERIFY(!station.port.SetPortOpen(false).Failed());
        }
        QCOMPARE(descriptors(), before);
    }

    void LineSettingsAreTakenOrRefused_data()
    {
        const Cases<QString, QString> row("settings", "does"); // what is refused does another thing
        for (const char *taken :
             {"9600,N,8,1", "921600,N,8,1", "123457,n,8,1", "14400,N,8,1", "9600,N,8,2"})
            row(taken, taken, "");
        for (const char *refused : {"9600,N,7,1", "9600,N,4,1", "9600,E,8,1", "9600,O,8,1",
                                    "9600,M,8,1", "9600,S,8,1", "9600,N,8,1.5"})
            row(refused, refused, "9600,N,8,1");
        row("all of it", "300,E,7,1.5", "300,N,8,1");
        row("no settings at all", "9600,N,8", "form of 9600,N,8,1");
    }

    void LineSettingsAreTakenOrRefused()
    {
        QFETCH(QString, settings);
        QFETCH(QString, does);
        World world;
        Station station(world, 1, false);
        KernelLine found = LineOf(station.pty);
        found.input |= ICRNL;
        found.control = (found.control & ~quint32(CBAUD)) | 0x1000; // a rate of its own
        found.inputBaud = found.outputBaud = 12345;
        QCOMPARE(::ioctl(station.pty.Device(), _IOW('T', 0x2B, KernelLine), &found), 0);

        QVERIFY(!station.port.SetSettings(settings).Failed());
        const Result opened = station.port.SetPortOpen(true);
        QCOMPARE(station.port.PortOpen(), does.isEmpty());
        QCOMPARE(opened.Failed(), !does.isEmpty());
        const KernelLine line = LineOf(station.pty);
        if (!opened.Failed()) {
            QCOMPARE(line.outputBaud, settings.section(',', 0, 0).toUInt());
            QCOMPARE(line.input & (IGNPAR | INPCK | PARMRK | IGNBRK | BRKINT), 0u);
            return;
        }
        QCOMPARE(opened.Number(), 8015);
        QVERIFY(opened.Cause().contains(settings) && opened.Cause().contains(does));
        QCOMPARE(line.input, found.input);
        QCOMPARE(line.control, found.control);
        QCOMPARE(line.outputBaud, found.outputBaud);
    }

    void CloseHandsOverAndSendsWhatWaits()
    {
        World world;
        Station station(world, 1);
        const QByteArray question = RandomBytes(100 * Kibi);
        const QByteArray answer = RandomBytes(200 * Kibi);
        QVERIFY(station.pty.Write(question));
        QVERIFY(!station.port.Output(answer).Failed());
        auto peer = std::async(std::launch::async, [&] { return station.pty.Read(answer.size()); });
        QVERIFY(!station.port.SetPortOpen(false).Failed());
        QVERIFY(station.received == question);
        QVERIFY(peer.get() == answer);
        QVERIFY(!station.port.PortOpen());
        QCOMPARE(Cause(station.port.Output("late")), "COM1 is not open");
    }

    void APeerThatNeverReadsHoldsNothingUp()
    {
        World world;
        Station station(world, 1);
        QString cause = "none";
        int accepted = 0;
        for (; cause == "none" && accepted < 4 * Kibi; ++accepted)
            cause = Cause(station.port.Output(QByteArray(Kibi, 'x')));
        QVERIFY(accepted > Kibi && accepted < Kibi + 100); // 1 MiB and what the system holds
        QVERIFY2(cause.startsWith("COM1 does not send: 10"), qPrintable(cause));
        QVERIFY2(cause.endsWith(" bytes are still waiting"), qPrintable(cause));

        QElapsedTimer closing;
        closing.start();
        QVERIFY(!station.port.SetPortOpen(false).Failed());
        QVERIFY(closing.elapsed() < 2000);
        QVERIFY(station.port.ThrownAway() > 1000 * Kibi);
        QVERIFY(!station.port.SetPortOpen(true).Failed());
        while (!station.pty.Read(1, 0).isEmpty())
            continue;
        const QByteArray big = RandomBytes(3 * Kibi * Kibi); // nothing else waits
        QVERIFY(!station.port.Output(big).Failed());
        QVERIFY(station.pty.Read(big.size()) == big);

        QVERIFY(!station.port.Output(big).Failed());
        world.lines.Do([&] { station.port.Wire().EndReading(); });
        station.pty.Unplug(); // in the middle of a stop, so that nobody is told
        QVERIFY(!station.port.SetPortOpen(false).Failed());
        QVERIFY(station.port.ThrownAway() > 2 * Kibi * Kibi);
    }

    void AFailedOpeningNamesItsCause()
    {
        World world;
        Station first(world, 3);
        QTemporaryDir folder;
        const QString link = folder.filePath("by-another-name");
        QVERIFY(QFile::link(first.pty.DeviceName(), link));
        const QString file = folder.filePath("file");
        QVERIFY(QFile(file).open(QIODevice::WriteOnly));

        const QList<std::pair<QString, QString>> failures = {
            {"", "COM97 has no device; give it one with --port 97=DEVICE or in the settings "
                 "section Ports, key COM97"},
            {"/dev/ttyUSB-none", "There is no device /dev/ttyUSB-none"},
            {"/dev/null", "/dev/null is not a serial device"},
            {file, file + " is not a serial device"},
            {link, first.pty.DeviceName() + " is already open in this program as COM3"}};
        for (const auto &[device, description] : failures) {
            world.devices.AssignForRun(97, device);
            SerialPort port(world.lines, world.hub, world.devices);
            QVERIFY(!port.SetCommPort(97).Failed());
            QCOMPARE(Cause(port.SetPortOpen(true)), description);
        }
    }

    void ALockOfAnotherProcessIsRespected()
    {
        World world;
        Station station(world, 1, false);
        QFile lock("/var/lock/LCK.." + station.pty.DeviceName().mid(5).replace('/', '_'));
        QVERIFY(lock.open(QIODevice::WriteOnly));
        lock.write(QByteArray::number(m_opener.Process()).rightJustified(10) + "\n");
        lock.close();
        const QString cause = Cause(station.port.SetPortOpen(true));
        QVERIFY(lock.remove()); // it was not taken away
        QCOMPARE(cause, station.pty.DeviceName() + " is in use by tst_serialport (process " +
                            QString::number(m_opener.Process()) + ')');
        QVERIFY(!station.port.SetPortOpen(true).Failed());
    }

    void AnotherUserIsToldWhy()
    {
        World world;
        Station station(world, 1, false);
        const QString device = station.pty.DeviceName();
        const QByteArray path = QFile::encodeName(device);
        const QFileInfo info(device);
        const std::pair<mode_t, QString> rights[] = {
            {0000, "belongs to the user " + info.owner() + " and is not open to others"},
            {0060, "belongs to the group " + info.group() + "; add yourself to it"}};
        for (const auto &[mode, cure] : rights) {
            QCOMPARE(::chmod(path.constData(), mode), 0);
            QCOMPARE(m_opener.Open(device), "Permission denied: " + device + ' ' + cure);
        }
        QCOMPARE(::chmod(path.constData(), 0666), 0);
        QCOMPARE(m_opener.Open(device), "opened");
        QCOMPARE(::ioctl(station.pty.Device(), TIOCEXCL), 0);
        const QString who = ::geteuid() == 0 ? "another program" // whose files it may not look at
                                             : QString("tst_serialport (process %1)").arg(getpid());
        QCOMPARE(m_opener.Open(device), device + " is in use by " + who);
    }

    void PropertiesStandWhileThePortIsOpen()
    {
        World world;
        Station station(world, 1, false);
        QVERIFY(station.port.SetCommPort(256).Failed() && station.port.SetInputMode(1).Failed());
        // A line that a pseudo-terminal does not have.
        QVERIFY(!station.port.SetRTSEnable(true).Failed());
        QVERIFY(!station.port.SetRThreshold(3).Failed() && !station.port.SetInputLen(2).Failed());
        QVERIFY(!station.port.SetPortOpen(true).Failed());
        QVERIFY(station.port.SetCommPort(2).Failed());
        QVERIFY(station.pty.Write("ab") && station.pty.Write("cde"));
        QTRY_COMPARE(station.received, "ab");
        QTRY_COMPARE(station.port.InBufferCount(), 3);
        QCOMPARE(station.port.Input(), "cd");
        station.port.ClearInBuffer();
        QCOMPARE(station.port.InBufferCount(), 0);
    }
};

int main(int count, char **arguments)
{
    const UnprivilegedOpener opener; // a fork, so before everything else
    QCoreApplication application(count, arguments);
    TestSerialPort test(opener);
    return QTest::qExec(&test, count, arguments);
}

#include "tst_serialport.moc"
