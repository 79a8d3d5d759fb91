// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Limits.h"
#include "LineClock.h"
#include "LiveProgram.h"
#include "support/PtyPair.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace
{

constexpr qint64 Period = 10; ///< milliseconds
constexpr double NanosecondsOfAMillisecond = 1e6;

/// So many telegrams at 10 ms, by the clock of who reads them at the other end of the line. What
/// drifts makes the last one late.
void Repeats(benchmark::State &state, int count, int windowBusyMilliseconds)
{
    for (auto _ : state) {
        PtyPair line;
        LiveProgram program(line.DeviceName(), {});
        std::vector<qint64> times;
        std::atomic<bool> finished = false;
        std::thread reader([&] {
            while (times.size() < size_t(count) && line.Read(1, 2000).size() == 1)
                times.push_back(MonotonicNow());
            finished = true;
        });
        program.communication.Repeat({"x", {}, {Period, count}});
        program.RunUntil([&] {
            const qint64 end = MonotonicNow() + windowBusyMilliseconds * 1'000'000;
            while (MonotonicNow() < end) {
            }
            return finished.load();
        });
        reader.join();
        if (times.size() < size_t(count)) {
            state.SkipWithError("not all telegrams came");
            break;
        }
        // Behind its place, on the grid of the one that was least late.
        std::vector<double> late;
        for (size_t i = 0; i < times.size(); ++i)
            late.push_back(double(times[i] - times[0]) / NanosecondsOfAMillisecond -
                           double(qint64(i) * Period));
        const double least = *std::min_element(late.begin(), late.end());
        for (double &one : late)
            one -= least;
        state.SetIterationTime(double(times.back() - times.front()) / 1e9);
        Comparison(state, "due").AddWithin("last ms", late.back(), 0, 1);
        state.counters["p50_late_ms"] = Percentile(late, 0.5);
        state.counters["p99_late_ms"] = Percentile(late, 0.99);
        state.counters["max_late_ms"] = Percentile(late, 1.0);
    }
}

void OneRun(benchmark::internal::Benchmark *benchmark)
{
    benchmark->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(Repeats, 1000 at 10 ms, 1000, 0)->Apply(OneRun);
BENCHMARK_CAPTURE(Repeats, 300 at 10 ms while the window is busy for 200 ms at a time, 300, 200)->Apply(OneRun);

} // namespace
