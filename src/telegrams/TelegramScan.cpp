// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramScan.h"

#include "CaptureRemarks.h"
#include "CaptureTraffic.h"
#include "TextStyle.h"

#include <utility>

using Kind = TrafficEvent::Kind;

TelegramScan::TelegramScan(std::shared_ptr<const TelegramSource> source, const TelegramRule &rule)
    : m_packets(std::move(source)), m_cutter(rule), m_wantsNames(rule.endsWithDetection), m_roads{}
{
    for (size_t record = 0; record < m_roads.size(); ++record) {
        CapturePacket packet;
        packet.record = quint8(record);
        const Kind kind = CaptureTraffic::KindOf(packet);
        const bool hasBytes = kind == Kind::Received || kind == Kind::Sent;
        m_roads[record] = hasBytes ? TelegramCutter::RoadOf(0, kind) : -1;
    }
}

void TelegramScan::GoTo(const TelegramPlace &place)
{
    m_packets.GoTo(place);
    m_cutter.SetCut(place.cut);
    m_stage = Stage::None;
    m_looked = Item::None;
    if (place.passed == 0 && !place.isBehind)
        return;
    if (!ReadPacket())
        return;
    m_passed = std::min(place.passed, m_packet.bytes.size());
    if (m_stage != Stage::Unreadable && place.isBehind)
        m_stage = Behind();
}

bool TelegramScan::ReadPacket()
{
    for (;;) {
        const TelegramPackets::Step step = m_packets.Next(m_packet);
        if (step == TelegramPackets::Step::End)
            return false;
        if (m_packets.PortsVersion() != m_portsVersion) {
            m_portsVersion = m_packets.PortsVersion();
            m_cutter.SetPorts(m_packets.Ports());
        }
        m_passed = 0;
        if (step == TelegramPackets::Step::Unreadable) {
            m_packet = {};
            m_packet.place = m_packets.Read();
            m_stage = Stage::Unreadable;
            return true;
        }
        const int road = m_roads[m_packet.record];
        if (road < 0) {
            ReadEvent();
            return true;
        }
        m_piece.road = road + 2 * m_packet.port;
        m_piece.time = m_cutter.TimeOf(m_packet.time);
        m_piece.named = m_wantsNames && !m_packet.options.isEmpty() && HasName();
        m_stage = m_packet.bytes.isEmpty() ? Behind() : Stage::Bytes;
        if (m_stage != Stage::None)
            return true;
    }
}

bool TelegramScan::HasName() const
{
    const CaptureReader &reader = m_packets.Reader();
    QByteArrayView rest = m_packet.options;
    QByteArrayView comment;
    while (reader.NextComment(rest, comment)) {
        if (!CaptureRemarks::IsOrderUncertain(comment))
            return true;
    }
    return false;
}

void TelegramScan::ReadEvent()
{
    CaptureTraffic(m_packets.Reader()).Take(m_packet, m_event);
    if (m_event.kind == Kind::ClockSet)
        m_cutter.SetClock(m_event.count);
    m_piece.time = m_cutter.TimeOf(m_packet.time);
    m_stage = Stage::Event;
}

void TelegramScan::LookAtOther()
{
    m_start = TelegramCutter::Start::No;
    m_looked = Item::Event;
    m_begins = true;
    if (m_stage == Stage::Event) {
        m_begins = m_cutter.IsRow(m_event, m_piece.time);
        return;
    }
    m_event = {};
    m_event.kind = Kind::Lost;
    m_event.channel = m_packet.port;
    m_event.direction = TwoChannels() ? m_packet.port : StyleIndex::Direction2;
    m_event.count = m_packet.missing;
    if (m_stage == Stage::Unreadable) {
        m_looked = Item::Unreadable;
        m_piece.time = m_cutter.Cut().end;
    }
}

TelegramPlace TelegramScan::Place() const
{
    TelegramPlace place = m_packets.PlaceOf(m_packet);
    place.passed = m_passed;
    place.isBehind = m_stage == Stage::Missing;
    place.cut = m_cutter.Cut();
    if (m_stage == Stage::Event && m_event.kind == Kind::ClockSet)
        place.cut.clockSet = qint64(quint64(place.cut.clockSet) - quint64(m_event.count));
    return place;
}

void TelegramScan::TakeOther()
{
    if (m_begins)
        m_cutter.TakeRow(m_event.kind, m_piece.time);
    m_stage = m_stage == Stage::Event ? Behind() : Stage::None;
}
