// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CapturePlayer.h"

#include "PlainText.h"
#include "TrafficStream.h"

namespace
{

using Kind = TrafficEvent::Kind;

/// Of a port, in characters; comments show it.
constexpr qsizetype LongestName = 64;

/// Whoever would want an answer, or hear of a line, has nobody on the other end.
LineJudge::Reports Nobody()
{
    return {[](int, const QString &) {}, [](int, const QString &) {}, [](int) {}};
}

LineJudge::Session SessionOf(const QList<TrafficPort> &ports)
{
    LineJudge::Session session;
    session.twoChannels = ports.size() > 1;
    session.answers = false;
    for (qsizetype channel = 0; channel < ports.size(); ++channel) {
        if (!ports[channel].name.isEmpty())
            session.names[size_t(channel)] = PlainText(ports[channel].name.left(LongestName));
    }
    return session;
}

} // namespace

CapturePlayer::CapturePlayer(const WatchBoard &board, TrafficStream &stream,
                             const QList<TrafficPort> &ports)
    : m_stream(stream), m_judge(board, stream, nullptr, Nobody())
{
    m_judge.Begin(SessionOf(ports));
}

/// A clock that was set is an event here; the stream is not to find out by itself.
void CapturePlayer::Play(TrafficEvent event)
{
    event.time.monotonic = event.time.wall;
    LineListener &ear = m_judge.Ear(event.channel);
    switch (event.kind) {
    case Kind::Received:
        ear.OnRead({event.bytes, event.time, event.orderUncertain});
        break;
    case Kind::Damaged:
        ear.OnCondition(LineCondition::DamagedByte, event.count, event.time);
        break;
    case Kind::Break:
        ear.OnCondition(LineCondition::Break, event.count, event.time);
        break;
    case Kind::Overrun:
        ear.OnCondition(LineCondition::Overrun, event.count, event.time);
        break;
    case Kind::ModemLines:
        ear.OnModemLines(event.modem, event.time);
        break;
    case Kind::Gone:
        if (event.ends)
            ear.OnGone(event.cause, event.time);
        else
            ear.OnAway(event.cause, 0, event.time);
        break;
    case Kind::Back:
        ear.OnBack(event.time);
        break;
    case Kind::Opened: // communication was started anew
        m_judge.Forget(event.channel);
        m_stream.Append(event);
        break;
    default:
        m_stream.Append(event);
    }
}
