// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommConfiguration.h"
#include "CommunicationLog.h"
#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "MdCommunication.h"
#include "MdSequenceEdition.h"
#include "SampleTraffic.h"
#include "StampText.h"
#include "support/FixedClock.h"
#include "support/ScriptedPort.h"
#include "support/ScriptedPrompts.h"

#include <benchmark/benchmark.h>

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
        {comm, display, stamp, tables, views, log, prompts, clock, portA, portB, lines});
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

/// Detection alone, by number of active sequences of 8 to 32 bytes and kind of traffic.
void Detection(benchmark::State &state, Traffic kind)
{
    SampleTraffic::Random random(2);
    MdSequenceEdition tables;
    const QByteArrayList sequences = SampleTraffic::Sequences(random, int(state.range(0)));
    AddActive(tables, sequences);
    ReceiveDetection detection;
    const WatchSnapshot watch(tables);
    const QByteArray data = MakeTraffic(kind, random, sequences);
    qint64 bytes = 0;
    for (auto _ : state) {
        for (qsizetype place = 0; place < data.size();) {
            const auto slice =
                QByteArrayView(data).sliced(place, qMin(SliceSize, data.size() - place));
            const auto result = detection.Feed(0, slice, watch);
            place += result.consumed;
        }
        bytes += data.size();
    }
    state.SetBytesProcessed(bytes);
    state.counters["ns/byte"] = benchmark::Counter(
        double(bytes) * 1e-9, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

BENCHMARK(ReceivePath);
BENCHMARK_CAPTURE(Detection, random bytes, Traffic::Random)->Arg(1)->Arg(32)->Arg(1024);
BENCHMARK_CAPTURE(Detection, text, Traffic::Text)->Arg(1)->Arg(32)->Arg(1024);
BENCHMARK_CAPTURE(Detection, near misses, Traffic::NearMiss)->Arg(1)->Arg(32)->Arg(1024);

} // namespace
