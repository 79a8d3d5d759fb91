// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramCutter.h"
#include "TelegramPackets.h"
#include "TelegramPlace.h"

#include <array>

/// What a source tells of, piece by piece, each with what the cutter says of it: all that makes
/// telegrams, and no more than has to be done for each of many millions.
class TelegramScan final
{
  public:
    TelegramScan(std::shared_ptr<const TelegramSource> source, const TelegramRule &rule);

    /// What is looked at next is what the telegram of the place begins with.
    void GoTo(const TelegramPlace &place);

    enum class Item {
        None,      ///< is there for now
        Bytes,     ///< all that one read or write has left, see Piece
        Event,     ///< see Event
        Unreadable ///< see Cause
    };
    /// What comes next; the same until it is taken.
    Item Look()
    {
        if (m_looked != Item::None)
            return m_looked;
        if (m_stage == Stage::None && !ReadPacket())
            return Item::None;
        if (m_stage == Stage::Bytes) {
            m_piece.bytes = m_packet.bytes.sliced(m_passed);
            m_piece.isRest = m_passed > 0;
            m_start = m_cutter.StartOf(m_piece);
            m_begins = m_start != TelegramCutter::Start::No;
            m_looked = Item::Bytes;
        } else {
            LookAtOther();
        }
        return m_looked;
    }
    /// Whether a row begins with it.
    bool Begins() const { return m_begins; }
    TelegramCutter::Start Start() const { return m_start; }
    const TelegramCutter::Piece &Piece() const { return m_piece; }
    const TrafficEvent &Event() const { return m_event; }
    const QString &Cause() const { return m_packets.Cause(); }
    /// That it is in.
    const CapturePacket &Packet() const { return m_packet; }
    CaptureReader &Reader() { return m_packets.Reader(); }
    QString PortName() const
    {
        const QList<TrafficPort> &ports = m_packets.Ports();
        return m_packet.port < ports.size() ? ports[m_packet.port].name : QString();
    }
    bool TwoChannels() const { return m_packets.Ports().size() > 1; }
    qint64 Time() const { return m_piece.time; } ///< by a clock that is never set
    /// From which to go on with it.
    TelegramPlace Place() const;

    /// It belongs to the latest row. Returns how many of the bytes do; the others come next.
    qsizetype Take()
    {
        qsizetype taken = 0;
        if (m_looked == Item::Bytes) {
            taken = m_cutter.Take(m_piece, m_start);
            m_passed += taken;
            m_stage = m_passed == m_packet.bytes.size() ? Behind() : Stage::Bytes;
        } else {
            TakeOther();
        }
        m_looked = Item::None;
        return taken;
    }

    const TelegramCutter &Cutter() const { return m_cutter; }
    qint64 PartNumber() const { return m_packets.PartNumber(); }
    qint64 Read() const { return m_packets.Read(); }

  private:
    /// What of the packet comes next.
    enum class Stage { None, Bytes, Event, Missing, Unreadable };

    bool ReadPacket();
    void ReadEvent();
    bool HasName() const;
    void LookAtOther();
    void TakeOther();
    Stage Behind() const { return m_packet.missing > 0 ? Stage::Missing : Stage::None; }

    TelegramPackets m_packets;
    TelegramCutter m_cutter;
    const bool m_wantsNames;
    std::array<int, 256> m_roads; ///< by record: that of channel 0; negative for none
    int m_portsVersion = -1;

    CapturePacket m_packet;
    Stage m_stage = Stage::None;
    Item m_looked = Item::None;
    TelegramCutter::Piece m_piece;
    TelegramCutter::Start m_start = TelegramCutter::Start::No;
    bool m_begins = false;
    qsizetype m_passed = 0; ///< bytes of the packet
    TrafficEvent m_event;
};
