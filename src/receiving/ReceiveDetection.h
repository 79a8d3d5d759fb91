// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SequenceMatcher.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <array>
#include <vector>

class WatchSnapshot;

/// Watches the received bytes of both directions for the watched sequences. Each direction
/// remembers its last bytes, as many as the longest watched sequence has, so that a sequence is
/// found however the reads cut it; a detection empties that memory.
///
/// What is watched may change at any time. What is remembered was cut to the longest sequence of
/// its own time, and the first byte after a change is checked against all of it.
class ReceiveDetection
{
  public:
    struct Result {
        qsizetype consumed = 0; ///< bytes taken, up to and with the one that led to a detection
        bool detected = false;
        QByteArray answer;  ///< bytes to send, of all detected sequences in table order
        QByteArray comment; ///< their comments, joined by blanks
        QList<QByteArray> names{};
    };

    ReceiveDetection();

    /// Forgets the bytes of both directions, or of one.
    void Clear();
    void Clear(int direction);

    /// Takes bytes up to the first detection, all of them if there is none. No bytes: no result.
    Result Feed(int direction, QByteArrayView bytes, const WatchSnapshot &watch);
    /// The same for whoever needs no more than the places in the table of what was detected, in
    /// table order; returns the bytes taken.
    qsizetype Find(int direction, QByteArrayView bytes, const WatchSnapshot &watch,
                   std::vector<int> &detected);

  private:
    struct Memory {
        QByteArray window; ///< padding, then bytes of which [held, end) count
        qsizetype held = SequenceMatcher::Padding;
        qsizetype longest = 0; ///< of what the last byte was checked against
        quint64 revision = 0;  ///< of what was watched then
    };

    static void CheckFirstAfterChange(Memory &memory, qsizetype newest, const WatchSnapshot &watch,
                                      std::vector<int> &found);
    static void Compact(Memory &memory);
    static Result Evaluate(const std::vector<int> &detected, const WatchSnapshot &watch);

    std::array<Memory, 2> m_memories;
};
