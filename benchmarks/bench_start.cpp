// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Limits.h"
#include "LiveProgram.h"

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <vector>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

namespace
{

struct Start {
    double seconds = 0;  ///< from exec to the first window, painted; 0 if there was none
    double cpu = 0;      ///< seconds of all threads until then
    double resident = 0; ///< MiB, the most that the run had
};

double CpuSecondsOf(pid_t process)
{
    clockid_t clock = {};
    timespec cpu = {};
    if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &cpu) != 0)
        return 0;
    return double(cpu.tv_sec) + double(cpu.tv_nsec) * 1e-9;
}

/// The program is ended as soon as its window has been seen.
Start StartProgram(const char *program)
{
    std::array<int, 2> seen{};
    if (::pipe2(seen.data(), O_CLOEXEC) != 0)
        return {};
    Start start;
    QElapsedTimer timer;
    timer.start();
    const pid_t child = ::vfork();
    if (child == 0) {
        ::dup2(seen[1], SERIMONDE_SEEN_DESCRIPTOR);
        ::execl(program, program, nullptr);
        ::_exit(127);
    }
    ::close(seen[1]);
    char byte = 0;
    if (::read(seen[0], &byte, 1) == 1)
        start.seconds = double(timer.nsecsElapsed()) * 1e-9;
    start.cpu = CpuSecondsOf(child);
    ::close(seen[0]);
    ::kill(child, SIGTERM);
    rusage usage = {};
    ::wait4(child, nullptr, 0, &usage);
    start.resident = double(usage.ru_maxrss) / 1024;
    return start;
}

/// From exec to the moment at which the main window has been painted for the first time, next to a
/// window of the toolkit with nothing in it, not even text. Both are started in pairs, the one or
/// the other first; what counts is the median of what the pairs say, since a machine that is busy
/// with something else is so for both.
void StartToWindow(benchmark::State &state)
{
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    qputenv("XDG_STATE_HOME", settings.path().toLocal8Bit());
    qputenv("QT_PLUGIN_PATH", SERIMONDE_SEEN_PLUGINS);
    qputenv("QT_QPA_GENERIC_PLUGINS",
            "windowseen:" + QByteArray::number(SERIMONDE_SEEN_DESCRIPTOR));
    if (const QByteArray display = qgetenv("SERIMONDE_BENCH_DISPLAY"); !display.isEmpty()) {
        qputenv("DISPLAY", display);
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    std::vector<double> program, times, cpuTimes;
    for (auto _ : state) {
        const bool oursFirst = times.size() % 2 == 0;
        Start ours = oursFirst ? StartProgram(SERIMONDE_PROGRAM) : Start();
        const Start toolkits = StartProgram(SERIMONDE_BARE_WINDOW);
        if (!oursFirst)
            ours = StartProgram(SERIMONDE_PROGRAM);
        if (ours.seconds == 0 || toolkits.seconds == 0)
            state.SkipWithError("a program did not start");
        program.push_back(1000 * ours.seconds);
        times.push_back(ours.seconds / toolkits.seconds);
        cpuTimes.push_back(ours.cpu / toolkits.cpu);
        state.SetIterationTime(ours.seconds);
        state.counters["resident_MiB"] = ours.resident;
    }
    state.counters["CPU_times"] = Percentile(cpuTimes, 0.5);
    const double typical = Percentile(program, 0.5);
    Comparison(state, "bare window").Add("ms", typical, typical / Percentile(times, 0.5), {1.5});
}

BENCHMARK(StartToWindow)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(40);

} // namespace
