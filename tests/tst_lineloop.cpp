// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialLine.h"
#include "support/Cases.h"
#include "support/SerialStation.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <atomic>
#include <memory>
#include <mutex>

namespace
{

/// The bytes that wait to be read at the device's end.
qsizetype Readable(const PtyPair &pty)
{
    int count = 0;
    return ::ioctl(pty.Device(), FIONREAD, &count) == 0 ? count : 0;
}

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

/// What the loop over all lines tells of their order, and of lines that go and come back.
class tst_lineloop : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
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
        QVERIFY(!adapter.port.Output(QByteArray(100 * 1024, 'x')).Failed());
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
};

QTEST_GUILESS_MAIN(tst_lineloop)
#include "tst_lineloop.moc"
