// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RecordSource.h"

#include "RecordSegments.h"

#include <algorithm>
#include <utility>

namespace
{

/// A segment is followed by as many parts in memory.
constexpr qint64 PartsOfASegment = qint64(1) << 24;

qint64 SegmentOf(qint64 part)
{
    return part / PartsOfASegment;
}

/// Of those in memory, from 1; 0 for the segment itself.
qint64 NumberOf(qint64 part)
{
    return part % PartsOfASegment;
}

} // namespace

RecordSource::RecordSource(std::shared_ptr<const RecordSegments> segments)
    : m_segments(std::move(segments))
{
}

/// What stands before parts that memory no longer has would have a hole behind it.
QList<TelegramSource::Part> RecordSource::Parts() const
{
    QList<Part> parts;
    for (const RecordMemory::Part &part : m_segments->Memory().Parts())
        parts.append({part.segment * PartsOfASegment + part.number, part.size});
    const qint64 first =
        m_segments->Memory().HasForgotten() && !parts.isEmpty() ? parts.first().number : 0;
    for (const RecordSegment &segment : m_segments->Segments()) {
        if (segment.number * PartsOfASegment >= first)
            parts.append({segment.number * PartsOfASegment, segment.size});
    }
    std::sort(parts.begin(), parts.end(),
              [](const Part &a, const Part &b) { return a.number < b.number; });
    return parts;
}

FileSystem::Opened RecordSource::Open(qint64 number) const
{
    return NumberOf(number) == 0 ? m_segments->Open(SegmentOf(number))
                                 : m_segments->Memory().Open(SegmentOf(number), NumberOf(number));
}

bool RecordSource::Follows(qint64 part, qint64 next) const
{
    return next == part + 1 || next == (SegmentOf(part) + 1) * PartsOfASegment;
}

bool RecordSource::IsInMemory() const
{
    const RecordState state = m_segments->State();
    return state.bound == 0 || state.ended.Failed();
}
