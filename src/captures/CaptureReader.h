// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureBytes.h"
#include "CaptureFormat.h"
#include "TrafficEvent.h"

#include <QList>
#include <QStringList>
#include <QtEndian>

#include <algorithm>
#include <limits>

/// One record of a capture as it stands in the file.
struct CapturePacket {
    qint64 place = 0;     ///< of its block in the file
    qint64 time = 0;      ///< in nanoseconds since 1970
    int port = 0;         ///< index in CaptureReader::Ports: the channel
    quint8 record = 0;    ///< CaptureFormat::RecordEvent
    quint8 lines = 0;     ///< CaptureFormat::RecordLine
    QByteArrayView bytes; ///< of the line; valid until the next packet
    qint64 missing = 0;   ///< bytes that the capture leaves out
    QByteArrayView
        options; ///< for CommentsOf, empty if there are none; valid until the next packet
};

/// Reads captures of serial lines, ours and those of others: pcapng and classic pcap, in both byte
/// orders and all resolutions of time. What it does not know it leaves out. Memory is bounded,
/// whatever the file's size.
class CaptureReader final
{
  public:
    /// A longer block whose content is needed is taken for damage, in bytes.
    static constexpr qint64 LongestBlock = 16 * 1024 * 1024;
    static constexpr qsizetype MostPorts = 2;

    /// The file lives longer than the reader.
    explicit CaptureReader(const InputDevice &file)
        : m_bytes(file), m_file(file), m_size(file.Size())
    {
    }

    /// Whether the file is a capture by its first bytes.
    static bool Knows(const InputDevice &file);

    /// Fails if the file is no capture of serial lines.
    Result Begin();

    enum class Step { Packet, End, Damaged };
    /// The next packet, from the first on. Once it says Damaged nothing more can be read.
    Step Next(CapturePacket &packet)
    {
        return TakeUsual(packet) ? Step::Packet : NextOfAll(packet);
    }
    /// What has been read, in bytes of the file.
    qint64 Place() const { return m_next; }
    /// Where the damage is, and what; for the user.
    const Failure &Damage() const { return m_damage; }

    /// By channel, those that the latest packet is of: a capture may go on with others. All of them
    /// are known, as a rule, once the first packet is read.
    const QList<TrafficPort> &Ports() const { return m_ports; }
    /// Another number wherever Ports may have become others.
    int PortsVersion() const { return m_portsVersion; }

    /// Few packets have any.
    bool HasComments(const CapturePacket &packet) const;
    /// One after the other, without a copy; the rest begins as CapturePacket::options. False at
    /// their end.
    bool NextComment(QByteArrayView &rest, QByteArrayView &comment) const;
    QStringList CommentsOf(const CapturePacket &packet) const;

  private:
    struct Interface {
        quint32 snapLength = 0;    ///< 0 for none
        quint8 timeResolution = 6; ///< as the option has it
        qint64 timeOffset = 0;     ///< in seconds; 0 if it leads out of what can be told
        int port = 0;              ///< CapturePacket::port
    };

  public:
    /// Where a packet is, with all that is needed to read on from it.
    class Mark
    {
        friend class CaptureReader;
        qint64 m_place = 0;
        bool m_bigEndian = false;
        QList<Interface> m_interfaces;
        QList<TrafficPort> m_ports;
    };
    /// Of the packet that was read last.
    Mark MarkOf(const CapturePacket &packet) const;
    /// The packet with the mark is the next one. The reader has begun, of the same file.
    void GoTo(const Mark &mark);

  private:
    /// Of pcapng.
    struct Block {
        qint64 place = 0;
        quint32 type = 0;
        qint64 length = 0; ///< with its frame
    };
    /// What a packet says of itself before its data.
    struct PacketHead {
        quint32 interface = 0;
        quint64 ticks = 0;
        bool timed = true;
        qint64 captured = 0; ///< bytes of data in the file
        qint64 whole = 0;    ///< and on the line
        qsizetype data = 0;  ///< place in the body
    };
    enum class Found { Packet, Nothing, Damage };

