// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SequenceMatcher.h"

#include <QByteArray>
#include <QByteArrayView>

#include <functional>
#include <vector>

/// Finds where sequences nearly stand in a text: all bytes but one, or a beginning of three
/// quarters or more. Of either, one half of the sequence stands there exactly; so halves are
/// searched for with the matcher of whole sequences, and only what is around them is compared.
class NearMissFinder
{
  public:
    /// Shorter sequences have no near misses.
    static constexpr qsizetype Shortest = 4;

    struct NearMiss {
        int sequence;     ///< by the index that was handed in
        qsizetype place;  ///< of its first byte in the text
        qsizetype length; ///< bytes from there that belong to it
        qsizetype equal;  ///< of them are as the sequence has them
    };

    void Build(const std::vector<SequenceMatcher::Pattern> &sequences);

    /// Length of the longest sequence, 0 without any.
    qsizetype Longest() const { return m_longest; }

    /// Reports near misses whose half ends in [from, to) of the text, in no particular order; those
    /// at places that are taken are left out. The text has the matcher's padding in front.
    using IsTaken = std::function<bool(qsizetype place)>;
    using Found = std::function<void(const NearMiss &)>;
    void Find(QByteArrayView text, qsizetype from, qsizetype to, const IsTaken &isTaken,
              const Found &found) const;

  private:
    /// A sequence by one of its halves.
    struct Member {
        int sequence; ///< index in m_sequences
        bool isFront; ///< the half is the first one
    };
    struct Sequence {
        QByteArray bytes;
        int index;
        qsizetype half; ///< length of the first half
    };
    /// All sequences that have the same bytes as one of their halves.
    struct Group {
        qsizetype length = 0;
        std::vector<Member> members;
    };

    void Check(const Group &group, QByteArrayView text, qsizetype end, const IsTaken &isTaken,
               const Found &found) const;
    static bool Compare(const Sequence &sequence, bool isFront, QByteArrayView text,
                        NearMiss &nearMiss);

    SequenceMatcher m_matcher; ///< of halves; reports groups
    std::vector<Sequence> m_sequences;
    std::vector<Group> m_groups;
    qsizetype m_longest = 0;
};
