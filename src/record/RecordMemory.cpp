// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RecordMemory.h"

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

namespace
{

constexpr qint64 BytesOfAChunk = 2 * 1024 * 1024;

} // namespace

/// It never moves, so whoever reads need not be kept waiting: what is behind size is not there yet.
struct RecordMemory::Chunk {
    Chunk(qint64 room, qint64 after, qint64 which)
        : bytes(size_t(room)), segment(after), number(which)
    {
    }

    void Append(QByteArrayView more)
    {
        std::copy(more.begin(), more.end(), bytes.begin() + size);
        size += more.size();
    }

    std::vector<char> bytes;
    std::atomic<qint64> size = 0;
    qsizetype headSize = 0;
    const qint64 segment;
    const qint64 number;
};

class RecordMemory::ChunkFile final : public InputDevice
{
  public:
    explicit ChunkFile(std::shared_ptr<const Chunk> chunk) : m_chunk(std::move(chunk)) {}

    Given ReadAt(qint64 place, char *bytes, qint64 most) const override
    {
        const qint64 count = std::clamp<qint64>(m_chunk->size - place, 0, most);
        std::copy_n(m_chunk->bytes.begin() + place, count, bytes);
        return {count, {}};
    }
    qint64 Size() const override { return m_chunk->size; }

  private:
    const std::shared_ptr<const Chunk> m_chunk;
};

bool RecordMemory::Takes(const Chunk &chunk, QByteArrayView head, qsizetype size,
                         qint64 segment) const
{
    return chunk.segment == segment && chunk.size + size <= qint64(chunk.bytes.size()) &&
           QByteArrayView(chunk.bytes.data(), chunk.headSize) == head;
}

void RecordMemory::Write(QByteArrayView head, QByteArrayView packets, qint64 segment)
{
    const std::lock_guard guard(m_lock);
    if (m_chunks.empty() || !Takes(*m_chunks.back(), head, packets.size(), segment)) {
        const qint64 room = std::max<qint64>(BytesOfAChunk, head.size() + packets.size());
        const bool isNext = !m_chunks.empty() && m_chunks.back()->segment == segment;
        m_chunks.push_back(
            std::make_shared<Chunk>(room, segment, isNext ? m_chunks.back()->number + 1 : 1));
        m_chunks.back()->Append(head);
        m_chunks.back()->headSize = head.size();
        m_room += room;
        for (; m_room > MostBytes && m_chunks.size() > 1; m_chunks.pop_front()) {
            m_room -= qint64(m_chunks.front()->bytes.size());
            m_hasForgotten = true;
        }
    }
    m_chunks.back()->Append(packets);
}

QList<RecordMemory::Part> RecordMemory::Parts() const
{
    const std::lock_guard guard(m_lock);
    QList<Part> parts;
    for (const auto &chunk : m_chunks)
        parts.append({chunk->segment, chunk->number, chunk->size});
    return parts;
}

bool RecordMemory::HasForgotten() const
{
    const std::lock_guard guard(m_lock);
    return m_hasForgotten;
}

FileSystem::Opened RecordMemory::Open(qint64 segment, qint64 number) const
{
    const std::lock_guard guard(m_lock);
    for (const auto &chunk : m_chunks) {
        if (chunk->segment == segment && chunk->number == number)
            return {std::make_unique<ChunkFile>(chunk), {}};
    }
    return {nullptr, Failure{QStringLiteral("It has gone from memory"), FileMissing}};
}
