// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Limits.h"
#include "LiveProgram.h"
#include "Requests.h"
#include "SampleTraffic.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace
{

constexpr int Rounds = 15;

/// What goes on beside the requests.
struct Conditions {
    int noiseRate = 0; ///< bytes a second of other traffic, which no sequence matches
    std::chrono::milliseconds windowBusy{0}; ///< so long at a time, without a pause
    int otherSequences = 0;                  ///< watched beside that of the request
    bool acrossChannels = false;             ///< asked on channel 2, answered on channel 1
    bool showsTraffic = false;               ///< in the window "Traffic" as well
};

void Watch(MdSequenceEdition &tables, int others)
{
    SampleTraffic::Random random(5);
    for (const QByteArray &sequence : SampleTraffic::Sequences(random, others))
        tables.AddReceive({.Sequence = sequence, .Comment = "detected"});
    tables.AddSend({"answer", Answer, {}});
    tables.AddReceive({.Sequence = Request, .Answer = 1});
    tables.RefreshAnswerNames();
}

void Work(std::chrono::milliseconds time)
{
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
    }
}

/// An automatic answer, next to the plain echo. Both are asked by turns, so that they see the same
/// machine, the same other traffic and the same window.
void AutomaticAnswer(benchmark::State &state, const Conditions &conditions)
{
    for (auto _ : state) {
        Wires wires;
        wires.two = conditions.acrossChannels;
        const Processors processors;
        processors.Take(Processors::Share::Answering); // for the lines' thread
        const QTemporaryDir folder;
        LiveProgram program(wires.Answers().DeviceName(), {},
                            wires.two ? wires.ask.DeviceName() : QString(),
                            conditions.showsTraffic ? folder.filePath("record") : QString());
        processors.Take(Processors::Share::All);
        Watch(program.tables, conditions.otherSequences);
        if (conditions.showsTraffic)
            program.ShowTraffic();

        std::vector<double> times;
        std::vector<double> plain;
        std::atomic<bool> finished = false;
        std::thread asker([&] {
            processors.Take(Processors::Share::Asking);
            Wires bare;
            bare.two = wires.two;
            SampleTraffic::Random random(4);
            bool answered = true;
            for (int round = 0; answered && round < Rounds; ++round) {
                answered = Ask(wires, conditions.noiseRate, random, times);
                const PlainEcho echo(bare, processors);
                answered = answered && Ask(bare, conditions.noiseRate, random, plain);
            }
            finished = true;
        });
        program.RunUntil([&] {
            Work(conditions.windowBusy);
            return finished.load();
        });
        asker.join();
        if (plain.size() < size_t(Rounds * RequestsOfARound))
            state.SkipWithError("a request stayed unanswered");
        state.SetIterationTime(Percentile(times, 0.5));
        Comparison comparison(state, "echo");
        const auto add = [&](const char *name, double share, const Limit &limit) {
            comparison.Add(name, 1000 * Percentile(times, share), 1000 * Percentile(plain, share),
                           limit);
        };
        add("p50 ms", 0.5, {1.5});
        add("p99 ms", 0.99, {2, 0.2});
        state.counters["max_ms"] = 1000 * Percentile(times, 1.0);
        state.counters["pass_max_ms"] = 1000 * Percentile(program.passes, 1.0);
    }
}

void OneRun(benchmark::internal::Benchmark *benchmark)
{
    benchmark->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
}

using namespace std::chrono_literals;

BENCHMARK_CAPTURE(AutomaticAnswer, idle, {})->Apply(OneRun);
BENCHMARK_CAPTURE(AutomaticAnswer, under 50 kB a second, {.noiseRate = 50000})->Apply(OneRun);
BENCHMARK_CAPTURE(AutomaticAnswer, window busy for 200 ms at a time, {.windowBusy = 200ms})
    ->Apply(OneRun);
BENCHMARK_CAPTURE(AutomaticAnswer, among 1024 sequences, {.otherSequences = 1024})->Apply(OneRun);
BENCHMARK_CAPTURE(AutomaticAnswer, with the traffic window, {.showsTraffic = true})->Apply(OneRun);
BENCHMARK_CAPTURE(AutomaticAnswer, with the traffic window under 50 kB a second,
                  {.noiseRate = 50000, .showsTraffic = true})
    ->Apply(OneRun);
BENCHMARK_CAPTURE(AutomaticAnswer, across the channels, {.acrossChannels = true})->Apply(OneRun);

} // namespace
