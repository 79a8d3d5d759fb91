// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ChannelJudge.h"

#include "TrafficEvent.h"
#include "WatchSnapshot.h"

#include <algorithm>

namespace
{

/// Bytes that wait for being looked through for near misses, at least.
constexpr qint64 Piece = 4096;

} // namespace

ChannelJudge::ChannelJudge(int channel, const Tables &tables, Judgement &judgement)
    : m_channel(channel),
      m_tables(tables),
      m_judgement(judgement),
      m_longest(tables.watch.Matcher().Longest()),
      m_text(SequenceMatcher::Padding, '\0'),
      m_nearMisses(judgement.sequences.size())
{
}

QByteArrayView ChannelJudge::Text() const
{
    return QByteArrayView(m_text).sliced(SequenceMatcher::Padding);
}

qsizetype ChannelJudge::LengthOf(int sequence) const
{
    return m_judgement.sequences[size_t(sequence)].bytes.size();
}

/// Detection takes chunks as the live line gives them: a long rest would be copied for each
/// detection in it.
void ChannelJudge::Take(Packet packet, QByteArrayView bytes)
{
    packet.begin = m_end;
    m_packets.push_back(std::move(packet));
    m_text.append(bytes);
    while (!bytes.isEmpty()) {
        const QByteArrayView chunk =
            bytes.first(std::min(bytes.size(), TrafficEvent::MostBytesOfAChunk));
        const qsizetype consumed = m_detection.Find(m_channel, chunk, m_tables.watch, m_detected);
        m_end += consumed;
        if (!m_detected.empty())
            Fire(m_detected);
        bytes = bytes.sliced(consumed);
    }
    if (m_end - m_scanned < Piece + 4 * m_longest)
        return;
    // What fires twice the longest sequence behind a place may still lie over what begins there.
    if (m_tables.finder)
        Scan(m_end - 2 * m_longest);
    else
        m_scanned = m_end;
    DropUntil(m_scanned - m_longest);
}

void ChannelJudge::Forget()
{
    m_detection.Clear(m_channel);
    if (m_tables.finder)
        Scan(m_end);
    m_scanned = m_end;
    DropUntil(m_end);
}

void ChannelJudge::Finish()
{
    Forget();
    for (size_t i = 0; i < m_nearMisses.size(); ++i)
        Count(int(i), m_nearMisses[i]);
}

/// All of them are complete with the newest byte, and answered with one write.
void ChannelJudge::Fire(const std::vector<int> &detected)
{
    qint64 answered = 0;
    for (const int index : detected) {
        JudgedSequence &sequence = m_judgement.sequences[size_t(index)];
        const qint64 begin = m_end - sequence.bytes.size();
        if (sequence.fired++ < m_judgement.mostPlaces)
            m_judgement.places.push_back(PlaceOf(index, JudgedPlace::Kind::Fired, begin, m_end));
        answered += sequence.answer.size();
        if (m_tables.finder)
            m_firings.push_back({begin, m_end, index});
    }
    m_judgement.answers += answered > 0 ? 1 : 0;
    m_judgement.answerBytes += answered;
}

void ChannelJudge::Scan(qint64 to)
{
    if (to <= m_scanned)
        return;
    FindCut(to);
    m_tables.finder->Find(
        Text(), m_scanned - m_textBegin, to - m_textBegin,
        [this](qsizetype place) { return IsTaken(m_textBegin + place); },
        [this](const NearMissFinder::NearMiss &miss) {
            const bool whole = miss.length == LengthOf(miss.sequence);
            const qint64 begin = m_textBegin + miss.place;
            ConsiderCutUntil(begin);
            Consider(miss.sequence, whole ? JudgedPlace::Kind::OneByte : JudgedPlace::Kind::Begun,
                     begin, miss.length, miss.equal);
        });
    ConsiderCutUntil(to);
    m_scanned = to;
}

/// Whole sequences that did not fire, because others did among their bytes.
void ChannelJudge::FindCut(qint64 to)
{
    m_cut.clear();
    m_cutConsidered = 0;
    const SequenceMatcher &matcher = m_tables.watch.Matcher();
    const char *const begin = Text().data();
    const char *const end = begin + (to - m_textBegin);
    const char *byte = matcher.FindEnd(begin, begin + (m_scanned - m_textBegin), end);
    for (; byte < end; byte = matcher.FindEnd(begin, byte + 1, end)) {
        m_detected.clear();
        matcher.CollectAt(begin, byte, m_detected);
        for (const int sequence : m_detected) {
            const qsizetype length = LengthOf(sequence);
            const qint64 first = m_textBegin + (byte - begin) + 1 - length;
            if (length >= NearMissFinder::Shortest && !FiredAround(sequence, first))
                m_cut.push_back({first, sequence});
        }
    }
}

