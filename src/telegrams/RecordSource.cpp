// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RecordSource.h"

#include "RecordSegments.h"

RecordSource::RecordSource(std::shared_ptr<const RecordSegments> segments)
    : m_segments(std::move(segments))
{
}

QList<TelegramSource::Part> RecordSource::Parts() const
{
    QList<Part> parts;
    for (const RecordSegment &segment : m_segments->Segments())
        parts.append({segment.number, segment.size});
    return parts;
}

FileSystem::Opened RecordSource::Open(qint64 number) const
{
    return m_segments->Open(number);
}
