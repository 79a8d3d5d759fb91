// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ResponseScan.h"

#include "CaptureRemarks.h"

#include <algorithm>
#include <utility>

namespace
{

using Kind = TrafficEvent::Kind;
using Item = TelegramScan::Item;

/// Behind these nobody can tell what would have come, or when.
bool EndsWaiting(Kind kind)
{
    return kind == Kind::Opened || kind == Kind::Closed || kind == Kind::Gone ||
           kind == Kind::Back || kind == Kind::Lost;
}

} // namespace

ResponseScan::ResponseScan(std::shared_ptr<const TelegramSource> source, const TelegramRule &rule,
                           const ResponseLimits &limits)
    : m_scan(std::move(source), rule), m_limits(limits)
{
}

bool ResponseScan::Advance(ResponseConsumer &consumer, qint64 most)
{
    for (Item item = m_scan.Look(); item != Item::None; item = m_scan.Look()) {
        if (most-- <= 0)
            return false;
        Expire(consumer, m_scan.Time());
        if (item == Item::Bytes)
            TakeBytes(consumer);
        else
            TakeOther();
    }
    return true;
}

void ResponseScan::TakeBytes(ResponseConsumer &consumer)
{
    const TelegramCutter::Piece piece = m_scan.Piece();
    const bool begins = m_scan.Begins() && m_scan.Start() != TelegramCutter::Start::Goes;
    const bool isSent = piece.road % 2 != 0;
    m_twoChannels = m_scan.TwoChannels();
    // Valid until the next packet.
    const CapturePacket &packet = m_scan.Packet();
    const qsizetype taken = m_scan.Take();
    const Moment at = {piece.road / 2, m_scan.Cutter().Cut().number, piece.time, packet.time};
    TrafficEvent said;
    said.kind = isSent ? Kind::Sent : Kind::Received;
    // Names belong to the beginning of what was sent, and to the end of what was received.
    const bool isNamed = isSent ? !piece.isRest : taken == piece.bytes.size();
    if (isNamed && !packet.options.isEmpty()) {
        QByteArrayView rest = packet.options;
        QByteArrayView comment;
        while (m_scan.Reader().NextComment(rest, comment))
            CaptureRemarks::Apply(QString::fromUtf8(comment), said);
    }
    if (isSent)
        TakeSent(consumer, at, begins, said);
    else
        TakeReceived(consumer, at, begins, said);
}

/// Each sequence is a question; bytes without a name are one as far as the row goes.
void ResponseScan::TakeSent(ResponseConsumer &consumer, const Moment &at, bool begins,
                            const TrafficEvent &said)
{
    Question &question = m_sent[size_t(at.channel)];
    if (!begins && said.names.isEmpty()) {
        Extend(question, at);
        return;
    }
    Ask(consumer, question,
        KeyOf(said.answer ? ResponseKey::Kind::Answer : ResponseKey::Kind::ByHand, at.channel,
              said.names.join("; ")),
        at);
}

/// Strangers' captures may have names without number or end.
ResponseKey ResponseScan::KeyOf(ResponseKey::Kind kind, int channel, const QByteArray &name)
{
    constexpr qsizetype LongestName = 512;
    ResponseKey key = {kind, channel, name.left(LongestName)};
    if (m_keys.size() < MostKeys)
        m_keys.insert(key);
    else if (!name.isEmpty() && m_keys.count(key) == 0)
        key.name = OtherNames;
    return key;
}

void ResponseScan::TakeReceived(ResponseConsumer &consumer, const Moment &at, bool begins,
                                const TrafficEvent &said)
{
    Answer(consumer, m_sent[size_t(at.channel)], at);
    if (m_twoChannels && begins) {
        Answer(consumer, m_speech[size_t(1 - at.channel)], at);
        Ask(consumer, m_speech[size_t(at.channel)], {ResponseKey::Kind::Speech, at.channel}, at);
    } else {
        Extend(m_speech[size_t(at.channel)], at);
    }
    for (const QByteArray &name : said.names)
        Detect(consumer, at, name);
}

void ResponseScan::Detect(ResponseConsumer &consumer, const Moment &at, const QByteArray &name)
{
    if (at.wall <= m_limits.since)
        return;
    const ResponseKey key = KeyOf(ResponseKey::Kind::Detection, at.channel, name);
    consumer.Count(key);
    const auto [last, isFirst] = m_detected.try_emplace(key, at.time);
    if (!isFirst)
        consumer.Take(key, {at.number, at.wall, std::max<qint64>(0, at.time - last->second)});
    last->second = at.time;
}

void ResponseScan::Ask(ResponseConsumer &consumer, Question &question, ResponseKey key,
                       const Moment &at)
{
    if (question.isOpen)
        consumer.Take(question.key, question.told);
    question.isOpen = at.wall > m_limits.since;
    if (!question.isOpen)
        return;
    question.key = std::move(key);
    question.told = {at.number, at.wall, -1};
    Extend(question, at);
    consumer.Count(question.key);
}

void ResponseScan::Extend(Question &question, const Moment &at)
{
    question.end = at.time;
    question.endWall = at.wall;
}

void ResponseScan::Answer(ResponseConsumer &consumer, Question &question, const Moment &at) const
{
    if (!std::exchange(question.isOpen, false))
        return;
    const qint64 time = std::max<qint64>(0, at.time - question.end);
    consumer.Take(question.key, time > m_limits.answer ? question.told
                                                       : ResponseSample{at.number, at.wall, time});
}

void ResponseScan::Expire(ResponseConsumer &consumer, qint64 time)
{
    for (auto *questions : {&m_sent, &m_speech}) {
        for (Question &question : *questions) {
            if (question.isOpen && time - question.end > m_limits.answer) {
                question.isOpen = false;
                consumer.Take(question.key, question.told);
            }
        }
    }
}

void ResponseScan::TakeOther()
{
    const bool isUnreadable = m_scan.Look() == Item::Unreadable;
    const TrafficEvent &event = m_scan.Event();
    if (isUnreadable || EndsWaiting(event.kind)) {
        for (auto *questions : {&m_sent, &m_speech}) {
            for (Question &question : *questions)
                question.isOpen = false;
        }
        m_detected.clear();
    } else if (event.kind == Kind::NotSent) {
        m_sent[size_t(event.channel)].isOpen = false;
    }
    m_scan.Take();
}

QList<ResponseKey> ResponseScan::Overdue(qint64 wall) const
{
    QList<ResponseKey> keys;
    for (const auto *questions : {&m_sent, &m_speech}) {
        for (const Question &question : *questions) {
            if (question.isOpen && wall - question.endWall > m_limits.answer)
                keys << question.key;
        }
    }
    return keys;
}