    template <typename Number> Number NumberAt(QByteArrayView bytes, qsizetype place) const;

    Result BeginPcap();
    Step NextOfAll(CapturePacket &packet);
    Step NextOfPcap(CapturePacket &packet);
    Step NextOfPcapNg(CapturePacket &packet);
    bool TakeUsual(CapturePacket &packet);
    bool FindBlock(Block &block);
    bool FindByteOrder(qint64 place);
    Found TakeBlock(const Block &block, CapturePacket &packet);
    Found TakeInterface(QByteArrayView body);
    Found AddInterface(Interface interface, const TrafficPort &port, int told);
    Found TakePacket(const Block &block, QByteArrayView body, CapturePacket &packet);
    bool ReadHead(quint32 type, QByteArrayView body, PacketHead &head) const;
    bool ReadRecord(QByteArrayView record, qint64 whole, CapturePacket &packet);
    bool EndsBefore(qint64 place);

    Step Stop(const QString &cause);
    Found Spoilt(const QString &cause);
    bool Refused(const QString &cause);

    CaptureBytes m_bytes;
    const InputDevice &m_file;
    qint64 m_size; ///< of the file when it was last asked for; it may grow
    bool m_isPcap = false;
    bool m_bigEndian = false;
    qint64 m_next = 0;             ///< place of what is read next
    QList<Interface> m_interfaces; ///< of the section
    QList<TrafficPort> m_ports;
    bool m_described = false; ///< a port has been told of
    int m_portsVersion = 0;
    Failure m_damage;
};

/// Nearly every block is a packet without anything unusual, which lies in memory; what is said
/// below of all blocks holds for it, and it takes a third of the time. False if it is another one.
inline bool CaptureReader::TakeUsual(CapturePacket &packet)
{
    using namespace CaptureFormat;
    constexpr quint32 Before = 8 + PacketHeadLength; // the record
    const QByteArrayView held = m_bytes.HeldFrom(m_next);
    if (m_isPcap || m_bigEndian || !m_damage.cause.isEmpty() ||
        held.size() < qsizetype(Before + BlockFrame + RecordHead))
        return false;
    const char *const block = held.data();
    const auto number = [block](qsizetype place) {
        return qFromLittleEndian<quint32>(block + place);
    };
    const quint32 length = number(4);
    const quint32 port = number(8);
    const quint32 captured = number(20);
    if (number(0) != EnhancedPacket || length > held.size() || length % Alignment != 0 ||
        captured < RecordHead || length < Aligned(captured) + Before + qint64(sizeof(quint32)) ||
        number(24) != captured || number(length - qsizetype(sizeof(quint32))) != length ||
        port >= quint32(m_interfaces.size()))
        return false;
    const Interface &interface = m_interfaces.at(port);
    const quint64 ticks = quint64(number(12)) << 32 | number(16);
    if (interface.timeResolution != Nano || interface.timeOffset != 0 || ticks == 0)
        return false;
    const QByteArrayView record(block + Before, captured);
    const quint32 optionsAt = Before + quint32(Aligned(captured));
    packet.place = m_next;
    packet.time = qint64(std::min(ticks, quint64(std::numeric_limits<qint64>::max())));
    packet.port = std::min(interface.port, int(m_ports.size()) - 1);
    packet.record = quint8(record[8]);
    packet.lines = quint8(record[9]);
    packet.bytes = record.sliced(RecordHead);
    packet.missing = 0;
    packet.options = held.sliced(optionsAt, length - quint32(sizeof(quint32)) - optionsAt);
    constexpr qsizetype Flags = OptionHead + sizeof(quint32); // which nobody asks for
    if (packet.options.size() >= Flags &&
        number(optionsAt) == (quint32(sizeof(quint32)) << 16 | PacketFlags))
        packet.options = packet.options.sliced(Flags);
    if (packet.options.size() == OptionHead) // the end of them
        packet.options = {};
    m_next += length;
    return true;
}
