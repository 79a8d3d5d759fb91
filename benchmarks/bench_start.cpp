// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include <array>
#include <string>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

/// From exec to a shown window and back: the program closes as soon as its window is up, so the
/// time is an upper bound. resident_MiB is the most that the run had.
void StartToWindow(benchmark::State &state)
{
    const QTemporaryDir settings;
    const std::string config = "XDG_CONFIG_HOME=" + settings.path().toStdString();
    double resident = 0;
    for (auto _ : state) {
        const pid_t child = ::fork();
        if (child == 0) {
            ::putenv(const_cast<char *>(config.c_str()));
            ::execl(SERIMONDE_PROGRAM, "serimonde", "--quit-after", "0", nullptr);
            ::_exit(127);
        }
        int status = 0;
        rusage usage = {};
        ::wait4(child, &status, 0, &usage);
        if (status != 0)
            state.SkipWithError("the program did not start");
        resident = double(usage.ru_maxrss) / 1024;
    }
    state.counters["resident_MiB"] = resident;
}

BENCHMARK(StartToWindow)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(10);

} // namespace
