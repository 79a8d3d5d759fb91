// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureEncoder.h"

#include "CaptureFormat.h"
#include "CaptureLines.h"
#include "CaptureRemarks.h"

#include <QtEndian>

#include <algorithm>
#include <utility>

namespace
{

using namespace CaptureFormat;
using Kind = TrafficEvent::Kind;

constexpr qint64 NanosecondsOfASecond = 1'000'000'000;
constexpr char NanosecondResolution = 9; ///< of times: ten to the power of minus 9
constexpr qsizetype LongestOption = 0xFFFF;

template <typename Number> void AppendNumber(QByteArray &bytes, Number number)
{
    number = qToLittleEndian(number);
    bytes.append(reinterpret_cast<const char *>(&number), sizeof number);
}

template <typename Number> void AppendBigNumber(QByteArray &bytes, Number number)
{
    number = qToBigEndian(number);
    bytes.append(reinterpret_cast<const char *>(&number), sizeof number);
}

void Pad(QByteArray &bytes)
{
    bytes.append((Alignment - bytes.size() % Alignment) % Alignment, '\0');
}

void AppendOption(QByteArray &options, quint16 code, QByteArrayView value)
{
    value = value.first(std::min(value.size(), LongestOption));
    AppendNumber(options, code);
    AppendNumber(options, quint16(value.size()));
    options.append(value);
    Pad(options);
}

void AppendText(QByteArray &options, quint16 code, const QString &text)
{
    if (!text.isEmpty())
        AppendOption(options, code, text.toUtf8());
}

void EndOptions(QByteArray &options)
{
    if (!options.isEmpty())
        AppendNumber(options, quint32(EndOfOptions));
}

/// The body is whole, options included.
void AppendBlock(QByteArray &capture, quint32 type, QByteArrayView body)
{
    const auto length = quint32(body.size() + BlockFrame);
    AppendNumber(capture, type);
    AppendNumber(capture, length);
    capture.append(body);
    AppendNumber(capture, length);
}

QByteArray SectionBody(const QString &program)
{
    QByteArray body;
    AppendNumber(body, ByteOrderMagic);
    AppendNumber(body, quint16(1)); // version 1.0
    AppendNumber(body, quint16(0));
    AppendNumber(body, qint64(-1)); // its length is not known yet
    QByteArray options;
    AppendText(options, SectionProgram, program);
    EndOptions(options);
    return body + options;
}

QByteArray InterfaceBody(const TrafficPort &port)
{
    QByteArray body;
    AppendNumber(body, quint16(LinkTypeRtacSerial));
    AppendNumber(body, quint16(0));
    AppendNumber(body, quint32(0)); // packets are never cut
    QByteArray options;
    AppendText(options, InterfaceName, port.name);
    AppendText(options, InterfaceText, port.description);
    if (port.speed > 0) {
        const quint64 speed = qToLittleEndian(port.speed);
        AppendOption(options, InterfaceSpeed,
                     {reinterpret_cast<const char *>(&speed), sizeof speed});
    }
    AppendOption(options, InterfaceTimeResolution, {&NanosecondResolution, 1});
    EndOptions(options);
    return body + options;
}

quint8 RecordOf(Kind kind)
{
    switch (kind) {
    case Kind::Received:
        return ReceivedStart;
    case Kind::Sent:
        return SentStart;
    case Kind::Damaged:
        return FramingError;
    case Kind::Break:
        return BreakCondition;
    case Kind::Overrun:
        return Overflow;
    case Kind::Lost:
        return DataLost;
    default:
        return StatusChange;
    }
}

quint32 FlagsOf(Kind kind)
{
    return kind == Kind::Sent ? FlagOutbound : kind == Kind::Received ? FlagInbound : 0;
}

/// Seconds, microseconds, event, lines and two bytes of 0.
QByteArray RecordOf(qint64 time, quint8 event, quint8 lines)
{
    QByteArray record;
    AppendBigNumber(record, quint32(time / NanosecondsOfASecond));
    AppendBigNumber(record, quint32(time % NanosecondsOfASecond / 1000));
    AppendBigNumber(record, event);
    AppendBigNumber(record, lines);
    AppendBigNumber(record, quint16(0));
    return record;
}

} // namespace

CaptureEncoder::CaptureEncoder(QList<TrafficPort> ports, QString program)
    : m_ports(std::move(ports)), m_program(std::move(program)), m_lines{}
{
}

QByteArray CaptureEncoder::Head() const
{
    QByteArray head;
    AppendBlock(head, SectionHeader, SectionBody(m_program));
    for (const TrafficPort &port : m_ports)
        AppendBlock(head, InterfaceDescription, InterfaceBody(port));
    return head;
}

/// The comments stand at the first packet of an answer, at the last of what completed a sequence.
void CaptureEncoder::Append(QByteArray &capture, const TrafficEvent &event)
{
    if (event.kind == Kind::ModemLines)
        m_lines[size_t(event.channel)] = CaptureLines::Of(event.modem);
    Packet packet{RecordOf(event.kind), FlagsOf(event.kind), {}};
    QByteArray texts;
    for (const QString &remark : CaptureRemarks::Of(event))
        AppendText(texts, Comment, remark);
    QByteArrayView rest = event.bytes;
    while (rest.size() > MostBytesOfAPacket) {
        if (event.kind == Kind::Sent)
            packet.texts = std::exchange(texts, {});
        AppendPacket(capture, event, packet, rest.first(MostBytesOfAPacket));
        packet.texts.clear();
        rest = rest.sliced(MostBytesOfAPacket);
    }
    packet.texts = texts;
    AppendPacket(capture, event, packet, rest);
}

void CaptureEncoder::AppendPacket(QByteArray &capture, const TrafficEvent &event,
                                  const Packet &packet, QByteArrayView bytes) const
{
    QByteArray options;
    if (packet.flags != 0) {
        const quint32 flags = qToLittleEndian(packet.flags);
        AppendOption(options, PacketFlags, {reinterpret_cast<const char *>(&flags), sizeof flags});
    }
    options += packet.texts;
    EndOptions(options);

    const auto time = quint64(event.time.wall);
    const auto length = quint32(RecordHead + bytes.size());
    QByteArray body;
    body.reserve(qsizetype(length) + options.size() + 32);
    AppendNumber(body, quint32(event.channel));
    AppendNumber(body, quint32(time >> 32));
    AppendNumber(body, quint32(time));
    AppendNumber(body, length);
    AppendNumber(body, length);
    body += RecordOf(event.time.wall, packet.record, m_lines[size_t(event.channel)]);
    body.append(bytes);
    Pad(body);
    AppendBlock(capture, EnhancedPacket, body + options);
}
