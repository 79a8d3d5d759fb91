// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RecordCopy.h"

#include "CaptureJoiner.h"
#include "ClOutputFile.h"
#include "WorkProgress.h"

#include <algorithm>

namespace
{

constexpr qint64 StepSize = 1024 * 1024;

/// One copy under way.
class Copier
{
  public:
    Copier(CaptureJoiner &joiner, ClOutputFile &file, WorkProgress &progress)
        : m_joiner(joiner), m_file(file), m_progress(progress)
    {
    }

    Result Add(const RecordCopy::Part &part);
    Result Add(QByteArrayView packets);

  private:
    CaptureJoiner &m_joiner;
    ClOutputFile &m_file;
    WorkProgress &m_progress;
};

/// Up to the first bytes that are no whole block.
Result Copier::Add(const RecordCopy::Part &part)
{
    QByteArray bytes;
    for (qint64 place = 0; place < part.size && m_progress.Wanted(); m_progress.Step()) {
        const qsizetype held = bytes.size();
        const qint64 most = std::min(StepSize, part.size - place);
        bytes.resize(held + qsizetype(most));
        const InputDevice::Given given = part.file->ReadAt(place, bytes.data() + held, most);
        if (given.result.Failed())
            return given.result;
        bytes.truncate(held + qsizetype(given.count));
        place = given.count < most ? part.size : place + most;
        QByteArray joined;
        const qsizetype taken = m_joiner.Append(joined, bytes);
        m_file.WriteInFile(joined);
        if (taken < 0 || m_file.State().Failed())
            return m_file.State();
        bytes.remove(0, taken);
    }
    return {};
}

Result Copier::Add(QByteArrayView packets)
{
    QByteArray joined;
    m_joiner.Append(joined, packets);
    m_file.WriteInFile(joined);
    return m_file.State();
}

} // namespace

qint64 RecordCopy::Size() const
{
    qint64 size = 0;
    for (const Part &part : parts)
        size += part.size;
    return size;
}

Result RecordCopy::WriteTo(OpenFiles &files, const QString &path, WorkProgress &progress) const
{
    progress.Begin(int(Size() / StepSize + parts.size()));
    ClOutputFile file(files);
    if (Result opened = file.OpenForReplacing(path); opened.Failed())
        return opened;
    CaptureJoiner joiner(notes);
    Copier copier(joiner, file, progress);
    for (const Part &part : parts) {
        if (Result added = copier.Add(part); added.Failed())
            return added;
    }
    if (Result added = copier.Add(QByteArrayView(end)); added.Failed())
        return added;
    return progress.Settle() ? file.Commit() : Result();
}
