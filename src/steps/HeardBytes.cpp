// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "HeardBytes.h"

#include <algorithm>
#include <vector>

void HeardBytes::Append(int channel, QByteArrayView bytes, qint64 time)
{
    Channel &heard = m_channels[size_t(channel)];
    heard.chunks.push_back({m_end, heard.End(), bytes.size(), time});
    heard.bytes += bytes;
    m_end += bytes.size();
    heard.DropOldest(MostMemory / 2);
}

/// Drops a quarter at once, so that the cost is spread.
void HeardBytes::Channel::DropOldest(qsizetype memory)
{
    const auto needed = [this] { return bytes.size() + qsizetype(chunks.size() * sizeof(Chunk)); };
    if (needed() <= memory)
        return;
    qsizetype dropped = 0;
    while (chunks.size() > 1 && needed() - dropped > memory / 4 * 3) {
        dropped += chunks.front().size;
        chunks.pop_front();
    }
    bytes.remove(0, dropped);
    begin += dropped;
}

const HeardBytes::Chunk &HeardBytes::Channel::ChunkOf(qint64 channelPlace) const
{
    const auto behind = std::upper_bound(
        chunks.begin(), chunks.end(), channelPlace,
        [](qint64 place, const Chunk &chunk) { return place < chunk.channelPlace; });
    return behind == chunks.begin() ? *behind : *std::prev(behind);
}

HeardBytes::Places HeardBytes::ChannelEnds() const
{
    return {m_channels[0].End(), m_channels[1].End()};
}

HeardBytes::Places HeardBytes::PlacesAt(qint64 place) const
{
    Places places{};
    for (size_t i = 0; i < m_channels.size(); ++i) {
        const Channel &heard = m_channels[i];
        places[i] = heard.End();
        for (auto chunk = heard.chunks.rbegin(); chunk != heard.chunks.rend(); ++chunk) {
            if (chunk->place + chunk->size <= place)
                break;
            places[i] = chunk->channelPlace + std::max<qint64>(0, place - chunk->place);
        }
    }
    return places;
}

std::optional<HeardBytes::Hit> HeardBytes::Find(const QByteArray &pattern,
                                                std::optional<int> channel, const Places &from,
                                                Places &searched) const
{
    std::optional<Hit> first;
    for (int i = 0; i < int(m_channels.size()); ++i) {
        const Channel &heard = m_channels[size_t(i)];
        if (channel.value_or(i) != i || heard.bytes.isEmpty())
            continue;
        qint64 &done = searched[size_t(i)];
        const qint64 begin = std::max({from[size_t(i)], heard.begin, done - pattern.size() + 1});
        if (begin >= heard.End())
            continue;
        const qsizetype at = heard.bytes.indexOf(pattern, begin - heard.begin);
        done = heard.End();
        if (at < 0)
            continue;
        const qint64 last = heard.begin + at + pattern.size() - 1;
        done = last; // so that it is found again
        const Chunk &chunk = heard.ChunkOf(last);
        const Hit hit = {i, chunk.place + (last - chunk.channelPlace) + 1, last + 1, chunk.time};
        if (!first || hit.end < first->end)
            first = hit;
    }
    return first;
}

QByteArray HeardBytes::Last(qsizetype most, std::optional<int> channel, const Places &from) const
{
    struct Piece {
        qint64 place;
        QByteArrayView bytes;
    };
    std::vector<Piece> pieces;
    for (int i = 0; i < int(m_channels.size()); ++i) {
        const Channel &heard = m_channels[size_t(i)];
        if (channel.value_or(i) != i)
            continue;
        const qint64 first = std::max({from[size_t(i)], heard.begin, heard.End() - most});
        for (auto chunk = heard.chunks.rbegin(); chunk != heard.chunks.rend(); ++chunk) {
            const qint64 cut = std::max<qint64>(0, first - chunk->channelPlace);
            if (cut >= chunk->size)
                break;
            pieces.push_back({chunk->place, QByteArrayView(heard.bytes)
                                                .sliced(chunk->channelPlace + cut - heard.begin,
                                                        chunk->size - cut)});
        }
    }
    std::sort(pieces.begin(), pieces.end(),
              [](const Piece &a, const Piece &b) { return a.place < b.place; });
    QByteArray all;
    for (const Piece &piece : pieces)
        all += piece.bytes;
    return all.right(most);
}
