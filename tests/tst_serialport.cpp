// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineLoop.h"
#include "PortDevices.h"
#include "SerialPort.h"
#include "SerialPortHub.h"
#include "SystemPortName.h"
#include "support/Cases.h"
#include "support/MemoryStore.h"
#include "support/PtyPair.h"
#include "support/UnprivilegedOpener.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>

#include <ctime>
#include <future>
#include <memory>
#include <mutex>

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

/// Waits as a window does that is busy: no event comes to be handled.
template <typename Condition> bool WaitStalled(Condition condition)
{
    const QDeadlineTimer deadline(20000);
    while (!condition() && !deadline.hasExpired())
        QThread::yieldCurrentThread();
    return condition();
}

QString Cause(const Result &result)
{
    return result.Failed() ? result.Cause() : QStringLiteral("none");
}

/// A line as the kernel keeps it; the C library does not tell rates without a name.
struct KernelLine {
    quint32 input, output, control, local;
    uchar discipline, characters[19];
    quint32 inputBaud, outputBaud;
};

KernelLine LineOf(const PtyPair &pty)
{
    KernelLine line = {};
    if (::ioctl(pty.Device(), _IOR('T', 0x2A, KernelLine), &line) != 0)
        qFatal("no line");
    return line;
}

/// The bytes that wait to be read at the device's end.
qsizetype Readable(const PtyPair &pty)
{
    int count = 0;
    return ::ioctl(pty.Device(), FIONREAD, &count) == 0 ? count : 0;
}

/// What the two ends of a program share, on a fresh table of devices.
struct World {
    MemoryStore store;
    PortDevices devices{store, SystemPortName};
    LineLoop lines;
    SerialPortHub hub;
    QList<QByteArray> events; ///< of all stations, in order

    qsizetype Waiting() { return hub.Arrivals().WaitingOnAllPorts(); }
};

/// One port of the program and its peer; reads as the program does. Opened at once, unless said.
struct Station {
    Station(World &of, int comNumber, bool opened = true)
        : world(of), port(of.lines, of.hub, of.devices)
    {
        world.devices.AssignForRun(comNumber, pty.DeviceName());
        Require(port.SetCommPort(comNumber));
        QObject::connect(&port, &SerialPortControl::CommEventRaised, &port, [this] {
            world.events.append(port.Input());
            received += world.events.last();
        });
        QObject::connect(&port, &SerialPortControl::Disconnected, &port,
                         [this](const QString &text) { departures.append(text); });
        if (opened)
            Require(port.SetPortOpen(true));
    }

    static void Require(const Result &done)
    {
        if (done.Failed())
            qFatal("%s", qPrintable(done.Cause()));
    }

    World &world;
    PtyPair pty;
    SerialPort port;
    QByteArray received;
    QStringList departures;
};

/// Hears a line where it speaks.
class Ear final : public LineListener
{
  public:
    void OnRead(const LineRead &read) override
    {
        uncertain = read.orderUncertain;
        Hear(read.bytes.toByteArray());
    }
    bool HasRoom() const override
    {
        const bool has = hasRoom;
        wasAsked = true;
        return has;
    }
    void OnGone(const QString &, const LineTime &) override { Hear("[gone]"); }
    void OnAway(const QString &, qint64 unsent, const LineTime &) override
    {
        Hear(unsent > 0 ? "[away, unsent]" : "[away]");
    }
    void OnBack(const LineTime &) override { Hear("[back]"); }

    QByteArray Heard()
    {
        const std::lock_guard guard(m_lock);
        return m_heard;
    }

    std::atomic<bool> hasRoom = true;
    mutable std::atomic<bool> wasAsked = false; ///< for room
    std::atomic<bool> uncertain = false;        ///< the order of the latest read

  private:
    void Hear(const QByteArray &what)
    {
        const std::lock_guard guard(m_lock);
        m_heard += what;
    }

    std::mutex m_lock;
    QByteArray m_heard;
};

