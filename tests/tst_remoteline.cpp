// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineJudge.h"
#include "LineLoop.h"
#include "RemoteLine.h"
#include "SerialDevice.h"
#include "SerialLine.h"
#include "TrafficStream.h"
#include "support/Cases.h"
#include "support/FixedClock.h"
#include "support/PtyPair.h"
#include "support/WatchSequence.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <future>
#include <mutex>
#include <vector>

namespace
{

constexpr int Kibi = 1024;
const QString Peer = QStringLiteral("bench.lab:4001");

QByteArray Counting(qsizetype count)
{
    QByteArray bytes(count, '\0');
    for (qsizetype i = 0; i < count; ++i)
        bytes[i] = char(i % 251);
    return bytes;
}

/// Both ends of a connection over the loopback; the line takes Socket(), the test plays the peer.
class TcpPair
{
  public:
    explicit TcpPair(int bufferSize = 64 * Kibi)
    {
        const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        m_peer = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        for (const int end : {listener, m_peer}) // else the system holds megabytes
            for (const int buffer : {SO_SNDBUF, SO_RCVBUF})
                ::setsockopt(end, SOL_SOCKET, buffer, &bufferSize, sizeof bufferSize);
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *const generic = reinterpret_cast<sockaddr *>(&address);
        if (::bind(listener, generic, size) != 0 || ::listen(listener, 1) != 0 ||
            ::getsockname(listener, generic, &size) != 0 || ::connect(m_peer, generic, size) != 0)
            qFatal("no connection");
        m_socket = ::accept(listener, nullptr, nullptr);
        ::close(listener);
    }
    ~TcpPair() { Close(false); }
    Q_DISABLE_COPY_MOVE(TcpPair)

    int Socket() const { return m_socket; }

    int Option(int level, int name) const
    {
        int value = 0;
        socklen_t size = sizeof value;
        ::getsockopt(m_socket, level, name, &value, &size);
        return value;
    }

    bool Write(const QByteArray &bytes) const
    {
        return ::send(m_peer, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL) ==
               bytes.size();
    }

    /// So many bytes, or what came until the connection ended.
    QByteArray Read(qsizetype count) const
    {
        QByteArray bytes(count, '\0');
        const ssize_t read = ::recv(m_peer, bytes.data(), size_t(count), MSG_WAITALL);
        return bytes.left(std::max<ssize_t>(read, 0));
    }

    /// In good order, or as a machine that is switched off and on again.
    void Close(bool reset)
    {
        const linger drop = {1, 0};
        if (reset)
            ::setsockopt(m_peer, SOL_SOCKET, SO_LINGER, &drop, sizeof drop);
        if (const int open = std::exchange(m_peer, -1); open >= 0)
            ::close(open);
    }

  private:
    int m_peer = -1;
    int m_socket = -1;
};

/// What came out of the stream, to be asked for by the test's thread.
class Record final : public TrafficConsumer
{
  public:
    void Take(const TrafficEvent &event) override
    {
        const std::lock_guard guard(m_lock);
        m_events.push_back(event);
    }

    std::vector<TrafficEvent> Events() const
    {
        const std::lock_guard guard(m_lock);
        return m_events;
    }

    /// Cheap: who keeps the lines waiting makes the order uncertain.
    bool LastIsUncertain() const
    {
        const std::lock_guard guard(m_lock);
        return m_events.back().orderUncertain;
    }

    QByteArray Received(int channel) const
    {
        QByteArray bytes;
        for (const TrafficEvent &event : Events())
            if (event.kind == TrafficEvent::Kind::Received && event.channel == channel)
                bytes += event.bytes + event.comment;
        return bytes;
    }

  private:
    mutable std::mutex m_lock;
    std::vector<TrafficEvent> m_events;
};

/// A device as channel 1 and a connection as channel 2, judged as the program does it.
struct Desk {
    FixedClock clock;
    LineLoop loop;
    MdSequenceEdition tables;
    WatchBoard board;
    TrafficStream stream{clock};
    Record record;
    std::atomic<bool> hasRoom = true;
    PtyPair pty;
    TcpPair tcp;
    SerialLine local{loop};
    RemoteLine remote{loop};
    LineJudge judge{board, stream, &local, {[](auto...) {}, [](auto...) {}, [](auto...) {}}};

    explicit Desk(bool answers = false)
    {
        stream.Feed(record);
        judge.HasRoom = [this] { return hasRoom.load(); };
        local.Listen(&judge.Ear(0));
        remote.Listen(&judge.Ear(1));
        WatchSequence(tables, "ask", "asked", "YES");
        board.Publish(std::make_shared<const WatchSnapshot>(tables));
        const QString device = SerialDevice::CanonicalName(pty.DeviceName());
        RemoteLink link = {std::make_unique<RemoteStream>(Descriptor(tcp.Socket()), Peer), nullptr};
        if (local.Open({1, device, device, {}}).Failed() || link.stream->Prepare(10).Failed())
            qFatal("a line cannot be opened");
        remote.Open({.comNumber = 2}, std::move(link));
        loop.Do([&] {
            judge.Begin({true, answers});
            local.BeginReading();
            remote.BeginReading();
        });
    }
    ~Desk()
    {
        loop.Do([this] {
            for (Line *line : {static_cast<Line *>(&local), static_cast<Line *>(&remote)}) {
                line->EndReading();
                line->Listen(nullptr);
            }
        });
    }
    Q_DISABLE_COPY_MOVE(Desk)

