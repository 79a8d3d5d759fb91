// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

/// The numbers of capture files: pcapng and classic pcap around records of RTAC serial, which say
/// what happened on a serial line.
namespace CaptureFormat
{

/// Of the records, in the registry of link types.
constexpr quint32 LinkTypeRtacSerial = 250;
/// Of Ethernet, the commonest other one, for a message that names it.
constexpr quint32 LinkTypeEthernet = 1;

/// Types of the blocks of pcapng. The first reads the same in both byte orders.
enum Block : quint32 {
    SectionHeader = 0x0A0D0D0A,
    InterfaceDescription = 1,
    ObsoletePacket = 2,
    SimplePacket = 3,
    EnhancedPacket = 6,
    Filler = 0x80000000 ///< one of those that every program may use for its own ends
};

constexpr quint32 ByteOrderMagic = 0x1A2B3C4D; ///< in the order of its section
constexpr qint64 BlockFrame = 12;              ///< type, and the length before and after the body
constexpr qint64 Alignment = 4;
/// Of what is not negative.
constexpr qint64 Aligned(qint64 length)
{
    return (length + Alignment - 1) & ~(Alignment - 1);
}
constexpr qint64 PacketHeadLength = 20; ///< interface, time, both lengths

/// Codes of options.
enum Option : quint16 {
    EndOfOptions = 0,
    Comment = 1,
    InterfaceName = 2,
    InterfaceSpeed = 8,
    InterfaceTimeResolution = 9,
    InterfaceTimeOffset = 14,
    PacketFlags = 2,
    InterfaceText = 3,
    SectionProgram = 4
};

constexpr qint64 OptionHead = 4; ///< code and length
constexpr quint8 Nano = 9;       ///< the resolution of time that nearly all interfaces have

constexpr quint32 FlagInbound = 1;
constexpr quint32 FlagOutbound = 2;

/// What starts a file of classic pcap; the resolution of its times.
constexpr quint32 PcapMicroseconds = 0xA1B2C3D4;
constexpr quint32 PcapNanoseconds = 0xA1B23C4D;

/// The head of a record, big endian: seconds and microseconds since 1970, event, lines, two bytes
/// of 0. The bytes of the line follow.
constexpr qint64 RecordHead = 12;

enum RecordEvent : quint8 {
    StatusChange = 0,
    SentStart = 1,
    ReceivedStart = 2,
    SentEnd = 3,
    ReceivedEnd = 4,
    DataLost = 5,
    CaptureComplete = 6,
    FramingError = 7,
    ParityError = 8,
    BreakCondition = 9,
    Overflow = 10
};

enum RecordLine : quint8 {
    LineCTS = 0x01,
    LineDCD = 0x02,
    LineDSR = 0x04,
    LineRTS = 0x08,
    LineDTR = 0x10,
    LineRI = 0x20
};

} // namespace CaptureFormat
