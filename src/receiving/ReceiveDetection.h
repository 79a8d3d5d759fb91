// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommSettings.h"
#include "SequenceMatcher.h"

#include <QByteArray>
#include <QByteArrayView>

#include <array>

class MdSequenceEdition;

/// Watches the received bytes of both directions for the active receive sequences. Each direction
/// remembers its last bytes, as many as the longest active sequence has, so that a sequence is
/// found however the reads cut it; a detection empties that memory.
///
/// The tables may change at any time. What is remembered was cut to the longest sequence of its
/// own time, and the first byte after a change is checked against all of it.
class ReceiveDetection
{
  public:
    struct Result {
        qsizetype consumed = 0; ///< bytes taken, up to and with the one that led to a detection
        bool detected = false;
        QByteArray answer;  ///< bytes to send, of all detected sequences in table order
        QByteArray comment; ///< their comments, joined by blanks
    };

    /// The tables must live as long as this object.
    explicit ReceiveDetection(const MdSequenceEdition &tables);

    /// Forgets the bytes of both directions.
    void Clear();

    /// Takes bytes up to the first detection, all of them if there is none. No bytes: no result.
    Result Feed(int direction, QByteArrayView bytes, CommMode mode);

  private:
    struct Memory {
        QByteArray window; ///< padding, then bytes of which [held, end) count
        qsizetype held = SequenceMatcher::Padding;
        qsizetype longest = 0; ///< of the tables that the last byte was checked against
        quint64 revision = 0;  ///< of these tables
    };

    void RebuildIfChanged();
    std::vector<int> CheckFirstAfterChange(Memory &memory, qsizetype newest) const;
    void Compact(Memory &memory) const;
    Result Evaluate(std::vector<int> detected, CommMode mode) const;

    const MdSequenceEdition &m_tables;
    SequenceMatcher m_matcher;
    quint64 m_builtRevision;
    std::array<Memory, 2> m_memories;
};
