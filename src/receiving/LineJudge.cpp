// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineJudge.h"

#include "CodePage1252.h"
#include "TextStyle.h"
#include "TrafficStream.h"

#include <utility>

namespace
{

QByteArray AsComment(const QByteArray &text)
{
    return text.isEmpty() ? QByteArray() : ' ' + text + ' ';
}

TrafficEvent::Kind KindOf(LineCondition condition)
{
    switch (condition) {
    case LineCondition::DamagedByte:
        return TrafficEvent::Kind::Damaged;
    case LineCondition::Break:
        return TrafficEvent::Kind::Break;
    case LineCondition::Overrun:
        return TrafficEvent::Kind::Overrun;
    }
    return TrafficEvent::Kind::Overrun;
}

} // namespace

LineJudge::LineJudge(const WatchBoard &board, TrafficStream &stream, Line *lineA, Reports reports)
    : m_board(board),
      m_stream(stream),
      m_lineA(lineA),
      m_reports(std::move(reports)),
      m_ears{{{*this, 0}, {*this, 1}}},
      m_watch(std::make_shared<WatchSnapshot>())
{
}

void LineJudge::Begin(const Session &session)
{
    m_session = session;
    m_refused = false;
    m_lineAAway = false;
    m_heldBackTold = false;
    m_lineAGone = false;
    m_detection.Clear();
}

int LineJudge::DirectionOf(int channel) const
{
    return m_session.twoChannels ? channel : StyleIndex::Direction2;
}

void LineJudge::OnRead(int channel, const LineRead &read)
{
    m_board.Look(m_watch);
    TrafficEvent chunk;
    chunk.channel = channel;
    chunk.direction = DirectionOf(channel);
    chunk.time = read.time;
    chunk.orderUncertain = read.orderUncertain;
    for (QByteArrayView rest = read.bytes; !rest.isEmpty();) {
        const qsizetype length = qMin(rest.size(), TrafficEvent::MostBytesOfAChunk);
        Judge(chunk, rest.first(length));
        rest = rest.sliced(length);
    }
}

/// A detection ends its chunk. The answer goes out before anything else is done.
void LineJudge::Judge(const TrafficEvent &chunk, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        ReceiveDetection::Result found = m_detection.Feed(chunk.direction, bytes, *m_watch);
        bool answers = MaySend() && !found.answer.isEmpty();
        Result written;
        LineTime writtenAt;
        if (answers) {
            written = m_lineA->Write(found.answer);
            writtenAt = m_lineA->Now();
            answers = !IsHeldBack(written);
            if (!answers && !std::exchange(m_heldBackTold, true))
                TellHeldBack(written.Cause());
        }

        TrafficEvent said = chunk;
        said.bytes = bytes.first(found.consumed).toByteArray();
        said.comment = AsComment(found.comment);
        said.names = found.names;
        m_stream.Append(std::move(said));
        if (answers) {
            TrafficEvent sent;
            sent.time = writtenAt;
            sent.bytes = std::move(found.answer);
            sent.names = std::move(found.names);
            sent.answer = true;
            TellSent(std::move(sent), written);
        }
        bytes = bytes.sliced(found.consumed);
    }
}

/// What is not sent because the device is away, or only listened to, is nothing that happened on
/// the line.
bool LineJudge::IsHeldBack(const Result &written) const
{
    return written.Failed() && (m_lineAAway || written.Number() == LineOnlyListens);
}

void LineJudge::TellHeldBack(const QString &cause)
{
    m_reports.notice(m_session.names[0] + QStringLiteral(" sends nothing"), cause);
}

Result LineJudge::Send(const QByteArray &bytes, const QByteArray &name)
{
    Result written = m_lineA->Write(bytes);
    if (IsHeldBack(written)) {
        TellHeldBack(written.Cause());
        return written;
    }
    TrafficEvent sent;
    sent.time = m_lineA->Now();
    sent.bytes = bytes;
    sent.names = {name};
    TellSent(std::move(sent), written);
    return written;
}

