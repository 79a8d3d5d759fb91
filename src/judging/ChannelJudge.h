// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Judgement.h"
#include "NearMissFinder.h"
#include "ReceiveDetection.h"

#include <deque>
#include <optional>
#include <vector>

class WatchSnapshot;

/// Judges what one channel received: as the live line does, and for near misses behind that, in
/// pieces, once it is known what fired around them. What it holds of the capture is bounded.
///
/// Bytes are counted from the beginning of the channel; that count is a position.
class ChannelJudge final
{
  public:
    /// What it judges by; finder is null if near misses are not wanted.
    struct Tables {
        const WatchSnapshot &watch;
        const NearMissFinder *finder;
    };
    struct Packet {
        qint64 number = 0;
        qint64 time = 0;
        qint64 place = 0;
        CaptureReader::Mark ahead; ///< see JudgedPlace
        qint64 aheadPacket = 0;
        qint64 begin = 0; ///< position of its first byte
    };

    /// Tables and judgement live longer.
    ChannelJudge(int channel, const Tables &tables, Judgement &judgement);

    /// The next bytes that were received, not empty.
    void Take(Packet packet, QByteArrayView bytes);
    /// What was received is no longer remembered: the port was opened, or its device gone, or bytes
    /// are missing.
    void Forget();
    /// Nothing more was received.
    void Finish();

  private:
    struct Firing {
        qint64 begin, end; ///< positions
        int sequence;
    };
    /// The best near miss of a sequence among those that lie one over the other.
    struct Candidate {
        qint64 begin = 0;
        qsizetype equal = 0;
        std::optional<JudgedPlace> place; ///< none if it is only counted
    };
    struct NearMisses {
        std::optional<Candidate> open;
        std::optional<qint64> told; ///< position of the latest one that was counted
    };

    void Fire(const std::vector<int> &detected);
    void Scan(qint64 to);
    void FindCut(qint64 to);
    void ConsiderCutUntil(qint64 position);
    void Consider(int sequence, JudgedPlace::Kind kind, qint64 begin, qsizetype length,
                  qsizetype equal);
    void Count(int sequence, NearMisses &nearMisses);
    void DropUntil(qint64 position);
    bool IsTaken(qint64 begin) const;
    bool FiredAround(int sequence, qint64 begin) const;
    std::vector<Firing>::const_iterator FiredBehind(qint64 position) const;
    JudgedPlace PlaceOf(int sequence, JudgedPlace::Kind kind, qint64 begin, qint64 end) const;
    const Packet &PacketAt(qint64 position) const;
    QByteArrayView Text() const;
    qsizetype LengthOf(int sequence) const;

    const int m_channel;
    Tables m_tables;
    Judgement &m_judgement;
    ReceiveDetection m_detection;
    std::vector<int> m_detected;

    qint64 m_end = 0;              ///< position behind the last byte
    qint64 m_longest = 0;          ///< of all watched sequences
    QByteArray m_text;             ///< padding, then the last bytes
    qint64 m_textBegin = 0;        ///< position of the first of them
    qint64 m_scanned = 0;          ///< position up to which near misses have been looked for
    std::deque<Packet> m_packets;  ///< those of the text
    std::vector<Firing> m_firings; ///< in the text, in the order of their ends
    struct Cut {
        qint64 begin;
        int sequence;
    };
    std::vector<Cut> m_cut;               ///< of the piece that is looked through
    size_t m_cutConsidered = 0;           ///< how many of them are settled
    std::vector<NearMisses> m_nearMisses; ///< by sequence
};
