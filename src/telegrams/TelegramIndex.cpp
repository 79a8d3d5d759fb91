// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramIndex.h"

#include <algorithm>
#include <utility>

namespace
{

using Item = TelegramScan::Item;

constexpr qint64 TelegramsOfABlock = 512;
constexpr qint64 BytesOfABlock = 128 * 1024; ///< of the file
/// Items between two looks whether the work is wanted, after which what is found can be seen.
constexpr int ItemsOfALook = 8192;

} // namespace

TelegramIndex::TelegramIndex(std::shared_ptr<const TelegramSource> source, const TelegramRule &rule)
    : m_source(std::move(source)), m_rule(rule), m_scan(m_source, rule)
{
}

bool TelegramIndex::Advance(const std::atomic<bool> &wanted)
{
    int sinceLook = 0;
    for (Item item = m_scan.Look(); item != Item::None; item = m_scan.Look()) {
        if (m_scan.Begins()) {
            const qint64 telegram = m_scan.Cutter().Cut().number;
            const qint64 place = m_scan.Packet().place;
            if (telegram - m_blockFirst >= TelegramsOfABlock ||
                place - m_blockPlace >= BytesOfABlock || m_scan.PartNumber() != m_blockPart) {
                m_found.push_back(m_scan.Place());
                m_blockFirst = telegram;
                m_blockPlace = place;
                m_blockPart = m_scan.PartNumber();
            }
        }
        m_scan.Take();
        if (++sinceLook < ItemsOfALook)
            continue;
        sinceLook = 0;
        Publish(m_source->Parts(), false);
        if (!wanted)
            return false;
    }
    Publish(m_source->Parts(), true);
    return true;
}

void TelegramIndex::Publish(const QList<TelegramSource::Part> &parts, bool isEnd)
{
    const std::lock_guard guard(m_lock);
    m_places.insert(m_places.end(), m_found.begin(), m_found.end());
    m_found.clear();
    Trim(parts);
    m_known.end = m_scan.Cutter().Cut().number;
    m_known.bytes = m_scan.Cutter().Cut().bytes;
    m_known.first = m_places.empty() ? m_known.end : m_places.front().cut.number;
    const TelegramSource::Progress progress =
        TelegramSource::ProgressAt(parts, m_scan.PartNumber(), m_scan.Read());
    m_known.read = progress.read;
    m_known.whole = progress.whole;
    m_known.isWhole = m_known.isWhole || isEnd;
}

/// What has gone takes its blocks with it. The last block stays: what follows is found from it.
void TelegramIndex::Trim(const QList<TelegramSource::Part> &parts)
{
    const qint64 first = parts.isEmpty() ? m_scan.PartNumber() + 1 : parts.first().number;
    while (!m_places.empty() && m_places.front().part < first) {
        m_places.pop_front();
        ++m_gone;
    }
}

TelegramIndex::Extent TelegramIndex::Known() const
{
    const std::lock_guard guard(m_lock);
    return m_known;
}

TelegramIndex::Block TelegramIndex::BlockIn(size_t place) const
{
    const TelegramPlace &begins = m_places[place];
    const bool isLast = place + 1 == m_places.size();
    return {m_gone + qint64(place), begins.cut.number,
            isLast ? m_known.end : m_places[place + 1].cut.number, begins, isLast};
}

std::optional<TelegramIndex::Block> TelegramIndex::BlockAt(qint64 number) const
{
    const std::lock_guard guard(m_lock);
    const qint64 place = number - m_gone;
    if (place < 0 || place >= qint64(m_places.size()))
        return {};
    return BlockIn(size_t(place));
}

std::optional<TelegramIndex::Block> TelegramIndex::BlockOf(qint64 telegram) const
{
    const std::lock_guard guard(m_lock);
    if (m_places.empty())
        return {};
    const auto behind = std::upper_bound(
        m_places.begin() + 1, m_places.end(), telegram,
        [](qint64 number, const TelegramPlace &place) { return number < place.cut.number; });
    return BlockIn(size_t(behind - m_places.begin() - 1));
}

std::optional<TelegramIndex::Block> TelegramIndex::BlockBefore(qint64 wall) const
{
    const std::lock_guard guard(m_lock);
    if (m_places.empty())
        return {};
    const auto behind =
        std::lower_bound(m_places.begin() + 1, m_places.end(), wall,
                         [](const TelegramPlace &place, qint64 time) { return place.wall < time; });
    return BlockIn(size_t(behind - m_places.begin() - 1));
}

std::pair<qint64, qint64> TelegramIndex::Blocks() const
{
    const std::lock_guard guard(m_lock);
    return {m_gone, m_gone + qint64(m_places.size())};
}
