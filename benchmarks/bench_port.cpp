// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LiveProgram.h"
#include "SampleTraffic.h"
#include "support/PtyPair.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <ctime>
#include <memory>
#include <thread>

namespace
{

constexpr qint64 Mebibyte = 1024 * 1024;
constexpr int Requests = 3000;
const QByteArray Request = QByteArrayLiteral("MEAS?\r\n\x02");
const QByteArray Answer = QByteArrayLiteral("21.4");

/// Resident memory now, in bytes.
double ResidentBytes()
{
    QFile status(QStringLiteral("/proc/self/statm"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    return status.readAll().split(' ').value(1).toDouble() * double(::sysconf(_SC_PAGESIZE));
}

double CpuSeconds()
{
    return double(std::clock()) / CLOCKS_PER_SEC;
}

/// Bytes that the ASCII view shows as they are.
QByteArray ShowableBytes(qsizetype count)
{
    SampleTraffic::Random random(3);
    return SampleTraffic::RandomBytes(random, count).replace('\0', 'x');
}

/// Whether the file holds the text so many times and nothing else.
bool HoldsRepeated(const QString &path, const QByteArray &text, qint64 times)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() != text.size() * times)
        return false;
    for (qint64 i = 0; i < times; ++i)
        if (file.read(text.size()) != text)
            return false;
    return true;
}

bool LogsAreWhole(const QString &logName, const QByteArray &block, qint64 times)
{
    return std::all_of(AllRepresentations.begin(), AllRepresentations.end(), [&](Representation r) {
        return HoldsRepeated(LogNames::Of(logName).PathOf(r), ViewText(r, block), times);
    });
}

/// So many MiB as fast as a pseudo-terminal takes them, while the window is shown off-screen. The
/// sender's share of the processor time is measured on its own and left out.
void Blast(benchmark::State &state, int mebibytes, bool logged)
{
    const qint64 size = mebibytes * Mebibyte;
    const QByteArray block = ShowableBytes(64 * 1024);
    const QTemporaryDir folder;
    const QString logName = logged ? folder.filePath("blast.txt") : QString();
    for (auto _ : state) {
        PtyPair line;
        LiveProgram program(line.DeviceName(), logName);
        program.RunUntil([&] { return program.passes.size() > 20; });
        const double memoryBefore = ResidentBytes();
        const double cpuBefore = CpuSeconds();
        double senderCpu = 0;
        quint64 sent = 0;
        program.passes.clear();
        QElapsedTimer timer;
        timer.start();
        std::thread sender([&] {
            for (qint64 done = 0; done < size; done += block.size()) {
                line.Write(block);
                sent = ChecksumLog::Add(sent, block);
            }
            timespec cpu = {};
            clock_gettime(CLOCK_THREAD_CPUTIME_ID, &cpu);
            senderCpu = double(cpu.tv_sec) + double(cpu.tv_nsec) * 1e-9;
        });
        double memoryMost = memoryBefore;
        program.RunUntil([&] {
            memoryMost = std::max(memoryMost, ResidentBytes());
            return program.log.bytes >= size;
        });
        const double seconds = double(timer.nsecsElapsed()) * 1e-9;
        sender.join();
        program.communication.ClosePorts();
        program.logFile.WaitUntilWritten();
        if (logged && !LogsAreWhole(logName, block, size / block.size()))
            state.SkipWithError("bytes are missing in a log");
        if (program.log.bytes != size || program.log.checksum != sent)
            state.SkipWithError("bytes were lost or changed");
        state.SetIterationTime(seconds);
        state.counters["MB/s"] = double(size) / seconds * 1e-6;
        state.counters["CPU_s/MB"] = (CpuSeconds() - cpuBefore - senderCpu) / (double(size) * 1e-6);
        state.counters["pass_p99_ms"] = 1000 * Percentile(program.passes, 0.99);
        state.counters["growth_MiB"] = (memoryMost - memoryBefore) / double(Mebibyte);
    }
}

void NoteTimes(benchmark::State &state, const std::vector<double> &times, const std::string &who)
{
    state.counters[who + "p50_ms"] = 1000 * Percentile(times, 0.5);
    state.counters[who + "p99_ms"] = 1000 * Percentile(times, 0.99);
    state.counters[who + "max_ms"] = 1000 * Percentile(times, 1.0);
}

/// Asks and measures to the first byte of the answer. Between the requests comes other traffic,
/// in bytes a second, which no sequence matches.
std::vector<double> Ask(PtyPair &line, int noiseRate)
{
    std::vector<double> times;
    const QByteArray noise(noiseRate / 500, 'n'); // what comes in 2 ms
    SampleTraffic::Random random(4);
    while (times.size() < Requests) {
        if (noiseRate > 0) {
            line.Write(noise);
            std::this_thread::sleep_for(std::chrono::microseconds(1000 + random() % 2000));
        }
        line.Write(Request);
        QElapsedTimer timer;
        timer.start();
        if (line.Read(1, 5000).isEmpty())
            return {};
        times.push_back(double(timer.nsecsElapsed()) * 1e-9);
        line.Read(Answer.size() - 1, 5000);
    }
    return times;
}

/// What any program could reach: a thread that waits for the request and writes the answer.
std::vector<double> AskPlainEcho()
{
    PtyPair line;
    std::atomic<bool> stop = false;
    std::thread echo([&] {
        QByteArray heard;
        pollfd device = {line.Device(), POLLIN, 0};
        std::array<char, 512> part{};
        while (!stop) {
            if (::poll(&device, 1, 50) <= 0)
                continue;
            heard.append(part.data(),
                         std::max<ssize_t>(0, ::read(line.Device(), part.data(), part.size())));
            if (!heard.contains(Request))
                continue;
            heard.clear();
            [[maybe_unused]] const auto written =
                ::write(line.Device(), Answer.constData(), size_t(Answer.size()));
        }
    });
    const std::vector<double> times = Ask(line, 0);
    stop = true;
    echo.join();
    return times;
}

/// An automatic answer, from the last byte of the request to the first byte of the answer, next
/// to the plain echo in the same run; idle, or under 50 kB/s of other traffic.
void AutomaticAnswer(benchmark::State &state, int noiseRate)
{
    for (auto _ : state) {
        PtyPair line;
        LiveProgram program(line.DeviceName());
        program.tables.AddSend({"answer", Answer, {}});
        program.tables.AddReceive({.Sequence = Request, .Answer = 1});
        program.tables.RefreshAnswerNames();

        std::vector<double> times;
        std::atomic<bool> finished = false;
        std::thread asker([&] {
            times = Ask(line, noiseRate);
            finished = true;
        });
        program.RunUntil([&] { return finished.load(); });
        asker.join();
        const std::vector<double> plain = AskPlainEcho();
        if (times.size() < Requests || plain.size() < Requests)
            state.SkipWithError("a request stayed unanswered");
        state.SetIterationTime(Percentile(times, 0.5));
        NoteTimes(state, times, "");
        NoteTimes(state, plain, "echo_");
        state.counters["pass_max_ms"] = 1000 * Percentile(program.passes, 1.0);
    }
}

BENCHMARK_CAPTURE(Blast, without logs, 64, false)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(Blast, into four logs, 16, true)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(AutomaticAnswer, idle, 0)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(AutomaticAnswer, under 50 kB a second, 50000)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

} // namespace
