// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SequenceMatcher.h"

#include <QByteArray>

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

class MdSequenceEdition;

/// What is watched for, and what it leads to, as it was at one moment. Nothing of it changes, so
/// the lines' thread uses it while the tables are edited.
class WatchSnapshot
{
  public:
    struct Sequence {
        QByteArray name;
        QByteArray answer;     ///< bytes to send; empty for none
        QByteArray answerName; ///< of the send sequence
        QByteArray comment;
    };

    WatchSnapshot() = default;
    explicit WatchSnapshot(const MdSequenceEdition &tables);

    const SequenceMatcher &Matcher() const { return m_matcher; }
    /// By the index that the matcher reports: the place in the table.
    const Sequence &At(int index) const { return m_sequences[size_t(index)]; }

    /// Tells snapshots of different tables apart.
    quint64 Revision() const { return m_revision; }

  private:
    SequenceMatcher m_matcher;
    std::vector<Sequence> m_sequences;
    quint64 m_revision = 0;
};

/// Where the snapshot in force hangs: who edits puts up a new one, who judges looks at it. May be
/// used from any thread.
class WatchBoard
{
  public:
    void Publish(std::shared_ptr<const WatchSnapshot> snapshot);

    /// Takes the snapshot in force; one that is still in force costs nothing. True if it changed.
    bool Look(std::shared_ptr<const WatchSnapshot> &taken) const;

  private:
    std::atomic<const WatchSnapshot *> m_inForce = nullptr; ///< of m_snapshot, to be compared only
    mutable std::mutex m_lock;                              ///< guards what follows
    std::shared_ptr<const WatchSnapshot> m_snapshot;
};
