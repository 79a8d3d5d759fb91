// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureEncoder.h"
#include "CaptureJudge.h"
#include "CaptureTraffic.h"
#include "Limits.h"
#include "MdSequenceEdition.h"
#include "SampleTraffic.h"
#include "SystemFiles.h"
#include "WorkProgress.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

namespace
{

constexpr double Mega = 1e6;

enum class Telegrams { Random, NearMiss, Firing, Family };

/// Telegrams of 8 to 32 bytes, one after the other, or as much as a packet holds.
QByteArray CaptureOf(Telegrams kind, const QByteArrayList &sequences, qsizetype size, bool isBlast)
{
    SampleTraffic::Random random(3);
    CaptureEncoder encoder({{QStringLiteral("COM1"), {}, 115200}}, QStringLiteral("bench"));
    QByteArray capture = encoder.Head();
    TrafficEvent event;
    event.time.wall = 1'700'000'000'000'000'000;
    while (capture.size() < size) {
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
        encoder.Append(capture, event);
    }
    return capture;
}

/// On the disk, and in the system's memory.
class CaptureFile
{
  public:
    explicit CaptureFile(const QByteArray &capture)
    {
        QFile file(m_folder.filePath(QStringLiteral("a.pcapng")));
        if (file.open(QIODevice::WriteOnly))
            file.write(capture);
        file.close();
        device = SystemFiles().Open(file.fileName()).device;
    }
    std::unique_ptr<InputDevice> device;

  private:
    QTemporaryDir m_folder;
};

/// What the limit refers to: from one block to the next by their lengths, and no more.
qint64 WalkLengths(const InputDevice &file)
{
    std::vector<char> piece(256 * 1024);
    qint64 blocks = 0;
    for (qint64 place = 0;;) {
        const qint64 count = file.ReadAt(place, piece.data(), qint64(piece.size())).count;
        qint64 at = 0;
        while (at + 8 <= count) {
            at += qFromLittleEndian<quint32>(piece.data() + at + 4);
            ++blocks;
        }
        if (at == 0)
            return blocks;
        place += at;
    }
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

/// Of the processor: what else the machine does is left out.
template <typename Work> double MillisecondsOf(const Work &work)
{
    const auto now = [] {
        timespec time = {};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return double(time.tv_sec) * 1000 + double(time.tv_nsec) / Mega;
    };
    const double begin = now();
    benchmark::DoNotOptimize(work());
    return now() - begin;
}

/// Reading and walking by turns; the medians count.
void ReadCapture(benchmark::State &state, qint64 (*read)(const InputDevice &file))
{
    SampleTraffic::Random random(2);
    const QByteArrayList sequences = SampleTraffic::Sequences(random, 1024);
    const CaptureFile file(CaptureOf(Telegrams::Random, sequences, 64 * 1024 * 1024, false));
    std::vector<double> readTook, walkTook;
    for (auto _ : state) {
        walkTook.push_back(MillisecondsOf([&] { return WalkLengths(*file.device); }));
        readTook.push_back(MillisecondsOf([&] { return read(*file.device); }));
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
    const CaptureFile file(CaptureOf(kind, sequences, 32 * 1024 * 1024, isBlast));
    const CaptureJudge judge(tables, near);
    std::vector<double> took;
    for (auto _ : state) {
        WorkProgress progress;
        took.push_back(MillisecondsOf([&] { return judge.Judge(*file.device, progress); }));
        state.SetIterationTime(took.back() / 1000);
    }
    const double rate = double(file.device->Size()) / Mega / (Median(took) / 1000);
    char words[100] = {};
    std::snprintf(words, sizeof words, "%.0f MB/s, at least %.0f%s", rate, least,
                  rate >= least ? "" : ", MISSED");
    state.SetLabel(words);
}

/// A capture of any size, without a disk: the same packets again and again.
class EndlessFile final : public InputDevice
{
  public:
    EndlessFile(const QByteArray &head, const QByteArray &packets, qint64 size)
        : m_head(head), m_packets(packets), m_size(size / packets.size() * packets.size())
    {
    }
    Given ReadAt(qint64 place, char *bytes, qint64 most) const override
    {
        most = std::clamp<qint64>(Size() - place, 0, most);
        for (qint64 i = 0; i < most;) {
            const qint64 at = place + i - m_head.size();
            const QByteArrayView from =
                at < 0 ? QByteArrayView(m_head).sliced(place + i)
                       : QByteArrayView(m_packets).sliced(at % m_packets.size());
            const qint64 count = std::min<qint64>(from.size(), most - i);
            std::copy_n(from.data(), count, bytes + i);
            i += count;
        }
        return {most, {}};
    }
    qint64 Size() const override { return m_head.size() + m_size; }

  private:
    QByteArray m_head, m_packets;
    qint64 m_size;
};

double PeakMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const qsizetype at = text.indexOf("VmHWM:") + 6;
    return text.sliced(at, text.indexOf("kB", at) - at).trimmed().toDouble() / 1024;
}

/// Every telegram fires or nearly does; what is kept of it has its bound by the first MiB.
void JudgeMemory(benchmark::State &state)
{
    const QByteArrayList sequences = SequencesFor(Telegrams::NearMiss);
    MdSequenceEdition tables;
    for (const QByteArray &sequence : sequences)
        tables.AddReceive({.Name = "n", .Sequence = sequence});
    const QByteArray head =
        CaptureEncoder({{QStringLiteral("COM1"), {}, 115200}}, QStringLiteral("bench")).Head();
    QByteArray packets;
    for (const Telegrams kind : {Telegrams::Firing, Telegrams::NearMiss})
        packets += CaptureOf(kind, sequences, 1024 * 1024, false).sliced(head.size());
    const CaptureJudge judge(tables);
    const auto judgeMebibytes = [&](qint64 count) {
        WorkProgress progress;
        return judge.Judge(EndlessFile(head, packets, count * 1024 * 1024), progress)
            .judgement.packets;
    };
    benchmark::DoNotOptimize(judgeMebibytes(32));
    const double before = PeakMemory();
    for (auto _ : state)
        benchmark::DoNotOptimize(judgeMebibytes(512));
    Comparison(state, "for 32 MiB").Add("512 MiB need MiB", PeakMemory(), before, {1, 8});
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
