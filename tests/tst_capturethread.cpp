// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureThread.h"
#include "CaptureTraffic.h"
#include "TrafficStream.h"
#include "support/FixedClock.h"
#include "support/ScriptedDisk.h"

#include <QTest>

#include <atomic>
#include <semaphore>

using namespace std::chrono_literals;
using Kind = TrafficEvent::Kind;

namespace
{

/// What a sink was given, and how it behaves.
struct Disk {
    std::atomic<bool> full = false;
    std::atomic<bool> hangs = false;
    std::binary_semaphore goesOn{0};
    std::binary_semaphore hung{0};
    QByteArray bytes;
    bool finished = false;
};

class DiskSink final : public CaptureSink
{
  public:
    explicit DiskSink(std::shared_ptr<Disk> disk) : m_disk(std::move(disk)) {}

    Result BeginSection(QByteArrayView head) override { return Write(head); }
    Result Write(QByteArrayView packets) override
    {
        if (m_disk->hangs.exchange(false)) {
            m_disk->hung.release();
            m_disk->goesOn.acquire();
        }
        if (m_disk->full)
            return Failure{QStringLiteral("full")};
        m_disk->bytes.append(packets);
        return {};
    }
    void Finish() override { m_disk->finished = true; }

  private:
    std::shared_ptr<Disk> m_disk;
};

TrafficEvent Received(qint64 time, const QByteArray &bytes, int channel = 0)
{
    TrafficEvent event;
    event.channel = channel;
    event.time = {time, time};
    event.bytes = bytes;
    return event;
}

/// The events of a capture: bytes, or what else happened with its count.
QStringList Told(const QByteArray &capture)
{
    const ScriptedDisk::Reader input(capture);
    CaptureReader reader(input);
    if (reader.Begin().Failed())
        return {QStringLiteral("no capture")};
    CaptureTraffic traffic(reader);
    QStringList told;
    for (TrafficEvent event; traffic.Next(event) == CaptureReader::Step::Packet;) {
        QString text = QString::number(event.channel) + u' ';
        if (event.kind == Kind::Received)
            text += QString::fromLatin1(event.bytes.left(8));
        else
            text += QStringLiteral("kind %1 count %2").arg(int(event.kind)).arg(event.count);
        told << text;
    }
    return told;
}

QString Lost(int channel, qint64 count)
{
    return QStringLiteral("%1 kind %2 count %3").arg(channel).arg(int(Kind::Lost)).arg(count);
}

} // namespace

/// The way from the lines to a capture that is being written.
class tst_capturethread : public QObject
{
    Q_OBJECT

    const TrafficSession TwoPorts{{{"COM1", {}, 9600}, {"COM2", {}, 9600}}};

  private Q_SLOTS:
    void SaysWhatADiskDidNotTake()
    {
        const auto disk = std::make_shared<Disk>();
        {
            CaptureThread capture(std::make_unique<DiskSink>(disk), "test");
            capture.Take(Received(1, "before"));
            disk->full = true; // the head is not taken either
            capture.Begin(TwoPorts);
            capture.Take(Received(2, "lost"));
            QVERIFY(capture.WaitUntilWritten(10s));
            disk->full = false;
            capture.Take(Received(3, "one"));
            QVERIFY(capture.WaitUntilWritten(10s));
            disk->full = true;
            capture.Take(Received(4, "lost, too"));
            QVERIFY(capture.WaitUntilWritten(10s));
            capture.Take(Received(5, "of the other", 1));
            QVERIFY(capture.WaitUntilWritten(10s));
            disk->full = false;
            capture.End();
            capture.Take(Received(6, "behind"));
            capture.Begin({{{"COM1", {}, 9600}}, true});
            capture.Take(Received(7, "replayed"));
            capture.Begin({{{"COM1", {}, 9600}}});
            capture.Take(Received(8, "again"));
            QVERIFY(capture.WaitUntilWritten(10s));
            disk->full = true;
            capture.Take(Received(9, "untold"));
            QVERIFY(capture.WaitUntilWritten(10s));
            capture.End(); // the disk takes no word of it either
            capture.Begin(TwoPorts);
            capture.Take(Received(10, "and more", 1));
            QVERIFY(capture.WaitUntilWritten(10s));
            capture.Begin(TwoPorts);
            QVERIFY(capture.WaitUntilWritten(10s));
            disk->full = false;
            capture.Take(Received(11, "told"));
        }
        QVERIFY(disk->finished);
        QCOMPARE(Told(disk->bytes), QStringList({Lost(0, 4), "0 one", Lost(0, 9), Lost(1, 12),
                                                 "0 again", Lost(0, 6), Lost(1, 8), "0 told"}));
    }

