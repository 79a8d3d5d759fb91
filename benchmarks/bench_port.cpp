// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Limits.h"
#include "LiveProgram.h"
#include "SampleTraffic.h"
#include "support/PtyPair.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <thread>

namespace
{

constexpr qint64 Mebibyte = 1024 * 1024;

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

double ThreadCpuSeconds()
{
    timespec cpu = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &cpu);
    return double(cpu.tv_sec) + double(cpu.tv_nsec) * 1e-9;
}

/// What a run of Blast took.
struct Taken {
    double seconds = 0; ///< until the last byte was received
    double cpu = 0;     ///< seconds until all was shown and written, without the sender's share
    double growth = 0;  ///< of the memory, in bytes
    std::vector<double> passes;
    const char *fault = nullptr;
};

/// How a blast is sent, and what takes it.
struct BlastSetup {
    QString logName{};         ///< of a log in all four forms; empty for none
    QString recordFolder{};    ///< of the session's record; empty for none
    bool showsTraffic = false; ///< the record, in the window "Traffic"
    qint64 rate = 0; ///< bytes a second at most; 0 for as fast as a pseudo-terminal takes them
};

/// Every few milliseconds as much as is due at a rate, like a line of that speed.
class Pace
{
  public:
    explicit Pace(qint64 rate) : m_rate(rate) {}

    /// Waits until so many bytes are due.
    void WaitFor(qint64 bytes) const
    {
        if (m_rate > 0)
            std::this_thread::sleep_until(m_start +
                                          std::chrono::microseconds(bytes * 1'000'000 / m_rate));
    }

