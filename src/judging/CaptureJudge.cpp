// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureJudge.h"

#include "CaptureTraffic.h"
#include "ChannelJudge.h"
#include "MdSequenceEdition.h"
#include "WorkProgress.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace
{

using Kind = TrafficEvent::Kind;

/// Places that are kept of all sequences together, and of each at least.
constexpr qint64 PlacesOfAll = 20'000;
constexpr qint64 PlacesOfOne = 100;

constexpr int ProgressSteps = 1000;
/// Packets between two looks whether the judgement is still wanted.
constexpr qint64 PacketsOfALook = 256;

/// One walk through a capture.
class Walk
{
  public:
    Walk(CaptureReader &reader, const ChannelJudge::Tables &tables, Judgement &judgement)
        : m_reader(reader),
          m_traffic(reader),
          m_judgement(judgement),
          m_channels{{{0, tables, judgement}, {1, tables, judgement}}}
    {
    }

    void Take(const CapturePacket &packet)
    {
        const qint64 number = ++m_judgement.packets;
        m_judgement.begin = number == 1 ? packet.time : m_judgement.begin;
        m_judgement.end = packet.time;
        Ahead &oldest = m_ahead[size_t(number) % m_ahead.size()];
        const Ahead ahead = number > qint64(m_ahead.size()) ? oldest
                            : number > 1                    ? m_ahead[1]
                                                            : Ahead{m_reader.MarkOf(packet), 1};
        ChannelJudge &channel = m_channels[size_t(packet.port)];
        if (CaptureTraffic::KindOf(packet) != Kind::Received) {
            TakeOther(packet, channel);
        } else if (!packet.bytes.isEmpty()) {
            m_judgement.receivedBytes += packet.bytes.size();
            channel.Take({number, packet.time, packet.place, ahead.mark, ahead.number},
                         packet.bytes);
        }
        if (packet.missing > 0)
            channel.Forget();
        oldest = {m_reader.MarkOf(packet), number};
    }

    void Finish()
    {
        for (ChannelJudge &channel : m_channels)
            channel.Finish();
    }

  private:
    struct Ahead {
        CaptureReader::Mark mark;
        qint64 number = 0;
    };

    void TakeOther(const CapturePacket &packet, ChannelJudge &channel)
    {
        if (CaptureTraffic::KindOf(packet) == Kind::Sent)
            return;
        m_traffic.Take(packet, m_event);
        if (m_event.kind == Kind::Opened || m_event.kind == Kind::Gone ||
            m_event.kind == Kind::Lost)
            channel.Forget();
    }

    CaptureReader &m_reader;
    CaptureTraffic m_traffic;
    TrafficEvent m_event;
    Judgement &m_judgement;
    std::array<ChannelJudge, CaptureReader::MostPorts> m_channels;
    std::array<Ahead, 8> m_ahead; ///< the last packets, by number
};

/// Of the lists; near misses become known later than what fires behind them.
bool ComesBefore(const JudgedPlace &a, const JudgedPlace &b)
{
    const JudgedSpot &left = a.Spot();
    const JudgedSpot &right = b.Spot();
    return std::tie(left.packet, left.byte, a.sequence) <
           std::tie(right.packet, right.byte, b.sequence);
}

} // namespace

CaptureJudge::CaptureJudge(const MdSequenceEdition &tables, NearMisses nearMisses)
    : m_watch(tables), m_nearMisses(nearMisses)
{
    std::vector<SequenceMatcher::Pattern> patterns;
    m_sequences.reserve(size_t(tables.ReceiveCount()));
    for (int i = 0; i < tables.ReceiveCount(); ++i) {
        const ReceiveSequence &record = tables.ReceiveAt(i);
        JudgedSequence sequence;
        sequence.name = record.Name;
        sequence.bytes = record.Sequence;
        sequence.watched = record.IsWatched();
        sequence.answerName = m_watch.At(i).answerName;
        sequence.answer = m_watch.At(i).answer;
        m_sequences.push_back(sequence);
        if (sequence.watched)
            patterns.push_back({record.Sequence, i});
    }
    m_finder.Build(patterns);
}

CaptureJudge::Judged CaptureJudge::Judge(const InputDevice &file, WorkProgress &progress) const
{
    Judged judged;
    CaptureReader reader(file);
    judged.result = reader.Begin();
    if (judged.result.Failed())
        return judged;
    Judgement &judgement = judged.judgement;
    judgement.sequences = m_sequences;
    judgement.mostPlaces =
        std::max(PlacesOfOne, PlacesOfAll / std::max<qint64>(1, qint64(m_sequences.size())));

    Walk walk(reader, {m_watch, m_nearMisses == NearMisses::Find ? &m_finder : nullptr}, judgement);
    const double stepsOfAByte = ProgressSteps / std::max(1.0, double(file.Size()));
    progress.Begin(ProgressSteps);
    CapturePacket packet;
    CaptureReader::Step step = reader.Next(packet);
    for (; step == CaptureReader::Step::Packet; step = reader.Next(packet)) {
        walk.Take(packet);
        if (judgement.packets % PacketsOfALook != 0)
            continue;
        while (progress.Done() < int(double(packet.place) * stepsOfAByte))
            progress.Step();
        if (!progress.Wanted()) {
            judgement.complete = false;
            break;
        }
    }
    walk.Finish();
    if (step == CaptureReader::Step::Damaged)
        judgement.damage = reader.Damage().cause;
    for (const TrafficPort &port : reader.Ports())
        judgement.ports << port.name;
    std::stable_sort(judgement.places.begin(), judgement.places.end(), ComesBefore);
    return judged;
}
