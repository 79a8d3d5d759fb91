// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureReader.h"

#include "CaptureFormat.h"
#include "CaptureRemarks.h"

#include <QtEndian>

#include <algorithm>
#include <limits>

namespace
{

using namespace CaptureFormat;

constexpr quint64 NanosecondsOfASecond = 1'000'000'000;
constexpr quint8 BinaryResolution = 0x80; ///< of times: powers of 2, else of 10

// Sizes in bytes.
constexpr qsizetype PcapHead = 24;
constexpr qsizetype PcapPacketHead = 16;
constexpr qsizetype SectionStart = 12; ///< of a section: type, length, byte order
constexpr qsizetype InterfaceHead = 8;
constexpr qsizetype SimplePacketHead = 4;

constexpr qsizetype MostInterfaces = 65536; ///< of one section, one behind the other

/// At most, if it does not fit.
qint64 Saturated(quint64 number)
{
    return qint64(std::min(number, quint64(std::numeric_limits<qint64>::max())));
}

quint64 PowerOfTen(int exponent)
{
    quint64 power = 1;
    for (; exponent > 0; --exponent)
        power *= 10;
    return power;
}

quint64 FromPowersOfTen(quint64 ticks, int exponent)
{
    constexpr int Most = 19; ///< that 64 bits hold
    if (exponent > Nano)
        return exponent - Nano > Most ? 0 : ticks / PowerOfTen(exponent - Nano);
    const quint64 factor = PowerOfTen(Nano - exponent);
    return ticks > std::numeric_limits<quint64>::max() / factor
               ? std::numeric_limits<quint64>::max()
               : ticks * factor;
}

quint64 FromPowersOfTwo(quint64 ticks, int exponent)
{
    constexpr int Fine = 32; ///< finer than a nanosecond, and its product fits
    if (exponent > 63)
        return 0;
    const quint64 seconds = ticks >> exponent;
    quint64 fraction = ticks - (seconds << exponent);
    if (exponent > Fine) {
        fraction >>= exponent - Fine;
        exponent = Fine;
    }
    if (seconds > std::numeric_limits<quint64>::max() / NanosecondsOfASecond - 1)
        return std::numeric_limits<quint64>::max();
    return seconds * NanosecondsOfASecond + ((fraction * NanosecondsOfASecond) >> exponent);
}

qint64 Nanoseconds(quint64 ticks, quint8 resolution)
{
    if (resolution == Nano) // the rest divides
        return Saturated(ticks);
    const int exponent = resolution & ~BinaryResolution;
    return Saturated((resolution & BinaryResolution) != 0 ? FromPowersOfTwo(ticks, exponent)
                                                          : FromPowersOfTen(ticks, exponent));
}

bool IsPacket(quint32 type)
{
    return type == EnhancedPacket || type == SimplePacket || type == ObsoletePacket;
}

/// Whether the content of a block counts.
bool IsNeeded(quint32 type)
{
    return IsPacket(type) || type == SectionHeader || type == InterfaceDescription;
}

/// Up to the end of the options or the first that does not fit.
template <typename Read> class OptionWalk
{
  public:
    OptionWalk(QByteArrayView options, Read read) : m_rest(options), m_read(read) {}

    bool Next()
    {
        if (m_rest.size() < OptionHead)
            return false;
        code = m_read(m_rest, 0);
        const qsizetype length = m_read(m_rest, 2);
        if (code == EndOfOptions || length > m_rest.size() - OptionHead)
            return false;
        value = m_rest.sliced(OptionHead, length);
        m_rest = m_rest.sliced(std::min<qsizetype>(OptionHead + Aligned(length), m_rest.size()));
        return true;
    }

    QByteArrayView Rest() const { return m_rest; }

    quint16 code = 0;
    QByteArrayView value;

  private:
    QByteArrayView m_rest;
    Read m_read;
};

QString OtherLinkType(quint32 type)
{
    const QString name = type == LinkTypeEthernet ? QStringLiteral(" (Ethernet)") : QString();
    return QStringLiteral("It is a capture of link type %1%2, not of serial lines (type %3, RTAC "
                          "serial)")
        .arg(type)
        .arg(name)
        .arg(LinkTypeRtacSerial);
}

QString Text(QByteArrayView utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

template <typename Number>
Number CaptureReader::NumberAt(QByteArrayView bytes, qsizetype place) const
{
    const char *from = bytes.data() + place;
    return m_bigEndian ? qFromBigEndian<Number>(from) : qFromLittleEndian<Number>(from);
}

bool CaptureReader::Knows(const InputDevice &file)
{
    CaptureBytes bytes(file);
    const QByteArrayView start = bytes.At(0, SectionStart);
    if (start.size() < SectionStart)
        return false;
    const auto first = qFromLittleEndian<quint32>(start.data());
    const auto order = qFromLittleEndian<quint32>(start.data() + 8);
    const auto is = [](quint32 number, quint32 magic) {
        return number == magic || qbswap(number) == magic;
    };
    return (first == SectionHeader && is(order, ByteOrderMagic)) || is(first, PcapMicroseconds) ||
           is(first, PcapNanoseconds);
}

Result CaptureReader::Begin()
{
    if (!Knows(m_file)) {
        return Failure{m_file.Size() == 0
                           ? QStringLiteral("The file is empty")
                           : QStringLiteral("The file is neither a pcapng nor a pcap capture")};
    }
    m_isPcap = qFromLittleEndian<quint32>(m_bytes.At(0, 4).data()) != SectionHeader;
    if (m_isPcap)
        return BeginPcap();
    // The interfaces stand in front of the packets as a rule.
    Block block;
    CapturePacket none;
    while (FindBlock(block) && !IsPacket(block.type)) {
        if (TakeBlock(block, none) == Found::Damage)
            break;
        m_next = block.place + block.length;
    }
    if (m_interfaces.isEmpty() && !m_damage.cause.isEmpty())
        return m_damage;
    return {};
}

Result CaptureReader::BeginPcap()
{
    const QByteArrayView head = m_bytes.At(0, PcapHead);
    const auto little = qFromLittleEndian<quint32>(head.data());
    m_bigEndian = little != PcapMicroseconds && little != PcapNanoseconds;
    if (head.size() < PcapHead)
        return Failure{QStringLiteral("The capture ends in its first %1 bytes").arg(PcapHead)};
    constexpr quint32 TypeBits = 0x0FFFFFFF; // above them is the length of checksums
    const quint32 type = NumberAt<quint32>(head, 20) & TypeBits;
    if (type != LinkTypeRtacSerial)
        return Failure{OtherLinkType(type)};
    Interface interface;
    interface.timeResolution = NumberAt<quint32>(head, 0) == PcapNanoseconds ? 9 : 6;
    m_interfaces = {interface};
    m_ports = {TrafficPort()};
    m_next = PcapHead;
    return {};
}

CaptureReader::Step CaptureReader::NextOfAll(CapturePacket &packet)
{
    if (!m_damage.cause.isEmpty())
        return Step::Damaged;
    return m_isPcap ? NextOfPcap(packet) : NextOfPcapNg(packet);
}

CaptureReader::Step CaptureReader::NextOfPcap(CapturePacket &packet)
{
    const QByteArrayView head = m_bytes.At(m_next, PcapPacketHead);
    if (head.isEmpty() && !m_bytes.State().Failed())
        return Step::End;
    if (head.size() < PcapPacketHead)
        return Stop(QStringLiteral("it ends in the head of a packet"));
    const Interface &interface = m_interfaces.first();
    const qint64 second = NumberAt<quint32>(head, 0);
    const quint32 part = NumberAt<quint32>(head, 4);
    const qint64 captured = NumberAt<quint32>(head, 8);
    const qint64 whole = NumberAt<quint32>(head, 12);
    if (captured > LongestBlock || captured > whole)
        return Stop(QStringLiteral("the length of a packet cannot be right"));
    const QByteArrayView record = m_bytes.At(m_next + PcapPacketHead, captured);
    if (record.size() < captured)
        return Stop(QStringLiteral("it ends in the middle of a packet"));
    packet = {};
    packet.place = m_next;
    packet.time =
        second * qint64(NanosecondsOfASecond) + Nanoseconds(part, interface.timeResolution);
    if (!ReadRecord(record, whole, packet))
        return Step::Damaged;
    m_next += PcapPacketHead + captured;
    return Step::Packet;
}

CaptureReader::Step CaptureReader::NextOfPcapNg(CapturePacket &packet)
{
    Block block;
    while (FindBlock(block)) {
        const Found found = TakeBlock(block, packet);
        if (found == Found::Damage)
            return Step::Damaged;
        m_next = block.place + block.length;
        if (found == Found::Packet)
            return Step::Packet;
    }
    return m_damage.cause.isEmpty() ? Step::End : Step::Damaged;
}

/// The block that begins at m_next; not at the end of the file or where it is damaged.
bool CaptureReader::FindBlock(Block &block)
{
    const QByteArrayView head = m_bytes.At(m_next, SectionStart);
    if (head.isEmpty() && !m_bytes.State().Failed())
        return false;
    if (head.size() < SectionStart)
        return Refused(QStringLiteral("it ends in the head of a block"));
    const auto first = qFromLittleEndian<quint32>(head.data());
    if (first == SectionHeader && !FindByteOrder(m_next))
        return false;
    block = {m_next, NumberAt<quint32>(head, 0), NumberAt<quint32>(head, 4)};
    if (block.length < BlockFrame || block.length % Alignment != 0)
        return Refused(QStringLiteral("the length of a block cannot be right"));
    if (IsNeeded(block.type) && block.length > LongestBlock)
        return Refused(QStringLiteral("the length of a block cannot be right"));
    if (EndsBefore(block.place + block.length))
        return Refused(QStringLiteral("it ends in the middle of a block"));
    return true;
}

/// To ask the system for each block would cost more than to read it.
bool CaptureReader::EndsBefore(qint64 place)
{
    if (place > m_size)
        m_size = m_file.Size();
    return place > m_size;
}

/// Each section has its own.
bool CaptureReader::FindByteOrder(qint64 place)
{
    const auto order = qFromLittleEndian<quint32>(m_bytes.At(place, SectionStart).data() + 8);
    m_bigEndian = order != ByteOrderMagic;
    if (m_bigEndian && qbswap(order) != ByteOrderMagic)
        return Refused(QStringLiteral("a section begins without a byte order"));
    m_interfaces.clear();
    m_ports.clear();
    ++m_portsVersion;
    return true;
}

CaptureReader::Found CaptureReader::TakeBlock(const Block &block, CapturePacket &packet)
{
    // Of what is not needed only the end is read.
    const qint64 wanted = IsNeeded(block.type) ? block.length : qint64(sizeof(quint32));
    const QByteArrayView bytes = m_bytes.At(block.place + block.length - wanted, qsizetype(wanted));
    if (bytes.size() < wanted)
        return Spoilt(QStringLiteral("it ends in the middle of a block"));
    if (NumberAt<quint32>(bytes, bytes.size() - qsizetype(sizeof(quint32))) != block.length)
        return Spoilt(QStringLiteral("a block has two lengths"));
    if (!IsNeeded(block.type) || block.type == SectionHeader)
        return Found::Nothing;
    const QByteArrayView body = bytes.sliced(8, bytes.size() - BlockFrame);
    return block.type == InterfaceDescription ? TakeInterface(body)
                                              : TakePacket(block, body, packet);
}

CaptureReader::Found CaptureReader::TakeInterface(QByteArrayView body)
{
    if (body.size() < InterfaceHead)
        return Spoilt(QStringLiteral("the description of an interface is too short"));
    if (const auto type = NumberAt<quint16>(body, 0); type != LinkTypeRtacSerial) {
        if (m_described)
            return Spoilt(OtherLinkType(type));
        m_damage = {OtherLinkType(type)}; // no byte of it is damaged
        return Found::Damage;
    }
    Interface interface;
    TrafficPort port;
    int told = -1;
    interface.snapLength = NumberAt<quint32>(body, 4);
    OptionWalk walk(body.sliced(InterfaceHead), [this](QByteArrayView bytes, qsizetype place) {
        return NumberAt<quint16>(bytes, place);
    });
    while (walk.Next()) {
        if (walk.code == InterfaceName)
            port.name = Text(walk.value);
        else if (walk.code == InterfaceText)
            port.description = Text(walk.value);
        else if (walk.code == InterfaceSpeed && walk.value.size() == sizeof(quint64))
            port.speed = NumberAt<quint64>(walk.value, 0);
        else if (walk.code == InterfaceTimeResolution && !walk.value.isEmpty())
            interface.timeResolution = quint8(walk.value.front());
        else if (walk.code == InterfaceTimeOffset && walk.value.size() == sizeof(qint64))
            interface.timeOffset = NumberAt<qint64>(walk.value, 0);
        else if (walk.code == Comment)
            told = std::max(told, CaptureRemarks::ChannelOf(Text(walk.value)));
    }
    constexpr qint64 Furthest =
        std::numeric_limits<qint64>::max() / qint64(NanosecondsOfASecond) / 2;
    if (interface.timeOffset > Furthest || interface.timeOffset < -Furthest)
        interface.timeOffset = 0;
    return AddInterface(interface, port, told);
}

/// An interface that tells its channel takes the place of those before it.
CaptureReader::Found CaptureReader::AddInterface(Interface interface, const TrafficPort &port,
                                                 int told)
{
    if (told == 0)
        m_ports.clear();
    interface.port = int(m_ports.size());
    if (m_ports.size() == MostPorts || m_interfaces.size() == MostInterfaces)
        return Spoilt(QStringLiteral("it has more than %1 interfaces").arg(MostPorts));
    m_ports << port;
    ++m_portsVersion;
    m_described = true;
    m_interfaces << interface;
    return Found::Nothing;
}

bool CaptureReader::ReadHead(quint32 type, QByteArrayView body, PacketHead &head) const
{
    if (type == SimplePacket) {
        if (body.size() < SimplePacketHead || m_interfaces.isEmpty())
            return false;
        const qint64 most = m_interfaces.first().snapLength;
        head.whole = NumberAt<quint32>(body, 0);
        head.captured = most == 0 ? head.whole : std::min(head.whole, most);
        head.timed = false;
        head.data = SimplePacketHead;
    } else {
        if (body.size() < PacketHeadLength)
            return false;
        head.interface =
            type == ObsoletePacket ? NumberAt<quint16>(body, 0) : NumberAt<quint32>(body, 0);
        head.ticks = quint64(NumberAt<quint32>(body, 4)) << 32 | NumberAt<quint32>(body, 8);
        head.captured = NumberAt<quint32>(body, 12);
        head.whole = NumberAt<quint32>(body, 16);
        head.data = PacketHeadLength;
    }
    return head.captured <= body.size() - head.data;
}

CaptureReader::Found CaptureReader::TakePacket(const Block &block, QByteArrayView body,
                                               CapturePacket &packet)
{
    PacketHead head;
    if (!ReadHead(block.type, body, head))
        return Spoilt(QStringLiteral("a packet is longer than its block"));
    if (head.interface >= quint32(m_interfaces.size()))
        return Spoilt(QStringLiteral("a packet belongs to an interface that is not described"));
    const Interface &interface = m_interfaces.at(qsizetype(head.interface)); // without detaching
    packet = {};
    packet.place = block.place;
    packet.port = std::min(interface.port, int(m_ports.size()) - 1);
    if (head.timed) {
        packet.time = Nanoseconds(head.ticks, interface.timeResolution);
        if (interface.timeOffset != 0)
            packet.time = std::min(packet.time, std::numeric_limits<qint64>::max() / 2) +
                          interface.timeOffset * qint64(NanosecondsOfASecond);
    }
    if (!ReadRecord(body.sliced(head.data, head.captured), head.whole, packet))
        return Found::Damage;
    if (block.type != SimplePacket) {
        const qsizetype end =
            qsizetype(std::min<qint64>(Aligned(head.captured) + head.data, body.size()));
        packet.options = body.sliced(end);
    }
    return Found::Packet;
}

/// With the time of the record, which packets without a time of their own have.
bool CaptureReader::ReadRecord(QByteArrayView record, qint64 whole, CapturePacket &packet)
{
    if (record.size() < RecordHead)
        return Refused(QStringLiteral("a packet is too short for what serial lines record"));
    if (packet.time == 0) {
        packet.time =
            qint64(qFromBigEndian<quint32>(record.data())) * qint64(NanosecondsOfASecond) +
            qint64(qFromBigEndian<quint32>(record.data() + 4)) * 1000;
    }
    packet.record = quint8(record[8]);
    packet.lines = quint8(record[9]);
    packet.bytes = record.sliced(RecordHead);
    packet.missing = std::max<qint64>(0, whole - record.size());
    return true;
}

bool CaptureReader::HasComments(const CapturePacket &packet) const
{
    QByteArrayView rest = packet.options;
    QByteArrayView comment;
    return NextComment(rest, comment);
}

bool CaptureReader::NextComment(QByteArrayView &rest, QByteArrayView &comment) const
{
    OptionWalk walk(rest, [this](QByteArrayView bytes, qsizetype place) {
        return NumberAt<quint16>(bytes, place);
    });
    while (walk.Next()) {
        if (walk.code == Comment) {
            rest = walk.Rest();
            comment = walk.value;
            return true;
        }
    }
    return false;
}

QStringList CaptureReader::CommentsOf(const CapturePacket &packet) const
{
    QStringList comments;
    QByteArrayView rest = packet.options;
    QByteArrayView comment;
    while (NextComment(rest, comment))
        comments << Text(comment);
    return comments;
}

CaptureReader::Mark CaptureReader::MarkOf(const CapturePacket &packet) const
{
    Mark mark;
    mark.m_place = packet.place;
    mark.m_bigEndian = m_bigEndian;
    mark.m_interfaces = m_interfaces;
    mark.m_ports = m_ports;
    return mark;
}

void CaptureReader::GoTo(const Mark &mark)
{
    m_next = mark.m_place;
    m_bigEndian = mark.m_bigEndian;
    m_interfaces = mark.m_interfaces;
    m_ports = mark.m_ports;
    ++m_portsVersion;
    m_damage = {};
}

bool CaptureReader::Refused(const QString &cause)
{
    const QString why = m_bytes.State().Failed() ? m_bytes.State().Cause() : cause;
    m_damage = {QStringLiteral("The capture is damaged from byte %1 on: %2").arg(m_next).arg(why)};
    return false;
}

CaptureReader::Found CaptureReader::Spoilt(const QString &cause)
{
    Refused(cause);
    return Found::Damage;
}

CaptureReader::Step CaptureReader::Stop(const QString &cause)
{
    Refused(cause);
    return Step::Damaged;
}