/// A device that is plugged in behind a link, and a port that reopens it.
struct Adapter {
    Adapter()
    {
        Plug();
        world.devices.AssignForRun(1, link);
        port.SetReopens(true);
        port.Wire().Listen(&ear);
        Start();
    }

    void Start()
    {
        Station::Require(port.SetPortOpen(true));
        world.lines.Do([this] { port.Wire().BeginReading(); });
    }
    /// As communication does it.
    void Stop()
    {
        world.lines.Do([this] { port.Wire().EndReading(); });
        Station::Require(port.SetPortOpen(false));
    }
    void Plug(const QByteArray &said = {})
    {
        pty = std::make_unique<PtyPair>();
        pty->Write(said);
        QFile::remove(link);
        QFile::link(pty->DeviceName(), link);
    }
    bool Unplug()
    {
        pty.reset();
        return WaitStalled([this] { return port.Wire().Counts().away; });
    }
    bool Hears(const QByteArray &what)
    {
        return WaitStalled([&] { return ear.Heard() == what; });
    }

    QTemporaryDir folder;
    const QString link = folder.filePath("adapter");
    World world;
    Ear ear;
    std::unique_ptr<PtyPair> pty;
    SerialPort port{world.lines, world.hub, world.devices};
};

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

    void ADeviceThatComesBackIsOpenedAgain()
    {
        Adapter adapter;
        const uint before = QDir("/proc/self/fd").count();
        QByteArray heard;
        for (int round = 0; round < 20; ++round) {
            const PtyPair other; // so that it comes back under another name
            QVERIFY(adapter.Unplug());
            QCOMPARE(Cause(adapter.port.Output("x")),
                     "COM1 is away; nothing is sent until it is back");
            adapter.Plug();
            const QByteArray said = "said in round " + QByteArray::number(round);
            QVERIFY(adapter.pty->Write(said)); // at once, whether it is open or not
            heard += "[away][back]" + said;
            QVERIFY2(adapter.Hears(heard), adapter.ear.Heard().constData());
            QCOMPARE(adapter.port.Device(), adapter.pty->DeviceName());
            QVERIFY(!adapter.port.Output(said).Failed());
            QCOMPARE(adapter.pty->Read(said.size()), said);
        }
        QVERIFY(LineOf(*adapter.pty).outputBaud == 9600);
        QVERIFY(!adapter.port.Output(QByteArray(100 * Kibi, 'x')).Failed());
        QVERIFY(adapter.Unplug());
        QVERIFY(adapter.Hears(heard + "[away, unsent]"));
        adapter.Plug();
        QVERIFY(adapter.Hears(heard + "[away, unsent][back]"));
        QTRY_COMPARE(QDir("/proc/self/fd").count(), before);
    }

    void AStopEndsTheWaiting()
    {
        Adapter adapter;
        for (int round = 0; round < 20; ++round) {
            QVERIFY(adapter.Unplug());
            if (round % 2 == 0)
                adapter.Plug(); // it may be open by now, or being opened
            adapter.Stop();
            QVERIFY(!adapter.port.Wire().Counts().away);
            if (round % 2 != 0)
                adapter.Plug();
            const QByteArray heard = adapter.ear.Heard();
            adapter.Start();
            QVERIFY(adapter.pty->Write("hello"));
            QVERIFY2(adapter.Hears(heard + "hello"), adapter.ear.Heard().constData());
        }
    }

    /// Who is late says nothing that another line has not been able to say before.
    void WhatHadToWaitHasNoCertainOrder()
    {
        Adapter adapter;
        Ear beside;
        PtyPair pty;
        SerialLine other(adapter.world.lines);
        other.Listen(&beside);
        Station::Require(other.Open({2, pty.DeviceName(), pty.DeviceName(), {}}));

        adapter.ear.hasRoom = false;
        QVERIFY(adapter.pty->Write("a"));
        QVERIFY(WaitStalled([&] { return adapter.ear.wasAsked.load(); }));
        adapter.world.lines.Do([&] { other.BeginReading(); });
        QVERIFY(pty.Write("x")); // comes behind the "a", which has not been read yet
        QVERIFY(WaitStalled([&] { return beside.Heard() == "x"; }));
        QVERIFY(beside.uncertain);
        adapter.ear.hasRoom = true;
        adapter.world.lines.Do([&] { adapter.port.Wire().Resume(); });
        QVERIFY(adapter.Hears("a"));
        QVERIFY(adapter.ear.uncertain);
        // After a late pass what it could have read is uncertain, what comes later is not.
        const auto late = [&](const QByteArray &meanwhile) {
            adapter.world.lines.Do([&] {
                adapter.pty->Write(meanwhile);
                const QDeadlineTimer deadline(std::chrono::nanoseconds(2 * LineLoop::LongestPass));
                while (!deadline.hasExpired() || Readable(*adapter.pty) < meanwhile.size()) {
                }
            });
        };
        late("b");
        QVERIFY(adapter.Hears("ab"));
        QVERIFY(adapter.ear.uncertain);
        std::chrono::microseconds pause{0};
        QTRY_VERIFY([&] { // but for one that is sent before the loop waits again
            late("");
            const QDeadlineTimer deadline(pause += std::chrono::microseconds(50));
            while (!deadline.hasExpired()) {
            }
            const qsizetype before = adapter.ear.Heard().size();
            adapter.pty->Write("c");
            return WaitStalled([&] { return adapter.ear.Heard().size() > before; }) &&
                   !adapter.ear.uncertain;
        }());

        QVERIFY(adapter.Unplug());
        adapter.Plug("said before it is open");
        QVERIFY(WaitStalled(
            [&] { return adapter.ear.Heard().endsWith("[back]said before it is open"); }));
        QVERIFY(adapter.ear.uncertain);
        other.Close();
    }

    void WhatComesBeforeAReadMarksIt_data()
    {
        const Cases<int> row("reader"); // which of the two speaks first
        row("the first", 0);
        row("the second", 1);
    }

    /// The loop has seen one line speak; until it comes to read it, the other speaks, and then that
    /// one again.
    void WhatComesBeforeAReadMarksIt()
    {
        QFETCH(int, reader);
        LineLoop loop;
        std::array<PtyPair, 2> ptys;
        std::array<Ear, 2> ears;
        SerialLine lineA(loop), lineB(loop);
        for (const size_t i : {size_t(0), size_t(1)}) {
            SerialLine &line = i == 0 ? lineA : lineB;
            line.Listen(&ears[i]);
            Station::Require(line.Open({int(i), ptys[i].DeviceName(), ptys[i].DeviceName(), {}}));
        }
        const auto say = [&](size_t line, const QByteArray &what, qsizetype waiting) {
            ptys[line].Write(what);
            WaitStalled([&] { return Readable(ptys[line]) == waiting; });
        };
        const auto first = size_t(reader), second = 1 - first;
        loop.Do([&] {
            lineA.BeginReading();
            lineB.BeginReading();
            ptys[first].Write("a");
            loop.Post([&] { // is done between the wait and the reads
                say(second, "b", 1);
                say(first, "c", 2);
            });
        });
        QVERIFY(WaitStalled([&] { return ears[first].Heard() == "ac"; }));
        QVERIFY(ears[first].uncertain);
        QVERIFY(WaitStalled([&] { return ears[second].Heard() == "b"; }));
        QVERIFY(ears[second].uncertain);
    }

    void WhatWorkOfTheLinesHoldsGoesWithIt()
    {
        LineLoop loop;
        auto held = std::make_shared<int>(0);
        bool gone = false;
        loop.Do([&] {
            loop.Post([held] {});
            loop.Post([&, watch = std::weak_ptr(held)] { gone = watch.expired(); });
            held.reset();
        });
        loop.Do([] {});
        QVERIFY(gone);
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
