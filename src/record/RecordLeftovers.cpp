// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RecordLeftovers.h"

#include "CaptureBlocks.h"

#include <algorithm>
#include <map>
#include <utility>

namespace
{

using Segment = RecordFolder::Segment;

/// What stands in front of the first packet is shorter.
constexpr qint64 LongestHead = 256 * 1024;

std::map<QString, QList<Segment>> BySession(const RecordFolder &folder)
{
    std::map<QString, QList<Segment>> sessions;
    for (const Segment &each : folder.Segments())
        sessions[each.name.session].append(each);
    for (auto &session : sessions) {
        std::sort(session.second.begin(), session.second.end(),
                  [](const Segment &a, const Segment &b) { return a.name.number < b.name.number; });
    }
    return sessions;
}

/// Time of the first packet; 0 if there is none.
qint64 BeginOf(const RecordFolder &folder, const QList<Segment> &segments)
{
    for (const Segment &each : segments) {
        const FileSystem::Opened opened = folder.Open(each.name);
        if (!opened.device)
            continue;
        QByteArray bytes(LongestHead, Qt::Uninitialized);
        bytes.truncate(qsizetype(opened.device->ReadAt(0, bytes.data(), LongestHead).count));
        QByteArrayView rest = bytes;
        for (qsizetype length = CaptureBlocks::LengthOf(rest); length > 0;
             length = CaptureBlocks::LengthOf(rest)) {
            if (const qint64 time = CaptureBlocks::PacketOf(rest).time; time != 0)
                return time;
            rest = rest.sliced(length);
        }
    }
    return 0;
}

} // namespace

/// A session that lives may have let go of the segment that was its last: then there is a new one.
QList<std::shared_ptr<LeftRecord>> LeftRecord::TakeAll(const std::shared_ptr<RecordFolder> &folder)
{
    QList<std::shared_ptr<LeftRecord>> left;
    const auto turn = folder->TakeTurn();
    for (const auto &session : BySession(*folder)) {
        const QList<Segment> &segments = session.second;
        const bool lives = std::any_of(segments.begin(), segments.end(),
                                       [](const Segment &each) { return each.held; });
        std::unique_ptr<RecordFolder::File> last =
            lives ? nullptr : folder->Take(segments.last().name);
        if (!last || BySession(*folder)[session.first].size() != segments.size())
            continue;
        const auto record = std::make_shared<LeftRecord>(folder, segments, std::move(last));
        if (record->Begins() == 0)
            record->Remove();
        else
            left << record;
    }
    return left;
}

LeftRecord::LeftRecord(std::shared_ptr<RecordFolder> folder, QList<Segment> segments,
                       std::unique_ptr<RecordFolder::File> last)
    : m_folder(std::move(folder)),
      m_segments(std::move(segments)),
      m_last(std::move(last)),
      m_begins(BeginOf(*m_folder, m_segments))
{
}

qint64 LeftRecord::Size() const
{
    qint64 size = 0;
    for (const Segment &each : m_segments)
        size += each.size;
    return size;
}

RecordCopy LeftRecord::Copy() const
{
    RecordCopy copy;
    qint64 gone = m_segments.first().name.number - 1; // segments
    for (const Segment &each : m_segments) {
        FileSystem::Opened opened = m_folder->Open(each.name);
        if (opened.device)
            copy.parts.append({std::move(opened.device), each.size});
        else
            ++gone;
    }
    if (gone > 0)
        copy.notes << QStringLiteral("The beginning of the record is missing: it was bounded");
    return copy;
}

/// The last one last: what is interrupted here leaves the end of a session.
void LeftRecord::Remove()
{
    for (const Segment &each : m_segments.first(m_segments.size() - 1)) {
        if (const auto file = m_folder->Take(each.name))
            file->Remove();
    }
    m_last->Remove();
}