    Result Send(const QByteArray &bytes)
    {
        Result written;
        loop.Do([&] { written = remote.Write(bytes); });
        return written;
    }
};

} // namespace

class tst_remoteline : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ARemoteLineIsHeardBesideALocalOne_data()
    {
        const Cases<bool, QByteArray> row("answers", "answer");
        row("listening", false, "");
        row("answering on channel 1", true, "YES");
    }
    void ARemoteLineIsHeardBesideALocalOne()
    {
        QFETCH(QByteArray, answer);
        Desk desk(!answer.isEmpty());
        const QByteArray all = Counting(300 * Kibi);
        QVERIFY(desk.pty.Write("a") && desk.tcp.Write("ask") && desk.tcp.Write(all));
        QTRY_COMPARE(desk.record.Received(1), "ask asked " + all);
        QTRY_COMPARE(desk.record.Received(0), "a");
        QCOMPARE(desk.pty.Read(answer.size()), answer);
        for (const TrafficEvent &event : desk.record.Events())
            QVERIFY(event.orderUncertain || event.kind != TrafficEvent::Kind::Received);
        QVERIFY(!desk.Send("out").Failed());
        QCOMPARE(desk.tcp.Read(3), "out");
        QCOMPARE(desk.remote.Counts().receivedBytes, all.size() + 3);
        QVERIFY(desk.tcp.Option(IPPROTO_TCP, TCP_NODELAY) != 0);
        QVERIFY(desk.tcp.Option(SOL_SOCKET, SO_KEEPALIVE) != 0);
        QCOMPARE(desk.tcp.Option(IPPROTO_TCP, TCP_USER_TIMEOUT), 10'000);
        QCOMPARE(desk.tcp.Option(IPPROTO_TCP, TCP_KEEPIDLE) +
                     desk.tcp.Option(IPPROTO_TCP, TCP_KEEPCNT) *
                         desk.tcp.Option(IPPROTO_TCP, TCP_KEEPINTVL),
                 10);

        desk.remote.Close();
        const auto known = [&] { // but for a pass that was late
            desk.pty.Write("b");
            return !desk.record.LastIsUncertain();
        };
        QTRY_VERIFY(known());
    }

    void AFullLogHoldsTheSenderBack()
    {
        Desk desk;
        desk.hasRoom = false;
        const QByteArray flood = Counting(4 * Kibi * Kibi);
        auto sender = std::async(std::launch::async, [&] { return desk.tcp.Write(flood); });
        QCOMPARE(sender.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
        QVERIFY(desk.record.Events().empty());
        desk.hasRoom = true;
        desk.loop.Post([&] { desk.remote.Resume(); });
        QVERIFY(sender.get());
        QTRY_VERIFY(desk.record.Received(1) == flood);
    }

    void AnEndIsToldOnceBehindTheLastWords_data()
    {
        const Cases<bool, bool, QString> row("reset", "held", "cause");
        row("closed", false, false, "bench.lab:4001 closed the connection");
        row("closed while the log is full", false, true, "bench.lab:4001 closed the connection");
        const QString reset = "The connection to bench.lab:4001 was lost: Connection reset by peer";
        row("reset", true, false, reset);
        row("reset while the log is full", true, true, reset);
    }
    void AnEndIsToldOnceBehindTheLastWords()
    {
        QFETCH(bool, reset);
        QFETCH(bool, held);
        const uint before = QDir("/proc/self/fd").count();
        {
            Desk desk;
            desk.hasRoom = !held;
            QVERIFY(desk.tcp.Write("last words"));
            QTRY_COMPARE(desk.record.Received(1), held ? "" : "last words");
            desk.tcp.Close(reset);
            QVERIFY(!desk.Send("into the void").Failed());
            desk.hasRoom = true;
            desk.loop.Do([&] { desk.remote.Resume(); });
            QTRY_VERIFY(desk.record.Events().size() == 2);
            QCOMPARE(desk.record.Received(1), "last words");
            QCOMPARE(desk.record.Events().back().kind, TrafficEvent::Kind::Gone);
            QTEST(desk.record.Events().back().cause, "cause");
            QVERIFY(!desk.Send("more").Failed());
            QCOMPARE(desk.remote.Close(), 0);
            QVERIFY(desk.pty.Write("a"));
            QTRY_COMPARE(desk.record.Received(0), "a");
        }
        QCOMPARE(QDir("/proc/self/fd").count(), before);
    }

    void APeerThatNeverReadsHoldsNothingUp()
    {
        Desk desk;
        const QByteArray big = Counting(8 * Kibi * Kibi);
        QVERIFY(!desk.Send(big).Failed()); // nothing else waits
        const Result refused = desk.Send(QByteArray(Kibi, 'x'));
        QVERIFY(refused.Failed() && refused.Cause().startsWith("COM2 does not send: "));
        QElapsedTimer closing;
        closing.start();
        const qint64 lost = desk.remote.Close();
        QVERIFY(closing.elapsed() < 2000);
        const QByteArray arrived = desk.tcp.Read(big.size());
        QVERIFY(lost > 0 && big.startsWith(arrived) && arrived.size() <= big.size() - lost);
        QVERIFY(desk.Send("late").Cause() == "COM2 is not open");
    }
};

QTEST_GUILESS_MAIN(tst_remoteline)

#include "tst_remoteline.moc"
