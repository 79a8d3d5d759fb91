// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramCutter.h"

#include "TelegramGaps.h"

#include <algorithm>
#include <cstring>

namespace
{

using Kind = TrafficEvent::Kind;

/// What is said of the bytes before it, if there are any; all else is a row.
bool IsSaidOfBytes(Kind kind)
{
    return kind == Kind::Damaged || kind == Kind::Overrun || kind == Kind::ModemLines;
}

/// Behind these nothing answers what was before.
bool EndsTalk(Kind kind)
{
    return kind != Kind::Break && kind != Kind::ClockSet && !IsSaidOfBytes(kind);
}

} // namespace

TelegramCutter::TelegramCutter(const TelegramRule &rule)
    : m_rule(rule), m_gaps{}, m_ofCharacter{}, m_shorter(size_t(rule.endMark.size()) + 1)
{
    for (size_t i = 1, matched = 0; i < size_t(rule.endMark.size()); ++i) {
        const auto at = [&rule](size_t place) { return rule.endMark[qsizetype(place)]; };
        while (matched > 0 && at(i) != at(matched))
            matched = size_t(m_shorter[matched]);
        matched += at(i) == at(matched) ? 1 : 0;
        m_shorter[i + 1] = qint32(matched);
    }
    SetPorts({});
}

void TelegramCutter::SetPorts(const QList<TrafficPort> &ports)
{
    for (size_t road = 0; road < m_gaps.size(); ++road) {
        const TrafficPort port = ports.value(qsizetype(road) / 2);
        m_gaps[road] = m_rule.automaticGap ? TelegramGaps::Automatic(port) : m_rule.gap;
        m_ofCharacter[road] = TelegramGaps::Character(port);
    }
}

/// How many bytes belong to the row, the mark among them if it is complete.
qsizetype TelegramCutter::ToEndMark(QByteArrayView bytes)
{
    const QByteArray &mark = m_rule.endMark;
    qsizetype place = 0;
    while (place < bytes.size()) {
        if (m_cut.matched == 0) {
            const auto *const next = static_cast<const char *>(
                std::memchr(bytes.data() + place, mark.front(), size_t(bytes.size() - place)));
            if (!next)
                return bytes.size();
            place = next - bytes.data();
        }
        const char byte = bytes[place++];
        while (m_cut.matched > 0 && byte != mark[m_cut.matched])
            m_cut.matched = m_shorter[size_t(m_cut.matched)];
        m_cut.matched += byte == mark[m_cut.matched] ? 1 : 0;
        if (m_cut.matched == mark.size()) {
            m_cut.isOpen = false;
            return place;
        }
    }
    return place;
}

bool TelegramCutter::IsRow(const TrafficEvent &event, qint64 time) const
{
    if (!IsSaidOfBytes(event.kind) || !m_cut.hasBytes || m_cut.road < 0)
        return true;
    const bool isOfRoad = event.kind == Kind::ModemLines
                              ? m_cut.road / 2 == event.channel
                              : m_cut.road == RoadOf(event.channel, Kind::Received);
    const qint64 gap = m_gaps[size_t(m_cut.road)];
    return !isOfRoad || (gap > 0 && time - m_cut.end > gap);
}

void TelegramCutter::TakeRow(Kind kind, qint64 time)
{
    ++m_cut.number;
    m_cut.length = 0;
    m_cut.isOpen = false;
    m_cut.hasBytes = false;
    if (EndsTalk(kind)) {
        m_cut.road = -1;
        m_cut.end = time;
    }
}

qint64 TelegramCutter::ResponseOf(const Piece &piece) const
{
    return m_cut.road >= 0 && m_cut.road != piece.road ? piece.time - m_cut.end : -1;
}
