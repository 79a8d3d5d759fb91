// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramWalk.h"

#include "CaptureRemarks.h"
#include "TextStyle.h"

namespace
{

using Kind = TrafficEvent::Kind;
using Item = TelegramScan::Item;

/// A telegram that many are said of has no room for all of them.
constexpr qsizetype LongestRemark = 500;

Telegram::Marks MarkOf(Kind kind)
{
    switch (kind) {
    case Kind::Damaged:
        return Telegram::Damaged;
    case Kind::Break:
        return Telegram::Break;
    case Kind::Overrun:
        return Telegram::Overrun;
    case Kind::Lost:
        return Telegram::Lost;
    case Kind::ModemLines:
        return Telegram::LinesChanged;
    default:
        return {};
    }
}

QString LinesText(const ModemLines &lines)
{
    QStringList on;
    const auto add = [&on](bool is, const char *name) {
        if (is)
            on << QString::fromLatin1(name);
    };
    add(lines.CTS, "CTS");
    add(lines.DSR, "DSR");
    add(lines.DCD, "DCD");
    add(lines.RI, "RI");
    return on.isEmpty() ? QStringLiteral("all lines off") : on.join(u' ') + QStringLiteral(" on");
}

QString RemarkOf(const TrafficEvent &event)
{
    constexpr double Second = 1e9;
    if (event.kind == Kind::ModemLines)
        return LinesText(event.modem);
    if (event.kind == Kind::ClockSet) {
        return QStringLiteral("clock set by %1%2 s")
            .arg(event.count > 0 ? QStringLiteral("+") : QString())
            .arg(double(event.count) / Second, 0, 'f', 6);
    }
    TrafficEvent said = event;
    said.orderUncertain = false;
    return CaptureRemarks::Of(said).join(QStringLiteral(", "));
}

} // namespace

void TelegramWalk::GoTo(const TelegramPlace &place)
{
    const bool isThere = m_hasBegun && m_isWhole && place.part == m_scan.PartNumber() &&
                         place.cut.number == m_scan.Cutter().Cut().number;
    if (!isThere)
        m_scan.GoTo(place);
    m_hasBegun = true;
    m_isWhole = true;
}

bool TelegramWalk::Next(Telegram &telegram)
{
    m_hasBegun = true;
    bool has = false;
    for (Item item = m_scan.Look(); item != Item::None; item = m_scan.Look()) {
        if (has && m_scan.Begins())
            return Finish(telegram, true);
        if (item == Item::Bytes)
            TakeBytes(telegram);
        else
            TakeEvent(telegram);
        has = true;
    }
    m_isWhole = !has;
    return has && Finish(telegram, false);
}

bool TelegramWalk::Finish(Telegram &telegram, bool isWhole)
{
    m_isWhole = isWhole;
    if (!m_checksum || !telegram.HasBytes())
        return true;
    const ChecksumFinding finding = Checksum::Check(*m_checksum, telegram.bytes);
    const bool isRight = finding.verdict == ChecksumFinding::Verdict::Right;
    telegram.marks |= isRight ? Telegram::ChecksumRight : Telegram::ChecksumWrong;
    telegram.checksum = Checksum::Text(*m_checksum, finding);
    return true;
}

void TelegramWalk::Begin(Telegram &telegram, Kind kind)
{
    telegram.number = m_scan.Cutter().Cut().number + 1;
    telegram.kind = kind;
    telegram.channel = m_scan.Packet().port;
    telegram.port = m_scan.PortName();
    telegram.time = m_scan.Time();
    telegram.wall = m_scan.Packet().time;
    telegram.end = telegram.time;
    telegram.bytes.resize(0); // keeps its room
    telegram.reads.resize(0);
    telegram.names.clear();
    telegram.answer = false;
    telegram.response = -1;
    telegram.checksum.clear();
    telegram.remark.clear();
    telegram.marks = {};
}

void TelegramWalk::TakeBytes(Telegram &telegram)
{
    const TelegramCutter::Piece piece = m_scan.Piece();
    const bool isFirst = !piece.isRest;
    if (m_scan.Begins()) {
        const bool isSent = piece.road % 2 != 0;
        Begin(telegram, isSent ? Kind::Sent : Kind::Received);
        telegram.response = m_scan.Cutter().ResponseOf(piece);
        telegram.marks.setFlag(Telegram::Gap, m_scan.Start() == TelegramCutter::Start::AfterGap);
        telegram.marks.setFlag(Telegram::Continued, m_scan.Start() == TelegramCutter::Start::Goes);
        telegram.direction = m_scan.TwoChannels() && !isSent ? telegram.channel
                             : isSent                        ? StyleIndex::Direction1
                                                             : StyleIndex::Direction2;
    }
    // Valid until the next packet.
    const CapturePacket &packet = m_scan.Packet();
    const bool hasOptions = !packet.options.isEmpty();
    const qsizetype taken = m_scan.Take();
    telegram.reads.append({piece.time, telegram.bytes.size()});
    telegram.bytes.append(piece.bytes.first(taken));
    telegram.end = piece.time;
    if (hasOptions)
        AddRemarks(telegram, isFirst, taken == piece.bytes.size());
    // What is sent by hand answers nothing, whatever came before it.
    if (telegram.kind == Kind::Sent && !telegram.answer)
        telegram.response = -1;
}

/// Names belong to the beginning of what was sent, and to the end of what was received.
void TelegramWalk::AddRemarks(Telegram &telegram, bool isFirst, bool isLast)
{
    TrafficEvent event;
    event.kind = telegram.kind;
    QByteArrayView rest = m_scan.Packet().options;
    QByteArrayView comment;
    while (m_scan.Reader().NextComment(rest, comment))
        CaptureRemarks::Apply(QString::fromUtf8(comment), event);
    telegram.marks.setFlag(Telegram::OrderUncertain,
                           event.orderUncertain || telegram.marks & Telegram::OrderUncertain);
    if (telegram.kind == Kind::Sent ? !isFirst : !isLast)
        return;
    telegram.names += event.names;
    telegram.answer |= event.answer;
}

void TelegramWalk::TakeEvent(Telegram &telegram)
{
    const bool isUnreadable = m_scan.Look() == Item::Unreadable;
    const TrafficEvent event = m_scan.Event();
    if (m_scan.Begins()) {
        Begin(telegram, event.kind);
        telegram.channel = event.channel;
        telegram.direction = event.direction;
    }
    telegram.marks |= MarkOf(event.kind);
    telegram.marks.setFlag(Telegram::OrderUncertain,
                           event.orderUncertain || telegram.marks & Telegram::OrderUncertain);
    if (isUnreadable) {
        telegram.marks |= Telegram::Unreadable;
        telegram.remark = m_scan.Cause();
        telegram.wall = qint64(quint64(telegram.time) + quint64(m_scan.Cutter().Cut().clockSet));
    } else if (telegram.remark.size() < LongestRemark) {
        const QString remark = RemarkOf(event);
        const bool isFirst = telegram.remark.isEmpty() || remark.isEmpty();
        telegram.remark += (isFirst ? QString() : QStringLiteral(", ")) + remark;
    }
    m_scan.Take();
}
