// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramFilter.h"
#include "TelegramIndex.h"
#include "TelegramWalk.h"

/// How many telegrams of each block of an index a filter lets through. One thread at a time counts
/// on, others may ask meanwhile.
class TelegramMatches final
{
  public:
    TelegramMatches(std::shared_ptr<const TelegramIndex> index, TelegramFilter filter);

    const TelegramFilter &Filter() const { return m_filter; }

    /// Counts what the index knows by now. False if it is not wanted to the end.
    bool Advance(const std::atomic<bool> &wanted);

    struct Extent {
        qint64 first = 0;
        qint64 end = 0;
        qint64 blocks = 0;    ///< counted of those there are
        bool isWhole = false; ///< all that was there has been counted once
    };
    Extent Known() const;

    struct Block {
        qint64 number = 0; ///< as in the index
        qint64 first = 0;  ///< row
        qint64 end = 0;
    };
    /// With the row; the nearest if there is none.
    std::optional<Block> BlockOf(qint64 row) const;
    std::optional<Block> BlockAt(qint64 number) const;

  private:
    bool CountBlock(const TelegramIndex::Block &block, const std::atomic<bool> &wanted);

    const std::shared_ptr<const TelegramIndex> m_index;
    const TelegramFilter m_filter;

    // Of the thread that counts.
    TelegramWalk m_walk;
    Telegram m_telegram;
    qint64 m_bytes = -1; ///< TelegramIndex::Extent as the last block was counted
    qint64 m_rows = -1;
    qint64 m_count = 0; ///< of the block

    mutable std::mutex m_lock; ///< guards what follows
    qint64 m_gone = 0;
    std::deque<qint64> m_before{0}; ///< rows before each block that has been counted, and the next
    qint64 m_end = 0;
    bool m_isWhole = false;
};
