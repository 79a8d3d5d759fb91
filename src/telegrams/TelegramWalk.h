// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Telegram.h"
#include "TelegramScan.h"

/// Telegrams one after the other, from the first or from any TelegramPlace on. On one thread, which
/// may have to wait for a disk.
class TelegramWalk final
{
  public:
    TelegramWalk(std::shared_ptr<const TelegramSource> source, const TelegramRule &rule)
        : m_scan(std::move(source), rule), m_checksum(rule.checksum)
    {
    }

    /// The telegram of the place is the next one. Costs nothing if it is so already.
    void GoTo(const TelegramPlace &place);

    /// False where there is none yet; it may be asked again. A telegram that is given again and
    /// again keeps its room for bytes.
    bool Next(Telegram &telegram);
    /// Whether there was more behind the telegram that was given last. Else it may grow; Next does
    /// not give the rest of it.
    bool IsWhole() const { return m_isWhole; }
    /// The part of the source that was read last, and how much of it, in bytes.
    qint64 PartNumber() const { return m_scan.PartNumber(); }
    qint64 Read() const { return m_scan.Read(); }

  private:
    void Begin(Telegram &telegram, TrafficEvent::Kind kind);
    void TakeBytes(Telegram &telegram);
    void TakeEvent(Telegram &telegram);
    void AddRemarks(Telegram &telegram, bool isFirst, bool isLast);

    bool Finish(Telegram &telegram, bool isWhole);

    TelegramScan m_scan;
    const std::optional<ChecksumRule> m_checksum;
    bool m_hasBegun = false;
    bool m_isWhole = true;
};
