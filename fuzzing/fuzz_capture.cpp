// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureEncoder.h"
#include "CaptureTraffic.h"
#include "support/ScriptedDisk.h"

#include <cstdint>
#include <cstdlib>

namespace
{

void Require(bool condition)
{
    if (!condition)
        std::abort();
}

QList<TrafficEvent> Read(const QByteArray &file, QList<TrafficPort> &ports)
{
    const ScriptedDisk::Reader device(file);
    CaptureReader reader(device);
    QList<TrafficEvent> events;
    if (reader.Begin().Failed())
        return events;
    CaptureTraffic traffic(reader);
    TrafficEvent event;
    CaptureReader::Step step = traffic.Next(event);
    for (; step == CaptureReader::Step::Packet; step = traffic.Next(event)) {
        Require(event.channel >= 0 && event.channel < reader.Ports().size());
        events << event;
    }
    Require((step == CaptureReader::Step::Damaged) != reader.Damage().cause.isEmpty());
    ports = reader.Ports();
    return events;
}

} // namespace

/// Any bytes are read as a capture. What was read from them is written as one, and must be read
/// without damage again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QList<TrafficPort> ports;
    const QList<TrafficEvent> events =
        Read(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)), ports);
    if (ports.isEmpty())
        return 0;
    CaptureEncoder encoder(ports, QStringLiteral("Serimonde"));
    QByteArray capture = encoder.Head();
    for (const TrafficEvent &event : events)
        encoder.Append(capture, event);
    QList<TrafficPort> again;
    const QList<TrafficEvent> second = Read(capture, again);
    Require(second.size() >= events.size());
    Require(again.size() == ports.size());
    return 0;
}
