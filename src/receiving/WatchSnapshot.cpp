// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "WatchSnapshot.h"

#include "MdSequenceEdition.h"

#include <utility>

WatchSnapshot::WatchSnapshot(const MdSequenceEdition &tables) : m_revision(tables.Revision())
{
    std::vector<SequenceMatcher::Pattern> patterns;
    m_sequences.reserve(size_t(tables.ReceiveCount()));
    for (int i = 0; i < tables.ReceiveCount(); ++i) {
        const ReceiveSequence &record = tables.ReceiveAt(i);
        const SendSequence *answer = tables.AnswerOf(record);
        const bool answers = answer && !record.AnswerName.isEmpty();
        m_sequences.push_back({record.Name, answers ? answer->Sequence : QByteArray(),
                               record.AnswerName, record.Comment});
        if (record.IsWatched())
            patterns.push_back({record.Sequence, i});
    }
    m_matcher.Build(patterns);
}

void WatchBoard::Publish(std::shared_ptr<const WatchSnapshot> snapshot)
{
    // The old one goes behind the lock; it may be the last hold on much memory.
    const std::lock_guard guard(m_lock);
    std::swap(m_snapshot, snapshot);
    m_inForce.store(m_snapshot.get());
}

bool WatchBoard::Look(std::shared_ptr<const WatchSnapshot> &taken) const
{
    // Who holds a snapshot keeps its place in memory from being used for another one.
    if (taken && m_inForce.load() == taken.get())
        return false;
    const std::lock_guard guard(m_lock);
    taken = m_snapshot;
    return true;
}
