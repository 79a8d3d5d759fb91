// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

class InputDevice;

/// The packets of classic pcap as blocks of pcapng: each with its time, its lengths and its bytes
/// as they are, whatever they say.
class PcapBlocks final
{
  public:
    /// What a file of classic pcap begins with; empty if this is none.
    static QByteArray HeadOf(const InputDevice &file);

    explicit PcapBlocks(const QByteArray &head);

    /// The block that describes where all of them come from.
    QByteArray Interface() const;
    /// Adds the blocks of the packets that are whole, and returns how many bytes these were;
    /// negative if what stands there is no packet.
    qsizetype Append(QByteArray &blocks, QByteArrayView bytes) const;

  private:
    quint32 NumberAt(QByteArrayView bytes, qsizetype place) const;
    void AppendPacket(QByteArray &blocks, QByteArrayView bytes, qsizetype captured) const;

    QByteArray m_head;
    bool m_bigEndian;
    bool m_nanoseconds;
};
