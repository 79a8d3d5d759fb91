// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureBlocks.h"

#include "BlockWriting.h"
#include "CaptureFormat.h"

#include <QtEndian>

namespace
{

using namespace CaptureFormat;

constexpr qsizetype LengthPlace = 4;

// Places in a packet, and its shortest length.
constexpr qsizetype InterfacePlace = 8;
constexpr qsizetype TimePlace = 12;
constexpr qsizetype CapturedPlace = 20;
constexpr qsizetype RecordEventPlace = 36;
constexpr qsizetype ShortestPacket = 28 + RecordHead + 4;

// Places of the options.
constexpr qsizetype SectionOptions = 24;
constexpr qsizetype InterfaceOptions = 16;

quint32 NumberAt(QByteArrayView bytes, qsizetype place)
{
    return qFromLittleEndian<quint32>(bytes.data() + place);
}

void SetNumber(QByteArray &bytes, qsizetype place, quint32 number)
{
    qToLittleEndian(number, bytes.data() + place);
}

} // namespace

namespace CaptureBlocks
{

qsizetype LengthOf(QByteArrayView bytes)
{
    if (bytes.size() < BlockFrame)
        return 0;
    const qint64 length = NumberAt(bytes, LengthPlace);
    if (length < BlockFrame || length % Alignment != 0)
        return -1;
    if (length > bytes.size())
        return 0;
    return NumberAt(bytes, qsizetype(length) - LengthPlace) == quint32(length) ? qsizetype(length)
                                                                               : -1;
}

quint32 TypeOf(QByteArrayView block)
{
    return NumberAt(block, 0);
}

Packet PacketOf(QByteArrayView block)
{
    if (block.size() < ShortestPacket || TypeOf(block) != EnhancedPacket)
        return {};
    Packet packet;
    packet.interface = int(NumberAt(block, InterfacePlace));
    packet.time = qint64(quint64(NumberAt(block, TimePlace)) << 32 |
                         NumberAt(block, TimePlace + qsizetype(sizeof(quint32))));
    const auto event = quint8(block[RecordEventPlace]);
    if (event == SentStart || event == ReceivedStart)
        packet.lineBytes = qint64(NumberAt(block, CapturedPlace)) - RecordHead;
    return packet;
}

void SetInterface(QByteArray &bytes, qsizetype place, int interface)
{
    SetNumber(bytes, place + InterfacePlace, quint32(interface));
}

QByteArray WithComments(QByteArrayView block, const QStringList &comments)
{
    if (comments.isEmpty())
        return block.toByteArray();
    const qsizetype options = TypeOf(block) == SectionHeader ? SectionOptions : InterfaceOptions;
    QByteArray longer = block.first(options).toByteArray();
    for (const QString &comment : comments)
        BlockWriting::AppendOption(longer, Comment, comment.toUtf8());
    if (block.size() == options + LengthPlace) // it had none
        longer.append(LengthPlace, '\0');
    longer += block.sliced(options);
    SetNumber(longer, LengthPlace, quint32(longer.size()));
    SetNumber(longer, longer.size() - LengthPlace, quint32(longer.size()));
    return longer;
}

} // namespace CaptureBlocks
