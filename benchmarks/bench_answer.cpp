// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Limits.h"
#include "LiveProgram.h"
#include "SampleTraffic.h"
#include "support/PtyPair.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <thread>

#include <sched.h>

namespace
{

constexpr int Rounds = 15;
constexpr int RequestsOfARound = 200;
const QByteArray Request = QByteArrayLiteral("MEAS?\r\n\x02");
const QByteArray Answer = QByteArrayLiteral("21.4");

/// What goes on beside the requests.
struct Conditions {
    int noiseRate = 0; ///< bytes a second of other traffic, which no sequence matches
    std::chrono::milliseconds windowBusy{0}; ///< so long at a time, without a pause
    int otherSequences = 0;                  ///< watched beside that of the request
    bool acrossChannels = false;             ///< asked on channel 2, answered on channel 1
};

/// Whose processors are whose. Whoever asks is to the program what a device is: something else that
/// runs at the same time. Left to the system, the one who answers would now share a processor with
/// the one who asks and now wait to be woken on another, which takes three times as long.
class Processors
{
  public:
    enum class Share { All, Asking, Answering };

    Processors()
    {
        ::sched_getaffinity(0, sizeof m_all, &m_all);
        for (int i = 0; i < CPU_SETSIZE && CPU_COUNT(&m_asking) + CPU_COUNT(&m_answering) < 2;
             ++i) {
            if (CPU_ISSET(i, &m_all))
                CPU_SET(i, CPU_COUNT(&m_asking) == 0 ? &m_asking : &m_answering);
        }
    }

    /// Of the calling thread, and those that it starts. A lone processor is everybody's.
    void Take(Share share) const
    {
        const cpu_set_t &set = share == Share::Asking      ? m_asking
                               : share == Share::Answering ? m_answering
                                                           : m_all;
        ::sched_setaffinity(0, sizeof set, CPU_COUNT(&m_answering) == 0 ? &m_all : &set);
    }

  private:
    cpu_set_t m_all = {};
    cpu_set_t m_asking = {};
    cpu_set_t m_answering = {};
};

/// A line on which requests are made, and the one on which their answers come.
struct Wires {
    PtyPair ask;
    PtyPair answer;
    bool two = false;

    PtyPair &Answers() { return two ? answer : ask; }
};

/// What any program could reach: a thread that waits for the request and writes the answer.
class PlainEcho
{
  public:
    PlainEcho(Wires &wires, const Processors &processors)
        : m_thread([this, &wires, &processors] {
              processors.Take(Processors::Share::Answering);
              Run(wires);
          })
    {
    }
    ~PlainEcho()
    {
        m_stop = true;
        m_thread.join();
    }
    Q_DISABLE_COPY_MOVE(PlainEcho)

  private:
    void Run(Wires &wires)
    {
        QByteArray heard;
        pollfd device = {wires.ask.Device(), POLLIN, 0};
        std::array<char, 512> part{};
        while (!m_stop) {
            if (::poll(&device, 1, 50) <= 0)
                continue;
            heard.append(part.data(),
                         std::max<ssize_t>(0, ::read(device.fd, part.data(), part.size())));
            if (!heard.contains(Request))
                continue;
            heard.clear();
            [[maybe_unused]] const auto written =
                ::write(wires.Answers().Device(), Answer.constData(), size_t(Answer.size()));
        }
    }

    std::atomic<bool> m_stop = false;
    std::thread m_thread;
};

/// Asks and notes the seconds from the last byte of the request to the first byte of the answer.
/// False if a request stays unanswered.
bool Ask(Wires &wires, int noiseRate, SampleTraffic::Random &random, std::vector<double> &times)
{
    const QByteArray noise(noiseRate / 500, 'n'); // what comes in 2 ms
    for (int i = 0; i < RequestsOfARound; ++i) {
        if (noiseRate > 0) {
            wires.ask.Write(noise);
            std::this_thread::sleep_for(std::chrono::microseconds(1000 + random() % 2000));
        }
        wires.ask.Write(Request);
        QElapsedTimer timer;
        timer.start();
        if (wires.Answers().Read(1, 5000).isEmpty())
            return false;
        times.push_back(double(timer.nsecsElapsed()) * 1e-9);
        wires.Answers().Read(Answer.size() - 1, 5000);
    }
    return true;
}

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
        LiveProgram program(wires.Answers().DeviceName(), {},
                            wires.two ? wires.ask.DeviceName() : QString());
        processors.Take(Processors::Share::All);
        Watch(program.tables, conditions.otherSequences);

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
BENCHMARK_CAPTURE(AutomaticAnswer, across the channels, {.acrossChannels = true})->Apply(OneRun);

} // namespace