    /// What does not fit is counted, and half of it must be gone before there is room again.
    void ADiskThatHangsHoldsNobody()
    {
        const auto disk = std::make_shared<Disk>();
        CaptureThread capture(std::make_unique<DiskSink>(disk), "test");
        const QByteArray chunk(TrafficEvent::MostBytesOfAChunk, 'x');
        const qsizetype many = 2 * CaptureThread::MostBytes / chunk.size();
        disk->hangs = true;
        capture.Begin(TwoPorts);
        disk->hung.acquire();
        for (qsizetype sent = 0; sent < many; ++sent)
            capture.Take(Received(sent, chunk, 1));
        QVERIFY(!capture.WaitUntilWritten(0ms));
        disk->goesOn.release();
        QVERIFY(capture.WaitUntilWritten(30s));
        capture.End();
        QVERIFY(capture.WaitUntilWritten(30s));

        const QStringList told = Told(disk->bytes);
        const qsizetype kept = told.size() - 1;
        QCOMPARE(told.last(), Lost(1, (many - kept) * chunk.size()));
        QVERIFY(kept > many / 4 && kept < many / 2);
    }

    void OneSessionAfterTheOtherIsHeard()
    {
        const auto disk = std::make_shared<Disk>();
        CaptureThread capture(std::make_unique<DiskSink>(disk), "test");
        for (int session = 0; session < 20; ++session) {
            capture.Begin(TwoPorts);
            capture.Take(Received(session, "x"));
            QVERIFY(capture.WaitUntilWritten(10s));
            capture.End(); // with nothing left to write
        }
        capture.Close();
        QVERIFY(capture.WaitUntilWritten(10s));
    }

    void AClockThatIsSetIsAnEntry_data()
    {
        QTest::addColumn<qint64>("wall");
        QTest::addColumn<QList<qint64>>("steps");
        const qint64 second = 1'000'000'000;
        QTest::newRow("steered") << second << QList<qint64>();
        QTest::newRow("forward") << 3600 * second << QList<qint64>{3600 * second};
        QTest::newRow("back") << -2 * second << QList<qint64>{-2 * second};
    }
    void AClockThatIsSetIsAnEntry()
    {
        QFETCH(const qint64, wall);
        QFETCH(const QList<qint64>, steps);
        struct Listener : TrafficConsumer {
            QList<qint64> steps;
            int events = 0;
            void Take(const TrafficEvent &event) override
            {
                ++events;
                if (event.kind == Kind::ClockSet)
                    steps << event.count;
            }
        } listener;
        const FixedClock clock;
        TrafficStream stream(clock);
        stream.Feed(listener);
        stream.Begin(TwoPorts, {});
        TrafficEvent event = Received(5, "x");
        stream.Append(event);
        event.time.wall += wall;
        stream.Append(event);
        event.time.monotonic += 3600 * qint64(1'000'000'000); // the machine slept
        event.time.wall += 3600 * qint64(1'000'000'000);
        stream.Append(event);
        QCOMPARE(listener.steps, steps);
        QCOMPARE(listener.events, 3 + steps.size());
    }
};

QTEST_GUILESS_MAIN(tst_capturethread)
#include "tst_capturethread.moc"
