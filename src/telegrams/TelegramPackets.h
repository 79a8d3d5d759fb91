// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureReader.h"
#include "TelegramPlace.h"
#include "TelegramSource.h"

#include <memory>
#include <optional>

/// The packets of a source, part after part, as far as they are there.
class TelegramPackets final
{
  public:
    explicit TelegramPackets(std::shared_ptr<const TelegramSource> source);
    ~TelegramPackets();
    Q_DISABLE_COPY_MOVE(TelegramPackets)

    /// The packet of the place is the next one.
    void GoTo(const TelegramPlace &place);

    enum class Step {
        Packet,
        End,       ///< for now
        Unreadable ///< a part, or the rest of it; told once
    };
    Step Next(CapturePacket &packet)
    {
        if (m_reader && m_reader->Next(packet) == CaptureReader::Step::Packet)
            return Step::Packet;
        return NextOfParts(packet);
    }
    /// Of the latest packet, or of what is unreadable.
    TelegramPlace PlaceOf(const CapturePacket &packet) const;
    /// Why; for the user.
    const QString &Cause() const { return m_cause; }

    /// Of the latest packet.
    CaptureReader &Reader() { return *m_reader; }
    const CaptureReader &Reader() const { return *m_reader; }
    qint64 PartNumber() const { return m_number; }
    /// Another number wherever the ports may have become others.
    int PortsVersion() const { return m_version + (m_reader ? m_reader->PortsVersion() : 0); }
    /// By channel.
    const QList<TrafficPort> &Ports() const { return m_reader ? m_reader->Ports() : m_none; }
    /// What has been read of the part, in bytes.
    qint64 Read() const { return m_reader ? m_reader->Place() : 0; }

  private:
    class PartFile;

    Step NextOfParts(CapturePacket &packet);
    bool TakeSizes(const QList<TelegramSource::Part> &parts);
    void OpenPart(const TelegramSource::Part &part);
    Step Spoil(const QString &cause);

    const std::shared_ptr<const TelegramSource> m_source;
    qint64 m_number = -1; ///< of the part
    int m_version = 0;
    std::unique_ptr<PartFile> m_file;
    std::optional<CaptureReader> m_reader; ///< none if the part cannot be opened
    bool m_isSpoilt = false;               ///< the part, which has been told
    QString m_cause;
    const QList<TrafficPort> m_none;
};
