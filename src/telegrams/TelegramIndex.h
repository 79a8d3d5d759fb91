// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramRule.h"
#include "TelegramScan.h"

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>

/// Where the telegrams of a source are: a place for each few hundred of them, from which the others
/// are found. One thread at a time reads on, others may ask meanwhile; nobody waits for a disk but
/// who reads.
class TelegramIndex final
{
  public:
    TelegramIndex(std::shared_ptr<const TelegramSource> source, const TelegramRule &rule);

    const std::shared_ptr<const TelegramSource> &Source() const { return m_source; }
    const TelegramRule &Rule() const { return m_rule; }

    /// Reads on as far as there is something, and forgets what has gone. False if it is not wanted
    /// to the end.
    bool Advance(const std::atomic<bool> &wanted);

    /// Telegrams by their numbers, less 1.
    struct Extent {
        qint64 first = 0;
        qint64 end = 0;
        qint64 bytes = 0;     ///< of all telegrams that ever were
        qint64 read = 0;      ///< bytes of the source
        qint64 whole = 0;     ///< of these there are
        bool isWhole = false; ///< everything that was there has been read once
    };
    Extent Known() const;

    /// Telegrams that follow each other, of which the first has a place.
    struct Block {
        qint64 number = 0; ///< of the block; the next one has the next
        qint64 first = 0;  ///< telegram
        qint64 end = 0;    ///< of the last block: as far as they are known
        TelegramPlace place;
        bool isLast = false; ///< so that it may grow
    };
    std::optional<Block> BlockAt(qint64 number) const;
    /// With the telegram; the nearest if there is none.
    std::optional<Block> BlockOf(qint64 telegram) const;
    /// The last that begins before the time, or the first: ns since 1970.
    std::optional<Block> BlockBefore(qint64 wall) const;
    /// Blocks there are: from the first to before the second.
    std::pair<qint64, qint64> Blocks() const;

  private:
    Block BlockIn(size_t place) const;
    void Trim(const QList<TelegramSource::Part> &parts);
    void Publish(const QList<TelegramSource::Part> &parts, bool isEnd);

    const std::shared_ptr<const TelegramSource> m_source;
    const TelegramRule m_rule;

    // Of the thread that reads.
    TelegramScan m_scan;
    qint64 m_blockPart = -1; ///< part and place in it at which the last block begins
    qint64 m_blockPlace = 0;
    qint64 m_blockFirst = 0;           ///< its first telegram
    std::deque<TelegramPlace> m_found; ///< not published yet

    mutable std::mutex m_lock; ///< guards what follows
    std::deque<TelegramPlace> m_places;
    qint64 m_gone = 0; ///< blocks that are
    Extent m_known;
};
