// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureEncoder.h"
#include "SystemFiles.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// What benchmarks that work on captures have in common.
namespace CaptureBench
{

constexpr double Mega = 1e6;

/// Changes an event into the one that comes after it; false if none does. The size is that of the
/// capture so far.
using NextEvent = std::function<bool(TrafficEvent &event, qint64 size)>;

inline CaptureEncoder Encoder()
{
    return {{{QStringLiteral("COM1"), {}, 115200}}, QStringLiteral("bench")};
}

/// A capture of one port, by pieces of a MiB.
inline void Encode(const NextEvent &next, const std::function<void(const QByteArray &)> &take)
{
    CaptureEncoder encoder = Encoder();
    QByteArray piece = encoder.Head();
    TrafficEvent event;
    event.time.wall = 1'700'000'000'000'000'000;
    for (qint64 taken = 0; next(event, taken + piece.size());) {
        encoder.Append(piece, event);
        if (piece.size() > 1 << 20) {
            take(piece);
            taken += piece.size();
            piece.resize(0);
        }
    }
    take(piece);
}

/// Such a capture on the disk, and in the system's memory.
class File
{
  public:
    explicit File(const NextEvent &next)
    {
        QFile file(m_folder.filePath(QStringLiteral("a.pcapng")));
        if (file.open(QIODevice::WriteOnly))
            Encode(next, [&file](const QByteArray &piece) { file.write(piece); });
        file.close();
        device = SystemFiles().Open(file.fileName()).device;
    }

    std::shared_ptr<const InputDevice> device;

  private:
    QTemporaryDir m_folder;
};

/// What limits refer to: from one block to the next by their lengths, and no more.
inline qint64 WalkLengths(const InputDevice &file)
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

/// In ms, of the processor: what else the machine does is left out.
template <typename Work> double ProcessorTimeOf(const Work &work)
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

/// Of the process in MiB, from a line of what the system says of it, such as "VmRSS:".
inline double Memory(const char *line)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const qsizetype at = text.indexOf(line) + qsizetype(qstrlen(line));
    return text.sliced(at, text.indexOf("kB", at) - at).trimmed().toDouble() / 1024;
}

/// Said as a rate of a capture that is gone through; MISSED below the least.
inline std::string RateWords(const InputDevice &capture, double milliseconds, double least)
{
    const double rate = double(capture.Size()) / Mega / (milliseconds / 1000);
    char words[100] = {};
    std::snprintf(words, sizeof words, "%.0f MB/s, at least %.0f%s", rate, least,
                  rate >= least ? "" : ", MISSED");
    return words;
}

} // namespace CaptureBench
