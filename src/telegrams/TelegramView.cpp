// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramView.h"

std::pair<qint64, qint64> TelegramView::Rows() const
{
    if (!matches) {
        const TelegramIndex::Extent known = index->Known();
        return {known.first, known.end};
    }
    const TelegramMatches::Extent known = matches->Known();
    return {known.first, known.end};
}

std::optional<TelegramView::Block> TelegramView::BlockOf(qint64 row) const
{
    if (!matches) {
        const auto block = index->BlockOf(row);
        return block ? std::optional(Block{*block, block->first, block->end}) : std::nullopt;
    }
    const auto rows = matches->BlockOf(row);
    return rows ? BlockAt(rows->number) : std::nullopt;
}

std::optional<TelegramView::Block> TelegramView::BlockAt(qint64 number) const
{
    const auto block = index->BlockAt(number);
    if (!block)
        return {};
    if (!matches)
        return Block{*block, block->first, block->end};
    const auto rows = matches->BlockAt(number);
    return rows ? std::optional(Block{*block, rows->first, rows->end}) : std::nullopt;
}

TelegramReading::TelegramReading(const TelegramView &view)
    : m_view(view), m_walk(view.index->Source(), view.index->Rule())
{
}

bool TelegramReading::Visit(const TelegramView::Block &block, const Visitor &visitor)
{
    const TelegramIndex::Block &telegrams = block.telegrams;
    qint64 row = block.first;
    bool isThere = true;
    m_walk.GoTo(telegrams.place);
    for (qint64 number = telegrams.first; number < telegrams.end && row < block.end; ++number) {
        if (isThere && !m_walk.Next(m_telegram)) {
            m_telegram = {};
            m_telegram.kind = TrafficEvent::Kind::Lost;
            m_telegram.marks = Telegram::Unreadable | Telegram::Lost;
            m_telegram.remark = QStringLiteral("It went away");
        }
        m_telegram.number = number + 1;
        // Nothing that can be read stands behind it in its block.
        isThere = isThere && !(m_telegram.marks & Telegram::Unreadable);
        if (m_view.matches && !m_view.matches->Filter().Passes(m_telegram))
            continue;
        if (!visitor(row++, m_telegram))
            return false;
    }
    return true;
}

void TelegramReading::Visit(qint64 first, qint64 end, const Visitor &visitor)
{
    std::optional<TelegramView::Block> block = m_view.BlockOf(first);
    while (block && block->first < end) {
        const bool goesOn = Visit(*block, [&](qint64 row, const Telegram &telegram) {
            return row < first || (row < end && visitor(row, telegram));
        });
        if (!goesOn)
            return;
        block = m_view.BlockAt(block->telegrams.number + 1);
    }
}
