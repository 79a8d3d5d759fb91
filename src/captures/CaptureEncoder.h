// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TrafficEvent.h"

#include <QByteArray>
#include <QList>

#include <array>

/// Makes a capture of what happens, in the format pcapng: little endian, times in nanoseconds, one
/// interface a port. What it makes may be cut behind every call of Append.
class CaptureEncoder final
{
  public:
    /// More bytes of one event become several packets; other programs refuse much larger ones.
    static constexpr qsizetype MostBytesOfAPacket = 65536;

    /// The ports by channel; the program is what wrote the capture, such as "Serimonde 1.0".
    CaptureEncoder(QList<TrafficPort> ports, QString program);

    /// What a capture begins with.
    QByteArray Head() const;

    /// Adds the packets of an event of one of the ports.
    void Append(QByteArray &capture, const TrafficEvent &event);

  private:
    /// Of a packet, all that is not the event's.
    struct Packet {
        quint8 record;    ///< CaptureFormat::RecordEvent
        quint32 flags;    ///< directions
        QByteArray texts; ///< options: its comments
    };
    void AppendPacket(QByteArray &capture, const TrafficEvent &event, const Packet &packet,
                      QByteArrayView bytes) const;

    QList<TrafficPort> m_ports;
    QString m_program;
    std::array<quint8, 2> m_lines; ///< by channel: CaptureFormat::RecordLine, as known last
};
