// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureBench.h"
#include "CaptureJudge.h"
#include "CaptureTraffic.h"
#include "Limits.h"
#include "MdSequenceEdition.h"
#include "SampleTraffic.h"
#include "WorkProgress.h"
#include "support/EndlessFile.h"

#include <algorithm>

namespace
{

using namespace CaptureBench;

enum class Telegrams { Random, NearMiss, Firing, Family };

/// Telegrams of 8 to 32 bytes, one after the other, or as much as a packet holds.
NextEvent TrafficOf(Telegrams kind, const QByteArrayList &sequences, qint64 most, bool isBlast)
{
    return [=, random = SampleTraffic::Random(3)](TrafficEvent &event, qint64 size) mutable {
        event.bytes.clear();
        do {
            QByteArray telegram = sequences[qsizetype(random() % size_t(sequences.size()))];
            if (kind == Telegrams::Random)
                telegram = SampleTraffic::RandomBytes(random, telegram.size());
            else if (kind != Telegrams::Firing)
                telegram[0] = char(telegram[0] ^ 0x55);
            event.bytes += telegram;
        } while (isBlast && event.bytes.size() < 60'000);
        event.kind = random() % 2 == 0 && kind == Telegrams::Random && !isBlast
                         ? TrafficEvent::Kind::Sent
                         : TrafficEvent::Kind::Received;
        event.time.wall += 1'000'003;
        return size < most;
    };
}

qint64 ReadPackets(const InputDevice &file)
{
    CaptureReader reader(file);
    CapturePacket packet;
    qint64 bytes = 0;
    if (reader.Begin().Failed())
        return 0;
    while (reader.Next(packet) == CaptureReader::Step::Packet)
        bytes += packet.bytes.size();
    return bytes;
}

qint64 ReadEvents(const InputDevice &file)
{
    CaptureReader reader(file);
    if (reader.Begin().Failed())
        return 0;
    CaptureTraffic traffic(reader);
    TrafficEvent event;
    qint64 bytes = 0;
    while (traffic.Next(event) == CaptureReader::Step::Packet)
        bytes += event.bytes.size();
    return bytes;
}

double Median(std::vector<double> &times)
{
    const auto middle = times.begin() + qsizetype(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

/// Reading and walking by turns; the medians count.
void ReadCapture(benchmark::State &state, qint64 (*read)(const InputDevice &file))
{
    SampleTraffic::Random random(2);
    const QByteArrayList sequences = SampleTraffic::Sequences(random, 1024);
    const File file(TrafficOf(Telegrams::Random, sequences, 64 * 1024 * 1024, false));
    std::vector<double> readTook, walkTook;
    for (auto _ : state) {
        walkTook.push_back(ProcessorTimeOf([&] { return WalkLengths(*file.device); }));
        readTook.push_back(ProcessorTimeOf([&] { return read(*file.device); }));
        state.SetIterationTime(readTook.back() / 1000);
    }
    Comparison(state, "walk").Add("64 MiB in ms", Median(readTook), Median(walkTook), {3});
}

QByteArrayList SequencesFor(Telegrams kind)
{
    SampleTraffic::Random random(2);
    if (kind != Telegrams::Family)
        return SampleTraffic::Sequences(random, 1024);
    QByteArrayList family;
    for (int i = 0; i < 1024; ++i)
        family << "ADDRESS " + QByteArray::number(i).rightJustified(4, '0') + " READY\r\n";
    return family;
}

/// MB of the file a second, by 1,024 sequences.
void Judge(benchmark::State &state, Telegrams kind, bool isBlast, CaptureJudge::NearMisses near,
           double least)
{
    const QByteArrayList sequences = SequencesFor(kind);
    MdSequenceEdition tables;
    for (const QByteArray &sequence : sequences)
        tables.AddReceive({.Name = "n", .Sequence = sequence});
    const File file(TrafficOf(kind, sequences, 32 * 1024 * 1024, isBlast));
    const CaptureJudge judge(tables, near);
    std::vector<double> took;
    for (auto _ : state) {
        WorkProgress progress;
        took.push_back(ProcessorTimeOf([&] { return judge.Judge(*file.device, progress); }));
        state.SetIterationTime(took.back() / 1000);
    }
    state.SetLabel(RateWords(*file.device, Median(took), least));
}

/// Every telegram fires or nearly does; what is kept of it has its bound by the first MiB.
void JudgeMemory(benchmark::State &state)
{
    const QByteArrayList sequences = SequencesFor(Telegrams::NearMiss);
    MdSequenceEdition tables;
    for (const QByteArray &sequence : sequences)
        tables.AddReceive({.Name = "n", .Sequence = sequence});
    const QByteArray head = Encoder().Head();
    QByteArray packets;
    for (const Telegrams kind : {Telegrams::Firing, Telegrams::NearMiss}) {
        QByteArray capture;
        Encode(TrafficOf(kind, sequences, 1024 * 1024, false),
               [&capture](const QByteArray &piece) { capture += piece; });
        packets += capture.sliced(head.size());
    }
    const CaptureJudge judge(tables);
    const auto judgeMebibytes = [&](qint64 count) {
        WorkProgress progress;
        return judge.Judge(EndlessFile(head, packets, count * 1024 * 1024), progress)
            .judgement.packets;
    };
    benchmark::DoNotOptimize(judgeMebibytes(32));
    const double before = Memory("VmHWM:");
    for (auto _ : state)
        benchmark::DoNotOptimize(judgeMebibytes(512));
    Comparison(state, "for 32 MiB").Add("512 MiB need MiB", Memory("VmHWM:"), before, {1, 8});
}

using Near = CaptureJudge::NearMisses;

BENCHMARK_CAPTURE(ReadCapture, packets, ReadPackets)
    ->UseManualTime()
    ->Iterations(21)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadCapture, events, ReadEvents)
    ->UseManualTime()
    ->Iterations(21)
    ->Unit(benchmark::kMillisecond);
#define JUDGE(name, ...)                                                                           \
    BENCHMARK_CAPTURE(Judge, name, __VA_ARGS__)                                                    \
        ->UseManualTime()                                                                          \
        ->Iterations(5)                                                                            \
        ->Unit(benchmark::kMillisecond)
JUDGE(random telegrams, Telegrams::Random, false, Near::LeaveOut, 100);
JUDGE(random bytes in large packets, Telegrams::Random, true, Near::LeaveOut, 100);
JUDGE(near misses in telegrams, Telegrams::NearMiss, false, Near::LeaveOut, 100);
JUDGE(near misses in large packets, Telegrams::NearMiss, true, Near::LeaveOut, 100);
JUDGE(all telegrams fire, Telegrams::Firing, false, Near::LeaveOut, 100);
JUDGE(random telegrams and near misses, Telegrams::Random, false, Near::Find, 25);
JUDGE(near misses in telegrams found, Telegrams::NearMiss, false, Near::Find, 25);
JUDGE(near misses in large packets found, Telegrams::NearMiss, true, Near::Find, 25);
JUDGE(all telegrams fire and near misses, Telegrams::Firing, false, Near::Find, 25);
JUDGE(near misses of one family found, Telegrams::Family, false, Near::Find, 25);
BENCHMARK(JudgeMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
