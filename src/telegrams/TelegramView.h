// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramMatches.h"

#include <functional>

/// What is shown: an index, maybe through a filter. Any number of threads may have the same.
struct TelegramView {
    std::shared_ptr<TelegramIndex> index;     ///< not null
    std::shared_ptr<TelegramMatches> matches; ///< null without a filter

    /// Rows that there are: from the first to before the second.
    std::pair<qint64, qint64> Rows() const;

    struct Block {
        TelegramIndex::Block telegrams;
        qint64 first = 0; ///< row
        qint64 end = 0;
    };
    std::optional<Block> BlockOf(qint64 row) const;
    std::optional<Block> BlockAt(qint64 number) const;
};

/// Reads rows of a view, for one thread.
class TelegramReading final
{
  public:
    explicit TelegramReading(const TelegramView &view);

    /// Visits the rows of a block in their order; the visitor says whether it wants more. What has
    /// gone meanwhile is unreadable.
    using Visitor = std::function<bool(qint64 row, const Telegram &telegram)>;
    bool Visit(const TelegramView::Block &block, const Visitor &visitor);
    /// The rows that there are.
    void Visit(qint64 first, qint64 end, const Visitor &visitor);

  private:
    TelegramView m_view;
    TelegramWalk m_walk;
    Telegram m_telegram;
};
