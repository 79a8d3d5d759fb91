// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "support/ProgramBench.h"
#include "support/PtyPair.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <random>
#include <thread>

namespace
{

/// Joins two lines: what comes from one goes to the other and, copied, to a third, where somebody
/// listens. It works in a thread of its own from Start on.
class Relay
{
  public:
    enum Side { Sender, Receiver };

    PtyPair lines[2];
    PtyPair copies[2];
    std::atomic<qint64> counts[2] = {0, 0}; ///< bytes from each side
    QByteArray dumps[2];                    ///< those bytes, to be read after Stop
    std::atomic<bool> senderEnded = false;  ///< set from outside
    std::atomic<bool> stop = false;         ///< likewise

    ~Relay() { Stop(); }
    void Start() { m_thread = std::thread(&Relay::Run, this); }
    void Stop()
    {
        stop = true;
        if (m_thread.joinable())
            m_thread.join();
    }

  private:
    static constexpr int QuietMilliseconds = 500;

    void Run()
    {
        QElapsedTimer quiet;
        quiet.start();
        bool ended = false;
        while (!stop) {
            for (const Side side : {Sender, Receiver}) {
                const QByteArray bytes = lines[side].Read(512, 2);
                if (!bytes.isEmpty())
                    quiet.start();
                Pass(side, bytes);
            }
            // Sometimes the sender ends before its last two bytes are out.
            if (senderEnded && !ended && quiet.hasExpired(QuietMilliseconds)) {
                ended = true;
                if (!dumps[Sender].endsWith("OO"))
                    Pass(Sender, "OO");
            }
        }
    }
    void Pass(Side side, const QByteArray &bytes)
    {
        copies[side].Write(bytes);
        lines[1 - side].Write(bytes);
        dumps[side] += bytes;
        counts[side] += bytes.size();
    }

    std::thread m_thread;
};

/// Starts a program of somebody else, which speaks on the device end of the line.
void StartOn(QProcess &process, const PtyPair &line, const QString &command)
{
    process.setStandardInputFile(line.DeviceName());
    process.setStandardOutputFile(line.DeviceName());
    process.startCommand(command);
}

bool Succeeded(const QProcess &process)
{
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

QByteArray BytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray Numbers(const QByteArray &text, int base)
{
    QByteArray bytes;
    for (const QByteArray &item : text.simplified().split(' '))
        bytes += char(item.toInt(nullptr, base));
    return bytes;
}

/// The bytes of both directions from the text of a log with a stamped line for each change of
/// direction, of which the first is given.
std::array<QByteArray, 2> DirectionsOf(const QByteArray &log, int first, int base = 16)
{
    const QByteArray stamp = "5/11/26 07:13:49  - ";
    std::array<QByteArray, 2> directions;
    int direction = first;
    for (const QByteArray &line : log.split('\n')) {
        if (!line.startsWith(stamp))
            continue;
        const QByteArray text = line.sliced(stamp.size());
        directions[size_t(direction)] +=
            base == 16 ? QByteArray::fromHex(text) : Numbers(text, base);
        direction = 1 - direction;
    }
    return directions;
}

} // namespace

/// A file goes from one program to another over the lines while Serimonde listens to both.
class tst_transfer : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void TheLogsHoldBothDirections()
    {
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir("received"));
        QByteArray content(200000, Qt::Uninitialized);
        std::mt19937 random(20261105);
        for (char &byte : content)
            byte = char(random());
        QFile file(folder.filePath("data.bin"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();

        Relay relay;
        QProcess sz;
        QProcess rz;
        sz.setWorkingDirectory(folder.path());
        rz.setWorkingDirectory(folder.filePath("received"));
        ProgramBench bench;
        for (const char *key : {"LogFile/ASCII", "LogFile/HEX", "LogFile/Decimal", "LogFile/Binary",
                                "Stamp/Date", "Stamp/Time"})
            bench.store.texts[key] = "True";
        bench.AssignPort(1, relay.copies[Relay::Sender].DeviceName());
        bench.AssignPort(2, relay.copies[Relay::Receiver].DeviceName());
        bench.line.mode = CommMode::MonitorReceiveOnly;
        bench.line.start = true;
        bench.line.log = folder.filePath("heard.txt");
        const auto startReceiver = [&] {
            relay.Start();
            StartOn(rz, relay.lines[Relay::Receiver], "rz -b -q -y");
        };
        const auto startSender = [&] {
            StartOn(sz, relay.lines[Relay::Sender], "sz -b -q data.bin");
        };
        const auto transferred = [&] {
            relay.senderEnded = sz.state() == QProcess::NotRunning;
            return relay.senderEnded && rz.state() == QProcess::NotRunning;
        };
        const auto heard = [&] {
            return DirectionsOf(BytesOf(folder.filePath("heard_hex.txt")), Relay::Receiver);
        };
        const auto listened = [&] {
            return heard()[0].size() + heard()[1].size() >= relay.counts[0] + relay.counts[1];
        };
        const int status =
            bench.Run({{[] {}, [&] { return bench.Running(); }},
                       {startReceiver, [&] { return relay.counts[Relay::Receiver] > 0; }},
                       {startSender, transferred},
                       {[] {}, listened}});
        relay.Stop();
        QVERIFY(!bench.stuck);
        QVERIFY(Succeeded(sz) && Succeeded(rz));
        QCOMPARE(status, 0);
        QVERIFY(bench.prompts.shown.isEmpty() && bench.prompts.notices.isEmpty());
        QVERIFY(BytesOf(folder.filePath("received/data.bin")) == content);

        for (const Relay::Side side : {Relay::Sender, Relay::Receiver}) {
            QCOMPARE(heard()[side].size(), relay.counts[side]);
            QVERIFY(heard()[side] == relay.dumps[side]);
        }
        QVERIFY(relay.counts[Relay::Sender] > content.size());
        QVERIFY(QFileInfo::exists(folder.filePath("heard_asc.txt")));
        const auto inOther = [&](const char *name, int base) {
            return DirectionsOf(BytesOf(folder.filePath(name)), Relay::Receiver, base);
        };
        QVERIFY(inOther("heard_dec.txt", 10) == heard() && inOther("heard_bin.txt", 2) == heard());
    }
};

QTEST_MAIN(tst_transfer)
#include "tst_transfer.moc"
