// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureEncoder.h"

#include "BlockWriting.h"
#include "CaptureFormat.h"
#include "CaptureLines.h"
#include "CaptureRemarks.h"

#include <QtEndian>

#include <algorithm>
#include <utility>

namespace
{

using namespace CaptureFormat;
using namespace BlockWriting;
using Kind = TrafficEvent::Kind;

constexpr qint64 NanosecondsOfASecond = 1'000'000'000;
constexpr char NanosecondResolution = 9; ///< of times: ten to the power of minus 9

void AppendText(QByteArray &options, quint16 code, const QString &text)
{
    if (!text.isEmpty())
        AppendOption(options, code, text.toUtf8());
}

QByteArray SectionBody(const QString &program)
{
    QByteArray body;
    AppendSectionHead(body);
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

/// Fills a place that is large enough.
class Pen final
{
  public:
    explicit Pen(char *place) : m_place(place) {}

    template <typename Number> Pen &Little(Number number)
    {
        qToLittleEndian(number, m_place);
        m_place += sizeof number;
        return *this;
    }

    template <typename Number> Pen &Big(Number number)
    {
        qToBigEndian(number, m_place);
        m_place += sizeof number;
        return *this;
    }

    Pen &Bytes(QByteArrayView bytes)
    {
        m_place = std::copy(bytes.begin(), bytes.end(), m_place);
        return *this;
    }

    Pen &Zeros(qsizetype count)
    {
        m_place = std::fill_n(m_place, count, '\0');
        return *this;
    }

  private:
    char *m_place;
};

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

/// The one thing here that is done for each of many thousand reads a second, on the thread that
/// serves the lines: the place is made at once and filled in.
void CaptureEncoder::AppendPacket(QByteArray &capture, const TrafficEvent &event,
                                  const Packet &packet, QByteArrayView bytes) const
{
    constexpr qsizetype FlagsOption = 8;
    qsizetype options = (packet.flags != 0 ? FlagsOption : 0) + packet.texts.size();
    options += options > 0 ? qsizetype(sizeof(quint32)) : 0;
    const auto time = quint64(event.time.wall);
    const auto length = quint32(RecordHead + bytes.size());
    const auto block = quint32(BlockFrame + PacketHeadLength + Padded(length) + options);

    const qsizetype start = capture.size();
    capture.resize(start + qsizetype(block));
    Pen pen(capture.data() + start);
    pen.Little(quint32(EnhancedPacket)).Little(block);
    pen.Little(quint32(event.channel)).Little(quint32(time >> 32)).Little(quint32(time));
    pen.Little(length).Little(length);
    pen.Big(quint32(event.time.wall / NanosecondsOfASecond));
    pen.Big(quint32(event.time.wall % NanosecondsOfASecond / 1000));
    pen.Big(packet.record).Big(m_lines[size_t(event.channel)]).Zeros(sizeof(quint16));
    pen.Bytes(bytes).Zeros(Padded(length) - qsizetype(length));
    if (packet.flags != 0)
        pen.Little(quint16(PacketFlags)).Little(quint16(sizeof packet.flags)).Little(packet.flags);
    pen.Bytes(packet.texts);
    if (options > 0)
        pen.Little(quint32(EndOfOptions));
    pen.Little(block);
}
