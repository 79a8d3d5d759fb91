// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureBlocks.h"

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

quint32 ToldLength(QByteArrayView block)
{
    return NumberAt(block, LengthPlace);
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
    for (const QString &comment : comments) {
        const QByteArray text = comment.toUtf8();
        QByteArray option(LengthPlace, '\0');
        SetNumber(option, 0, Comment | quint32(text.size()) << 16);
        option += text;
        option.append((Alignment - option.size() % Alignment) % Alignment, '\0');
        longer += option;
    }
    if (block.size() == options + LengthPlace) // it had none
        longer.append(LengthPlace, '\0');
    longer += block.sliced(options);
    SetNumber(longer, LengthPlace, quint32(longer.size()));
    SetNumber(longer, longer.size() - LengthPlace, quint32(longer.size()));
    return longer;
}

QStringList CommentsOf(QByteArrayView section)
{
    QStringList comments;
    if (LengthOf(section) < SectionOptions || TypeOf(section) != SectionHeader)
        return comments;
    QByteArrayView rest = section.first(LengthOf(section) - LengthPlace).sliced(SectionOptions);
    while (rest.size() >= LengthPlace) {
        const quint32 head = NumberAt(rest, 0);
        const qsizetype length = head >> 16;
        const qsizetype whole = LengthPlace + (length + Alignment - 1) / Alignment * Alignment;
        if (whole > rest.size() || quint16(head) == EndOfOptions)
            break;
        if (quint16(head) == Comment)
            comments << QString::fromUtf8(rest.sliced(LengthPlace, length));
        rest = rest.sliced(whole);
    }
    return comments;
}

} // namespace CaptureBlocks
