// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Telegram.h"
#include "TelegramGaps.h"
#include "TelegramRule.h"
#include "TrafficEvent.h"

#include <QByteArrayView>
#include <QList>

#include <algorithm>
#include <array>
#include <vector>

/// All that where telegrams end depends on, between one of them and the next.
struct TelegramCut {
    qint64 number = 0;     ///< of the latest row; 0 before the first
    qint64 bytes = 0;      ///< of all rows so far
    qint64 clockSet = 0;   ///< ns by which the clock on the wall has been set; it may wrap
    qint64 end = 0;        ///< time of what came last
    qint32 length = 0;     ///< of the latest row, in bytes
    qint32 matched = 0;    ///< bytes of the end mark that it ends with
    int road = -1;         ///< of the latest bytes; negative if what follows is no answer to them
    bool isOpen = false;   ///< bytes of the same road may belong to the latest row
    bool hasBytes = false; ///< the latest row
};

/// Says where telegrams end. It is told of what happens, one after the other, and knows neither
/// clock nor file; what it says depends on the rule, the speeds and TelegramCut alone.
class TelegramCutter final
{
  public:
    /// What came in one read or was written at once, or the rest of that.
    struct Piece {
        int road = 0; ///< RoadOf
        qint64 time = 0;
        QByteArrayView bytes; ///< not empty
        bool named = false;   ///< a sequence was sent, or completed by its last byte
        bool isRest = false;
    };
    static int RoadOf(int channel, TrafficEvent::Kind kind)
    {
        return channel * 2 + (kind == TrafficEvent::Kind::Sent ? 1 : 0);
    }

    explicit TelegramCutter(const TelegramRule &rule);

    /// By channel; from now on.
    void SetPorts(const QList<TrafficPort> &ports);

    enum class Start {
        No,
        Plain,
        AfterGap, ///< silence has ended the row before, of the same road
        Goes      ///< on, where the row before is full
    };
    /// Whether a row begins with the piece, and why.
    Start StartOf(const Piece &piece) const;
    /// Takes the bytes that belong to one row, and says how many; the rest is the next piece.
    qsizetype Take(const Piece &piece, Start start);

    /// Whether something else is a row of its own; else it is said of the latest one.
    bool IsRow(const TrafficEvent &event, qint64 time) const;
    void TakeRow(TrafficEvent::Kind kind, qint64 time);
    void SetClock(qint64 by) { m_cut.clockSet = qint64(quint64(m_cut.clockSet) + quint64(by)); }

    /// Time by a clock that is never set.
    qint64 TimeOf(qint64 wall) const { return qint64(quint64(wall) - quint64(m_cut.clockSet)); }
    /// Of a row that begins with the piece, see Telegram::response.
    qint64 ResponseOf(const Piece &piece) const;

    const TelegramCut &Cut() const { return m_cut; }
    void SetCut(const TelegramCut &cut) { m_cut = cut; }

  private:
    bool IsSilent(const Piece &piece) const;
    qsizetype ToEndMark(QByteArrayView bytes);

    TelegramRule m_rule;
    TelegramCut m_cut;
    std::array<qint64, 4> m_gaps;        ///< by road, in ns
    std::array<qint64, 4> m_ofCharacter; ///< by road: time of a character, in ns; 0 if unknown
    std::vector<qint32> m_shorter; ///< of the end mark, by matched bytes: the next shorter match
};

// What is asked of each of many millions of pieces.

inline TelegramCutter::Start TelegramCutter::StartOf(const Piece &piece) const
{
    if (piece.road != m_cut.road || !m_cut.isOpen)
        return Start::Plain;
    if (!piece.isRest && IsSilent(piece))
        return Start::AfterGap;
    if (m_cut.length >= Telegram::MostBytes)
        return Start::Goes;
    const bool isSequence = piece.named && piece.road % 2 != 0 && !piece.isRest;
    return isSequence && m_rule.endsWithDetection ? Start::Plain : Start::No;
}

inline bool TelegramCutter::IsSilent(const Piece &piece) const
{
    const auto road = size_t(piece.road);
    if (m_gaps[road] == 0)
        return false;
    const qint64 since = piece.time - m_cut.end;
    return since > m_gaps[road] &&
           since > m_gaps[road] +
                       m_ofCharacter[road] * std::min(piece.bytes.size(), TelegramGaps::HeldBack);
}

inline qsizetype TelegramCutter::Take(const Piece &piece, Start start)
{
    if (start != Start::No) {
        ++m_cut.number;
        m_cut.length = 0;
        m_cut.matched = 0;
        m_cut.road = piece.road;
        m_cut.hasBytes = true;
    }
    m_cut.isOpen = true;
    qsizetype most = std::min(piece.bytes.size(), Telegram::MostBytes - m_cut.length);
    if (m_rule.fixedLength > 0)
        most = std::min<qsizetype>(most, m_rule.fixedLength - m_cut.length);
    const qsizetype taken = m_rule.endMark.isEmpty() ? most : ToEndMark(piece.bytes.first(most));
    m_cut.length += qint32(taken);
    m_cut.bytes += taken;
    m_cut.end = piece.time;
    if (m_cut.length == m_rule.fixedLength)
        m_cut.isOpen = false;
    if (piece.named && taken == piece.bytes.size() && m_rule.endsWithDetection &&
        m_cut.length < Telegram::MostBytes)
        m_cut.isOpen = false;
    return taken;
}
