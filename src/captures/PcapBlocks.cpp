// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PcapBlocks.h"

#include "BlockWriting.h"
#include "CaptureReader.h"
#include "FileSystem.h"

using namespace CaptureFormat;
using namespace BlockWriting;

namespace
{

constexpr qsizetype HeadLength = 24;
constexpr qsizetype PacketHead = 16;

// Places in the file's head, and in a packet's.
constexpr qsizetype SnapLengthPlace = 16;
constexpr qsizetype LinkTypePlace = 20;
constexpr qsizetype PartPlace = 4;
constexpr qsizetype CapturedPlace = 8;
constexpr qsizetype WholePlace = 12;

bool IsMagic(quint32 number)
{
    return number == PcapMicroseconds || number == PcapNanoseconds;
}

} // namespace

QByteArray PcapBlocks::HeadOf(const InputDevice &file)
{
    QByteArray head(HeadLength, '\0');
    const bool whole = file.ReadAt(0, head.data(), head.size()).count == head.size();
    return whole && (IsMagic(qFromLittleEndian<quint32>(head.data())) ||
                     IsMagic(qFromBigEndian<quint32>(head.data())))
               ? head
               : QByteArray();
}

PcapBlocks::PcapBlocks(const QByteArray &head)
    : m_head(head),
      m_bigEndian(IsMagic(qFromBigEndian<quint32>(head.data()))),
      m_nanoseconds(NumberAt(head, 0) == PcapNanoseconds)
{
}

quint32 PcapBlocks::NumberAt(QByteArrayView bytes, qsizetype place) const
{
    return m_bigEndian ? qFromBigEndian<quint32>(bytes.data() + place)
                       : qFromLittleEndian<quint32>(bytes.data() + place);
}

QByteArray PcapBlocks::Interface() const
{
    QByteArray body;
    AppendNumber(body, quint16(NumberAt(m_head, LinkTypePlace)));
    AppendNumber(body, quint16(0));
    AppendNumber(body, NumberAt(m_head, SnapLengthPlace));
    const char resolution = m_nanoseconds ? 9 : 6;
    AppendOption(body, InterfaceTimeResolution, {&resolution, 1});
    EndOptions(body);
    QByteArray block;
    AppendBlock(block, InterfaceDescription, body);
    return block;
}

qsizetype PcapBlocks::Append(QByteArray &blocks, QByteArrayView bytes) const
{
    qsizetype taken = 0;
    while (bytes.size() >= PacketHead) {
        const qint64 captured = NumberAt(bytes, CapturedPlace);
        if (captured > CaptureReader::LongestBlock || captured > NumberAt(bytes, WholePlace))
            return taken > 0 ? taken : -1;
        if (PacketHead + captured > bytes.size())
            break;
        AppendPacket(blocks, bytes, qsizetype(captured));
        taken += PacketHead + qsizetype(captured);
        bytes = bytes.sliced(PacketHead + qsizetype(captured));
    }
    return taken;
}

void PcapBlocks::AppendPacket(QByteArray &blocks, QByteArrayView bytes, qsizetype captured) const
{
    const quint64 perSecond = m_nanoseconds ? 1'000'000'000 : 1'000'000;
    const quint64 ticks = NumberAt(bytes, 0) * perSecond + NumberAt(bytes, PartPlace);
    QByteArray body;
    AppendNumber(body, quint32(0)); // the interface
    AppendNumber(body, quint32(ticks >> 32));
    AppendNumber(body, quint32(ticks));
    AppendNumber(body, quint32(captured));
    AppendNumber(body, NumberAt(bytes, WholePlace));
    body += bytes.sliced(PacketHead, captured);
    Pad(body);
    AppendBlock(blocks, EnhancedPacket, body);
}