/// They are settled along with the near misses around them, in the order of the text.
void ChannelJudge::ConsiderCutUntil(qint64 position)
{
    for (; m_cutConsidered < m_cut.size() && m_cut[m_cutConsidered].begin <= position;
         ++m_cutConsidered) {
        const Cut &cut = m_cut[m_cutConsidered];
        const qsizetype length = LengthOf(cut.sequence);
        Consider(cut.sequence, JudgedPlace::Kind::Cut, cut.begin, length, length);
    }
}

/// A near miss counts once where several of the same sequence lie one over the other, and not at
/// all where the sequence itself fired.
void ChannelJudge::Consider(int sequence, JudgedPlace::Kind kind, qint64 begin, qsizetype length,
                            qsizetype equal)
{
    if (FiredAround(sequence, begin))
        return;
    const auto liesOver = [begin, reach = LengthOf(sequence)](qint64 other) {
        return qAbs(begin - other) < reach;
    };
    NearMisses &known = m_nearMisses[size_t(sequence)];
    if (known.told && liesOver(*known.told))
        return;
    if (known.open && liesOver(known.open->begin)) {
        if (equal <= known.open->equal)
            return;
    } else {
        Count(sequence, known);
    }
    known.open = {begin, equal, {}};
    if (m_judgement.sequences[size_t(sequence)].nearMisses < m_judgement.mostPlaces)
        known.open->place = PlaceOf(sequence, kind, begin, begin + length);
}

void ChannelJudge::Count(int sequence, NearMisses &nearMisses)
{
    if (!nearMisses.open)
        return;
    ++m_judgement.sequences[size_t(sequence)].nearMisses;
    nearMisses.told = nearMisses.open->begin;
    if (nearMisses.open->place)
        m_judgement.places.push_back(std::move(*nearMisses.open->place));
    nearMisses.open.reset();
}

/// The text in front of a position, and what is known of it, is not needed any more.
void ChannelJudge::DropUntil(qint64 position)
{
    if (position <= m_textBegin)
        return;
    m_text.remove(SequenceMatcher::Padding, position - m_textBegin);
    m_textBegin = position;
    m_firings.erase(m_firings.begin(), FiredBehind(position));
    while (!m_packets.empty() && (m_packets.size() > 1 ? m_packets[1].begin : m_end) <= position)
        m_packets.pop_front();
}

std::vector<ChannelJudge::Firing>::const_iterator ChannelJudge::FiredBehind(qint64 position) const
{
    return std::partition_point(m_firings.begin(), m_firings.end(),
                                [position](const Firing &f) { return f.end <= position; });
}

/// What stands there is known: some sequence that fired begins with it.
bool ChannelJudge::IsTaken(qint64 begin) const
{
    auto firing = FiredBehind(begin);
    for (; firing != m_firings.end() && firing->end <= begin + m_longest; ++firing) {
        if (firing->begin == begin)
            return true;
    }
    return false;
}

bool ChannelJudge::FiredAround(int sequence, qint64 begin) const
{
    const qint64 length = LengthOf(sequence);
    auto firing = FiredBehind(begin);
    for (; firing != m_firings.end() && firing->end < begin + 2 * length; ++firing) {
        if (firing->sequence == sequence)
            return true;
    }
    return false;
}

JudgedPlace ChannelJudge::PlaceOf(int sequence, JudgedPlace::Kind kind, qint64 begin,
                                  qint64 end) const
{
    const auto spot = [this](qint64 position) {
        const Packet &packet = PacketAt(position);
        return JudgedSpot{packet.number, packet.time, packet.place,
                          qsizetype(position - packet.begin)};
    };
    JudgedPlace place;
    place.kind = kind;
    place.sequence = sequence;
    place.channel = m_channel;
    place.first = spot(begin);
    place.last = spot(end - 1);
    if (kind != JudgedPlace::Kind::Fired) {
        const QByteArrayView text = Text().sliced(begin - m_textBegin);
        place.found = text.first(std::min(text.size(), LengthOf(sequence))).toByteArray();
    }
    const Packet &packet = PacketAt(begin);
    place.ahead = packet.ahead;
    place.aheadPacket = packet.aheadPacket;
    return place;
}

const ChannelJudge::Packet &ChannelJudge::PacketAt(qint64 position) const
{
    const auto behind =
        std::partition_point(m_packets.begin(), m_packets.end(),
                             [position](const Packet &packet) { return packet.begin <= position; });
    return *std::prev(behind);
}