  private:
    qint64 m_rate;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

/// So many bytes, while the window is shown off-screen.
Taken RunBlast(qint64 size, const BlastSetup &setup)
{
    constexpr qint64 BytesOfAPacedWrite = 512;
    const QByteArray block = ShowableBytes(setup.rate > 0 ? BytesOfAPacedWrite : 64 * 1024);
    PtyPair line;
    LiveProgram program(line.DeviceName(), setup.logName, {}, setup.recordFolder);
    if (setup.showsTraffic)
        program.ShowTraffic();
    Taken taken;
    if (!program.communication.Running()) {
        taken.fault = "the port could not be opened";
        return taken;
    }
    program.RunUntil([&] { return program.passes.size() > 20; });
    const double memoryBefore = ResidentBytes();
    const double cpuBefore = CpuSeconds();
    double senderCpu = 0;
    quint64 sent = 0;
    program.passes.clear();
    QElapsedTimer timer;
    timer.start();
    std::thread sender([&] {
        const Pace pace(setup.rate);
        for (qint64 done = 0; done < size; done += block.size()) {
            pace.WaitFor(done);
            line.Write(block);
            sent = ChecksumLog::Add(sent, block);
        }
        senderCpu = ThreadCpuSeconds();
    });
    program.RunUntil([&] {
        taken.growth = std::max(taken.growth, ResidentBytes() - memoryBefore);
        return program.log.bytes >= size;
    });
    taken.seconds = double(timer.nsecsElapsed()) * 1e-9;
    sender.join();
    program.communication.ClosePorts();
    program.logFile.WaitUntilWritten();
    if (program.record)
        program.record->Keep();
    taken.cpu = CpuSeconds() - cpuBefore - senderCpu;
    taken.passes = program.passes;
    if (program.log.bytes != size || program.log.checksum != sent)
        taken.fault = "bytes were lost or changed";
    if (program.record && program.record->State().size < size)
        taken.fault = "bytes are missing in the record";
    if (!setup.logName.isEmpty() && !LogsAreWhole(setup.logName, block, size / block.size()))
        taken.fault = "bytes are missing in a log";
    return taken;
}

/// What any program needs to write as much: CPU seconds of a thread that writes text of the four
/// forms and does nothing else.
double PlainWriterCpu(const QString &folder, qint64 size)
{
    double cpu = 0;
    std::thread writer([&] {
        for (const Representation r : AllRepresentations) {
            QFile file(folder + QStringLiteral("/plain%1").arg(int(r)));
            if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
                return;
            const QByteArray block(64 * 1024, 'x');
            for (qint64 left = size * ViewWidth(r); left > 0; left -= block.size())
                file.write(block);
        }
        cpu = ThreadCpuSeconds();
    });
    writer.join();
    return cpu;
}

void BlastWithoutLogs(benchmark::State &state)
{
    constexpr qint64 Size = 64 * Mebibyte;
    for (auto _ : state) {
        const Taken taken = RunBlast(Size, {});
        if (taken.fault)
            state.SkipWithError(taken.fault);
        state.SetIterationTime(taken.seconds);
        state.counters["MB/s"] = double(Size) / taken.seconds * 1e-6;
        state.counters["CPU_s/MB"] = taken.cpu / (double(Size) * 1e-6);
        state.counters["pass_p50_ms"] = 1000 * Percentile(taken.passes, 0.5);
        state.counters["pass_p99_ms"] = 1000 * Percentile(taken.passes, 0.99);
        state.counters["growth_MiB"] = taken.growth / double(Mebibyte);
    }
}

/// The logs' share of the CPU time is what a run takes more than one without logs; by turns with
/// the thread that only writes. The median of the turns counts.
void BlastIntoFourLogs(benchmark::State &state)
{
    constexpr qint64 Size = 16 * Mebibyte;
    constexpr double Megabytes = double(Size) * 1e-6;
    for (auto _ : state) {
        std::vector<double> seconds, share, plain, passes;
        double growth = 0;
        for (int turn = 0; turn < 7; ++turn) {
            const Taken without = RunBlast(Size, {});
            // Virtual machines give free memory back, and fetching it is dear: both find it used.
            PlainWriterCpu(QTemporaryDir().path(), Size);
            const Taken with = RunBlast(Size, {.logName = QTemporaryDir().filePath("blast.txt")});
            plain.push_back(PlainWriterCpu(QTemporaryDir().path(), Size) / Megabytes);
            share.push_back((with.cpu - without.cpu) / Megabytes);
            seconds.push_back(with.seconds);
            passes.insert(passes.end(), with.passes.begin(), with.passes.end());
            growth = std::max(growth, with.growth);
            for (const char *fault : {with.fault, without.fault}) {
                if (fault)
                    state.SkipWithError(fault);
            }
        }
        state.SetIterationTime(Percentile(seconds, 0.5));
        Comparison(state, "plain writer")
            .Add("logs' CPU s/MB", Percentile(share, 0.5), Percentile(plain, 0.5), {2});
        state.counters["MB/s"] = Megabytes / Percentile(seconds, 0.5);
        state.counters["pass_p99_ms"] = 1000 * Percentile(passes, 0.99);
        state.counters["growth_MiB"] = growth / double(Mebibyte);
    }
}

/// By turns with one that has none; the median of the turns counts.
void BlastWithTheRecord(benchmark::State &state)
{
    constexpr qint64 Size = 32 * Mebibyte;
    constexpr double Megabytes = double(Size) * 1e-6;
    for (auto _ : state) {
        std::vector<double> with, without, seconds, passes;
        for (int turn = 0; turn < 11; ++turn) {
            const Taken bare = RunBlast(Size, {});
            const QTemporaryDir folder;
            const Taken recorded = RunBlast(Size, {.recordFolder = folder.filePath("record")});
            without.push_back(bare.cpu / Megabytes);
            with.push_back(recorded.cpu / Megabytes);
            seconds.push_back(recorded.seconds);
            passes.insert(passes.end(), recorded.passes.begin(), recorded.passes.end());
            for (const char *fault : {bare.fault, recorded.fault}) {
                if (fault)
                    state.SkipWithError(fault);
            }
        }
        state.SetIterationTime(Percentile(seconds, 0.5));
        Comparison(state, "without")
            .Add("CPU s/MB", Percentile(with, 0.5), Percentile(without, 0.5), {1.2});
        state.counters["MB/s"] = Megabytes / Percentile(seconds, 0.5);
        state.counters["pass_p99_ms"] = 1000 * Percentile(passes, 0.99);
    }
}

/// Passes of the window, while the traffic window follows the end; beside those of the main window
/// alone.
void WithTheTrafficWindow(benchmark::State &state, qint64 rate)
{
    constexpr double MostMilliseconds = 30;
    const qint64 size = rate > 0 ? 4 * rate / 512 * 512 : 64 * Mebibyte;
    for (auto _ : state) {
        std::vector<double> with, without, seconds;
        for (int turn = 0; turn < 5; ++turn) {
            const Taken bare = RunBlast(size, {.rate = rate});
            const QTemporaryDir folder;
            const Taken shown = RunBlast(
                size,
                {.recordFolder = folder.filePath("record"), .showsTraffic = true, .rate = rate});
            without.insert(without.end(), bare.passes.begin(), bare.passes.end());
            with.insert(with.end(), shown.passes.begin(), shown.passes.end());
            seconds.push_back(shown.seconds);
            for (const char *fault : {bare.fault, shown.fault}) {
                if (fault)
                    state.SkipWithError(fault);
            }
        }
        state.SetIterationTime(Percentile(seconds, 0.5));
        Comparison(state, "without")
            .AddWithin("pass p99 ms", 1000 * Percentile(with, 0.99),
                       1000 * Percentile(without, 0.99), MostMilliseconds);
        state.counters["pass_p50_ms"] = 1000 * Percentile(with, 0.5);
        state.counters["pass_max_ms"] = 1000 * Percentile(with, 1.0);
    }
}

BENCHMARK_CAPTURE(WithTheTrafficWindow, at 921600 baud, 92160)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(WithTheTrafficWindow, blast, 0)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kSecond);
BENCHMARK(BlastWithoutLogs)->UseManualTime()->Iterations(1)->Unit(benchmark::kSecond);
BENCHMARK(BlastWithTheRecord)->UseManualTime()->Iterations(1)->Unit(benchmark::kSecond);
BENCHMARK(BlastIntoFourLogs)->UseManualTime()->Iterations(1)->Unit(benchmark::kSecond);

} // namespace