/// What a line refuses is shown all the same, and told.
void LineJudge::TellSent(TrafficEvent sent, const Result &result)
{
    sent.kind = TrafficEvent::Kind::Sent;
    sent.channel = 0;
    sent.direction = StyleIndex::Direction1;
    TrafficEvent refused;
    refused.kind = TrafficEvent::Kind::NotSent;
    refused.time = sent.time;
    refused.count = sent.bytes.size();
    refused.cause = result.Cause();
    refused.names = sent.names;
    refused.answer = sent.answer;
    m_stream.Append(std::move(sent));
    if (result.Failed()) {
        m_stream.Append(std::move(refused));
        m_reports.notSent(0, result.Cause());
    } else if (std::exchange(m_refused, false)) {
        m_reports.sentAgain(0);
    }
    m_refused = result.Failed();
}

TrafficEvent LineJudge::Ear::EventOf(TrafficEvent::Kind kind, const LineTime &time) const
{
    TrafficEvent event;
    event.kind = kind;
    event.channel = m_channel;
    event.direction = m_judge.DirectionOf(m_channel);
    event.time = time;
    return event;
}

void LineJudge::Ear::OnCondition(LineCondition condition, qint64 count, const LineTime &time)
{
    TrafficEvent event = EventOf(KindOf(condition), time);
    event.count = count;
    m_judge.m_stream.Append(std::move(event));
}

void LineJudge::Ear::OnModemLines(const ModemLines &lines, const LineTime &time)
{
    TrafficEvent event = EventOf(TrafficEvent::Kind::ModemLines, time);
    event.modem = lines;
    m_judge.m_stream.Append(std::move(event));
}

void LineJudge::Ear::OnGone(const QString &cause, const LineTime &time)
{
    TrafficEvent event = EventOf(TrafficEvent::Kind::Gone, time);
    event.cause = cause;
    event.ends = true;
    m_judge.m_stream.Append(std::move(event));
    if (m_channel == 0)
        m_judge.m_lineAGone = true;
    m_judge.m_reports.gone(m_channel, cause);
}

const QString &LineJudge::Ear::Name() const
{
    return m_judge.m_session.names[size_t(m_channel)];
}

void LineJudge::Ear::OnAway(const QString &cause, qint64 unsent, const LineTime &time)
{
    TrafficEvent gone = EventOf(TrafficEvent::Kind::Gone, time);
    gone.cause = cause;
    gone.comment = AsComment(CodePage1252::FromUnicode(Name()).bytes + " went away");
    m_judge.m_stream.Append(std::move(gone));
    m_judge.m_detection.Clear(m_judge.DirectionOf(m_channel));
    if (m_channel == 0) {
        m_judge.m_lineAAway = true;
        m_judge.m_heldBackTold = false;
    }
    m_judge.m_reports.awayOrBack();
    if (unsent == 0)
        return;
    TrafficEvent lost = EventOf(TrafficEvent::Kind::NotSent, time);
    lost.count = unsent;
    lost.cause = QStringLiteral("%1 went away while %2 bytes were still waiting to be sent")
                     .arg(Name())
                     .arg(unsent);
    m_judge.m_reports.notice(Name() + QStringLiteral(" went away"), lost.cause);
    m_judge.m_stream.Append(std::move(lost));
}

void LineJudge::Ear::OnBack(const LineTime &time)
{
    TrafficEvent back = EventOf(TrafficEvent::Kind::Back, time);
    back.comment = AsComment(CodePage1252::FromUnicode(Name()).bytes + " is back");
    m_judge.m_stream.Append(std::move(back));
    if (m_channel == 0)
        m_judge.m_lineAAway = false;
    m_judge.m_reports.awayOrBack();
}

void LineJudge::Ear::OnOtherSettings(const QString &what)
{
    m_judge.m_reports.notice(Name() + QStringLiteral(" has other settings"),
                             Name() + QStringLiteral(" has other settings: ") + what);
}

void LineJudge::Ear::OnRefused(const QString &cause)
{
    m_judge.m_reports.notice(
        Name() + QStringLiteral(" is not opened"),
        QStringLiteral("%1 is back, but cannot be opened; this is tried again and again. ")
                .arg(Name()) +
            cause);
}
