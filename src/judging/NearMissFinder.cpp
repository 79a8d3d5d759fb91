// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "NearMissFinder.h"

#include <QHash>

#include <algorithm>

void NearMissFinder::Build(const std::vector<SequenceMatcher::Pattern> &sequences)
{
    m_sequences.clear();
    m_groups.clear();
    m_longest = 0;
    QHash<QByteArray, int> groups;
    const auto join = [this, &groups](const QByteArray &half, Member member) {
        const auto known = groups.constFind(half);
        if (known != groups.cend()) {
            m_groups[size_t(*known)].members.push_back(member);
            return;
        }
        groups.insert(half, int(m_groups.size()));
        m_groups.push_back({half.size(), {member}});
    };
    for (const SequenceMatcher::Pattern &sequence : sequences) {
        const qsizetype half = sequence.bytes.size() / 2;
        if (sequence.bytes.size() < Shortest)
            continue;
        const int index = int(m_sequences.size());
        m_sequences.push_back({sequence.bytes.toByteArray(), sequence.index, half});
        m_longest = std::max(m_longest, sequence.bytes.size());
        join(m_sequences.back().bytes.first(half), {index, true});
        join(m_sequences.back().bytes.sliced(half), {index, false});
    }
    std::vector<SequenceMatcher::Pattern> halves;
    for (auto group = groups.cbegin(); group != groups.cend(); ++group)
        halves.push_back({group.key(), group.value()});
    m_matcher.Build(halves);
}

/// What stands around the half that is there.
bool NearMissFinder::Compare(const Sequence &sequence, bool isFront, QByteArrayView text,
                             NearMiss &nearMiss)
{
    const QByteArrayView bytes = sequence.bytes;
    const qsizetype there = std::min(bytes.size(), text.size());
    qsizetype from = isFront ? sequence.half : 0;
    const qsizetype to = isFront ? there : sequence.half;
    while (from < to && bytes[from] == text[from])
        ++from;
    const qsizetype begun = from; // bytes that are right, if the first half is
    qsizetype other = begun < to ? begun + 1 : begun;
    while (other < to && bytes[other] == text[other])
        ++other;
    const bool oneByte = begun < to && other == to && there == bytes.size();
    if (oneByte) {
        nearMiss.length = bytes.size();
        nearMiss.equal = bytes.size() - 1;
        return true;
    }
    nearMiss.length = nearMiss.equal = begun;
    return isFront && begun < bytes.size() && begun * 4 >= bytes.size() * 3;
}

void NearMissFinder::Find(QByteArrayView text, qsizetype from, qsizetype to, const IsTaken &isTaken,
                          const Found &found) const
{
    std::vector<int> groups;
    const char *const begin = text.data();
    const char *const end = begin + to;
    const char *byte = m_matcher.FindEnd(begin, begin + from, end);
    for (; byte < end; byte = m_matcher.FindEnd(begin, byte + 1, end)) {
        groups.clear();
        m_matcher.CollectAt(begin, byte, groups);
        for (const int group : groups)
            Check(m_groups[size_t(group)], text, byte - begin + 1, isTaken, found);
    }
}

/// The sequences of a group whose half ends in front of a place. Many of one make begin at the same
/// place, which is asked for once.
void NearMissFinder::Check(const Group &group, QByteArrayView text, qsizetype end,
                           const IsTaken &isTaken, const Found &found) const
{
    qsizetype asked = -1;
    bool taken = false;
    for (const Member &member : group.members) {
        const Sequence &sequence = m_sequences[size_t(member.sequence)];
        const qsizetype place = end - group.length - (member.isFront ? 0 : sequence.half);
        if (place < 0)
            continue;
        if (place != asked)
            taken = isTaken(asked = place);
        NearMiss nearMiss = {sequence.index, place, 0, 0};
        if (!taken && Compare(sequence, member.isFront, text.sliced(place), nearMiss))
            found(nearMiss);
    }
}
