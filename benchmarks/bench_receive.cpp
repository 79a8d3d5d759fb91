// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommConfiguration.h"
#include "CommunicationLog.h"
#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "Limits.h"
#include "MdCommunication.h"
#include "MdSequenceEdition.h"
#include "SampleTraffic.h"
#include "StampText.h"
#include "support/FixedClock.h"
#include "support/ScriptedPort.h"
#include "support/ScriptedPrompts.h"

#include <QElapsedTimer>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

namespace
{

constexpr qsizetype SliceSize = 511;
constexpr qsizetype DataSize = 4 * 1024 * 1024;

class NoLog final : public CommunicationLog
{
  public:
    void Take(const TrafficEvent &) override {}
    bool HasRoom() const override { return true; }
    void UpdateLogCommands() override {}
    void StopLog() override {}
};

void AddActive(MdSequenceEdition &tables, const QByteArrayList &sequences)
{
    for (const QByteArray &sequence : sequences) {
        tables.AddReceive({.Sequence = sequence, .Comment = "detected"});
    }
}

/// Bytes in slices of 511 through detection with 20 active sequences, four forms and four staging
/// boxes, which are moved and trimmed after every 10 ms of data at 10 MB/s.
void ReceivePath(benchmark::State &state)
{
    constexpr qsizetype BytesPerPass = 100000;
    SampleTraffic::Random random(1);
    CommConfiguration comm;
    DisplaySettings display;
    StampSettings stamp;
    MdSequenceEdition tables;
    AddActive(tables, SampleTraffic::Sequences(random, 20));
    CommunicationViews views;
    NoLog log;
    ScriptedPrompts prompts;
    FixedClock clock;
    ScriptedPort portA;
    ScriptedPort portB;
    ScriptedLines lines;
    MdCommunication communication(
        {comm, display, stamp, tables, &views, log, prompts, clock, portA, portB, lines});
    communication.OpenPorts();
    const QByteArray data = SampleTraffic::Text(random, DataSize);

    qsizetype place = 0;
    qsizetype inPass = 0;
    qint64 bytes = 0;
    for (auto _ : state) {
        const qsizetype size = qMin(SliceSize, data.size() - place);
        portA.Receive(data.mid(place, size));
        place = (place + size) % data.size();
        bytes += size;
        inPass += size;
        if (inPass >= BytesPerPass) {
            communication.ShowTraffic();
            inPass = 0;
        }
    }
    state.SetBytesProcessed(bytes);
}

enum class Traffic { Random, Text, NearMiss };

QByteArray MakeTraffic(Traffic kind, SampleTraffic::Random &random, const QByteArrayList &sequences)
{
    switch (kind) {
    case Traffic::Random:
        return SampleTraffic::RandomBytes(random, DataSize);
    case Traffic::Text:
        return SampleTraffic::Text(random, DataSize);
    case Traffic::NearMiss:
        return SampleTraffic::NearMisses(random, sequences, DataSize);
    }
    return {};
}

/// Detection alone on 4 MiB of traffic in slices.
class Detector
{
  public:
    Detector(Traffic kind, int sequenceCount)
    {
        SampleTraffic::Random random(2);
        const QByteArrayList sequences = SampleTraffic::Sequences(random, sequenceCount);
        AddActive(m_tables, sequences);
        m_watch = WatchSnapshot(m_tables);
        m_data = MakeTraffic(kind, random, sequences);
    }

    void Run()
    {
        for (qsizetype place = 0; place < m_data.size();) {
            const auto slice =
                QByteArrayView(m_data).sliced(place, qMin(SliceSize, m_data.size() - place));
            place += m_detection.Feed(0, slice, m_watch).consumed;
        }
    }

  private:
    MdSequenceEdition m_tables;
    WatchSnapshot m_watch;
    ReceiveDetection m_detection;
    QByteArray m_data;
};

/// By number of active sequences of 8 to 32 bytes and kind of traffic.
void Detection(benchmark::State &state, Traffic kind)
{
    Detector detector(kind, int(state.range(0)));
    for (auto _ : state)
        detector.Run();
    const auto bytes = double(state.iterations() * DataSize);
    state.SetBytesProcessed(state.iterations() * DataSize);
    state.counters["ns/byte"] =
        benchmark::Counter(bytes * 1e-9, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

/// What 1024 sequences cost next to one, by turns; the median of the turns counts.
void NearMissesOf1024(benchmark::State &state)
{
    Detector one(Traffic::NearMiss, 1);
    Detector many(Traffic::NearMiss, 1024);
    std::vector<double> oneTook, manyTook; // ns a byte
    const auto run = [](Detector &detector, std::vector<double> &took) {
        QElapsedTimer timer;
        timer.start();
        detector.Run();
        took.push_back(double(timer.nsecsElapsed()) / double(DataSize));
    };
    for (auto _ : state) {
        run(one, oneTook);
        run(many, manyTook);
        state.SetIterationTime(manyTook.back() * double(DataSize) * 1e-9);
    }
    const auto median = [](std::vector<double> &took) {
        std::nth_element(took.begin(), took.begin() + qsizetype(took.size() / 2), took.end());
        return took[took.size() / 2];
    };
    Comparison(state, "with one").Add("ns a byte", median(manyTook), median(oneTook), {2.5});
}

BENCHMARK(ReceivePath);
BENCHMARK_CAPTURE(Detection, random bytes, Traffic::Random)->Arg(1)->Arg(32)->Arg(1024);
BENCHMARK_CAPTURE(Detection, text, Traffic::Text)->Arg(1)->Arg(32)->Arg(1024);
BENCHMARK_CAPTURE(Detection, near misses, Traffic::NearMiss)->Arg(1)->Arg(32)->Arg(1024);
BENCHMARK(NearMissesOf1024)->UseManualTime()->Iterations(40)->Unit(benchmark::kMillisecond);

} // namespace
